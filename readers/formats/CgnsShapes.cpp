#include "readers/formats/CgnsShapes.h"

#include "readers/formats/NodeOrders.h"

#include <array>

namespace readers {

namespace {

using Type = Tarn::ElementType;

// Further nodes of a hexahedron, after the edges: bottom, -y, +x, +y, -x, top, body.
constexpr std::uint8_t hex27_order[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                                        18, 19, 12, 13, 14, 15, 24, 22, 21, 23, 20, 25, 26};
using Shapes = std::array<CgnsShape, NofValidElementTypes>;

void add_drawn(Shapes& shapes, int code, Type type, std::uint32_t nodes, int dimension) {
  const bool has_centres = type == Type::Hex && nodes == 27;
  shapes[static_cast<std::size_t>(code)] = {type, nodes, dimension,
                                            has_centres ? hex27_order : order_with_verticals_first(type, nodes)};
}

// Of higher order than can be drawn: the number of nodes is needed to step over them.
int dimension_of_left_out(int code) {
  switch (code) {
  case CGNS_ENUMV(BAR_4):
  case CGNS_ENUMV(BAR_5):
    return 1;
  case CGNS_ENUMV(TRI_9):
  case CGNS_ENUMV(TRI_10):
  case CGNS_ENUMV(TRI_12):
  case CGNS_ENUMV(TRI_15):
  case CGNS_ENUMV(QUAD_12):
  case CGNS_ENUMV(QUAD_16):
  case CGNS_ENUMV(QUAD_P4_16):
  case CGNS_ENUMV(QUAD_25):
    return 2;
  default:
    return 3;
  }
}

void add_left_out(Shapes& shapes) {
  for (int code = 0; code < NofValidElementTypes; ++code) {
    CgnsShape& shape = shapes[static_cast<std::size_t>(code)];
    int nodes = 0;
    const bool fixed = code != CGNS_ENUMV(MIXED) && code != CGNS_ENUMV(NGON_n) && code != CGNS_ENUMV(NFACE_n);
    if (shape.node_count > 0 || !fixed || cg_npe(static_cast<CGNS_ENUMT(ElementType_t)>(code), &nodes) != CG_OK)
      continue;
    if (nodes > 0) shape = {Type::None, static_cast<std::uint32_t>(nodes), dimension_of_left_out(code), nullptr};
  }
}

Shapes make_shapes() {
  Shapes shapes;
  add_drawn(shapes, CGNS_ENUMV(NODE), Type::OneNode, 1, 0);
  add_drawn(shapes, CGNS_ENUMV(BAR_2), Type::Edge, 2, 1);
  add_drawn(shapes, CGNS_ENUMV(BAR_3), Type::Edge, 3, 1);
  add_drawn(shapes, CGNS_ENUMV(TRI_3), Type::Tri, 3, 2);
  add_drawn(shapes, CGNS_ENUMV(TRI_6), Type::Tri, 6, 2);
  add_drawn(shapes, CGNS_ENUMV(QUAD_4), Type::Quad, 4, 2);
  add_drawn(shapes, CGNS_ENUMV(QUAD_8), Type::Quad, 8, 2);
  add_drawn(shapes, CGNS_ENUMV(QUAD_9), Type::Quad, 9, 2);
  add_drawn(shapes, CGNS_ENUMV(TETRA_4), Type::Tet, 4, 3);
  add_drawn(shapes, CGNS_ENUMV(TETRA_10), Type::Tet, 10, 3);
  add_drawn(shapes, CGNS_ENUMV(PYRA_5), Type::Pyramid, 5, 3);
  add_drawn(shapes, CGNS_ENUMV(PYRA_13), Type::Pyramid, 13, 3);
  add_drawn(shapes, CGNS_ENUMV(PYRA_14), Type::Pyramid, 14, 3);
  add_drawn(shapes, CGNS_ENUMV(PENTA_6), Type::Wedge, 6, 3);
  add_drawn(shapes, CGNS_ENUMV(PENTA_15), Type::Wedge, 15, 3);
  add_drawn(shapes, CGNS_ENUMV(PENTA_18), Type::Wedge, 18, 3);
  add_drawn(shapes, CGNS_ENUMV(HEXA_8), Type::Hex, 8, 3);
  add_drawn(shapes, CGNS_ENUMV(HEXA_20), Type::Hex, 20, 3);
  add_drawn(shapes, CGNS_ENUMV(HEXA_27), Type::Hex, 27, 3);
  add_left_out(shapes);
  return shapes;
}

} // namespace

const CgnsShape& cgns_shape(int type) {
  static const Shapes shapes = make_shapes();
  static const CgnsShape unknown;
  return type >= 0 && type < NofValidElementTypes ? shapes[static_cast<std::size_t>(type)] : unknown;
}

} // namespace readers
