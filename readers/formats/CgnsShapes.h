#pragma once

#include "mesh/database/ElementType.h"

#include <vtk_cgns.h>

// clang-format off
#include VTK_CGNS(cgnslib.h)
// clang-format on

#include <cstdint>

namespace readers {

/// What elements of a CGNS type are.
struct CgnsShape {
  Tarn::ElementType type = Tarn::None; ///< `None`: they are left out
  std::uint32_t node_count = 0;        ///< 0: no such type, or one without a fixed number of nodes
  int dimension = 0;
  const std::uint8_t* order = nullptr; ///< place in the file of each canonical node; null: the same
};

/// The shape for a type code, any value.
const CgnsShape& cgns_shape(int type);

} // namespace readers
