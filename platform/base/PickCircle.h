#pragma once

#include "platform/base/PickBounds.h"
#include "platform/base/orbel_base_api.h"

/// A disc.
class ORBEL_BASE_API PickCircle : public PickBounds {
public:
  /// Two doubles and a radius in pixels; a radius that is negative or not a number contains nothing.
  PickCircle(const double centre[2], double radius);

  Result test(const double point[3], double& distance) override;
  Result test(const double a[3], const double b[3], double& distance) override;
  Result test(const double a[3], const double b[3], const double c[3], double& distance) override;
  bool test(const TovanBox& box) override;

private:
  double centre_[2];
  double radius_;
};
