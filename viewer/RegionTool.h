#pragma once

#include "viewer/Options.h"

#include <vtkNew.h>

#include <array>
#include <string>
#include <vector>

class vtkActor2D;
class vtkPoints;
class vtkPolyData;
class vtkRenderer;

namespace viewer {

/// Draws a region with the mouse: a box from corner to corner and a circle from its centre, each by a drag, or a
/// polygon corner by corner. Places are pixels of the window, origin at the lower left.
class RegionTool {
public:
  /// Adds the outline to the renderer, which must outlive the tool.
  explicit RegionTool(vtkRenderer* renderer);
  ~RegionTool();
  RegionTool(const RegionTool&) = delete;
  RegionTool& operator=(const RegionTool&) = delete;

  /// Begins a region of the shape, which is no point.
  void start(PickRequest::Shape shape);
  void cancel();
  bool is_active() const;
  /// What to do next, for the user.
  std::string hint() const;

  void press(int x, int y);
  void move(int x, int y);
  /// True when that completes the region: the end of a drag, a click on the polygon's first corner.
  bool release(int x, int y);
  /// Closes the polygon; false when there is none of three corners.
  bool close();
  /// Takes the last corner of the polygon away.
  void remove_corner();

  /// The region, which must be complete; the tool then rests.
  PickRequest take();

private:
  using Place = std::array<int, 2>;

  bool is_polygon() const;
  void draw();

  vtkRenderer* renderer_;
  vtkNew<vtkPoints> points_;
  vtkNew<vtkPolyData> outline_;
  vtkNew<vtkActor2D> actor_;
  bool active_ = false;
  bool pressed_ = false;
  PickRequest::Shape shape_ = PickRequest::Shape::Box;
  std::vector<Place> corners_; // of the polygon; else where the drag began
  Place cursor_{0, 0};
};

} // namespace viewer
