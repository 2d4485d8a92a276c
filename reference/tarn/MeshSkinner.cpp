#include "mesh/database/MeshSkinner.h"

#include "mesh/database/MeshData.h"
#include "reference/tarn/ElementShape.h"
#include "reference/tarn/SideToElementPrivate.h"

#include <algorithm>
#include <array>
#include <functional>
#include <unordered_map>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;

constexpr std::size_t most_nodes = 27;
constexpr std::size_t batch = 4096;

// A face by its corners, ascending; triangles end with null.
using FaceKey = std::array<std::uint64_t, 4>;

struct FaceKeyHash {
  std::size_t operator()(const FaceKey& key) const {
    std::uint64_t mixed = 0;
    for (const std::uint64_t corner : key)
      mixed = (mixed ^ corner) * 0x9e3779b97f4a7c15ull;
    return static_cast<std::size_t>(mixed ^ mixed >> 29);
  }
};

// A face with its nodes in a block that all faces share.
struct Face {
  FaceKey key;
  Side side;
  std::size_t first_node;
};

FaceKey key_of(const Node* nodes, std::size_t corners) {
  FaceKey key{};
  for (std::size_t i = 0; i < corners; ++i)
    key[i] = nodes[i].value;
  std::sort(key.begin(), key.end(), std::greater<>());
  return key;
}

} // namespace

struct MeshSkinner::Private {
  SideToElement* solids;
  std::vector<Tarn::ElementList> shells;
  std::vector<Side> sides;
  std::vector<Node> nodes;
};

MeshSkinner::MeshSkinner(SideToElement* solids) : d(std::make_unique<Private>()) { d->solids = solids; }

MeshSkinner::~MeshSkinner() = default;

bool MeshSkinner::add_skin_elements(const std::vector<Elem>& elements, const std::vector<int>& positions) {
  if (elements.empty() || positions.empty()) return false;
  d->shells.push_back({elements, positions});
  return true;
}

namespace {

class Gatherer {
public:
  explicit Gatherer(Tarn::MeshData& database) : database_(database) {}

  std::vector<Face> faces;
  std::vector<Node> nodes;

  void add_shells(const Tarn::ElementList& list) {
    for_each(list, [&](Tarn::ElementType type, std::size_t i, const Node* at, std::size_t count) {
      const std::size_t corners = type == Tarn::Tri ? 3 : type == Tarn::Quad ? 4 : 0;
      if (corners && count >= corners) add(list, i, int(corners), at, count);
    });
  }

  void add_sides(const Tarn::ElementList& list) {
    for_each(list, [&](Tarn::ElementType type, std::size_t i, const Node* at, std::size_t count) {
      const Tarn::ElementShape& shape = Tarn::element_shape(type);
      if (count < shape.corner_count) return;
      const bool quadratic = count > shape.corner_count && count >= shape.node_counts[1];
      for (int s = 0; s < shape.side_count; ++s) {
        const Tarn::SideShape& side = shape.sides[s];
        Node side_nodes[9];
        const int own = side.corner_count * (quadratic ? 2 : 1);
        int written = 0;
        for (; written < own; ++written)
          side_nodes[written] = at[side.nodes[written]];
        if (shape.with_centres && count == shape.with_centres && side.centre) side_nodes[written++] = at[side.centre];
        add(list, i, side.corner_count, side_nodes, std::size_t(written));
      }
    });
  }

private:
  template <class Visit> void for_each(const Tarn::ElementList& list, Visit visit) {
    std::vector<Tarn::ElementType> types(list.size(), Tarn::None);
    database_.get_element_types(list.size(), list.elements.data(), types.data());
    std::vector<Node> connectivity;
    for (std::size_t begin = 0; begin < list.size(); begin += batch) {
      const std::size_t count = std::min(batch, list.size() - begin);
      connectivity.assign(count * most_nodes, Node{});
      Count length = connectivity.size();
      database_.get_connectivity(count, &list.elements[begin], &length, connectivity.data());
      for (std::size_t i = 0; i < count; ++i) {
        const Node* at = &connectivity[i * most_nodes];
        const std::size_t known = std::size_t(std::find(at, at + most_nodes, Node{}) - at);
        if (types[begin + i] <= Tarn::Superelement) visit(types[begin + i], begin + i, at, known);
      }
    }
  }

  void add(const Tarn::ElementList& list, std::size_t i, int kind, const Node* at, std::size_t count) {
    faces.push_back({key_of(at, std::size_t(kind)),
                     {kind, int(count), nullptr, list.elements[i], list.positions[i]},
                     nodes.size()});
    nodes.insert(nodes.end(), at, at + count);
  }

  Tarn::MeshData& database_;
};

} // namespace

std::vector<Side*> MeshSkinner::getMeshSkin() {
  Gatherer shells(*d->solids->d->database);
  for (const auto& list : d->shells)
    shells.add_shells(list);
  Gatherer solids(*d->solids->d->database);
  for (const auto& list : d->solids->d->lists)
    solids.add_sides(list);

  constexpr int covered = 2;
  std::unordered_map<FaceKey, int, FaceKeyHash> times;
  times.reserve(solids.faces.size());
  for (const Face& face : solids.faces)
    ++times[face.key];
  for (const Face& face : shells.faces)
    times[face.key] += covered;

  d->sides.clear();
  d->nodes.clear();
  std::vector<std::size_t> first_node;
  const auto keep = [&](const Face& face, const std::vector<Node>& nodes) {
    first_node.push_back(d->nodes.size());
    d->sides.push_back(face.side);
    const Node* at = nodes.data() + face.first_node;
    d->nodes.insert(d->nodes.end(), at, at + face.side.node_count);
  };
  for (const Face& face : shells.faces)
    keep(face, shells.nodes);
  for (const Face& face : solids.faces)
    if (times[face.key] == 1) keep(face, solids.nodes);

  std::vector<Side*> skin;
  for (std::size_t i = 0; i < d->sides.size(); ++i) {
    d->sides[i].nodes = d->nodes.data() + first_node[i];
    skin.push_back(&d->sides[i]);
  }
  return skin;
}
