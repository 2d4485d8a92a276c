#include "viewer/OwnerControl.h"

#include "viewer/Scene.h"

#include <algorithm>

namespace viewer {

OwnerControl::OwnerControl(Scene& scene) : scene_(scene) {}

void OwnerControl::show(std::size_t index, bool shown) {
  auto wanted = scene_.visible();
  wanted[index] = shown;
  set_visible(wanted);
}

void OwnerControl::show_alone(std::size_t index) {
  std::vector<bool> wanted(scene_.owners().size(), false);
  wanted[index] = true;
  set_visible(wanted);
}

void OwnerControl::show_all() { set_visible(std::vector<bool>(scene_.owners().size(), true)); }

std::size_t OwnerControl::hide(const std::set<Tarn::SMeshOwnerType*>& owners) {
  auto wanted = scene_.visible();
  std::size_t hidden = 0;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (!wanted[i] || owners.count(scene_.owners()[i].handle) == 0) continue;
    wanted[i] = false;
    ++hidden;
  }
  set_visible(wanted);
  return hidden;
}

std::size_t OwnerControl::show_alone(const std::set<Tarn::SMeshOwnerType*>& owners) {
  std::vector<bool> wanted;
  for (const SceneOwner& owner : scene_.owners())
    wanted.push_back(owners.count(owner.handle) != 0);
  const auto count = static_cast<std::size_t>(std::count(wanted.begin(), wanted.end(), true));
  if (count > 0) set_visible(wanted);
  return count;
}

bool OwnerControl::undo() {
  if (before_.empty()) return false;
  const auto wanted = before_.back();
  before_.pop_back();
  scene_.set_visible(wanted);
  return true;
}

void OwnerControl::remember() { before_.push_back(scene_.visible()); }

std::size_t OwnerControl::shown_count() const {
  const auto shown = scene_.visible();
  return static_cast<std::size_t>(std::count(shown.begin(), shown.end(), true));
}

const std::optional<std::size_t>& OwnerControl::focus() const { return focus_; }

bool OwnerControl::move_focus(int step) {
  const std::size_t count = scene_.owners().size();
  if (count == 0) return false;
  if (focus_)
    focus_ = (*focus_ + count + step) % count;
  else
    focus_ = step > 0 ? 0 : count - 1;
  return true;
}

void OwnerControl::end_focus() { focus_.reset(); }

void OwnerControl::set_visible(const std::vector<bool>& wanted) {
  const auto shown = scene_.visible();
  scene_.set_visible(wanted);
  // Owners without a mesh never show.
  if (scene_.visible() != shown) before_.push_back(shown);
}

} // namespace viewer
