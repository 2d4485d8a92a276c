#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"

#include <cstdint>

/// How the reference database packs a kind and an index into its handles: the top six bits tell the kind, the others
/// the index. Element kinds 1 to 9 stand for themselves, so that sorted handles are grouped by kind and lie in the
/// order added.
namespace Tarn {

using Index = std::uint32_t;                                 ///< place of an entity in the arrays of its kind
constexpr Index no_index = 0xffffffffu;                      ///< no place: no entity has it
constexpr int kind_shift = 58;                               ///< where the kind begins
constexpr std::uint64_t implicit_edge_kind = 10;             ///< an edge of a shell or solid that nobody stored
constexpr std::uint64_t node_kind = 32;                      ///< a node
constexpr std::uint64_t node_limit = std::uint64_t(1) << 29; ///< an implicit edge packs two node indexes
constexpr std::uint64_t index_mask = (std::uint64_t(1) << kind_shift) - 1;

inline std::uint64_t kind_of(std::uint64_t value) { return value >> kind_shift; }
inline std::uint64_t index_of(std::uint64_t value) { return value & index_mask; }

inline Handle<0> node_handle(Index index) { return {node_kind << kind_shift | index}; }
inline Handle<1> element_handle(ElementType type, Index index) { return {std::uint64_t(type) << kind_shift | index}; }

/// Two different corners as one number, the smaller in the upper half.
inline std::uint64_t corner_pair(Index a, Index b) {
  return a < b ? std::uint64_t(a) << 29 | b : std::uint64_t(b) << 29 | a;
}
inline Handle<1> implicit_edge_handle(std::uint64_t pair) { return {implicit_edge_kind << kind_shift | pair}; }
inline Index smaller_corner(Handle<1> edge) { return static_cast<Index>(index_of(edge.value) >> 29); }
inline Index larger_corner(Handle<1> edge) { return static_cast<Index>(edge.value & (node_limit - 1)); }

} // namespace Tarn
