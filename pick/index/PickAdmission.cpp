#include "pick/index/PickAdmission.h"

#include "platform/base/OBPickUtil.h"
#include "platform/base/PickBounds.h"
#include "platform/util/TovanBox.h"

#include <vtkMatrix4x4.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Of coordinates, of the tolerance and of pixels: far more than the rounding of doubles, far less than anything seen.
constexpr double rounding = 1e-9;

} // namespace

LineAdmission::LineAdmission(const double* ray, double tolerance) : tolerance_(tolerance * (1 + rounding)) {
  for (int axis = 0; axis < 3; ++axis) {
    origin_[axis] = ray[axis];
    along_[axis] = ray[axis + 3] - ray[axis];
  }
}

// Slab method: Kay and Kajiya, "Ray tracing complex scenes", SIGGRAPH 1986.
bool LineAdmission::operator()(const BoxTree::Box& box) const {
  double magnitude = 0;
  for (int axis = 0; axis < 3; ++axis)
    magnitude = std::max(
        {magnitude, std::abs(origin_[axis]), std::abs(double(box.minimum[axis])), std::abs(double(box.maximum[axis]))});
  const double growth = tolerance_ + rounding * magnitude;
  double enter = -infinity;
  double leave = infinity;
  for (int axis = 0; axis < 3; ++axis) {
    const double low = box.minimum[axis] - growth - origin_[axis];
    const double high = box.maximum[axis] + growth - origin_[axis];
    if (along_[axis] == 0.0) {
      if (low > 0 || high < 0) return false;
      continue;
    }
    const double at_low = low / along_[axis];
    const double at_high = high / along_[axis];
    enter = std::max(enter, std::min(at_low, at_high));
    leave = std::min(leave, std::max(at_low, at_high));
  }
  return !(enter > leave);
}

RegionAdmission::RegionAdmission(const vtkMatrix4x4* matrix, const int* size, const double* viewport,
                                 PickBounds& bounds)
    : matrix_(matrix), size_(size), viewport_(viewport), bounds_(bounds) {}

bool RegionAdmission::operator()(const BoxTree::Box& box) const {
  double low[3] = {infinity, infinity, 0};
  double high[3] = {-infinity, -infinity, 0};
  for (int corner = 0; corner < 8; ++corner) {
    const double world[3] = {corner & 1 ? box.maximum[0] : box.minimum[0], corner & 2 ? box.maximum[1] : box.minimum[1],
                             corner & 4 ? box.maximum[2] : box.minimum[2]};
    double view[4];
    for (int row = 0; row < 4; ++row) {
      const double* const at = matrix_->Element[row];
      view[row] = at[0] * world[0] + at[1] * world[1] + at[2] * world[2] + at[3];
    }
    if (!(view[3] > 0)) return true;
    double display[3] = {view[0] / view[3], view[1] / view[3], view[2] / view[3]};
    OBPickUtil::view_to_display(display, display, size_, viewport_);
    for (int axis = 0; axis < 2; ++axis) {
      if (!std::isfinite(display[axis])) return true;
      low[axis] = std::min(low[axis], display[axis]);
      high[axis] = std::max(high[axis], display[axis]);
    }
  }
  for (int axis = 0; axis < 2; ++axis) {
    const double growth = rounding * (1 + std::max(std::abs(low[axis]), std::abs(high[axis])));
    low[axis] -= growth;
    high[axis] += growth;
  }
  return bounds_.test(TovanBox(low, high));
}
