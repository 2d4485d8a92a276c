#pragma once

#include "mesh/database/ElementType.h"

#include <cstdint>
#include <string>
#include <vector>

namespace readers {

/// What the elements of an Exodus block are.
struct ExodusShape {
  Tarn::ElementType type = Tarn::None; ///< `None`: they are left out
  std::uint32_t nodes_per_element = 0; ///< as in the file
  const std::uint8_t* order = nullptr; ///< place in the file of each canonical node; null: the same
  bool is_shell = false;               ///< its first two sides are its faces
};

/// The shape for a topology name in any case ("HEX", "HEX8", "SHELL4"), a number of nodes and a dimension of space.
ExodusShape exodus_shape(const std::string& topology, std::int64_t nodes_per_element, int dimensions);

/// The corners of a side, numbered from 1 as Exodus does; null when the shape has no such side that can be drawn.
const std::vector<int>* exodus_side(const ExodusShape& shape, std::int64_t side);

} // namespace readers
