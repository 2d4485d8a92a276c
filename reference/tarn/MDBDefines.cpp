#include "mesh/database/MDBDefines.h"

#include "reference/tarn/ElementShape.h"
#include "reference/tarn/LivingDatabases.h"

#include <algorithm>
#include <iterator>

namespace MDBDefines {

namespace {

constexpr ElementType kinds[] = {NoElement,   Point,      Bar,   Triangle, Quadrilateral,
                                 Tetrahedron, Hexahedron, Prism, Pyramid,  Super};

Tarn::ElementType tarn_type(ElementType type) {
  const auto* const found = std::find(std::begin(kinds), std::end(kinds), type);
  return found == std::end(kinds) ? Tarn::None : static_cast<Tarn::ElementType>(found - std::begin(kinds));
}

const Tarn::SideShape* side_shape(ElementType type, int side) {
  const Tarn::ElementShape& shape = Tarn::element_shape(tarn_type(type));
  return side >= 0 && side < shape.side_count ? &shape.sides[side] : nullptr;
}

} // namespace

const char* TarnTypeName(Tarn::ElementType type) {
  static const char* const names[] = {"None", "OneNode", "Edge",  "Tri",     "Quad",
                                      "Tet",  "Hex",     "Wedge", "Pyramid", "Superelement"};
  return type <= Tarn::Superelement ? names[type] : "";
}

int NodesPerElement(Tarn::ElementType type) {
  if (type == Tarn::Superelement) return std::max(1, Tarn::LivingDatabases::largest_superelement());
  return Tarn::element_shape(type).corner_count;
}

int NodesPerElement(ElementType type) { return NodesPerElement(tarn_type(type)); }

int TarnTopologicalDimension(Tarn::ElementType type) { return Tarn::element_shape(type).dimension; }

ElementType ElementTypeFromTarnType(Tarn::ElementType type) {
  return type <= Tarn::Superelement ? kinds[type] : NoElement;
}

unsigned char NumSides(ElementType type) { return Tarn::element_shape(tarn_type(type)).side_count; }

unsigned char NodesPerSide(ElementType type, int side) {
  const Tarn::SideShape* const shape = side_shape(type, side);
  return shape ? shape->corner_count : 0;
}

const std::uint32_t* SidesetNodeIndices(ElementType type, int side) {
  const Tarn::SideShape* const shape = side_shape(type, side);
  return shape ? shape->nodes : nullptr;
}

ElementType SideBaseElementType(ElementType type, int side) {
  const Tarn::SideShape* const shape = side_shape(type, side);
  if (!shape) return NoElement;
  return shape->corner_count == 3 ? Triangle : Quadrilateral;
}

} // namespace MDBDefines
