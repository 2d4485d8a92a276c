#include "platform/base/EntitySelection.h"

#include "platform/base/PickedEntity.h"

#include <algorithm>

namespace {

// Counting is open to those who only read a record; giving up is not, since the last one destroys it.
void release(const GPicked::PickedEntity* entity) {
  if (entity) const_cast<GPicked::PickedEntity*>(entity)->Delete();
}

} // namespace

EntitySelection::EntitySelection() = default;

EntitySelection::EntitySelection(const GPicked::PickedEntity* entity, const float point[3], float distance, bool exact)
    : entity_(entity), distance_(distance), exact_(exact) {
  if (entity_) entity_->Register();
  if (point) std::copy_n(point, 3, point_);
}

EntitySelection::EntitySelection(const EntitySelection& other)
    : EntitySelection(other.entity_, other.point_, other.distance_, other.exact_) {}

EntitySelection& EntitySelection::operator=(const EntitySelection& other) {
  // The new one first: it may be the same.
  if (other.entity_) other.entity_->Register();
  release(entity_);
  entity_ = other.entity_;
  std::copy_n(other.point_, 3, point_);
  distance_ = other.distance_;
  exact_ = other.exact_;
  return *this;
}

EntitySelection::~EntitySelection() { release(entity_); }

const GPicked::PickedEntity* EntitySelection::entity() const { return entity_; }

const float* EntitySelection::point() const { return point_; }

float EntitySelection::distance() const { return distance_; }

bool EntitySelection::is_exact() const { return exact_; }
