#pragma once

#include "mesh/database/Handle.h"
#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"

#include <array>
#include <map>
#include <ostream>
#include <set>
#include <vector>

namespace test_support {

/// One face of a skin, without pointers.
struct SkinFace {
  int kind;
  std::vector<std::uint64_t> nodes;
  std::uint64_t element;
  int position;
};

inline bool operator==(const SkinFace& a, const SkinFace& b) {
  return a.kind == b.kind && a.nodes == b.nodes && a.element == b.element && a.position == b.position;
}

inline void PrintTo(const SkinFace& face, std::ostream* out) {
  *out << "side of " << std::hex << face.element << " on";
  for (const std::uint64_t node : face.nodes)
    *out << ' ' << node;
  *out << std::dec;
}

/// Linear solids of any kinds with their positions.
struct Solids {
  std::vector<Tarn::Handle<1>> elements;
  std::vector<int> positions;
};

/// The exterior sides in the plainest way: every side of every solid is looked up by its set of corners, and those met
/// once remain.
inline std::vector<SkinFace> counted_skin(Tarn::MeshData& database, const std::vector<Solids>& lists) {
  std::map<std::set<std::uint64_t>, int> times;
  std::vector<SkinFace> all;
  std::set<std::uint64_t> seen;
  for (const Solids& list : lists)
    for (std::size_t i = 0; i < list.elements.size(); ++i) {
      if (!seen.insert(list.elements[i].value).second) continue;
      Tarn::ElementType type = Tarn::None;
      database.get_element_type(list.elements[i], &type);
      const MDBDefines::ElementType shape = MDBDefines::ElementTypeFromTarnType(type);
      std::array<Tarn::Handle<0>, 8> nodes;
      Tarn::MeshData::Count length = static_cast<Tarn::MeshData::Count>(MDBDefines::NodesPerElement(type));
      database.get_connectivity(1, &list.elements[i], &length, nodes.data());
      for (int side = 0; side < MDBDefines::NumSides(shape); ++side) {
        SkinFace face{MDBDefines::NodesPerSide(shape, side), {}, list.elements[i].value, list.positions[i]};
        for (int corner = 0; corner < face.kind; ++corner)
          face.nodes.push_back(nodes[MDBDefines::SidesetNodeIndices(shape, side)[corner]].value);
        const std::set<std::uint64_t> corners(face.nodes.begin(), face.nodes.end());
        if (corners.size() < 3) continue;
        ++times[corners];
        all.push_back(face);
      }
    }
  std::vector<SkinFace> skin;
  for (const SkinFace& face : all)
    if (times[std::set<std::uint64_t>(face.nodes.begin(), face.nodes.end())] == 1) skin.push_back(face);
  return skin;
}

} // namespace test_support
