#include "platform/base/OBPickUtil.h"

#include "reference/base/pick/PickFrame.h"

#include <vtkMatrix4x4.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// False, leaving the outputs, where the gap is larger than the tolerance (or either is no number).
bool report(const PickFrame& frame, const PickGap& found, double tolerance, double& t, double* hit, double& distance) {
  const double gap = frame.world_distance(found.gap);
  if (!(gap <= tolerance)) return false;
  t = frame.parameter(found.place);
  frame.world_point(found.point, hit);
  distance = gap;
  return true;
}

TovanBox viewport_box(vtkRenderer* renderer) {
  const int* size = renderer->GetRenderWindow()->GetSize();
  const double* viewport = renderer->GetViewport();
  const double low[3] = {viewport[0] * size[0], viewport[1] * size[1], 0.0};
  const double high[3] = {viewport[2] * size[0], viewport[3] * size[1], 1.0};
  return TovanBox(low, high);
}

} // namespace

namespace OBPickUtil {

double Dot(const double* a, const double* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

double DistanceBetweenPoints(const double* a, const double* b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

int IntersectLineWithLine(const double* p1, const double* p2, const double* q1, const double* q2, double tolerance,
                          double& t, double* hit, double& u, double& distance) {
  const double* const corners[] = {q1, q2};
  const PickFrame frame(p1, p2, corners, 2);
  if (!frame.is_valid()) return 0;
  const PickGap found = frame.to_border(0, 1);
  if (!report(frame, found, tolerance, t, hit, distance)) return 0;
  u = found.weights[1];
  return 1;
}

int IntersectTriangleWithLine(const double* a, const double* b, const double* c, const double* p1, const double* p2,
                              double tolerance, double& t, double* hit, double* barycentric, double& distance) {
  const double* const corners[] = {a, b, c};
  const PickFrame frame(p1, p2, corners, 3);
  if (!frame.is_valid()) return 0;
  const PickGap found = frame.to_triangle(0, 1, 2);
  if (!report(frame, found, tolerance, t, hit, distance)) return 0;
  std::copy_n(found.weights, 3, barycentric);
  return 1;
}

bool IntersectQuadWithLine(const double* a, const double* b, const double* c, const double* d, const double* p1,
                           const double* p2, double tolerance, double& t, double* hit, double* barycentric,
                           double& distance) {
  const double* const corners[] = {a, b, c, d};
  const PickFrame frame(p1, p2, corners, 4);
  if (!frame.is_valid()) return false;
  const PickGap first = frame.to_triangle(0, 1, 2);
  const PickGap second = frame.to_triangle(0, 2, 3);
  const bool in_second = second.is_better_than(first);
  const PickGap& found = in_second ? second : first;
  if (!report(frame, found, tolerance, t, hit, distance)) return false;
  barycentric[0] = found.weights[0];
  barycentric[1] = found.weights[in_second ? 2 : 1];
  barycentric[2] = found.weights[in_second ? 3 : 2];
  return true;
}

void view_to_display(const double* in, double* out, const int* size, const double* viewport) {
  for (int axis = 0; axis < 2; ++axis) {
    const double pixels = size[axis];
    const double low = viewport[axis];
    const double high = viewport[axis + 2];
    out[axis] = (in[axis] + 1.0) * (pixels * (high - low)) / 2.0 + pixels * low;
  }
  out[2] = in[2];
}

TovanBox convert_world_bbox_to_display_bbox(const double* bounds, vtkMatrix4x4* matrix, vtkRenderer* renderer) {
  if (bounds[0] > bounds[1] || bounds[2] > bounds[3] || bounds[4] > bounds[5]) return TovanBox();
  const int* size = renderer->GetRenderWindow()->GetSize();
  const double* viewport = renderer->GetViewport();
  constexpr double largest = std::numeric_limits<double>::max();
  double low[3] = {largest, largest, largest};
  double high[3] = {-largest, -largest, -largest};
  for (int corner = 0; corner < 8; ++corner) {
    const double world[4] = {bounds[corner & 1], bounds[2 + (corner >> 1 & 1)], bounds[4 + (corner >> 2 & 1)], 1.0};
    double view[4];
    matrix->MultiplyPoint(world, view);
    // At or behind the eye nothing bounds the picture of the box (and where it is no number, nothing does either).
    if (!(view[3] > 0.0)) return viewport_box(renderer);
    double display[3];
    for (int axis = 0; axis < 3; ++axis)
      view[axis] /= view[3];
    view_to_display(view, display, size, viewport);
    for (int axis = 0; axis < 3; ++axis) {
      if (!std::isfinite(display[axis])) return viewport_box(renderer);
      low[axis] = std::min(low[axis], display[axis]);
      high[axis] = std::max(high[axis], display[axis]);
    }
  }
  return TovanBox(low, high);
}

} // namespace OBPickUtil
