#include "model/GNodeGlypher.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPolyData.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <limits>
#include <vector>

namespace {

// The points that the input draws as vertex cells already.
void mark_vertex_points(vtkPointSet* input, std::vector<bool>& drawn) {
  auto* grid = vtkUnstructuredGrid::SafeDownCast(input);
  const unsigned char* types = grid && grid->GetCellTypesArray() ? grid->GetCellTypesArray()->GetPointer(0) : nullptr;
  const vtkIdType cell_count = input->GetNumberOfCells();
  vtkNew<vtkIdList> points;
  for (vtkIdType cell = 0; cell < cell_count; ++cell) {
    if ((types ? types[cell] : input->GetCellType(cell)) != VTK_VERTEX) continue;
    input->GetCellPoints(cell, points);
    for (const vtkIdType point : *points)
      if (point >= 0 && static_cast<std::size_t>(point) < drawn.size()) drawn[static_cast<std::size_t>(point)] = true;
  }
}

// One cell on each point that is not marked, in point order.
template <class IdArray> vtkSmartPointer<vtkCellArray> vertices_on_the_rest(const std::vector<bool>& marked) {
  using Id = typename IdArray::ValueType;
  const auto point_count = static_cast<Id>(marked.size());
  Id count = 0;
  for (const bool mark : marked)
    count += mark ? 0 : 1;

  vtkNew<IdArray> offsets;
  vtkNew<IdArray> connectivity;
  Id* offset = offsets->WritePointer(0, count + 1);
  Id* id = connectivity->WritePointer(0, count);
  for (Id vertex = 0; vertex <= count; ++vertex)
    offset[vertex] = vertex;
  for (Id point = 0; point < point_count; ++point)
    if (!marked[static_cast<std::size_t>(point)]) *id++ = point;

  auto vertices = vtkSmartPointer<vtkCellArray>::New();
  vertices->SetData(offsets, connectivity);
  return vertices;
}

vtkSmartPointer<vtkCellArray> vertices_on_the_rest(const std::vector<bool>& marked) {
  // Half the memory wherever 32 bits can count the points.
  const bool small = marked.size() < static_cast<std::size_t>(std::numeric_limits<vtkTypeInt32>::max());
  return small ? vertices_on_the_rest<vtkTypeInt32Array>(marked) : vertices_on_the_rest<vtkTypeInt64Array>(marked);
}

} // namespace

vtkStandardNewMacro(GNodeGlypher)

GNodeGlypher::GNodeGlypher() = default;
GNodeGlypher::~GNodeGlypher() = default;

void GNodeGlypher::PrintSelf(ostream& os, vtkIndent indent) { this->Superclass::PrintSelf(os, indent); }

void GNodeGlypher::pass_vertices(bool on) { pass_vertices_ = on; }

int GNodeGlypher::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkPointSet");
  return 1;
}

int GNodeGlypher::RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* output) {
  auto* input = vtkPointSet::GetData(inputs[0]);
  vtkNew<vtkPolyData> result;
  const vtkIdType point_count = input->GetNumberOfPoints();
  if (point_count != 0) {
    // Resizing, unlike construction, is a length error for a negative count everywhere.
    std::vector<bool> drawn;
    drawn.resize(static_cast<std::size_t>(point_count));
    if (!pass_vertices_) mark_vertex_points(input, drawn);
    result->SetPoints(input->GetPoints());
    result->SetVerts(vertices_on_the_rest(drawn));
    result->GetPointData()->PassData(input->GetPointData());
  }
  vtkPolyData::GetData(output)->ShallowCopy(result);
  return 1;
}
