#include "reference/base/label/ScreenProjection.h"

#include "platform/util/TovanVector.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderer.h>

#include <cmath>

namespace {

// A point on a surface is seldom exactly where the surface is drawn: curved faces are drawn as flat ones, and a
// slanting face changes its depth within a pixel.
constexpr double slack_pixels = 3.0;
// For points on the border of the clipping range.
constexpr double range_slack = 1e-6;

} // namespace

ScreenProjection::ScreenProjection(vtkRenderer* renderer) {
  int left = 0, low = 0;
  renderer->GetTiledSizeAndOrigin(&width_, &height_, &left, &low);
  if (!has_pixels()) return;
  vtkCamera* camera = renderer->GetActiveCamera();
  vtkMatrix4x4* matrix = camera->GetCompositeProjectionTransformMatrix(renderer->GetTiledAspectRatio(), -1, 1);
  vtkMatrix4x4::DeepCopy(&world_to_clip_[0][0], matrix);

  perspective_ = !camera->GetParallelProjection();
  const double half_height =
      perspective_ ? std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2) : camera->GetParallelScale();
  slack_ = slack_pixels * 2.0 * half_height / height_;
  double direction[3];
  camera->GetDirectionOfProjection(direction);
  for (int i = 0; i < 2; ++i)
    depth_step_[i] = vtkMath::Dot(world_to_clip_[i + 2], direction);
}

// Comparisons are such that whatever is not a number is out of view; behind the eye, w is negative.
bool ScreenProjection::project(const TovanVector& point, Place& place) const {
  double clip[4];
  for (int row = 0; row < 4; ++row) {
    const double* m = world_to_clip_[row];
    clip[row] = m[0] * point.x + m[1] * point.y + m[2] * point.z + m[3];
  }
  const double w = clip[3];
  if (!(std::abs(clip[2]) <= w * (1.0 + range_slack))) return false;
  place.x = (clip[0] / w + 1.0) / 2.0 * width_;
  place.y = (clip[1] / w + 1.0) / 2.0 * height_;
  if (!(place.x >= 0.0 && place.x <= width_ && place.y >= 0.0 && place.y <= height_)) return false;
  const double step = perspective_ ? slack_ * w : slack_;
  const double near_w = w - step * depth_step_[1];
  place.depth = near_w > 0.0 ? ((clip[2] - step * depth_step_[0]) / near_w + 1.0) / 2.0 : 0.0;
  return true;
}
