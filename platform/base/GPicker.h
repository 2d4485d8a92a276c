#pragma once

#include "platform/base/orbel_base_api.h"

class PickBounds;
class vtkRenderer;

namespace GPicked {
class PickedEntity;
}

/// Answers what lies under a point or inside a region of the screen. Coordinates are display pixels of the render
/// window, origin at the lower left. Hits go to the pick system through `add_to_selection_buffer`.
class ORBEL_BASE_API GPicker {
public:
  /// Leaves the registry if it is still in it, also when a derived constructor throws.
  virtual ~GPicker();
  GPicker(const GPicker&) = delete;
  GPicker& operator=(const GPicker&) = delete;

  /// Reports what lies under the point.
  virtual void compute_pick(vtkRenderer* renderer, float x, float y) = 0;
  /// Reports what lies in the rectangle between two corners of two ints each: `compute_pick_by_bounds` with it.
  virtual void compute_pick_by_box(vtkRenderer* renderer, int* const low, int* const high);
  /// Reports what lies in the polygon of `count` corners: `compute_pick_by_bounds` with it.
  virtual void compute_pick_by_polygon(vtkRenderer* renderer, int count, int (*const points)[2]);
  /// Reports what lies in the disc round `centre`, two ints: `compute_pick_by_bounds` with it.
  virtual void compute_pick_by_circle(vtkRenderer* renderer, int* const centre, double radius);
  /// Reports what lies under the cursor, for hovering.
  virtual void compute_pre_select(vtkRenderer* renderer, float x, float y) = 0;
  /// Reports what lies in the region.
  virtual void compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) = 0;

  /// Hands a hit to the pick that is under way; ignored when there is none. Takes a reference of its own on `entity`,
  /// copies three floats from `point`.
  void add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance, bool exact);

protected:
  GPicker();
};
