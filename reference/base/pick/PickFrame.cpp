#include "reference/base/pick/PickFrame.h"

#include <algorithm>

namespace {

// In units of the frame, where shapes have a size of about 1.
constexpr double rounding = 1e-12;

PickVec vec(const double* p) { return {p[0], p[1], p[2]}; }

bool is_finite(PickVec a) { return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z); }

double largest(PickVec a) { return std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z)}); }

PickVec scaled(PickVec a, int exponent) {
  return {std::ldexp(a.x, exponent), std::ldexp(a.y, exponent), std::ldexp(a.z, exponent)};
}

// The power of two that brings `size` to about 1.
int unit_exponent(double size) { return size > 0.0 ? -std::ilogb(size) : 0; }

// Where the point projects to on a vector from the origin, as a multiple of it; 0 for a vector of no length.
double projected(PickVec point, PickVec onto) {
  const double length2 = dot(onto, onto);
  return length2 > 0.0 ? dot(point, onto) / length2 : 0.0;
}

double clamp01(double value) { return value > 0.0 ? std::min(value, 1.0) : 0.0; }

} // namespace

bool PickGap::is_better_than(const PickGap& other) const {
  if (std::abs(gap - other.gap) <= rounding) return place < other.place;
  return gap < other.gap;
}

PickFrame::PickFrame(const double* p1, const double* p2, const double* const* corners, int count) {
  const PickVec first = vec(p1);
  const PickVec ray = vec(p2) - first;
  PickVec middle;
  for (int i = 0; i < count; ++i)
    middle = middle + (1.0 / count) * vec(corners[i]);
  if (!is_finite(first) || !is_finite(ray) || !is_finite(middle) || !is_finite(middle - first)) return;

  along_scale_ = unit_exponent(largest(ray));
  along_ = scaled(ray, along_scale_);
  const int middle_scale = unit_exponent(largest(middle - first));
  origin_parameter_ =
      clamp01(std::ldexp(projected(scaled(middle - first, middle_scale), along_), along_scale_ - middle_scale));
  origin_ = first + origin_parameter_ * ray;

  double size = 0.0;
  for (int i = 0; i < count; ++i)
    size = std::max(size, largest(vec(corners[i]) - origin_));
  if (!std::isfinite(size)) return;
  scale_ = unit_exponent(size);
  for (int i = 0; i < count; ++i)
    corners_[i] = scaled(vec(corners[i]) - origin_, scale_);
  if (dot(along_, along_) > 0.0) {
    begin_ = std::ldexp(-origin_parameter_, scale_ - along_scale_);
    end_ = std::ldexp(1.0 - origin_parameter_, scale_ - along_scale_);
  }
  valid_ = true;
}

PickGap PickFrame::to_border(int i, int k) const {
  const PickVec from = corners_[i];
  const PickVec border = corners_[k] - from;
  PickGap best;
  const auto consider = [&](double place, double share) {
    PickGap found;
    found.place = place;
    found.point = from + share * border;
    found.gap = length(place * along_ - found.point);
    found.weights[i] = 1.0 - share;
    found.weights[k] = share;
    if (found.is_better_than(best)) best = found;
  };

  // The gap is a convex function of the two places, so its minimum lies where both are free, or at an end of one.
  const PickVec normal = cross(along_, border);
  const double normal2 = dot(normal, normal);
  if (normal2 > 0.0) {
    const double share = clamp01(dot(cross(from, along_), normal) / normal2);
    consider(clamp_place(projected(from + share * border, along_)), share);
  }
  for (const double share : {0.0, 1.0})
    consider(clamp_place(projected(from + share * border, along_)), share);
  for (const double place : {begin_, end_})
    if (std::isfinite(place)) consider(place, clamp01(projected(place * along_ - from, border)));
  return best;
}

PickGap PickFrame::to_triangle(int i, int j, int k) const {
  PickGap best = crossing(i, j, k);
  if (best.gap == 0.0) return best;
  for (const PickGap& found :
       {to_border(i, j), to_border(j, k), to_border(k, i), end_above(begin_, i, j, k), end_above(end_, i, j, k)})
    if (found.is_better_than(best)) best = found;
  return best;
}

double PickFrame::world_distance(double gap) const { return std::ldexp(gap, -scale_); }

void PickFrame::world_point(PickVec point, double* out) const {
  const PickVec world = origin_ + scaled(point, -scale_);
  out[0] = world.x;
  out[1] = world.y;
  out[2] = world.z;
}

double PickFrame::parameter(double place) const { return origin_parameter_ + std::ldexp(place, along_scale_ - scale_); }

double PickFrame::clamp_place(double place) const { return std::min(std::max(place, begin_), end_); }

PickGap PickFrame::crossing(int i, int j, int k) const {
  const PickVec a = corners_[i];
  const PickVec b = corners_[j];
  const PickVec c = corners_[k];
  // On which side of each border the ray passes. A border seen from the other triangle that has it gives exactly the
  // negative, so that no ray slips through between two of them.
  const double side_a = dot(along_, cross(b, c));
  const double side_b = dot(along_, cross(c, a));
  const double side_c = dot(along_, cross(a, b));
  const double sum = side_a + side_b + side_c;
  PickGap found;
  const bool inside =
      (side_a >= 0.0 && side_b >= 0.0 && side_c >= 0.0) || (side_a <= 0.0 && side_b <= 0.0 && side_c <= 0.0);
  if (!inside || sum == 0.0) return found;
  const PickVec point = (side_a / sum) * a + (side_b / sum) * b + (side_c / sum) * c;
  const double place = projected(point, along_);
  if (!(place >= begin_ && place <= end_)) return found;
  // Seen all but edge-on the weights are mere rounding: the borders know better.
  if (!(length(place * along_ - point) <= rounding)) return found;
  found.gap = 0.0;
  found.place = place;
  found.point = point;
  found.weights[i] = side_a / sum;
  found.weights[j] = side_b / sum;
  found.weights[k] = side_c / sum;
  return found;
}

PickGap PickFrame::end_above(double place, int i, int j, int k) const {
  PickGap found;
  const PickVec a = corners_[i];
  const PickVec normal = cross(corners_[j] - a, corners_[k] - a);
  const double normal2 = dot(normal, normal);
  if (!std::isfinite(place) || normal2 == 0.0) return found;
  const PickVec end = place * along_;
  const PickVec foot = end - (dot(end - a, normal) / normal2) * normal;
  const double weight_j = dot(cross(foot - a, corners_[k] - a), normal) / normal2;
  const double weight_k = dot(cross(corners_[j] - a, foot - a), normal) / normal2;
  const double weight_i = 1.0 - weight_j - weight_k;
  if (!(weight_i >= 0.0 && weight_j >= 0.0 && weight_k >= 0.0)) return found;
  found.gap = length(end - foot);
  found.place = place;
  found.point = foot;
  found.weights[i] = weight_i;
  found.weights[j] = weight_j;
  found.weights[k] = weight_k;
  return found;
}
