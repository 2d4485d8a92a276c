#include "platform/util/TovanBox.h"

#include <algorithm>
#include <limits>

TovanBox::TovanBox() {
  constexpr double largest = std::numeric_limits<double>::max();
  std::fill_n(minimum_, 3, largest);
  std::fill_n(maximum_, 3, -largest);
}

TovanBox::TovanBox(const double* minimum, const double* maximum) { reset(minimum, maximum); }

void TovanBox::reset(const double* minimum, const double* maximum) {
  std::copy_n(minimum, 3, minimum_);
  std::copy_n(maximum, 3, maximum_);
}

bool TovanBox::intersect(const TovanVector& origin, const TovanVector& direction) const {
  const double from[3] = {origin.x, origin.y, origin.z};
  const double along[3] = {direction.x, direction.y, direction.z};
  double enter = 0.0;
  double leave = std::numeric_limits<double>::infinity();
  for (int axis = 0; axis < 3; ++axis) {
    // Negated comparisons, so that what is not a number never lies inside.
    if (!(minimum_[axis] <= maximum_[axis])) return false;
    if (along[axis] == 0.0) {
      if (!(minimum_[axis] <= from[axis] && from[axis] <= maximum_[axis])) return false;
      continue;
    }
    // Division, not a product with the reciprocal: it is monotone in the numerator, so a larger box is never missed
    // where a smaller one is hit, and a tiny component cannot turn 0 * infinity into a NaN.
    const double at_minimum = (minimum_[axis] - from[axis]) / along[axis];
    const double at_maximum = (maximum_[axis] - from[axis]) / along[axis];
    const double near_plane = along[axis] > 0.0 ? at_minimum : at_maximum;
    const double far_plane = along[axis] > 0.0 ? at_maximum : at_minimum;
    if (!(near_plane <= far_plane)) return false;
    enter = std::max(enter, near_plane);
    leave = std::min(leave, far_plane);
  }
  return enter <= leave;
}

const double* TovanBox::minimum() const { return minimum_; }

const double* TovanBox::maximum() const { return maximum_; }
