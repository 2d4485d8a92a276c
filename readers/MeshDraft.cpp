#include "readers/MeshDraft.h"

#include "readers/CellKinds.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace readers {

namespace {

constexpr std::uint32_t gone_node = 0xffffffffu;

bool drawable(const double* xyz) {
  // Beyond single precision a coordinate becomes infinite on its way to the screen.
  constexpr double limit = std::numeric_limits<float>::max();
  return std::abs(xyz[0]) <= limit && std::abs(xyz[1]) <= limit && std::abs(xyz[2]) <= limit;
}

bool all_below(const std::vector<std::uint32_t>& indices, std::size_t limit) {
  return std::all_of(indices.begin(), indices.end(), [limit](std::uint32_t index) { return index < limit; });
}

// The new index of each node, `gone_node` for those that cannot be drawn.
std::vector<std::uint32_t> number_drawable_nodes(const MeshDraft& draft, std::uint32_t& kept) {
  std::vector<std::uint32_t> index(draft.node_count());
  kept = 0;
  for (std::size_t node = 0; node < index.size(); ++node)
    index[node] = drawable(&draft.xyz[3 * node]) ? kept++ : gone_node;
  return index;
}

template <typename T>
void keep_marked(std::vector<T>& values, std::size_t stride, const std::vector<std::uint32_t>& index) {
  if (values.empty()) return;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < index.size(); ++i)
    if (index[i] != gone_node) {
      std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(i * stride), stride,
                  values.begin() + static_cast<std::ptrdiff_t>(kept * stride));
      ++kept;
    }
  values.resize(kept * stride);
}

std::size_t drop_elements_on_gone_nodes(ElementBatch& batch, const std::vector<std::uint32_t>& node_index) {
  const std::size_t stride = batch.nodes_per_element;
  std::vector<std::uint32_t> kept(batch.size());
  std::size_t dropped = 0;
  for (std::size_t e = 0; e < batch.size(); ++e) {
    const std::uint32_t* nodes = &batch.nodes[e * stride];
    const bool gone =
        std::any_of(nodes, nodes + stride, [&](std::uint32_t node) { return node_index[node] == gone_node; });
    kept[e] = gone ? gone_node : 0;
    dropped += gone;
  }
  keep_marked(batch.nodes, stride, kept);
  keep_marked(batch.position, 1, kept);
  keep_marked(batch.numbers, 1, kept);
  for (std::uint32_t& node : batch.nodes)
    node = node_index[node];
  return dropped;
}

std::string find_inconsistency(const ElementBatch& batch, const MeshDraft& draft) {
  if (!is_known_kind(batch.type, batch.nodes_per_element)) return "an unknown kind of element";
  if (batch.owner >= draft.owners.size()) return "an unknown owner of elements";
  if (batch.nodes.size() != batch.size() * batch.nodes_per_element) return "connectivity of a wrong length";
  if (!batch.numbers.empty() && batch.numbers.size() != batch.size()) return "element numbers of a wrong length";
  if (!all_below(batch.nodes, draft.node_count())) return "connectivity out of range";
  const bool positions_fit = std::all_of(batch.position.begin(), batch.position.end(), [&](std::uint32_t position) {
    return position > 0 && position <= draft.last_position;
  });
  return positions_fit ? "" : "an element position out of range";
}

template <typename T> void append_moved(std::vector<T>& to, const std::vector<T>& from, T by) {
  to.reserve(to.size() + from.size());
  for (T value : from)
    to.push_back(value + by);
}

} // namespace

std::size_t MeshDraft::element_count() const {
  std::size_t count = 0;
  for (const ElementBatch& batch : batches)
    count += batch.size();
  return count;
}

void MeshDraft::leave_out(const std::string& reason, std::uint64_t count) {
  if (count == 0) return;
  for (LeftOut& known : left_out)
    if (known.reason == reason) {
      known.count += count;
      return;
    }
  left_out.push_back({reason, count});
}

void append_draft(MeshDraft& draft, MeshDraft&& more) {
  const auto first_node = static_cast<std::uint32_t>(draft.node_count());
  const auto first_owner = static_cast<std::uint32_t>(draft.owners.size());
  const bool numbered =
      draft.node_numbers.size() == draft.node_count() && more.node_numbers.size() == more.node_count();
  append_moved(draft.node_numbers, more.node_numbers, std::int64_t{0});
  if (!numbered) draft.node_numbers.clear();
  append_moved(draft.node_owner, more.node_owner, first_owner);
  draft.xyz.insert(draft.xyz.end(), more.xyz.begin(), more.xyz.end());
  draft.owners.insert(draft.owners.end(), more.owners.begin(), more.owners.end());
  for (ElementBatch& batch : more.batches) {
    batch.owner += first_owner;
    for (std::uint32_t& node : batch.nodes)
      node += first_node;
    for (std::uint32_t& position : batch.position)
      position += draft.last_position;
    draft.batches.push_back(std::move(batch));
  }
  for (NodeSet& set : more.node_sets) {
    for (std::uint32_t& node : set.nodes)
      node += first_node;
    draft.node_sets.push_back(std::move(set));
  }
  for (const LeftOut& left_out : more.left_out)
    draft.leave_out(left_out.reason, left_out.count);
  draft.notices.insert(draft.notices.end(), more.notices.begin(), more.notices.end());
  draft.last_position += more.last_position;
}

std::string find_inconsistency(const MeshDraft& draft) {
  if (draft.xyz.size() % 3 != 0) return "coordinates of a wrong length";
  if (draft.node_owner.size() != draft.node_count()) return "node owners of a wrong length";
  if (!draft.node_numbers.empty() && draft.node_numbers.size() != draft.node_count())
    return "node numbers of a wrong length";
  if (!all_below(draft.node_owner, draft.owners.size())) return "an unknown owner of nodes";
  for (const NodeSet& set : draft.node_sets)
    if (!all_below(set.nodes, draft.node_count())) return "a node set out of range";
  for (const ElementBatch& batch : draft.batches) {
    const std::string found = find_inconsistency(batch, draft);
    if (!found.empty()) return found;
  }
  return "";
}

void leave_out_bad_nodes(MeshDraft& draft) {
  std::uint32_t kept = 0;
  const std::vector<std::uint32_t> index = number_drawable_nodes(draft, kept);
  if (kept == index.size()) return;
  draft.leave_out("nodes with coordinates that are not finite in single precision", index.size() - kept);
  keep_marked(draft.xyz, 3, index);
  keep_marked(draft.node_numbers, 1, index);
  keep_marked(draft.node_owner, 1, index);
  std::size_t dropped = 0;
  for (ElementBatch& batch : draft.batches)
    dropped += drop_elements_on_gone_nodes(batch, index);
  draft.leave_out("elements on nodes with coordinates that are not finite in single precision", dropped);
  for (NodeSet& set : draft.node_sets) {
    std::vector<std::uint32_t> left;
    for (std::uint32_t node : set.nodes)
      if (index[node] != gone_node) left.push_back(index[node]);
    set.nodes.swap(left);
  }
}

} // namespace readers
