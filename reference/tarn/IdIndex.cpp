#include "reference/tarn/IdIndex.h"

#include <algorithm>
#include <functional>

namespace Tarn {

void IdIndex::append(const PodArray<int>& ids, Index first, const BitArray& dead) {
  if (ascending_) {
    const int* const from = ids.begin() + (first == 0 ? 0 : first - 1);
    ascending_ = std::adjacent_find(from, ids.end(), std::greater_equal<int>()) == ids.end();
    if (ascending_) return;
    rebuild(ids, dead, ids.size());
    return;
  }
  const std::size_t added = ids.size() - first;
  if ((used_ + added) * 3 > slots_.size() * 2) {
    rebuild(ids, dead, ids.size() + ids.size() / 2);
    return;
  }
  for (std::size_t index = first; index < ids.size(); ++index)
    insert(static_cast<Index>(index), ids[index]);
}

Index IdIndex::find(int id, const PodArray<int>& ids, const BitArray& dead) const {
  if (ascending_) {
    const int* const found = std::lower_bound(ids.begin(), ids.end(), id);
    if (found == ids.end() || *found != id) return no_index;
    const auto index = static_cast<Index>(found - ids.begin());
    return dead.test(index) ? no_index : index;
  }
  for (std::size_t slot = first_slot(id); slots_[slot] != no_index; slot = (slot + 1) & (slots_.size() - 1))
    if (ids[slots_[slot]] == id && !dead.test(slots_[slot])) return slots_[slot];
  return no_index;
}

void IdIndex::rebuild(const PodArray<int>& ids, const BitArray& dead, std::size_t expected) {
  std::size_t size = 16;
  while (size * 2 < expected * 3)
    size *= 2;
  slots_ = PodArray<Index>();
  slots_.assign(size, no_index);
  used_ = 0;
  for (std::size_t index = 0; index < ids.size(); ++index)
    if (!dead.test(index)) insert(static_cast<Index>(index), ids[index]);
}

void IdIndex::insert(Index index, int id) {
  std::size_t slot = first_slot(id);
  while (slots_[slot] != no_index)
    slot = (slot + 1) & (slots_.size() - 1);
  slots_[slot] = index;
  ++used_;
}

std::size_t IdIndex::first_slot(int id) const {
  return static_cast<std::size_t>((static_cast<std::uint64_t>(id) * 0x9e3779b97f4a7c15u) >> 32) & (slots_.size() - 1);
}

namespace {

bool have_repeats_in_range(std::uint64_t count, const int* ids, int smallest) {
  BitArray seen;
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto place = static_cast<std::size_t>(ids[i] - smallest);
    if (seen.test(place)) return true;
    seen.set(place);
  }
  return false;
}

bool have_repeats(std::uint64_t count, const int* ids) {
  PodArray<int> sorted;
  std::copy_n(ids, count, sorted.append(count));
  std::sort(sorted.begin(), sorted.end());
  return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
}

} // namespace

bool are_positive_and_unique(std::uint64_t count, const int* ids) {
  if (count == 0) return true;
  const int* const end = ids + count;
  const auto extremes = std::minmax_element(ids, end);
  const int smallest = *extremes.first;
  const int largest = *extremes.second;
  if (smallest <= 0) return false;
  if (std::adjacent_find(ids, end, std::greater_equal<int>()) == end) return true;
  const auto range = static_cast<std::uint64_t>(largest - smallest);
  return range / 64 < count ? !have_repeats_in_range(count, ids, smallest) : !have_repeats(count, ids);
}

} // namespace Tarn
