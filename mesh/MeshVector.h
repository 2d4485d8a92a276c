#pragma once

#include "mesh/database/Handle.h"
#include "mesh/orbel_mesh_api.h"

#include <array>
#include <vector>

/// A set of mesh entities: nodes, and elements by kind. Lists may hold duplicates and be in any order until
/// `sort_unique`; handles are compared as unsigned 64-bit integers.
///
/// Kind 0 is no kind of element: every operation but copying, moving and destruction leaves `elements[0]` alone.
struct ORBEL_MESH_API MeshVector {
  std::vector<Tarn::Handle<0>> nodes;                    ///< nodes
  std::array<std::vector<Tarn::Handle<1>>, 10> elements; ///< elements, one list per `Tarn::ElementType`

  MeshVector();
  /// Copies all lists, `elements[0]` too.
  MeshVector(const MeshVector& other);
  /// Copies all lists, `elements[0]` too.
  MeshVector& operator=(const MeshVector& other);
  /// Leaves `other` with empty lists.
  MeshVector(MeshVector&& other) noexcept;
  /// Leaves `other` with empty lists.
  MeshVector& operator=(MeshVector&& other) noexcept;
  ~MeshVector();

  /// True when there is neither a node nor an element of kinds 1 to 9.
  bool empty() const;
  /// The number of nodes and of elements of kinds 1 to 9, truncated to 32 bits.
  int size() const;
  /// Appends each list of `other` to the list here, in its order; duplicates stay.
  void append(const MeshVector& other);
  /// Sorts each list ascending and drops duplicates; capacities stay.
  void sort_unique();
  /// Sorts this set and removes from it what `other` holds, list by list. `other` must be sorted and without
  /// duplicates; of unsorted lists only the handles that a merge walk meets go. True when a list got shorter by the
  /// removal.
  bool remove(const MeshVector& other);
  /// Empties the lists; capacities stay.
  void clear();
};
