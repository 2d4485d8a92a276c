#pragma once

#include "mesh/database/ElementType.h"

#include <cstddef>
#include <cstdint>

namespace Tarn {

/// One side of a solid: positions in the element's connectivity, in the node order of VTK's cell of that side.
struct SideShape {
  unsigned char corner_count; ///< 3 or 4
  std::uint32_t nodes[8];     ///< corners, then as many mid-side nodes
  /// The side's centre where the element has `ElementShape::with_centres` nodes; 0 when it has none.
  unsigned char centre;
};

/// What the tables know of a kind of element. Node order is VTK's: corners, mid-side nodes (that of edge k stands at
/// `corner_count + k`), centres of the quadrilateral sides, the centre of the body.
struct ElementShape {
  int dimension;                ///< topological dimension
  unsigned char corner_count;   ///< 0 for superelements, which have no corners of their own
  unsigned char edge_count;     ///< 0 where the element is no shell and no solid
  unsigned char side_count;     ///< 0 where the element is no solid
  unsigned char node_counts[3]; ///< node counts that the kind may have, ascending, padded with 0
  unsigned char with_centres;   ///< the node count that comes with centres on the sides; 0: none does
  unsigned char edges[12][2];   ///< corner positions of each edge
  SideShape sides[6];           ///< the sides, normals outwards
};

/// The shape of the kind; that of `None` for values above 9.
const ElementShape& element_shape(ElementType type);

/// The largest node count that the kind may have; 0 for superelements, which may have any.
std::size_t most_nodes(ElementType type);

/// Whether elements of the kind may have `count` nodes: those of the table, and any number for superelements.
bool is_node_count(ElementType type, int count);

} // namespace Tarn
