#pragma once

#include "platform/base/orbel_base_api.h"

namespace GPicked {
class PickedEntity;
}

/// A hit of a pick: an entity, where it was hit and how far from the eye. A value; it holds a reference on its entity.
class ORBEL_BASE_API EntitySelection {
public:
  /// No entity.
  EntitySelection();
  /// Takes a reference of its own on `entity`, which may be null; copies three floats from `point`, unless it is null.
  EntitySelection(const GPicked::PickedEntity* entity, const float point[3], float distance, bool exact);
  /// Shares the entity.
  EntitySelection(const EntitySelection& other);
  /// Shares the entity, and releases the one held before.
  EntitySelection& operator=(const EntitySelection& other);
  ~EntitySelection();

  /// The entity, or null for no entity; owned by the selection.
  const GPicked::PickedEntity* entity() const;
  /// The hit point, three floats in world coordinates.
  const float* point() const;
  /// The depth by which hits are ordered, smaller is nearer.
  float distance() const;
  /// Whether the pick went through the entity, not only near it.
  bool is_exact() const;

private:
  const GPicked::PickedEntity* entity_ = nullptr;
  float point_[3] = {0, 0, 0};
  float distance_ = 0;
  bool exact_ = false;
};
