#pragma once

#include "mesh/database/MeshData.h"
#include "tests/support/RecordingMeshData.h"

#include <limits>
#include <random>

/// A database that errs at random in what picking asks it: it fails, writes null handles, claims other counts than it
/// wrote (up to `largest_claim`, which may be more than it was given room for), names kinds that do not exist, and
/// loses coordinates. It never writes more than there is room for. The database behind it is borrowed.
class ErraticMeshData : public test_support::RecordingMeshData {
public:
  ErraticMeshData(Tarn::MeshData& database, unsigned seed, Count largest_claim)
      : RecordingMeshData(database), random_(seed), largest_claim_(largest_claim) {}

  void get_element_global_id(Elem element, int* id, bool* has_id) override {
    if (!errs()) RecordingMeshData::get_element_global_id(element, id, has_id);
  }
  void get_element_type(Elem element, Tarn::ElementType* type) override {
    RecordingMeshData::get_element_type(element, type);
    if (errs()) *type = any_type();
  }
  void get_element_types(Count count, const Elem* elements, Tarn::ElementType* types) override {
    RecordingMeshData::get_element_types(count, elements, types);
    for (Count i = 0; i < count; ++i)
      if (errs()) types[i] = any_type();
  }
  void get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) override {
    if (errs()) return;
    RecordingMeshData::get_coordinate_arrays(count, nodes, x, y, z);
    for (Count i = 0; i < count; ++i)
      if (errs()) y[i] = no_coordinate();
  }
  void get_double_coordinates(Count count, const Node* nodes, double* xyz) override {
    if (errs()) return;
    RecordingMeshData::get_double_coordinates(count, nodes, xyz);
    for (Count i = 0; i < 3 * count; ++i)
      if (errs()) xyz[i] = no_coordinate();
  }
  void get_node_coordinates(Node node, double* x, double* y, double* z) override {
    if (errs()) return;
    RecordingMeshData::get_node_coordinates(node, x, y, z);
    if (errs()) *z = no_coordinate();
  }
  int get_element_connectivity(Elem element, Count* count, Node* nodes) override {
    const Count room = *count;
    return spoilt(RecordingMeshData::get_element_connectivity(element, count, nodes), room, count, nodes);
  }
  void get_element_node_count(Elem element, Count* count) override {
    RecordingMeshData::get_element_node_count(element, count);
    if (errs()) *count = random_() % (largest_claim_ + 1);
  }
  int get_nodes_of_elements(Count count, const Elem* elements, int unused, Count* node_count, Node* nodes) override {
    const Count room = *node_count;
    return spoilt(RecordingMeshData::get_nodes_of_elements(count, elements, unused, node_count, nodes), room,
                  node_count, nodes);
  }
  int get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) override {
    return spoilt(RecordingMeshData::get_element_vertices(element, count, capacity, nodes), capacity, count, nodes);
  }
  int get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) override {
    const Count room = *count;
    return spoilt(RecordingMeshData::get_adjacencies(element, dimension, selector, count, adjacent), room, count,
                  adjacent);
  }
  void get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) override {
    if (!errs()) RecordingMeshData::get_elements_on_nodes(count, dimension, nodes, elements);
  }

private:
  bool errs() { return random_() % 4 == 0; }
  Tarn::ElementType any_type() { return static_cast<Tarn::ElementType>(random_() % 13); }
  double no_coordinate() {
    static const double values[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                    -1e308, 1e-320, 0};
    return values[random_() % 5];
  }
  template <class H> int spoilt(int result, Count room, Count* count, H* handles) {
    if (errs() && room > 0) handles[random_() % room] = H{};
    if (errs() && room > 0) handles[random_() % room] = H{random_()};
    if (errs()) *count = random_() % (largest_claim_ + 1);
    return errs() ? 1 : result;
  }

  std::mt19937 random_;
  Count largest_claim_;
};
