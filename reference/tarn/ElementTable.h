#pragma once

#include "mesh/database/Handle.h"
#include "reference/tarn/BitArray.h"
#include "reference/tarn/EntityHandles.h"
#include "reference/tarn/IdIndex.h"
#include "reference/tarn/PodArray.h"

#include <cstdint>

namespace Tarn {

/// All elements of one kind, in the order added. Connectivity is one array of node indexes: while all have the same
/// node count their places follow from it; offsets are kept only from the first element on that differs.
class ElementTable {
public:
  /// The nodes of one element.
  struct Nodes {
    const Index* data;
    std::uint64_t count;
  };

  PodArray<int> ids;        ///< local ids
  PodArray<Index> owners;   ///< indexes of the primary owners, `no_index` for none
  PodArray<int> global_ids; ///< empty until one is given
  BitArray has_global_id;   ///< which of them are given
  BitArray dead;            ///< deleted elements; they keep their places
  std::uint64_t dead_count = 0;
  IdIndex id_index; ///< finds them by local id

  /// Elements, deleted ones included.
  std::uint64_t size() const { return ids.size(); }
  /// Elements that live.
  std::uint64_t living() const { return ids.size() - dead_count; }
  /// Whether there is such an element and it lives.
  bool is_alive(std::uint64_t index) const { return index < ids.size() && (dead_count == 0 || !dead.test(index)); }
  /// The node count that all elements have, 0 when they differ.
  std::uint64_t stride() const { return stride_; }
  /// All connectivity: element after element.
  const Index* connectivity() const { return connectivity_.data(); }
  /// The nodes of an element, dead or alive.
  Nodes nodes(std::uint64_t index) const {
    if (stride_ != 0) return {connectivity_.data() + index * stride_, stride_};
    return {connectivity_.data() + offsets_[index], offsets_[index + 1] - offsets_[index]};
  }

  /// Makes room for `count` more elements of `nodes_per_element` nodes.
  void reserve(std::uint64_t count, std::uint64_t nodes_per_element);
  /// Adds the connectivity of elements: valid node handles. The caller appends the other arrays.
  void append_connectivity(std::uint64_t count, std::uint64_t nodes_per_element, const Handle<0>* nodes);
  /// Notes a global id.
  void set_global_id(std::uint64_t index, int id);
  std::size_t bytes() const;

private:
  void start_offsets();

  PodArray<Index> connectivity_;
  std::uint64_t stride_ = 0;
  PodArray<std::uint64_t> offsets_; ///< one more than elements, once their node counts differ
};

} // namespace Tarn
