// Linear elements only, and a skin by counting: sides that one solid has.
#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshClipper.h"
#include "mesh/database/MeshData.h"
#include "mesh/database/MeshSkinner.h"
#include "mesh/database/Side.h"
#include "mesh/database/SideToElement.h"

#include <algorithm>
#include <array>
#include <map>

// ------------------------------------------------------------------------------------------------ element tables

namespace MDBDefines {
namespace {

struct Definition {
  const char* name;
  int nodes;
  int dimension;
  ElementType type;
  std::vector<std::vector<std::uint32_t>> sides;
};

const std::vector<Definition>& definitions() {
  static const std::vector<Definition> all = {
      {"None", 0, 0, NoElement, {}},
      {"Point", 1, 0, Point, {}},
      {"Line", 2, 1, Bar, {}},
      {"Triangle", 3, 2, Triangle, {}},
      {"Quad", 4, 2, Quadrilateral, {}},
      {"Tet", 4, 3, Tetrahedron, {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}, {0, 2, 1}}},
      {"Hex", 8, 3, Hexahedron, {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}}},
      {"Wedge", 6, 3, Prism, {{0, 1, 2}, {3, 5, 4}, {0, 3, 4, 1}, {1, 4, 5, 2}, {2, 5, 3, 0}}},
      {"Pyramid", 5, 3, Pyramid, {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}},
      {"Super", 1, 3, Super, {}},
  };
  return all;
}

const Definition& definition(Tarn::ElementType type) { return definitions()[type <= 9 ? std::size_t{type} : 0]; }

const Definition& definition(ElementType type) {
  for (const Definition& one : definitions())
    if (one.type == type) return one;
  return definitions()[0];
}

} // namespace

const char* TarnTypeName(Tarn::ElementType type) { return definition(type).name; }
int NodesPerElement(Tarn::ElementType type) { return definition(type).nodes; }
int NodesPerElement(ElementType type) { return definition(type).nodes; }
int TarnTopologicalDimension(Tarn::ElementType type) { return definition(type).dimension; }
ElementType ElementTypeFromTarnType(Tarn::ElementType type) { return definition(type).type; }
unsigned char NumSides(ElementType type) { return static_cast<unsigned char>(definition(type).sides.size()); }

unsigned char NodesPerSide(ElementType type, int side) {
  return static_cast<unsigned char>(side < NumSides(type) ? definition(type).sides[side].size() : 0);
}

const std::uint32_t* SidesetNodeIndices(ElementType type, int side) {
  return side < NumSides(type) ? definition(type).sides[side].data() : nullptr;
}

ElementType SideBaseElementType(ElementType type, int side) {
  const int nodes = NodesPerSide(type, side);
  return nodes == 3 ? Triangle : nodes == 4 ? Quadrilateral : NoElement;
}

} // namespace MDBDefines

// ------------------------------------------------------------------------------------------------ clipping

struct MeshClipper::Private {
  Tarn::MeshData* database;
  std::array<std::vector<Tarn::Handle<1>>, 10> elements;
  std::vector<Tarn::Handle<0>> nodes;
  TovanVector origin, normal;
  bool clipped = false;

  bool is_beyond(Tarn::Handle<0> node) const {
    TovanVector at;
    database->get_node_coordinates(node, &at.x, &at.y, &at.z);
    return (at.x - origin.x) * normal.x + (at.y - origin.y) * normal.y + (at.z - origin.z) * normal.z < 0;
  }

  bool is_beyond(Tarn::Handle<1> element) const {
    std::array<Tarn::Handle<0>, 27> corners;
    Tarn::MeshData::Count count = corners.size();
    if (database->get_element_connectivity(element, &count, corners.data()) != 0) return false;
    return std::all_of(corners.begin(), corners.begin() + count, [this](auto node) { return is_beyond(node); });
  }

  template <class H> std::vector<bool> flags(const std::vector<H>& entities) const {
    std::vector<bool> result;
    for (const H& entity : entities)
      result.push_back(clipped && is_beyond(entity));
    return result;
  }
};

MeshClipper::MeshClipper(Tarn::MeshData* database) : d(new Private{database, {}, {}, {}, {}}) {}
MeshClipper::~MeshClipper() = default;
void MeshClipper::setMesh(Tarn::ElementType type, const std::vector<Tarn::Handle<1>>& elements) {
  if (type > 0 && type <= 9) d->elements[type] = elements;
}
void MeshClipper::setNodes(const std::vector<Tarn::Handle<0>>& nodes) { d->nodes = nodes; }
void MeshClipper::setPlane(const TovanVector& origin, const TovanVector& normal) {
  d->origin = origin;
  d->normal = normal;
}
bool MeshClipper::clipMesh() { return d->clipped = d->normal.distance_between(TovanVector()) > 0; }
std::vector<bool> MeshClipper::getClippedFlag(Tarn::ElementType type) {
  return type <= 9 ? d->flags(d->elements[type]) : std::vector<bool>();
}
std::vector<bool> MeshClipper::getClippedNodesFlag() { return d->flags(d->nodes); }

// ------------------------------------------------------------------------------------------------ skin

struct SideToElement::Private {
  struct Solid {
    Tarn::Handle<1> element;
    int position;
  };
  Tarn::MeshData* database;
  std::vector<Solid> solids;
};

SideToElement::SideToElement(Tarn::MeshData* database) : d(new Private{database, {}}) {}
SideToElement::~SideToElement() = default;
void SideToElement::add_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions) {
  for (std::size_t i = 0; i < elements.size(); ++i)
    d->solids.push_back({elements[i], positions[i]});
}

struct MeshSkinner::Private {
  struct Record {
    Side side;
    std::vector<Tarn::Handle<0>> nodes;
  };
  using Key = std::vector<Tarn::Handle<0>>;

  SideToElement::Private* solids;
  std::vector<Record> shells, skin;

  Key connectivity(Tarn::Handle<1> element) const {
    Key nodes(27);
    Tarn::MeshData::Count count = nodes.size();
    if (solids->database->get_element_connectivity(element, &count, nodes.data()) != 0) count = 0;
    nodes.resize(count);
    return nodes;
  }

  static Key key(Key nodes) {
    std::sort(nodes.begin(), nodes.end());
    return nodes;
  }

  static Record record(Key nodes, Tarn::Handle<1> element, int position) {
    const int count = static_cast<int>(nodes.size());
    return {{count, count, nullptr, element, position}, std::move(nodes)};
  }

  std::vector<Record> sides_of_solids() const {
    std::vector<Record> sides;
    for (const auto& solid : solids->solids) {
      Tarn::ElementType type = Tarn::None;
      solids->database->get_element_type(solid.element, &type);
      const auto kind = MDBDefines::ElementTypeFromTarnType(type);
      const Key nodes = connectivity(solid.element);
      for (int side = 0; side < MDBDefines::NumSides(kind); ++side) {
        Key corners;
        for (int i = 0; i < MDBDefines::NodesPerSide(kind, side); ++i)
          corners.push_back(nodes[MDBDefines::SidesetNodeIndices(kind, side)[i]]);
        sides.push_back(record(std::move(corners), solid.element, solid.position));
      }
    }
    return sides;
  }
};

MeshSkinner::MeshSkinner(SideToElement* solids) : d(new Private{solids->d.get(), {}, {}}) {}
MeshSkinner::~MeshSkinner() = default;

bool MeshSkinner::add_skin_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions) {
  for (std::size_t i = 0; i < elements.size(); ++i)
    d->shells.push_back(Private::record(d->connectivity(elements[i]), elements[i], positions[i]));
  return !elements.empty();
}

std::vector<Side*> MeshSkinner::getMeshSkin() {
  d->skin = d->shells;
  const auto sides = d->sides_of_solids();
  std::map<Private::Key, int> seen;
  for (const auto& side : sides)
    ++seen[Private::key(side.nodes)];
  for (const auto& shell : d->shells)
    seen[Private::key(shell.nodes)] = 0;
  for (const auto& side : sides)
    if (seen[Private::key(side.nodes)] == 1) d->skin.push_back(side);

  std::vector<Side*> result;
  for (auto& record : d->skin) {
    record.side.nodes = record.nodes.data();
    result.push_back(&record.side);
  }
  return result;
}
