#pragma once

#include <orbel_mesh/mesh/database/ElementType.h>

#include <cstddef>
#include <string>
#include <vector>

/// The mesh as this host's solver keeps it: plain arrays that know nothing of drawing. Nodes, elements and parts are
/// numbered from 0.
struct SolverMesh {
  std::vector<double> coordinates;       ///< x y z of each node, interleaved
  std::vector<Tarn::ElementType> kinds;  ///< one per element
  std::vector<std::size_t> first_corner; ///< one per element and one more: where its nodes begin in `corners`
  std::vector<std::size_t> corners;      ///< the elements' nodes, in VTK's order of each kind
  std::vector<std::size_t> part;         ///< one per element
  std::vector<std::string> part_names;   ///< one per part

  std::size_t node_count() const { return coordinates.size() / 3; }
  std::size_t element_count() const { return kinds.size(); }
};

/// A square bar of hexahedra in two parts, "foot" and "bar", standing on a "plate" of quadrilaterals.
SolverMesh make_bar();

/// Turns the bar about its axis, the more the higher: what a load step of the solver would do. `radians` is the turn of
/// the top, counted from `straight`.
void twist(SolverMesh& mesh, const SolverMesh& straight, double radians);
