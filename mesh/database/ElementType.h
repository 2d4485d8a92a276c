#pragma once

#include <cstdint>

namespace Tarn {

/// The kinds of elements. The values are used directly as indexes of lists per kind.
enum ElementType : std::uint32_t {
  None = 0,         ///< no element
  OneNode = 1,      ///< an element on a single node, drawn as a vertex
  Edge = 2,         ///< beam, bar, any one-dimensional element
  Tri = 3,          ///< triangle
  Quad = 4,         ///< quadrilateral
  Tet = 5,          ///< tetrahedron
  Hex = 6,          ///< hexahedron
  Wedge = 7,        ///< triangular prism
  Pyramid = 8,      ///< pyramid on a quadrilateral
  Superelement = 9, ///< any number of nodes, no shape of its own
};

} // namespace Tarn
