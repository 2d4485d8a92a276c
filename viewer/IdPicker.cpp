#include "viewer/IdPicker.h"

#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickRectangle.h"

#include <utility>

namespace viewer {
namespace {

constexpr auto own_kind = "known by id";

} // namespace

IdPicker::IdPicker(Tarn::MeshData* database) : database_(database) { GPickerBase::register_picker(own_kind, this); }

IdPicker::~IdPicker() { GPickerBase::unregister_picker(own_kind, this); }

void IdPicker::pick(GView& view, const MeshVector& mesh, GPickerBase::Change change) {
  const float nowhere[3] = {0, 0, 0};
  const auto add = [&](GPicked::PickedEntity* entity) {
    wanted_.emplace_back(entity, nowhere, 0.0f, true);
    entity->Delete();
  };
  for (const auto node : mesh.nodes)
    add(PickedNode::New(node, database_));
  for (std::size_t type = 1; type < mesh.elements.size(); ++type)
    for (const auto element : mesh.elements[type])
      add(PickedElement::New(element, database_));
  pick_wanted(view, change);
}

void IdPicker::pick(GView& view, const std::vector<EntitySelection>& selections) {
  wanted_ = selections;
  pick_wanted(view, GPickerBase::Change::Replace);
}

void IdPicker::compute_pick(vtkRenderer*, float, float) {}

void IdPicker::compute_pre_select(vtkRenderer*, float, float) {}

void IdPicker::compute_pick_by_bounds(vtkRenderer*, PickBounds*) {
  for (const EntitySelection& selection : wanted_) {
    // The buffer takes records of those who made them; these have been in it before, or were made here.
    auto* const entity = const_cast<GPicked::PickedEntity*>(selection.entity());
    add_to_selection_buffer(entity, selection.point(), selection.distance(), selection.is_exact());
  }
}

void IdPicker::pick_wanted(GView& view, GPickerBase::Change change) {
  const double anywhere[2] = {0, 0};
  PickRectangle region(anywhere, anywhere);
  const auto filter = GPickerBase::filter();
  GPickerBase::set_filter({own_kind});
  // What is known already need not be visible: no depth has to be drawn for it.
  const bool visible_only = std::exchange(MultiCellPicker::mSelectVisibleOnly, false);
  GPickerBase::pick_by_bounds(&view, region, change);
  MultiCellPicker::mSelectVisibleOnly = visible_only;
  GPickerBase::set_filter(filter);
  wanted_.clear();
}

} // namespace viewer
