#pragma once

#include "reference/tarn/PodArray.h"

#include <cstddef>
#include <cstdint>

namespace Tarn {

/// A map from non-zero 64-bit keys to plain values, by open addressing in two flat arrays: a dozen bytes an entry.
/// Entries are never taken out one by one.
template <class Value> class FlatMap {
public:
  std::size_t size() const { return size_; }
  std::size_t bytes() const { return keys_.bytes() + values_.bytes(); }

  /// The value of `key`, or null. Valid until the next insertion.
  const Value* find(std::uint64_t key) const {
    if (size_ == 0) return nullptr;
    const std::size_t slot = slot_of(key);
    return keys_[slot] == key ? &values_[slot] : nullptr;
  }
  Value* find(std::uint64_t key) { return const_cast<Value*>(static_cast<const FlatMap*>(this)->find(key)); }

  /// Enters `value` unless the key is there already; gives what the key has now.
  Value& insert(std::uint64_t key, Value value) {
    if ((size_ + 1) * 4 > keys_.size() * 3) rehash(keys_.empty() ? 16 : keys_.size() * 2);
    const std::size_t slot = slot_of(key);
    if (keys_[slot] == 0) {
      keys_[slot] = key;
      values_[slot] = value;
      ++size_;
    }
    return values_[slot];
  }

  /// Makes room for `count` entries in all.
  void reserve(std::size_t count) {
    std::size_t slots = 16;
    while (slots * 3 < count * 4)
      slots *= 2;
    if (slots > keys_.size()) rehash(slots);
  }
  void clear() { *this = FlatMap(); }

private:
  std::size_t slot_of(std::uint64_t key) const {
    const std::size_t mask = keys_.size() - 1;
    std::size_t slot = static_cast<std::size_t>((key * 0x9e3779b97f4a7c15u) >> 20) & mask;
    while (keys_[slot] != 0 && keys_[slot] != key)
      slot = (slot + 1) & mask;
    return slot;
  }

  void rehash(std::size_t slots) {
    FlatMap larger;
    larger.keys_.assign(slots, 0);
    larger.values_.resize(slots);
    larger.size_ = size_;
    for (std::size_t slot = 0; slot < keys_.size(); ++slot) {
      if (keys_[slot] == 0) continue;
      const std::size_t target = larger.slot_of(keys_[slot]);
      larger.keys_[target] = keys_[slot];
      larger.values_[target] = values_[slot];
    }
    *this = std::move(larger);
  }

  PodArray<std::uint64_t> keys_;
  PodArray<Value> values_;
  std::size_t size_ = 0;
};

} // namespace Tarn
