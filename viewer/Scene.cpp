#include "viewer/Scene.h"

#include "group/GMeshGroup.h"
#include "model/GMeshModel.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/OwnerCover.h"
#include "viewer/Palette.h"

#include <vtkPlane.h>
#include <vtkProperty.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

// The library counts node sizes in units of this many pixels.
constexpr double node_size_unit = 6;

constexpr double ambient = 0.35;

// Owners that are seen first get the first colours, which differ most.
void choose_colors(std::vector<SceneOwner>& owners) {
  std::size_t next = 0;
  for (const bool visible : {true, false})
    for (SceneOwner& owner : owners)
      if (owner.starts_visible == visible) owner.color = palette_color(next++);
}

std::vector<SceneOwner> list_owners(Tarn::MeshDatabase& database, const std::vector<bool>& covered) {
  std::vector<SceneOwner> owners;
  for (Tarn::SMeshOwnerType* handle : database.owners()) {
    const bool visible = !covered[owners.size()];
    owners.push_back({handle, database.owner_name(handle), TovanColor(), visible});
  }
  choose_colors(owners);
  return owners;
}

// Faces that are turned away from the eye keep enough light for their colour to be told.
void soften_light(GMeshModel& model) {
  for (vtkProperty* property : {model.surface_flat_property(), model.surface_smooth_property()}) {
    property->SetAmbient(ambient);
    property->SetDiffuse(1 - ambient);
  }
}

bool has_elements(const MeshVector& mesh) {
  return std::any_of(mesh.elements.begin() + 1, mesh.elements.end(), [](const auto& list) { return !list.empty(); });
}

std::array<std::vector<TovanColor>, 10> kind_colors(const MeshVector& mesh) {
  std::array<std::vector<TovanColor>, 10> colors;
  for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind)
    colors[kind].assign(mesh.elements[kind].size(), kind_color(static_cast<Tarn::ElementType>(kind)));
  return colors;
}

vtkSmartPointer<vtkPlane> make_plane(const ClipPlane& clip) {
  const double length = std::hypot(clip.normal[0], clip.normal[1], clip.normal[2]);
  const double along = clip.distance / length;
  double unit[3];
  for (int axis = 0; axis < 3; ++axis)
    unit[axis] = clip.normal[axis] / length;
  auto plane = vtkSmartPointer<vtkPlane>::New();
  plane->SetOrigin(unit[0] * along, unit[1] * along, unit[2] * along);
  plane->SetNormal(unit);
  return plane;
}

bool same_plane(const std::optional<ClipPlane>& a, const std::optional<ClipPlane>& b) {
  if (!a || !b) return !a && !b;
  return a->normal == b->normal && a->distance == b->distance;
}

bool same_labels(const LabelOptions& a, const LabelOptions& b) {
  return a.nodes == b.nodes && a.elements == b.elements;
}

bool names_owner(const std::vector<std::string>& names, const SceneOwner& owner) {
  return std::find(names.begin(), names.end(), owner.name) != names.end();
}

} // namespace

Scene::Scene(Tarn::MeshDatabase& database, const DisplayOptions& display)
    : database_(database), model_(std::make_unique<GMeshModel>(&database)), display_(display) {
  // Before any mesh is added: parts keep what was set when they came, for views that open later.
  soften_light(*model_);
  apply(display);
  clip(display.clip);
  std::vector<MeshVector> meshes;
  for (Tarn::SMeshOwnerType* owner : database.owners())
    model_->get_mesh_to_draw(owner, meshes.emplace_back());
  owners_ = list_owners(database, find_covered_owners(database, meshes));
  for (std::size_t i = 0; i < owners_.size(); ++i) {
    add_owner(owners_[i], meshes[i], owners_[i].starts_visible);
    meshes[i] = MeshVector();
  }
  label(display.labels);
}

Scene::~Scene() = default;

Tarn::MeshDatabase& Scene::database() const { return database_; }

GMeshModel& Scene::model() { return *model_; }

const std::vector<SceneOwner>& Scene::owners() const { return owners_; }

void Scene::set_display(const DisplayOptions& display) {
  const bool labels_anew = display.color_by != display_.color_by || !same_labels(display.labels, display_.labels);
  if (display.color_by != display_.color_by) color_by(display.color_by);
  if (display.shrink != display_.shrink) shrink(display.shrink);
  if (!same_plane(display.clip, display_.clip)) clip(display.clip);
  apply(display);
  display_ = display;
  if (labels_anew) label(display.labels);
}

const DisplayOptions& Scene::display() const { return display_; }

std::string Scene::show_owners(const OwnerOptions& options) {
  for (const auto* names : {&options.only, &options.show, &options.hide})
    for (const std::string& name : *names)
      if (std::none_of(owners_.begin(), owners_.end(), [&](const SceneOwner& owner) { return owner.name == name; }))
        return name;
  std::vector<bool> wanted;
  for (const SceneOwner& owner : owners_) {
    const bool before = options.only.empty() ? owner.starts_visible : names_owner(options.only, owner);
    wanted.push_back((before || names_owner(options.show, owner)) && !names_owner(options.hide, owner));
  }
  set_visible(wanted);
  return "";
}

void Scene::set_visible(const std::vector<bool>& wanted) {
  if (wanted == visible()) return;
  for (std::size_t i = 0; i < owners_.size(); ++i)
    model_->set_visibility(owners_[i].handle, wanted[i]);
  label(display_.labels);
}

std::vector<bool> Scene::visible() const {
  std::vector<bool> shown;
  for (std::size_t i = 0; i < owners_.size(); ++i)
    shown.push_back(is_visible(i));
  return shown;
}

bool Scene::is_visible(std::size_t index) const { return model_->get_visibility(owners_[index].handle); }

std::vector<vtkPoints*> Scene::visible_points() {
  std::vector<vtkPoints*> sets;
  for (std::size_t i = 0; i < owners_.size(); ++i) {
    GMeshGroup* const group = is_visible(i) ? model_->get_mesh(owners_[i].handle) : nullptr;
    if (group != nullptr && group->get_2d_data()->GetNumberOfPoints() > 0)
      sets.push_back(group->get_2d_data()->GetPoints());
  }
  return sets;
}

std::string Scene::why_nothing_shows() {
  if (!visible_points().empty()) return "";
  const auto shown = visible();
  const bool any = std::find(shown.begin(), shown.end(), true) != shown.end();
  return any && display_.clip ? "nothing shows: the clipping plane leaves nothing of it"
         : any                ? "nothing shows: there is nothing in the owners shown"
                              : "nothing shows: all owners are hidden";
}

bool Scene::owner_bounds(std::size_t index, std::array<double, 6>& bounds) {
  GMeshGroup* const group = model_->get_mesh(owners_[index].handle);
  if (group == nullptr || group->get_2d_data()->GetNumberOfPoints() == 0) return false;
  group->get_2d_data()->GetBounds(bounds.data());
  return true;
}

void Scene::apply(const DisplayOptions& display) {
  model_->set_opacity(display.opacity);
  model_->set_render_mode(display.render_mode);
  model_->set_line_width(static_cast<float>(display.line_width));
  model_->set_node_point_size(static_cast<float>(display.point_size / node_size_unit));
  model_->set_line_color(display.line_color);
  model_->set_node_vis(display.nodes);
  model_->set_edge_vis(display.edges);
}

void Scene::add_owner(const SceneOwner& owner, const MeshVector& mesh, bool visible) {
  const auto factor = static_cast<float>(has_elements(mesh) ? display_.shrink : 1);
  if (display_.color_by == ColorBy::Kind)
    model_->add_mesh(owner.handle, mesh, owner.color, std::vector<TovanColor>(mesh.nodes.size(), owner.color),
                     kind_colors(mesh), {}, factor);
  else
    model_->add_mesh(owner.handle, mesh, owner.color, factor, false);
  model_->set_visibility(owner.handle, visible);
}

// There is no way back from colours per element but to add the mesh anew.
void Scene::color_by(ColorBy source) {
  display_.color_by = source;
  for (std::size_t i = 0; i < owners_.size(); ++i) {
    const bool visible = is_visible(i);
    MeshVector mesh;
    model_->get_mesh_to_draw(owners_[i].handle, mesh);
    model_->remove_mesh(owners_[i].handle);
    add_owner(owners_[i], mesh, visible);
  }
}

// Owners without elements stay as they are: a shrunk grid draws no lone nodes.
void Scene::shrink(double factor) {
  for (const SceneOwner& owner : owners_) {
    GMeshGroup* const group = model_->get_mesh(owner.handle);
    if (group == nullptr || !has_elements(group->get_mesh())) continue;
    group->set_shrink_factor(static_cast<float>(factor));
    model_->update_mesh_transformed(owner.handle);
  }
  display_.shrink = factor;
}

// Labels of an owner that was hidden stay away when it is shown, and those of hidden ones come when a kind begins to be
// labelled. So all begin anew, and hidden owners are shown and hidden, which takes theirs away.
void Scene::label(const LabelOptions& labels) {
  if (model_->any_label_flag_on()) set_label_flags(LabelOptions());
  set_label_flags(labels);
  if (!model_->any_label_flag_on()) return;
  for (std::size_t i = 0; i < owners_.size(); ++i) {
    if (is_visible(i)) continue;
    model_->set_visibility(owners_[i].handle, true);
    model_->set_visibility(owners_[i].handle, false);
  }
}

void Scene::set_label_flags(const LabelOptions& labels) {
  model_->set_node_label_flag(labels.nodes);
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    model_->set_element_label_flag(static_cast<Tarn::ElementType>(type), labels.elements[type]);
}

void Scene::clip(const std::optional<ClipPlane>& plane) {
  model_->set_clipping_plane(plane ? make_plane(*plane) : nullptr);
}

} // namespace viewer
