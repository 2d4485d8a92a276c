#include "readers/SampleMesh.h"

#include "readers/DatabaseFill.h"
#include "readers/MeshDraft.h"
#include "readers/ShapeTables.h"

#include <array>
#include <cmath>
#include <map>

namespace readers {

namespace {

using Tarn::ElementType;

// A node of a block, on a lattice fine enough for mid-side nodes, face centres and body centres of every element.
using Site = std::array<int, 3>;
constexpr int cube_units = 12;      // lattice units of an edge of the unit cube
constexpr int block_units = 24;     // lattice units of a block: two cubes a side
constexpr double column_step = 1.6; // from block to block, in edges of a block
constexpr double row_step = 2.1;

using Corners = std::vector<Site>;

struct Order {
  const char* suffix;
  int row;
};
constexpr Order linear{"", 0};
constexpr Order quadratic{" quadratic", 1};
constexpr Order full{" with centres", 2};

Site mean(const Corners& corners, const std::vector<int>& which) {
  Site sum{0, 0, 0};
  for (int corner : which)
    for (std::size_t axis = 0; axis < 3; ++axis)
      sum[axis] += corners[static_cast<std::size_t>(corner)][axis];
  for (int& value : sum)
    value /= static_cast<int>(which.size());
  return sum;
}

// The eight corners of the cube whose lowest corner is given, in the order of a hexahedron.
Corners cube(int x, int y, int z, int size) {
  return {{x, y, z},        {x + size, y, z},        {x + size, y + size, z},        {x, y + size, z},
          {x, y, z + size}, {x + size, y, z + size}, {x + size, y + size, z + size}, {x, y + size, z + size}};
}

Corners pick(const Corners& from, std::initializer_list<int> which) {
  Corners corners;
  for (int corner : which)
    corners.push_back(from[static_cast<std::size_t>(corner)]);
  return corners;
}

template <typename F> void for_each_cell(F&& f) {
  for (int z = 0; z < block_units; z += cube_units)
    for (int y = 0; y < block_units; y += cube_units)
      for (int x = 0; x < block_units; x += cube_units)
        f(cube(x, y, z, cube_units));
}

template <typename F> void for_each_square(F&& f) {
  for (int y = 0; y < block_units; y += cube_units)
    for (int x = 0; x < block_units; x += cube_units)
      f(cube(x, y, 0, cube_units));
}

std::vector<Corners> one_nodes() {
  std::vector<Corners> elements;
  for (int z = 0; z <= block_units; z += cube_units)
    for (int y = 0; y <= block_units; y += cube_units)
      for (int x = 0; x <= block_units; x += cube_units)
        elements.push_back({{x, y, z}});
  return elements;
}

// A braced frame.
std::vector<Corners> edges() {
  const Corners c = cube(0, 0, 0, block_units);
  std::vector<Corners> elements;
  for (const auto& [a, b] : {std::pair{0, 1},
                             {1, 2},
                             {2, 3},
                             {3, 0},
                             {4, 5},
                             {5, 6},
                             {6, 7},
                             {7, 4},
                             {0, 4},
                             {1, 5},
                             {2, 6},
                             {3, 7},
                             {0, 5},
                             {2, 5},
                             {2, 7},
                             {0, 7}})
    elements.push_back(pick(c, {a, b}));
  return elements;
}

std::vector<Corners> triangles() {
  std::vector<Corners> elements;
  for_each_square([&](const Corners& c) {
    elements.push_back(pick(c, {0, 1, 2}));
    elements.push_back(pick(c, {0, 2, 3}));
  });
  return elements;
}

std::vector<Corners> quadrilaterals() {
  std::vector<Corners> elements;
  for_each_square([&](const Corners& c) { elements.push_back(pick(c, {0, 1, 2, 3})); });
  return elements;
}

// Six about the diagonal of each cube.
std::vector<Corners> tetrahedra() {
  std::vector<Corners> elements;
  for_each_cell([&](const Corners& c) {
    for (const auto& t : {std::array{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}})
      elements.push_back(pick(c, {t[0], t[1], t[2], t[3]}));
  });
  return elements;
}

std::vector<Corners> hexahedra() {
  std::vector<Corners> elements;
  for_each_cell([&](const Corners& c) { elements.push_back(c); });
  return elements;
}

// VTK's order: the first triangle is turned away from the second.
std::vector<Corners> wedges() {
  std::vector<Corners> elements;
  for_each_cell([&](const Corners& c) {
    elements.push_back(pick(c, {0, 2, 1, 4, 6, 5}));
    elements.push_back(pick(c, {0, 3, 2, 4, 7, 6}));
  });
  return elements;
}

// One on each side of the block, apex in the middle.
std::vector<Corners> pyramids() {
  const Corners c = cube(0, 0, 0, block_units);
  std::vector<Corners> elements;
  for (const auto& side :
       {std::array{0, 1, 2, 3}, {4, 7, 6, 5}, {0, 4, 5, 1}, {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}}) {
    elements.push_back(pick(c, {side[0], side[1], side[2], side[3]}));
    elements.back().push_back({cube_units, cube_units, cube_units});
  }
  return elements;
}

// A ring of twelve nodes over its centre.
std::vector<Corners> superelement() {
  Corners nodes{{cube_units, cube_units, 0}};
  for (int i = 0; i < 12; ++i) {
    const double angle = i * std::acos(-1.0) / 6;
    nodes.push_back({cube_units + static_cast<int>(std::lround(cube_units * std::cos(angle))),
                     cube_units + static_cast<int>(std::lround(cube_units * std::sin(angle))), cube_units});
  }
  return {nodes};
}

std::array<double, 3> place(const Site& site, const Order& order, int column, bool sheet) {
  double x = site[0] / double(block_units) - 0.5;
  double y = site[1] / double(block_units) - 0.5;
  double z = site[2] / double(block_units);
  if (sheet) z = 0.4 * std::cos(1.9 * x) * std::cos(1.9 * y);
  if (order.row > 0 && !sheet) {
    const double waist = 1 - 0.35 * std::sin(std::acos(-1.0) * z);
    const double angle = 0.7 * z;
    const double turned = waist * (x * std::cos(angle) - y * std::sin(angle));
    y = waist * (x * std::sin(angle) + y * std::cos(angle));
    x = turned;
  }
  return {x + column_step * column, y + row_step * order.row, z};
}

class Builder {
public:
  void add_block(ElementType type, const char* name, std::vector<Corners> elements, const Order& order, int column) {
    for (Corners& element : elements)
      complete(type, order, element);
    ElementBatch batch;
    batch.type = type;
    batch.nodes_per_element = static_cast<std::uint32_t>(elements.front().size());
    batch.owner = static_cast<std::uint32_t>(draft.owners.size());
    draft.owners.push_back(name + std::string(order.suffix));
    nodes_.clear();
    const bool sheet = type == ElementType::Tri || type == ElementType::Quad;
    for (const Corners& element : elements) {
      for (const Site& site : element)
        batch.nodes.push_back(node(site, place(site, order, column, sheet)));
      batch.position.push_back(++draft.last_position);
    }
    draft.batches.push_back(std::move(batch));
  }

  void add_free_nodes() {
    draft.owners.push_back("nodes");
    nodes_.clear();
    for (int i = 0; i < 9; ++i)
      node({i, 0, 0}, {column_step * i, -0.9, 0});
  }

  MeshDraft draft;

private:
  static void complete(ElementType type, const Order& order, Corners& element) {
    const Corners corners = element;
    if (order.row > 0)
      for (const auto& which : mid_side_corners(type))
        element.push_back(mean(corners, which));
    if (order.row > 1)
      for (const auto& which : centre_corners(type))
        element.push_back(mean(corners, which));
  }

  std::uint32_t node(const Site& site, const std::array<double, 3>& xyz) {
    const auto index = static_cast<std::uint32_t>(draft.node_count());
    const auto [known, is_new] = nodes_.emplace(site, index);
    if (is_new) {
      draft.xyz.insert(draft.xyz.end(), xyz.begin(), xyz.end());
      draft.node_owner.push_back(static_cast<std::uint32_t>(draft.owners.size() - 1));
    }
    return known->second;
  }

  std::map<Site, std::uint32_t> nodes_; // of the block at hand
};

} // namespace

Report build_sample_mesh(Tarn::MeshDatabase& database) {
  Builder builder;
  builder.add_block(ElementType::OneNode, "one-nodes", one_nodes(), linear, 0);
  builder.add_block(ElementType::Superelement, "superelement", superelement(), linear, 8);
  const auto add = [&builder](ElementType type, const char* name, const std::vector<Corners>& elements, int column,
                              bool has_centres) {
    builder.add_block(type, name, elements, linear, column);
    builder.add_block(type, name, elements, quadratic, column);
    if (has_centres) builder.add_block(type, name, elements, full, column);
  };
  add(ElementType::Edge, "edges", edges(), 1, false);
  add(ElementType::Tri, "triangles", triangles(), 2, true);
  add(ElementType::Quad, "quadrilaterals", quadrilaterals(), 3, true);
  add(ElementType::Tet, "tetrahedra", tetrahedra(), 4, false);
  add(ElementType::Hex, "hexahedra", hexahedra(), 5, true);
  add(ElementType::Wedge, "wedges", wedges(), 6, true);
  add(ElementType::Pyramid, "pyramids", pyramids(), 7, true);
  builder.add_free_nodes();
  Report report;
  report.error = fill_database(builder.draft, {}, database, report);
  return report;
}

} // namespace readers
