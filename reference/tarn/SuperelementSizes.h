#pragma once

#include <cstdint>
#include <map>

namespace Tarn {

/// How many living superelements a database has of each node count.
struct SuperelementSizes {
  std::map<int, std::uint64_t> counts; ///< superelements by node count; no zero entries

  /// Counts superelements of `nodes` nodes in.
  void add(int nodes, std::uint64_t count) { counts[nodes] += count; }
  /// Counts one out.
  void remove(int nodes) {
    const auto found = counts.find(nodes);
    if (--found->second == 0) counts.erase(found);
  }
  /// The largest node count, 0 when there are none.
  int largest() const { return counts.empty() ? 0 : counts.rbegin()->first; }
};

} // namespace Tarn
