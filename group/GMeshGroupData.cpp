// The data sets of a group: when they are rebuilt, and from what.

#include "group/EntityColors.h"
#include "group/GMeshGroup.h"
#include "group/MeshSkin.h"
#include "group/SequentialFilter.h"
#include "group/ShrunkGrid.h"
#include "group/Surface.h"
#include "group/VolumeGrid.h"
#include "mesh/database/MeshClipper.h"
#include "model/GNodeGlypher.h"
#include "platform/base/GExtractEdges.h"
#include "platform/base/GModel.h"
#include "platform/util/TovanVector.h"

#include <vtkCellData.h>
#include <vtkFieldData.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace {

// The entries that are not flagged, and where they stood. Entries beyond the flags count as not flagged.
template <class List>
void keep_unflagged(const List& list, const std::vector<bool>& flags, List& kept, std::vector<int>& positions) {
  kept.clear();
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (i < flags.size() && flags[i]) continue;
    kept.push_back(list[i]);
    positions.push_back(static_cast<int>(i));
  }
}

/// What lies on the near side of a plane.
struct ClippedMesh {
  MeshVector mesh;
  std::vector<int> node_positions;
  std::vector<int> element_positions[10];
};

ClippedMesh clip(const MeshVector& mesh, vtkPlane* plane, Tarn::MeshData* database) {
  MeshClipper clipper(database);
  for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    clipper.setMesh(static_cast<Tarn::ElementType>(type), mesh.elements[type]);
  clipper.setNodes(mesh.nodes);
  clipper.setPlane(TovanVector(plane->GetOrigin()), TovanVector(plane->GetNormal()));
  clipper.clipMesh();
  ClippedMesh clipped;
  for (unsigned type = Tarn::None; type <= Tarn::Superelement; ++type)
    keep_unflagged(mesh.elements[type], clipper.getClippedFlag(static_cast<Tarn::ElementType>(type)),
                   clipped.mesh.elements[type], clipped.element_positions[type]);
  keep_unflagged(mesh.nodes, clipper.getClippedNodesFlag(), clipped.mesh.nodes, clipped.node_positions);
  return clipped;
}

vtkSmartPointer<vtkPolyData> make_edges(vtkUnstructuredGrid* grid, bool wire) {
  vtkNew<GExtractEdges> filter;
  filter->pass_lines(wire);
  filter->pass_vertices(wire);
  return run_sequential(filter.Get(), grid);
}

vtkSmartPointer<vtkPolyData> make_vertices(vtkUnstructuredGrid* grid, bool wire) {
  vtkNew<GNodeGlypher> filter;
  filter->pass_vertices(wire);
  return run_sequential(filter.Get(), grid);
}

} // namespace

vtkUnstructuredGrid* GMeshGroup::get_2d_data() {
  update_mesh();
  if (!grid_is_stale()) {
    if (color_time_.GetMTime() > grid_->GetMTime()) update_color_array();
    return grid_;
  }
  if (clipping_plane_ && database())
    build_clipped_grid();
  else
    build_whole_grid();
  update_color_array();
  return grid_;
}

bool GMeshGroup::grid_is_stale() const {
  const vtkMTimeType built = grid_->GetMTime();
  return mesh_time_.GetMTime() > built || (clipping_plane_ && clipping_plane_->GetMTime() > built);
}

void GMeshGroup::build_whole_grid() {
  filtered_mesh_ = MeshVector();
  filtered_is_mesh_ = true;
  filtered_time_.Modified();
  build_grid(mesh_, nullptr, nullptr);
}

void GMeshGroup::build_clipped_grid() {
  ClippedMesh clipped = clip(mesh_, clipping_plane_, database());
  filtered_mesh_ = std::move(clipped.mesh);
  filtered_is_mesh_ = false;
  filtered_time_.Modified();
  build_grid(filtered_mesh_, &clipped.node_positions, &clipped.element_positions);
}

void GMeshGroup::build_grid(const MeshVector& mesh, const std::vector<int>* node_positions,
                            const std::vector<int> (*element_positions)[10]) {
  if (shrink_factor_ == 1.0)
    add_mesh_to_data_set(mesh, node_positions, element_positions);
  else
    add_shrink_mesh_to_data_set(mesh, node_positions, element_positions);
}

void GMeshGroup::add_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                      const std::vector<int> (*element_positions)[10]) {
  const EntityColors entity_colors = colors();
  if (database()) {
    const MeshSkin skin(database(), mesh, element_positions);
    grid_ = make_volume_grid({database(), mesh, node_positions, element_positions, entity_colors}, skin.sides());
  } else {
    // Without a model nobody can tell where the entities are.
    grid_ = make_volume_grid({nullptr, MeshVector(), nullptr, nullptr, entity_colors}, {});
  }
  GModel::set_back_pointer(grid_, this);
}

void GMeshGroup::add_shrink_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>*,
                                             const std::vector<int> (*element_positions)[10]) {
  const EntityColors entity_colors = colors();
  const MeshVector nothing;
  fill_shrunk_grid({database(), database() ? mesh : nothing, element_positions, entity_colors, shrink_factor_}, grid_);
  GModel::set_back_pointer(grid_, this);
}

void GMeshGroup::update_color_array() {
  if (!grid_ || color_type_ != SingleColor) return;
  grid_->GetCellData()->SetScalars(make_color_array(grid_->GetNumberOfCells(), color_));
  grid_->GetPointData()->SetScalars(make_color_array(grid_->GetNumberOfPoints(), color_));
  grid_->Modified();
}

vtkPolyData* GMeshGroup::get_tri_data() {
  return refreshed(tri_data_, [this](vtkUnstructuredGrid* grid) {
    return color_type_ == VertexColors ? make_smooth_surface(grid) : make_surface(grid);
  });
}

vtkPolyData* GMeshGroup::get_wire_data() {
  return refreshed(wire_data_, [](vtkUnstructuredGrid* grid) { return make_edges(grid, true); });
}

vtkPolyData* GMeshGroup::get_edge_data() {
  return refreshed(edge_data_, [](vtkUnstructuredGrid* grid) { return make_edges(grid, false); });
}

vtkPolyData* GMeshGroup::get_node_data() {
  return refreshed(node_data_, [](vtkUnstructuredGrid* grid) { return make_vertices(grid, false); });
}

vtkPolyData* GMeshGroup::get_wire_node_data() {
  return refreshed(wire_node_data_, [](vtkUnstructuredGrid* grid) { return make_vertices(grid, true); });
}

// Views hold the data set: its content changes, it stays.
template <class Make> vtkPolyData* GMeshGroup::refreshed(vtkPolyData* data, Make make) {
  vtkUnstructuredGrid* grid = get_2d_data();
  if (grid->GetMTime() <= data->GetMTime()) return data;
  const vtkSmartPointer<vtkPolyData> content = make(grid);
  GModel::set_back_pointer(data, nullptr);
  data->ShallowCopy(content);
  // Field arrays of the input must not travel along.
  data->SetFieldData(vtkNew<vtkFieldData>());
  GModel::set_back_pointer(data, this);
  return data;
}
