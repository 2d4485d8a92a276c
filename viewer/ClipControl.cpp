#include "viewer/ClipControl.h"

#include <algorithm>

namespace viewer {

ClipControl::ClipControl(const std::optional<ClipPlane>& plane, const std::array<double, 6>& bounds)
    : bounds_(bounds), active_(plane) {
  put_across(axis_);
  if (plane) plane_ = *plane;
}

const std::optional<ClipPlane>& ClipControl::plane() const { return active_; }

void ClipControl::toggle() { active_ = active_ ? std::nullopt : std::optional<ClipPlane>(plane_); }

void ClipControl::move(double part) {
  const auto [low, high] = reach();
  plane_.distance = std::clamp(plane_.distance + part * (high - low), low, high);
  active_ = plane_;
}

void ClipControl::turn() {
  axis_ = (axis_ + 1) % 6;
  put_across(axis_);
  active_ = plane_;
}

void ClipControl::put_across(int axis) {
  plane_.normal = {0, 0, 0};
  plane_.normal[axis % 3] = axis < 3 ? 1 : -1;
  const auto [low, high] = reach();
  plane_.distance = (low + high) / 2;
}

// The least and the greatest n.x of the box.
std::array<double, 2> ClipControl::reach() const {
  std::array<double, 2> ends = {0, 0};
  for (int axis = 0; axis < 3; ++axis) {
    const double a = plane_.normal[axis] * bounds_[2 * axis];
    const double b = plane_.normal[axis] * bounds_[2 * axis + 1];
    ends[0] += std::min(a, b);
    ends[1] += std::max(a, b);
  }
  return ends;
}

} // namespace viewer
