#include "tests/tarn/PlainSkinner.h"

#include "mesh/database/MeshSkinner.h"
#include "mesh/database/SideToElement.h"

#include <map>
#include <set>

namespace tarn_test {

namespace {

using Corners = std::vector<int>;

// Sides with all nodes that they can have, corners first, written down from the figures of VTK's cells.
struct SideNodes {
  int corners;
  Corners nodes;
};

const std::map<int, std::vector<SideNodes>>& sides_of_kind() {
  static const std::map<int, std::vector<SideNodes>> table = {
      {Tarn::Tet, {{3, {0, 1, 3, 4, 8, 7}}, {3, {1, 2, 3, 5, 9, 8}}, {3, {2, 0, 3, 6, 7, 9}}, {3, {0, 2, 1, 6, 5, 4}}}},
      {Tarn::Hex,
       {{4, {0, 4, 7, 3, 16, 15, 19, 11, 20}},
        {4, {1, 2, 6, 5, 9, 18, 13, 17, 21}},
        {4, {0, 1, 5, 4, 8, 17, 12, 16, 22}},
        {4, {3, 7, 6, 2, 19, 14, 18, 10, 23}},
        {4, {0, 3, 2, 1, 11, 10, 9, 8, 24}},
        {4, {4, 5, 6, 7, 12, 13, 14, 15, 25}}}},
      {Tarn::Wedge,
       {{3, {0, 1, 2, 6, 7, 8}},
        {3, {3, 5, 4, 11, 10, 9}},
        {4, {0, 3, 4, 1, 12, 9, 13, 6, 15}},
        {4, {1, 4, 5, 2, 13, 10, 14, 7, 16}},
        {4, {2, 5, 3, 0, 14, 11, 12, 8, 17}}}},
      {Tarn::Pyramid,
       {{4, {0, 3, 2, 1, 8, 7, 6, 5, 13}},
        {3, {0, 1, 4, 5, 10, 9}},
        {3, {1, 2, 4, 6, 11, 10}},
        {3, {2, 3, 4, 7, 12, 11}},
        {3, {3, 0, 4, 8, 9, 12}}}},
  };
  return table;
}

using Key = std::set<std::uint64_t>;

/// Empty for a face without area.
Key key_of(const std::vector<std::uint64_t>& nodes, int corners) {
  const Key key(nodes.begin(), nodes.begin() + corners);
  return key.size() < 3 ? Key() : key;
}

struct Candidate {
  SkinFace face;
  Key key;
};

int position_of(std::size_t place) { return static_cast<int>(place) * 10 + 1; }

bool has_null(const std::vector<Tarn::Handle<0>>& nodes, int corners) {
  for (int k = 0; k < corners; ++k)
    if (nodes[std::size_t(k)].value == 0) return true;
  return false;
}

void add_sides(const ForeignMeshData& database, const HandleList& list, Key& seen, std::vector<Candidate>& out) {
  for (std::size_t place = 0; place < list.size(); ++place) {
    const auto& element = database.elements.at(list[place].value);
    const auto kind = sides_of_kind().find(element.type);
    if (kind == sides_of_kind().end() || !seen.insert(list[place].value).second) continue;
    static const std::map<int, int> corner_counts = {
        {Tarn::Tet, 4}, {Tarn::Hex, 8}, {Tarn::Wedge, 6}, {Tarn::Pyramid, 5}};
    if (has_null(element.nodes, corner_counts.at(element.type))) continue;
    for (const SideNodes& side : kind->second) {
      Candidate candidate{{side.corners, {}, list[place].value, position_of(place)}, {}};
      for (const int node : side.nodes)
        if (node < static_cast<int>(element.nodes.size()))
          candidate.face.nodes.push_back(element.nodes[std::size_t(node)].value);
      candidate.key = key_of(candidate.face.nodes, side.corners);
      if (!candidate.key.empty()) out.push_back(candidate);
    }
  }
}

void add_shells(const ForeignMeshData& database, const HandleList& list, std::vector<Candidate>& out) {
  for (std::size_t place = 0; place < list.size(); ++place) {
    const auto& element = database.elements.at(list[place].value);
    const int corners = element.type == Tarn::Tri ? 3 : element.type == Tarn::Quad ? 4 : 0;
    if (corners == 0 || has_null(element.nodes, corners)) continue;
    Candidate candidate{{corners, {}, list[place].value, position_of(place)}, {}};
    for (const Tarn::Handle<0> node : element.nodes)
      candidate.face.nodes.push_back(node.value);
    candidate.key = key_of(candidate.face.nodes, corners);
    out.push_back(candidate);
  }
}

} // namespace

std::vector<SkinFace> plain_skin(const ForeignMeshData& database, const std::vector<HandleList>& solids,
                                 const std::vector<HandleList>& shells) {
  std::vector<Candidate> shell_faces;
  for (const HandleList& list : shells)
    add_shells(database, list, shell_faces);
  std::vector<Candidate> sides;
  Key seen;
  for (const HandleList& list : solids)
    add_sides(database, list, seen, sides);
  std::map<Key, int> times;
  for (const Candidate& side : sides)
    ++times[side.key];
  for (const Candidate& shell : shell_faces)
    times[shell.key] += 2;
  std::vector<SkinFace> skin;
  for (const Candidate& shell : shell_faces)
    skin.push_back(shell.face);
  for (const Candidate& side : sides)
    if (times[side.key] == 1) skin.push_back(side.face);
  return skin;
}

std::vector<int> positions_of(const HandleList& list) {
  std::vector<int> positions;
  for (std::size_t place = 0; place < list.size(); ++place)
    positions.push_back(position_of(place));
  return positions;
}

std::vector<SkinFace> copy_of(const std::vector<Side*>& sides) {
  std::vector<SkinFace> copy;
  for (const Side* side : sides) {
    SkinFace face{side->kind, {}, side->element.value, side->position};
    for (int k = 0; k < side->node_count; ++k)
      face.nodes.push_back(side->nodes[k].value);
    copy.push_back(face);
  }
  return copy;
}

std::vector<SkinFace> fast_skin(Tarn::MeshData& database, const std::vector<HandleList>& solids,
                                const std::vector<HandleList>& shells) {
  SideToElement sides(&database);
  for (const HandleList& list : solids)
    sides.add_elements(list, positions_of(list));
  MeshSkinner skinner(&sides);
  for (const HandleList& list : shells)
    skinner.add_skin_elements(list, positions_of(list));
  return copy_of(skinner.getMeshSkin());
}

} // namespace tarn_test
