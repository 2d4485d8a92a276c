#pragma once

#include "platform/base/orbel_base_api.h"

namespace GPicked {

class PickedEntity;

/// Is told of picks and pre-selections as they happen.
class ORBEL_BASE_API PickCallbackNow {
public:
  virtual ~PickCallbackNow();
  /// `count` entities were picked (`add` true) or are no longer picked (false). `points` holds one hit point of three
  /// floats each. All are borrowed for the call.
  virtual void notify_picked(int count, const PickedEntity* const* entities, const float* const* points, bool add) = 0;
  /// The cursor came to stand on `entity` (`add` true) or left it (false); `point` is three floats. Both are borrowed
  /// for the call.
  virtual void notify_pre_select(const PickedEntity* entity, const float* const point, bool add) = 0;
};

} // namespace GPicked
