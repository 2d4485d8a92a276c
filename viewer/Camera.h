#pragma once

#include "viewer/Options.h"

#include <vector>

class vtkPoints;
class vtkRenderer;

namespace viewer {

/// Points the renderer's camera at the points from the direction asked for, so that all of them are in the picture with
/// a small margin, as large as they can be, and then magnifies. The window must have its size. z is up, but y where the
/// view is along z. Does nothing without points.
void point_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, const CameraOptions& options);

/// Moves the renderer's camera, without turning it, until all of the points are in the picture.
void fit_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points);

} // namespace viewer
