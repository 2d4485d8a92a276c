#pragma once

#include <cmath>

/// Three doubles with the operations that picking needs.
struct PickVec {
  double x = 0, y = 0, z = 0;
};

inline PickVec operator+(PickVec a, PickVec b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline PickVec operator-(PickVec a, PickVec b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline PickVec operator*(double s, PickVec a) { return {s * a.x, s * a.y, s * a.z}; }
inline double dot(PickVec a, PickVec b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
/// `cross(a, b)` is exactly the negative of `cross(b, a)`.
inline PickVec cross(PickVec a, PickVec b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(PickVec a) { return std::hypot(a.x, a.y, a.z); }

/// Where ray and shape come closest.
struct PickGap {
  double gap = HUGE_VAL;  ///< their distance, in the frame's units
  double place = 0;       ///< along the ray, in multiples of `PickFrame::along`
  PickVec point;          ///< on the shape
  double weights[4] = {}; ///< of the corners, for that point

  /// Whether this is to be preferred: the smaller gap, and of equal ones the nearer. Gaps that differ by rounding alone
  /// are equal: seen edge-on, a shape is met at its near border.
  bool is_better_than(const PickGap& other) const;
};

/// A pick ray and up to four corners of a shape, relative to the point of the ray that lies beside the shape and scaled
/// to about 1 by a power of two. So the shape's own size sets the precision, neither its place in the world nor the
/// length of the ray, and no product of lengths runs over or under.
class PickFrame {
public:
  /// Copies what it is given.
  PickFrame(const double* p1, const double* p2, const double* const* corners, int count);

  /// False where a coordinate is not finite, or too large to subtract.
  bool is_valid() const { return valid_; }

  /// The closest points of the ray and the border from corner `i` to corner `k`.
  PickGap to_border(int i, int k) const;
  /// The closest points of the ray and a triangle; the gap is 0 where they cross.
  PickGap to_triangle(int i, int j, int k) const;

  /// A gap as a distance in the world.
  double world_distance(double gap) const;
  /// A point as a world point of three doubles.
  void world_point(PickVec point, double* out) const;
  /// A place as a parameter of the ray, 0 at its first point and 1 at its second.
  double parameter(double place) const;

private:
  double clamp_place(double place) const;
  PickGap crossing(int i, int j, int k) const;
  PickGap end_above(double place, int i, int j, int k) const;

  bool valid_ = false;
  PickVec origin_;
  PickVec corners_[4];
  PickVec along_;    // the ray's direction; zero for a ray of no length
  double begin_ = 0; // the places of the ray's ends; the origin's is 0
  double end_ = 0;
  double origin_parameter_ = 0;
  int scale_ = 0;       // frame = world * 2^scale_
  int along_scale_ = 0; // along = ray vector * 2^along_scale_
};
