#include "reference/tarn/MeshDatabasePrivate.h"

#include "reference/tarn/ElementShape.h"
#include "reference/tarn/LivingDatabases.h"

#include <algorithm>
#include <limits>

namespace Tarn {

MeshDatabase::Private::Private() { LivingDatabases::enter(&superelements); }

MeshDatabase::Private::~Private() { LivingDatabases::leave(&superelements); }

bool MeshDatabase::Private::are_nodes(Count count, const Node* list) const {
  return (list || count == 0) && std::all_of(list, list + count, [this](Node node) { return is_node(node); });
}

bool MeshDatabase::Private::are_elements(Count count, const Elem* list) const {
  return (list || count == 0) &&
         std::all_of(list, list + count, [this](Elem element) { return table_of(element) != nullptr; });
}

MeshData::Count MeshDatabase::Private::implicit_edge_nodes(Elem edge, Index* list) const {
  if (!is_implicit_edge(edge)) return 0;
  list[0] = smaller_corner(edge);
  list[1] = larger_corner(edge);
  list[2] = edges.middle(edge);
  return list[2] == no_index ? 2 : 3;
}

ElementTable::Nodes MeshDatabase::Private::nodes_of(Elem element, Index* edge) const {
  if (const ElementTable* const table = table_of(element)) return table->nodes(index_of(element.value));
  return {edge, implicit_edge_nodes(element, edge)};
}

MeshData::Elem MeshDatabase::Private::find_element(int id) const {
  for (std::uint32_t type = OneNode; type <= Superelement; ++type) {
    const ElementTable& table = elements[type];
    const Index found = table.id_index.find(id, table.ids, table.dead);
    if (found != no_index) return element_handle(static_cast<ElementType>(type), found);
  }
  return edges.find(id);
}

bool MeshDatabase::Private::can_take_node_ids(Count count, const int* ids) const {
  if (!ids) return count <= static_cast<Count>(std::numeric_limits<int>::max() - largest_node_id);
  if (!are_positive_and_unique(count, ids)) return false;
  return std::none_of(ids, ids + count, [this](int id) {
    return id <= largest_node_id && nodes.id_index.find(id, nodes.ids, nodes.dead) != no_index;
  });
}

bool MeshDatabase::Private::can_take_element_ids(Count count, const int* ids) const {
  if (!ids) return count <= static_cast<Count>(std::numeric_limits<int>::max() - largest_element_id);
  if (!are_positive_and_unique(count, ids)) return false;
  return std::none_of(ids, ids + count,
                      [this](int id) { return id <= largest_element_id && find_element(id).value != 0; });
}

int MeshDatabase::Private::implicit_edge_id(Elem edge) {
  if (const int known = edges.id(edge)) return known;
  constexpr int last = std::numeric_limits<int>::max();
  int id = largest_element_id;
  if (id < last) {
    largest_element_id = ++id;
  } else {
    for (id = 1; id < last && find_element(id).value != 0; ++id)
      continue;
    if (id == last) return 0;
  }
  edges.set_id(edge, id);
  return id;
}

void MeshDatabase::Private::set_node_owner(Index node, SMeshOwnerType* owner) {
  Index& current = nodes.owners[node];
  const Index target = owner ? owner->index : no_index;
  if (current == target) return;
  if (current != no_index) owners[current]->nodes.mark_removals();
  if (owner) owner->nodes.add(node, 1);
  current = target;
}

void MeshDatabase::Private::set_element_owner(Elem element, SMeshOwnerType* owner) {
  const std::uint64_t type = kind_of(element.value);
  const auto index = static_cast<Index>(index_of(element.value));
  Index& current = elements[type].owners[index];
  const Index target = owner ? owner->index : no_index;
  if (current == target) return;
  if (current != no_index) owners[current]->elements[type].mark_removals();
  if (owner) owner->elements[type].add(index, 1);
  current = target;
}

void MeshDatabase::Private::delete_element(Elem element) {
  set_element_owner(element, nullptr);
  const std::uint64_t type = kind_of(element.value);
  const std::uint64_t index = index_of(element.value);
  ElementTable& table = elements[type];
  const ElementTable::Nodes used = table.nodes(index);
  for (std::uint64_t i = 0; i < used.count; ++i)
    nodes.unuse(used.data[i]);
  table.dead.set(index);
  ++table.dead_count;
  if (type == Edge) edges.forget_stored();
  if (type == OneNode) element_on_node.clear();
  if (type == Superelement) superelements.remove(static_cast<int>(used.count));
}

void MeshDatabase::Private::relist_set_nodes() {
  nodes.listed.reset();
  for (const auto& owner : owners)
    owner->listed.for_each([this](Index node) { nodes.listed.set(node); });
}

const IndexRuns& MeshDatabase::Private::tidy_nodes(SMeshOwnerType* owner) {
  owner->nodes.tidy([&](Index node) { return nodes.owners[node] == owner->index; });
  return owner->nodes;
}

IndexRuns MeshDatabase::Private::owner_nodes(SMeshOwnerType* owner) {
  IndexRuns all = tidy_nodes(owner);
  for (const IndexRuns::Run& run : owner->listed.runs())
    all.add(run.first, run.count);
  all.tidy([](Index) { return true; });
  return all;
}

const IndexRuns& MeshDatabase::Private::owner_elements(SMeshOwnerType* owner, ElementType type) {
  const PodArray<Index>& owner_of = elements[type].owners;
  owner->elements[type].tidy([&](Index index) { return owner_of[index] == owner->index; });
  return owner->elements[type];
}

MeshData::Count MeshDatabase::Private::write_edges(Elem element, Count capacity, Elem* out) {
  const auto type = static_cast<ElementType>(kind_of(element.value));
  const ElementShape& shape = element_shape(type);
  const ElementTable::Nodes all = elements[type].nodes(index_of(element.value));
  const bool has_middles = all.count >= Count(shape.corner_count) + shape.edge_count;
  Count written = 0;
  for (int edge = 0; edge < shape.edge_count && written < capacity; ++edge) {
    const Index a = all.data[shape.edges[edge][0]];
    const Index b = all.data[shape.edges[edge][1]];
    if (a == b) continue;
    const Elem found = edges.edge_between(a, b, elements[Edge]);
    if (std::find(out, out + written, found) != out + written) continue;
    if (has_middles && is_implicit_edge(found)) edges.set_middle(found, all.data[shape.corner_count + edge]);
    out[written++] = found;
  }
  return written;
}

void MeshDatabase::Private::gather_elements_on_nodes() {
  const ElementTable& table = elements[OneNode];
  if (!element_on_node.empty() || table.living() == 0) return;
  element_on_node.assign(nodes.size(), no_index);
  for (Index index = static_cast<Index>(table.size()); index-- > 0;)
    if (table.is_alive(index)) element_on_node[table.nodes(index).data[0]] = index;
}

} // namespace Tarn
