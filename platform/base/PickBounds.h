#pragma once

#include "platform/base/orbel_base_api.h"

class TovanBox;

/// A region of the screen. Points are in display pixels, of which only x and y count; borders belong to the region;
/// what is not a number lies outside.
class ORBEL_BASE_API PickBounds {
public:
  /// The answer of a test.
  struct Result {
    bool touches; ///< whether the shape and the region have a point in common
    double x;     ///< first coordinate of such a point; 0 when they have none
    double y;     ///< second coordinate of such a point; 0 when they have none
  };

  virtual ~PickBounds();
  /// Tests a point of three doubles. `distance` becomes 0 inside, else the gap in pixels, or stays as it is.
  virtual Result test(const double point[3], double& distance) = 0;
  /// Tests a segment.
  virtual Result test(const double a[3], const double b[3], double& distance) = 0;
  /// Tests a filled triangle.
  virtual Result test(const double a[3], const double b[3], const double c[3], double& distance) = 0;
  /// Tests a box, by its x and y: never false when something inside the box would touch.
  virtual bool test(const TovanBox& box) = 0;
};
