#pragma once

#include "mesh/database/ElementType.h"

#include <cstdint>
#include <string>

namespace readers {

/// How cells of a VTK type become elements.
enum class CellRule : std::uint8_t {
  Unknown,    ///< left out
  OneElement, ///< one element of the kind, nodes in the same or a permuted order
  Points,     ///< one one-node element for each point
  Polyline,   ///< one edge for each segment
  Strip,      ///< one triangle for each point from the third, turned alternately
  Polygon,    ///< a triangle or a quadrilateral, left out with more corners
};

/// What is known of a VTK cell type.
struct CellKind {
  CellRule rule = CellRule::Unknown;
  Tarn::ElementType type = Tarn::ElementType::None; ///< the kind of the elements made
  std::uint8_t node_count = 0;                      ///< nodes of the cell; 0 when it may vary
  const std::uint8_t* order = nullptr;              ///< position of each canonical node in the cell; null: the same
};

/// The rule for a VTK cell type code, any value.
const CellKind& cell_kind(int vtk_type);

/// The plural name of a VTK cell type that is left out, for a line to the user.
std::string name_of_left_out(int vtk_type);

/// Whether elements of the kind may have this many nodes.
bool is_known_kind(Tarn::ElementType type, std::uint32_t nodes_per_element);

/// The kinds of element, by number of nodes, that formats other than VTK's name by shape: the kind with `corners`
/// corners and dimension `dimension`.
Tarn::ElementType kind_of_shape(int dimension, int corners);

} // namespace readers
