#include "platform/base/PickCallbackNow.h"

GPicked::PickCallbackNow::~PickCallbackNow() = default;
