#include "platform/base/PickBounds.h"

PickBounds::~PickBounds() = default;
