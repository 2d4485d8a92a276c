#include "platform/base/PickPolygon.h"

#include "platform/util/TovanBox.h"
#include "reference/base/pick/ScreenGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

using ScreenGeometry::Outline;
using ScreenGeometry::Point;

namespace {
constexpr PickBounds::Result apart = {false, 0.0, 0.0};
} // namespace

PickPolygon::PickPolygon(std::vector<std::array<double, 2>> corners) : corners_(std::move(corners)) {
  // An outline with a hole in it would be none: what is not a number is left out.
  corners_.erase(std::remove_if(corners_.begin(), corners_.end(),
                                [](const Point& corner) { return !ScreenGeometry::is_finite(corner); }),
                 corners_.end());
}

PickBounds::Result PickPolygon::test(const double point[3], double& distance) {
  const Point p = ScreenGeometry::flat(point);
  if (!ScreenGeometry::is_finite(p)) return apart;
  const Outline outline{corners_.data(), corners_.size()};
  const bool inside = outline.contains(p);
  distance = inside ? 0.0 : outline.distance_to(p);
  return inside ? Result{true, p[0], p[1]} : apart;
}

PickBounds::Result PickPolygon::test(const double a[3], const double b[3], double& distance) {
  const Point p = ScreenGeometry::flat(a);
  const Point q = ScreenGeometry::flat(b);
  if (!ScreenGeometry::is_finite(p) || !ScreenGeometry::is_finite(q)) return apart;
  const Result result = Outline{corners_.data(), corners_.size()}.touch(p, q);
  if (result.touches) distance = 0.0;
  return result;
}

PickBounds::Result PickPolygon::test(const double a[3], const double b[3], const double c[3], double& distance) {
  const Point p = ScreenGeometry::flat(a);
  const Point q = ScreenGeometry::flat(b);
  const Point r = ScreenGeometry::flat(c);
  if (!ScreenGeometry::is_finite(p) || !ScreenGeometry::is_finite(q) || !ScreenGeometry::is_finite(r)) return apart;
  const Result result = Outline{corners_.data(), corners_.size()}.touch(p, q, r);
  if (result.touches) distance = 0.0;
  return result;
}

bool PickPolygon::test(const TovanBox& box) {
  // Grown a little: where two segments meet is rounded.
  constexpr double slack = 1e-6;
  double low[2];
  double high[2];
  for (int axis = 0; axis < 2; ++axis) {
    low[axis] = box.minimum()[axis] - slack;
    high[axis] = box.maximum()[axis] + slack;
    if (box.minimum()[axis] > box.maximum()[axis]) return false;
    if (!std::isfinite(low[axis]) || !std::isfinite(high[axis])) return true;
  }
  const Point a = {low[0], low[1]};
  const Point b = {high[0], low[1]};
  const Point c = {high[0], high[1]};
  const Point d = {low[0], high[1]};
  const Outline outline{corners_.data(), corners_.size()};
  return outline.touch(a, b, c).touches || outline.touch(a, c, d).touches;
}
