#pragma once

#include "mesh/database/ElementType.h"

#include <cstdint>
#include <vector>

namespace readers {

/// Groups of corners, by their place in the element.
using CornerGroups = std::vector<std::vector<int>>;

/// The two corners of each edge of an element, in the canonical order of the mid-side nodes. Empty for kinds without.
const CornerGroups& mid_side_corners(Tarn::ElementType type);

/// The corners round each further node of an element with centres, in canonical order: faces, then the body.
const CornerGroups& centre_corners(Tarn::ElementType type);

/// Corners of an element of this kind; 0 for superelements.
int corner_count(Tarn::ElementType type);

/// The nodes of a side, by their place in an element with `nodes_per_element` nodes, in the canonical order of the
/// side's own kind: the corners given, mid-side nodes between neighbours, the centre, each where the element has it.
std::vector<int> side_places(Tarn::ElementType type, std::uint32_t nodes_per_element, const std::vector<int>& corners);

} // namespace readers
