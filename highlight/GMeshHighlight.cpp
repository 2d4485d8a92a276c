#include "highlight/GMeshHighlight.h"

#include "group/GMeshGroup.h"
#include "highlight/GMeshHighlightProperties.h"
#include "mesh/MeshQueries.h"
#include "model/GMeshDataGroup.h"
#include "model/GMeshModel.h"
#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "platform/base/EntitySelection.h"
#include "platform/base/GPickerBase.h"
#include "platform/util/TovanColorTable.h"

#include <vtkActor.h>
#include <vtkMapper.h>
#include <vtkProperty.h>

#include <vector>

namespace {

// The blocks of a data group that a highlight draws; the surface, block 0, it does not.
constexpr std::size_t edge_block = 1;
constexpr std::size_t node_block = 2;

PropList highlight_props(const PropList& props) {
  PropList kept;
  for (const auto& prop : props) {
    vtkActor* actor = vtkActor::SafeDownCast(prop);
    if (!actor) continue;
    actor->SetPickable(0);
    if (actor->GetProperty()->GetRepresentation() == VTK_SURFACE) continue;
    actor->GetMapper()->SetScalarVisibility(0);
    // In front of the mesh's own edges and nodes, on which it lies.
    actor->GetMapper()->SetRelativeCoincidentTopologyLineOffsetParameters(0.0, -2.0);
    actor->GetMapper()->SetRelativeCoincidentTopologyPointOffsetParameter(-2.0);
    kept.push_back(prop);
  }
  return kept;
}

std::unique_ptr<GMeshDataGroup> make_data_group() { return std::make_unique<GMeshDataGroup>(true); }

// Records of all entities of a set, in order; the caller gives each up.
std::vector<GPicked::PickedEntity*> make_records(const MeshVector& mesh, Tarn::MeshData* db) {
  std::vector<GPicked::PickedEntity*> records;
  for (const auto node : mesh.nodes)
    records.push_back(PickedNode::New(node, db));
  for (std::size_t type = 1; type < mesh.elements.size(); ++type)
    for (const auto element : mesh.elements[type])
      records.push_back(PickedElement::New(element, db));
  return records;
}

} // namespace

GMeshHighlight::GMeshHighlight(GMeshModel* model, GMeshHighlightProperties* properties)
    : model_(model), edge_highlight_property_(vtkProperty::New()),
      highlight_color_(TovanColorTable::get_highlight_color()), properties_(properties) {
  for (Highlighted* set : {&picked_, &highlighted_, &pre_selected_})
    set->data_group = make_data_group();
  double rgb[3];
  highlight_color_.to_rgb(rgb);
  edge_highlight_property_->SetColor(rgb);
  edge_highlight_property_->SetLineWidth(3.0);
  edge_highlight_property_->SetPointSize(6.0);
  edge_highlight_property_->SetRepresentationToWireframe();
  edge_highlight_property_->SetAmbient(1.0);
  edge_highlight_property_->SetDiffuse(0.0);
  edge_highlight_property_->SetSpecular(0.0);
}

GMeshHighlight::~GMeshHighlight() {
  observe_selections(false);
  edge_highlight_property_->Delete();
}

void GMeshHighlight::observe_selections(bool on) {
  if (on == observing_) return;
  observing_ = on;
  if (on) {
    GPickerBase::add_pick_observer(this);
    GPickerBase::add_pre_selection_observer(this);
  } else {
    GPickerBase::remove_pick_observer(this);
    GPickerBase::remove_pre_selection_observer(this);
  }
}

bool GMeshHighlight::highlight_mesh(const MeshVector& mesh) {
  unhighlight_mesh(highlighted_.group.get());
  GMeshGroup* group = nullptr;
  highlight_mesh(mesh, highlighted_.mesh, group);
  highlighted_.group.reset(group);
  highlight_mesh(group);
  return true;
}

bool GMeshHighlight::unhighlight_mesh(const MeshVector& mesh) {
  unhighlight_mesh(highlighted_.group.get());
  GMeshGroup* group = nullptr;
  unhighlight_mesh(mesh, highlighted_.mesh, group);
  highlighted_.group.reset(group);
  highlight_mesh(group);
  return true;
}

bool GMeshHighlight::highlight_mesh(const MeshVector& mesh, MeshVector& set, GMeshGroup*& group) {
  set.append(mesh);
  set.sort_unique();
  group = make_group(set);
  return true;
}

bool GMeshHighlight::unhighlight_mesh(const MeshVector& mesh, MeshVector& set, GMeshGroup*& group) {
  MeshVector gone = mesh;
  gone.sort_unique();
  set.remove(gone);
  group = make_group(set);
  return true;
}

bool GMeshHighlight::highlight_mesh(GMeshGroup* group) {
  if (!group) return false;
  add_to_views(*highlighted_.data_group, group, edge_highlight_property_);
  return true;
}

bool GMeshHighlight::unhighlight_mesh(GMeshGroup* group) {
  if (!group) return false;
  remove_from_views(*highlighted_.data_group, group);
  return true;
}

bool GMeshHighlight::select_mesh(GMeshGroup* group) {
  if (!group) return false;
  selected_groups_.insert(group);
  return add_mesh(group);
}

bool GMeshHighlight::unselect_mesh(GMeshGroup* group) {
  if (!group) return false;
  selected_groups_.erase(group);
  return remove_mesh(group);
}

bool GMeshHighlight::set_visibility(GMeshGroup* group, bool visible) {
  if (!group) return false;
  if (selected_groups_.count(group) == 0) return true;
  return visible ? add_mesh(group) : remove_mesh(group);
}

void GMeshHighlight::clear_non_picked() { empty(highlighted_); }

void GMeshHighlight::clear() {
  clear_non_picked();
  const MeshVector was_picked = picked_.mesh;
  empty(picked_);
  empty(pre_selected_);

  const std::vector<GPicked::PickedEntity*> records = make_records(was_picked, model_->database());
  for (const auto* record : records)
    GPickerBase::remove_from_possible_selections_list(record);
  if (!records.empty()) GPickerBase::remove_from_picked_list(static_cast<int>(records.size()), records.data());
  GPickerBase::set_pre_selection(EntitySelection());
  for (auto* record : records)
    record->Delete();
  GModel::clear();
}

void GMeshHighlight::update_parts() {
  for (Highlighted* set : {&picked_, &highlighted_, &pre_selected_})
    set->data_group->update_all(nullptr);
}

void GMeshHighlight::set_node_vis(bool visible) {
  if (visible == node_visibility_) return;
  node_visibility_ = visible;
  for (Highlighted* set : {&picked_, &highlighted_, &pre_selected_})
    GMeshModel::set_node_vis(visible, set->data_group.get(), view_props_);
}

bool GMeshHighlight::get_node_vis() { return node_visibility_; }

vtkProperty* GMeshHighlight::edge_highlight_property() { return edge_highlight_property_; }

void GMeshHighlight::notify_picked(int count, const GPicked::PickedEntity* const* entities, const float* const* points,
                                   bool add) {
  clear_non_picked();
  handle_notify(count, entities, points, add, true);
}

void GMeshHighlight::notify_pre_select(const GPicked::PickedEntity* entity, const float* const point, bool add) {
  handle_notify(1, &entity, &point, add, false);
}

PropList GMeshHighlight::create_mesh_edge_view(vtkDataObject* data, GView* view, vtkProperty* property) {
  return highlight_props(GMeshModel::create_mesh_edge_view(data, view, property, nullptr, true, false));
}

PropList GMeshHighlight::create_mesh_node_view(vtkDataObject* data, GView* view, bool show_nodes,
                                               vtkProperty* property) {
  return highlight_props(GMeshModel::create_mesh_node_view(data, view, property, nullptr, show_nodes, false));
}

void GMeshHighlight::handle_notify(int count, const GPicked::PickedEntity* const* entities, const float* const*,
                                   bool add, bool picked) {
  if (!entities) return;
  Highlighted& set = picked ? picked_ : pre_selected_;
  if (!add && set.mesh.empty()) return;
  MeshVector mesh;
  if (!collect(count, entities, mesh)) return;

  if (set.group) remove_from_views(*set.data_group, set.group.get());
  GMeshGroup* group = nullptr;
  if (add)
    highlight_mesh(mesh, set.mesh, group);
  else
    unhighlight_mesh(mesh, set.mesh, group);
  set.group.reset(group);
  if (group)
    add_to_views(*set.data_group, group,
                 picked ? properties_->edge_highlight_property() : properties_->pre_select_property());
}

bool GMeshHighlight::add_mesh(GMeshGroup* group) {
  if (!group) return false;
  add_to_views(*picked_.data_group, group, edge_highlight_property_);
  return true;
}

bool GMeshHighlight::remove_mesh(GMeshGroup* group) {
  if (!group) return false;
  remove_from_views(*picked_.data_group, group);
  return true;
}

bool GMeshHighlight::collect(int count, const GPicked::PickedEntity* const* entities, MeshVector& mesh) const {
  std::vector<Tarn::Handle<1>> elements;
  for (int i = 0; i < count; ++i) {
    const GPicked::PickedEntity* entity = entities[i];
    if (!entity || entity->database() != model_->database()) continue;
    if (const auto* node = dynamic_cast<const PickedNode*>(entity))
      mesh.nodes.push_back(node->node());
    else if (const auto* element = dynamic_cast<const PickedElement*>(entity))
      elements.push_back(element->element());
  }
  OB::breakout_mesh_ents(elements, mesh, model_->database(), nullptr);
  return !mesh.nodes.empty() || !elements.empty();
}

GMeshGroup* GMeshHighlight::make_group(const MeshVector& mesh) {
  if (mesh.empty()) return nullptr;
  auto group = std::make_unique<GMeshGroup>();
  group->set_mesh(nullptr, mesh, model_);
  return group.release();
}

void GMeshHighlight::add_to_views(GMeshDataGroup& data_group, GMeshGroup* group, vtkProperty* property) {
  const BlockList blocks = data_group.add_entity(group);
  if (blocks.empty()) return;
  add_part(blocks[edge_block],
           [property](vtkDataObject* data, GView* view) { return create_mesh_edge_view(data, view, property); });
  add_part(blocks[node_block], [property, show = node_visibility_](vtkDataObject* data, GView* view) {
    return create_mesh_node_view(data, view, show, property);
  });
}

void GMeshHighlight::remove_from_views(GMeshDataGroup& data_group, GMeshGroup* group) {
  for (const auto& block : data_group.remove_entity(group))
    remove_part(block);
}

void GMeshHighlight::empty(Highlighted& set) {
  for (const auto& block : set.data_group->all_blocks())
    remove_part(block);
  set.mesh.clear();
  set.group.reset();
  set.data_group = make_data_group();
}
