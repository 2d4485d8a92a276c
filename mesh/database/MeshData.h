#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "mesh/database/SMeshOwnerType.h"
#include "mesh/database/tovan_tarn_api.h"

#include <cstdint>

namespace Tarn {

/// The mesh database as the library sees it. The host implements it; the library borrows it, only reads it, calls it on
/// one thread, and takes it not to change during one call.
///
/// Arrays are the caller's: `count` says how many entities are asked about, outputs have room for one answer each
/// (three for interleaved coordinates) and come back in input order. Lists may hold duplicates and be in any order.
/// Entities that the database does not know leave their outputs untouched; an output handle left null means that there
/// is no such entity. Where an operation returns an int, 0 is success. A `Count*` that is both input and output carries
/// the capacity in and the number written out.
class TOVAN_TARN_API MeshData {
public:
  using Node = Handle<0>;      ///< a node
  using Elem = Handle<1>;      ///< an element
  using Count = std::uint64_t; ///< a number of entities

  virtual ~MeshData() = default;

  /// The element's local id.
  virtual void get_element_id(Elem element, int* id) = 0;
  /// The element's global id and true, or false when it has none.
  virtual void get_element_global_id(Elem element, int* id, bool* has_id) = 0;
  /// One global id per element and one flag each: non-zero where the element has a global id.
  virtual void get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) = 0;
  /// One local id per element.
  virtual void get_element_ids(Count count, const Elem* elements, int* ids) = 0;
  /// One local id per node.
  virtual void get_node_ids(Count count, const Node* nodes, int* ids) = 0;
  /// The element's kind.
  virtual void get_element_type(Elem element, ElementType* type) = 0;
  /// One kind per element.
  virtual void get_element_types(Count count, const Elem* elements, ElementType* types) = 0;
  /// Coordinates in three arrays of `count` each.
  virtual void get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) = 0;
  /// Coordinates x y z of each node, interleaved.
  virtual void get_double_coordinates(Count count, const Node* nodes, double* xyz) = 0;
  /// Coordinates x y z of each node, interleaved, in single precision.
  virtual void get_float_coordinates(Count count, const Node* nodes, float* xyz) = 0;
  /// Coordinates of one node.
  virtual void get_node_coordinates(Node node, double* x, double* y, double* z) = 0;
  /// One flag per node: non-zero where the node is drawn in its own right, not only as a corner of an element.
  virtual void get_node_flags(Count count, const Node* nodes, char* flags) = 0;
  /// The nodes of elements of one kind, concatenated in element order with the stride `*length / count`. An element
  /// with more nodes gives its first ones; missing nodes are null handles. `*length` comes back as what was written.
  virtual void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) = 0;
  /// The element's nodes in canonical order: corners, mid-side nodes, face centres, the body's centre.
  virtual int get_element_connectivity(Elem element, Count* count, Node* nodes) = 0;
  /// How many nodes the element has.
  virtual void get_element_node_count(Elem element, Count* count) = 0;
  /// All nodes of the elements, concatenated; `unused` is 0.
  virtual int get_nodes_of_elements(Count count, const Elem* elements, int unused, Count* node_count, Node* nodes) = 0;
  /// The element's corner nodes; `capacity` says how many `nodes` has room for.
  virtual int get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) = 0;
  /// With `dimension` 1 and `selector` 2: the edges adjacent to the element.
  virtual int get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) = 0;
  /// The primary owner of each element, null where it has none.
  virtual void get_element_owners(Count count, const Elem* elements, SMeshOwnerType** owners) = 0;
  /// The primary owner of each node, null where it has none.
  virtual void get_node_owners(Count count, const Node* nodes, SMeshOwnerType** owners) = 0;
  /// The owner's topological dimension, 0 to 3; all bits set means any.
  virtual void get_owner_dimension(SMeshOwnerType* owner, std::uint32_t* dimension) = 0;
  /// How many nodes the owner has.
  virtual void get_owner_node_count(SMeshOwnerType* owner, Count* count) = 0;
  /// The owner's nodes; `unused` is 0.
  virtual void get_owner_nodes(SMeshOwnerType* owner, Count* count, int unused, Node* nodes) = 0;
  /// How many elements of the kind the owner has.
  virtual void get_owner_element_count(SMeshOwnerType* owner, ElementType type, Count* count) = 0;
  /// The owner's elements of the kind.
  virtual void get_owner_elements(SMeshOwnerType* owner, ElementType type, Count* count, Elem* elements) = 0;
  /// With both integers 1: the element that belongs to the one node given, or null.
  virtual void get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) = 0;
};

} // namespace Tarn
