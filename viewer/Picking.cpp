#include "viewer/Picking.h"

#include "platform/base/GView.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/PickKinds.h"
#include "viewer/Scene.h"

#include <vtkBoundingBox.h>
#include <vtkProperty.h>

#include <algorithm>
#include <memory>

namespace viewer {
namespace {

std::unique_ptr<PickBounds> make_bounds(const PickRequest& request) {
  const std::vector<double>& at = request.numbers;
  if (request.shape == PickRequest::Shape::Box) return std::make_unique<PickRectangle>(&at[0], &at[2]);
  if (request.shape == PickRequest::Shape::Circle) return std::make_unique<PickCircle>(&at[0], at[2]);
  std::vector<std::array<double, 2>> corners;
  for (std::size_t i = 0; i + 1 < at.size(); i += 2)
    corners.push_back({at[i], at[i + 1]});
  return std::make_unique<PickPolygon>(std::move(corners));
}

// More than edges and nodes have, on which they lie.
constexpr float highlight_width = 4;
constexpr float highlight_size = 10;

// Per element of the mesh, as measured with hexahedra: what it takes to make the picker's index. With it picks are
// short.
constexpr double seconds_of_element = 3e-7;

bool same_entity(const EntitySelection& a, const EntitySelection& b) {
  if (a.entity() == nullptr || b.entity() == nullptr) return a.entity() == b.entity();
  return holds_node(a) == holds_node(b) && a.entity()->handle() == b.entity()->handle();
}

} // namespace

GPickerBase::Change change_of(bool shift, bool control) {
  return control ? GPickerBase::Change::Add : shift ? GPickerBase::Change::Remove : GPickerBase::Change::Replace;
}

Picking::Picking(Scene& scene, const PickOptions& options)
    : through(options.through), whole(options.whole), scene_(scene), highlight_(&scene.model(), &looks_),
      id_picker_(&scene.database()) {
  looks_.set_highlight_line_width(highlight_width);
  looks_.set_highlight_point_size(highlight_size);
  looks_.pre_select_property()->SetPointSize(highlight_size);
  highlight_.observe_selections(true);
  set_filter(options.filter);
}

// With its pickers go their records, and with these what is picked.
Picking::~Picking() = default;

bool Picking::pick(GView& view, const PickRequest& request, GPickerBase::Change change) {
  bool hit = false;
  if (request.shape == PickRequest::Shape::Point) {
    hit = GPickerBase::pick(&view, float(request.numbers[0]), float(request.numbers[1]), change);
  } else {
    MultiCellPicker::mSelectVisibleOnly = !through;
    MultiCellPicker::mBoxPickAcceptPartialCells = !whole;
    hit = GPickerBase::pick_by_bounds(&view, *make_bounds(request), change);
  }
  picks_changed();
  return hit;
}

std::string Picking::select(GView& view, const std::vector<IdSelection>& selections, GPickerBase::Change change) {
  MeshVector mesh;
  for (const IdSelection& selection : selections) {
    const std::string missing = find_entities(scene_.database(), selection, mesh);
    if (!missing.empty()) return missing;
  }
  id_picker_.pick(view, mesh, change);
  picks_changed();
  return "";
}

void Picking::renew(GView& view) {
  id_picker_.pick(view, std::vector<EntitySelection>(GPickerBase::picked()));
  picks_changed();
}

bool Picking::next() {
  const bool changed = GPickerBase::next_possible_selection();
  picks_changed();
  return changed;
}

bool Picking::hover(GView& view, int x, int y) {
  const EntitySelection before = GPickerBase::pre_selection();
  GPickerBase::hover(&view, float(x), float(y));
  show_nodes_where_picked();
  return !same_entity(before, GPickerBase::pre_selection());
}

bool Picking::end_hover() {
  if (GPickerBase::pre_selection().entity() == nullptr) return false;
  GPickerBase::set_pre_selection(EntitySelection());
  return true;
}

void Picking::drop_all() { drop(std::vector<EntitySelection>(GPickerBase::picked())); }

void Picking::drop(const std::set<Tarn::SMeshOwnerType*>& owners) {
  const auto& picked = GPickerBase::picked();
  const auto owner_of_picked = owners_of(picked, scene_.database());
  std::vector<EntitySelection> gone;
  for (std::size_t i = 0; i < picked.size(); ++i)
    if (owners.count(owner_of_picked[i]) != 0) gone.push_back(picked[i]);
  drop(gone);
}

// The selections hold the records while they are told of.
void Picking::drop(const std::vector<EntitySelection>& gone) {
  std::vector<const GPicked::PickedEntity*> entities;
  entities.reserve(gone.size());
  for (const EntitySelection& selection : gone)
    entities.push_back(selection.entity());
  GPickerBase::remove_from_picked_list(static_cast<int>(entities.size()), entities.data());
  picks_changed();
}

std::set<Tarn::SMeshOwnerType*> Picking::picked_owners() const {
  const auto owners = owners_of(GPickerBase::picked(), scene_.database());
  std::set<Tarn::SMeshOwnerType*> different(owners.begin(), owners.end());
  different.erase(nullptr);
  return different;
}

std::vector<PickRecord> Picking::picked() const { return describe(GPickerBase::picked(), scene_.database()); }

std::size_t Picking::picked_count() const { return GPickerBase::picked().size(); }

bool Picking::picked_centre(std::array<double, 3>& centre) const {
  Tarn::MeshDatabase& database = scene_.database();
  vtkBoundingBox box;
  std::vector<Tarn::Handle<0>> nodes;
  for (const EntitySelection& selection : GPickerBase::picked()) {
    const std::uint64_t handle = selection.entity()->handle();
    nodes.assign(1, {handle});
    if (!holds_node(selection)) {
      Tarn::MeshData::Count count = 0;
      database.get_element_node_count({handle}, &count);
      nodes.assign(count, Tarn::Handle<0>());
      database.get_element_connectivity({handle}, &count, nodes.data());
    }
    for (const auto node : nodes) {
      double xyz[3] = {0, 0, 0};
      database.get_node_coordinates(node, &xyz[0], &xyz[1], &xyz[2]);
      box.AddPoint(xyz);
    }
  }
  if (!box.IsValid()) return false;
  box.GetCenter(centre.data());
  return true;
}

std::vector<PickRecord> Picking::possible() const {
  return describe(GPickerBase::possible_selections(), scene_.database());
}

std::pair<std::size_t, std::size_t> Picking::place_among_possible() const {
  const auto& picked = GPickerBase::picked();
  const auto& possible = GPickerBase::possible_selections();
  if (picked.empty()) return {0, possible.size()};
  const auto found = std::find_if(possible.begin(), possible.end(),
                                  [&](const EntitySelection& each) { return same_entity(each, picked.back()); });
  return {found == possible.end() ? 0 : found - possible.begin() + 1, possible.size()};
}

std::optional<PickRecord> Picking::hovered() const {
  const EntitySelection& selection = GPickerBase::pre_selection();
  if (selection.entity() == nullptr) return std::nullopt;
  return describe(selection, scene_.database());
}

double Picking::cost_of_point() const {
  double elements = 0;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    elements += static_cast<double>(scene_.database().element_count(static_cast<Tarn::ElementType>(type)));
  return elements * seconds_of_element;
}

std::vector<std::string> Picking::filter() const { return GPickerBase::filter(); }

void Picking::set_filter(const std::vector<std::string>& filter) {
  GPickerBase::set_filter(filter.empty() ? filter_of_mesh(scene_.database()) : filter);
}

// Who hovers asks for this at every move of the mouse, so that what is picked is looked through when it changes only.
void Picking::picks_changed() {
  const auto& picked = GPickerBase::picked();
  node_is_picked_ = std::any_of(picked.begin(), picked.end(), holds_node);
  show_nodes_where_picked();
}

// A node shows only as a dot; the corners of picked elements need none.
void Picking::show_nodes_where_picked() {
  highlight_.set_node_vis(node_is_picked_ || holds_node(GPickerBase::pre_selection()));
}

} // namespace viewer
