#pragma once

#include "pick/index/BoxTree.h"

class PickBounds;
class vtkMatrix4x4;

/// Which boxes may hold something that a ray meets: those that the infinite line through it meets when they are grown
/// by the tolerance, and a little more for what rounding may do.
class LineAdmission {
public:
  /// `ray` is six doubles, two points.
  LineAdmission(const double* ray, double tolerance);
  bool operator()(const BoxTree::Box& box) const;

private:
  double origin_[3];
  double along_[3];
  double tolerance_;
};

/// Which boxes may hold something that lies in a region of the screen. A box that is not wholly before the eye may.
class RegionAdmission {
public:
  /// All borrowed: what region picks project with (two ints, four fractions), and the region.
  RegionAdmission(const vtkMatrix4x4* matrix, const int* size, const double* viewport, PickBounds& bounds);
  bool operator()(const BoxTree::Box& box) const;

private:
  const vtkMatrix4x4* matrix_;
  const int* size_;
  const double* viewport_;
  PickBounds& bounds_;
};
