#pragma once

#include "platform/util/TovanVector.h"
#include "platform/util/tovan_util_api.h"

/// An axis-aligned box, kept as its two extreme corners. A box whose minimum lies above its maximum on any axis is
/// inverted, that is empty; the default box is.
class TOVAN_UTIL_API TovanBox {
public:
  /// The empty box.
  TovanBox();
  /// Copies two corners of three doubles each; they are not reordered.
  TovanBox(const double* minimum, const double* maximum);

  /// Replaces both corners, as the constructor does.
  void reset(const double* minimum, const double* maximum);

  /// Whether the ray from `origin` along `direction` (t >= 0, no far end) meets the closed box. A zero component of the
  /// direction asks that the origin lie between the two planes of that axis. Never true for an inverted box, nor where
  /// a coordinate is not a number. Monotone: a box that contains a box which is hit is hit too.
  /// Slab method: Kay and Kajiya, "Ray tracing complex scenes", SIGGRAPH 1986.
  bool intersect(const TovanVector& origin, const TovanVector& direction) const;

  /// The corner of smallest coordinates: three doubles, owned by the box.
  const double* minimum() const;
  /// The corner of largest coordinates: three doubles, owned by the box.
  const double* maximum() const;

private:
  double minimum_[3];
  double maximum_[3];
};
