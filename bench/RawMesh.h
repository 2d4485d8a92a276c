#pragma once

#include "mesh/database/ElementType.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A mesh of one kind of linear element in plain arrays: what both sides of every comparison are filled from.
struct RawMesh {
  Tarn::ElementType type = Tarn::None; ///< the kind of every element
  int nodes_per_element = 0;           ///< corners of each
  std::vector<double> xyz;             ///< 3 * `node_count()` interleaved coordinates
  std::vector<std::int32_t> nodes;     ///< `element_count() * nodes_per_element` node positions, from 0

  /// How many nodes there are.
  std::size_t node_count() const { return xyz.size() / 3; }
  /// How many elements there are.
  std::size_t element_count() const { return nodes_per_element ? nodes.size() / nodes_per_element : 0; }
};

/// `nx * ny * nz` unit cubes as hexahedra.
RawMesh box_of_hexahedra(int nx, int ny, int nz);
/// `n^3` unit cubes cut into 6 tetrahedra each, along the same diagonal, so that the faces of neighbours match.
RawMesh box_of_tetrahedra(int n);
/// `n * n` unit squares in the plane z = 0.
RawMesh square_of_quadrilaterals(int n);
/// `nx * ny` of them.
RawMesh rectangle_of_quadrilaterals(int nx, int ny);

/// The same mesh with its nodes renumbered and its elements reordered at random; a seed gives the same order on every
/// machine.
RawMesh shuffled(const RawMesh& mesh, std::uint64_t seed);

/// The tetrahedra of a .vtu file. Throws std::runtime_error when there are none.
RawMesh read_tetrahedra(const std::string& path);

} // namespace bench
