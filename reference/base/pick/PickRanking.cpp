#include "reference/base/pick/PickRanking.h"

#include "platform/base/GModel.h"
#include "platform/base/GView.h"
#include "reference/base/view/Stage.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Distances this close are equal: single precision holds little more.
constexpr float equal_distances = 1e-6f;

// Of the tolerance: faces that lie in one another, rounding apart.
constexpr double coincident = 1e-2;

enum Class { Front, Behind, Grazed };

struct Ranked {
  PickHit hit;
  Class rank;
  float distance; // by which it is ranked
};

// How deep points lie in the view, and what the tolerance is there.
class ViewDepth {
public:
  ViewDepth(vtkRenderer* renderer, double tolerance) : camera_(renderer->GetActiveCamera()) {
    camera_->GetPosition(eye_);
    camera_->GetDirectionOfProjection(direction_);
    const int* size = renderer->GetSize();
    const double pixels = tolerance * 0.5 * std::hypot(size[0], size[1]);
    const bool horizontal = camera_->GetUseHorizontalViewAngle() != 0;
    const double across = std::max(1, horizontal ? size[0] : size[1]);
    const double half_height = camera_->GetParallelProjection()
                                   ? camera_->GetParallelScale()
                                   : std::tan(vtkMath::RadiansFromDegrees(camera_->GetViewAngle() / 2.0));
    tolerance_ = pixels * 2.0 * half_height / across;
  }

  double of(const float* point) const {
    const double from_eye[3] = {point[0] - eye_[0], point[1] - eye_[1], point[2] - eye_[2]};
    return vtkMath::Dot(from_eye, direction_);
  }

  double tolerance_at(double depth) const { return camera_->GetParallelProjection() ? tolerance_ : tolerance_ * depth; }

private:
  vtkCamera* camera_;
  double eye_[3];
  double direction_[3];
  double tolerance_; // in perspective for each unit of depth
};

bool can_look_through_surfaces() {
  const auto& models = Stage::instance().models;
  return std::any_of(models.begin(), models.end(),
                     [](GModel* model) { return model->get_render_mode() < OBUtil::Shaded; });
}

// Single precision moves a point by that much along the view.
double rounding_at(const float* point) {
  const float largest = std::max({std::abs(point[0]), std::abs(point[1]), std::abs(point[2])});
  return 4.0 * std::numeric_limits<float>::epsilon() * largest;
}

// The nearest face or solid that the ray goes through, and from which depth on other hits are behind it.
struct FrontSurface {
  FrontSurface(const SelectionBuffer& pierced, const ViewDepth& depth) {
    for (const PickHit& hit : pierced.hits()) {
      const double at = depth.of(hit.selection.point());
      if (!hit.has_area || !(at < nearest)) continue;
      nearest = at;
      last_coincident = at + coincident * depth.tolerance_at(at) + rounding_at(hit.selection.point());
    }
    if (!is_there()) return;
    last_before = nearest + depth.tolerance_at(nearest);
    well_before = nearest - depth.tolerance_at(nearest);
  }

  bool is_there() const { return std::isfinite(nearest); }

  double nearest = std::numeric_limits<double>::infinity();
  double last_coincident = nearest; // of faces and solids that lie in it, as a shell on a solid does
  double last_before = nearest;     // of points and lines, which are drawn in front of it when they lie in it
  double well_before = -nearest;    // of points and lines that cannot be said to lie in it
};

// What the ray pierces lies where it pierces it: at the tolerance a nearer side that it merely grazes may have been
// reported, and an element behind the one in front would seem to lie before it.
PickHit with_pierced_place(const PickHit& hit, const PickHit& pierced) {
  PickHit moved = hit;
  const EntitySelection& at = pierced.selection;
  moved.selection =
      EntitySelection(hit.selection.entity(), at.point(), at.distance(), at.is_exact() || hit.selection.is_exact());
  return moved;
}

Ranked classify(const PickHit& hit, const SelectionBuffer& pierced, const FrontSurface& front, const ViewDepth& depth,
                bool see_through) {
  const float distance = hit.selection.distance();
  if (!front.is_there()) return {hit, Front, distance};
  if (!hit.has_area) {
    const bool behind = !see_through && depth.of(hit.selection.point()) > front.last_before;
    return {hit, behind ? Behind : Front, distance};
  }
  const PickHit* through = pierced.find(hit.identity);
  if (!through) return {hit, Grazed, distance};
  const bool behind = !see_through && depth.of(through->selection.point()) > front.last_coincident;
  return {with_pierced_place(hit, *through), behind ? Behind : Front, through->selection.distance()};
}

// Reported distances favour some kinds over others. That must not bring a face before a point or line that lies well in
// front of it, and is drawn over it.
void put_faces_behind_what_is_before(std::vector<Ranked>& ranked, const FrontSurface& front, const ViewDepth& depth) {
  float last = -std::numeric_limits<float>::infinity();
  for (const Ranked& entry : ranked)
    if (!entry.hit.has_area && depth.of(entry.hit.selection.point()) < front.well_before)
      last = std::max(last, entry.distance);
  for (Ranked& entry : ranked)
    if (entry.hit.has_area) entry.distance = std::max(entry.distance, last + 2.0F * equal_distances);
}

// Runs of equal distances, each with its exact hits first.
void put_exact_first(std::vector<Ranked>& ranked) {
  auto begin = ranked.begin();
  while (begin != ranked.end()) {
    auto end = begin;
    while (end != ranked.end() && end->rank == begin->rank && end->distance - begin->distance <= equal_distances)
      ++end;
    // A distance that is no number equals nothing, itself included.
    if (end == begin) ++end;
    std::stable_partition(begin, end, [](const Ranked& entry) { return entry.hit.selection.is_exact(); });
    begin = end;
  }
}

// What is not a number comes last, so that the order is one.
bool is_nearer(float left, float right) {
  if (std::isnan(left) || std::isnan(right)) return !std::isnan(left) && std::isnan(right);
  return left < right;
}

} // namespace

std::vector<PickHit> rank(GView* view, const SelectionBuffer& hits, const SelectionBuffer& pierced, double tolerance) {
  const ViewDepth depth(view->renderer(), tolerance);
  const FrontSurface front(pierced, depth);
  const bool see_through = can_look_through_surfaces();

  std::vector<Ranked> ranked;
  for (const PickHit& hit : hits.hits())
    ranked.push_back(classify(hit, pierced, front, depth, see_through));
  put_faces_behind_what_is_before(ranked, front, depth);
  std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& left, const Ranked& right) {
    if (left.rank != right.rank) return left.rank < right.rank;
    return is_nearer(left.distance, right.distance);
  });
  put_exact_first(ranked);

  std::vector<PickHit> best_first;
  for (const Ranked& entry : ranked)
    best_first.push_back(entry.hit);
  return best_first;
}
