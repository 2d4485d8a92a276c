#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double tolerance = 0.5;
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

struct NodeAt {
  const char* name;
  double x, y, z;
  bool is_hit;
  bool is_exact;
};

class RayNodes : public testing::TestWithParam<NodeAt> {};

// The ray runs from (0, 0, 0) to (8, 0, 0).
TEST_P(RayNodes, GivenANodeNearTheRay_WhenPicked_ThenEachAxisDecidesByItself) {
  const NodeAt& at = GetParam();
  test_support::NamedMesh mesh;
  const Node node = mesh.add_node(at.x, at.y, at.z);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(tolerance);
  Ray ray{0, 0, 0, 8, 0, 0};
  NodeHits hits;
  EXPECT_TRUE(picker.pickEntities(Nodes{node}, ray.data(), hits));
  ASSERT_EQ(hits.size(), at.is_hit ? 1u : 0u);
  if (!at.is_hit) return;
  EXPECT_EQ(hits[0].handle, node);
  EXPECT_THAT(hits[0].point, ElementsAre(at.x, at.y, at.z)) << "the node's own place";
  EXPECT_EQ(hits[0].is_exact, at.is_exact);
}

INSTANTIATE_TEST_SUITE_P(
    Places, RayNodes,
    testing::Values(NodeAt{"on_it", 3, 0, 0, true, true}, NodeAt{"at_its_begin", 0, 0, 0, true, true},
                    NodeAt{"at_its_end", 8, 0, 0, true, true}, NodeAt{"just_before", -0.001, 0, 0, false, false},
                    NodeAt{"just_beyond", 8.001, 0, 0, false, false},
                    NodeAt{"at_the_tolerance_in_y", 3, 0.5, 0, true, false},
                    NodeAt{"at_the_tolerance_below", 3, -0.5, 0, true, false},
                    NodeAt{"at_the_tolerance_in_z", 3, 0, 0.5, true, false},
                    NodeAt{"beyond_it_in_y", 3, 0.501, 0, false, false},
                    NodeAt{"beyond_it_in_z", 3, 0, -0.501, false, false},
                    NodeAt{"far_but_not_on_one_axis", 3, 0.45, 0.45, true, false},
                    NodeAt{"exact_to_a_tenth", 3, 0.05, -0.05, true, true},
                    NodeAt{"no_longer_exact_in_y", 3, 0.0501, 0, true, false},
                    NodeAt{"no_longer_exact_in_z", 3, 0, 0.0501, true, false},
                    NodeAt{"nowhere_in_x", not_a_number, 0, 0, false, false},
                    NodeAt{"nowhere_in_y", 3, not_a_number, 0, false, false},
                    NodeAt{"nowhere_in_z", 3, 0, not_a_number, false, false},
                    NodeAt{"infinitely_far", std::numeric_limits<double>::infinity(), 0, 0, false, false}),
    [](const auto& row) { return std::string(row.param.name); });

// Seen along a diagonal, so that the nearest point of the ray differs from the node in all three coordinates.
TEST(RayNodesAskew, GivenADiagonalRay_WhenOneAxisExceeds_ThenTheNodeIsRejected) {
  struct Row {
    const char* name;
    double off[3]; // at right angles to the ray
    bool is_hit, is_exact;
  };
  const Row rows[] = {{"nine tenths in two axes", {0.45, -0.45, 0}, true, false},
                      {"x exceeds", {0.6, -0.3, -0.3}, false, false},
                      {"y exceeds", {-0.3, 0.6, -0.3}, false, false},
                      {"z exceeds", {-0.3, -0.3, 0.6}, false, false},
                      {"x no longer exact", {0.06, -0.03, -0.03}, true, false},
                      {"all exact", {0.04, -0.02, -0.02}, true, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    test_support::NamedMesh mesh;
    const Node node = mesh.add_node(2 + row.off[0], 2 + row.off[1], 2 + row.off[2]);
    PickInterface picker(mesh.database.get());
    picker.setTolerance(tolerance);
    Ray ray{0, 0, 0, 4, 4, 4};
    NodeHits hits;
    picker.pickEntities(Nodes{node}, ray.data(), hits);
    ASSERT_EQ(hits.size(), row.is_hit ? 1u : 0u);
    if (row.is_hit) {
      EXPECT_EQ(hits[0].is_exact, row.is_exact);
    }
  }
}

TEST(RayNodesAskew, GivenNineTenthsOfTheToleranceOnAllAxes_WhenPicked_ThenItIsAHit) {
  test_support::NamedMesh mesh;
  const Node node = mesh.add_node(0.9, 0.9, -0.9);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(1.0);
  Ray ray{-1, 1, 0, 1, -1, 0}; // passes the origin at right angles to the node
  NodeHits hits;
  picker.pickEntities(Nodes{node}, ray.data(), hits);
  EXPECT_THAT(hits, SizeIs(1)) << "1.56 away, but 0.9 on each axis";
}

TEST(RayNodesLists, GivenNoTolerance_WhenPicked_ThenOnlyNodesOnTheRayAreHitAndThoseExactly) {
  test_support::NamedMesh mesh;
  const Nodes nodes = {mesh.add_node(1, 0, 0), mesh.add_node(2, 1e-9, 0), mesh.add_node(3, 0, 0)};
  PickInterface picker(mesh.database.get()); // tolerance 0 at first
  Ray ray{0, 0, 0, 4, 0, 0};
  NodeHits hits;
  picker.pickEntities(nodes, ray.data(), hits);
  ASSERT_THAT(values_of(hits), ElementsAreArray(values_of(Nodes{nodes[0], nodes[2]})));
  EXPECT_TRUE(hits[0].is_exact);
  EXPECT_TRUE(hits[1].is_exact);
}

TEST(RayNodesLists, GivenNodesInAnyOrder_WhenPicked_ThenHitsAreAppendedInThatOrderAfterOneCall) {
  test_support::NamedMesh mesh = test_support::lone_nodes(5);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.1);
  Ray ray{-1, 0, 0, 9, 0, 0};
  const Nodes asked = {mesh.nodes[3], mesh.nodes[0], mesh.nodes[3]};
  NodeHits hits = {{mesh.nodes[4], {7, 7, 7}, false}};
  picker.pickEntities(asked, ray.data(), hits);
  EXPECT_THAT(values_of(hits),
              ElementsAreArray(values_of(Nodes{mesh.nodes[4], mesh.nodes[3], mesh.nodes[0], mesh.nodes[3]})));
  ASSERT_THAT(db.operations(), ElementsAre("get_coordinate_arrays"));
  EXPECT_THAT(db.calls()[0].handles, ElementsAreArray(values_of(asked)));
}

TEST(RayNodesLists, GivenARayOfNoLength_WhenPicked_ThenOnlyNonEmptyListsSayFalse) {
  test_support::NamedMesh mesh = test_support::lone_nodes(1);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(1);
  Ray ray{0, 0, 0, 0, 0, 0};
  NodeHits hits = {{mesh.nodes[0], {0, 0, 0}, true}};
  EXPECT_TRUE(picker.pickEntities(Nodes{}, ray.data(), hits));
  EXPECT_FALSE(picker.pickEntities(mesh.nodes, ray.data(), hits));
  EXPECT_THAT(hits, SizeIs(1));
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST(RayNodesLists, GivenARayThatIsNoNumber_WhenPicked_ThenNothingIsHit) {
  test_support::NamedMesh mesh = test_support::lone_nodes(3);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(1);
  for (int i = 0; i < 6; ++i) {
    Ray ray{0, 0, 0, 4, 0, 0};
    ray[std::size_t(i)] = not_a_number;
    NodeHits hits;
    EXPECT_TRUE(picker.pickEntities(mesh.nodes, ray.data(), hits));
    EXPECT_THAT(hits, IsEmpty());
  }
}

// ------------------------------------------------------------------------------------------ vertices of elements

TEST(RayVertices, GivenTwoElementsThatShareNodes_WhenPicked_ThenEachNodeIsListedOnceByHandle) {
  test_support::NamedMesh mesh = test_support::two_hexes();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  Ray ray{1, -1, 0, 1, 3, 0}; // along the side x = 1, z = 0, which both have
  NodeHits hits;
  EXPECT_TRUE(picker.pickVertices(mesh.mesh.elements[Tarn::Hex], ray.data(), hits));
  EXPECT_THAT(values_of(hits), ElementsAreArray(values_of(Nodes{mesh.nodes[1], mesh.nodes[4]})));
  EXPECT_TRUE(hits[0].is_exact);
}

TEST(RayVertices, GivenHitsOfTheCallers_WhenPicked_ThenTheyAreSortedInAndTheInexactOneStays) {
  test_support::NamedMesh mesh = test_support::edge_chain(2);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  Ray ray = down_at(1, 0);
  const Node hit = mesh.nodes[1];
  const Node other = mesh.nodes[0];
  const Node last{~std::uint64_t(0)};
  NodeHits hits = {{last, {9, 9, 9}, true},  {hit, {7, 7, 7}, false},   {other, {3, 3, 3}, true},
                   {other, {4, 4, 4}, true}, {other, {5, 5, 5}, false}, {hit, {8, 8, 8}, false}};
  picker.pickVertices(mesh.mesh.elements[Tarn::Edge], ray.data(), hits);
  ASSERT_THAT(values_of(hits), ElementsAreArray(values_of(Nodes{other, hit, last}))) << "handles are unsigned";
  EXPECT_FALSE(hits[0].is_exact);
  EXPECT_EQ(hits[0].point[0], 5) << "the inexact one";
  EXPECT_FALSE(hits[1].is_exact) << "the pick's own exact hit goes";
  EXPECT_EQ(hits[1].point[0], 7) << "of equal ones the first stays";
  EXPECT_TRUE(hits[2].is_exact);
}

TEST(RayVertices, GivenNoElements_WhenPicked_ThenTheCallersListIsSortedAllTheSame) {
  test_support::NamedMesh mesh;
  PickInterface picker(mesh.database.get());
  Ray ray = down_at(0, 0);
  NodeHits hits = {{{5}, {0, 0, 0}, true}, {{2}, {0, 0, 0}, true}, {{5}, {0, 0, 0}, true}};
  EXPECT_TRUE(picker.pickVertices({}, ray.data(), hits));
  EXPECT_THAT(values_of(hits), ElementsAre(2, 5));
}

TEST(RayVertices, GivenAQuadraticElement_WhenPicked_ThenItsCornersAloneAreAskedFor) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Hex, 27);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(100); // everything is near
  Ray ray{-1, -1, -1, 2, 2, 2};
  NodeHits hits;
  picker.pickVertices(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_node_count", "get_element_vertices", "get_coordinate_arrays"));
  EXPECT_THAT(db.calls("get_element_vertices")[0].numbers, ElementsAre(27)) << "room for every node";
  EXPECT_THAT(db.calls("get_coordinate_arrays")[0].handles, SizeIs(8)) << "as many as there were";
  EXPECT_THAT(values_of(hits), ElementsAreArray(values_of(Nodes(mesh.nodes.begin(), mesh.nodes.begin() + 8))));
}

TEST(RayVertices, GivenElementsInTurn_WhenPicked_ThenEachIsAskedForByItself) {
  test_support::NamedMesh mesh = test_support::edge_chain(3);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  Ray ray = down_at(0, 0);
  NodeHits hits;
  picker.pickVertices(mesh.mesh.elements[Tarn::Edge], ray.data(), hits);
  ASSERT_EQ(db.calls().size(), 9u);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto& calls = db.calls();
    const std::uint64_t element = mesh.mesh.elements[Tarn::Edge][i].value;
    EXPECT_EQ(calls[3 * i].operation, "get_element_node_count");
    EXPECT_THAT(calls[3 * i].handles, ElementsAre(element));
    EXPECT_EQ(calls[3 * i + 1].operation, "get_element_vertices");
    EXPECT_THAT(calls[3 * i + 1].handles, ElementsAre(element));
    EXPECT_EQ(calls[3 * i + 2].operation, "get_coordinate_arrays");
    EXPECT_THAT(calls[3 * i + 2].handles, ElementsAreArray(values_of(Nodes{mesh.nodes[i], mesh.nodes[i + 1]})));
  }
}

TEST(RayVertices, GivenEachKind_WhenPickedAtItsFirstCorner_ThenThatNodeIsHit) {
  test_support::NamedMesh linear = test_support::each_linear_kind();
  test_support::NamedMesh quadratic = test_support::each_quadratic_kind();
  for (test_support::NamedMesh* mesh : {&linear, &quadratic}) {
    PickInterface picker(mesh->database.get());
    picker.setTolerance(0.01);
    for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type) {
      SCOPED_TRACE(type);
      const Elems elements = mesh->mesh.elements[type];
      ASSERT_THAT(elements, SizeIs(1));
      Node first[27] = {};
      Tarn::MeshData::Count count = 27;
      ASSERT_EQ(mesh->database->get_element_connectivity(elements[0], &count, first), 0);
      Ray ray{2.0 * type, -5, 0, 2.0 * type, 0, 0}; // ends at the corner
      NodeHits hits;
      picker.pickVertices(elements, ray.data(), hits);
      EXPECT_THAT(values_of(hits), ElementsAre(first[0].value));
    }
  }
}

} // namespace
