#include "platform/base/GExtractEdges.h"

#include "reference/base/edges/EdgeCollector.h"

#include <vtkCellArray.h>
#include <vtkDataSet.h>
#include <vtkGenericCell.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <limits>

vtkStandardNewMacro(GExtractEdges);

namespace {

// Calls `visit(cell, points, count)` for each cell of the array, in order, with the array's own integers.
template <class Visit> void walk(vtkCellArray* cells, Visit visit) {
  const auto walk_typed = [&](const auto* offsets, const auto* connectivity) {
    const vtkIdType count = cells->GetNumberOfCells();
    for (vtkIdType i = 0; i < count; ++i)
      visit(i, connectivity + offsets[i], static_cast<vtkIdType>(offsets[i + 1] - offsets[i]));
  };
  if (cells->GetNumberOfCells() == 0) return;
  if (cells->IsStorage64Bit())
    walk_typed(cells->GetOffsetsArray64()->GetPointer(0), cells->GetConnectivityArray64()->GetPointer(0));
  else
    walk_typed(cells->GetOffsetsArray32()->GetPointer(0), cells->GetConnectivityArray32()->GetPointer(0));
}

template <class Collector> void collect(vtkUnstructuredGrid* grid, Collector& edges) {
  const unsigned char* types = grid->GetNumberOfCells() ? grid->GetCellTypesArray()->GetPointer(0) : nullptr;
  vtkNew<vtkGenericCell> asked;
  walk(grid->GetCells(), [&](vtkIdType cell, const auto* points, vtkIdType count) {
    const CellShape shape = shape_of(types[cell]);
    if (shape == CellShape::Other) {
      grid->GetCell(cell, asked);
      edges.add(cell, asked);
    } else {
      edges.add(cell, shape, types[cell], points, count);
    }
  });
}

template <class Collector> void collect(vtkPolyData* data, Collector& edges) {
  const auto add_all = [&](vtkCellArray* cells, vtkIdType first, CellShape shape, int type) {
    walk(cells, [&](vtkIdType cell, const auto* points, vtkIdType count) {
      edges.add(first + cell, shape, type, points, count);
    });
    return first + cells->GetNumberOfCells();
  };
  vtkIdType next = add_all(data->GetVerts(), 0, CellShape::Points, VTK_POLY_VERTEX);
  next = add_all(data->GetLines(), next, CellShape::Chain, VTK_POLY_LINE);
  next = add_all(data->GetPolys(), next, CellShape::Loop, VTK_POLYGON);
  vtkNew<vtkGenericCell> asked;
  for (vtkIdType cell = next; cell < data->GetNumberOfCells(); ++cell) {
    data->GetCell(cell, asked);
    edges.add(cell, asked);
  }
}

template <class Collector> void collect_one_by_one(vtkDataSet* data, Collector& edges) {
  vtkNew<vtkGenericCell> asked;
  for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell) {
    data->GetCell(cell, asked);
    edges.add(cell, asked);
  }
}

// Most edges that the cells can have, taking none to be shared; a guess for cells that are asked one by one.
vtkIdType most_edges(vtkDataSet* data) {
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(data))
    return grid->GetCells() ? grid->GetCells()->GetNumberOfConnectivityIds() : 0;
  if (auto* poly = vtkPolyData::SafeDownCast(data))
    return poly->GetLines()->GetNumberOfConnectivityIds() + poly->GetPolys()->GetNumberOfConnectivityIds() +
           2 * poly->GetStrips()->GetNumberOfConnectivityIds();
  return 4 * data->GetNumberOfCells();
}

template <class Array> void extract(vtkDataSet* input, vtkPolyData* output, vtkIdType capacity, EdgeOptions options) {
  EdgeCollector<Array> edges(input->GetNumberOfPoints(), capacity, options);
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(input))
    collect(grid, edges);
  else if (auto* poly = vtkPolyData::SafeDownCast(input))
    collect(poly, edges);
  else
    collect_one_by_one(input, edges);
  edges.put_into(output, input->GetCellData());
}

void pass_points(vtkDataSet* input, vtkPolyData* output) {
  if (auto* point_set = vtkPointSet::SafeDownCast(input)) {
    output->SetPoints(point_set->GetPoints());
  } else {
    vtkNew<vtkPoints> points;
    points->SetNumberOfPoints(input->GetNumberOfPoints());
    for (vtkIdType i = 0; i < input->GetNumberOfPoints(); ++i)
      points->SetPoint(i, input->GetPoint(i));
    output->SetPoints(points);
  }
  output->GetPointData()->PassData(input->GetPointData());
}

} // namespace

GExtractEdges::GExtractEdges() = default;

GExtractEdges::~GExtractEdges() = default;

void GExtractEdges::pass_lines(bool on) { pass_lines_ = on; }

void GExtractEdges::pass_vertices(bool on) { pass_vertices_ = on; }

int GExtractEdges::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataSet");
  return 1;
}

int GExtractEdges::RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* outputs) {
  vtkDataSet* input = vtkDataSet::GetData(inputs[0]);
  vtkPolyData* output = vtkPolyData::GetData(outputs);
  pass_points(input, output);
  if (input->GetNumberOfCells() == 0) return 1;

  const vtkIdType capacity = most_edges(input);
  const EdgeOptions options = {pass_lines_, pass_vertices_};
  // Half the bytes wherever they suffice: fresh memory costs more than the work.
  constexpr vtkIdType small = std::numeric_limits<vtkTypeInt32>::max() / 4;
  if (capacity < small && input->GetNumberOfPoints() < small)
    extract<vtkTypeInt32Array>(input, output, capacity, options);
  else
    extract<vtkTypeInt64Array>(input, output, capacity, options);
  return 1;
}
