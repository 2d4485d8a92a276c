#pragma once

#include "viewer/Options.h"

#include <array>
#include <vector>

class vtkPoints;
class vtkRenderer;

namespace viewer {

/// Points the renderer's camera at the points from the direction asked for, so that all of them are in the picture with
/// a small margin, as large as they can be, and then magnifies. The window must have its size. z is up, but y where the
/// view is along z. Does nothing without points. `covered`: the part of the picture's width, 0 to below 1, that
/// something else covers from the right border on; what is looked at is then the middle of the rest.
void point_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, const CameraOptions& options,
                  double covered = 0);

/// Moves the renderer's camera, without turning it, until all of the points are in the picture. `covered` as above.
void fit_camera(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, double covered = 0);

/// Whether any of the points is drawn in the frame: left, bottom, right, top, in pixels.
bool shows_point_in(vtkRenderer* renderer, const std::vector<vtkPoints*>& points, const std::array<int, 4>& frame);

} // namespace viewer
