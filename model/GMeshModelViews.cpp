// What the model draws with: the settings, and the props made from them. The registry is in GMeshModel.cpp.

#include "model/GMeshModel.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPlane.h>
#include <vtkProperty.h>

#include <algorithm>

namespace {

/// Places in a data group's list of data objects.
enum Part : int { SurfacePart = 0, EdgePart = 1, NodePart = 2 };

/// Pixels of a node of size 1.
constexpr float pixels_per_point_size = 6.0f;

const TovanColor no_color;

bool draws_wire(OBUtil::RenderMode mode) { return mode < OBUtil::Shaded; }

void set_keys(vtkActor* actor, OBUtil::RenderMode mode) {
  vtkNew<vtkInformation> keys;
  keys->Set(GModel::RENDER_MODE(), mode);
  actor->SetPropertyKeys(keys);
}

vtkSmartPointer<vtkMapper> add_mapper(vtkActor* actor, vtkDataObject* data, GView* view, bool scalar_vis) {
  vtkSmartPointer<vtkMapper> mapper = GModel::create_mapper(data, view);
  actor->SetMapper(mapper);
  mapper->SetScalarVisibility(scalar_vis);
  return mapper;
}

/// Calls `change` with the one prop that our factories make, in every view of the data group's part.
template <class Change> void change_props(GMeshDataGroup* group, Part part, GModel::ViewProps& views, Change change) {
  GModel::set_datagroup_attributes(group, part, views, [change](GView*, PropList& props) {
    if (!props.empty()) change(props.front().Get());
  });
}

void change_visibility(bool on, GMeshDataGroup* group, Part part, GModel::ViewProps& views) {
  change_props(group, part, views, [on](vtkProp* prop) { prop->SetVisibility(on); });
}

void change_scalar_visibility(bool on, GMeshDataGroup* group, Part part, GModel::ViewProps& views) {
  change_props(group, part, views, [on](vtkProp* prop) {
    auto* actor = vtkActor::SafeDownCast(prop);
    if (actor && actor->GetMapper()) actor->GetMapper()->SetScalarVisibility(on);
  });
}

} // namespace

void GMeshModel::set_initial_looks() {
  for (vtkProperty* property : {surface_flat_.Get(), surface_smooth_.Get(), edge_prop_.Get(), node_prop_.Get()})
    property->SetPointSize(pixels_per_point_size);
  surface_flat_->SetInterpolationToFlat();

  edge_prop_->LightingOff();
  edge_prop_->SetAmbient(1.0);
  edge_prop_->SetDiffuse(0.0);
  edge_prop_->SetSpecular(0.0);
  edge_prop_->SetRepresentationToWireframe();
  edge_prop_->SetColor(0, 0, 0);

  node_prop_->LightingOff();
  node_prop_->SetRepresentationToPoints();
  node_prop_->SetColor(0, 0, 0);
}

// ------------------------------------------------------------------------------------------ display of the model

void GMeshModel::set_render_mode(OBUtil::RenderMode mode) {
  if (mode == get_render_mode()) return;
  GModel::set_render_mode(mode);
  set_surface_opacity(mode == OBUtil::Translucent ? opacity_ : 1.0);
  set_render_mode(mode, vertex_color_data_group_.get(), view_props_);
  set_render_mode(mode, plain_data_group_.get(), view_props_);
  set_render_mode(mode, scalar_data_group_.get(), view_props_);
  set_render_mode(mode, node_vis_data_group_.get(), view_props_);
}

void GMeshModel::set_opacity(double o) {
  opacity_ = std::max(0.0, std::min(1.0, o));
  if (get_render_mode() == OBUtil::Translucent) set_surface_opacity(opacity_);
}

void GMeshModel::set_surface_opacity(double opacity) {
  surface_flat_->SetOpacity(opacity);
  surface_smooth_->SetOpacity(opacity);
}

double GMeshModel::get_opacity() { return opacity_; }

void GMeshModel::set_edge_vis(bool on) {
  if (on == edge_vis_) return;
  edge_vis_ = on;
  set_edge_vis(on, node_vis_data_group_.get(), view_props_);
  set_edge_vis(on, vertex_color_data_group_.get(), view_props_);
  set_edge_vis(on, plain_data_group_.get(), view_props_);
  set_edge_vis(on, scalar_data_group_.get(), view_props_);
}

bool GMeshModel::get_edge_vis() { return edge_vis_; }

void GMeshModel::set_node_vis(bool on) {
  if (on == node_vis_) return;
  node_vis_ = on;
  // Not the groups whose own node visibility is on: their nodes always show.
  set_node_vis(on, vertex_color_data_group_.get(), view_props_);
  set_node_vis(on, plain_data_group_.get(), view_props_);
  set_node_vis(on, scalar_data_group_.get(), view_props_);
}

bool GMeshModel::get_node_vis() { return node_vis_; }

void GMeshModel::set_line_width(float w) { edge_prop_->SetLineWidth(w); }

float GMeshModel::get_line_width() { return edge_prop_->GetLineWidth(); }

void GMeshModel::set_node_point_size(float s) {
  node_prop_->SetPointSize(s * pixels_per_point_size);
  for (vtkProperty* property : {surface_flat_.Get(), surface_smooth_.Get(), edge_prop_.Get()})
    property->SetPointSize(pixels_per_point_size);
}

float GMeshModel::get_node_point_size() { return node_prop_->GetPointSize() / pixels_per_point_size; }

void GMeshModel::set_line_color(TovanColor color) {
  if (color == line_color_) return;
  line_color_ = color;
  const bool is_set = color != no_color;
  if (is_set) {
    double rgb[3];
    color.to_rgb(rgb);
    edge_prop_->SetColor(rgb);
    node_prop_->SetColor(rgb);
  }
  // Not the groups with forced scalars: that is what their scalars are forced for.
  set_edge_node_scalar_vis(!is_set, node_vis_data_group_.get(), view_props_);
  set_edge_node_scalar_vis(!is_set, vertex_color_data_group_.get(), view_props_);
  set_edge_node_scalar_vis(!is_set, plain_data_group_.get(), view_props_);
}

TovanColor GMeshModel::get_line_color() { return line_color_; }

void GMeshModel::set_clipping_plane(vtkPlane* plane) {
  // The smart pointer takes the new plane before it lets go of the old one: they may be the same.
  clipping_plane_ = plane;
  for (auto& record : groups_)
    record.second.group->set_clipping_plane(plane);
}

vtkProperty* GMeshModel::surface_flat_property() { return surface_flat_; }

vtkProperty* GMeshModel::surface_smooth_property() { return surface_smooth_; }

vtkProperty* GMeshModel::edge_property() { return edge_prop_; }

vtkProperty* GMeshModel::node_property() { return node_prop_; }

// ------------------------------------------------------------------------------------------ view props

PropList GMeshModel::create_mesh_tri_view(vtkDataObject* data, GView* view, vtkProperty* front, vtkProperty* back,
                                          OBUtil::RenderMode mode, bool scalar_vis) {
  vtkNew<vtkActor> actor;
  actor->SetProperty(front);
  actor->SetBackfaceProperty(back);
  set_keys(actor, mode);
  // Surfaces give way, so that edges and nodes on them show whole.
  GModel::set_polygon_offset(add_mapper(actor, data, view, scalar_vis), 1.0, 1.0);
  return {actor};
}

PropList GMeshModel::create_mesh_edge_view(vtkDataObject* data, GView* view, vtkProperty* prop, vtkProperty* back,
                                           bool visible, bool scalar_vis) {
  vtkNew<vtkActor> actor;
  actor->SetVisibility(visible);
  actor->SetPickable(0);
  actor->SetProperty(prop);
  actor->SetBackfaceProperty(back);
  set_keys(actor, OBUtil::AsIs);
  add_mapper(actor, data, view, scalar_vis);
  return {actor};
}

PropList GMeshModel::create_mesh_node_view(vtkDataObject* data, GView* view, vtkProperty* prop, vtkProperty* back,
                                           bool visible, bool scalar_vis) {
  vtkNew<vtkActor> actor;
  actor->SetPickable(0);
  actor->SetVisibility(visible);
  actor->SetProperty(prop);
  actor->SetBackfaceProperty(back);
  add_mapper(actor, data, view, scalar_vis);
  return {actor};
}

PropList GMeshModel::create_mesh_tri_view(vtkDataObject* data, GView* view, bool flat) {
  if (mNormalDirectedLighting)
    return create_mesh_tri_view(data, view, surface_normal_front_property(), surface_normal_back_property(),
                                get_render_mode(), false);
  return create_mesh_tri_view(data, view, flat ? surface_flat_ : surface_smooth_, nullptr, get_render_mode(), true);
}

PropList GMeshModel::create_mesh_edge_view(vtkDataObject* data, GView* view, bool visible, bool scalar_vis) {
  if (mNormalDirectedLighting)
    return create_mesh_edge_view(data, view, curve_normal_property(), nullptr, visible, false);
  return create_mesh_edge_view(data, view, edge_prop_, nullptr, visible, scalar_vis);
}

PropList GMeshModel::create_mesh_node_view(vtkDataObject* data, GView* view, bool visible, bool scalar_vis) {
  if (mNormalDirectedLighting)
    return create_mesh_node_view(data, view, curve_normal_property(), nullptr, visible, false);
  return create_mesh_node_view(data, view, node_prop_, nullptr, visible, scalar_vis);
}

void GMeshModel::set_render_mode(OBUtil::RenderMode mode, GMeshDataGroup* group, ViewProps& views) {
  change_props(group, SurfacePart, views, [mode](vtkProp* prop) {
    vtkInformation* keys = prop->GetPropertyKeys();
    if (keys && keys->Has(RENDER_MODE())) keys->Set(RENDER_MODE(), mode);
  });
  for (GDataGroup* each : group->all_groups())
    if (auto* meshes = dynamic_cast<GMeshDataGroup*>(each)) meshes->set_wire(draws_wire(mode));
}

void GMeshModel::set_edge_node_scalar_vis(bool on, GMeshDataGroup* group, ViewProps& views) {
  change_scalar_visibility(on, group, EdgePart, views);
  change_scalar_visibility(on, group, NodePart, views);
}

void GMeshModel::set_edge_vis(bool on, GMeshDataGroup* group, ViewProps& views) {
  change_visibility(on, group, EdgePart, views);
}

void GMeshModel::set_node_vis(bool on, GMeshDataGroup* group, ViewProps& views) {
  change_visibility(on, group, NodePart, views);
}

// ------------------------------------------------------------------------------------------ into and out of the views

GMeshDataGroup* GMeshModel::data_group_of(GMeshGroup* group) const {
  if (group->get_node_visibility()) return node_vis_data_group_.get();
  if (group->get_force_scalars()) return scalar_data_group_.get();
  if (group->get_color_type() == GMeshGroup::VertexColors) return vertex_color_data_group_.get();
  return plain_data_group_.get();
}

void GMeshModel::add_mesh_group(GMeshGroup* group) {
  const bool line_color_unset = line_color_ == no_color;
  const bool flat = group->get_color_type() != GMeshGroup::VertexColors;
  GMeshDataGroup* const data_group = data_group_of(group);
  // A mesh replaced while hidden is in view already, perhaps in another data group: it would be drawn in both.
  const auto shown = shown_in_.find(group);
  if (shown != shown_in_.end() && shown->second != data_group) remove_mesh_group(group);
  shown_in_[group] = data_group;
  const BlockList blocks = data_group->add_entity(group);
  if (blocks.empty()) return; // the parts exist and will show the new member at their next update
  add_part(blocks[SurfacePart],
           [this, flat](vtkDataObject* data, GView* view) { return create_mesh_tri_view(data, view, flat); });
  add_part(blocks[EdgePart],
           [this, visible = edge_vis_, scalar_vis = line_color_unset](vtkDataObject* data, GView* view) {
             return create_mesh_edge_view(data, view, visible, scalar_vis);
           });
  add_part(blocks[NodePart], [this, own_nodes = group->get_node_visibility(),
                              scalar_vis = line_color_unset](vtkDataObject* data, GView* view) {
    return create_mesh_node_view(data, view, own_nodes || node_vis_, scalar_vis);
  });
}

void GMeshModel::remove_mesh_group(GMeshGroup* group) {
  // The one that it entered: what selects the data group may have changed since.
  const auto shown = shown_in_.find(group);
  if (shown == shown_in_.end()) return;
  GMeshDataGroup* const data_group = shown->second;
  shown_in_.erase(shown);
  for (const auto& blocks : data_group->remove_entity(group))
    remove_part(blocks);
}
