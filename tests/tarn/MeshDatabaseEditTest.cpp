// Moving, deleting, node sets, and the node flags that follow from them.

#include "reference/tarn/MeshDatabase.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using test_support::NamedMesh;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = std::uint64_t;

/// One letter per node: x flagged, a dot not.
std::string flags(NamedMesh& mesh) {
  std::string bytes(mesh.nodes.size(), '?');
  mesh.database->get_node_flags(mesh.nodes.size(), mesh.nodes.data(), bytes.data());
  for (char& byte : bytes)
    byte = byte == 0 ? '.' : byte == 1 ? 'x' : '?';
  return bytes;
}

std::vector<Node> nodes_of(NamedMesh& mesh, Tarn::SMeshOwnerType* owner) {
  Count count = 0;
  mesh.database->get_owner_node_count(owner, &count);
  std::vector<Node> nodes(count);
  mesh.database->get_owner_nodes(owner, &count, 0, nodes.data());
  EXPECT_EQ(count, nodes.size());
  return nodes;
}

std::vector<Elem> elements_of(NamedMesh& mesh, Tarn::SMeshOwnerType* owner, Tarn::ElementType type) {
  Count count = 0;
  mesh.database->get_owner_element_count(owner, type, &count);
  std::vector<Elem> elements(count);
  mesh.database->get_owner_elements(owner, type, &count, elements.data());
  EXPECT_EQ(count, elements.size());
  return elements;
}

TEST(MeshDatabaseEdit, GivenNodes_WhenMoved_ThenOnlyTheyLieElsewhere) {
  NamedMesh mesh = test_support::one_hex();
  const Node moved[2] = {mesh.nodes[6], mesh.nodes[1]};
  const double xyz[6] = {10, 11, 12, -1, -2, -3};

  EXPECT_TRUE(mesh.database->move_nodes(2, moved, xyz));

  double all[24];
  mesh.database->get_double_coordinates(8, mesh.nodes.data(), all);
  EXPECT_THAT(std::vector<double>(all + 18, all + 21), ElementsAre(10, 11, 12));
  EXPECT_THAT(std::vector<double>(all + 3, all + 6), ElementsAre(-1, -2, -3));
  EXPECT_THAT(std::vector<double>(all, all + 3), ElementsAre(0, 0, 0));
  EXPECT_THAT(std::vector<double>(all + 21, all + 24), ElementsAre(0, 1, 1));
}

TEST(MeshDatabaseEdit, GivenElements_WhenDeleted_ThenTheyAreGoneEverywhereAndTheirNodesStay) {
  NamedMesh mesh = test_support::hex_block(3, 1, 1);
  auto& db = *mesh.database;
  const std::vector<Elem> hexes = mesh.mesh.elements[Tarn::Hex];
  const Elem twice[2] = {hexes[1], hexes[1]};

  EXPECT_TRUE(db.delete_elements(2, twice));

  EXPECT_EQ(db.element_count(Tarn::Hex), 2u);
  EXPECT_THAT(db.elements(Tarn::Hex), ElementsAre(hexes[0], hexes[2]));
  EXPECT_THAT(elements_of(mesh, mesh.owner, Tarn::Hex), ElementsAre(hexes[0], hexes[2]));
  EXPECT_EQ(db.find_element(2), Elem());
  EXPECT_EQ(db.find_element(3), hexes[2]);
  EXPECT_EQ(db.node_count(), 16u);
  EXPECT_FALSE(db.delete_elements(1, &hexes[1])) << "it is unknown now";
  Tarn::ElementType types[3];
  db.get_element_types(3, hexes.data(), types);
  EXPECT_THAT(types, ElementsAre(Tarn::Hex, Tarn::None, Tarn::Hex));

  const int id[1] = {2};
  const Elem again = db.add_elements(Tarn::Hex, 8, 1, mesh.nodes.data(), id);
  EXPECT_GT(again.value, hexes[2].value) << "handles are never used again";
  EXPECT_EQ(db.find_element(2), again) << "ids are";
}

TEST(MeshDatabaseEdit, GivenElementsAndSets_WhenTheyChange_ThenFlagsFollow) {
  NamedMesh mesh = test_support::lone_nodes(6);
  auto& db = *mesh.database;
  EXPECT_EQ(flags(mesh), "xxxxxx") << "nothing else shows them";

  const Elem tri = mesh.add_element(Tarn::Tri, {0, 1, 2});
  const Elem edge = mesh.add_element(Tarn::Edge, {2, 3});
  const Elem point = mesh.add_element(Tarn::OneNode, {4});
  EXPECT_EQ(flags(mesh), ".....x");

  auto* const set = db.add_owner("set");
  auto* const other = db.add_owner("other set");
  const Node listed[2] = {mesh.nodes[2], mesh.nodes[0]};
  EXPECT_TRUE(db.add_to_node_set(set, 2, listed));
  EXPECT_TRUE(db.add_to_node_set(other, 1, listed));
  EXPECT_EQ(flags(mesh), "x.x..x");

  EXPECT_TRUE(db.delete_elements(1, &tri));
  EXPECT_EQ(flags(mesh), "xxx..x") << "node 2 is in a set, and the edge uses it";
  EXPECT_TRUE(db.delete_owner(set));
  EXPECT_EQ(flags(mesh), "xxx..x") << "node 2 is in the other set";
  EXPECT_TRUE(db.delete_owner(other));
  EXPECT_EQ(flags(mesh), "xx...x");
  EXPECT_TRUE(db.delete_elements(1, &edge));
  EXPECT_TRUE(db.delete_elements(1, &point));
  EXPECT_EQ(flags(mesh), "xxxxxx");
}

TEST(MeshDatabaseEdit, GivenANodeOfVeryManyElements_WhenTheyGo_ThenItIsFlaggedAfterTheLast) {
  NamedMesh mesh = test_support::lone_nodes(2);
  std::vector<Elem> edges;
  for (int i = 0; i < 700; ++i)
    edges.push_back(mesh.add_element(Tarn::Edge, {0, i % 2}));
  EXPECT_EQ(flags(mesh), "..");

  for (int i = 0; i < 700; ++i) {
    ASSERT_EQ(flags(mesh)[0], '.') << i;
    ASSERT_TRUE(mesh.database->delete_elements(1, &edges[static_cast<std::size_t>(i)]));
  }
  EXPECT_EQ(flags(mesh), "xx");
}

TEST(MeshDatabaseEdit, GivenNodeSets_WhenListed_ThenEachHasItsNodesOnceAndThePrimaryOwnerStays) {
  NamedMesh mesh = test_support::hex_block(1, 1, 1);
  auto& db = *mesh.database;
  auto* const a = db.add_owner("a", 0);
  auto* const b = db.add_owner("b");
  const Node for_a[4] = {mesh.nodes[5], mesh.nodes[2], mesh.nodes[5], mesh.nodes[3]};
  const Node for_b[2] = {mesh.nodes[2], mesh.nodes[7]};

  EXPECT_TRUE(db.add_to_node_set(a, 4, for_a));
  EXPECT_TRUE(db.add_to_node_set(b, 2, for_b));
  EXPECT_TRUE(db.add_to_node_set(b, 1, for_a));
  EXPECT_TRUE(db.set_node_owner(1, &for_b[1], b));

  EXPECT_THAT(nodes_of(mesh, a), ElementsAre(mesh.nodes[2], mesh.nodes[3], mesh.nodes[5]));
  EXPECT_THAT(nodes_of(mesh, b), ElementsAre(mesh.nodes[2], mesh.nodes[5], mesh.nodes[7]));
  EXPECT_EQ(nodes_of(mesh, mesh.owner).size(), 7u);
  Tarn::SMeshOwnerType* owners[2];
  db.get_node_owners(2, for_b, owners);
  EXPECT_THAT(owners, ElementsAre(mesh.owner, b));
}

TEST(MeshDatabaseEdit, GivenAnOwner_WhenDeleted_ThenItsElementsGoAndItsNodesHaveNone) {
  NamedMesh mesh = test_support::each_linear_kind();
  auto& db = *mesh.database;
  auto* const kept = db.add_owner("kept");
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  EXPECT_TRUE(db.set_element_owner(1, &hex, kept));
  EXPECT_TRUE(db.set_node_owner(1, &mesh.nodes[0], kept));

  EXPECT_TRUE(db.delete_owner(mesh.owner));

  for (std::uint32_t type = 1; type <= 9; ++type)
    EXPECT_EQ(db.element_count(static_cast<Tarn::ElementType>(type)), type == Tarn::Hex ? 1u : 0u);
  EXPECT_EQ(db.node_count(), mesh.nodes.size());
  std::vector<Tarn::SMeshOwnerType*> owners(mesh.nodes.size(), mesh.owner);
  db.get_node_owners(owners.size(), mesh.nodes.data(), owners.data());
  EXPECT_EQ(owners[0], kept);
  EXPECT_EQ(std::count(owners.begin(), owners.end(), nullptr), static_cast<std::ptrdiff_t>(owners.size()) - 1);
  EXPECT_THAT(db.owners(), ElementsAre(kept));
  EXPECT_EQ(db.owner_name(mesh.owner), "");
  EXPECT_THAT(nodes_of(mesh, mesh.owner), IsEmpty());
  EXPECT_FALSE(db.delete_owner(mesh.owner));
}

TEST(MeshDatabaseEdit, GivenADeletedOwner_WhenOthersAreAdded_ThenTheyNeverTakeItsAddress) {
  Tarn::MeshDatabase db;
  std::set<Tarn::SMeshOwnerType*> seen;
  for (int i = 0; i < 1000; ++i) {
    auto* const owner = db.add_owner("owner");
    ASSERT_TRUE(seen.insert(owner).second);
    ASSERT_TRUE(db.delete_owner(owner));
  }
}

} // namespace
