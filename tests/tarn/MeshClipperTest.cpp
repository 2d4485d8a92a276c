#include "mesh/database/MeshClipper.h"

#include "mesh/database/MeshData.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"
#include "tests/tarn/RandomMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using test_support::NamedMesh;
using test_support::RecordingMeshData;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

TEST(MeshClipper, GivenNodesBesideAPlane_WhenClipped_ThenThoseTheNormalPointsAwayFromAre) {
  NamedMesh mesh = test_support::lone_nodes(5); // x = 0 to 4
  MeshClipper clipper(mesh.database.get());
  clipper.setNodes({mesh.nodes[4], mesh.nodes[1], mesh.nodes[2], mesh.nodes[0], mesh.nodes[1]});

  clipper.setPlane({2, 7, -3}, {1, 0, 0});
  EXPECT_TRUE(clipper.clipMesh());
  EXPECT_THAT(clipper.getClippedNodesFlag(), ElementsAre(false, true, false, true, true)) << "on the plane is kept";

  clipper.setPlane({2, 7, -3}, {-0.001, 0, 0});
  EXPECT_TRUE(clipper.clipMesh());
  EXPECT_THAT(clipper.getClippedNodesFlag(), ElementsAre(true, false, false, false, false)) << "any length will do";
}

TEST(MeshClipper, GivenElementsOfEveryKind_WhenThePlaneCrossesThem_ThenTheyStayWhole) {
  for (const bool quadratic : {false, true}) {
    const NamedMesh mesh = quadratic ? test_support::each_quadratic_kind() : test_support::each_linear_kind();
    MeshClipper clipper(mesh.database.get());
    for (std::uint32_t type = 1; type <= 9; ++type)
      clipper.setMesh(static_cast<Tarn::ElementType>(type), mesh.mesh.elements[type]);
    std::size_t crossed = 0;
    for (double x = -0.75; x < 40; x += 0.5) {
      clipper.setPlane({x, 0, 0}, {1, 0, 0});
      ASSERT_TRUE(clipper.clipMesh());
      for (std::uint32_t type = 1; type <= 9; ++type) {
        for (std::size_t i = 0; i < mesh.mesh.elements[type].size(); ++i) {
          Node nodes[40];
          std::uint64_t count = 40;
          mesh.database->get_element_connectivity(mesh.mesh.elements[type][i], &count, nodes);
          std::size_t below = 0;
          for (std::uint64_t k = 0; k < count; ++k) {
            double at[3];
            mesh.database->get_node_coordinates(nodes[k], at, at + 1, at + 2);
            below += at[0] < x;
          }
          crossed += below != 0 && below != count;
          EXPECT_EQ(clipper.getClippedFlag(static_cast<Tarn::ElementType>(type))[i], below == count)
              << type << " at " << x;
        }
      }
    }
    EXPECT_GT(crossed, 5u);
  }
}

struct PlaneRow {
  const char* name;
  TovanVector origin;
  TovanVector normal;
};

TEST(MeshClipper, GivenNoPlaneOrOneWithoutDirection_WhenClipped_ThenItSaysNoAndAllFlagsAreClear) {
  NamedMesh mesh = test_support::one_hex();
  MeshClipper clipper(mesh.database.get());
  clipper.setMesh(Tarn::Hex, mesh.mesh.elements[Tarn::Hex]);
  clipper.setNodes(mesh.nodes);
  EXPECT_FALSE(clipper.clipMesh()) << "no plane";
  const PlaneRow rows[] = {{"zero", {9, 9, 9}, {0, 0, 0}},
                           {"not a number", {9, 9, 9}, {not_a_number, 0, 1}},
                           {"infinite", {9, 9, 9}, {0, infinite, 0}},
                           {"nowhere", {not_a_number, 9, 9}, {1, 0, 0}}};
  for (const PlaneRow& row : rows) {
    SCOPED_TRACE(row.name);
    clipper.setPlane({9, 9, 9}, {1, 1, 1});
    ASSERT_TRUE(clipper.clipMesh());
    ASSERT_THAT(clipper.getClippedNodesFlag(), Each(true));
    ASSERT_THAT(clipper.getClippedFlag(Tarn::Hex), ElementsAre(true));

    clipper.setPlane(row.origin, row.normal);

    EXPECT_FALSE(clipper.clipMesh());
    EXPECT_THAT(clipper.getClippedNodesFlag(), testing::AllOf(testing::SizeIs(8), Each(false)));
    EXPECT_THAT(clipper.getClippedFlag(Tarn::Hex), ElementsAre(false));
  }
}

TEST(MeshClipper, GivenTinyAndHugeNormals_WhenClipped_ThenTheyPointAllTheSame) {
  NamedMesh mesh = test_support::lone_nodes(3);
  for (const double length : {1e-300, 1e300}) {
    MeshClipper clipper(mesh.database.get());
    clipper.setNodes(mesh.nodes);
    clipper.setPlane({1, 0, 0}, {length, 0, 0});
    EXPECT_TRUE(clipper.clipMesh());
    EXPECT_THAT(clipper.getClippedNodesFlag(), ElementsAre(true, false, false)) << length;
  }
}

TEST(MeshClipper, GivenKindsThatWereNotSet_WhenAskedForFlags_ThenThereAreNone) {
  NamedMesh mesh = test_support::each_linear_kind();
  MeshClipper clipper(mesh.database.get());
  clipper.setMesh(Tarn::None, mesh.mesh.elements[Tarn::Hex]);
  clipper.setMesh(static_cast<Tarn::ElementType>(10), mesh.mesh.elements[Tarn::Hex]);
  clipper.setMesh(Tarn::Tet, mesh.mesh.elements[Tarn::Tet]);
  EXPECT_THAT(clipper.getClippedFlag(Tarn::Tet), ElementsAre(false)) << "before clipping";
  clipper.setPlane({1000, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  for (const std::uint32_t type : {0u, 1u, 2u, 6u, 9u, 10u, 0xffffffffu})
    EXPECT_THAT(clipper.getClippedFlag(static_cast<Tarn::ElementType>(type)), IsEmpty());
  EXPECT_THAT(clipper.getClippedNodesFlag(), IsEmpty());
  EXPECT_THAT(clipper.getClippedFlag(Tarn::Tet), ElementsAre(true));
}

TEST(MeshClipper, GivenAListReplacedAfterClipping_WhenAskedForFlags_ThenTheyAreClearAndAsLong) {
  NamedMesh mesh = test_support::hex_block(3, 1, 1);
  MeshClipper clipper(mesh.database.get());
  const auto& hexes = mesh.mesh.elements[Tarn::Hex];
  clipper.setMesh(Tarn::Hex, hexes);
  clipper.setPlane({1000, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  clipper.setMesh(Tarn::Hex, {hexes[0], hexes[1]});
  EXPECT_THAT(clipper.getClippedFlag(Tarn::Hex), ElementsAre(false, false));
}

TEST(MeshClipper, GivenEntitiesThatCannotBeRead_WhenClipped_ThenTheyAreKept) {
  NamedMesh mesh = test_support::two_hexes();
  RecordingMeshData database(*mesh.database);
  const auto& hexes = mesh.mesh.elements[Tarn::Hex];
  database.lose(hexes[0]);
  database.lose(mesh.nodes[3]);
  MeshClipper clipper(&database);
  clipper.setMesh(Tarn::Hex, {hexes[0], hexes[1], {}});
  clipper.setNodes({mesh.nodes[2], mesh.nodes[3], {}});
  clipper.setPlane({1000, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  EXPECT_THAT(clipper.getClippedFlag(Tarn::Hex), ElementsAre(false, true, false));
  EXPECT_THAT(clipper.getClippedNodesFlag(), ElementsAre(true, false, false));
  for (const char* const operation : {"get_coordinate_arrays", "get_connectivity"}) {
    database.answer_well();
    database.fail(operation);
    ASSERT_TRUE(clipper.clipMesh());
    EXPECT_THAT(clipper.getClippedFlag(Tarn::Hex), Each(false)) << operation;
  }
}

TEST(MeshClipper, GivenNodesWithoutAPlace_WhenClipped_ThenOnlyTheOthersDecide) {
  NamedMesh mesh;
  for (const double x : {0.0, 1.0, 2.0, not_a_number, not_a_number, not_a_number})
    mesh.add_node(x, 0, 0);
  const Elem partly = mesh.add_element(Tarn::Tri, {0, 1, 3});
  const Elem not_at_all = mesh.add_element(Tarn::Tri, {3, 4, 5});
  const Elem across = mesh.add_element(Tarn::Tri, {0, 2, 3});
  MeshClipper clipper(mesh.database.get());
  clipper.setMesh(Tarn::Tri, {partly, not_at_all, across});
  clipper.setPlane({1.5, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  EXPECT_THAT(clipper.getClippedFlag(Tarn::Tri), ElementsAre(true, false, false));
}

TEST(MeshClipper, GivenManyElements_WhenClipped_ThenTheDatabaseIsAskedInBulk) {
  NamedMesh mesh = test_support::hex_block(20, 20, 20);
  RecordingMeshData database(*mesh.database);
  MeshClipper clipper(&database);
  clipper.setMesh(Tarn::Hex, mesh.mesh.elements[Tarn::Hex]);
  clipper.setNodes(mesh.nodes);
  clipper.setPlane({10, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  EXPECT_LT(database.calls().size(), 40u);
  const auto flags = clipper.getClippedFlag(Tarn::Hex);
  EXPECT_EQ(std::count(flags.begin(), flags.end(), true), 9 * 20 * 20) << "the tenth touches the plane";
}

/// Superelements on nodes 0 to n - 1 in a row.
NamedMesh superelements(const std::vector<int>& node_counts) {
  NamedMesh mesh;
  std::vector<int> nodes(static_cast<std::size_t>(*std::max_element(node_counts.begin(), node_counts.end())));
  std::iota(nodes.begin(), nodes.end(), 0);
  for (const int x : nodes)
    mesh.add_node(x, 0, 0);
  for (const int count : node_counts)
    mesh.add_element(Tarn::Superelement, {nodes.begin(), nodes.begin() + count});
  return mesh;
}

TEST(MeshClipper, GivenSuperelementsOfAnySize_WhenClipped_ThenEveryNodeCounts) {
  const std::vector<int> node_counts = {1, 7, 8, 9, 10, 71, 72, 73, 575, 576, 577, 700};
  const NamedMesh mesh = superelements(node_counts);
  MeshClipper clipper(mesh.database.get());
  clipper.setMesh(Tarn::Superelement, mesh.mesh.elements[Tarn::Superelement]);
  for (const int count : node_counts) {
    clipper.setPlane({count - 1.5, 0, 0}, {1, 0, 0}); // the last node of this one and of longer ones is kept
    ASSERT_TRUE(clipper.clipMesh());
    const auto flags = clipper.getClippedFlag(Tarn::Superelement);
    for (std::size_t i = 0; i < node_counts.size(); ++i)
      EXPECT_EQ(flags[i], node_counts[i] < count) << node_counts[i] << " nodes, plane before node " << count - 1;
  }
}

TEST(MeshClipper, GivenOneHugeSuperelementAmongMany_WhenClipped_ThenFewNodesAreAskedForAtOnce) {
  std::vector<int> node_counts(3000, 5);
  node_counts.push_back(50000);
  const NamedMesh mesh = superelements(node_counts);
  RecordingMeshData database(*mesh.database);
  MeshClipper clipper(&database);
  clipper.setMesh(Tarn::Superelement, mesh.mesh.elements[Tarn::Superelement]);
  clipper.setPlane({60000, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  EXPECT_THAT(clipper.getClippedFlag(Tarn::Superelement), Each(true));
  std::int64_t asked_for = 0;
  for (const auto& call : database.calls("get_connectivity")) {
    EXPECT_LE(call.numbers.front(), 50000);
    asked_for += call.numbers.front();
  }
  EXPECT_LT(asked_for, 150000) << "the small ones are not filled up to the huge one's size";
}

TEST(MeshClipper, GivenLinearElements_WhenClipped_ThenOnlyTheirCornersAreRead) {
  const NamedMesh mesh = test_support::hex_block(5, 5, 5);
  RecordingMeshData database(*mesh.database);
  MeshClipper clipper(&database);
  clipper.setMesh(Tarn::Hex, mesh.mesh.elements[Tarn::Hex]);
  clipper.setPlane({1000, 0, 0}, {1, 0, 0});
  ASSERT_TRUE(clipper.clipMesh());

  ASSERT_EQ(database.count("get_connectivity"), 1u);
  EXPECT_THAT(database.calls("get_connectivity")[0].numbers, ElementsAre(125 * 9)) << "one more tells them from others";
  ASSERT_EQ(database.count("get_coordinate_arrays"), 1u);
  EXPECT_EQ(database.calls("get_coordinate_arrays")[0].handles.size(), 125u * 8);
}

TEST(MeshClipper, GivenRandomMeshesAndPlanes_WhenClipped_ThenFlagsAreThoseOfTheDefinition) {
  using namespace tarn_test;
  std::size_t clipped = 0, kept = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> any(-1, 1);
    RandomMesh mesh(seed, static_cast<HandleStyle>(seed % 4));
    mesh.scatter_elements(40, 200);
    for (auto& node : mesh.database.nodes)
      node.second = {any(random), any(random), any(random)};
    const double origin[3] = {any(random), any(random), any(random)};
    const double normal[3] = {any(random), any(random), any(random)};
    const auto distance = [&](Node node) {
      const auto& at = mesh.database.nodes.at(node.value);
      return (at[0] - origin[0]) * normal[0] + (at[1] - origin[1]) * normal[1] + (at[2] - origin[2]) * normal[2];
    };
    for (const HandleList& list : mesh.solids) {
      const Tarn::ElementType type = mesh.database.elements.at(list.front().value).type;
      MeshClipper clipper(&mesh.database);
      clipper.setMesh(type, list);
      clipper.setPlane(TovanVector(origin), TovanVector(normal));
      ASSERT_TRUE(clipper.clipMesh());
      const auto flags = clipper.getClippedFlag(type);
      ASSERT_EQ(flags.size(), list.size());
      for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& nodes = mesh.database.elements.at(list[i].value).nodes;
        const bool expected = std::all_of(nodes.begin(), nodes.end(), [&](Node node) { return distance(node) < 0; });
        ASSERT_EQ(flags[i], expected);
        ++(expected ? clipped : kept);
      }
    }
  }
  EXPECT_GT(clipped, 300u);
  EXPECT_GT(kept, 300u);
}

} // namespace
