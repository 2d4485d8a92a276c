#pragma once

#include "mesh/database/Handle.h"
#include "reference/tarn/EntityHandles.h"
#include "reference/tarn/FlatMap.h"

#include <cstdint>

namespace Tarn {

class ElementTable;

/// The edges of shells and solids, which are not stored: an edge is its two corners. This finds the stored edge element
/// that takes its place, and remembers what a handle cannot hold: mid-side nodes and the local ids asked for.
class EdgeTable {
public:
  /// The edge between two different corners: the first stored edge element on them, else the implicit edge.
  Handle<1> edge_between(Index a, Index b, const ElementTable& stored);
  /// The stored edge elements have changed.
  void forget_stored() { stored_known_ = false; }

  /// Remembers the mid-side node of an implicit edge; the first one told stays.
  void set_middle(Handle<1> edge, Index node) { middles_.insert(edge.value, node); }
  /// Its mid-side node, or `no_index`.
  Index middle(Handle<1> edge) const {
    const Index* const found = middles_.find(edge.value);
    return found ? *found : no_index;
  }

  /// The local id of an implicit edge, 0 when none was given yet.
  int id(Handle<1> edge) const {
    const int* const found = ids_.find(edge.value);
    return found ? *found : 0;
  }
  /// Gives it a local id.
  void set_id(Handle<1> edge, int id) {
    ids_.insert(edge.value, id);
    edges_by_id_.insert(static_cast<std::uint64_t>(id), edge.value);
  }
  /// The implicit edge with the local id, or null.
  Handle<1> find(int id) const {
    const std::uint64_t* const found = edges_by_id_.find(static_cast<std::uint64_t>(id));
    return {found ? *found : 0};
  }

  std::size_t bytes() const { return stored_.bytes() + middles_.bytes() + ids_.bytes() + edges_by_id_.bytes(); }

private:
  void gather_stored(const ElementTable& stored);

  FlatMap<Index> stored_; ///< stored edge elements by pair of corners
  bool stored_known_ = false;
  FlatMap<Index> middles_;
  FlatMap<int> ids_;
  FlatMap<std::uint64_t> edges_by_id_;
};

} // namespace Tarn
