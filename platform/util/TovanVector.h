#pragma once

#include "platform/util/tovan_util_api.h"

/// A point or a direction in space, in the mesh's own units.
struct TOVAN_UTIL_API TovanVector {
  double x = 0; ///< first coordinate
  double y = 0; ///< second coordinate
  double z = 0; ///< third coordinate

  /// The origin.
  TovanVector() = default;
  /// The point with these coordinates.
  TovanVector(double x, double y, double z);
  /// Copies three doubles; `xyz` must not be null.
  explicit TovanVector(const double* xyz);

  /// Euclidean distance between the two points.
  double distance_between(const TovanVector& other) const;
};
