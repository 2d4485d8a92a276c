#include "readers/DataSetDraft.h"

#include "readers/CellSorter.h"
#include "readers/OwnerArrays.h"
#include "readers/Refusal.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataArray.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

namespace readers {

namespace {

constexpr vtkIdType node_limit = vtkIdType{1} << 29;

// The cells of a data set as lists; holds what it had to make for them.
struct Cells {
  std::vector<CellList> lists;
  vtkNew<vtkCellArray> made;
  std::vector<unsigned char> made_types;
};

void list_unstructured(vtkUnstructuredGrid& grid, Cells& cells) {
  if (!grid.GetCells() || !grid.GetCellTypesArray()) return;
  const vtkIdType count = grid.GetCells()->GetNumberOfCells();
  const vtkIdType typed = grid.GetCellTypesArray()->GetNumberOfValues();
  if (count != typed) throw Refusal(std::to_string(count) + " cells but " + std::to_string(typed) + " cell types");
  CellList list;
  list.cells = grid.GetCells();
  list.types = grid.GetCellTypesArray()->GetPointer(0);
  cells.lists.push_back(list);
}

void list_poly_data(vtkPolyData& data, Cells& cells) {
  const CellList kinds[] = {
      {data.GetVerts(),
       nullptr,
       {VTK_POLY_VERTEX, VTK_VERTEX, VTK_POLY_VERTEX, VTK_POLY_VERTEX, VTK_POLY_VERTEX},
       VTK_POLY_VERTEX},
      {data.GetLines(), nullptr, {VTK_POLY_LINE, VTK_POLY_LINE, VTK_LINE, VTK_POLY_LINE, VTK_POLY_LINE}, VTK_POLY_LINE},
      {data.GetPolys(), nullptr, {VTK_POLYGON, VTK_POLYGON, VTK_POLYGON, VTK_TRIANGLE, VTK_QUAD}, VTK_POLYGON},
      {data.GetStrips(),
       nullptr,
       {VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP},
       VTK_TRIANGLE_STRIP},
  };
  for (const CellList& list : kinds)
    if (list.cells && list.cells->GetNumberOfCells() > 0) cells.lists.push_back(list);
}

void list_structured(vtkDataSet& data, Cells& cells) {
  const vtkIdType count = data.GetNumberOfCells();
  vtkNew<vtkIdList> points;
  for (vtkIdType cell = 0; cell < count; ++cell) {
    data.GetCellPoints(cell, points);
    cells.made->InsertNextCell(points);
    cells.made_types.push_back(static_cast<unsigned char>(data.GetCellType(cell)));
  }
  CellList list;
  list.cells = cells.made;
  list.types = cells.made_types.data();
  cells.lists.push_back(list);
}

void list_cells(vtkDataSet& data, Cells& cells) {
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&data)) return list_unstructured(*grid, cells);
  if (auto* poly_data = vtkPolyData::SafeDownCast(&data)) return list_poly_data(*poly_data, cells);
  list_structured(data, cells);
}

void append_points(MeshDraft& draft, vtkDataSet& data) {
  const vtkIdType count = data.GetNumberOfPoints();
  if (count > node_limit || static_cast<vtkIdType>(draft.node_count()) + count > node_limit)
    throw Refusal("more than 2^29 nodes");
  const std::size_t before = draft.xyz.size();
  draft.xyz.resize(before + 3 * static_cast<std::size_t>(count));
  draft.node_owner.resize(draft.node_count(), unowned);
  auto* point_set = vtkPointSet::SafeDownCast(&data);
  vtkDataArray* array = point_set && point_set->GetPoints() ? point_set->GetPoints()->GetData() : nullptr;
  double* out = draft.xyz.data() + before;
  if (auto* doubles = vtkDoubleArray::SafeDownCast(array))
    std::copy_n(doubles->GetPointer(0), 3 * count, out);
  else if (auto* floats = vtkFloatArray::SafeDownCast(array))
    std::copy_n(floats->GetPointer(0), 3 * count, out);
  else
    for (vtkIdType point = 0; point < count; ++point)
      data.GetPoint(point, out + 3 * point);
}

std::vector<std::int64_t> global_ids(vtkDataSetAttributes& attributes, vtkIdType count) {
  vtkDataArray* ids = attributes.GetGlobalIds();
  if (!ids || ids->GetNumberOfTuples() != count || ids->GetNumberOfComponents() != 1) return {};
  std::vector<std::int64_t> numbers;
  for (vtkIdType i = 0; i < count; ++i)
    numbers.push_back(ids->GetVariantValue(i).ToTypeInt64());
  return numbers;
}

// Data sets without numbers take those of the others away: nodes of a draft have all a number or none.
void append_node_numbers(MeshDraft& draft, vtkDataSet& data, std::size_t nodes_before) {
  const std::vector<std::int64_t> numbers = global_ids(*data.GetPointData(), data.GetNumberOfPoints());
  if (draft.node_numbers.size() == nodes_before && numbers.size() + nodes_before == draft.node_count())
    draft.node_numbers.insert(draft.node_numbers.end(), numbers.begin(), numbers.end());
  else
    draft.node_numbers.clear();
}

std::vector<std::string> owner_names(const OwnerLabels& labels, const std::string& name, bool keep_name) {
  if (labels.array_name.empty() || (keep_name && labels.values.size() == 1)) return {name};
  std::vector<std::string> names;
  for (std::int64_t value : labels.values)
    names.push_back((keep_name ? name + "/" : "") + labels.array_name + " " + std::to_string(value));
  return names;
}

CellFacts facts_of(MeshDraft& draft, vtkDataSet& data, const std::string& name, bool keep_name) {
  OwnerLabels labels = find_owner_labels(data);
  if (!labels.notice.empty()) draft.notices.push_back(labels.notice);
  CellFacts facts;
  for (const std::string& owner : owner_names(labels, name, keep_name)) {
    facts.owner_of_label.push_back(static_cast<std::uint32_t>(draft.owners.size()));
    draft.owners.push_back(owner);
  }
  facts.label_of_cell = std::move(labels.label_of_cell);
  facts.numbers = global_ids(*data.GetCellData(), data.GetNumberOfCells());
  vtkUnsignedCharArray* ghosts = data.GetCellGhostArray();
  if (ghosts && ghosts->GetNumberOfValues() == data.GetNumberOfCells()) facts.ghosts = ghosts->GetPointer(0);
  return facts;
}

} // namespace

void add_data_set(MeshDraft& draft, vtkDataSet& data, const std::string& name, bool keep_name) {
  const std::size_t nodes_before = draft.node_count();
  append_points(draft, data);
  append_node_numbers(draft, data, nodes_before);
  Cells cells;
  list_cells(data, cells);
  const CellFacts facts = facts_of(draft, data, name, keep_name);
  PointPlaces places;
  places.point_count = static_cast<std::uint64_t>(data.GetNumberOfPoints());
  places.first_node = static_cast<std::uint32_t>(nodes_before);
  add_cells(draft, cells.lists, facts, places);
  own_the_rest(draft, places.first_node, facts.owner_of_label.front());
}

} // namespace readers
