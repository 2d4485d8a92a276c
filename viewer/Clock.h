#pragma once

#include <chrono>

namespace viewer {

/// Seconds of a clock that never goes back.
inline double seconds_now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace viewer
