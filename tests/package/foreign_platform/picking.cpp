// The nearest hit under one name wins; no regions, no ranking.
#include "platform/base/EntitySelection.h"
#include "platform/base/GPicker.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/OBPickUtil.h"
#include "platform/base/PickBounds.h"
#include "platform/base/PickCallbackNow.h"
#include "platform/base/PickedEntity.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

// ------------------------------------------------------------------------------------------------ records

namespace GPicked {

PickedEntity::PickedEntity() = default;
PickedEntity::~PickedEntity() = default;
void PickedEntity::Register() const { ++count_; }
void PickedEntity::Delete() {
  if (--count_ == 0) delete this;
}
int PickedEntity::element_id() const { return -1; }
PickCallbackNow::~PickCallbackNow() = default;

} // namespace GPicked

EntitySelection::EntitySelection() = default;
EntitySelection::EntitySelection(const GPicked::PickedEntity* entity, const float point[3], float distance, bool exact)
    : entity_(entity), distance_(distance), exact_(exact) {
  if (entity_) entity_->Register();
  if (point) std::copy_n(point, 3, point_);
}
EntitySelection::EntitySelection(const EntitySelection& other)
    : EntitySelection(other.entity_, other.point_, other.distance_, other.exact_) {}
EntitySelection& EntitySelection::operator=(const EntitySelection& other) {
  EntitySelection copy(other);
  std::swap(entity_, copy.entity_);
  std::swap(point_, copy.point_);
  distance_ = other.distance_;
  exact_ = other.exact_;
  return *this;
}
EntitySelection::~EntitySelection() {
  if (entity_) const_cast<GPicked::PickedEntity*>(entity_)->Delete();
}
const GPicked::PickedEntity* EntitySelection::entity() const { return entity_; }
const float* EntitySelection::point() const { return point_; }
float EntitySelection::distance() const { return distance_; }
bool EntitySelection::is_exact() const { return exact_; }

// ------------------------------------------------------------------------------------------------ the pick system

namespace {

std::set<std::pair<std::string, GPicker*>> pickers;
std::set<GPicked::PickCallbackNow*> observers;
EntitySelection best;

} // namespace

double MultiCellPicker::PickToleranceByWindowDiagonal() { return 0.005; }
bool MultiCellPicker::mSelectVisibleOnly = false;
bool MultiCellPicker::mBoxPickAcceptPartialCells = true;

PickBounds::~PickBounds() = default;

GPicker::GPicker() = default;
GPicker::~GPicker() = default;
void GPicker::compute_pick_by_box(vtkRenderer*, int* const, int* const) {}
void GPicker::compute_pick_by_polygon(vtkRenderer*, int, int (*const)[2]) {}
void GPicker::compute_pick_by_circle(vtkRenderer*, int* const, double) {}
void GPicker::add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance, bool exact) {
  if (!best.entity() || distance < best.distance()) best = EntitySelection(entity, point, distance, exact);
}

bool GPickerBase::register_picker(const char* name, GPicker* picker) { return pickers.emplace(name, picker).second; }
bool GPickerBase::unregister_picker(const char* name, GPicker* picker) { return pickers.erase({name, picker}) != 0; }
bool GPickerBase::is_filtered(const char* name) { return name != std::string("Element"); }
void GPickerBase::add_pick_observer(GPicked::PickCallbackNow* observer) { observers.insert(observer); }
void GPickerBase::remove_pick_observer(GPicked::PickCallbackNow* observer) { observers.erase(observer); }
void GPickerBase::add_pre_selection_observer(GPicked::PickCallbackNow*) {}
void GPickerBase::remove_pre_selection_observer(GPicked::PickCallbackNow*) {}
void GPickerBase::remove_from_possible_selections_list(const GPicked::PickedEntity*) {}
void GPickerBase::remove_from_picked_list(int, const GPicked::PickedEntity* const*) {}
void GPickerBase::set_pre_selection(const EntitySelection&) {}

// ------------------------------------------------------------------------------------------------ geometry

namespace OBPickUtil {

double Dot(const double* a, const double* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

double DistanceBetweenPoints(const double* a, const double* b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

int IntersectLineWithLine(const double*, const double*, const double*, const double*, double, double&, double*, double&,
                          double&) {
  return 0;
}

int IntersectTriangleWithLine(const double* a, const double* b, const double* c, const double* p1, const double* p2,
                              double, double& t, double* hit, double* barycentric, double& distance) {
  const auto minus = [](const double* p, const double* q, double* out) {
    for (int i = 0; i < 3; ++i)
      out[i] = p[i] - q[i];
  };
  const auto cross = [](const double* p, const double* q, double* out) {
    for (int i = 0; i < 3; ++i)
      out[i] = p[(i + 1) % 3] * q[(i + 2) % 3] - p[(i + 2) % 3] * q[(i + 1) % 3];
  };
  double along[3], u[3], v[3], from[3], p[3], q[3];
  minus(p2, p1, along);
  minus(b, a, u);
  minus(c, a, v);
  minus(p1, a, from);
  cross(along, v, p);
  cross(from, u, q);
  const double determinant = Dot(u, p);
  if (determinant == 0.0) return 0;
  barycentric[1] = Dot(from, p) / determinant;
  barycentric[2] = Dot(along, q) / determinant;
  barycentric[0] = 1.0 - barycentric[1] - barycentric[2];
  t = Dot(v, q) / determinant;
  if (barycentric[0] < 0 || barycentric[1] < 0 || barycentric[2] < 0 || t < 0 || t > 1) return 0;
  for (int i = 0; i < 3; ++i)
    hit[i] = p1[i] + t * along[i];
  distance = 0.0;
  return 1;
}

bool IntersectQuadWithLine(const double* a, const double* b, const double* c, const double* d, const double* p1,
                           const double* p2, double tolerance, double& t, double* hit, double* barycentric,
                           double& distance) {
  return IntersectTriangleWithLine(a, b, c, p1, p2, tolerance, t, hit, barycentric, distance) ||
         IntersectTriangleWithLine(a, c, d, p1, p2, tolerance, t, hit, barycentric, distance);
}

void view_to_display(const double* in, double* out, const int* size, const double*) {
  out[0] = (in[0] + 1.0) / 2.0 * size[0];
  out[1] = (in[1] + 1.0) / 2.0 * size[1];
  out[2] = in[2];
}

TovanBox convert_world_bbox_to_display_bbox(const double*, vtkMatrix4x4*, vtkRenderer*) { return TovanBox(); }

} // namespace OBPickUtil

// What the host asks for: the handle of the best hit, and whether somebody is told of picks.
extern "C" __attribute__((visibility("default"))) unsigned long long foreign_pick(vtkRenderer* renderer, float x,
                                                                                  float y) {
  best = EntitySelection();
  std::set<GPicker*> asked;
  for (const auto& [name, picker] : pickers)
    if (asked.insert(picker).second) picker->compute_pick(renderer, x, y);
  if (!best.entity()) return 0;
  const GPicked::PickedEntity* entity = best.entity();
  const float* point = best.point();
  for (GPicked::PickCallbackNow* observer : observers)
    observer->notify_picked(1, &entity, &point, true);
  return entity->handle();
}
