#pragma once

#include <functional>
#include <string>
#include <vector>

/// Writes down what the pick system is told, in order: this program's definitions of its operations come first when the
/// library looks them up.
struct PickSystemLog {
  PickSystemLog();
  ~PickSystemLog();

  std::vector<std::string> calls;       ///< "name" or "name KIND HANDLE, KIND HANDLE"
  std::function<void()> during = [] {}; ///< run inside each call
};
