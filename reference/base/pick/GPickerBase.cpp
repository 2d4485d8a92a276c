#include "platform/base/GPickerBase.h"

#include "platform/base/GModel.h"
#include "platform/base/GPicker.h"
#include "platform/base/GView.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickBounds.h"
#include "platform/base/PickedEntity.h"
#include "reference/base/pick/EntityIdentity.h"
#include "reference/base/pick/PickRanking.h"
#include "reference/base/pick/PickState.h"
#include "reference/base/pick/SelectionBuffer.h"
#include "reference/base/view/Stage.h"

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

// What tells a face that the ray goes through from one that it only comes near.
constexpr double piercing = 1e-3;
constexpr double usual_dpi = 96.0;

PickState& state() { return PickState::instance(); }

bool is_open(GView* view) { return Stage::instance().is_open(view); }

// Without pixels screen and world are not related: any place would do.
bool has_pixels(GView* view) {
  const int* size = view->renderer()->GetSize();
  return size[0] > 0 && size[1] > 0;
}

// Pickers walk what the views draw. What a host hid or changed since the last frame must not be met in its old state.
// False: there is nothing to pick in, or not any more.
bool bring_up_to_date(GView* view) {
  if (!is_open(view) || !has_pixels(view)) return false;
  const Stage& stage = Stage::instance();
  for (GModel* model : std::vector<GModel*>(stage.models))
    if (stage.is_hooked(model)) model->update_parts();
  return is_open(view);
}

bool is_registered(GPicker* picker) {
  const auto& pickers = state().pickers;
  return std::any_of(pickers.begin(), pickers.end(), [picker](const auto& entry) { return entry.second == picker; });
}

// Each picker once, in order of registration, if any of its names is admitted.
std::vector<GPicker*> admitted_pickers() {
  std::vector<GPicker*> admitted;
  for (const auto& [name, picker] : state().pickers)
    if (GPickerBase::is_filtered(name.c_str()) && std::find(admitted.begin(), admitted.end(), picker) == admitted.end())
      admitted.push_back(picker);
  return admitted;
}

void gather(SelectionBuffer& buffer, const std::function<void(GPicker*)>& ask) {
  for (GPicker* picker : admitted_pickers()) {
    if (!is_registered(picker)) continue; // gone since the walk began
    const SelectionBuffer::Scope scope(buffer, picker);
    ask(picker);
  }
}

// Sets the tolerance that pickers read for the length of one pass.
class ToleranceScope {
public:
  explicit ToleranceScope(double tolerance) : before_(MultiCellPicker::PickToleranceByWindowDiagonal()) {
    MultiCellPicker::SetPickToleranceByWindowDiagonal(tolerance);
  }
  ~ToleranceScope() { MultiCellPicker::SetPickToleranceByWindowDiagonal(before_); }
  ToleranceScope(const ToleranceScope&) = delete;
  ToleranceScope& operator=(const ToleranceScope&) = delete;

private:
  double before_;
};

// Points and lines are drawn larger where pixels are smaller; so they are met from as far.
double tolerance_in(GView* view) {
  return MultiCellPicker::PickToleranceByWindowDiagonal() * view->window()->GetDPI() / usual_dpi;
}

std::vector<PickHit> pick_by_ray(GView* view, const std::function<void(GPicker*)>& ask) {
  const double tolerance = tolerance_in(view);
  SelectionBuffer pierced;
  {
    const ToleranceScope scope(tolerance * piercing);
    gather(pierced, ask);
  }
  SelectionBuffer hits;
  {
    const ToleranceScope scope(tolerance);
    gather(hits, ask);
  }
  return rank(view, hits, pierced, tolerance);
}

void change_picked(const std::vector<PickHit>& hits, GPickerBase::Change change) {
  using Change = GPickerBase::Change;
  const std::vector<PickHit> added = change == Change::Toggle   ? state().not_picked(hits)
                                     : change == Change::Remove ? std::vector<PickHit>()
                                                                : hits;
  if (change == Change::Replace) state().remove_from_picked([](const PickHit&) { return true; });
  if (change == Change::Remove || change == Change::Toggle) {
    IdentityNumbers named;
    named.reserve(hits.size());
    for (const PickHit& hit : hits)
      named.add(hit.identity);
    state().remove_from_picked([&named](const PickHit& hit) { return named.has(hit.identity); });
  }
  state().add_to_picked(added);
}

void set_possible(const std::vector<PickHit>& hits) {
  state().possible.clear();
  for (const PickHit& hit : hits)
    state().possible.add(hit);
}

} // namespace

bool GPickerBase::register_picker(const char* name, GPicker* picker) {
  auto& pickers = state().pickers;
  const std::pair<std::string, GPicker*> entry(name, picker);
  if (std::find(pickers.begin(), pickers.end(), entry) != pickers.end()) return false;
  pickers.push_back(entry);
  return true;
}

bool GPickerBase::unregister_picker(const char* name, GPicker* picker) {
  auto& pickers = state().pickers;
  const auto found = std::find(pickers.begin(), pickers.end(), std::pair<std::string, GPicker*>(name, picker));
  if (found == pickers.end()) return false;
  pickers.erase(found);
  // Its records need its library, and mean nothing without it.
  if (!is_registered(picker)) state().forget(picker);
  return true;
}

bool GPickerBase::is_filtered(const char* name) {
  const auto& filter = state().filter;
  return std::find(filter.begin(), filter.end(), name) != filter.end();
}

void GPickerBase::set_filter(std::vector<std::string> admitted) { state().filter = std::move(admitted); }

std::vector<std::string> GPickerBase::filter() { return state().filter; }

namespace {

void add_observer(std::vector<GPicked::PickCallbackNow*>& observers, GPicked::PickCallbackNow* observer) {
  if (observer && std::find(observers.begin(), observers.end(), observer) == observers.end())
    observers.push_back(observer);
}

void remove_observer(std::vector<GPicked::PickCallbackNow*>& observers, GPicked::PickCallbackNow* observer) {
  observers.erase(std::remove(observers.begin(), observers.end(), observer), observers.end());
}

} // namespace

void GPickerBase::add_pick_observer(GPicked::PickCallbackNow* observer) {
  add_observer(state().pick_observers, observer);
}

void GPickerBase::remove_pick_observer(GPicked::PickCallbackNow* observer) {
  remove_observer(state().pick_observers, observer);
}

void GPickerBase::add_pre_selection_observer(GPicked::PickCallbackNow* observer) {
  add_observer(state().pre_selection_observers, observer);
}

void GPickerBase::remove_pre_selection_observer(GPicked::PickCallbackNow* observer) {
  remove_observer(state().pre_selection_observers, observer);
}

void GPickerBase::remove_from_possible_selections_list(const GPicked::PickedEntity* entity) {
  if (entity) state().possible.take_out(EntityIdentity(*entity));
}

void GPickerBase::remove_from_picked_list(int count, const GPicked::PickedEntity* const* entities) {
  IdentityNumbers gone;
  for (int i = 0; i < count; ++i)
    if (entities[i]) gone.add(EntityIdentity(*entities[i]));
  state().remove_from_picked([&gone](const PickHit& hit) { return gone.has(hit.identity); });
}

void GPickerBase::set_pre_selection(const EntitySelection& selection) {
  state().replace_pre_selection(selection, nullptr);
}

bool GPickerBase::pick(GView* view, float x, float y, Change change) {
  if (!bring_up_to_date(view)) return false;
  const std::vector<PickHit> hits =
      pick_by_ray(view, [&](GPicker* picker) { picker->compute_pick(view->renderer(), x, y); });
  set_possible(hits);
  change_picked(hits.empty() ? hits : std::vector<PickHit>{hits.front()}, change);
  return !hits.empty();
}

bool GPickerBase::pick_by_bounds(GView* view, PickBounds& bounds, Change change) {
  if (!bring_up_to_date(view)) return false;
  if (MultiCellPicker::mSelectVisibleOnly) view->render_depth();
  if (!is_open(view)) return false;
  SelectionBuffer hits;
  gather(hits, [&](GPicker* picker) { picker->compute_pick_by_bounds(view->renderer(), &bounds); });
  set_possible(hits.hits());
  change_picked(hits.hits(), change);
  return !hits.hits().empty();
}

bool GPickerBase::hover(GView* view, float x, float y) {
  if (!bring_up_to_date(view)) return false;
  const std::vector<PickHit> hits =
      pick_by_ray(view, [&](GPicker* picker) { picker->compute_pre_select(view->renderer(), x, y); });
  if (hits.empty())
    state().replace_pre_selection(EntitySelection(), nullptr);
  else
    state().replace_pre_selection(hits.front().selection, hits.front().picker);
  return !hits.empty();
}

bool GPickerBase::next_possible_selection() {
  SelectionList& possible = state().possible;
  // Copies: observers may change the list.
  std::vector<PickHit> before;
  if (const PickHit* standing = possible.standing()) before.push_back(*standing);
  if (possible.hits().size() <= before.size()) return false;
  possible.step();
  const PickHit next = *possible.standing();
  state().remove_from_picked(
      [&before](const PickHit& hit) { return !before.empty() && hit.identity == before.front().identity; });
  state().add_to_picked({next});
  return true;
}

const std::vector<EntitySelection>& GPickerBase::picked() { return state().picked.entries(); }

const std::vector<EntitySelection>& GPickerBase::possible_selections() { return state().possible.entries(); }

const EntitySelection& GPickerBase::pre_selection() { return state().pre_selection; }
