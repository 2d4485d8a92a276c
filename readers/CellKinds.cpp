#include "readers/CellKinds.h"

#include <vtkCellType.h>

#include <array>

namespace readers {

namespace {

using Type = Tarn::ElementType;

constexpr std::uint8_t pixel_order[] = {0, 1, 3, 2};
constexpr std::uint8_t voxel_order[] = {0, 1, 3, 2, 4, 5, 7, 6};
constexpr int known_types = 128;

std::array<CellKind, known_types> make_table() {
  std::array<CellKind, known_types> table;
  const auto one = [&table](int vtk_type, Type type, std::uint8_t nodes, const std::uint8_t* order = nullptr) {
    table[static_cast<std::size_t>(vtk_type)] = {CellRule::OneElement, type, nodes, order};
  };
  one(VTK_VERTEX, Type::OneNode, 1);
  one(VTK_LINE, Type::Edge, 2);
  one(VTK_TRIANGLE, Type::Tri, 3);
  one(VTK_PIXEL, Type::Quad, 4, pixel_order);
  one(VTK_QUAD, Type::Quad, 4);
  one(VTK_TETRA, Type::Tet, 4);
  one(VTK_VOXEL, Type::Hex, 8, voxel_order);
  one(VTK_HEXAHEDRON, Type::Hex, 8);
  one(VTK_WEDGE, Type::Wedge, 6);
  one(VTK_PYRAMID, Type::Pyramid, 5);
  one(VTK_QUADRATIC_EDGE, Type::Edge, 3);
  one(VTK_QUADRATIC_TRIANGLE, Type::Tri, 6);
  one(VTK_BIQUADRATIC_TRIANGLE, Type::Tri, 7);
  one(VTK_QUADRATIC_QUAD, Type::Quad, 8);
  one(VTK_BIQUADRATIC_QUAD, Type::Quad, 9);
  one(VTK_QUADRATIC_TETRA, Type::Tet, 10);
  one(VTK_QUADRATIC_HEXAHEDRON, Type::Hex, 20);
  one(VTK_TRIQUADRATIC_HEXAHEDRON, Type::Hex, 27);
  one(VTK_QUADRATIC_WEDGE, Type::Wedge, 15);
  one(VTK_BIQUADRATIC_QUADRATIC_WEDGE, Type::Wedge, 18);
  one(VTK_QUADRATIC_PYRAMID, Type::Pyramid, 13);
  table[VTK_POLY_VERTEX] = {CellRule::Points, Type::OneNode, 0, nullptr};
  table[VTK_POLY_LINE] = {CellRule::Polyline, Type::Edge, 0, nullptr};
  table[VTK_TRIANGLE_STRIP] = {CellRule::Strip, Type::Tri, 0, nullptr};
  table[VTK_POLYGON] = {CellRule::Polygon, Type::None, 0, nullptr};
  return table;
}

} // namespace

const CellKind& cell_kind(int vtk_type) {
  static const std::array<CellKind, known_types> table = make_table();
  static const CellKind unknown;
  return vtk_type >= 0 && vtk_type < known_types ? table[static_cast<std::size_t>(vtk_type)] : unknown;
}

std::string name_of_left_out(int vtk_type) {
  switch (vtk_type) {
  case VTK_EMPTY_CELL:
    return "empty cells";
  case VTK_POLYGON:
    return "polygons with more than 4 corners";
  case VTK_PENTAGONAL_PRISM:
    return "pentagonal prisms";
  case VTK_HEXAGONAL_PRISM:
    return "hexagonal prisms";
  case VTK_QUADRATIC_POLYGON:
    return "quadratic polygons";
  case VTK_TRIQUADRATIC_PYRAMID:
    return "pyramids with 19 nodes";
  case VTK_QUADRATIC_LINEAR_QUAD:
    return "quadrilaterals with 6 nodes";
  case VTK_QUADRATIC_LINEAR_WEDGE:
    return "wedges with 12 nodes";
  case VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON:
    return "hexahedra with 24 nodes";
  case VTK_CUBIC_LINE:
    return "cubic edges";
  case VTK_CONVEX_POINT_SET:
    return "convex point sets";
  case VTK_POLYHEDRON:
    return "polyhedra";
  default:
    break;
  }
  if (vtk_type >= VTK_LAGRANGE_CURVE && vtk_type <= VTK_LAGRANGE_PYRAMID) return "Lagrange elements of higher order";
  if (vtk_type >= VTK_BEZIER_CURVE && vtk_type <= VTK_BEZIER_PYRAMID) return "Bezier elements";
  return "cells of unknown type " + std::to_string(vtk_type);
}

bool is_known_kind(Tarn::ElementType type, std::uint32_t n) {
  switch (type) {
  case Type::OneNode:
    return n == 1;
  case Type::Edge:
    return n == 2 || n == 3;
  case Type::Tri:
    return n == 3 || n == 6 || n == 7;
  case Type::Quad:
    return n == 4 || n == 8 || n == 9;
  case Type::Tet:
    return n == 4 || n == 10;
  case Type::Hex:
    return n == 8 || n == 20 || n == 27;
  case Type::Wedge:
    return n == 6 || n == 15 || n == 18;
  case Type::Pyramid:
    return n == 5 || n == 13 || n == 14;
  case Type::Superelement:
    return n > 0;
  case Type::None:
    break;
  }
  return false;
}

} // namespace readers
