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

enum Class { Front, Behind, Grazed };

struct Ranked {
  const PickHit* hit;
  Class rank;
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

// The depth beyond which hits are behind what the ray pierced first; infinite when it pierced nothing.
double front_depth(const SelectionBuffer& pierced, const ViewDepth& depth) {
  double nearest = std::numeric_limits<double>::infinity();
  for (const PickHit& hit : pierced.hits())
    if (hit.has_area) nearest = std::min(nearest, depth.of(hit.selection.point()));
  return nearest + (std::isfinite(nearest) ? depth.tolerance_at(nearest) : 0.0);
}

// Runs of equal distances, each with its exact hits first.
void put_exact_first(std::vector<Ranked>& ranked) {
  auto begin = ranked.begin();
  while (begin != ranked.end()) {
    auto end = begin;
    while (end != ranked.end() && end->rank == begin->rank &&
           end->hit->selection.distance() - begin->hit->selection.distance() <= equal_distances)
      ++end;
    // A distance that is no number equals nothing, itself included.
    if (end == begin) ++end;
    std::stable_partition(begin, end, [](const Ranked& entry) { return entry.hit->selection.is_exact(); });
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
  const double front = front_depth(pierced, depth);
  const bool something_pierced = std::isfinite(front);
  const bool see_through = can_look_through_surfaces();

  std::vector<Ranked> ranked;
  for (const PickHit& hit : hits.hits()) {
    Class rank = Front;
    if (something_pierced && hit.has_area && !pierced.find(hit.identity))
      rank = Grazed;
    else if (!see_through && depth.of(hit.selection.point()) > front)
      rank = Behind;
    ranked.push_back({&hit, rank});
  }
  std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& left, const Ranked& right) {
    if (left.rank != right.rank) return left.rank < right.rank;
    return is_nearer(left.hit->selection.distance(), right.hit->selection.distance());
  });
  put_exact_first(ranked);

  std::vector<PickHit> best_first;
  for (const Ranked& entry : ranked)
    best_first.push_back(*entry.hit);
  return best_first;
}
