#pragma once

#include "mesh/database/MeshData.h"

#include <array>
#include <map>
#include <vector>

namespace tarn_test {

/// A database of another maker: handles of any value, kept in maps. It answers what the clipper and the skinner ask,
/// and nothing else.
class ForeignMeshData : public Tarn::MeshData {
public:
  struct Element {
    Tarn::ElementType type;
    std::vector<Node> nodes;
  };

  std::map<std::uint64_t, Element> elements;
  std::map<std::uint64_t, std::array<double, 3>> nodes;
  bool leaves_nulls_unwritten = false; ///< entries of connectivity that it has no node for are left as they were

  void get_element_id(Elem, int*) override {}
  void get_element_global_id(Elem, int*, bool*) override {}
  void get_global_element_ids(Count, const Elem*, int*, char*) override {}
  void get_element_ids(Count, const Elem*, int*) override {}
  void get_node_ids(Count, const Node*, int*) override {}
  void get_element_type(Elem, Tarn::ElementType*) override {}
  void get_element_types(Count count, const Elem* list, Tarn::ElementType* types) override;
  void get_coordinate_arrays(Count count, const Node* list, double* x, double* y, double* z) override;
  void get_double_coordinates(Count, const Node*, double*) override {}
  void get_float_coordinates(Count, const Node*, float*) override {}
  void get_node_coordinates(Node, double*, double*, double*) override {}
  void get_node_flags(Count, const Node*, char*) override {}
  void get_connectivity(Count count, const Elem* list, Count* length, Node* out) override;
  int get_element_connectivity(Elem, Count*, Node*) override { return 1; }
  void get_element_node_count(Elem, Count*) override {}
  int get_nodes_of_elements(Count, const Elem*, int, Count*, Node*) override { return 1; }
  int get_element_vertices(Elem, Count*, Count, Node*) override { return 1; }
  int get_adjacencies(Elem, int, int, Count*, Elem*) override { return 1; }
  void get_element_owners(Count, const Elem*, Tarn::SMeshOwnerType**) override {}
  void get_node_owners(Count, const Node*, Tarn::SMeshOwnerType**) override {}
  void get_owner_dimension(Tarn::SMeshOwnerType*, std::uint32_t*) override {}
  void get_owner_node_count(Tarn::SMeshOwnerType*, Count*) override {}
  void get_owner_nodes(Tarn::SMeshOwnerType*, Count*, int, Node*) override {}
  void get_owner_element_count(Tarn::SMeshOwnerType*, Tarn::ElementType, Count*) override {}
  void get_owner_elements(Tarn::SMeshOwnerType*, Tarn::ElementType, Count*, Elem*) override {}
  void get_elements_on_nodes(int, int, const Node*, Elem*) override {}
};

} // namespace tarn_test
