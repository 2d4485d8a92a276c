#pragma once

#include "reference/tarn/BitArray.h"
#include "reference/tarn/EntityHandles.h"
#include "reference/tarn/PodArray.h"

namespace Tarn {

/// Finds entities by local id. While ids ascend, which files and running numbers mostly do, the array of ids is its own
/// index and this holds nothing; from the first id out of order on it is a hash table of four bytes a slot.
class IdIndex {
public:
  /// Takes note of the entries of `ids` from `first` on. `dead` marks entities that no longer count.
  void append(const PodArray<int>& ids, Index first, const BitArray& dead);
  /// The living entity with the id, or `no_index`.
  Index find(int id, const PodArray<int>& ids, const BitArray& dead) const;
  std::size_t bytes() const { return slots_.bytes(); }

private:
  void rebuild(const PodArray<int>& ids, const BitArray& dead, std::size_t expected);
  void insert(Index index, int id);
  std::size_t first_slot(int id) const;

  bool ascending_ = true;
  std::size_t used_ = 0;  ///< slots taken, dead entities included
  PodArray<Index> slots_; ///< a power of two; `no_index` where free
};

/// Whether all ids are positive and none occurs twice.
bool are_positive_and_unique(std::uint64_t count, const int* ids);

} // namespace Tarn
