#include "reference/tarn/NodeTable.h"

#include <algorithm>

namespace Tarn {

void NodeTable::reserve(std::uint64_t count) {
  xyz.reserve_more(3 * count);
  ids.reserve_more(count);
  owners.reserve_more(count);
  uses_.reserve_more(count);
}

void NodeTable::append(std::uint64_t count, const double* coordinates) {
  std::copy_n(coordinates, 3 * count, xyz.append(3 * count));
  uses_.append(count, 0);
}

void NodeTable::unuse(Index node) {
  if (uses_[node] == many) {
    std::uint64_t* const more = more_uses_.find(std::uint64_t(node) + 1);
    if (more && *more > 0) {
      --*more;
      return;
    }
  }
  --uses_[node];
}

std::size_t NodeTable::bytes() const {
  return xyz.bytes() + ids.bytes() + owners.bytes() + listed.bytes() + id_index.bytes() + uses_.bytes() +
         more_uses_.bytes();
}

} // namespace Tarn
