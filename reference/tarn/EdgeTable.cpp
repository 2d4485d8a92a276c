#include "reference/tarn/EdgeTable.h"

#include "reference/tarn/ElementTable.h"

namespace Tarn {

Handle<1> EdgeTable::edge_between(Index a, Index b, const ElementTable& stored) {
  if (!stored_known_) gather_stored(stored);
  const std::uint64_t pair = corner_pair(a, b);
  const Index* const found = stored_.find(pair);
  return found ? element_handle(Edge, *found) : implicit_edge_handle(pair);
}

void EdgeTable::gather_stored(const ElementTable& stored) {
  stored_.clear();
  if (stored.living() != 0) stored_.reserve(stored.living());
  for (Index index = 0; index < stored.size(); ++index) {
    if (!stored.is_alive(index)) continue;
    const Index* const corners = stored.nodes(index).data;
    if (corners[0] != corners[1]) stored_.insert(corner_pair(corners[0], corners[1]), index);
  }
  stored_known_ = true;
}

} // namespace Tarn
