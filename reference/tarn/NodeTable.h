#pragma once

#include "reference/tarn/BitArray.h"
#include "reference/tarn/EntityHandles.h"
#include "reference/tarn/FlatMap.h"
#include "reference/tarn/IdIndex.h"
#include "reference/tarn/PodArray.h"

#include <cstdint>

namespace Tarn {

/// All nodes, in the order added.
class NodeTable {
public:
  PodArray<double> xyz;   ///< interleaved coordinates
  PodArray<int> ids;      ///< local ids
  PodArray<Index> owners; ///< indexes of the primary owners, `no_index` for none
  BitArray listed;        ///< nodes of some node set
  BitArray dead;          ///< always empty: nodes stay
  IdIndex id_index;       ///< finds them by local id

  std::uint64_t size() const { return ids.size(); }
  /// Makes room for `count` more nodes.
  void reserve(std::uint64_t count);
  /// Adds nodes without ids and owners, which the caller appends.
  void append(std::uint64_t count, const double* coordinates);
  /// An element uses the node once more.
  void use(Index node) {
    if (uses_[node] == many) {
      ++more_uses_.insert(std::uint64_t(node) + 1, 0);
    } else {
      ++uses_[node];
    }
  }
  /// An element uses it once less.
  void unuse(Index node);
  /// Whether the node is drawn in its own right: nothing else shows it, or a node set asks for it.
  bool is_flagged(std::uint64_t node) const { return uses_[node] == 0 || listed.test(node); }
  std::size_t bytes() const;

private:
  static constexpr std::uint8_t many = 255;

  PodArray<std::uint8_t> uses_;      ///< how often elements use the node, up to `many`
  FlatMap<std::uint64_t> more_uses_; ///< uses beyond `many`, by index + 1
};

} // namespace Tarn
