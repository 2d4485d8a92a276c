#pragma once

#include "platform/base/orbel_base_api.h"
#include "platform/util/TovanBox.h"

class vtkMatrix4x4;
class vtkRenderer;

/// Geometry of picking. Points and vectors are three doubles; the segment from `p1` to `p2` is the pick ray.
///
/// The intersections answer whether the ray comes within `tolerance` of the shape. On a hit, `t` is the place along the
/// ray (0 at `p1`, 1 at `p2`), `hit` the nearest point on the shape, and `distance` the gap between ray and shape, at
/// most the tolerance and 0 where they cross. Both facings count. Degenerate shapes, and those seen edge-on, are tested
/// as their border segments. Without a hit the outputs are undefined.
namespace OBPickUtil {

/// Scalar product.
ORBEL_BASE_API double Dot(const double* a, const double* b);
/// Euclidean distance.
ORBEL_BASE_API double DistanceBetweenPoints(const double* a, const double* b);

/// Ray against the segment from `q1` to `q2`; `u` is the place along that segment. Non-zero: hit.
/// Closest points of two segments: Ericson, "Real-Time Collision Detection", 2005, section 5.1.9.
ORBEL_BASE_API int IntersectLineWithLine(const double* p1, const double* p2, const double* q1, const double* q2,
                                         double tolerance, double& t, double* hit, double& u, double& distance);
/// Ray against a triangle; `barycentric` gets three weights of `hit`. Non-zero: hit.
/// Moller and Trumbore, "Fast, minimum storage ray/triangle intersection", 1997.
ORBEL_BASE_API int IntersectTriangleWithLine(const double* a, const double* b, const double* c, const double* p1,
                                             const double* p2, double tolerance, double& t, double* hit,
                                             double* barycentric, double& distance);
/// Ray against a quadrilateral, which is its triangles (a, b, c) and (a, c, d): the smaller gap wins, then the nearer.
/// `barycentric` gets the three weights in the triangle that was hit. True: hit.
ORBEL_BASE_API bool IntersectQuadWithLine(const double* a, const double* b, const double* c, const double* d,
                                          const double* p1, const double* p2, double tolerance, double& t, double* hit,
                                          double* barycentric, double& distance);

/// A point in view coordinates (-1 to 1) as display pixels of a window of `size` (two ints) in its `viewport` (four
/// fractions: xmin, ymin, xmax, ymax). z is kept; `out` may be `in`.
ORBEL_BASE_API void view_to_display(const double* in, double* out, const int* size, const double* viewport);
/// The box in display pixels that holds a world box (xmin xmax ymin ymax zmin zmax) seen through `matrix` in the
/// renderer. Empty for inverted bounds; the whole viewport when a corner lies at or behind the eye.
ORBEL_BASE_API TovanBox convert_world_bbox_to_display_bbox(const double* bounds, vtkMatrix4x4* matrix,
                                                           vtkRenderer* renderer);

} // namespace OBPickUtil
