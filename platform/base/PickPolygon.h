#pragma once

#include "platform/base/PickBounds.h"
#include "platform/base/orbel_base_api.h"

#include <array>
#include <vector>

/// A polygon; inside is where a ray crosses its outline an odd number of times.
class ORBEL_BASE_API PickPolygon : public PickBounds {
public:
  /// The corners in order; the last joins the first. Fewer than three make a segment, a point or nothing.
  explicit PickPolygon(std::vector<std::array<double, 2>> corners);

  Result test(const double point[3], double& distance) override;
  Result test(const double a[3], const double b[3], double& distance) override;
  Result test(const double a[3], const double b[3], const double c[3], double& distance) override;
  bool test(const TovanBox& box) override;

private:
  std::vector<std::array<double, 2>> corners_;
};
