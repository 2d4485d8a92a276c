#include "group/GMeshGroup.h"

#include "group/EntityColors.h"
#include "group/GroupCache.h"
#include "mesh/MeshQueries.h"
#include "mesh/database/MeshData.h"
#include "model/GMeshModel.h"

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

using Owners = std::vector<Tarn::SMeshOwnerType*>;

const TovanColor white(255, 255, 255, 255);

void sort_owners(Owners& owners) {
  std::sort(owners.begin(), owners.end(), std::less<>());
  owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
}

void add_owners(Owners some, Owners& owners) {
  sort_owners(some);
  owners.insert(owners.end(), some.begin(), some.end());
}

template <class List> void sort_list(List& list) { std::sort(list.begin(), list.end()); }

// Both lists ascending and without duplicates.
template <class List> void append_common(const List& left, const List& right, List& common) {
  std::set_intersection(left.begin(), left.end(), right.begin(), right.end(), std::back_inserter(common));
}

} // namespace

GMeshGroup::GMeshGroup()
    : color_(white), grid_(vtkSmartPointer<vtkUnstructuredGrid>::New()), tri_data_(vtkSmartPointer<vtkPolyData>::New()),
      wire_data_(vtkSmartPointer<vtkPolyData>::New()), edge_data_(vtkSmartPointer<vtkPolyData>::New()),
      node_data_(vtkSmartPointer<vtkPolyData>::New()), wire_node_data_(vtkSmartPointer<vtkPolyData>::New()) {
  GModel::set_back_pointer(grid_, this);
  for (vtkPolyData* data :
       {tri_data_.Get(), wire_data_.Get(), edge_data_.Get(), node_data_.Get(), wire_node_data_.Get()})
    GModel::set_back_pointer(data, this);
}

GMeshGroup::~GMeshGroup() {
  if (observe_) unregister();
}

void GMeshGroup::unregister() {
  for (Tarn::SMeshOwnerType* owner : owners_)
    model_->unregister_owner(this, owner);
}

// ------------------------------------------------------------------------------------------ entities

void GMeshGroup::set_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, GMeshModel* model) {
  if (observe_) unregister();
  owners_.clear();
  mesh_owner_ = owner;
  model_ = model;
  replace_mesh(mesh);
  mesh_time_.Modified();
  modify_owning_groups();
  if (!observe_) return;
  owners_ = owner ? Owners{owner} : owners_of(mesh_);
  for (Tarn::SMeshOwnerType* registered : owners_)
    model_->register_owner(this, registered);
}

Owners GMeshGroup::owners_of(const MeshVector& mesh) const {
  Owners owners;
  if (!mesh.nodes.empty()) {
    Owners some(mesh.nodes.size());
    database()->get_node_owners(some.size(), mesh.nodes.data(), some.data());
    add_owners(std::move(some), owners);
  }
  for (std::size_t type = 1; type < mesh.elements.size(); ++type) {
    if (mesh.elements[type].empty()) continue;
    Owners some(mesh.elements[type].size());
    database()->get_element_owners(some.size(), mesh.elements[type].data(), some.data());
    add_owners(std::move(some), owners);
  }
  sort_owners(owners);
  return owners;
}

const MeshVector& GMeshGroup::get_mesh() {
  update_mesh();
  return mesh_;
}

const MeshVector& GMeshGroup::get_filtered_mesh() {
  update_mesh();
  return filtered_is_mesh_ ? mesh_ : filtered_mesh_;
}

void GMeshGroup::update_mesh() {
  if (!mesh_dirty_) return;
  mesh_dirty_ = false;
  try {
    rebuild_mesh();
  } catch (...) {
    mesh_dirty_ = true; // a host's database threw: asked again next time
    throw;
  }
}

bool GMeshGroup::empty() const { return mesh_.empty(); }

void GMeshGroup::add_mesh(const GMeshGroup* other) {
  ColorsByHandle colors;
  if (color_type_ == CellColors) colors.add(mesh_, node_colors_, element_colors_);
  if (other->color_type_ == CellColors) colors.add(other->mesh_, other->node_colors_, other->element_colors_);
  keep_filtered_mesh();
  mesh_.append(other->mesh_);
  mesh_.sort_unique();
  if (color_type_ == CellColors) colors.write(mesh_, node_colors_, element_colors_);
  mesh_time_.Modified();
  modify_owning_groups();
}

bool GMeshGroup::remove_mesh(const MeshVector& m) {
  ColorsByHandle colors;
  if (color_type_ == CellColors) colors.add(mesh_, node_colors_, element_colors_);
  keep_filtered_mesh();
  const bool removed = mesh_.remove(m);
  // Removing sorts, so that colours move also when nothing went.
  if (color_type_ == CellColors) colors.write(mesh_, node_colors_, element_colors_);
  if (!removed || mesh_.empty()) return removed;
  mesh_time_.Modified();
  modify_owning_groups();
  return true;
}

GMeshGroup* GMeshGroup::get_group(vtkDataSet* ds) { return dynamic_cast<GMeshGroup*>(GModel::get_back_pointer(ds)); }

Tarn::SMeshOwnerType* GMeshGroup::mesh_owner() const { return mesh_owner_; }
GMeshModel* GMeshGroup::get_model() { return model_; }

Tarn::MeshData* GMeshGroup::database() const { return model_ ? model_->database() : nullptr; }

void GMeshGroup::replace_mesh(MeshVector mesh) {
  if (filtered_is_mesh_) filtered_mesh_ = std::move(mesh_);
  filtered_time_.Modified();
  filtered_is_mesh_ = false;
  mesh_ = std::move(mesh);
}

// The filtered mesh is that of the last build, whatever becomes of the mesh.
void GMeshGroup::keep_filtered_mesh() {
  if (filtered_is_mesh_) filtered_mesh_ = mesh_;
  filtered_time_.Modified();
  filtered_is_mesh_ = false;
}

// ------------------------------------------------------------------------------------------ display

void GMeshGroup::set_visibility(bool on) { visibility_ = on; }
bool GMeshGroup::get_visibility() const { return visibility_; }
void GMeshGroup::set_node_visibility(bool on) { node_visibility_ = on; }
bool GMeshGroup::get_node_visibility() const { return node_visibility_; }
void GMeshGroup::set_force_scalars(bool on) { force_scalars_ = on; }
bool GMeshGroup::get_force_scalars() const { return force_scalars_; }

// Nothing is unregistered from now on; the registry forgets dead groups by itself.
void GMeshGroup::set_dont_observe() { observe_ = false; }

void GMeshGroup::set_color(TovanColor c) {
  color_ = c == TovanColor() ? white : c;
  color_time_.Modified();
  modify_owning_groups();
}

TovanColor GMeshGroup::get_color() { return color_; }
GMeshGroup::ColorType GMeshGroup::get_color_type() { return color_type_; }

void GMeshGroup::set_cell_color_array(const std::vector<TovanColor>& node_colors,
                                      const std::array<std::vector<TovanColor>, 10>& element_colors) {
  color_type_ = CellColors;
  node_colors_ = node_colors;
  element_colors_ = element_colors;
  color_time_.Modified();
  modify_owning_groups();
}

void GMeshGroup::set_vertex_color_array(const std::map<Tarn::Handle<0>, TovanColor>& colors) {
  color_type_ = VertexColors;
  vertex_colors_ = colors;
  color_time_.Modified();
  modify_owning_groups();
}

EntityColors GMeshGroup::colors() const { return {color_type_, color_, node_colors_, element_colors_, vertex_colors_}; }

void GMeshGroup::set_clipping_plane(vtkPlane* plane) {
  clipping_plane_ = plane;
  mesh_time_.Modified();
  modify_owning_groups();
}

void GMeshGroup::set_shrink_factor(float f) {
  double factor = f;
  if (!(factor > 0.1) && !std::isnan(factor)) factor = 0.1f;
  shrink_factor_ = std::min(factor, 1.0); // in this order NaN stays
}

// ------------------------------------------------------------------------------------------ changes of the database

void GMeshGroup::notify_mesh_modified() {
  mesh_dirty_ = true;
  modify_owning_groups();
}

void GMeshGroup::notify_mesh_deleted(Tarn::SMeshOwnerType* owner) {
  if (owner == mesh_owner_) mesh_owner_ = nullptr;
  model_->unregister_owner(this, owner);
  owners_.erase(std::remove(owners_.begin(), owners_.end(), owner), owners_.end());
  mesh_dirty_ = true;
  modify_owning_groups();
}

void GMeshGroup::notify_mesh_transformed() {
  mesh_time_.Modified();
  modify_owning_groups();
}

void GMeshGroup::rebuild_mesh() {
  MeshVector current;
  if (mesh_owner_)
    model_->get_mesh_to_draw(mesh_owner_, current);
  else
    current = what_is_left();
  if (color_type_ == CellColors) {
    ColorsByHandle colors;
    colors.add(mesh_, node_colors_, element_colors_);
    sort_list(current.nodes);
    for (std::size_t type = 1; type < current.elements.size(); ++type)
      sort_list(current.elements[type]);
    colors.write(current, node_colors_, element_colors_);
  }
  replace_mesh(std::move(current));
  mesh_time_.Modified();
}

// Of an explicit set: the entities that its owners still have. It never grows.
MeshVector GMeshGroup::what_is_left() const {
  MeshVector known = mesh_;
  known.sort_unique();
  MeshVector left;
  for (Tarn::SMeshOwnerType* owner : owners_) {
    MeshVector owned;
    model_->get_mesh_to_draw(owner, owned);
    owned.sort_unique();
    append_common(known.nodes, owned.nodes, left.nodes);
    for (std::size_t type = 1; type < known.elements.size(); ++type)
      append_common(known.elements[type], owned.elements[type], left.elements[type]);
  }
  return left;
}

void GMeshGroup::validate() {
  std::vector<int> ids;
  OB::get_node_ids(mesh_.nodes.size(), mesh_.nodes.data(), ids, database());
  for (std::size_t type = 1; type < mesh_.elements.size(); ++type)
    OB::get_element_ids(mesh_.elements[type].size(), mesh_.elements[type].data(), ids, database());
}

vtkTimeStamp& GMeshGroup::MeshTime() { return mesh_time_; }
vtkTimeStamp& GMeshGroup::ColorTime() { return color_time_; }
