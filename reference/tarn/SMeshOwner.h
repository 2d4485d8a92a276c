#pragma once

#include "mesh/database/SMeshOwnerType.h"
#include "reference/tarn/IndexRuns.h"

#include <array>
#include <cstdint>
#include <string>

/// What the reference database keeps of an owner.
struct Tarn::SMeshOwnerType {
  std::string name;                              ///< display name, not unique
  std::uint32_t dimension = 0;                   ///< 0 to 3, or all bits for any
  Tarn::Index index = Tarn::no_index;            ///< its place in the list of owners
  bool alive = true;                             ///< false once deleted; its address is never used again
  Tarn::IndexRuns nodes;                         ///< nodes whose primary owner it is
  Tarn::IndexRuns listed;                        ///< nodes that it lists as a set
  std::array<Tarn::IndexRuns, 10> elements = {}; ///< elements whose primary owner it is, by kind
};
