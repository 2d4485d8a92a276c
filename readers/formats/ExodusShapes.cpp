#include "readers/formats/ExodusShapes.h"

#include "readers/CellKinds.h"
#include "readers/ShapeTables.h"
#include "readers/formats/NodeOrders.h"

#include <algorithm>
#include <cctype>

namespace readers {

namespace {

using Type = Tarn::ElementType;

// Further nodes of a hexahedron, after the edges: body, bottom, top, -x, +x, -y, +y.
constexpr std::uint8_t hex27_order[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                                        18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20};

struct Family {
  const char* prefix;
  Type type;
};

// Names go on with numbers or letters ("HEX8", "HEXAHEDRON"); longer prefixes stand first.
constexpr Family families[] = {{"TRISHELL", Type::Tri},   {"TRUSS", Type::Edge},     {"TRI", Type::Tri},
                               {"TET", Type::Tet},        {"HEX", Type::Hex},        {"WEDGE", Type::Wedge},
                               {"PYR", Type::Pyramid},    {"QUAD", Type::Quad},      {"SHELL", Type::Quad},
                               {"BAR", Type::Edge},       {"BEAM", Type::Edge},      {"ROD", Type::Edge},
                               {"EDGE", Type::Edge},      {"LINE", Type::Edge},      {"SPRING", Type::Edge},
                               {"SPHERE", Type::OneNode}, {"CIRCLE", Type::OneNode}, {"POINT", Type::OneNode},
                               {"NODE", Type::OneNode},   {"MASS", Type::OneNode},   {"SUPER", Type::Superelement}};

Type find_type(std::string topology) {
  std::transform(topology.begin(), topology.end(), topology.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  for (const Family& family : families)
    if (topology.rfind(family.prefix, 0) == 0) return family.type;
  return Type::None;
}

// "SHELL" stands for every shell: a triangle or, in the plane, a line when it has too few nodes for a quadrilateral.
Type refine_shell(Type type, std::int64_t nodes, int dimensions) {
  if (type != Type::Quad) return type;
  if (nodes == 2 || (nodes == 3 && dimensions == 2)) return Type::Edge;
  return nodes == 3 || nodes == 6 || nodes == 7 ? Type::Tri : type;
}

const CornerGroups& sides_of(const ExodusShape& shape) {
  static const CornerGroups none;
  static const CornerGroups hex = {{0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {0, 4, 7, 3}, {0, 3, 2, 1}, {4, 5, 6, 7}};
  static const CornerGroups tet = {{0, 1, 3}, {1, 2, 3}, {0, 3, 2}, {0, 2, 1}};
  static const CornerGroups wedge = {{0, 1, 4, 3}, {1, 2, 5, 4}, {0, 3, 5, 2}, {0, 2, 1}, {3, 4, 5}};
  static const CornerGroups pyramid = {{0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {0, 4, 3}, {0, 3, 2, 1}};
  static const CornerGroups quad = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
  static const CornerGroups tri = {{0, 1}, {1, 2}, {2, 0}};
  static const CornerGroups quad_shell = {{0, 1, 2, 3}, {0, 3, 2, 1}, {0, 1}, {1, 2}, {2, 3}, {3, 0}};
  static const CornerGroups tri_shell = {{0, 1, 2}, {0, 2, 1}, {0, 1}, {1, 2}, {2, 0}};
  switch (shape.type) {
  case Type::Hex:
    return hex;
  case Type::Tet:
    return tet;
  case Type::Wedge:
    return wedge;
  case Type::Pyramid:
    return pyramid;
  case Type::Quad:
    return shape.is_shell ? quad_shell : quad;
  case Type::Tri:
    return shape.is_shell ? tri_shell : tri;
  default:
    return none;
  }
}

} // namespace

ExodusShape exodus_shape(const std::string& topology, std::int64_t nodes_per_element, int dimensions) {
  ExodusShape shape;
  constexpr std::int64_t most_nodes = 1 << 24;
  if (nodes_per_element < 1 || nodes_per_element > most_nodes) return shape;
  const Type type = refine_shell(find_type(topology), nodes_per_element, dimensions);
  shape.nodes_per_element = static_cast<std::uint32_t>(nodes_per_element);
  if (!is_known_kind(type, shape.nodes_per_element)) return shape;
  shape.type = type;
  const bool has_centres = type == Type::Hex && nodes_per_element == 27;
  shape.order = has_centres ? hex27_order : order_with_verticals_first(type, shape.nodes_per_element);
  shape.is_shell = (type == Type::Tri || type == Type::Quad) && dimensions == 3;
  return shape;
}

const std::vector<int>* exodus_side(const ExodusShape& shape, std::int64_t side) {
  const CornerGroups& sides = sides_of(shape);
  if (side < 1 || side > static_cast<std::int64_t>(sides.size())) return nullptr;
  return &sides[static_cast<std::size_t>(side - 1)];
}

} // namespace readers
