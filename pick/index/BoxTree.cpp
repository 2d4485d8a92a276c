#include "pick/index/BoxTree.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

using Box = BoxTree::Box;

constexpr float infinity = std::numeric_limits<float>::infinity();

float round_down(double value) {
  const auto rounded = static_cast<float>(value);
  return rounded > value ? std::nextafter(rounded, -infinity) : rounded;
}

float round_up(double value) {
  const auto rounded = static_cast<float>(value);
  return rounded < value ? std::nextafter(rounded, infinity) : rounded;
}

constexpr int bits_per_axis = 10;

// Puts two free bits after each bit.
std::uint64_t spread(std::uint64_t value) {
  value = (value | value << 16) & 0x030000ffu;
  value = (value | value << 8) & 0x0300f00fu;
  value = (value | value << 4) & 0x030c30c3u;
  return (value | value << 2) & 0x09249249u;
}

double centre_of(const Box& box, int axis) { return 0.5 * (double(box.minimum[axis]) + double(box.maximum[axis])); }

/// Tells where along a Morton curve through most of many boxes the centres of all lie: a few far away, reference nodes
/// say, must not put all others into one place.
class MortonCurve {
public:
  explicit MortonCurve(const std::vector<Box>& boxes) {
    constexpr std::size_t most_samples = 4096;
    const std::size_t step = boxes.size() / most_samples + 1;
    std::vector<double> centres;
    for (int axis = 0; axis < 3; ++axis) {
      centres.clear();
      for (std::size_t i = 0; i < boxes.size(); i += step)
        if (boxes[i].is_finite()) centres.push_back(centre_of(boxes[i], axis));
      if (centres.empty()) continue;
      std::sort(centres.begin(), centres.end());
      const double low = centres[centres.size() / 100];
      const double high = centres[centres.size() - 1 - centres.size() / 100];
      const double margin = 0.05 * (high - low);
      origin_[axis] = low - margin;
      scale_[axis] = high > low ? last / (high - low + 2 * margin) : 0;
    }
  }
  std::uint64_t place(const Box& box) const {
    std::uint64_t code = 0;
    for (int axis = 0; axis < 3; ++axis) {
      const double along = (centre_of(box, axis) - origin_[axis]) * scale_[axis];
      code |= spread(static_cast<std::uint64_t>(std::clamp(along, 0.0, last))) << axis;
    }
    return code;
  }

private:
  static constexpr double last = (1 << bits_per_axis) - 1;

  double origin_[3] = {};
  double scale_[3] = {};
};

// By the upper half, ten bits at a time from the lowest; what is equal keeps its order.
void radix_sort(std::vector<std::uint64_t>& values) {
  constexpr int digit_bits = 10;
  constexpr std::size_t digits = std::size_t{1} << digit_bits;
  std::vector<std::uint64_t> sorted(values.size());
  for (int shift = 32; shift < 32 + 3 * bits_per_axis; shift += digit_bits) {
    std::array<std::size_t, digits + 1> begin{};
    for (const std::uint64_t value : values)
      ++begin[(value >> shift & (digits - 1)) + 1];
    for (std::size_t digit = 1; digit < digits; ++digit)
      begin[digit] += begin[digit - 1];
    for (const std::uint64_t value : values)
      sorted[begin[value >> shift & (digits - 1)]++] = value;
    values.swap(sorted);
  }
}

} // namespace

BoxTree::Box::Box() {
  std::fill_n(minimum, 3, infinity);
  std::fill_n(maximum, 3, -infinity);
}

void BoxTree::Box::add(const double* point) {
  for (int axis = 0; axis < 3; ++axis) {
    const float low = round_down(point[axis]);
    const float high = round_up(point[axis]);
    // What is no number stays: of comparisons with it none is true.
    minimum[axis] = !(low >= minimum[axis]) && !std::isnan(minimum[axis]) ? low : minimum[axis];
    maximum[axis] = !(high <= maximum[axis]) && !std::isnan(maximum[axis]) ? high : maximum[axis];
  }
}

void BoxTree::Box::add(const Box& other) {
  for (int axis = 0; axis < 3; ++axis) {
    minimum[axis] = std::min(minimum[axis], other.minimum[axis]);
    maximum[axis] = std::max(maximum[axis], other.maximum[axis]);
  }
}

bool BoxTree::Box::is_finite() const {
  const auto finite = [](float value) { return std::isfinite(value); };
  return std::all_of(minimum, minimum + 3, finite) && std::all_of(maximum, maximum + 3, finite);
}

BoxTree::BoxTree(const std::vector<Box>& boxes) {
  const MortonCurve curve(boxes);
  std::vector<std::uint64_t> along;
  along.reserve(boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    if (boxes[i].is_finite())
      along.push_back(curve.place(boxes[i]) << 32 | i);
    else
      always_.push_back(static_cast<std::uint32_t>(i));
  }
  radix_sort(along);
  if (along.empty()) return;

  order_.resize(along.size());
  levels_.emplace_back(along.size());
  for (std::size_t i = 0; i < along.size(); ++i) {
    order_[i] = static_cast<std::uint32_t>(along[i]);
    levels_[0][i] = boxes[order_[i]];
  }
  while (levels_.back().size() > branches) {
    const std::vector<Box>& below = levels_.back();
    std::vector<Box> level((below.size() + branches - 1) / branches);
    for (std::size_t i = 0; i < below.size(); ++i)
      level[i / branches].add(below[i]);
    levels_.push_back(std::move(level));
  }
}
