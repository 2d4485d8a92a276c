#include "viewer/EntityKinds.h"

#include <cstddef>

namespace viewer {
namespace {

struct Words {
  EntityKind kind;
  Tarn::ElementType type; // None: not one type
  const char* one;
  const char* many;
};

constexpr Words words[] = {{EntityKind::Node, Tarn::None, "node", "nodes"},
                           {EntityKind::Edge, Tarn::Edge, "edge", "edges"},
                           {EntityKind::Tri, Tarn::Tri, "tri", "tris"},
                           {EntityKind::Quad, Tarn::Quad, "quad", "quads"},
                           {EntityKind::Tet, Tarn::Tet, "tet", "tets"},
                           {EntityKind::Hex, Tarn::Hex, "hex", "hexes"},
                           {EntityKind::Wedge, Tarn::Wedge, "wedge", "wedges"},
                           {EntityKind::Pyramid, Tarn::Pyramid, "pyramid", "pyramids"},
                           {EntityKind::Superelement, Tarn::Superelement, "superelement", "superelements"},
                           {EntityKind::Element, Tarn::None, "element", "elements"}};

const Words& words_of(EntityKind kind) { return words[static_cast<std::size_t>(kind)]; }

} // namespace

const char* kind_name(EntityKind kind) { return words_of(kind).one; }

const char* kind_names(EntityKind kind) { return words_of(kind).many; }

const std::vector<EntityKind>& entity_kinds() {
  static const std::vector<EntityKind> kinds = [] {
    std::vector<EntityKind> list;
    for (const Words& each : words)
      list.push_back(each.kind);
    return list;
  }();
  return kinds;
}

EntityKind kind_of(Tarn::ElementType type) {
  for (const Words& each : words)
    if (each.type == type && type != Tarn::None) return each.kind;
  return EntityKind::Element;
}

std::vector<Tarn::ElementType> types_of(EntityKind kind) {
  if (kind == EntityKind::Node) return {};
  if (kind != EntityKind::Element) return {words_of(kind).type};
  std::vector<Tarn::ElementType> types;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    types.push_back(static_cast<Tarn::ElementType>(type));
  return types;
}

} // namespace viewer
