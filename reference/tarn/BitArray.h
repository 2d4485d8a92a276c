#pragma once

#include "reference/tarn/PodArray.h"

#include <cstddef>
#include <cstdint>

namespace Tarn {

/// One bit per entity. Bits beyond the length read as clear, so that an array nobody wrote to costs nothing.
class BitArray {
public:
  bool test(std::size_t position) const {
    const std::size_t word = position >> 6;
    return word < words_.size() && (words_[word] >> (position & 63) & 1) != 0;
  }
  void set(std::size_t position) {
    grow(position);
    words_[position >> 6] |= bit(position);
  }
  void clear(std::size_t position) {
    if (position >> 6 < words_.size()) words_[position >> 6] &= ~bit(position);
  }
  /// Clears all bits and gives the memory back.
  void reset() { words_ = PodArray<std::uint64_t>(); }
  std::size_t bytes() const { return words_.bytes(); }

private:
  static std::uint64_t bit(std::size_t position) { return std::uint64_t(1) << (position & 63); }
  void grow(std::size_t position) {
    const std::size_t words = (position >> 6) + 1;
    if (words > words_.size()) words_.append(words - words_.size(), 0);
  }

  PodArray<std::uint64_t> words_;
};

} // namespace Tarn
