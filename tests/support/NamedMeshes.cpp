#include "tests/support/NamedMeshes.h"

#include <cstddef>

namespace test_support {
namespace {

using Point = std::array<double, 3>;

/// A kind of element on the unit cube.
struct Shape {
  std::vector<Point> corners;
  std::vector<std::array<int, 2>> edges; // mid-side nodes follow the corners in this order
  std::vector<std::vector<int>> faces;   // centres follow in this order: of a wedge's and pyramid's quadrilaterals only
};

Shape shape_of(Tarn::ElementType type) {
  const std::vector<std::array<int, 2>> ring = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
  switch (type) {
  case Tarn::OneNode:
    return {{{0, 0, 0}}, {}, {}};
  case Tarn::Edge:
    return {{{0, 0, 0}, {1, 0, 0}}, {{0, 1}}, {}};
  case Tarn::Tri:
    return {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1}, {1, 2}, {2, 0}}, {{0, 1, 2}}};
  case Tarn::Quad:
    return {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, ring, {{0, 1, 2, 3}}};
  case Tarn::Tet:
    return {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}, {}};
  case Tarn::Hex:
    return {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}},
            {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}},
            {{0, 3, 4, 7}, {1, 2, 5, 6}, {0, 1, 4, 5}, {2, 3, 6, 7}, {0, 1, 2, 3}, {4, 5, 6, 7}}};
  case Tarn::Wedge:
    // The first triangle's own normal points away from the second, as VTK has it.
    return {{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}, {1, 0, 1}},
            {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}},
            {{0, 1, 3, 4}, {1, 2, 4, 5}, {2, 0, 5, 3}}};
  case Tarn::Pyramid:
    return {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}},
            {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
            {{0, 1, 2, 3}}};
  default:
    return {};
  }
}

Point mean(const std::vector<Point>& points) {
  Point sum{};
  for (const Point& point : points)
    for (std::size_t axis = 0; axis < 3; ++axis)
      sum[axis] += point[axis];
  for (double& value : sum)
    value /= static_cast<double>(points.size());
  return sum;
}

// Corners, mid-side nodes, face centres and the body's centre, as many as the kind has.
std::vector<Point> all_nodes(const Shape& shape) {
  std::vector<Point> nodes = shape.corners;
  for (const auto& edge : shape.edges)
    nodes.push_back(mean({shape.corners[std::size_t(edge[0])], shape.corners[std::size_t(edge[1])]}));
  for (const auto& face : shape.faces) {
    std::vector<Point> corners;
    for (const int corner : face)
      corners.push_back(shape.corners[std::size_t(corner)]);
    nodes.push_back(mean(corners));
  }
  nodes.push_back(mean(shape.corners));
  return nodes;
}

std::vector<Point> row_of_points(int count) {
  std::vector<Point> points;
  for (int i = 0; i < count; ++i)
    points.push_back({count > 1 ? double(i) / (count - 1) : 0.0, 0, 0});
  return points;
}

// The nodes of a box of nx * ny * nz unit cubes, x fastest.
void add_lattice(NamedMesh& mesh, int nx, int ny, int nz) {
  for (int z = 0; z <= nz; ++z)
    for (int y = 0; y <= ny; ++y)
      for (int x = 0; x <= nx; ++x)
        mesh.add_node(x, y, z);
}

// The eight corners of one cube of the lattice, in a hexahedron's order.
std::array<int, 8> cube(int nx, int ny, int x, int y, int z) {
  const int dy = nx + 1;
  const int dz = dy * (ny + 1);
  const int base = x + y * dy + z * dz;
  return {base, base + 1, base + dy + 1, base + dy, base + dz, base + dz + 1, base + dz + dy + 1, base + dz + dy};
}

template <class Visit> void for_each_cube(int nx, int ny, int nz, Visit visit) {
  for (int z = 0; z < nz; ++z)
    for (int y = 0; y < ny; ++y)
      for (int x = 0; x < nx; ++x)
        visit(cube(nx, ny, x, y, z));
}

} // namespace

NamedMesh::NamedMesh() : database(std::make_unique<Tarn::MeshDatabase>()), owner(database->add_owner("all")) {}

Tarn::Handle<0> NamedMesh::add_node(double x, double y, double z) {
  const double xyz[3] = {x, y, z};
  nodes.push_back(database->add_nodes(1, xyz, nullptr, owner));
  return nodes.back();
}

Tarn::Handle<1> NamedMesh::add_element(Tarn::ElementType type, const std::vector<int>& node_positions) {
  std::vector<Tarn::Handle<0>> element_nodes;
  for (const int position : node_positions)
    element_nodes.push_back(nodes[std::size_t(position)]);
  const auto element =
      database->add_elements(type, static_cast<int>(element_nodes.size()), 1, element_nodes.data(), nullptr, owner);
  mesh.elements[type].push_back(element);
  return element;
}

Tarn::Handle<1> NamedMesh::add_own_element(Tarn::ElementType type, int node_count, double x) {
  const std::vector<Point> points = type == Tarn::Superelement ? row_of_points(node_count) : all_nodes(shape_of(type));
  std::vector<int> positions;
  for (int i = 0; i < node_count; ++i) {
    const Point& point = points.at(std::size_t(i));
    positions.push_back(static_cast<int>(nodes.size()));
    add_node(x + point[0], point[1], point[2]);
  }
  return add_element(type, positions);
}

int linear_node_count(Tarn::ElementType type) {
  static const int counts[] = {0, 1, 2, 3, 4, 4, 8, 6, 5, 3};
  return counts[type];
}

NamedMesh one_element(Tarn::ElementType type, int node_count) {
  NamedMesh result;
  result.add_own_element(type, node_count);
  return result;
}

NamedMesh one_hex() { return one_element(Tarn::Hex, 8); }

NamedMesh one_hex_and_its_skin() {
  NamedMesh result = one_hex();
  for (const std::vector<int>& side : std::vector<std::vector<int>>{
           {0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}})
    result.add_element(Tarn::Quad, side);
  return result;
}

NamedMesh two_hexes() { return hex_block(2, 1, 1); }

NamedMesh hex_block(int nx, int ny, int nz) {
  NamedMesh result;
  add_lattice(result, nx, ny, nz);
  for_each_cube(nx, ny, nz, [&](const std::array<int, 8>& corners) {
    result.add_element(Tarn::Hex, {corners.begin(), corners.end()});
  });
  return result;
}

NamedMesh tet_block(int nx, int ny, int nz) {
  // Six tetrahedra around the diagonal from corner 0 to corner 6: neighbouring cubes split their common side alike.
  static const int tets[6][4] = {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}};
  NamedMesh result;
  add_lattice(result, nx, ny, nz);
  for_each_cube(nx, ny, nz, [&](const std::array<int, 8>& corners) {
    for (const auto& tet : tets)
      result.add_element(Tarn::Tet, {corners[std::size_t(tet[0])], corners[std::size_t(tet[1])],
                                     corners[std::size_t(tet[2])], corners[std::size_t(tet[3])]});
  });
  return result;
}

NamedMesh quad_sheet(int nx, int ny) {
  NamedMesh result;
  add_lattice(result, nx, ny, 0);
  for_each_cube(nx, ny, 1, [&](const std::array<int, 8>& corners) {
    result.add_element(Tarn::Quad, {corners[0], corners[1], corners[2], corners[3]});
  });
  return result;
}

NamedMesh edge_chain(int n) {
  NamedMesh result;
  add_lattice(result, n, 0, 0);
  for (int i = 0; i < n; ++i)
    result.add_element(Tarn::Edge, {i, i + 1});
  return result;
}

NamedMesh each_linear_kind() {
  NamedMesh result;
  for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type) {
    const auto kind = static_cast<Tarn::ElementType>(type);
    result.add_own_element(kind, linear_node_count(kind), 2.0 * type);
  }
  return result;
}

NamedMesh each_quadratic_kind() {
  static const int counts[] = {0, 1, 3, 6, 8, 10, 20, 15, 13, 5};
  NamedMesh result;
  for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    result.add_own_element(static_cast<Tarn::ElementType>(type), counts[type], 2.0 * type);
  return result;
}

NamedMesh lone_nodes(int n) {
  NamedMesh result;
  for (int i = 0; i < n; ++i)
    result.add_node(i, 0, 0);
  return result;
}

} // namespace test_support
