#include "readers/DatabaseFill.h"

#include "readers/Numbering.h"
#include "reference/tarn/MeshDatabase.h"

#include "mesh/database/MDBDefines.h"

#include <algorithm>
#include <limits>

namespace readers {

namespace {

using Tarn::MeshDatabase;
using Node = MeshDatabase::Node;
using Elem = MeshDatabase::Elem;

constexpr std::uint64_t node_limit = std::uint64_t{1} << 29;
constexpr std::int64_t largest_id = std::numeric_limits<std::int32_t>::max();

// Local and global ids, parallel to the draft.
struct Ids {
  std::vector<int> nodes;
  std::vector<std::vector<int>> elements;
  std::vector<std::vector<int>> global_elements;
};

std::int64_t largest(const std::vector<int>& ids) {
  return ids.empty() ? 0 : *std::max_element(ids.begin(), ids.end());
}

std::int64_t largest_node_id(MeshDatabase& database) {
  const std::vector<Node> nodes = database.nodes();
  std::vector<int> ids(nodes.size());
  database.get_node_ids(nodes.size(), nodes.data(), ids.data());
  return largest(ids);
}

std::int64_t largest_element_id(MeshDatabase& database) {
  std::int64_t result = 0;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type) {
    const std::vector<Elem> elements = database.elements(static_cast<Tarn::ElementType>(type));
    std::vector<int> ids(elements.size());
    database.get_element_ids(elements.size(), elements.data(), ids.data());
    result = std::max(result, largest(ids));
  }
  return result;
}

std::uint64_t count_all_elements(const MeshDatabase& database) {
  std::uint64_t count = 0;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    count += database.element_count(static_cast<Tarn::ElementType>(type));
  return count;
}

std::string renumbered(const char* what, std::int64_t first) {
  return std::string(what) + " numbers of the file are not unique, positive, below 2^31 and unused: numbered from " +
         std::to_string(first);
}

bool number_nodes(const MeshDraft& draft, MeshDatabase& database, Ids& ids, std::vector<std::string>& notices) {
  const std::size_t count = draft.node_count();
  ids.nodes.resize(count);
  const auto& numbers = draft.node_numbers;
  bool from_file = !numbers.empty() && are_unique_ids(numbers);
  if (from_file && database.node_count() > 0)
    from_file = std::none_of(numbers.begin(), numbers.end(), [&](std::int64_t number) {
      return database.find_node(static_cast<int>(number)).value != 0;
    });
  if (from_file) {
    std::transform(numbers.begin(), numbers.end(), ids.nodes.begin(), [](auto n) { return static_cast<int>(n); });
    return true;
  }
  const std::int64_t base = database.node_count() > 0 ? largest_node_id(database) : 0;
  if (base + static_cast<std::int64_t>(count) > largest_id) return false;
  for (std::size_t i = 0; i < count; ++i)
    ids.nodes[i] = static_cast<int>(base + 1 + static_cast<std::int64_t>(i));
  if (!numbers.empty()) notices.push_back(renumbered("node", base + 1));
  return true;
}

// The file's numbers of all elements but the faces of side sets; empty unless every one has a number.
std::vector<std::int64_t> file_numbers(const MeshDraft& draft) {
  std::vector<std::int64_t> numbers;
  for (const ElementBatch& batch : draft.batches) {
    if (batch.from_side_set || batch.size() == 0) continue;
    if (batch.numbers.empty()) return {};
    numbers.insert(numbers.end(), batch.numbers.begin(), batch.numbers.end());
  }
  return numbers;
}

bool can_be_local_ids(const std::vector<std::int64_t>& numbers, const MeshDatabase& database) {
  if (numbers.empty() || !are_unique_ids(numbers)) return false;
  return count_all_elements(database) == 0 || std::none_of(numbers.begin(), numbers.end(), [&](std::int64_t number) {
           return database.find_element(static_cast<int>(number)).value != 0;
         });
}

// Faces of side sets have no number in the file: they follow the largest.
void number_by_file(const MeshDraft& draft, std::int64_t next, Ids& ids) {
  for (std::size_t b = 0; b < draft.batches.size(); ++b) {
    const ElementBatch& batch = draft.batches[b];
    std::vector<int>& out = ids.elements[b];
    for (std::size_t e = 0; e < batch.size(); ++e)
      out[e] = static_cast<int>(batch.from_side_set ? next++ : batch.numbers[e]);
  }
}

void number_by_position(const MeshDraft& draft, std::int64_t base, Ids& ids) {
  for (std::size_t b = 0; b < draft.batches.size(); ++b)
    std::transform(draft.batches[b].position.begin(), draft.batches[b].position.end(), ids.elements[b].begin(),
                   [base](std::uint32_t position) { return static_cast<int>(base + position); });
}

void take_global_ids(const MeshDraft& draft, const std::vector<std::int64_t>& numbers, Ids& ids) {
  ids.global_elements = ids.elements;
  const bool fit = std::all_of(numbers.begin(), numbers.end(), [](std::int64_t number) {
    return number >= std::numeric_limits<std::int32_t>::min() && number <= largest_id;
  });
  if (numbers.empty() || !fit) return;
  for (std::size_t b = 0; b < draft.batches.size(); ++b)
    for (std::size_t e = 0; !draft.batches[b].from_side_set && e < draft.batches[b].size(); ++e)
      ids.global_elements[b][e] = static_cast<int>(draft.batches[b].numbers[e]);
}

bool number_elements(const MeshDraft& draft, MeshDatabase& database, Ids& ids, std::vector<std::string>& notices) {
  ids.elements.resize(draft.batches.size());
  for (std::size_t b = 0; b < draft.batches.size(); ++b)
    ids.elements[b].resize(draft.batches[b].size());
  const std::vector<std::int64_t> numbers = file_numbers(draft);
  const std::int64_t base = count_all_elements(database) > 0 ? largest_element_id(database) : 0;
  const std::int64_t largest_number = numbers.empty() ? 0 : *std::max_element(numbers.begin(), numbers.end());
  const std::int64_t faces = static_cast<std::int64_t>(draft.element_count() - numbers.size());
  const std::int64_t next = std::max(base, largest_number) + 1;
  if (can_be_local_ids(numbers, database) && next + faces - 1 <= largest_id) {
    number_by_file(draft, next, ids);
  } else {
    if (base + draft.last_position > largest_id) return false;
    number_by_position(draft, base, ids);
    if (!numbers.empty()) notices.push_back(renumbered("element", base + 1));
  }
  take_global_ids(draft, numbers, ids);
  return true;
}

// The dimension of the elements of each owner: any when they differ or there are none.
std::vector<std::uint32_t> owner_dimensions(const MeshDraft& draft) {
  constexpr std::uint32_t unset = 100;
  std::vector<std::uint32_t> dimensions(draft.owners.size(), unset);
  for (const ElementBatch& batch : draft.batches) {
    if (batch.size() == 0) continue;
    const auto dimension = static_cast<std::uint32_t>(MDBDefines::TarnTopologicalDimension(batch.type));
    std::uint32_t& known = dimensions[batch.owner];
    known = known == unset || known == dimension ? dimension : MeshDatabase::AnyDimension;
  }
  std::replace(dimensions.begin(), dimensions.end(), unset, std::uint32_t{MeshDatabase::AnyDimension});
  return dimensions;
}

using Owners = std::vector<Tarn::SMeshOwnerType*>;

Owners add_owners(const MeshDraft& draft, const std::string& prefix, MeshDatabase& database) {
  const std::vector<std::uint32_t> dimensions = owner_dimensions(draft);
  Owners owners;
  for (std::size_t i = 0; i < draft.owners.size(); ++i)
    owners.push_back(database.add_owner(prefix + draft.owners[i], dimensions[i]));
  return owners;
}

std::vector<Node> add_nodes(const MeshDraft& draft, const Ids& ids, const Owners& owners, MeshDatabase& database) {
  const std::size_t count = draft.node_count();
  Tarn::SMeshOwnerType* sole = owners.size() == 1 ? owners[0] : nullptr;
  const Node first = database.add_nodes(count, draft.xyz.data(), ids.nodes.data(), sole);
  std::vector<Node> nodes(count);
  for (std::size_t i = 0; i < count; ++i)
    nodes[i].value = first.value + i;
  if (sole) return nodes;
  std::vector<std::vector<Node>> by_owner(owners.size());
  for (std::size_t i = 0; i < count; ++i)
    by_owner[draft.node_owner[i]].push_back(nodes[i]);
  for (std::size_t o = 0; o < owners.size(); ++o)
    if (!by_owner[o].empty()) database.set_node_owner(by_owner[o].size(), by_owner[o].data(), owners[o]);
  return nodes;
}

void add_elements(const ElementBatch& batch, const std::vector<int>& ids, const std::vector<int>& global_ids,
                  const std::vector<Node>& nodes, Tarn::SMeshOwnerType* owner, MeshDatabase& database) {
  if (batch.size() == 0) return;
  std::vector<Node> connectivity(batch.nodes.size());
  std::transform(batch.nodes.begin(), batch.nodes.end(), connectivity.begin(),
                 [&nodes](std::uint32_t node) { return nodes[node]; });
  const Elem first = database.add_elements(batch.type, static_cast<int>(batch.nodes_per_element), batch.size(),
                                           connectivity.data(), ids.data(), owner);
  std::vector<Elem> elements(batch.size());
  for (std::size_t e = 0; e < elements.size(); ++e)
    elements[e].value = first.value + e;
  database.set_global_ids(elements.size(), elements.data(), global_ids.data());
}

void add_node_sets(const MeshDraft& draft, const std::string& prefix, const std::vector<Node>& nodes,
                   MeshDatabase& database) {
  for (const NodeSet& set : draft.node_sets) {
    Tarn::SMeshOwnerType* owner = database.add_owner(prefix + set.name, 0);
    std::vector<Node> members;
    for (std::uint32_t node : set.nodes)
      members.push_back(nodes[node]);
    if (!members.empty()) database.add_to_node_set(owner, members.size(), members.data());
  }
}

void count_into(Report& report, const MeshDraft& draft) {
  report.nodes = draft.node_count();
  for (const ElementBatch& batch : draft.batches)
    (batch.from_side_set ? report.set_faces : report.elements)[batch.type] += batch.size();
  report.left_out = draft.left_out;
  report.notices = draft.notices;
}

} // namespace

std::string fill_database(const MeshDraft& draft, const Options& options, MeshDatabase& database, Report& report) {
  if (draft.node_count() == 0) return "nothing in it can be drawn";
  if (database.node_count() + draft.node_count() > node_limit) return "more than 2^29 nodes";
  count_into(report, draft);
  Ids ids;
  if (!number_nodes(draft, database, ids, report.notices) || !number_elements(draft, database, ids, report.notices))
    return "more ids than 2^31";
  const Owners owners = add_owners(draft, options.owner_prefix, database);
  const std::vector<Node> nodes = add_nodes(draft, ids, owners, database);
  for (std::size_t b = 0; b < draft.batches.size(); ++b)
    add_elements(draft.batches[b], ids.elements[b], ids.global_elements[b], nodes, owners[draft.batches[b].owner],
                 database);
  add_node_sets(draft, options.owner_prefix, nodes, database);
  return "";
}

} // namespace readers
