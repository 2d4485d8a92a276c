#pragma once

#include <algorithm>
#include <array>
#include <cmath>

/// Distances in extended precision by searching instead of solving: slow, and wrong in other ways than the code under
/// test.
namespace oracle {

using Real = long double;
using Point = std::array<Real, 3>;

inline Point point(const double* p) { return {p[0], p[1], p[2]}; }
inline Point minus(Point a, Point b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline Point between(Point a, Point b, Real t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}
inline Real dot(Point a, Point b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline Point cross(Point a, Point b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline Real length(Point a) { return std::sqrt(dot(a, a)); }

/// The smallest value of a convex function on 0 to 1.
template <class Function> Real smallest(Function f) {
  Real low = 0;
  Real high = 1;
  for (int i = 0; i < 200; ++i) {
    const Real a = low + (high - low) / 3;
    const Real b = high - (high - low) / 3;
    if (f(a) < f(b))
      high = b;
    else
      low = a;
  }
  return std::min({f((low + high) / 2), f(Real(0)), f(Real(1))});
}

inline Real point_to_segment(Point p, Point a, Point b) {
  return smallest([&](Real t) { return length(minus(p, between(a, b, t))); });
}

inline Real segment_to_segment(Point a, Point b, Point c, Point d) {
  return smallest([&](Real t) {
    const Point p = between(a, b, t);
    const Point along = minus(d, c);
    const Real length2 = dot(along, along);
    Real u = length2 > 0 ? dot(minus(p, c), along) / length2 : Real(0);
    u = std::min(std::max(u, Real(0)), Real(1));
    return length(minus(p, between(c, d, u)));
  });
}

inline Real point_to_segment_solved(Point p, Point c, Point d) {
  const Point along = minus(d, c);
  const Real length2 = dot(along, along);
  Real u = length2 > 0 ? dot(minus(p, c), along) / length2 : Real(0);
  u = std::min(std::max(u, Real(0)), Real(1));
  return length(minus(p, between(c, d, u)));
}

inline Real point_to_triangle(Point p, Point a, Point b, Point c) {
  Real nearest =
      std::min({point_to_segment_solved(p, a, b), point_to_segment_solved(p, b, c), point_to_segment_solved(p, c, a)});
  const Point normal = cross(minus(b, a), minus(c, a));
  const Real normal2 = dot(normal, normal);
  if (normal2 == 0) return nearest;
  const Real above = dot(minus(p, a), normal) / normal2;
  const Point foot = {p[0] - above * normal[0], p[1] - above * normal[1], p[2] - above * normal[2]};
  const bool inside = dot(cross(minus(b, a), minus(foot, a)), normal) >= 0 &&
                      dot(cross(minus(c, b), minus(foot, b)), normal) >= 0 &&
                      dot(cross(minus(a, c), minus(foot, c)), normal) >= 0;
  return inside ? std::min(nearest, std::abs(above) * std::sqrt(normal2)) : nearest;
}

inline Real segment_to_triangle(Point p, Point q, Point a, Point b, Point c) {
  return smallest([&](Real t) { return point_to_triangle(between(p, q, t), a, b, c); });
}

} // namespace oracle
