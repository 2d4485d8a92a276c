#include "platform/base/GPicker.h"

#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "reference/base/pick/SelectionBuffer.h"

#include <array>
#include <vector>

GPicker::GPicker() = default;

GPicker::~GPicker() = default;

void GPicker::compute_pick_by_box(vtkRenderer* renderer, int* const low, int* const high) {
  const double from[2] = {double(low[0]), double(low[1])};
  const double to[2] = {double(high[0]), double(high[1])};
  PickRectangle bounds(from, to);
  compute_pick_by_bounds(renderer, &bounds);
}

void GPicker::compute_pick_by_polygon(vtkRenderer* renderer, int count, int (*const points)[2]) {
  std::vector<std::array<double, 2>> corners;
  for (int i = 0; i < count; ++i)
    corners.push_back({double(points[i][0]), double(points[i][1])});
  PickPolygon bounds(std::move(corners));
  compute_pick_by_bounds(renderer, &bounds);
}

void GPicker::compute_pick_by_circle(vtkRenderer* renderer, int* const centre, double radius) {
  const double at[2] = {double(centre[0]), double(centre[1])};
  PickCircle bounds(at, radius);
  compute_pick_by_bounds(renderer, &bounds);
}

void GPicker::add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance, bool exact) {
  SelectionBuffer* buffer = SelectionBuffer::current();
  if (buffer && entity) buffer->add(*entity, point, distance, exact);
}
