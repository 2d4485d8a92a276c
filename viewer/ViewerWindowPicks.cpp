#include "viewer/ViewerWindow.h"

#include "mesh/MeshVector.h"
#include "model/GMeshModel.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/Clock.h"
#include "viewer/Messages.h"
#include "viewer/OptionValues.h"
#include "viewer/OutputFile.h"
#include "viewer/PickKinds.h"
#include "viewer/Scene.h"

#include <vtkCamera.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <set>

// What the mouse does: hovering, picking, regions, the legend; and what is done with what is picked.

namespace viewer {
namespace {

constexpr int same_place = 3;      // pixels
constexpr int most_long_looks = 3; // in a row, before hovering goes off
constexpr auto hover_is_off = "hovering takes long in this mesh and is off now: J turns it on";

bool is_near(const MouseState& a, const MouseState& b) {
  return std::abs(a.x - b.x) <= same_place && std::abs(a.y - b.y) <= same_place;
}

std::string owner_text(const PickRecord& record) {
  return record.owner == nullptr ? "no owner" : "owner '" + record.owner_name + "'";
}

// "Hex 12, global 7"
std::string name_text(const PickRecord& record) {
  return record.type + " " + std::to_string(record.id) +
         (record.global_id ? ", global " + std::to_string(*record.global_id) : "");
}

// "3 Hex, 1 Node: node:4 hex:1-3", or all that is known when it is one.
std::string picked_in_words(const std::vector<PickRecord>& records, const std::string& ids) {
  if (records.empty()) return "nothing picked";
  if (records.size() == 1) return "picked " + name_text(records[0]) + ", " + owner_text(records[0]);
  std::map<std::string, std::size_t> counts;
  for (const PickRecord& record : records)
    ++counts[record.type];
  std::string text = "picked ";
  for (const auto& [type, count] : counts)
    text += (text.size() > 7 ? ", " : "") + std::to_string(count) + " " + type;
  return text + ": " + ids;
}

std::string owner_count(std::size_t count) { return std::to_string(count) + (count == 1 ? " owner" : " owners"); }

} // namespace

bool ViewerWindow::press(const MouseState& mouse) {
  mouse_ = mouse;
  button_down_ = true;
  pace_.stop();
  if (legend_.covers(mouse.x, mouse.y)) {
    legend_press_ = legend_.owner_at(mouse.x, mouse.y);
    return true;
  }
  if (!region_.is_active()) return false;
  region_.press(mouse.x, mouse.y);
  render();
  return true;
}

void ViewerWindow::release(const MouseState& mouse) {
  button_down_ = false;
  mouse_ = mouse;
  const auto pressed = std::exchange(legend_press_, std::nullopt);
  if (pressed) {
    if (legend_.owner_at(mouse.x, mouse.y) != pressed) return;
    const bool alone = mouse.shift;
    const bool shows = alone || !scene_.is_visible(*pressed);
    if (alone)
      owners_.show_alone(*pressed);
    else
      owners_.show(*pressed, shows);
    owners_changed((alone ? "alone: '" : shows ? "shown: '" : "hidden: '") + scene_.owners()[*pressed].name + "'");
  } else if (region_.is_active()) {
    if (region_.release(mouse.x, mouse.y))
      finish_region(change_of(mouse.shift, mouse.control));
    else
      render();
  }
}

void ViewerWindow::click(const MouseState& mouse, bool twice) {
  button_down_ = false;
  mouse_ = mouse;
  end_hover();
  if (twice) {
    recentre();
    return;
  }
  const auto change = change_of(mouse.shift, mouse.control);
  const bool replaces = change == GPickerBase::Change::Replace;
  const bool walks = replaces && walk_ && is_near(*walk_, mouse) && picking_.picked_count() > 0;
  bool hit = true;
  if (walks) {
    hit = picking_.next();
  } else {
    if (HoverPace::is_too_long(picking_.cost_of_point())) say("picking ...");
    hit = picking_.pick(view_, {PickRequest::Shape::Point, {double(mouse.x), double(mouse.y)}}, change);
  }
  if (!walks) walk_ = replaces ? std::optional(mouse) : std::nullopt;
  report_picks();
  const auto [place, count] = picking_.place_among_possible();
  if (!hit)
    say(walks ? "nothing else lies here" : "nothing lies here");
  else
    say(replaces && count > 1 ? std::to_string(place) + " of " + std::to_string(count) + " that lie here" : "");
}

void ViewerWindow::move(const MouseState& mouse) {
  mouse_ = mouse;
  if (region_.is_active()) {
    region_.move(mouse.x, mouse.y);
    render_soon();
    return;
  }
  if (button_down_ || !hovers_) return;
  if (legend_.covers(mouse.x, mouse.y)) {
    pace_.stop();
    return;
  }
  pace_.moved(seconds_now());
  wait(pace_.wait_ms(seconds_now()));
}

void ViewerWindow::leave() {
  button_down_ = false;
  forget_click();
  pace_.stop();
  end_hover();
  render();
}

bool ViewerWindow::turn_wheel(const MouseState& mouse, int notch) {
  if (legend_.covers(mouse.x, mouse.y)) {
    if (legend_.scroll(-notch)) render();
    return true;
  }
  forget_click();
  overlay_.set_tooltip("");
  move(mouse);
  return false;
}

void ViewerWindow::time_out() {
  timer_due_.reset();
  if (needs_frame_) render();
  if (!pace_.is_waiting()) return;
  const int left = pace_.wait_ms(seconds_now());
  if (left > 0)
    wait(left);
  else
    hover();
}

void ViewerWindow::forget_click() { walk_.reset(); }

// A timer that runs already does where it ends in time.
void ViewerWindow::wait(int milliseconds) {
  const double due = seconds_now() + std::max(1, milliseconds) / 1000.0;
  if (timer_due_ && *timer_due_ <= due) return;
  timer_due_ = due;
  interactor_->CreateOneShotTimer(static_cast<unsigned long>(std::max(1, milliseconds)));
}

void ViewerWindow::hover() {
  if (button_down_ || region_.is_active()) {
    pace_.stop();
    return;
  }
  const double begin = seconds_now();
  const bool changed = picking_.hover(view_, mouse_.x, mouse_.y);
  const double seconds = seconds_now() - begin;
  pace_.looked(seconds);
  const auto record = picking_.hovered();
  overlay_.set_tooltip(record ? " " + one_line(name_text(*record)) + " \n " + one_line(owner_text(*record)) + " " : "",
                       mouse_.x, mouse_.y);
  // The first look at an owner makes an index, which later ones have: one that is long is no habit.
  long_looks_ = HoverPace::is_too_long(seconds) ? long_looks_ + 1 : 0;
  if (long_looks_ == most_long_looks) {
    hovers_ = false;
    say(hover_is_off);
  } else if (record || changed) {
    render();
  }
  if (options_.verbose)
    tell("hover: " + std::to_string(seconds) + " s, and the frame " + std::to_string(seconds_now() - begin - seconds) +
         " s");
}

void ViewerWindow::end_hover() {
  picking_.end_hover();
  overlay_.set_tooltip("");
}

void ViewerWindow::toggle_hover() {
  hovers_ = !hovers_;
  long_looks_ = 0;
  pace_.stop();
  end_hover();
  say(std::string("hover ") + (hovers_ ? "on" : "off"));
}

void ViewerWindow::start_region(PickRequest::Shape shape) {
  end_hover();
  pace_.stop();
  region_.start(shape);
  say(region_.hint());
}

void ViewerWindow::finish_region(GPickerBase::Change change) {
  const std::size_t before = picking_.picked_count();
  const bool hit = picking_.pick(view_, region_.take(), change);
  report_picks();
  const std::size_t after = picking_.picked_count();
  const bool adds = change == GPickerBase::Change::Add, removes = change == GPickerBase::Change::Remove;
  say(!hit      ? "nothing lies there"
      : adds    ? std::to_string(after - before) + " more picked"
      : removes ? std::to_string(before - after) + " picked no longer"
                : std::to_string(after) + " picked");
}

// Moves eye and focal point alike, so that direction and size stay.
void ViewerWindow::recentre() {
  const auto records = picking_.picked();
  if (records.empty() || !records.back().point) {
    say("nothing lies here");
    return;
  }
  const auto& point = *records.back().point;
  look_at({point[0], point[1], point[2]});
  say("centre: " + name_text(records.back()));
}

void ViewerWindow::look_at(const std::array<double, 3>& point) {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  double eye[3], focal[3];
  camera->GetPosition(eye);
  camera->GetFocalPoint(focal);
  for (int axis = 0; axis < 3; ++axis)
    eye[axis] += point[axis] - focal[axis];
  camera->SetPosition(eye);
  camera->SetFocalPoint(point.data());
  forget_click();
  view_.renderer()->ResetCameraClippingRange();
}

void ViewerWindow::clear_picks() {
  picking_.drop_all();
  report_picks();
  say("");
}

void ViewerWindow::report_picks() {
  const auto records = picking_.picked();
  const std::string ids = id_lists(records);
  picked_text_ = picked_in_words(records, ids);
  if (ids == picked_ids_) return;
  picked_ids_ = ids;
  std::cout << (ids.empty() ? "nothing" : ids) << std::endl;
}

void ViewerWindow::find(const std::string& text) {
  if (text.empty()) {
    say("");
    return;
  }
  try {
    const bool is_bare = text.find(':') == std::string::npos;
    const IdSelection wanted = parse_selection(is_bare ? "element:" + text : text);
    const std::string missing = picking_.select(view_, {wanted}, GPickerBase::Change::Replace);
    if (!missing.empty()) {
      say(missing, true);
      return;
    }
  } catch (const BadValue& bad) {
    say(bad.what(), true);
    return;
  }
  report_picks();
  std::array<double, 3> middle;
  if (picking_.picked_centre(middle)) look_at(middle);
  say("found");
}

void ViewerWindow::save_picks() {
  const std::string name = free_name("orbel_view-picked", ".json");
  const std::string text = to_json(picking_.picked());
  const std::string reason = write_file(name, text.data(), text.size());
  say(reason.empty() ? std::to_string(picking_.picked_count()) + " written: " + name
                     : "cannot write " + name + ": " + reason,
      !reason.empty());
}

void ViewerWindow::set_filter(const std::vector<std::string>& filter) {
  picking_.set_filter(filter);
  end_hover();
  const bool goes_off = hovers_ && HoverPace::is_too_long(picking_.cost_of_point());
  if (goes_off) hovers_ = false;
  say("pick " + describe_filter(picking_.filter()) + (goes_off ? std::string("; ") + hover_is_off : ""));
}

void ViewerWindow::toggle_kind(const std::string& key) {
  const auto& kinds = pick_kinds();
  const auto kind =
      std::find_if(kinds.begin(), kinds.end(), [&](const PickKind& each) { return each.key == key.back(); });
  const bool besides = key.size() > 1;
  const auto wanted = besides ? toggled(picking_.filter(), *kind) : kind->filter;
  if (wanted.empty())
    say("something must be left to pick");
  else
    set_filter(wanted);
}

void ViewerWindow::hide_picked() {
  const std::size_t hidden = owners_.hide(picking_.picked_owners());
  owners_changed(hidden == 0 ? "nothing is picked that has an owner" : owner_count(hidden) + " hidden");
}

void ViewerWindow::isolate_picked() {
  const std::size_t shown = owners_.show_alone(picking_.picked_owners());
  owners_changed(shown == 0 ? "nothing is picked that has an owner" : owner_count(shown) + " alone");
}

// What is hidden cannot stay picked: its highlight would float in the air.
void ViewerWindow::owners_changed(const std::string& text) {
  end_hover();
  forget_click();
  std::set<Tarn::SMeshOwnerType*> hidden;
  for (Tarn::SMeshOwnerType* owner : picking_.picked_owners())
    if (!scene_.model().get_visibility(owner)) hidden.insert(owner);
  if (!hidden.empty()) picking_.drop(hidden);
  report_picks();
  say(text);
}

} // namespace viewer
