// The registry of meshes by owner, and the routing of changes. The views are in GMeshModelViews.cpp, the labels in
// GMeshModelLabels.cpp.

#include "model/GMeshModel.h"

#include "group/GMeshGroup.h"
#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"
#include "model/GMeshDataGroup.h"

#include <vtkDataObject.h>
#include <vtkPlane.h>
#include <vtkProperty.h>

#include <algorithm>

namespace {

constexpr std::uint32_t any_dimension = 0xffffffffu;
constexpr int first_kind = 1;
constexpr int kinds = 10;

bool has_colors(const std::vector<TovanColor>& node_colors,
                const std::array<std::vector<TovanColor>, 10>& element_colors) {
  return !node_colors.empty() || std::any_of(element_colors.begin(), element_colors.end(),
                                             [](const std::vector<TovanColor>& colors) { return !colors.empty(); });
}

/// Replaces `nodes` by those of the owner; false when it has none.
bool read_nodes(Tarn::MeshData& db, Tarn::SMeshOwnerType* owner, std::vector<Tarn::Handle<0>>& nodes) {
  Tarn::MeshData::Count count = 0;
  db.get_owner_node_count(owner, &count);
  nodes.assign(count, Tarn::Handle<0>());
  if (count == 0) return false;
  db.get_owner_nodes(owner, &count, 0, nodes.data());
  nodes.resize(count);
  return true;
}

void keep_flagged(Tarn::MeshData& db, std::vector<Tarn::Handle<0>>& nodes) {
  std::vector<char> flags(nodes.size(), 0);
  db.get_node_flags(nodes.size(), nodes.data(), flags.data());
  std::size_t kept = 0;
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (flags[i]) nodes[kept++] = nodes[i];
  nodes.resize(kept);
}

/// Leaves lists alone that the owner has nothing for.
void read_elements(Tarn::MeshData& db, Tarn::SMeshOwnerType* owner, std::uint32_t dimension, MeshVector& out) {
  for (int kind = first_kind; kind < kinds; ++kind) {
    const auto type = static_cast<Tarn::ElementType>(kind);
    if (dimension != any_dimension &&
        static_cast<std::uint32_t>(MDBDefines::TarnTopologicalDimension(type)) != dimension)
      continue;
    Tarn::MeshData::Count count = 0;
    db.get_owner_element_count(owner, type, &count);
    if (count == 0) continue;
    std::vector<Tarn::Handle<1>>& elements = out.elements[kind];
    elements.assign(count, Tarn::Handle<1>());
    db.get_owner_elements(owner, type, &count, elements.data());
    elements.resize(count);
  }
}

} // namespace

GMeshModel::GMeshModel(Tarn::MeshData* database)
    : plain_data_group_(std::make_unique<GMeshDataGroup>(false)),
      vertex_color_data_group_(std::make_unique<GMeshDataGroup>(false)),
      node_vis_data_group_(std::make_unique<GMeshDataGroup>(false)),
      scalar_data_group_(std::make_unique<GMeshDataGroup>(false)), mesh_data_(database) {
  set_initial_looks();
}

GMeshModel::~GMeshModel() { remove_all_meshes(); }

Tarn::MeshData* GMeshModel::database() const { return mesh_data_; }

// ------------------------------------------------------------------------------------------ meshes

void GMeshModel::add_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, TovanColor color, float shrink,
                          bool force_scalars) {
  if (mesh.empty()) return;
  auto group = std::make_unique<GMeshGroup>();
  group->set_shrink_factor(shrink);
  group->set_color(color);
  group->set_force_scalars(force_scalars);
  add_record(owner, mesh, std::move(group));
}

void GMeshModel::add_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, TovanColor color,
                          const std::vector<TovanColor>& node_colors_list,
                          const std::array<std::vector<TovanColor>, 10>& element_colors_by_type,
                          const std::map<Tarn::Handle<0>, TovanColor>& node_colors, float shrink) {
  if (mesh.empty()) return;
  auto group = std::make_unique<GMeshGroup>();
  group->set_shrink_factor(shrink);
  group->set_color(color);
  if (has_colors(node_colors_list, element_colors_by_type))
    group->set_cell_color_array(node_colors_list, element_colors_by_type);
  else if (!node_colors.empty())
    group->set_vertex_color_array(node_colors);
  add_record(owner, mesh, std::move(group));
}

void GMeshModel::add_record(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, std::unique_ptr<GMeshGroup> group) {
  group->set_mesh(owner, mesh, this);
  GMeshGraphics record;
  record.group = group.get();
  try {
    add_mesh_group(group.get());
    if (any_label_flag_on()) create_label_object(record);
    groups_.emplace(owner, record);
  } catch (...) { // a host's database threw: nothing of the mesh stays
    remove_mesh_group(group.get());
    destroy_label_object(record);
    throw;
  }
  group.release();
  if (clipping_plane_) record.group->set_clipping_plane(clipping_plane_);
}

void GMeshModel::add_mesh_unique(const MeshVector& mesh, Tarn::SMeshOwnerType* owner) {
  if (mesh.empty()) return;
  auto record = first_record(owner);
  if (record == groups_.end()) {
    add_record(owner, mesh, std::make_unique<GMeshGroup>());
    return;
  }
  GMeshGroup* group = record->second.group;
  remove_mesh_group(group);
  try {
    group->set_mesh(owner, mesh, this);
  } catch (...) { // a host's database threw: what is shown of the mesh stays in view
    add_mesh_group(group);
    throw;
  }
  add_mesh_group(group);
  if (any_label_flag_on()) create_label_object(record->second);
  if (clipping_plane_) group->set_clipping_plane(clipping_plane_);
}

void GMeshModel::remove_mesh(Tarn::SMeshOwnerType* owner) {
  const auto record = first_record(owner);
  if (record != groups_.end()) erase_record(record);
  tell_groups(owner, [owner](GMeshGroup* group) { group->notify_mesh_deleted(owner); });
}

bool GMeshModel::remove_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh) {
  // A copy, because callers hand in what a group shows, and that group may be deleted on the way.
  const MeshVector unwanted = mesh;
  bool removed = false;
  auto record = first_record(owner);
  while (record != groups_.end() && record->first == owner) {
    GMeshGroup* group = record->second.group;
    const bool shrank = group->remove_mesh(unwanted);
    removed = removed || shrank;
    if (shrank && group->get_mesh().empty())
      record = erase_record(record);
    else
      ++record;
  }
  return removed;
}

template <class Change> void GMeshModel::tell_groups(Tarn::SMeshOwnerType* owner, Change change) {
  // On a copy, because groups leave the registry while they are told. Those that stopped observing and died are still
  // there: they go now.
  auto [entry, end] = owner_registry_.equal_range(owner);
  std::vector<Registration> registered;
  while (entry != end) {
    if (!get_back_pointer(entry->second.life)) {
      entry = owner_registry_.erase(entry);
      continue;
    }
    registered.push_back(entry->second);
    ++entry;
  }
  for (const Registration& each : registered)
    if (get_back_pointer(each.life)) change(each.group);
}

GMeshGroup* GMeshModel::get_mesh(Tarn::SMeshOwnerType* owner) {
  const auto record = first_record(owner);
  return record == groups_.end() ? nullptr : record->second.group;
}

void GMeshModel::clear() {
  remove_all_meshes();
  GModel::clear();
}

void GMeshModel::remove_all_meshes() {
  while (!groups_.empty())
    remove_mesh(groups_.begin()->first);
}

GMeshModel::Records::iterator GMeshModel::first_record(Tarn::SMeshOwnerType* owner) {
  const auto record = groups_.lower_bound(owner);
  return record != groups_.end() && record->first == owner ? record : groups_.end();
}

GMeshModel::Records::iterator GMeshModel::erase_record(Records::iterator record) {
  remove_mesh_group(record->second.group);
  delete record->second.group;
  destroy_label_object(record->second);
  return groups_.erase(record);
}

// ------------------------------------------------------------------------------------------ one owner

void GMeshModel::set_color(Tarn::SMeshOwnerType* owner, TovanColor color) {
  if (GMeshGroup* group = get_mesh(owner)) group->set_color(color);
}

void GMeshModel::set_visibility(Tarn::SMeshOwnerType* owner, bool vis) {
  const auto record = first_record(owner);
  if (record == groups_.end()) return;
  GMeshGroup* group = record->second.group;
  if (group->get_visibility() == vis) return;
  group->set_visibility(vis);
  if (any_label_flag_on()) change_label_visibility(record->second, vis);
  if (vis)
    add_mesh_group(group);
  else
    remove_mesh_group(group);
}

bool GMeshModel::get_visibility(Tarn::SMeshOwnerType* owner) {
  const GMeshGroup* group = get_mesh(owner);
  return group && group->get_visibility();
}

void GMeshModel::reset_entity_visibility() {
  for (auto& record : groups_) {
    record.second.group->set_visibility(true);
    if (any_label_flag_on()) create_label_object(record.second);
  }
}

void GMeshModel::set_node_vis(Tarn::SMeshOwnerType* owner, bool vis) {
  GMeshGroup* group = get_mesh(owner);
  if (!group || group->get_node_visibility() == vis) return;
  // The flag selects the data group, so the group leaves under the old value and enters under the new one.
  if (group->get_visibility()) remove_mesh_group(group);
  group->set_node_visibility(vis);
  if (group->get_visibility()) add_mesh_group(group);
}

bool GMeshModel::get_node_vis(Tarn::SMeshOwnerType* owner) {
  const GMeshGroup* group = get_mesh(owner);
  return group && group->get_node_visibility();
}

void GMeshModel::get_mesh_to_draw(Tarn::SMeshOwnerType* owner, MeshVector& out) {
  if (!owner) return;
  if (read_nodes(*mesh_data_, owner, out.nodes)) keep_flagged(*mesh_data_, out.nodes);
  std::uint32_t dimension = any_dimension;
  mesh_data_->get_owner_dimension(owner, &dimension);
  read_elements(*mesh_data_, owner, dimension, out);
  // Nodes are all that an owner at a vertex has, so they are drawn whatever their flags.
  if (dimension == 0) read_nodes(*mesh_data_, owner, out.nodes);
}

// ------------------------------------------------------------------------------------------ changes

void GMeshModel::update_mesh_modified(Tarn::SMeshOwnerType* owner) {
  tell_groups(owner, [](GMeshGroup* group) { group->notify_mesh_modified(); });
}

void GMeshModel::update_mesh_transformed(Tarn::SMeshOwnerType* owner) {
  tell_groups(owner, [](GMeshGroup* group) { group->notify_mesh_transformed(); });
}

void GMeshModel::register_owner(GMeshGroup* group, Tarn::SMeshOwnerType* owner) {
  const auto life = vtkSmartPointer<vtkDataObject>::New();
  set_back_pointer(life, group);
  owner_registry_.emplace(owner, Registration{group, life});
}

void GMeshModel::unregister_owner(GMeshGroup* group, Tarn::SMeshOwnerType* owner) {
  auto [entry, end] = owner_registry_.equal_range(owner);
  while (entry != end) {
    if (entry->second.group == group)
      entry = owner_registry_.erase(entry);
    else
      ++entry;
  }
}

void GMeshModel::update_parts() {
  plain_data_group_->update_all(nullptr);
  vertex_color_data_group_->update_all(nullptr);
  node_vis_data_group_->update_all(nullptr);
  scalar_data_group_->update_all(nullptr);
}
