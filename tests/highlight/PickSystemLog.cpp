#include "tests/highlight/PickSystemLog.h"

#include "pick/PickedNode.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/PickedEntity.h"

namespace {

PickSystemLog* current = nullptr;

void note(const std::string& call) {
  if (!current) return;
  current->calls.push_back(call);
  current->during();
}

std::string name_of(const GPicked::PickedEntity* entity) {
  const bool is_node = dynamic_cast<const PickedNode*>(entity) != nullptr;
  return (is_node ? "node " : "element ") + std::to_string(entity->handle());
}

} // namespace

PickSystemLog::PickSystemLog() { current = this; }

PickSystemLog::~PickSystemLog() { current = nullptr; }

void GPickerBase::add_pick_observer(GPicked::PickCallbackNow*) { note("add_pick_observer"); }

void GPickerBase::remove_pick_observer(GPicked::PickCallbackNow*) { note("remove_pick_observer"); }

void GPickerBase::add_pre_selection_observer(GPicked::PickCallbackNow*) { note("add_pre_selection_observer"); }

void GPickerBase::remove_pre_selection_observer(GPicked::PickCallbackNow*) { note("remove_pre_selection_observer"); }

void GPickerBase::remove_from_possible_selections_list(const GPicked::PickedEntity* entity) {
  note("remove_from_possible_selections_list " + name_of(entity));
}

void GPickerBase::remove_from_picked_list(int count, const GPicked::PickedEntity* const* entities) {
  std::string call = "remove_from_picked_list";
  for (int i = 0; i < count; ++i)
    call += (i == 0 ? " " : ", ") + name_of(entities[i]);
  note(call);
}

void GPickerBase::set_pre_selection(const EntitySelection& selection) {
  note(selection.entity() ? "set_pre_selection " + name_of(selection.entity()) : "set_pre_selection nothing");
}
