#pragma once

#include "SolverMesh.h"

#include <orbel_mesh/mesh/MeshVector.h>
#include <orbel_mesh/mesh/database/MeshData.h>

/// Shows a `SolverMesh` to the library, in place: nothing is copied, each answer is read from the solver's arrays.
///
/// A handle is a number of the solver plus one, since 0 means no entity. An owner is the address of a part's name: the
/// library compares owners and hands them back, and never looks behind them.
///
/// All operations take handles that this database gave out and ignore others. What this host does not have (mid-side
/// nodes, edges of their own, elements on single nodes) it does not answer, which the library takes for "none".
class SolverDatabase final : public Tarn::MeshData {
public:
  /// `mesh` is borrowed. While the database is in use its numbers of nodes, elements and parts stay as they are; nodes
  /// may move.
  explicit SolverDatabase(const SolverMesh& mesh);

  /// The owner that stands for a part.
  Tarn::SMeshOwnerType* owner(std::size_t part) const;

  // Ids: what labels show. This host counts from 1 and has no global ids.
  void get_element_id(Elem element, int* id) override;
  void get_element_ids(Count count, const Elem* elements, int* ids) override;
  void get_node_ids(Count count, const Node* nodes, int* ids) override;
  void get_element_global_id(Elem element, int* id, bool* has_id) override;
  void get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) override;

  // Kinds
  void get_element_type(Elem element, Tarn::ElementType* type) override;
  void get_element_types(Count count, const Elem* elements, Tarn::ElementType* types) override;

  // Coordinates
  void get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) override;
  void get_double_coordinates(Count count, const Node* nodes, double* xyz) override;
  void get_float_coordinates(Count count, const Node* nodes, float* xyz) override;
  void get_node_coordinates(Node node, double* x, double* y, double* z) override;
  void get_node_flags(Count count, const Node* nodes, char* flags) override;

  // Connectivity
  void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) override;
  int get_element_connectivity(Elem element, Count* count, Node* nodes) override;
  void get_element_node_count(Elem element, Count* count) override;
  int get_nodes_of_elements(Count count, const Elem* elements, int unused, Count* node_count, Node* nodes) override;
  int get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) override;
  int get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) override;
  void get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) override;

  // Owners
  void get_element_owners(Count count, const Elem* elements, Tarn::SMeshOwnerType** owners) override;
  void get_node_owners(Count count, const Node* nodes, Tarn::SMeshOwnerType** owners) override;
  void get_owner_dimension(Tarn::SMeshOwnerType* owner, std::uint32_t* dimension) override;
  void get_owner_node_count(Tarn::SMeshOwnerType* owner, Count* count) override;
  void get_owner_nodes(Tarn::SMeshOwnerType* owner, Count* count, int unused, Node* nodes) override;
  void get_owner_element_count(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count) override;
  void get_owner_elements(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count, Elem* elements) override;

private:
  bool knows(Node node) const { return node.value - 1 < mesh_.node_count(); }
  bool knows(Elem element) const { return element.value - 1 < mesh_.element_count(); }
  const double* position(Node node) const { return &mesh_.coordinates[3 * (node.value - 1)]; }
  Count size(Elem element) const;
  Count write_nodes(Elem element, Count capacity, Node* nodes) const;
  std::vector<Elem>* elements_of(Tarn::SMeshOwnerType* owner, Tarn::ElementType type);

  const SolverMesh& mesh_;
  std::vector<MeshVector> parts_; // by part: its elements
};
