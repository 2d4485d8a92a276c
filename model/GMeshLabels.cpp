#include "model/GMeshLabels.h"

#include "group/GMeshGroup.h"
#include "mesh/MeshQueries.h"
#include "mesh/database/MeshData.h"
#include "model/GMeshModel.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkSmartPointer.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <vector>

namespace {

constexpr std::size_t kinds = 10;

/// The handles in a data array; none where it is missing or of another type.
template <int Dim> std::vector<Tarn::Handle<Dim>> handles_in(vtkDataSetAttributes* attributes, const char* name) {
  auto* array = vtkTypeUInt64Array::SafeDownCast(attributes->GetAbstractArray(name));
  if (!array) return {};
  std::vector<Tarn::Handle<Dim>> handles(static_cast<std::size_t>(array->GetNumberOfTuples()));
  const vtkTypeUInt64* values = array->GetPointer(0);
  for (std::size_t i = 0; i < handles.size(); ++i)
    handles[i].value = values[i];
  return handles;
}

/// The arithmetic mean of a cell's points; false when it has none. `points` is scratch.
bool centre_of(vtkUnstructuredGrid* grid, vtkIdType cell, vtkIdList* points, double centre[3]) {
  grid->GetCells()->GetCellAtId(cell, points);
  const vtkIdType count = points->GetNumberOfIds();
  if (count == 0) return false;
  std::fill_n(centre, 3, 0.0);
  for (vtkIdType i = 0; i < count; ++i) {
    double point[3];
    grid->GetPoints()->GetPoint(points->GetId(i), point);
    for (int axis = 0; axis < 3; ++axis)
      centre[axis] += point[axis];
  }
  for (int axis = 0; axis < 3; ++axis)
    centre[axis] /= static_cast<double>(count);
  return true;
}

} // namespace

/// What a group draws, and what is asked about it.
struct GMeshLabels::Drawn {
  vtkSmartPointer<vtkUnstructuredGrid> grid;
  std::vector<Tarn::Handle<0>> nodes; ///< of the grid's points
  TovanColor color;
  Tarn::MeshData* database;
};

/// The cells that draw elements of one kind, in their order.
struct GMeshLabels::ElementsOfKind {
  std::vector<vtkIdType> cells;
  std::vector<Tarn::Handle<1>> elements;
};

vtkStandardNewMacro(GMeshLabels)

GMeshLabels::GMeshLabels() = default;

GMeshLabels::~GMeshLabels() = default;

void GMeshLabels::set_model(GMeshModel* model) {
  model_ = model;
  GLabelMapper::set_model(model);
}

void GMeshLabels::RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) {
  auto* points = vtkPointSet::SafeDownCast(GetInputDataObject(0, 0));
  GMeshGroup* group = points && model_ ? GMeshGroup::get_group(points) : nullptr;
  if (group) {
    const vtkMTimeType built = build_time_.GetMTime();
    if (group->ColorTime().GetMTime() > built || group->MeshTime().GetMTime() > built ||
        model_->label_flag_time()->GetMTime() > built) {
      build_time_.Modified();
      clear();
      try {
        add_labels(group);
      } catch (...) {
        build_time_ = vtkTimeStamp(); // a host's database threw: labelled anew in the next frame
        throw;
      }
    }
  }
  GLabelMapper::RenderOverlay(viewport, actor);
}

void GMeshLabels::add_label(int id, double position[3], TovanColor color) {
  std::array<char, 16> text;
  *std::to_chars(text.data(), text.data() + text.size() - 1, id).ptr = '\0';
  add_point(TovanVector(position), TovanString(text.data()), color, 0);
}

void GMeshLabels::add_labels(GMeshGroup* group) { add_own_labels(group, true); }

void GMeshLabels::add_own_labels(GMeshGroup* group, bool with_adjacent_edges) {
  if (!group || !model_ || !model_->database()) return;
  Drawn drawn;
  drawn.grid = group->get_2d_data();
  drawn.nodes = handles_in<0>(drawn.grid->GetPointData(), "NodeIds");
  drawn.color = group->get_color();
  drawn.database = model_->database();
  drawn.nodes.resize(std::min(drawn.nodes.size(), static_cast<std::size_t>(drawn.grid->GetNumberOfPoints())));

  const OBUtil::LabelType node_flag = model_->get_node_label_flag();
  if (node_flag == OBUtil::NodeElementId || node_flag == OBUtil::GlobalId)
    add_node_element_labels(drawn, node_flag == OBUtil::GlobalId);
  else if (node_flag != OBUtil::NoLabel)
    add_node_labels(drawn);

  auto elements = handles_in<1>(drawn.grid->GetCellData(), "ElemIds");
  elements.resize(std::min(elements.size(), static_cast<std::size_t>(drawn.grid->GetNumberOfCells())));
  if (elements.empty()) return;
  std::vector<Tarn::ElementType> types;
  OB::get_element_types(static_cast<int>(elements.size()), elements.data(), types, drawn.database);
  std::array<ElementsOfKind, kinds> by_kind;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (types[i] >= kinds) continue;
    by_kind[types[i]].cells.push_back(static_cast<vtkIdType>(i));
    by_kind[types[i]].elements.push_back(elements[i]);
  }
  for (unsigned kind = Tarn::OneNode; kind < kinds; ++kind) {
    const OBUtil::LabelType flag = model_->get_element_label_flag(static_cast<Tarn::ElementType>(kind));
    if (flag != OBUtil::NoLabel && !by_kind[kind].cells.empty())
      add_element_labels(drawn, by_kind[kind], flag == OBUtil::GlobalId);
  }
  if (with_adjacent_edges && model_->get_element_label_flag(Tarn::Edge) != OBUtil::NoLabel)
    add_adjacent_edge_labels(drawn, by_kind[Tarn::Tri], by_kind[Tarn::Quad]);
}

void GMeshLabels::add_node_labels(const Drawn& drawn) {
  std::vector<int> ids;
  OB::get_node_ids(drawn.nodes.size(), drawn.nodes.data(), ids, drawn.database);
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    double point[3];
    drawn.grid->GetPoints()->GetPoint(static_cast<vtkIdType>(i), point);
    add_label(ids[i], point, drawn.color);
  }
}

// What the database knows of a node besides its id is known of the element on it.
void GMeshLabels::add_node_element_labels(const Drawn& drawn, bool global) {
  for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
    Tarn::Handle<1> element;
    drawn.database->get_elements_on_nodes(1, 1, &drawn.nodes[i], &element);
    if (element.value == 0) continue;
    int id = 0;
    bool has_id = !global;
    if (global)
      drawn.database->get_element_global_id(element, &id, &has_id);
    else
      drawn.database->get_element_id(element, &id);
    if (!has_id) continue;
    double point[3];
    drawn.grid->GetPoints()->GetPoint(static_cast<vtkIdType>(i), point);
    add_label(id, point, drawn.color);
  }
}

void GMeshLabels::add_element_labels(const Drawn& drawn, ElementsOfKind& of_kind, bool global) {
  const std::size_t count = of_kind.elements.size();
  std::vector<int> ids;
  std::vector<char> has_id;
  if (global)
    OB::get_global_element_ids(count, of_kind.elements.data(), ids, has_id, drawn.database);
  else
    OB::get_element_ids(count, of_kind.elements.data(), ids, drawn.database);
  vtkNew<vtkIdList> scratch;
  for (std::size_t i = 0; i < count; ++i) {
    double centre[3];
    if (global && !has_id[i]) continue;
    if (centre_of(drawn.grid, of_kind.cells[i], scratch, centre)) add_label(ids[i], centre, drawn.color);
  }
}

// Faces have no edges of their own in the grid: a group of them for the moment has.
void GMeshLabels::add_adjacent_edge_labels(const Drawn& drawn, const ElementsOfKind& triangles,
                                           const ElementsOfKind& quadrilaterals) {
  if (triangles.elements.empty() && quadrilaterals.elements.empty()) return;
  MeshVector mesh;
  std::vector<Tarn::Handle<1>>& edges = mesh.elements[Tarn::Edge];
  OB::get_edges_adjacent_to_elements(triangles.elements, edges, drawn.database);
  OB::get_edges_adjacent_to_elements(quadrilaterals.elements, edges, drawn.database);
  mesh.sort_unique();
  GMeshGroup group;
  group.set_mesh(nullptr, mesh, model_);
  group.set_color(drawn.color);
  add_own_labels(&group, false);
}
