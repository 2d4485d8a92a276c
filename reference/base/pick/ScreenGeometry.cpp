#include "reference/base/pick/ScreenGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ScreenGeometry {

namespace {

// Twice the area of the triangle, positive when it turns left.
double turn(Point a, Point b, Point c) { return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]); }

int sign(double value) { return (value > 0.0) - (value < 0.0); }

bool in_box_of(Point a, Point b, Point p) {
  return std::min(a[0], b[0]) <= p[0] && p[0] <= std::max(a[0], b[0]) && std::min(a[1], b[1]) <= p[1] &&
         p[1] <= std::max(a[1], b[1]);
}

bool on_segment(Point a, Point b, Point p) { return turn(a, b, p) == 0.0 && in_box_of(a, b, p); }

PickBounds::Result touching_at(Point p) { return {true, p[0], p[1]}; }

constexpr PickBounds::Result apart = {false, 0.0, 0.0};

} // namespace

bool is_finite(Point p) { return std::isfinite(p[0]) && std::isfinite(p[1]); }

double distance(Point a, Point b) { return std::hypot(a[0] - b[0], a[1] - b[1]); }

Point nearest_on_segment(Point p, Point a, Point b) {
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  const double length2 = dx * dx + dy * dy;
  double share = length2 > 0.0 ? ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2 : 0.0;
  share = share > 0.0 ? std::min(share, 1.0) : 0.0;
  return share == 1.0 ? b : Point{a[0] + share * dx, a[1] + share * dy};
}

bool segments_meet(Point a, Point b, Point c, Point d, Point& meeting) {
  const double from_c = turn(a, b, c);
  const double from_d = turn(a, b, d);
  if (sign(from_c) * sign(from_d) < 0 && sign(turn(c, d, a)) * sign(turn(c, d, b)) < 0) {
    const double share = from_c / (from_c - from_d);
    meeting = {c[0] + share * (d[0] - c[0]), c[1] + share * (d[1] - c[1])};
    return true;
  }
  // Anything else in common includes an end of one of them.
  for (const Point& end : {c, d}) {
    if (on_segment(a, b, end)) {
      meeting = end;
      return true;
    }
  }
  for (const Point& end : {a, b}) {
    if (on_segment(c, d, end)) {
      meeting = end;
      return true;
    }
  }
  return false;
}

bool triangle_contains(Point a, Point b, Point c, Point p) {
  const int first = sign(turn(a, b, p));
  const int second = sign(turn(b, c, p));
  const int third = sign(turn(c, a, p));
  if (first == 0 && second == 0 && third == 0) return in_box_of(a, b, p) || in_box_of(b, c, p) || in_box_of(c, a, p);
  return (first >= 0 && second >= 0 && third >= 0) || (first <= 0 && second <= 0 && third <= 0);
}

bool Outline::contains(Point p) const {
  bool inside = false;
  for (std::size_t i = 0; i < count; ++i) {
    const Point a = corners[i];
    const Point b = corners[(i + 1) % count];
    if (on_segment(a, b, p)) return true;
    // Whether a ray towards larger x crosses this side: exactly one end lies above it, and the crossing to the right.
    if ((a[1] > p[1]) == (b[1] > p[1])) continue;
    const bool left = turn(a, b, p) > 0.0;
    if (left == (b[1] > a[1])) inside = !inside;
  }
  return inside;
}

double Outline::distance_to(Point p) const {
  double nearest = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < count; ++i)
    nearest = std::min(nearest, distance(p, nearest_on_segment(p, corners[i], corners[(i + 1) % count])));
  return nearest;
}

PickBounds::Result Outline::touch(Point a, Point b) const {
  for (const Point& end : {a, b})
    if (contains(end)) return touching_at(end);
  Point meeting;
  for (std::size_t i = 0; i < count; ++i)
    if (segments_meet(a, b, corners[i], corners[(i + 1) % count], meeting)) return touching_at(meeting);
  return apart;
}

PickBounds::Result Outline::touch(Point a, Point b, Point c) const {
  for (const auto& side : {std::array<Point, 2>{a, b}, std::array<Point, 2>{b, c}, std::array<Point, 2>{c, a}}) {
    const PickBounds::Result result = touch(side[0], side[1]);
    if (result.touches) return result;
  }
  // No border in common: the outline lies in the triangle, or nowhere near it.
  for (std::size_t i = 0; i < count; ++i)
    if (triangle_contains(a, b, c, corners[i])) return touching_at(corners[i]);
  return apart;
}

} // namespace ScreenGeometry
