#include "viewer/IdSelection.h"

#include "reference/tarn/MeshDatabase.h"

#include <algorithm>

namespace viewer {
namespace {

// An id, and the position in its list of the entity that has it.
struct Entry {
  int id;
  std::size_t position;
};

std::string range_text(const IdRange& range) {
  const std::string first = std::to_string(range.first);
  return range.first == range.last ? first : first + "-" + std::to_string(range.last);
}

std::vector<Entry> sorted_entries(const std::vector<int>& ids, const std::vector<char>& has_id) {
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < ids.size(); ++i)
    if (has_id[i] != 0) entries.push_back({ids[i], i});
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.id < b.id; });
  return entries;
}

std::vector<Entry> element_entries(Tarn::MeshDatabase& database, const std::vector<Tarn::Handle<1>>& elements,
                                   bool global) {
  std::vector<int> ids(elements.size(), 0);
  std::vector<char> has_id(elements.size(), global ? 0 : 1);
  if (global)
    database.get_global_element_ids(elements.size(), elements.data(), ids.data(), has_id.data());
  else
    database.get_element_ids(elements.size(), elements.data(), ids.data());
  return sorted_entries(ids, has_id);
}

std::vector<Entry> node_entries(Tarn::MeshDatabase& database, const std::vector<Tarn::Handle<0>>& nodes) {
  std::vector<int> ids(nodes.size(), 0);
  database.get_node_ids(nodes.size(), nodes.data(), ids.data());
  return sorted_entries(ids, std::vector<char>(nodes.size(), 1));
}

// Appends what the range meets; false when that is nothing.
template <class Handle>
bool append_range(const std::vector<Entry>& entries, const std::vector<Handle>& handles, const IdRange& range,
                  std::vector<Handle>& found) {
  const auto first = std::lower_bound(entries.begin(), entries.end(), range.first,
                                      [](const Entry& entry, int id) { return entry.id < id; });
  auto entry = first;
  for (; entry != entries.end() && entry->id <= range.last; ++entry)
    found.push_back(handles[entry->position]);
  return entry != first;
}

std::vector<bool> append_nodes(Tarn::MeshDatabase& database, const IdSelection& selection, MeshVector& found) {
  std::vector<bool> met;
  const auto nodes = database.nodes();
  const auto entries = node_entries(database, nodes);
  for (const IdRange& range : selection.ranges)
    met.push_back(append_range(entries, nodes, range, found.nodes));
  return met;
}

std::vector<bool> append_elements(Tarn::MeshDatabase& database, const IdSelection& selection, MeshVector& found) {
  std::vector<bool> met(selection.ranges.size(), false);
  for (const Tarn::ElementType type : types_of(selection.kind)) {
    const auto elements = database.elements(type);
    const auto entries = element_entries(database, elements, selection.global);
    for (std::size_t i = 0; i < met.size(); ++i)
      if (append_range(entries, elements, selection.ranges[i], found.elements[type])) met[i] = true;
  }
  return met;
}

} // namespace

std::string find_entities(Tarn::MeshDatabase& database, const IdSelection& selection, MeshVector& found) {
  const bool nodes = selection.kind == EntityKind::Node;
  MeshVector more;
  const auto met = nodes ? append_nodes(database, selection, more) : append_elements(database, selection, more);
  const auto missed = std::find(met.begin(), met.end(), false);
  if (missed == met.end()) {
    found.append(more);
    found.sort_unique();
    return "";
  }
  const IdRange& range = selection.ranges[missed - met.begin()];
  return std::string("no ") + kind_name(selection.kind) + " has " + (selection.global ? "the global id " : "the id ") +
         range_text(range);
}

std::string id_list(EntityKind kind, std::vector<int> ids) {
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  std::string text;
  for (std::size_t begin = 0, end; begin < ids.size(); begin = end) {
    end = begin + 1;
    while (end < ids.size() && ids[end] == ids[end - 1] + 1)
      ++end;
    if (end - begin == 2) --end;
    text += (text.empty() ? kind_name(kind) + std::string(":") : ",") + range_text({ids[begin], ids[end - 1]});
  }
  return text;
}

} // namespace viewer
