// The operations of Tarn::MeshData.

#include "reference/tarn/ElementShape.h"
#include "reference/tarn/MeshDatabase.h"
#include "reference/tarn/MeshDatabasePrivate.h"

#include <algorithm>

namespace Tarn {

namespace {

constexpr int success = 0;
constexpr int failure = 1;

void write_coordinates(const double* xyz, double* x, double* y, double* z) {
  *x = xyz[0];
  *y = xyz[1];
  *z = xyz[2];
}

/// Writes the handles of nodes, null ones after the element's last.
void write_strided(ElementTable::Nodes nodes, MeshData::Count stride, Handle<0>* out) {
  const MeshData::Count given = std::min(nodes.count, stride);
  for (MeshData::Count i = 0; i < given; ++i)
    out[i] = node_handle(nodes.data[i]);
  for (MeshData::Count i = given; i < stride; ++i)
    out[i] = Handle<0>();
}

/// The number of elements at the beginning of the list that follow one another in their table.
MeshData::Count run_length(MeshData::Count count, const Handle<1>* elements) {
  constexpr MeshData::Count block = 8; // compared without a branch each
  const std::uint64_t first = elements[0].value;
  MeshData::Count length = 0;
  for (std::uint64_t differ = 0; length + block <= count; length += block) {
    for (MeshData::Count i = length; i < length + block; ++i)
      differ |= elements[i].value ^ (first + i);
    if (differ != 0) break;
  }
  while (length < count && elements[length].value == first + length)
    ++length;
  return length;
}

/// Has the processor fetch what will be read soon.
void fetch_ahead(const Index* entry) {
#if defined(__GNUC__)
  __builtin_prefetch(entry);
#else
  static_cast<void>(entry);
#endif
}

/// Writes `stride` nodes of each of the living elements that begin with `first`; all have `own` nodes, and `left` of
/// them, those included, follow one another. Long lists are asked for a piece after the other: while the caller works
/// on this piece, the next is fetched.
void write_rows(const Index* first, MeshData::Count count, MeshData::Count left, MeshData::Count own,
                MeshData::Count stride, Handle<0>* out) {
  const MeshData::Count total = count * own;
  const MeshData::Count ahead = std::min(total, left * own - total);
  if (own == stride) {
    constexpr MeshData::Count line = 64 / sizeof(Index);
    MeshData::Count done = 0;
    for (; done + line <= total; done += line) {
      if (done < ahead) fetch_ahead(first + total + done);
      for (MeshData::Count i = done; i < done + line; ++i)
        out[i] = node_handle(first[i]);
    }
    for (; done < total; ++done)
      out[done] = node_handle(first[done]);
    return;
  }
  for (MeshData::Count done = 0; done < total; done += own, out += stride) {
    if (done < ahead) fetch_ahead(first + total + done);
    write_strided({first + done, own}, stride, out);
  }
}

/// Writes up to `*count` handles of the set and tells how many.
template <class Entity, class MakeHandle>
void write_runs(const IndexRuns& set, MeshData::Count* count, Entity* out, MakeHandle make_handle) {
  MeshData::Count written = 0;
  for (const IndexRuns::Run& run : set.runs()) {
    const MeshData::Count taken = std::min<MeshData::Count>(run.count, *count - written);
    for (Index i = 0; i < taken; ++i)
      out[written + i] = make_handle(run.first + i);
    written += taken;
  }
  *count = written;
}

} // namespace

void MeshDatabase::get_element_id(Elem element, int* id) { get_element_ids(1, &element, id); }

void MeshDatabase::get_element_global_id(Elem element, int* id, bool* has_id) {
  if (!d->table_of(element) && !d->is_implicit_edge(element)) return;
  char flag = 0;
  get_global_element_ids(1, &element, id, &flag);
  *has_id = flag != 0;
}

void MeshDatabase::get_global_element_ids(Count count, const Elem* elements, int* ids, char* has_ids) {
  for (Count i = 0; i < count; ++i) {
    if (const ElementTable* const table = d->table_of(elements[i])) {
      const std::uint64_t index = index_of(elements[i].value);
      has_ids[i] = table->has_global_id.test(index) ? 1 : 0;
      if (has_ids[i]) ids[i] = table->global_ids[index];
    } else if (d->is_implicit_edge(elements[i])) {
      has_ids[i] = 0;
    }
  }
}

void MeshDatabase::get_element_ids(Count count, const Elem* elements, int* ids) {
  for (Count i = 0; i < count; ++i) {
    if (const ElementTable* const table = d->table_of(elements[i])) {
      ids[i] = table->ids[index_of(elements[i].value)];
    } else if (d->is_implicit_edge(elements[i])) {
      if (const int id = d->implicit_edge_id(elements[i])) ids[i] = id;
    }
  }
}

void MeshDatabase::get_node_ids(Count count, const Node* nodes, int* ids) {
  for (Count i = 0; i < count; ++i)
    if (d->is_node(nodes[i])) ids[i] = d->nodes.ids[index_of(nodes[i].value)];
}

void MeshDatabase::get_element_type(Elem element, ElementType* type) { get_element_types(1, &element, type); }

void MeshDatabase::get_element_types(Count count, const Elem* elements, ElementType* types) {
  for (Count i = 0; i < count; ++i) {
    const Elem element = elements[i];
    if (d->table_of(element)) {
      types[i] = static_cast<ElementType>(kind_of(element.value));
    } else {
      types[i] = d->is_implicit_edge(element) ? Edge : None;
    }
  }
}

void MeshDatabase::get_coordinate_arrays(Count count, const Node* nodes, double* x, double* y, double* z) {
  const double* const xyz = d->nodes.xyz.data();
  for (Count i = 0; i < count; ++i)
    if (d->is_node(nodes[i])) write_coordinates(xyz + 3 * index_of(nodes[i].value), x + i, y + i, z + i);
}

void MeshDatabase::get_double_coordinates(Count count, const Node* nodes, double* xyz) {
  const double* const all = d->nodes.xyz.data();
  for (Count i = 0; i < count; ++i)
    if (d->is_node(nodes[i])) std::copy_n(all + 3 * index_of(nodes[i].value), 3, xyz + 3 * i);
}

void MeshDatabase::get_float_coordinates(Count count, const Node* nodes, float* xyz) {
  const double* const all = d->nodes.xyz.data();
  for (Count i = 0; i < count; ++i) {
    if (!d->is_node(nodes[i])) continue;
    const double* const from = all + 3 * index_of(nodes[i].value);
    for (int axis = 0; axis < 3; ++axis)
      xyz[3 * i + axis] = static_cast<float>(from[axis]);
  }
}

void MeshDatabase::get_node_coordinates(Node node, double* x, double* y, double* z) {
  get_coordinate_arrays(1, &node, x, y, z);
}

void MeshDatabase::get_node_flags(Count count, const Node* nodes, char* flags) {
  for (Count i = 0; i < count; ++i)
    if (d->is_node(nodes[i])) flags[i] = d->nodes.is_flagged(index_of(nodes[i].value)) ? 1 : 0;
}

void MeshDatabase::get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) {
  const Count stride = count == 0 ? 0 : *length / count;
  *length = count * stride;
  for (Count i = 0; i < count;) {
    const ElementTable* const table = d->table_of(elements[i]);
    if (table && table->stride() != 0 && table->dead_count == 0) {
      // Elements lie as they were added: whole runs are written at once.
      const std::uint64_t first = index_of(elements[i].value);
      const Count left = table->size() - first;
      const Count taken = run_length(std::min(count - i, left), elements + i);
      write_rows(table->nodes(first).data, taken, left, table->stride(), stride, nodes + i * stride);
      i += taken;
    } else {
      Index edge[3];
      write_strided(d->nodes_of(elements[i], edge), stride, nodes + i * stride);
      ++i;
    }
  }
}

int MeshDatabase::get_element_connectivity(Elem element, Count* count, Node* nodes) {
  return get_nodes_of_elements(1, &element, 0, count, nodes);
}

void MeshDatabase::get_element_node_count(Elem element, Count* count) {
  Index edge[3];
  *count = d->nodes_of(element, edge).count;
}

int MeshDatabase::get_nodes_of_elements(Count count, const Elem* elements, int, Count* node_count, Node* nodes) {
  Count written = 0;
  bool any_known = count == 0;
  for (Count i = 0; i < count; ++i) {
    Index edge[3];
    const ElementTable::Nodes list = d->nodes_of(elements[i], edge);
    const Count taken = std::min(list.count, *node_count - written);
    write_strided(list, taken, nodes + written);
    written += taken;
    any_known = any_known || list.count != 0;
  }
  *node_count = written;
  return any_known ? success : failure;
}

int MeshDatabase::get_element_vertices(Elem element, Count* count, Count capacity, Node* nodes) {
  Index edge[3];
  ElementTable::Nodes list = d->nodes_of(element, edge);
  *count = 0;
  if (list.count == 0) return failure;
  const std::uint64_t kind = kind_of(element.value);
  if (kind != Superelement)
    list.count = element_shape(kind == implicit_edge_kind ? Edge : static_cast<ElementType>(kind)).corner_count;
  *count = std::min(list.count, capacity);
  write_strided(list, *count, nodes);
  return success;
}

int MeshDatabase::get_adjacencies(Elem element, int dimension, int selector, Count* count, Elem* adjacent) {
  const Count capacity = *count;
  *count = 0;
  const bool implicit = d->is_implicit_edge(element);
  if (dimension != 1 || selector != 2 || (!d->table_of(element) && !implicit)) return failure;
  if (!implicit) *count = d->write_edges(element, capacity, adjacent);
  return success;
}

void MeshDatabase::get_element_owners(Count count, const Elem* elements, SMeshOwnerType** owners) {
  for (Count i = 0; i < count; ++i) {
    if (const ElementTable* const table = d->table_of(elements[i])) {
      owners[i] = d->owner_at(table->owners[index_of(elements[i].value)]);
    } else if (d->is_implicit_edge(elements[i])) {
      owners[i] = nullptr;
    }
  }
}

void MeshDatabase::get_node_owners(Count count, const Node* nodes, SMeshOwnerType** owners) {
  for (Count i = 0; i < count; ++i)
    if (d->is_node(nodes[i])) owners[i] = d->owner_at(d->nodes.owners[index_of(nodes[i].value)]);
}

void MeshDatabase::get_owner_dimension(SMeshOwnerType* owner, std::uint32_t* dimension) {
  if (d->is_owner(owner)) *dimension = owner->dimension;
}

void MeshDatabase::get_owner_node_count(SMeshOwnerType* owner, Count* count) {
  *count = d->is_owner(owner) ? d->owner_nodes(owner).size() : 0;
}

void MeshDatabase::get_owner_nodes(SMeshOwnerType* owner, Count* count, int, Node* nodes) {
  const IndexRuns all = d->is_owner(owner) ? d->owner_nodes(owner) : IndexRuns();
  write_runs(all, count, nodes, node_handle);
}

void MeshDatabase::get_owner_element_count(SMeshOwnerType* owner, ElementType type, Count* count) {
  *count = d->is_owner(owner) && type <= Superelement ? d->owner_elements(owner, type).size() : 0;
}

void MeshDatabase::get_owner_elements(SMeshOwnerType* owner, ElementType type, Count* count, Elem* elements) {
  if (!d->is_owner(owner) || type > Superelement) {
    *count = 0;
    return;
  }
  write_runs(d->owner_elements(owner, type), count, elements,
             [type](Index index) { return element_handle(type, index); });
}

void MeshDatabase::get_elements_on_nodes(int count, int, const Node* nodes, Elem* elements) {
  d->gather_elements_on_nodes();
  for (int i = 0; i < count; ++i) {
    const bool known = d->is_node(nodes[i]) && !d->element_on_node.empty();
    const Index found = known ? d->element_on_node[index_of(nodes[i].value)] : no_index;
    elements[i] = found == no_index ? Elem() : element_handle(OneNode, found);
  }
}

} // namespace Tarn
