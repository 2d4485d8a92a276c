#include "reference/base/pick/PickState.h"

#include "platform/base/PickCallbackNow.h"

#include <algorithm>

namespace {

// A copy: observers come and go from within notifications. One that left meanwhile is told no more.
template <class Tell> void tell_all(const std::vector<GPicked::PickCallbackNow*>& observers, Tell tell) {
  const std::vector<GPicked::PickCallbackNow*> copy = observers;
  for (GPicked::PickCallbackNow* observer : copy)
    if (std::find(observers.begin(), observers.end(), observer) != observers.end()) tell(observer);
}

} // namespace

PickState& PickState::instance() {
  static PickState state;
  return state;
}

// All kinds but "Element", which is a mode: nodes become their own elements.
PickState::PickState()
    : filter{"Hex",  "Tet", "Pyramid", "Wedge", "Knife",           "Superelement",
             "Face", "Tri", "Edge",    "Node",  "ThreeDimElement", "TwoDimElement"} {}

// The hits are looked up, not what is picked: a click into a million picked entities brings one.
std::vector<PickHit> PickState::not_picked(const std::vector<PickHit>& hits) const {
  IdentityNumbers numbers;
  numbers.reserve(hits.size());
  std::vector<const PickHit*> firsts;
  for (const PickHit& hit : hits)
    if (numbers.add(hit.identity).second) firsts.push_back(&hit);
  std::vector<char> is_picked(numbers.size(), 0);
  for (const PickHit& hit : picked.hits()) {
    const std::size_t number = numbers.find(hit.identity);
    if (number < is_picked.size()) is_picked[number] = 1;
  }
  std::vector<PickHit> others;
  for (std::size_t i = 0; i < firsts.size(); ++i)
    if (!is_picked[i]) others.push_back(*firsts[i]);
  return others;
}

void PickState::add_to_picked(const std::vector<PickHit>& hits) {
  const std::vector<PickHit> added = not_picked(hits);
  for (const PickHit& hit : added)
    picked.add(hit);
  tell_picked(added, true);
}

void PickState::remove_from_picked(const std::function<bool(const PickHit&)>& goes) {
  tell_picked(picked.take_out(goes), false);
}

void PickState::replace_pre_selection(const EntitySelection& selection, GPicker* picker) {
  std::vector<PickHit> next;
  if (selection.entity()) next.push_back({selection, EntityIdentity(*selection.entity()), false, picker});
  const bool same =
      next.size() == pre_selected.size() && (next.empty() || next.front().identity == pre_selected.front().identity);
  const EntitySelection before = pre_selection;
  pre_selection = selection;
  pre_selected = next;
  if (same) return;
  if (before.entity()) tell_pre_selected(before, false);
  if (selection.entity()) tell_pre_selected(selection, true);
}

void PickState::forget(GPicker* picker) {
  const auto is_its = [picker](const PickHit& hit) { return hit.picker == picker; };
  possible.take_out(is_its);
  remove_from_picked(is_its);
  if (!pre_selected.empty() && is_its(pre_selected.front())) replace_pre_selection(EntitySelection(), nullptr);
}

void PickState::tell_picked(const std::vector<PickHit>& hits, bool add) {
  if (hits.empty()) return;
  std::vector<const GPicked::PickedEntity*> entities;
  std::vector<const float*> points;
  for (const PickHit& hit : hits) {
    entities.push_back(hit.selection.entity());
    points.push_back(hit.selection.point());
  }
  tell_all(pick_observers, [&](GPicked::PickCallbackNow* observer) {
    observer->notify_picked(static_cast<int>(hits.size()), entities.data(), points.data(), add);
  });
}

void PickState::tell_pre_selected(const EntitySelection& selection, bool add) {
  tell_all(pre_selection_observers, [&](GPicked::PickCallbackNow* observer) {
    observer->notify_pre_select(selection.entity(), selection.point(), add);
  });
}
