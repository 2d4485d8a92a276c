#pragma once

#include "mesh/database/Handle.h"

#include <cstddef>
#include <vector>

namespace Tarn {

/// Elements of one kind as they were added, each with its position.
struct ElementList {
  std::vector<Handle<1>> elements;
  std::vector<int> positions;

  /// As many as have a position.
  std::size_t size() const { return positions.size() < elements.size() ? positions.size() : elements.size(); }
};

} // namespace Tarn
