// The edges of shells and solids, which are handles and nothing else.

#include "reference/tarn/MeshDatabase.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using test_support::NamedMesh;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = std::uint64_t;
using Pairs = std::vector<std::pair<int, int>>;

std::vector<Elem> edges_of(NamedMesh& mesh, Elem element, Count capacity = 24) {
  std::vector<Elem> edges(24);
  Count count = capacity;
  EXPECT_EQ(mesh.database->get_adjacencies(element, 1, 2, &count, edges.data()), 0);
  edges.resize(count);
  return edges;
}

std::vector<int> nodes_of(NamedMesh& mesh, Elem element) {
  Node nodes[40];
  Count count = 40;
  mesh.database->get_element_connectivity(element, &count, nodes);
  std::vector<int> places;
  for (Count i = 0; i < count; ++i)
    places.push_back(static_cast<int>(std::find(mesh.nodes.begin(), mesh.nodes.end(), nodes[i]) - mesh.nodes.begin()));
  return places;
}

struct KindRow {
  Tarn::ElementType type;
  int corners;
  int quadratic;
  Pairs edges;
};

// In the order of VTK's mid-side nodes.
const KindRow kinds[] = {
    {Tarn::Tri, 3, 6, {{0, 1}, {1, 2}, {2, 0}}},
    {Tarn::Quad, 4, 9, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}},
    {Tarn::Tet, 4, 10, {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}},
    {Tarn::Hex,
     8,
     20,
     {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}},
    {Tarn::Wedge, 6, 18, {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}}},
    {Tarn::Pyramid, 5, 13, {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}}},
};

TEST(MeshDatabaseEdges, GivenALinearElement_WhenAskedForEdges_ThenTheyAreTheOnesOfItsKind) {
  for (const KindRow& row : kinds) {
    NamedMesh mesh;
    const Elem element = mesh.add_own_element(row.type, row.corners);
    const std::vector<Elem> edges = edges_of(mesh, element);
    ASSERT_EQ(edges.size(), row.edges.size()) << row.type;
    for (std::size_t i = 0; i < edges.size(); ++i) {
      const auto corners = std::minmax(row.edges[i].first, row.edges[i].second);
      EXPECT_THAT(nodes_of(mesh, edges[i]), ElementsAre(corners.first, corners.second)) << row.type;
      Tarn::ElementType type = Tarn::None;
      mesh.database->get_element_type(edges[i], &type);
      EXPECT_EQ(type, Tarn::Edge);
    }
    EXPECT_EQ(mesh.database->element_count(Tarn::Edge), 0u) << "nothing was stored";
  }
}

TEST(MeshDatabaseEdges, GivenAQuadraticElement_WhenAskedForEdges_ThenTheyHaveItsMidSideNodes) {
  for (const KindRow& row : kinds) {
    NamedMesh mesh;
    const Elem element = mesh.add_own_element(row.type, row.quadratic);
    const std::vector<Elem> edges = edges_of(mesh, element);
    ASSERT_EQ(edges.size(), row.edges.size()) << row.type;
    for (std::size_t i = 0; i < edges.size(); ++i) {
      const auto corners = std::minmax(row.edges[i].first, row.edges[i].second);
      const int middle = row.corners + static_cast<int>(i);
      EXPECT_THAT(nodes_of(mesh, edges[i]), ElementsAre(corners.first, corners.second, middle)) << row.type;
      Count count = 0;
      mesh.database->get_element_node_count(edges[i], &count);
      EXPECT_EQ(count, 3u);
      Node ends[3];
      EXPECT_EQ(mesh.database->get_element_vertices(edges[i], &count, 3, ends), 0);
      EXPECT_EQ(count, 2u) << "corners only";
      // The figure agrees: the node lies halfway.
      double xyz[9];
      Node nodes[3];
      mesh.database->get_element_connectivity(edges[i], &(count = 3), nodes);
      mesh.database->get_double_coordinates(3, nodes, xyz);
      for (int axis = 0; axis < 3; ++axis)
        EXPECT_DOUBLE_EQ(xyz[6 + axis], (xyz[axis] + xyz[3 + axis]) / 2) << row.type << " edge " << i;
    }
  }
}

TEST(MeshDatabaseEdges, GivenNeighbours_WhenAskedForEdges_ThenSharedOnesAreTheSame) {
  NamedMesh mesh = test_support::two_hexes();
  const auto& hexes = mesh.mesh.elements[Tarn::Hex];
  const auto a = edges_of(mesh, hexes[0]);
  const auto b = edges_of(mesh, hexes[1]);

  std::set<std::uint64_t> all;
  for (const auto& edges : {a, b})
    for (const Elem edge : edges)
      all.insert(edge.value);
  EXPECT_EQ(all.size(), 12u + 12u - 4u);
  EXPECT_EQ(edges_of(mesh, hexes[0]), a) << "and so they are when asked again";
}

TEST(MeshDatabaseEdges, GivenAStoredEdge_WhenAskedForEdges_ThenItStandsForTheImplicitOne) {
  NamedMesh mesh = test_support::one_hex();
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  const Elem before = edges_of(mesh, hex)[1];
  const Elem stored = mesh.add_element(Tarn::Edge, {2, 1});
  mesh.add_element(Tarn::Edge, {1, 2});

  EXPECT_EQ(edges_of(mesh, hex)[1], stored) << "the first of two";
  EXPECT_THAT(nodes_of(mesh, before), ElementsAre(1, 2)) << "the old handle still means the same";
  ASSERT_TRUE(mesh.database->delete_elements(1, &stored));
  EXPECT_NE(edges_of(mesh, hex)[1], stored);
  EXPECT_NE(edges_of(mesh, hex)[1], before) << "the second takes its place";
}

TEST(MeshDatabaseEdges, GivenTooLittleRoom_WhenAskedForEdges_ThenTheFirstAreGiven) {
  NamedMesh mesh = test_support::one_hex();
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  const auto all = edges_of(mesh, hex);
  ASSERT_EQ(all.size(), 12u);

  for (const Count capacity : {0u, 1u, 11u}) {
    const auto some = edges_of(mesh, hex, capacity);
    EXPECT_EQ(some, std::vector<Elem>(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(capacity)));
  }
}

TEST(MeshDatabaseEdges, GivenElementsWithoutEdges_WhenAsked_ThenThereAreNoneAndItIsNoFailure) {
  NamedMesh mesh = test_support::each_linear_kind();
  for (const auto type : {Tarn::OneNode, Tarn::Edge, Tarn::Superelement})
    EXPECT_THAT(edges_of(mesh, mesh.mesh.elements[type].front()), IsEmpty());
  const Elem implicit = edges_of(mesh, mesh.mesh.elements[Tarn::Tri].front()).front();
  EXPECT_THAT(edges_of(mesh, implicit), IsEmpty());
}

TEST(MeshDatabaseEdges, GivenOtherSelectors_WhenAsked_ThenItFails) {
  NamedMesh mesh = test_support::one_hex();
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  for (const auto& selectors : Pairs{{0, 2}, {2, 2}, {1, 1}, {1, 3}}) {
    Elem edges[24];
    Count count = 24;
    EXPECT_NE(mesh.database->get_adjacencies(hex, selectors.first, selectors.second, &count, edges), 0);
    EXPECT_EQ(count, 0u);
  }
}

TEST(MeshDatabaseEdges, GivenACollapsedElement_WhenAskedForEdges_ThenEachComesOnceAndNoneIsAPoint) {
  NamedMesh mesh = test_support::lone_nodes(6);
  const Elem hex = mesh.add_element(Tarn::Hex, {0, 1, 2, 2, 3, 4, 5, 5});

  std::set<std::vector<int>> pairs;
  for (const Elem edge : edges_of(mesh, hex))
    EXPECT_TRUE(pairs.insert(nodes_of(mesh, edge)).second);
  EXPECT_THAT(pairs, ElementsAre(std::vector<int>{0, 1}, std::vector<int>{0, 2}, std::vector<int>{0, 3},
                                 std::vector<int>{1, 2}, std::vector<int>{1, 4}, std::vector<int>{2, 5},
                                 std::vector<int>{3, 4}, std::vector<int>{3, 5}, std::vector<int>{4, 5}));
}

TEST(MeshDatabaseEdges, GivenEdges_WhenIdsAreAsked_ThenTheyGetTheNextFreeOnesAndKeepThem) {
  NamedMesh mesh = test_support::two_hexes();
  auto& db = *mesh.database;
  const auto edges = edges_of(mesh, mesh.mesh.elements[Tarn::Hex][0]);
  int id = 0;

  db.get_element_id(edges[5], &id);
  EXPECT_EQ(id, 3);
  const Elem list[3] = {edges[2], mesh.mesh.elements[Tarn::Hex][1], edges[5]};
  int ids[3] = {};
  db.get_element_ids(3, list, ids);
  EXPECT_THAT(ids, ElementsAre(4, 2, 3));
  EXPECT_EQ(db.find_element(4), edges[2]);
  EXPECT_EQ(db.find_element(3), edges[5]);
  EXPECT_EQ(db.find_element(5), Elem()) << "ids are given when asked for only";

  const int taken[1] = {4};
  EXPECT_EQ(db.add_elements(Tarn::OneNode, 1, 1, mesh.nodes.data(), taken), Elem());
  const Elem next = db.add_elements(Tarn::OneNode, 1, 1, mesh.nodes.data());
  EXPECT_EQ(db.find_element(5), next);
}

TEST(MeshDatabaseEdges, GivenTheLargestIdTaken_WhenAnEdgesIdIsAsked_ThenItGetsTheSmallestFreeOne) {
  NamedMesh mesh = test_support::one_hex();
  const int ids[2] = {2147483647, 2};
  mesh.database->add_elements(Tarn::OneNode, 1, 2, mesh.nodes.data(), ids);
  const auto edges = edges_of(mesh, mesh.mesh.elements[Tarn::Hex][0]);

  int got[2] = {};
  mesh.database->get_element_ids(2, edges.data(), got);
  EXPECT_THAT(got, ElementsAre(3, 4));
}

TEST(MeshDatabaseEdges, GivenEdges_WhenAskedForOwnersAndGlobalIds_ThenTheyHaveNone) {
  NamedMesh mesh = test_support::one_hex();
  const auto edges = edges_of(mesh, mesh.mesh.elements[Tarn::Hex][0]);
  std::vector<Tarn::SMeshOwnerType*> owners(12, mesh.owner);
  std::vector<int> ids(12, -4);
  std::vector<char> has(12, 1);
  bool has_one = true;

  mesh.database->get_element_owners(12, edges.data(), owners.data());
  mesh.database->get_global_element_ids(12, edges.data(), ids.data(), has.data());
  mesh.database->get_element_global_id(edges[3], ids.data(), &has_one);

  EXPECT_THAT(owners, Each(nullptr));
  EXPECT_THAT(has, Each(0));
  EXPECT_THAT(ids, Each(-4));
  EXPECT_FALSE(has_one);
}

TEST(MeshDatabaseEdges, GivenStoredAndImplicitEdges_WhenConnectivityIsAskedInBulk_ThenBothAnswer) {
  NamedMesh mesh = test_support::one_hex();
  const Elem stored = mesh.add_element(Tarn::Edge, {7, 3});
  const auto edges = edges_of(mesh, mesh.mesh.elements[Tarn::Hex][0]);
  const std::vector<Elem> list = {edges[0], stored, edges[9]};
  ASSERT_THAT(edges, Contains(stored));
  Node nodes[9];
  Count length = 9;

  mesh.database->get_connectivity(3, list.data(), &length, nodes);

  const auto& n = mesh.nodes;
  EXPECT_EQ(length, 9u);
  EXPECT_THAT(nodes, ElementsAre(n[0], n[1], Node(), n[7], n[3], Node(), n[1], n[5], Node()));
}

} // namespace
