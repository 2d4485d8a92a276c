#pragma once

#include "viewer/Options.h"

#include <array>

namespace viewer {

/// The clipping plane of the window: on or off, turned to each axis, moved along its normal.
class ClipControl {
public:
  /// Starts with the plane, on; without one off, with a plane across the middle of the box that keeps what is towards
  /// +x.
  ClipControl(const std::optional<ClipPlane>& plane, const std::array<double, 6>& bounds);

  /// The plane to clip with, if any.
  const std::optional<ClipPlane>& plane() const;
  void toggle();
  /// Moves the plane by a part of the box's extent along the normal, no further than the box reaches.
  void move(double part);
  /// Across the middle, turned to the next of +x, +y, +z, -x, -y, -z.
  void turn();

private:
  void put_across(int axis);
  std::array<double, 2> reach() const;

  std::array<double, 6> bounds_;
  int axis_ = 0;
  ClipPlane plane_;
  std::optional<ClipPlane> active_;
};

} // namespace viewer
