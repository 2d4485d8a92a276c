#include "viewer/Camera.h"

#include <vtkBoundingBox.h>
#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkPoints.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace viewer {
namespace {

using Vector = std::array<double, 3>;

constexpr double view_angle = 30;
constexpr double margin = 1.08;

Vector direction_to_eye(ViewFrom view) {
  switch (view) {
  case ViewFrom::PlusX:
    return {1, 0, 0};
  case ViewFrom::MinusX:
    return {-1, 0, 0};
  case ViewFrom::PlusY:
    return {0, 1, 0};
  case ViewFrom::MinusY:
    return {0, -1, 0};
  case ViewFrom::PlusZ:
    return {0, 0, 1};
  case ViewFrom::MinusZ:
    return {0, 0, -1};
  case ViewFrom::Iso:
    break;
  }
  return {1, -1, 1};
}

double tangent(double degrees) { return std::tan(vtkMath::RadiansFromDegrees(degrees / 2)); }

struct Extent {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  double middle() const { return low / 2 + high / 2; }
  double size() const { return high - low; }
};

// What the camera has to take in, along its axes: right, up, towards the eye.
struct Reach {
  Extent right, up, towards;
  // A point is inside the picture's right border as long as towards + slope * right is at most the eye's, and so on:
  // the greatest of each decides.
  double past_right = -std::numeric_limits<double>::infinity(), past_left = past_right;
  double past_top = past_right, past_bottom = past_right;
};

struct Axes {
  Vector right, up, towards;
};

Reach reach_of(const std::vector<vtkPoints*>& sets, const Axes& axes, double slope_right, double slope_up) {
  Reach reach;
  for (vtkPoints* points : sets)
    for (vtkIdType i = 0; i < points->GetNumberOfPoints(); ++i) {
      Vector p;
      points->GetPoint(i, p.data());
      const double right = vtkMath::Dot(p.data(), axes.right.data());
      const double up = vtkMath::Dot(p.data(), axes.up.data());
      const double towards = vtkMath::Dot(p.data(), axes.towards.data());
      reach.right.add(right);
      reach.up.add(up);
      reach.towards.add(towards);
      reach.past_right = std::max(reach.past_right, towards + slope_right * right);
      reach.past_left = std::max(reach.past_left, towards - slope_right * right);
      reach.past_top = std::max(reach.past_top, towards + slope_up * up);
      reach.past_bottom = std::max(reach.past_bottom, towards - slope_up * up);
    }
  return reach;
}

// A plate seen edge-on, a line seen end-on, a point: they have some size all the same.
double least_size(const Reach& reach) {
  const double size = std::hypot(reach.right.size(), reach.up.size(), reach.towards.size());
  return size > 0 ? size / 50 : 1;
}

double aspect_of(vtkRenderer* renderer) {
  const int* const size = renderer->GetSize();
  return size[0] > 0 && size[1] > 0 ? static_cast<double>(size[0]) / size[1] : 1;
}

Axes axes_of(vtkCamera* camera) {
  Axes axes;
  camera->OrthogonalizeViewUp();
  camera->GetViewUp(axes.up.data());
  camera->GetDirectionOfProjection(axes.towards.data());
  vtkMath::MultiplyScalar(axes.towards.data(), -1);
  vtkMath::Cross(axes.up.data(), axes.towards.data(), axes.right.data());
  return axes;
}

// The place that lies so far along each axis.
Vector place(const Axes& axes, double right, double up, double towards) {
  Vector at;
  for (int i = 0; i < 3; ++i)
    at[i] = right * axes.right[i] + up * axes.up[i] + towards * axes.towards[i];
  return at;
}

// Both planes through the eye that bound the picture on two sides touch the points: that gives the eye's place.
void fit_perspective(vtkCamera* camera, const Axes& axes, const Reach& reach, double slope_right, double slope_up) {
  const double right = (reach.past_right - reach.past_left) / (2 * slope_right);
  const double up = (reach.past_top - reach.past_bottom) / (2 * slope_up);
  const double eye = std::max({(reach.past_right + reach.past_left) / 2, (reach.past_top + reach.past_bottom) / 2,
                               reach.towards.high + least_size(reach) * slope_up});
  camera->SetFocalPoint(place(axes, right, up, reach.towards.middle()).data());
  camera->SetPosition(place(axes, right, up, eye).data());
}

void fit_parallel(vtkCamera* camera, const Axes& axes, const Reach& reach, double aspect) {
  const double right = reach.right.middle(), up = reach.up.middle();
  const double distance = std::hypot(reach.right.size(), reach.up.size(), reach.towards.size()) + least_size(reach);
  camera->SetFocalPoint(place(axes, right, up, reach.towards.middle()).data());
  camera->SetPosition(place(axes, right, up, reach.towards.middle() + distance).data());
  camera->SetParallelScale(margin / 2 * std::max({reach.up.size(), reach.right.size() / aspect, least_size(reach)}));
}

} // namespace

void fit_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, double covered) {
  if (points.empty()) return;
  vtkCamera* const camera = renderer->GetActiveCamera();
  const Axes axes = axes_of(camera);
  camera->SetWindowCenter(covered, 0);
  const double aspect = aspect_of(renderer) * (1 - covered);
  const double slope_up = margin / tangent(view_angle), slope_right = slope_up / aspect;
  const Reach reach = reach_of(points, axes, slope_right, slope_up);
  camera->SetViewAngle(view_angle);
  if (camera->GetParallelProjection() != 0)
    fit_parallel(camera, axes, reach, aspect);
  else
    fit_perspective(camera, axes, reach, slope_right, slope_up);
  vtkBoundingBox box;
  for (vtkPoints* set : points)
    box.AddBounds(set->GetBounds());
  double bounds[6];
  box.GetBounds(bounds);
  renderer->ResetCameraClippingRange(bounds);
}

void point_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, const CameraOptions& options,
                  double covered) {
  vtkCamera* const camera = renderer->GetActiveCamera();
  const Vector towards = direction_to_eye(options.view);
  const bool along_z = towards[0] == 0 && towards[1] == 0;
  camera->SetFocalPoint(0, 0, 0);
  camera->SetPosition(towards.data());
  camera->SetViewUp(0, along_z ? 1 : 0, along_z ? 0 : 1);
  camera->SetParallelProjection(options.parallel);
  fit_camera(renderer, points, covered);
  // By the angle and not by the distance, so that the eye never enters the mesh.
  camera->SetViewAngle(2 * vtkMath::DegreesFromRadians(std::atan(tangent(view_angle) / options.zoom)));
  camera->SetParallelScale(camera->GetParallelScale() / options.zoom);
}

bool shows_point_in(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, const std::array<int, 4>& frame) {
  const int* const size = renderer->GetSize();
  const double aspect = aspect_of(renderer);
  vtkMatrix4x4* const matrix = renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(aspect, -1, 1);
  for (vtkPoints* set : points)
    for (vtkIdType i = 0; i < set->GetNumberOfPoints(); ++i) {
      double p[4] = {0, 0, 0, 1}, seen[4];
      set->GetPoint(i, p);
      matrix->MultiplyPoint(p, seen);
      const double x = (seen[0] / seen[3] + 1) / 2 * size[0], y = (seen[1] / seen[3] + 1) / 2 * size[1];
      if (x >= frame[0] && x < frame[2] && y >= frame[1] && y < frame[3]) return true;
    }
  return false;
}

} // namespace viewer
