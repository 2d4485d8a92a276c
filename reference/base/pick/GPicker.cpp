#include "platform/base/GPicker.h"

#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "reference/base/pick/PickState.h"
#include "reference/base/pick/SelectionBuffer.h"

#include <algorithm>
#include <array>
#include <vector>

// The registry is there before any picker, so that it goes after the last.
GPicker::GPicker() { PickState::instance(); }

// A derived constructor that threw halfway through its registrations took none back: only this destructor runs then.
GPicker::~GPicker() {
  auto& pickers = PickState::instance().pickers;
  const auto its =
      std::remove_if(pickers.begin(), pickers.end(), [this](const auto& each) { return each.second == this; });
  if (its == pickers.end()) return;
  pickers.erase(its, pickers.end());
  PickState::instance().forget(this);
}

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
