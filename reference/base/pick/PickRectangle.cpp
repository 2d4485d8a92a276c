#include "platform/base/PickRectangle.h"

#include "platform/util/TovanBox.h"
#include "reference/base/pick/ScreenGeometry.h"

#include <algorithm>
#include <cmath>

using ScreenGeometry::Outline;
using ScreenGeometry::Point;

namespace {

bool contains(const double* low, const double* high, Point p) {
  return low[0] <= p[0] && p[0] <= high[0] && low[1] <= p[1] && p[1] <= high[1];
}

// Rejects what lies beyond one side, and what is not a number. Most of a big mesh goes here.
template <class... Points> bool may_touch(const double* low, const double* high, Points... points) {
  for (int axis = 0; axis < 2; ++axis) {
    if (!(std::min({points[axis]...}) <= high[axis] && std::max({points[axis]...}) >= low[axis])) return false;
  }
  return (ScreenGeometry::is_finite(points) && ...);
}

} // namespace

PickRectangle::PickRectangle(const double a[2], const double b[2]) {
  for (int axis = 0; axis < 2; ++axis) {
    minimum_[axis] = std::min(a[axis], b[axis]);
    maximum_[axis] = std::max(a[axis], b[axis]);
  }
}

PickBounds::Result PickRectangle::test(const double point[3], double& distance) {
  const Point p = ScreenGeometry::flat(point);
  if (!ScreenGeometry::is_finite(p)) return {false, 0.0, 0.0};
  const Point nearest = {std::min(std::max(p[0], minimum_[0]), maximum_[0]),
                         std::min(std::max(p[1], minimum_[1]), maximum_[1])};
  distance = ScreenGeometry::distance(p, nearest);
  if (!contains(minimum_, maximum_, p)) return {false, 0.0, 0.0};
  return {true, p[0], p[1]};
}

PickBounds::Result PickRectangle::test(const double a[3], const double b[3], double& distance) {
  const Point p = ScreenGeometry::flat(a);
  const Point q = ScreenGeometry::flat(b);
  if (!may_touch(minimum_, maximum_, p, q)) return {false, 0.0, 0.0};
  const Point corners[] = {
      {minimum_[0], minimum_[1]}, {maximum_[0], minimum_[1]}, {maximum_[0], maximum_[1]}, {minimum_[0], maximum_[1]}};
  const Result result = Outline{corners, 4}.touch(p, q);
  if (result.touches) distance = 0.0;
  return result;
}

PickBounds::Result PickRectangle::test(const double a[3], const double b[3], const double c[3], double& distance) {
  const Point p = ScreenGeometry::flat(a);
  const Point q = ScreenGeometry::flat(b);
  const Point r = ScreenGeometry::flat(c);
  if (!may_touch(minimum_, maximum_, p, q, r)) return {false, 0.0, 0.0};
  const Point corners[] = {
      {minimum_[0], minimum_[1]}, {maximum_[0], minimum_[1]}, {maximum_[0], maximum_[1]}, {minimum_[0], maximum_[1]}};
  const Result result = Outline{corners, 4}.touch(p, q, r);
  if (result.touches) distance = 0.0;
  return result;
}

bool PickRectangle::test(const TovanBox& box) {
  // Negated, so that a box that is no number is let through rather than something in it missed.
  for (int axis = 0; axis < 2; ++axis) {
    if (box.minimum()[axis] > box.maximum()[axis]) return false;
    if (box.minimum()[axis] > maximum_[axis] || box.maximum()[axis] < minimum_[axis]) return false;
  }
  return true;
}
