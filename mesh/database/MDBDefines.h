#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/tovan_tarn_api.h"

#include <cstdint>

/// The database's tables of element definitions. Sides and nodes are numbered from 0; the node order of each kind is
/// that of VTK's cell of the same shape.
namespace MDBDefines {

/// The tables' own element kinds.
enum ElementType : std::uint32_t {
  NoElement = 0,      ///< no element
  Point = 1,          ///< one node
  Bar = 2,            ///< one-dimensional
  Triangle = 11,      ///< triangle, and a triangular side
  Quadrilateral = 25, ///< quadrilateral, and a quadrilateral side
  Tetrahedron = 31,   ///< four triangular sides
  Hexahedron = 32,    ///< six quadrilateral sides
  Prism = 33,         ///< wedge: two triangular and three quadrilateral sides
  Pyramid = 34,       ///< one quadrilateral and four triangular sides
  Super = 40,         ///< superelement: no sides
};

/// The kind's display name, in static storage; "" for values above 9.
TOVAN_TARN_API const char* TarnTypeName(Tarn::ElementType type);
/// Corner nodes of an element of the kind: 0 1 2 3 4 4 8 6 5 for kinds 0 to 8. For superelements the largest node count
/// that any living database of this library holds, at least 1. 0 for values above 9.
TOVAN_TARN_API int NodesPerElement(Tarn::ElementType type);
/// The same by the tables' own kinds.
TOVAN_TARN_API int NodesPerElement(ElementType type);
/// 0 0 1 2 2 3 3 3 3 3 for kinds 0 to 9; 0 for values above 9.
TOVAN_TARN_API int TarnTopologicalDimension(Tarn::ElementType type);
/// The tables' kind of a database kind; `NoElement` for values above 9.
TOVAN_TARN_API ElementType ElementTypeFromTarnType(Tarn::ElementType type);
/// 4, 6, 5 and 5 for tetrahedra, hexahedra, prisms and pyramids, else 0.
TOVAN_TARN_API unsigned char NumSides(ElementType type);
/// Corner nodes of the side; 0 when there is no such side.
TOVAN_TARN_API unsigned char NodesPerSide(ElementType type, int side);
/// The positions of the side's corner nodes in the element's connectivity, in static storage, turned so that the side's
/// normal points outwards; null when there is no such side.
TOVAN_TARN_API const std::uint32_t* SidesetNodeIndices(ElementType type, int side);
/// `Triangle` or `Quadrilateral`; `NoElement` when there is no such side.
TOVAN_TARN_API ElementType SideBaseElementType(ElementType type, int side);

} // namespace MDBDefines
