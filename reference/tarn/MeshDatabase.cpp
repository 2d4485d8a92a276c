#include "reference/tarn/MeshDatabase.h"

#include "reference/tarn/ElementShape.h"
#include "reference/tarn/MeshDatabasePrivate.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace Tarn {

namespace {

constexpr MeshData::Count most_ids = std::numeric_limits<int>::max();

void append_ids(PodArray<int>& all, MeshData::Count count, const int* ids, int& largest) {
  int* const out = all.append(count);
  if (ids) {
    std::copy_n(ids, count, out);
    largest = std::max(largest, *std::max_element(ids, ids + count));
  } else {
    std::iota(out, out + count, largest + 1);
    largest += static_cast<int>(count);
  }
}

void append_owner(PodArray<Index>& owner_of, MeshData::Count count, const SMeshOwnerType* owner) {
  owner_of.append(count, owner ? owner->index : no_index);
}

} // namespace

MeshDatabase::MeshDatabase() : d(new Private) {}

MeshDatabase::~MeshDatabase() = default;

SMeshOwnerType* MeshDatabase::add_owner(const std::string& name, std::uint32_t dimension) {
  if (dimension > 3 && dimension != AnyDimension) return nullptr;
  auto owner = std::make_unique<SMeshOwnerType>();
  owner->name = name;
  owner->dimension = dimension;
  owner->index = static_cast<Index>(d->owners.size());
  d->living_owners.insert(owner.get());
  d->owners.push_back(std::move(owner));
  return d->owners.back().get();
}

void MeshDatabase::reserve_nodes(Count count) { d->nodes.reserve(std::min(count, node_limit)); }

void MeshDatabase::reserve_elements(ElementType type, int nodes_per_element, Count count) {
  if (is_node_count(type, nodes_per_element))
    d->elements[type].reserve(std::min(count, most_ids), static_cast<std::uint64_t>(nodes_per_element));
}

MeshData::Node MeshDatabase::add_nodes(Count count, const double* xyz, const int* ids, SMeshOwnerType* owner) {
  const Count first = d->nodes.size();
  if (count == 0 || !xyz || count > node_limit - first || !d->is_owner_or_null(owner) ||
      !d->can_take_node_ids(count, ids))
    return {};
  d->nodes.reserve(count);
  d->nodes.append(count, xyz);
  append_ids(d->nodes.ids, count, ids, d->largest_node_id);
  append_owner(d->nodes.owners, count, owner);
  const auto index = static_cast<Index>(first);
  d->nodes.id_index.append(d->nodes.ids, index, d->nodes.dead);
  if (owner) owner->nodes.add(index, static_cast<Index>(count));
  d->element_on_node.clear();
  return node_handle(index);
}

MeshData::Elem MeshDatabase::add_elements(ElementType type, int nodes_per_element, Count count, const Node* nodes,
                                          const int* ids, SMeshOwnerType* owner) {
  if (count == 0 || count > most_ids || !is_node_count(type, nodes_per_element)) return {};
  const auto stride = static_cast<Count>(nodes_per_element);
  if (!d->is_owner_or_null(owner) || !d->are_nodes(count * stride, nodes) || !d->can_take_element_ids(count, ids))
    return {};
  ElementTable& table = d->elements[type];
  const auto index = static_cast<Index>(table.size());
  table.reserve(count, stride);
  table.append_connectivity(count, stride, nodes);
  append_ids(table.ids, count, ids, d->largest_element_id);
  append_owner(table.owners, count, owner);
  table.id_index.append(table.ids, index, table.dead);
  if (owner) owner->elements[type].add(index, static_cast<Index>(count));
  for (Count i = 0; i < count * stride; ++i)
    d->nodes.use(static_cast<Index>(index_of(nodes[i].value)));
  if (type == Edge) d->edges.forget_stored();
  if (type == OneNode) d->element_on_node.clear();
  if (type == Superelement) d->superelements.add(nodes_per_element, count);
  return element_handle(type, index);
}

bool MeshDatabase::set_global_ids(Count count, const Elem* elements, const int* ids) {
  if (!d->are_elements(count, elements) || (count != 0 && !ids)) return false;
  for (Count i = 0; i < count; ++i)
    d->table_of(elements[i])->set_global_id(index_of(elements[i].value), ids[i]);
  return true;
}

bool MeshDatabase::set_global_ids(Elem first, Count count, const int* ids) {
  if (count == 0) return true;
  ElementTable* const table = d->table_of(first);
  const std::uint64_t index = index_of(first.value);
  if (!ids || !table || count > table->size() - index) return false;
  for (Count i = 0; i < count; ++i)
    if (!table->is_alive(index + i)) return false;
  for (Count i = 0; i < count; ++i)
    table->set_global_id(index + i, ids[i]);
  return true;
}

bool MeshDatabase::set_node_owner(Count count, const Node* nodes, SMeshOwnerType* owner) {
  if (!d->are_nodes(count, nodes) || !d->is_owner_or_null(owner)) return false;
  for (Count i = 0; i < count; ++i)
    d->set_node_owner(static_cast<Index>(index_of(nodes[i].value)), owner);
  return true;
}

bool MeshDatabase::set_element_owner(Count count, const Elem* elements, SMeshOwnerType* owner) {
  if (!d->are_elements(count, elements) || !d->is_owner_or_null(owner)) return false;
  for (Count i = 0; i < count; ++i)
    d->set_element_owner(elements[i], owner);
  return true;
}

bool MeshDatabase::add_to_node_set(SMeshOwnerType* set, Count count, const Node* nodes) {
  if (!d->is_owner(set) || !d->are_nodes(count, nodes)) return false;
  for (Count i = 0; i < count; ++i) {
    const auto index = static_cast<Index>(index_of(nodes[i].value));
    set->listed.add(index, 1);
    d->nodes.listed.set(index);
  }
  set->listed.tidy([](Index) { return true; });
  return true;
}

bool MeshDatabase::move_nodes(Count count, const Node* nodes, const double* xyz) {
  if (!d->are_nodes(count, nodes) || (count != 0 && !xyz)) return false;
  for (Count i = 0; i < count; ++i)
    std::copy_n(xyz + 3 * i, 3, d->nodes.xyz.data() + 3 * index_of(nodes[i].value));
  return true;
}

bool MeshDatabase::delete_elements(Count count, const Elem* elements) {
  if (!d->are_elements(count, elements)) return false;
  for (Count i = 0; i < count; ++i)
    if (d->table_of(elements[i])) d->delete_element(elements[i]);
  return true;
}

bool MeshDatabase::delete_owner(SMeshOwnerType* owner) {
  if (!d->is_owner(owner)) return false;
  for (std::uint32_t type = OneNode; type <= Superelement; ++type) {
    const auto kind = static_cast<ElementType>(type);
    const IndexRuns owned = d->owner_elements(owner, kind);
    owned.for_each([&](Index index) { d->delete_element(element_handle(kind, index)); });
    owner->elements[type].clear();
  }
  d->tidy_nodes(owner).for_each([&](Index index) { d->nodes.owners[index] = no_index; });
  owner->nodes.clear();
  const bool listed_nodes = !owner->listed.runs().empty();
  owner->listed.clear();
  if (listed_nodes) d->relist_set_nodes();
  d->living_owners.erase(owner);
  return true;
}

std::vector<SMeshOwnerType*> MeshDatabase::owners() const {
  std::vector<SMeshOwnerType*> living;
  living.reserve(d->living_owners.size());
  for (const auto& owner : d->owners)
    if (d->is_owner(owner.get())) living.push_back(owner.get());
  return living;
}

std::string MeshDatabase::owner_name(SMeshOwnerType* owner) const {
  return d->is_owner(owner) ? owner->name : std::string();
}

SMeshOwnerType* MeshDatabase::find_owner(const std::string& name) const {
  for (const auto& owner : d->owners)
    if (owner->name == name && d->is_owner(owner.get())) return owner.get();
  return nullptr;
}

MeshData::Count MeshDatabase::node_count() const { return d->nodes.size(); }

MeshData::Count MeshDatabase::element_count(ElementType type) const {
  return type <= Superelement ? d->elements[type].living() : 0;
}

std::vector<MeshData::Node> MeshDatabase::nodes() const {
  std::vector<Node> all(d->nodes.size());
  for (Index i = 0; i < all.size(); ++i)
    all[i] = node_handle(i);
  return all;
}

std::vector<MeshData::Elem> MeshDatabase::elements(ElementType type) const {
  std::vector<Elem> living;
  if (type > Superelement) return living;
  const ElementTable& table = d->elements[type];
  living.reserve(table.living());
  for (Index i = 0; i < table.size(); ++i)
    if (table.is_alive(i)) living.push_back(element_handle(type, i));
  return living;
}

MeshData::Node MeshDatabase::find_node(int id) const {
  const Index found = d->nodes.id_index.find(id, d->nodes.ids, d->nodes.dead);
  return found == no_index ? Node() : node_handle(found);
}

MeshData::Elem MeshDatabase::find_element(int id) const { return id > 0 ? d->find_element(id) : Elem(); }

MeshData::Count MeshDatabase::memory_bytes() const {
  Count bytes = d->nodes.bytes() + d->edges.bytes() + d->element_on_node.bytes();
  for (const ElementTable& table : d->elements)
    bytes += table.bytes();
  for (const auto& owner : d->owners) {
    bytes += sizeof(SMeshOwnerType) + owner->name.capacity() + owner->nodes.bytes() + owner->listed.bytes();
    for (const IndexRuns& list : owner->elements)
      bytes += list.bytes();
  }
  return bytes;
}

} // namespace Tarn
