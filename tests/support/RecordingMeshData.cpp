#include "tests/support/RecordingMeshData.h"

#include <algorithm>

namespace test_support {
namespace {

template <int Dim> std::vector<std::uint64_t> values(std::uint64_t count, const Tarn::Handle<Dim>* handles) {
  std::vector<std::uint64_t> result;
  result.reserve(count);
  std::transform(handles, handles + count, std::back_inserter(result), [](auto handle) { return handle.value; });
  return result;
}

std::int64_t number(std::uint64_t value) { return static_cast<std::int64_t>(value); }

} // namespace

DatabaseError::DatabaseError() : std::runtime_error("database") {}

RecordingMeshData::RecordingMeshData(Tarn::MeshData& database) : database_(database) {}
RecordingMeshData::~RecordingMeshData() = default;

const std::vector<DatabaseCall>& RecordingMeshData::calls() const { return calls_; }

std::vector<DatabaseCall> RecordingMeshData::calls(const std::string& operation) const {
  std::vector<DatabaseCall> result;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(result),
               [&](const DatabaseCall& call) { return call.operation == operation; });
  return result;
}

std::size_t RecordingMeshData::count(const std::string& operation) const { return calls(operation).size(); }

std::vector<std::string> RecordingMeshData::operations() const {
  std::vector<std::string> result;
  for (const DatabaseCall& call : calls_)
    result.push_back(call.operation);
  return result;
}

void RecordingMeshData::forget_calls() {
  if (throwing_call_ != ~std::size_t(0)) throwing_call_ -= calls_.size();
  calls_.clear();
  call_counts_.clear();
}

void RecordingMeshData::fail(const std::string& operation) { failing_.insert(operation); }
void RecordingMeshData::fail_call(const std::string& operation, std::size_t n) {
  failing_calls_.insert({operation, n});
}
void RecordingMeshData::throw_after(std::size_t n) { throwing_call_ = calls_.size() + n; }
void RecordingMeshData::lose(Tarn::Handle<0> node) { lost_nodes_.insert(node.value); }
void RecordingMeshData::lose(Tarn::Handle<1> element) { lost_elements_.insert(element.value); }
void RecordingMeshData::report_count(const std::string& operation, std::uint64_t count) { counts_[operation] = count; }
void RecordingMeshData::report_type(Tarn::Handle<1> element, std::uint32_t type) { types_[element.value] = type; }

void RecordingMeshData::answer_well() {
  throwing_call_ = ~std::size_t(0);
  failing_.clear();
  failing_calls_.clear();
  lost_nodes_.clear();
  lost_elements_.clear();
  counts_.clear();
  types_.clear();
}

bool RecordingMeshData::begin(DatabaseCall call) {
  const std::size_t n = call_counts_[call.operation]++;
  const bool fails = failing_.count(call.operation) != 0 || failing_calls_.count({call.operation, n}) != 0;
  calls_.push_back(std::move(call));
  if (calls_.size() - 1 == throwing_call_) {
    throwing_call_ = ~std::size_t(0);
    throw DatabaseError();
  }
  return !fails;
}

void RecordingMeshData::falsify_count(const std::string& operation, Count* count) const {
  const auto found = counts_.find(operation);
  if (found != counts_.end()) *count = found->second;
}

void RecordingMeshData::falsify_types(Count count, const Elem* elements, Tarn::ElementType* types) const {
  for (Count i = 0; i < count; ++i) {
    const auto found = types_.find(elements[i].value);
    if (found != types_.end()) types[i] = static_cast<Tarn::ElementType>(found->second);
  }
}

// Lost entities become null handles, which every database answers like strangers.
template <int Dim>
std::vector<Tarn::Handle<Dim>> RecordingMeshData::known(Count count, const Tarn::Handle<Dim>* handles,
                                                        const std::set<std::uint64_t>& lost) const {
  std::vector<Tarn::Handle<Dim>> result(handles, handles + count);
  if (lost.empty()) return result;
  for (Tarn::Handle<Dim>& handle : result)
    if (lost.count(handle.value) != 0) handle = {};
  return result;
}

void RecordingMeshData::get_element_id(Elem element, int* id) {
  if (!begin({__func__, {element.value}, nullptr, {}})) return;
  database_.get_element_id(known(1, &element, lost_elements_)[0], id);
}

void RecordingMeshData::get_element_global_id(Elem element, int* id, bool* has_id) {
  if (!begin({__func__, {element.value}, nullptr, {}})) return;
  database_.get_element_global_id(known(1, &element, lost_elements_)[0], id, has_id);
}

void RecordingMeshData::get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) {
  if (!begin({__func__, values(count, elements), nullptr, {}})) return;
  database_.get_global_element_ids(count, known(count, elements, lost_elements_).data(), ids, has_ids);
}

void RecordingMeshData::get_element_ids(Count count, const Elem* elements, int* ids) {
  if (!begin({__func__, values(count, elements), nullptr, {}})) return;
  database_.get_element_ids(count, known(count, elements, lost_elements_).data(), ids);
}

void RecordingMeshData::get_node_ids(Count count, const Node* nodes, int* ids) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_node_ids(count, known(count, nodes, lost_nodes_).data(), ids);
}

void RecordingMeshData::get_element_type(Elem element, Tarn::ElementType* type) {
  if (!begin({__func__, {element.value}, nullptr, {}})) return;
  database_.get_element_type(known(1, &element, lost_elements_)[0], type);
  falsify_types(1, &element, type);
}

void RecordingMeshData::get_element_types(Count count, const Elem* elements, Tarn::ElementType* types) {
  if (!begin({__func__, values(count, elements), nullptr, {}})) return;
  database_.get_element_types(count, known(count, elements, lost_elements_).data(), types);
  falsify_types(count, elements, types);
}

void RecordingMeshData::get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_coordinate_arrays(count, known(count, nodes, lost_nodes_).data(), x, y, z);
}

void RecordingMeshData::get_double_coordinates(Count count, const Node* nodes, double* xyz) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_double_coordinates(count, known(count, nodes, lost_nodes_).data(), xyz);
}

void RecordingMeshData::get_float_coordinates(Count count, const Node* nodes, float* xyz) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_float_coordinates(count, known(count, nodes, lost_nodes_).data(), xyz);
}

void RecordingMeshData::get_node_coordinates(Node node, double* x, double* y, double* z) {
  if (!begin({__func__, {node.value}, nullptr, {}})) return;
  database_.get_node_coordinates(known(1, &node, lost_nodes_)[0], x, y, z);
}

void RecordingMeshData::get_node_flags(Count count, const Node* nodes, char* flags) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_node_flags(count, known(count, nodes, lost_nodes_).data(), flags);
}

void RecordingMeshData::get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) {
  if (!begin({__func__, values(count, elements), nullptr, {number(*length)}})) return;
  database_.get_connectivity(count, known(count, elements, lost_elements_).data(), length, nodes);
  falsify_count(__func__, length);
}

int RecordingMeshData::get_element_connectivity(Elem element, Count* count, Node* nodes) {
  if (!begin({__func__, {element.value}, nullptr, {number(*count)}})) return 1;
  const int result = database_.get_element_connectivity(known(1, &element, lost_elements_)[0], count, nodes);
  falsify_count(__func__, count);
  return result;
}

void RecordingMeshData::get_element_node_count(Elem element, Count* count) {
  if (!begin({__func__, {element.value}, nullptr, {}})) return;
  database_.get_element_node_count(known(1, &element, lost_elements_)[0], count);
  falsify_count(__func__, count);
}

int RecordingMeshData::get_nodes_of_elements(Count count, const Elem* elements, int unused, Count* node_count,
                                             Node* nodes) {
  if (!begin({__func__, values(count, elements), nullptr, {unused, number(*node_count)}})) return 1;
  const int result =
      database_.get_nodes_of_elements(count, known(count, elements, lost_elements_).data(), unused, node_count, nodes);
  falsify_count(__func__, node_count);
  return result;
}

int RecordingMeshData::get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) {
  if (!begin({__func__, {element.value}, nullptr, {number(capacity)}})) return 1;
  const int result = database_.get_element_vertices(known(1, &element, lost_elements_)[0], count, capacity, nodes);
  falsify_count(__func__, count);
  return result;
}

int RecordingMeshData::get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) {
  if (!begin({__func__, {element.value}, nullptr, {dimension, selector, number(*count)}})) return 1;
  const int result =
      database_.get_adjacencies(known(1, &element, lost_elements_)[0], dimension, selector, count, adjacent);
  falsify_count(__func__, count);
  return result;
}

void RecordingMeshData::get_element_owners(Count count, const Elem* elements, Tarn::SMeshOwnerType** owners) {
  if (!begin({__func__, values(count, elements), nullptr, {}})) return;
  database_.get_element_owners(count, known(count, elements, lost_elements_).data(), owners);
}

void RecordingMeshData::get_node_owners(Count count, const Node* nodes, Tarn::SMeshOwnerType** owners) {
  if (!begin({__func__, values(count, nodes), nullptr, {}})) return;
  database_.get_node_owners(count, known(count, nodes, lost_nodes_).data(), owners);
}

void RecordingMeshData::get_owner_dimension(Tarn::SMeshOwnerType* owner, std::uint32_t* dimension) {
  if (!begin({__func__, {}, owner, {}})) return;
  database_.get_owner_dimension(owner, dimension);
}

void RecordingMeshData::get_owner_node_count(Tarn::SMeshOwnerType* owner, Count* count) {
  if (!begin({__func__, {}, owner, {}})) return;
  database_.get_owner_node_count(owner, count);
  falsify_count(__func__, count);
}

void RecordingMeshData::get_owner_nodes(Tarn::SMeshOwnerType* owner, Count* count, int unused, Node* nodes) {
  if (!begin({__func__, {}, owner, {number(*count), unused}})) return;
  database_.get_owner_nodes(owner, count, unused, nodes);
  falsify_count(__func__, count);
}

void RecordingMeshData::get_owner_element_count(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count) {
  if (!begin({__func__, {}, owner, {type}})) return;
  database_.get_owner_element_count(owner, type, count);
  falsify_count(__func__, count);
}

void RecordingMeshData::get_owner_elements(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count,
                                           Elem* elements) {
  if (!begin({__func__, {}, owner, {type, number(*count)}})) return;
  database_.get_owner_elements(owner, type, count, elements);
  falsify_count(__func__, count);
}

void RecordingMeshData::get_elements_on_nodes(int count, int dimension, const Node* nodes, Elem* elements) {
  if (!begin({__func__, {nodes->value}, nullptr, {count, dimension}})) return;
  database_.get_elements_on_nodes(count, dimension, known(1, nodes, lost_nodes_).data(), elements);
}

} // namespace test_support
