#include "SolverDatabase.h"

#include <algorithm>

SolverDatabase::SolverDatabase(const SolverMesh& mesh) : mesh_(mesh), parts_(mesh.part_names.size()) {
  for (std::size_t e = 0; e < mesh.element_count(); ++e)
    parts_[mesh.part[e]].elements[mesh.kinds[e]].push_back(Elem{e + 1});
}

Tarn::SMeshOwnerType* SolverDatabase::owner(std::size_t part) const {
  return reinterpret_cast<Tarn::SMeshOwnerType*>(const_cast<std::string*>(&mesh_.part_names[part]));
}

void SolverDatabase::get_element_id(Elem element, int* id) { get_element_ids(1, &element, id); }

void SolverDatabase::get_element_ids(Count count, const Elem* elements, int* ids) {
  for (Count i = 0; i < count; ++i)
    if (knows(elements[i])) ids[i] = static_cast<int>(elements[i].value);
}

void SolverDatabase::get_node_ids(Count count, const Node* nodes, int* ids) {
  for (Count i = 0; i < count; ++i)
    if (knows(nodes[i])) ids[i] = static_cast<int>(nodes[i].value);
}

void SolverDatabase::get_element_global_id(Elem, int*, bool* has_id) { *has_id = false; }

void SolverDatabase::get_global_element_ids(Count count, const Elem*, int*, char* has_ids) {
  std::fill_n(has_ids, count, 0);
}

void SolverDatabase::get_element_type(Elem element, Tarn::ElementType* type) { get_element_types(1, &element, type); }

void SolverDatabase::get_element_types(Count count, const Elem* elements, Tarn::ElementType* types) {
  for (Count i = 0; i < count; ++i)
    types[i] = knows(elements[i]) ? mesh_.kinds[elements[i].value - 1] : Tarn::None;
}

void SolverDatabase::get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) {
  for (Count i = 0; i < count; ++i)
    get_node_coordinates(nodes[i], x + i, y + i, z + i);
}

void SolverDatabase::get_double_coordinates(Count count, const Node* nodes, double* xyz) {
  for (Count i = 0; i < count; ++i)
    if (knows(nodes[i])) std::copy_n(position(nodes[i]), 3, xyz + 3 * i);
}

void SolverDatabase::get_float_coordinates(Count count, const Node* nodes, float* xyz) {
  for (Count i = 0; i < count; ++i)
    if (knows(nodes[i])) std::copy_n(position(nodes[i]), 3, xyz + 3 * i);
}

void SolverDatabase::get_node_coordinates(Node node, double* x, double* y, double* z) {
  if (!knows(node)) return;
  *x = position(node)[0];
  *y = position(node)[1];
  *z = position(node)[2];
}

// No node here is drawn in its own right: all belong to elements.
void SolverDatabase::get_node_flags(Count count, const Node*, char* flags) { std::fill_n(flags, count, 0); }

void SolverDatabase::get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) {
  const Count stride = count == 0 ? 0 : *length / count;
  for (Count i = 0; i < count; ++i) {
    const Count written = write_nodes(elements[i], stride, nodes + i * stride);
    std::fill(nodes + i * stride + written, nodes + (i + 1) * stride, Node{});
  }
  *length = count * stride;
}

int SolverDatabase::get_element_connectivity(Elem element, Count* count, Node* nodes) {
  *count = write_nodes(element, *count, nodes);
  return knows(element) ? 0 : 1;
}

void SolverDatabase::get_element_node_count(Elem element, Count* count) { *count = size(element); }

int SolverDatabase::get_nodes_of_elements(Count count, const Elem* elements, int, Count* node_count, Node* nodes) {
  const Count capacity = *node_count;
  *node_count = 0;
  for (Count i = 0; i < count; ++i)
    *node_count += write_nodes(elements[i], capacity - *node_count, nodes + *node_count);
  return 0;
}

int SolverDatabase::get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) {
  *count = capacity;
  return get_element_connectivity(element, count, nodes);
}

int SolverDatabase::get_adjacencies(Elem, int, int, Count* count, Elem*) {
  *count = 0;
  return 1;
}

void SolverDatabase::get_elements_on_nodes(int count, int, const Node*, Elem* elements) {
  std::fill_n(elements, count, Elem{});
}

void SolverDatabase::get_element_owners(Count count, const Elem* elements, Tarn::SMeshOwnerType** owners) {
  for (Count i = 0; i < count; ++i)
    owners[i] = knows(elements[i]) ? owner(mesh_.part[elements[i].value - 1]) : nullptr;
}

void SolverDatabase::get_node_owners(Count count, const Node*, Tarn::SMeshOwnerType** owners) {
  std::fill_n(owners, count, nullptr);
}

// Any dimension: a part's elements of every kind are drawn.
void SolverDatabase::get_owner_dimension(Tarn::SMeshOwnerType*, std::uint32_t* dimension) { *dimension = 0xffffffffu; }

void SolverDatabase::get_owner_node_count(Tarn::SMeshOwnerType*, Count* count) { *count = 0; }

void SolverDatabase::get_owner_nodes(Tarn::SMeshOwnerType*, Count* count, int, Node*) { *count = 0; }

void SolverDatabase::get_owner_element_count(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count) {
  const std::vector<Elem>* elements = elements_of(owner, type);
  *count = elements ? elements->size() : 0;
}

void SolverDatabase::get_owner_elements(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count,
                                        Elem* elements) {
  const std::vector<Elem>* own = elements_of(owner, type);
  *count = own ? std::min<Count>(*count, own->size()) : 0;
  if (own) std::copy_n(own->begin(), *count, elements);
}

Tarn::MeshData::Count SolverDatabase::size(Elem element) const {
  return knows(element) ? mesh_.first_corner[element.value] - mesh_.first_corner[element.value - 1] : 0;
}

// Writes the element's nodes, as many as fit, and gives their number.
Tarn::MeshData::Count SolverDatabase::write_nodes(Elem element, Count capacity, Node* nodes) const {
  const Count count = std::min(size(element), capacity);
  for (Count i = 0; i < count; ++i)
    nodes[i] = Node{mesh_.corners[mesh_.first_corner[element.value - 1] + i] + 1};
  return count;
}

std::vector<Tarn::MeshData::Elem>* SolverDatabase::elements_of(Tarn::SMeshOwnerType* owner, Tarn::ElementType type) {
  for (std::size_t part = 0; part < parts_.size(); ++part)
    if (this->owner(part) == owner && type < parts_[part].elements.size()) return &parts_[part].elements[type];
  return nullptr;
}
