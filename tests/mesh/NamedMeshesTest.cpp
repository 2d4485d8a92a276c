// The meshes that other tests are built on are what their names say.

#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

namespace {

using namespace test_support;

std::vector<std::array<double, 3>> corners(const NamedMesh& mesh, Tarn::Handle<1> element) {
  Tarn::MeshData::Count count = 27;
  Tarn::Handle<0> nodes[27];
  EXPECT_EQ(mesh.database->get_element_connectivity(element, &count, nodes), 0);
  std::vector<std::array<double, 3>> result(count);
  for (std::size_t i = 0; i < count; ++i)
    mesh.database->get_node_coordinates(nodes[i], &result[i][0], &result[i][1], &result[i][2]);
  return result;
}

// Six times the volume of the tetrahedron on four points; positive when the fourth is where the normal points.
double volume(const std::array<double, 3>& a, const std::array<double, 3>& b, const std::array<double, 3>& c,
              const std::array<double, 3>& d) {
  double u[3], v[3], w[3];
  for (std::size_t i = 0; i < 3; ++i) {
    u[i] = b[i] - a[i];
    v[i] = c[i] - a[i];
    w[i] = d[i] - a[i];
  }
  return u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0]) + u[2] * (v[0] * w[1] - v[1] * w[0]);
}

TEST(NamedMeshes, GivenEachMesh_WhenCounted_ThenItHoldsWhatItsNameSays) {
  struct Row {
    const char* name;
    NamedMesh mesh;
    std::size_t nodes;
    Tarn::ElementType type;
    std::size_t elements;
  };
  Row rows[] = {{"one_hex", one_hex(), 8, Tarn::Hex, 1},
                {"two_hexes", two_hexes(), 12, Tarn::Hex, 2},
                {"hex_block", hex_block(2, 3, 4), 3 * 4 * 5, Tarn::Hex, 24},
                {"tet_block", tet_block(1, 2, 1), 2 * 3 * 2, Tarn::Tet, 12},
                {"quad_sheet", quad_sheet(3, 2), 12, Tarn::Quad, 6},
                {"edge_chain", edge_chain(4), 5, Tarn::Edge, 4},
                {"quadratic wedge", one_element(Tarn::Wedge, 15), 15, Tarn::Wedge, 1}};
  for (const Row& row : rows) {
    EXPECT_EQ(row.mesh.nodes.size(), row.nodes) << row.name;
    EXPECT_EQ(row.mesh.database->node_count(), row.nodes) << row.name;
    EXPECT_EQ(row.mesh.mesh.elements[row.type].size(), row.elements) << row.name;
    EXPECT_EQ(static_cast<std::size_t>(row.mesh.mesh.size()), row.elements) << row.name;
    EXPECT_EQ(row.mesh.database->element_count(row.type), row.elements) << row.name;
  }
  EXPECT_EQ(lone_nodes(3).nodes.size(), 3u);
  EXPECT_TRUE(lone_nodes(3).mesh.empty());
}

TEST(NamedMeshes, GivenEachKind_WhenListed_ThenThereIsOneElementOfEachWithItsNodeCount) {
  const std::size_t linear[] = {0, 1, 2, 3, 4, 4, 8, 6, 5, 3};
  const std::size_t quadratic[] = {0, 1, 3, 6, 8, 10, 20, 15, 13, 5};
  const NamedMesh first = each_linear_kind();
  const NamedMesh second = each_quadratic_kind();
  for (std::size_t type = 1; type < 10; ++type) {
    ASSERT_EQ(first.mesh.elements[type].size(), 1u);
    ASSERT_EQ(second.mesh.elements[type].size(), 1u);
    EXPECT_EQ(corners(first, first.mesh.elements[type][0]).size(), linear[type]);
    EXPECT_EQ(corners(second, second.mesh.elements[type][0]).size(), quadratic[type]);
  }
}

TEST(NamedMeshes, GivenTheSolids_WhenMeasured_ThenTheirFirstFacePointsTheWayOfItsKind) {
  // A tetrahedron's, hexahedron's and pyramid's first face faces the rest; a wedge's faces away from it.
  const auto first_face = [](Tarn::ElementType type, std::size_t apex) {
    const NamedMesh mesh = one_element(type, linear_node_count(type));
    const auto points = corners(mesh, mesh.mesh.elements[type][0]);
    return volume(points[0], points[1], points[2], points[apex]);
  };
  EXPECT_GT(first_face(Tarn::Tet, 3), 0);
  EXPECT_GT(first_face(Tarn::Hex, 4), 0);
  EXPECT_GT(first_face(Tarn::Pyramid, 4), 0);
  EXPECT_LT(first_face(Tarn::Wedge, 3), 0);
}

TEST(NamedMeshes, GivenTheTetBlock_WhenMeasured_ThenItFillsItsCubes) {
  const NamedMesh mesh = tet_block(2, 1, 1);
  double total = 0;
  for (const auto tet : mesh.mesh.elements[Tarn::Tet]) {
    const auto points = corners(mesh, tet);
    const double six_volumes = volume(points[0], points[1], points[2], points[3]);
    EXPECT_GT(six_volumes, 0);
    total += six_volumes / 6;
  }
  EXPECT_DOUBLE_EQ(total, 2);
}

TEST(NamedMeshes, GivenTheHexWithItsSkin_WhenCompared_ThenEachQuadFacesOutwards) {
  const NamedMesh mesh = one_hex_and_its_skin();
  ASSERT_EQ(mesh.mesh.elements[Tarn::Quad].size(), 6u);
  std::set<std::array<double, 3>> used;
  for (const auto quad : mesh.mesh.elements[Tarn::Quad]) {
    const auto points = corners(mesh, quad);
    ASSERT_EQ(points.size(), 4u);
    EXPECT_LT(volume(points[0], points[1], points[2], {0.5, 0.5, 0.5}), 0);
    used.insert(points.begin(), points.end());
  }
  EXPECT_EQ(used.size(), 8u);
}

TEST(NamedMeshes, GivenAQuadraticHex_WhenLookedAt_ThenMidSideNodesLieOnTheirEdges) {
  const NamedMesh mesh = one_element(Tarn::Hex, 27);
  const auto points = corners(mesh, mesh.mesh.elements[Tarn::Hex][0]);
  ASSERT_EQ(points.size(), 27u);
  EXPECT_THAT(points[8], ::testing::ElementsAre(0.5, 0, 0));
  EXPECT_THAT(points[15], ::testing::ElementsAre(0, 0.5, 1));
  EXPECT_THAT(points[18], ::testing::ElementsAre(1, 1, 0.5));
  EXPECT_THAT(points[20], ::testing::ElementsAre(0, 0.5, 0.5));
  EXPECT_THAT(points[25], ::testing::ElementsAre(0.5, 0.5, 1));
  EXPECT_THAT(points[26], ::testing::ElementsAre(0.5, 0.5, 0.5));
}

} // namespace
