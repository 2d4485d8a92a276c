#pragma once

#include "mesh/database/MeshData.h"

#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace test_support {

/// One call of a database operation.
struct DatabaseCall {
  std::string operation;                 ///< the operation's name, as in `Tarn::MeshData`
  std::vector<std::uint64_t> handles;    ///< the entities asked about, in order
  Tarn::SMeshOwnerType* owner = nullptr; ///< the owner asked about
  std::vector<std::int64_t> numbers;     ///< the plain numbers given: capacities, lengths, selectors, kinds, in order
};

/// What `RecordingMeshData::throw_after` throws.
struct DatabaseError : std::runtime_error {
  DatabaseError();
};

/// Stands before any mesh database, writes down every call, and can make it answer badly. Failures last until
/// `answer_well`. The database behind it is borrowed.
class RecordingMeshData : public Tarn::MeshData {
public:
  explicit RecordingMeshData(Tarn::MeshData& database);
  ~RecordingMeshData() override;

  /// All calls since the start or the last `forget_calls`, in order.
  const std::vector<DatabaseCall>& calls() const;
  /// Those of one operation.
  std::vector<DatabaseCall> calls(const std::string& operation) const;
  /// How many calls of one operation there were.
  std::size_t count(const std::string& operation) const;
  /// The names of the operations called, in order.
  std::vector<std::string> operations() const;
  /// Starts a new record.
  void forget_calls();

  /// The operation fails from now on: it writes nothing, and its int result, if it has one, is 1.
  void fail(const std::string& operation);
  /// Only its n-th call fails, counted from 0 since the last `forget_calls`.
  void fail_call(const std::string& operation, std::size_t n);
  /// The n-th call from now, of whatever operation, throws a `DatabaseError`, once.
  void throw_after(std::size_t n);
  /// The database no longer knows the node.
  void lose(Tarn::Handle<0> node);
  /// The database no longer knows the element.
  void lose(Tarn::Handle<1> element);
  /// The operation reports this count (or length) in place of the true one, whatever it wrote.
  void report_count(const std::string& operation, std::uint64_t count);
  /// The element is of this kind, which may be one that does not exist.
  void report_type(Tarn::Handle<1> element, std::uint32_t type);
  /// Takes all failures back.
  void answer_well();

  void get_element_id(Elem element, int* id) override;
  void get_element_global_id(Elem element, int* id, bool* has_id) override;
  void get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) override;
  void get_element_ids(Count count, const Elem* elements, int* ids) override;
  void get_node_ids(Count count, const Node* nodes, int* ids) override;
  void get_element_type(Elem element, Tarn::ElementType* type) override;
  void get_element_types(Count count, const Elem* elements, Tarn::ElementType* types) override;
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
  void get_element_owners(Count count, const Elem* elements, Tarn::SMeshOwnerType** owners) override;
  void get_node_owners(Count count, const Node* nodes, Tarn::SMeshOwnerType** owners) override;
  void get_owner_dimension(Tarn::SMeshOwnerType* owner, std::uint32_t* dimension) override;
  void get_owner_node_count(Tarn::SMeshOwnerType* owner, Count* count) override;
  void get_owner_nodes(Tarn::SMeshOwnerType* owner, Count* count, int unused, Node* nodes) override;
  void get_owner_element_count(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count) override;
  void get_owner_elements(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count, Elem* elements) override;
  void get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) override;

private:
  /// Writes the call down; false when it shall fail.
  bool begin(DatabaseCall call);
  void falsify_count(const std::string& operation, Count* count) const;
  void falsify_types(Count count, const Elem* elements, Tarn::ElementType* types) const;
  template <int Dim>
  std::vector<Tarn::Handle<Dim>> known(Count count, const Tarn::Handle<Dim>* handles,
                                       const std::set<std::uint64_t>& lost) const;

  Tarn::MeshData& database_;
  std::vector<DatabaseCall> calls_;
  std::map<std::string, std::size_t> call_counts_;
  std::size_t throwing_call_ = ~std::size_t(0); // place in calls_
  std::set<std::string> failing_;
  std::set<std::pair<std::string, std::size_t>> failing_calls_;
  std::set<std::uint64_t> lost_nodes_;
  std::set<std::uint64_t> lost_elements_;
  std::map<std::string, std::uint64_t> counts_;
  std::map<std::uint64_t, std::uint32_t> types_;
};

} // namespace test_support
