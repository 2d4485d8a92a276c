#pragma once

#include "platform/base/PickBounds.h"
#include "platform/base/orbel_base_api.h"

/// A rectangle along the axes of the screen.
class ORBEL_BASE_API PickRectangle : public PickBounds {
public:
  /// Between two opposite corners of two doubles each, in any order.
  PickRectangle(const double a[2], const double b[2]);

  Result test(const double point[3], double& distance) override;
  Result test(const double a[3], const double b[3], double& distance) override;
  Result test(const double a[3], const double b[3], const double c[3], double& distance) override;
  bool test(const TovanBox& box) override;

private:
  double minimum_[2];
  double maximum_[2];
};
