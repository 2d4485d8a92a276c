#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

/// The box of the coordinates that were added, which tells whether single precision can hold them.
class CoordinateRange {
public:
  void add(double x, double y, double z) {
    const double xyz[3] = {x, y, z};
    for (int axis = 0; axis < 3; ++axis) {
      minimum_[axis] = xyz[axis] < minimum_[axis] ? xyz[axis] : minimum_[axis];
      maximum_[axis] = xyz[axis] > maximum_[axis] ? xyz[axis] : maximum_[axis];
    }
  }

  /// True when what was added lies so far from the origin, for its size, that single precision would show.
  bool needs_double() const {
    double magnitude = 0;
    double size = 0;
    for (int axis = 0; axis < 3; ++axis) {
      if (!(minimum_[axis] <= maximum_[axis])) continue;
      magnitude = std::max({magnitude, std::abs(minimum_[axis]), std::abs(maximum_[axis])});
      size = std::max(size, maximum_[axis] - minimum_[axis]);
    }
    return magnitude > 1000 * size;
  }

private:
  double minimum_[3] = {infinity, infinity, infinity};
  double maximum_[3] = {-infinity, -infinity, -infinity};
  static constexpr double infinity = std::numeric_limits<double>::infinity();
};
