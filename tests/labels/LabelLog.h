#pragma once

#include "platform/util/TovanColor.h"

#include <array>
#include <string>
#include <vector>

class GLabelMapper;
class GModel;

/// A label as it was handed to the mapper.
struct LabelEntry {
  std::string text;
  std::array<double, 3> position;
  TovanColor color;
  int last_argument;
};

/// What this program's label mappers were told.
struct LabelLog {
  std::vector<LabelEntry> labels; ///< since the last `clear`
  int clears = 0;
  int draws = 0;
  GModel* model = nullptr;
};
LabelLog& log_of(GLabelMapper* mapper);
