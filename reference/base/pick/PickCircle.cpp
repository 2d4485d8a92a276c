#include "platform/base/PickCircle.h"

#include "platform/util/TovanBox.h"
#include "reference/base/pick/ScreenGeometry.h"

#include <algorithm>
#include <cmath>

using ScreenGeometry::Point;

namespace {

constexpr PickBounds::Result apart = {false, 0.0, 0.0};

// The nearest point of a shape decides for the shape. A radius that is negative or no number holds nothing.
PickBounds::Result judge(Point nearest, Point centre, double radius, double& distance) {
  const double gap = ScreenGeometry::distance(nearest, centre);
  if (!ScreenGeometry::is_finite(nearest)) return apart;
  if (!(gap <= radius)) {
    distance = gap - radius;
    return apart;
  }
  distance = 0.0;
  return {true, nearest[0], nearest[1]};
}

} // namespace

PickCircle::PickCircle(const double centre[2], double radius) : centre_{centre[0], centre[1]}, radius_(radius) {}

PickBounds::Result PickCircle::test(const double point[3], double& distance) {
  return judge(ScreenGeometry::flat(point), {centre_[0], centre_[1]}, radius_, distance);
}

PickBounds::Result PickCircle::test(const double a[3], const double b[3], double& distance) {
  const Point p = ScreenGeometry::flat(a);
  const Point q = ScreenGeometry::flat(b);
  if (!ScreenGeometry::is_finite(p) || !ScreenGeometry::is_finite(q)) return apart;
  const Point centre = {centre_[0], centre_[1]};
  return judge(ScreenGeometry::nearest_on_segment(centre, p, q), centre, radius_, distance);
}

PickBounds::Result PickCircle::test(const double a[3], const double b[3], const double c[3], double& distance) {
  const Point corners[] = {ScreenGeometry::flat(a), ScreenGeometry::flat(b), ScreenGeometry::flat(c)};
  if (!std::all_of(std::begin(corners), std::end(corners), ScreenGeometry::is_finite)) return apart;
  const Point centre = {centre_[0], centre_[1]};
  if (ScreenGeometry::triangle_contains(corners[0], corners[1], corners[2], centre))
    return judge(centre, centre, radius_, distance);
  Point nearest = ScreenGeometry::nearest_on_segment(centre, corners[2], corners[0]);
  for (int i = 0; i < 2; ++i) {
    const Point candidate = ScreenGeometry::nearest_on_segment(centre, corners[i], corners[i + 1]);
    if (ScreenGeometry::distance(candidate, centre) < ScreenGeometry::distance(nearest, centre)) nearest = candidate;
  }
  return judge(nearest, centre, radius_, distance);
}

bool PickCircle::test(const TovanBox& box) {
  double gap[2];
  for (int axis = 0; axis < 2; ++axis) {
    const double low = box.minimum()[axis];
    const double high = box.maximum()[axis];
    if (low > high) return false;
    gap[axis] = std::max({0.0, low - centre_[axis], centre_[axis] - high});
  }
  // A little wide: the nearest point of a segment is rounded, the box's is not.
  constexpr double slack = 1e-9;
  return !(std::hypot(gap[0], gap[1]) > radius_ + slack * (1.0 + std::abs(radius_)));
}
