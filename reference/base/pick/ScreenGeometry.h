#pragma once

#include "platform/base/PickBounds.h"

#include <array>
#include <cstddef>

/// Plane geometry of the screen. Shapes are closed: their borders belong to them.
namespace ScreenGeometry {

/// A point in display pixels.
using Point = std::array<double, 2>;

/// The x and y of a display point of three doubles.
inline Point flat(const double* point) { return {point[0], point[1]}; }

/// Whether both coordinates are numbers, and not infinite.
bool is_finite(Point p);
/// Distance of two points.
double distance(Point a, Point b);
/// The point of the segment from `a` to `b` that is nearest to `p`.
Point nearest_on_segment(Point p, Point a, Point b);
/// Whether two segments have a point in common, and one such point.
bool segments_meet(Point a, Point b, Point c, Point d, Point& meeting);
/// Whether the triangle holds the point.
bool triangle_contains(Point a, Point b, Point c, Point p);

/// A closed outline of `count` corners, the last joined to the first, with its even-odd inside.
struct Outline {
  const Point* corners; ///< borrowed
  std::size_t count;    ///< may be 0

  /// Whether the point lies inside or on the outline.
  bool contains(Point p) const;
  /// Distance of the point from the outline; infinite without corners.
  double distance_to(Point p) const;
  /// Whether the segment has a point inside or on the outline, and one such point.
  PickBounds::Result touch(Point a, Point b) const;
  /// Whether the triangle has a point inside or on the outline, and one such point.
  PickBounds::Result touch(Point a, Point b, Point c) const;
};

} // namespace ScreenGeometry
