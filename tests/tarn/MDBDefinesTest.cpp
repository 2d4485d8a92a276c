#include "mesh/database/MDBDefines.h"

#include "reference/tarn/MeshDatabase.h"
#include "tests/support/NamedMeshes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <set>

namespace {

using namespace MDBDefines;
using Place = std::array<double, 3>;

struct KindRow {
  Tarn::ElementType type;
  const char* name;
  ElementType shape;
  int nodes;
  int dimension;
  int sides;
};

const KindRow kinds[] = {
    {Tarn::None, "None", NoElement, 0, 0, 0},     {Tarn::OneNode, "OneNode", Point, 1, 0, 0},
    {Tarn::Edge, "Edge", Bar, 2, 1, 0},           {Tarn::Tri, "Tri", Triangle, 3, 2, 0},
    {Tarn::Quad, "Quad", Quadrilateral, 4, 2, 0}, {Tarn::Tet, "Tet", Tetrahedron, 4, 3, 4},
    {Tarn::Hex, "Hex", Hexahedron, 8, 3, 6},      {Tarn::Wedge, "Wedge", Prism, 6, 3, 5},
    {Tarn::Pyramid, "Pyramid", Pyramid, 5, 3, 5}, {Tarn::Superelement, "Superelement", Super, 1, 3, 0},
};

TEST(MDBDefines, GivenEachKind_WhenAsked_ThenTheTablesSayWhatItIs) {
  int asked = 0;
  for (const KindRow& row : kinds) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(static_cast<int>(row.type), asked++);
    EXPECT_STREQ(TarnTypeName(row.type), row.name);
    EXPECT_EQ(ElementTypeFromTarnType(row.type), row.shape);
    EXPECT_EQ(NodesPerElement(row.type), row.nodes);
    EXPECT_EQ(NodesPerElement(row.shape), row.nodes);
    EXPECT_EQ(TarnTopologicalDimension(row.type), row.dimension);
    EXPECT_EQ(NumSides(row.shape), row.sides);
  }
  EXPECT_EQ(asked, 10);
  EXPECT_EQ(Triangle, 11u);
  EXPECT_EQ(Quadrilateral, 25u);
}

TEST(MDBDefines, GivenValuesThatAreNoKind_WhenAsked_ThenThereIsNothing) {
  for (const std::uint32_t value : {10u, 255u, 0xffffffffu}) {
    const auto type = static_cast<Tarn::ElementType>(value);
    EXPECT_STREQ(TarnTypeName(type), "");
    EXPECT_EQ(NodesPerElement(type), 0);
    EXPECT_EQ(TarnTopologicalDimension(type), 0);
    EXPECT_EQ(ElementTypeFromTarnType(type), NoElement);
  }
  for (const std::uint32_t value : {3u, 10u, 26u, 35u, 41u, 0xffffffffu}) {
    const auto shape = static_cast<ElementType>(value);
    EXPECT_EQ(NodesPerElement(shape), 0);
    EXPECT_EQ(NumSides(shape), 0);
    EXPECT_EQ(NodesPerSide(shape, 0), 0);
    EXPECT_EQ(SidesetNodeIndices(shape, 0), nullptr);
    EXPECT_EQ(SideBaseElementType(shape, 0), NoElement);
  }
}

TEST(MDBDefines, GivenSidesThatThereAreNot_WhenAsked_ThenThereIsNothing) {
  for (const KindRow& row : kinds)
    for (const int side : {-1, row.sides, 255, 256}) {
      EXPECT_EQ(NodesPerSide(row.shape, side), 0);
      EXPECT_EQ(SidesetNodeIndices(row.shape, side), nullptr);
      EXPECT_EQ(SideBaseElementType(row.shape, side), NoElement);
    }
}

TEST(MDBDefines, GivenTheSolids_WhenAskedForSides_ThenTheyAreVtksFaces) {
  using Sides = std::vector<std::vector<std::uint32_t>>;
  const std::vector<std::pair<ElementType, Sides>> expected = {
      {Tetrahedron, {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}, {0, 2, 1}}},
      {Hexahedron, {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}}},
      {Prism, {{0, 1, 2}, {3, 5, 4}, {0, 3, 4, 1}, {1, 4, 5, 2}, {2, 5, 3, 0}}},
      {Pyramid, {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}}};
  for (const auto& solid : expected) {
    ASSERT_EQ(NumSides(solid.first), solid.second.size());
    for (int side = 0; side < NumSides(solid.first); ++side) {
      const auto& nodes = solid.second[static_cast<std::size_t>(side)];
      ASSERT_EQ(NodesPerSide(solid.first, side), nodes.size());
      EXPECT_EQ(SideBaseElementType(solid.first, side), nodes.size() == 3 ? Triangle : Quadrilateral);
      const std::uint32_t* const given = SidesetNodeIndices(solid.first, side);
      EXPECT_EQ(std::vector<std::uint32_t>(given, given + nodes.size()), nodes) << solid.first << " side " << side;
    }
  }
}

struct SolidRow {
  const char* name;
  Tarn::ElementType type;
  std::vector<Place> corners;
};

// The corners as VTK's reference cells have them; a wedge's first triangle turns its normal away from the second.
const SolidRow solids[] = {
    {"tet", Tarn::Tet, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {"hex", Tarn::Hex, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}},
    {"wedge", Tarn::Wedge, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}, {1, 0, 1}}},
    {"pyramid", Tarn::Pyramid, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}}},
};

Place minus(const Place& a, const Place& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
Place cross(const Place& a, const Place& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double dot(const Place& a, const Place& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

TEST(MDBDefines, GivenTheSolids_WhenSidesAreDrawn_ThenNormalsPointOutAndEveryEdgeIsCoveredBothWays) {
  for (const SolidRow& row : solids) {
    SCOPED_TRACE(row.name);
    const ElementType shape = ElementTypeFromTarnType(row.type);
    ASSERT_EQ(static_cast<int>(row.corners.size()), NodesPerElement(row.type));
    std::set<std::pair<std::uint32_t, std::uint32_t>> edges;
    for (int side = 0; side < NumSides(shape); ++side) {
      const std::uint32_t* const nodes = SidesetNodeIndices(shape, side);
      const int count = NodesPerSide(shape, side);
      const Place normal = cross(minus(row.corners[nodes[1]], row.corners[nodes[0]]),
                                 minus(row.corners[nodes[2]], row.corners[nodes[0]]));
      int on_side = 0;
      for (const Place& corner : row.corners) {
        const double height = dot(normal, minus(corner, row.corners[nodes[0]]));
        EXPECT_LE(height, 0.0) << "side " << side;
        on_side += height == 0.0;
      }
      EXPECT_EQ(on_side, count);
      for (int k = 0; k < count; ++k)
        EXPECT_TRUE(edges.emplace(nodes[k], nodes[(k + 1) % count]).second);
    }
    for (const auto& edge : edges)
      EXPECT_EQ(edges.count({edge.second, edge.first}), 1u);
  }
}

TEST(MDBDefines, GivenSuperelements_WhenTheyComeAndGo_ThenTheirNodeCountIsTheLargestOfAllDatabases) {
  EXPECT_EQ(NodesPerElement(Tarn::Superelement), 1);
  {
    Tarn::MeshDatabase a;
    const double xyz[30] = {};
    const auto first = a.add_nodes(10, xyz);
    std::vector<Tarn::Handle<0>> nodes;
    for (std::uint64_t i = 0; i < 10; ++i)
      nodes.push_back({first.value + i});
    const auto seven = a.add_elements(Tarn::Superelement, 7, 1, nodes.data());
    a.add_elements(Tarn::Superelement, 3, 2, nodes.data());
    EXPECT_EQ(NodesPerElement(Tarn::Superelement), 7);
    EXPECT_EQ(NodesPerElement(Super), 7);
    {
      test_support::NamedMesh b = test_support::one_element(Tarn::Superelement, 12);
      EXPECT_EQ(NodesPerElement(Tarn::Superelement), 12);
    }
    EXPECT_EQ(NodesPerElement(Tarn::Superelement), 7);
    EXPECT_TRUE(a.delete_elements(1, &seven));
    EXPECT_EQ(NodesPerElement(Tarn::Superelement), 3);
  }
  EXPECT_EQ(NodesPerElement(Tarn::Superelement), 1);
}

} // namespace
