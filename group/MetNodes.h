#pragma once

#include "mesh/database/Handle.h"

#include <vtkTypeUInt64Array.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The nodes that the cells of a grid use, in the order in which cells meet them. Neighbouring cells share nodes, so
/// the nodes met lately are remembered: a list for four quadrilaterals of a sheet has little more than one entry for
/// each node instead of four, and what is asked of the database and looked up by id shrinks with it. A node that has
/// been forgotten in between is listed again.
class MetNodes {
public:
  /// Lists about `nodes` nodes in `list`, by their handles' values.
  MetNodes(vtkTypeUInt64Array& list, std::size_t nodes) : list_(list), lately_(std::size_t{1} << bits) {
    make_room(nodes);
  }

  /// Writes to `places` where in the list each of the nodes stands. None of them may be null. `Count` is `int`, or a
  /// constant of it for a loop that is unrolled.
  template <class Count, class Place> void meet(const Tarn::Handle<0>* nodes, Count count, Place* places) {
    if (room_ < size_ + static_cast<std::size_t>(count)) make_room(2 * size_ + static_cast<std::size_t>(count));
    Entry* const lately = lately_.data();
    std::size_t size = size_;
    for (int i = 0; i < count; ++i) {
      const std::uint64_t node = nodes[i].value;
      Entry& entry = lately[(node * multiplier) >> (64 - bits)];
      if (entry.node != node) {
        entry = {node, size};
        values_[size++] = node;
      }
      places[i] = static_cast<Place>(entry.place);
    }
    size_ = size;
  }

  /// The list, as the database wants it.
  const Tarn::Handle<0>* nodes() const {
    static_assert(sizeof(Tarn::Handle<0>) == sizeof(vtkTypeUInt64), "a handle is its value");
    return reinterpret_cast<const Tarn::Handle<0>*>(values_);
  }
  std::size_t size() const { return size_; }

private:
  struct Entry {
    std::uint64_t node = 0;
    std::uint64_t place = 0;
  };

  void make_room(std::size_t nodes) {
    values_ = list_.WritePointer(0, static_cast<vtkIdType>(nodes));
    room_ = nodes;
  }

  // The multiplicative hash of Knuth, The Art of Computer Programming, volume 3, section 6.4.
  static constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15u;
  static constexpr unsigned bits = 11; // 32 kB, which the first level of a processor's cache holds

  vtkTypeUInt64Array& list_;
  std::vector<Entry> lately_;
  vtkTypeUInt64* values_ = nullptr;
  std::size_t room_ = 0;
  std::size_t size_ = 0;
};
