#pragma once

struct TovanVector;
class vtkRenderer;

/// Where points of the world come to lie in a renderer's viewport.
class ScreenProjection {
public:
  /// A point in view: pixels from the viewport's lower left corner, and its depth, 0 to 1.
  struct Place {
    double x, y;
    double depth; ///< of a point that lies a few pixels' breadth nearer to the eye
  };

  explicit ScreenProjection(vtkRenderer* renderer);

  /// Whether the viewport has any pixels.
  bool has_pixels() const { return width_ > 0 && height_ > 0; }
  int width() const { return width_; }
  int height() const { return height_; }
  /// False for points that are out of view: behind the eye, outside the viewport or the clipping range.
  bool project(const TovanVector& point, Place& place) const;

private:
  int width_ = 0, height_ = 0;
  double world_to_clip_[4][4];
  double depth_step_[2]; ///< of the clip coordinates z and w, per world unit away from the eye
  double slack_ = 0.0;   ///< world units, per unit of w where that grows with the distance
  bool perspective_ = false;
};
