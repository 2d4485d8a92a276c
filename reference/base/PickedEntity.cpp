#include "platform/base/PickedEntity.h"

namespace GPicked {

PickedEntity::PickedEntity() = default;

PickedEntity::~PickedEntity() = default;

void PickedEntity::Register() const { ++count_; }

void PickedEntity::Delete() {
  if (--count_ <= 0) delete this;
}

int PickedEntity::element_id() const { return -1; }

} // namespace GPicked
