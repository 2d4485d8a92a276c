#pragma once

#include "mesh/database/ElementType.h"

#include <cstdint>

namespace readers {

/// Exodus and CGNS go round the bottom of a hexahedron or wedge, up the verticals, then round the top; canonical order
/// leaves the verticals for last. Gives the place in such an element of each canonical node, null where the orders are
/// the same. Hexahedra with centres are not covered: the two formats disagree about these.
const std::uint8_t* order_with_verticals_first(Tarn::ElementType type, std::uint32_t nodes_per_element);

} // namespace readers
