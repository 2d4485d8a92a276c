#include "platform/base/GExtractEdges.h"

#include "reference/base/edges/EdgeExtraction.h"

#include <vtkCellData.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkSmartPointer.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>

#include <limits>

vtkStandardNewMacro(GExtractEdges)

namespace {

vtkSmartPointer<vtkPoints> points_of(vtkDataSet* input) {
  if (auto* set = vtkPointSet::SafeDownCast(input))
    if (set->GetPoints()) return set->GetPoints();
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetNumberOfPoints(input->GetNumberOfPoints());
  for (vtkIdType i = 0; i < input->GetNumberOfPoints(); ++i)
    points->SetPoint(i, input->GetPoint(i));
  return points;
}

/// No cell that is read directly has more edges than points in its list, halves of quadratic edges counted singly.
vtkIdType most_edges(vtkDataSet* input) {
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(input))
    return grid->GetCells() ? grid->GetCells()->GetNumberOfConnectivityIds() : 0;
  if (auto* data = vtkPolyData::SafeDownCast(input))
    return data->GetLines()->GetNumberOfConnectivityIds() + data->GetPolys()->GetNumberOfConnectivityIds() +
           data->GetStrips()->GetNumberOfConnectivityIds();
  return 4 * input->GetNumberOfCells();
}

template <class Array>
void extract(vtkDataSet* input, vtkIdType capacity, bool lines, bool vertices, vtkPolyData* output) {
  EdgeExtraction<Array> extraction(input, capacity, lines, vertices);
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(input))
    extraction.add_cells(grid);
  else if (auto* data = vtkPolyData::SafeDownCast(input))
    extraction.add_cells(data);
  else
    extraction.add_cells(input);
  extraction.take_cells(output);
  copy_cell_data(input->GetCellData(), extraction.origins(), output->GetCellData());
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

int GExtractEdges::RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* output) {
  vtkDataSet* in = vtkDataSet::GetData(inputs[0]);
  vtkPolyData* out = vtkPolyData::GetData(output);
  if (!in || !out) return 1;
  out->SetPoints(points_of(in));
  out->GetPointData()->PassData(in->GetPointData());

  // Half the bytes where they suffice: touching fresh memory costs more than the work.
  const vtkIdType capacity = most_edges(in);
  if (std::max(in->GetNumberOfPoints(), 4 * capacity) < std::numeric_limits<vtkTypeInt32>::max())
    extract<vtkTypeInt32Array>(in, capacity, pass_lines_, pass_vertices_, out);
  else
    extract<vtkTypeInt64Array>(in, capacity, pass_lines_, pass_vertices_, out);
  return 1;
}
