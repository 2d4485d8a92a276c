#pragma once

#include "mesh/database/MeshData.h"
#include "mesh/database/tovan_tarn_api.h"

#include <memory>
#include <string>
#include <vector>

namespace Tarn {

/// The reference mesh database, in memory, and its build interface.
///
/// Nodes and elements are added in bulk and get handles that are consecutive within a call: the k-th of a call has the
/// value of the first plus k. Handles stay valid until their entity is deleted and are never used again. Every entity
/// has a local id, positive and unique among nodes and among elements, and at most one primary owner; a node may be
/// listed in node sets besides. At most 2^29 nodes.
///
/// Build operations check what they are given, change nothing when it is wrong, and say so: a null handle, a null
/// pointer or false.
class TOVAN_TARN_API MeshDatabase final : public MeshData {
public:
  /// The dimension of owners that hold elements of any dimension.
  static constexpr std::uint32_t AnyDimension = 0xffffffffu;

  /// An empty database.
  MeshDatabase();
  ~MeshDatabase() override;
  MeshDatabase(const MeshDatabase&) = delete;
  MeshDatabase& operator=(const MeshDatabase&) = delete;

  // ------------------------------------------------------------------------------------------ building

  /// Adds an owner, which belongs to the database until it is deleted. Names need not be unique. `dimension` is 0 to 3
  /// or `AnyDimension`; null for any other.
  SMeshOwnerType* add_owner(const std::string& name, std::uint32_t dimension = AnyDimension);

  /// Makes room for `count` more nodes. Optional: saves copying when nodes come in several calls.
  void reserve_nodes(Count count);
  /// Makes room for `count` more elements of the kind. Optional, as for nodes.
  void reserve_elements(ElementType type, int nodes_per_element, Count count);

  /// Adds `count` nodes from 3 * `count` interleaved coordinates. `ids`: one local id each, positive, unique and
  /// unused; null for running numbers after the largest so far. `owner` may be null. Gives the first handle, or null
  /// when nothing was added: a count of 0, bad ids, a foreign owner, or more than 2^29 nodes.
  Node add_nodes(Count count, const double* xyz, const int* ids = nullptr, SMeshOwnerType* owner = nullptr);

  /// Adds `count` elements of one kind with `nodes_per_element` nodes each, in canonical order; `nodes` holds
  /// `count * nodes_per_element` handles. Kinds take 1 (OneNode), 2 or 3 (Edge), 3, 6 or 7 (Tri), 4, 8 or 9 (Quad), 4
  /// or 10 (Tet), 8, 20 or 27 (Hex), 6, 15 or 18 (Wedge), 5, 13 or 14 (Pyramid) and any number (Superelement). `ids`
  /// and `owner` as for nodes. Gives the first handle, or null when nothing was added.
  Elem add_elements(ElementType type, int nodes_per_element, Count count, const Node* nodes, const int* ids = nullptr,
                    SMeshOwnerType* owner = nullptr);

  /// Gives elements a global id each; ids need not be unique.
  bool set_global_ids(Count count, const Elem* elements, const int* ids);
  /// The same for `count` consecutive handles: those that one `add_elements` gave.
  bool set_global_ids(Elem first, Count count, const int* ids);
  /// Makes `owner` (null: nobody) the primary owner of the nodes.
  bool set_node_owner(Count count, const Node* nodes, SMeshOwnerType* owner);
  /// Makes `owner` (null: nobody) the primary owner of the elements.
  bool set_element_owner(Count count, const Elem* elements, SMeshOwnerType* owner);
  /// Lists nodes under a set, besides their primary owner, and marks them to be drawn in their own right.
  bool add_to_node_set(SMeshOwnerType* set, Count count, const Node* nodes);

  // ------------------------------------------------------------------------------------------ editing

  /// Moves nodes to 3 * `count` interleaved coordinates.
  bool move_nodes(Count count, const Node* nodes, const double* xyz);
  /// Deletes elements; their nodes stay.
  bool delete_elements(Count count, const Elem* elements);
  /// Deletes an owner and the elements that it owns; nodes stay, without an owner.
  bool delete_owner(SMeshOwnerType* owner);

  // ------------------------------------------------------------------------------------------ looking

  /// The living owners in the order in which they were added.
  std::vector<SMeshOwnerType*> owners() const;
  /// The owner's name; "" for a stranger.
  std::string owner_name(SMeshOwnerType* owner) const;
  /// The first living owner of that name, or null.
  SMeshOwnerType* find_owner(const std::string& name) const;
  /// How many nodes there are.
  Count node_count() const;
  /// How many living elements of the kind there are.
  Count element_count(ElementType type) const;
  /// The nodes, in the order added.
  std::vector<Node> nodes() const;
  /// The living elements of the kind, in the order added.
  std::vector<Elem> elements(ElementType type) const;
  /// The node with the local id, or null.
  Node find_node(int id) const;
  /// The element with the local id, or null.
  Elem find_element(int id) const;
  /// The bytes that the mesh occupies: coordinates, connectivity, ids, owners and look-up tables. Room reserved for
  /// growth is not counted.
  Count memory_bytes() const;

  // ------------------------------------------------------------------------------------------ Tarn::MeshData

  void get_element_id(Elem element, int* id) override;
  void get_element_global_id(Elem element, int* id, bool* has_id) override;
  void get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) override;
  void get_element_ids(Count count, const Elem* elements, int* ids) override;
  void get_node_ids(Count count, const Node* nodes, int* ids) override;
  void get_element_type(Elem element, ElementType* type) override;
  void get_element_types(Count count, const Elem* elements, ElementType* types) override;
  void get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) override;
  void get_double_coordinates(Count count, const Node* nodes, double* xyz) override;
  void get_float_coordinates(Count count, const Node* nodes, float* xyz) override;
  void get_node_coordinates(Node node, double* x, double* y, double* z) override;
  void get_node_flags(Count count, const Node* nodes, char* flags) override;
  void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) override;
  int get_element_connectivity(Elem element, Count* count, Node* nodes) override;
  void get_element_node_count(Elem element, Count* count) override;
  int get_nodes_of_elements(Count count, const Elem* elements, int unused, Count* node_count, Node* nodes) override;
  int get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) override;
  int get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) override;
  void get_element_owners(Count count, const Elem* elements, SMeshOwnerType** owners) override;
  void get_node_owners(Count count, const Node* nodes, SMeshOwnerType** owners) override;
  void get_owner_dimension(SMeshOwnerType* owner, std::uint32_t* dimension) override;
  void get_owner_node_count(SMeshOwnerType* owner, Count* count) override;
  void get_owner_nodes(SMeshOwnerType* owner, Count* count, int unused, Node* nodes) override;
  void get_owner_element_count(SMeshOwnerType* owner, ElementType type, Count* count) override;
  void get_owner_elements(SMeshOwnerType* owner, ElementType type, Count* count, Elem* elements) override;
  void get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) override;

private:
  struct Private;
  std::unique_ptr<Private> d;
};

} // namespace Tarn
