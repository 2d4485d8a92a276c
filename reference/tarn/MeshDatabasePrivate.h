#pragma once

#include "reference/tarn/EdgeTable.h"
#include "reference/tarn/ElementTable.h"
#include "reference/tarn/EntityHandles.h"
#include "reference/tarn/MeshDatabase.h"
#include "reference/tarn/NodeTable.h"
#include "reference/tarn/SMeshOwner.h"
#include "reference/tarn/SuperelementSizes.h"

#include <array>
#include <memory>
#include <unordered_set>
#include <vector>

namespace Tarn {

/// The state of a database and the steps that several operations share.
struct MeshDatabase::Private {
  Private();
  ~Private();
  Private(const Private&) = delete;
  Private& operator=(const Private&) = delete;

  NodeTable nodes;
  std::array<ElementTable, 10> elements; ///< by kind; kind 0 stays empty
  int largest_node_id = 0;
  int largest_element_id = 0;                          ///< ids of implicit edges included
  std::vector<std::unique_ptr<SMeshOwnerType>> owners; ///< in the order added, deleted ones included
  std::unordered_set<const SMeshOwnerType*> living_owners;
  EdgeTable edges;
  SuperelementSizes superelements;
  PodArray<Index> element_on_node; ///< first one-node element of each node; empty until it is asked for

  bool is_node(Node node) const { return kind_of(node.value) == node_kind && index_of(node.value) < nodes.size(); }
  bool are_nodes(Count count, const Node* list) const;
  /// The table that holds the element, or null for what is no living stored element.
  const ElementTable* table_of(Elem element) const {
    const std::uint64_t kind = kind_of(element.value);
    if (kind == None || kind > Superelement) return nullptr;
    const ElementTable& table = elements[kind];
    return table.is_alive(index_of(element.value)) ? &table : nullptr;
  }
  ElementTable* table_of(Elem element) {
    return const_cast<ElementTable*>(static_cast<const Private*>(this)->table_of(element));
  }
  bool are_elements(Count count, const Elem* list) const;
  bool is_implicit_edge(Elem element) const {
    if (kind_of(element.value) != implicit_edge_kind) return false;
    return smaller_corner(element) < larger_corner(element) && larger_corner(element) < nodes.size();
  }
  /// Writes the two or three nodes of an implicit edge and tells how many; 0 for anything else.
  Count implicit_edge_nodes(Elem edge, Index* list) const;
  /// The nodes of a living element. Those of an implicit edge are written into `edge`, which has room for three. None
  /// for anything else.
  ElementTable::Nodes nodes_of(Elem element, Index* edge) const;
  /// Whether the owner is one of this database, alive. Strangers are never looked into.
  bool is_owner(const SMeshOwnerType* owner) const { return living_owners.count(owner) != 0; }
  bool is_owner_or_null(const SMeshOwnerType* owner) const { return !owner || is_owner(owner); }

  SMeshOwnerType* owner_at(Index index) const { return index == no_index ? nullptr : owners[index].get(); }

  Elem find_element(int id) const;
  bool can_take_node_ids(Count count, const int* ids) const;
  bool can_take_element_ids(Count count, const int* ids) const;
  /// The local id of an implicit edge, given on first request; 0 when every id is taken.
  int implicit_edge_id(Elem edge);

  void set_node_owner(Index node, SMeshOwnerType* owner);
  void set_element_owner(Elem element, SMeshOwnerType* owner);
  void delete_element(Elem element);
  /// Flags the nodes of the sets that are left.
  void relist_set_nodes();

  /// The nodes whose primary owner it is, ascending.
  const IndexRuns& tidy_nodes(SMeshOwnerType* owner);
  /// The owner's nodes, primary and listed, each once, ascending.
  IndexRuns owner_nodes(SMeshOwnerType* owner);
  /// The owner's living elements of the kind, ascending.
  const IndexRuns& owner_elements(SMeshOwnerType* owner, ElementType type);

  /// Writes up to `capacity` edges of a stored element, each once, and tells how many. Edges whose two corners are one
  /// node, which collapsed elements have, are no edges.
  Count write_edges(Elem element, Count capacity, Elem* out);
  /// Fills `element_on_node` unless it is up to date.
  void gather_elements_on_nodes();
};

} // namespace Tarn
