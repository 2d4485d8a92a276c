#include "viewer/OwnerCover.h"

#include "mesh/database/MDBDefines.h"
#include "reference/tarn/MeshDatabase.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace viewer {
namespace {

using Node = Tarn::MeshData::Node;
using Elem = Tarn::MeshData::Elem;

constexpr std::uint32_t first_kind = Tarn::OneNode;
constexpr std::uint32_t last_kind = Tarn::Superelement;
constexpr std::size_t batch = 65536;

int dimension_of(std::uint32_t kind) {
  return MDBDefines::TarnTopologicalDimension(static_cast<Tarn::ElementType>(kind));
}

// Corner nodes of elements of one kind, batch by batch, so that a big mesh needs no big array. `take` gets a position
// in the list and the element's corners, null ones left out.
template <class Take>
void for_each_corners(Tarn::MeshData& database, std::uint32_t kind, const std::vector<Elem>& elements, Take take) {
  const std::size_t corners = MDBDefines::NodesPerElement(static_cast<Tarn::ElementType>(kind));
  std::vector<Node> nodes;
  for (std::size_t begin = 0; begin < elements.size(); begin += batch) {
    const std::size_t count = std::min(batch, elements.size() - begin);
    nodes.assign(count * corners, Node());
    Tarn::MeshData::Count length = nodes.size();
    database.get_connectivity(count, &elements[begin], &length, nodes.data());
    for (std::size_t i = 0; i < count; ++i) {
      Node* const first = &nodes[i * corners];
      take(first, static_cast<int>(std::remove(first, first + corners, Node()) - first));
    }
  }
}

// The nodes of the owners in question, numbered from 0 through a table over their handles: within one database node
// handles are consecutive but for deleted ones.
class NodeNumbers {
public:
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

  explicit NodeNumbers(const std::vector<Node>& nodes) {
    if (nodes.empty()) return;
    const auto ends = std::minmax_element(nodes.begin(), nodes.end());
    low_ = ends.first->value;
    numbers_.assign(ends.second->value - low_ + 1, none);
    for (const Node node : nodes)
      if (numbers_[node.value - low_] == none) numbers_[node.value - low_] = count_++;
  }
  std::uint32_t operator()(Node node) const {
    const std::uint64_t place = node.value - low_;
    return place < numbers_.size() ? numbers_[place] : none;
  }
  std::uint32_t count() const { return count_; }

private:
  std::uint64_t low_ = 0;
  std::uint32_t count_ = 0;
  std::vector<std::uint32_t> numbers_;
};

// Which of the numbered nodes the elements of the mesh have, and which elements each node has.
class Bearers {
public:
  Bearers(Tarn::MeshDatabase& database, const NodeNumbers& numbers, int lowest_dimension) : numbers_(numbers) {
    // Superelements bear nothing: they have no shape that could stand for what lies on them.
    for (std::uint32_t kind = first_kind; kind < Tarn::Superelement; ++kind)
      if (dimension_of(kind) > lowest_dimension) add(database, kind);
    list_by_node();
  }

  // Whether one element of a dimension above `dimension` has all these nodes.
  bool bear(const Node* nodes, int count, int dimension) const {
    if (count == 0) return false;
    const std::uint32_t first = numbers_(nodes[0]);
    for (std::uint32_t at = node_begin_[first]; at < node_begin_[first + 1]; ++at) {
      const Bearer& bearer = bearers_[node_bearers_[at]];
      if (bearer.dimension > dimension && has_all(bearer, nodes, count)) return true;
    }
    return false;
  }

private:
  struct Bearer {
    std::size_t begin, end; // in `bearer_nodes_`
    int dimension;
  };

  void add(Tarn::MeshDatabase& database, std::uint32_t kind) {
    const int dimension = dimension_of(kind);
    const auto elements = database.elements(static_cast<Tarn::ElementType>(kind));
    for_each_corners(database, kind, elements, [&](const Node* nodes, int count) {
      const std::size_t begin = bearer_nodes_.size();
      for (int i = 0; i < count; ++i)
        if (numbers_(nodes[i]) != NodeNumbers::none) bearer_nodes_.push_back(numbers_(nodes[i]));
      if (bearer_nodes_.size() > begin) bearers_.push_back({begin, bearer_nodes_.size(), dimension});
    });
  }

  void list_by_node() {
    node_begin_.assign(numbers_.count() + 1, 0);
    for (const std::uint32_t node : bearer_nodes_)
      ++node_begin_[node + 1];
    for (std::size_t node = 0; node + 1 < node_begin_.size(); ++node)
      node_begin_[node + 1] += node_begin_[node];
    node_bearers_.resize(bearer_nodes_.size());
    auto next = node_begin_;
    for (std::uint32_t i = 0; i < bearers_.size(); ++i)
      for (std::size_t at = bearers_[i].begin; at < bearers_[i].end; ++at)
        node_bearers_[next[bearer_nodes_[at]]++] = i;
  }

  bool has_all(const Bearer& bearer, const Node* nodes, int count) const {
    const auto begin = bearer_nodes_.begin() + static_cast<std::ptrdiff_t>(bearer.begin);
    const auto end = bearer_nodes_.begin() + static_cast<std::ptrdiff_t>(bearer.end);
    return std::all_of(nodes, nodes + count, [&](Node node) { return std::find(begin, end, numbers_(node)) != end; });
  }

  const NodeNumbers& numbers_;
  std::vector<std::uint32_t> bearer_nodes_;
  std::vector<Bearer> bearers_;
  std::vector<std::uint32_t> node_begin_;
  std::vector<std::uint32_t> node_bearers_;
};

void append_nodes(Tarn::MeshData& database, const MeshVector& mesh, std::vector<Node>& nodes) {
  nodes.insert(nodes.end(), mesh.nodes.begin(), mesh.nodes.end());
  for (std::uint32_t kind = first_kind; kind <= last_kind; ++kind)
    for_each_corners(database, kind, mesh.elements[kind],
                     [&](const Node* first, int count) { nodes.insert(nodes.end(), first, first + count); });
}

bool is_covered(Tarn::MeshData& database, const MeshVector& mesh, int dimension, const Bearers& bearers) {
  bool covered = std::all_of(mesh.nodes.begin(), mesh.nodes.end(),
                             [&](const Node& node) { return bearers.bear(&node, 1, dimension); });
  for (std::uint32_t kind = first_kind; kind <= last_kind && covered; ++kind)
    for_each_corners(database, kind, mesh.elements[kind],
                     [&](const Node* nodes, int count) { covered = covered && bearers.bear(nodes, count, dimension); });
  return covered;
}

} // namespace

int highest_dimension(const MeshVector& mesh) {
  int dimension = 0;
  for (std::uint32_t kind = first_kind; kind <= last_kind; ++kind)
    if (!mesh.elements[kind].empty()) dimension = std::max(dimension, dimension_of(kind));
  return dimension;
}

std::vector<bool> find_covered_owners(Tarn::MeshDatabase& database, const std::vector<MeshVector>& meshes) {
  std::vector<bool> covered(meshes.size(), false);
  std::vector<int> dimensions(meshes.size());
  std::transform(meshes.begin(), meshes.end(), dimensions.begin(), highest_dimension);
  const int highest = meshes.empty() ? 0 : *std::max_element(dimensions.begin(), dimensions.end());

  std::vector<Node> nodes;
  int lowest = highest;
  for (std::size_t i = 0; i < meshes.size(); ++i) {
    if (dimensions[i] == highest || meshes[i].empty()) continue;
    append_nodes(database, meshes[i], nodes);
    lowest = std::min(lowest, dimensions[i]);
  }
  if (nodes.empty()) return covered;

  const NodeNumbers numbers(nodes);
  const Bearers bearers(database, numbers, lowest);
  for (std::size_t i = 0; i < meshes.size(); ++i)
    if (dimensions[i] < highest && !meshes[i].empty())
      covered[i] = is_covered(database, meshes[i], dimensions[i], bearers);
  return covered;
}

} // namespace viewer
