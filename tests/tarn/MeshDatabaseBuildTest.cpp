#include "reference/tarn/MeshDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <set>

using testing::ElementsAre;

namespace {

using Tarn::MeshDatabase;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;

constexpr int largest_int = std::numeric_limits<int>::max();

std::vector<Node> add_nodes(MeshDatabase& db, std::size_t count, Tarn::SMeshOwnerType* owner = nullptr) {
  std::vector<double> xyz(3 * count);
  std::iota(xyz.begin(), xyz.end(), 0.0);
  const Node first = db.add_nodes(count, xyz.data(), nullptr, owner);
  std::vector<Node> nodes(count);
  for (std::size_t i = 0; i < count; ++i)
    nodes[i].value = first.value + i;
  return nodes;
}

std::vector<int> node_ids(MeshDatabase& db, const std::vector<Node>& nodes) {
  std::vector<int> ids(nodes.size(), -1);
  db.get_node_ids(nodes.size(), nodes.data(), ids.data());
  return ids;
}

int element_id(MeshDatabase& db, Elem element) {
  int id = -1;
  db.get_element_id(element, &id);
  return id;
}

TEST(MeshDatabaseBuild, GivenNodesAndElements_WhenAdded_ThenHandlesOfACallAreConsecutiveAndAllDiffer) {
  MeshDatabase db;
  const auto nodes = add_nodes(db, 30);
  std::set<std::uint64_t> values;
  const std::pair<Tarn::ElementType, int> kinds[] = {{Tarn::OneNode, 1}, {Tarn::Edge, 2},    {Tarn::Tri, 3},
                                                     {Tarn::Quad, 4},    {Tarn::Tet, 4},     {Tarn::Hex, 8},
                                                     {Tarn::Wedge, 6},   {Tarn::Pyramid, 5}, {Tarn::Superelement, 11}};
  for (const auto& kind : kinds) {
    const Elem first = db.add_elements(kind.first, kind.second, 2, nodes.data());
    const Elem next = db.add_elements(kind.first, kind.second, 1, nodes.data());
    ASSERT_NE(first.value, 0u);
    EXPECT_EQ(next.value, first.value + 2);
    for (const std::uint64_t value : {first.value, first.value + 1, next.value}) {
      EXPECT_TRUE(values.insert(value).second);
      Tarn::ElementType type = Tarn::None;
      db.get_element_type({value}, &type);
      EXPECT_EQ(type, kind.first);
    }
    EXPECT_THAT(db.elements(kind.first), ElementsAre(first, Elem{first.value + 1}, next));
    EXPECT_EQ(db.element_count(kind.first), 3u);
  }
  EXPECT_EQ(db.nodes(), nodes);
  EXPECT_EQ(db.node_count(), 30u);
}

struct CountRow {
  Tarn::ElementType type;
  std::set<int> allowed;
};

TEST(MeshDatabaseBuild, GivenAnyNodeCount_WhenAddingAnElement_ThenOnlyThoseOfTheKindAreTaken) {
  MeshDatabase db;
  const auto nodes = add_nodes(db, 40);
  const CountRow rows[] = {{Tarn::None, {}},
                           {Tarn::OneNode, {1}},
                           {Tarn::Edge, {2, 3}},
                           {Tarn::Tri, {3, 6, 7}},
                           {Tarn::Quad, {4, 8, 9}},
                           {Tarn::Tet, {4, 10}},
                           {Tarn::Hex, {8, 20, 27}},
                           {Tarn::Wedge, {6, 15, 18}},
                           {Tarn::Pyramid, {5, 13, 14}},
                           {static_cast<Tarn::ElementType>(10), {}}};
  for (const CountRow& row : rows)
    for (int count = -1; count <= 40; ++count) {
      const Elem added = db.add_elements(row.type, count, 1, nodes.data());
      EXPECT_EQ(added.value != 0, row.allowed.count(count) == 1) << row.type << " with " << count;
    }
  for (int count = -1; count <= 40; ++count)
    EXPECT_EQ(db.add_elements(Tarn::Superelement, count, 1, nodes.data()).value != 0, count > 0) << count;
}

TEST(MeshDatabaseBuild, GivenNoIds_WhenAdding_ThenIdsRunOnFromTheLargestSoFar) {
  MeshDatabase db;
  const double xyz[9] = {};
  const auto nodes = add_nodes(db, 2);
  const int own_ids[3] = {70, 5, 30};
  const Node named = db.add_nodes(3, xyz, own_ids);
  const auto later = add_nodes(db, 2);

  EXPECT_THAT(node_ids(db, nodes), ElementsAre(1, 2));
  EXPECT_THAT(node_ids(db, {named, {named.value + 1}, {named.value + 2}}), ElementsAre(70, 5, 30));
  EXPECT_THAT(node_ids(db, later), ElementsAre(71, 72));
}

TEST(MeshDatabaseBuild, GivenElementsOfSeveralKinds_WhenNumbered_ThenIdsAreUniqueAmongAll) {
  MeshDatabase db;
  const auto nodes = add_nodes(db, 8);
  const int ids[2] = {9, 4};
  const Elem edges = db.add_elements(Tarn::Edge, 2, 2, nodes.data(), ids);
  const Elem hex = db.add_elements(Tarn::Hex, 8, 1, nodes.data());
  const int taken[1] = {4};

  EXPECT_EQ(element_id(db, hex), 10);
  EXPECT_EQ(db.add_elements(Tarn::Tet, 4, 1, nodes.data(), taken).value, 0u);
  EXPECT_EQ(db.element_count(Tarn::Tet), 0u);
  EXPECT_EQ(db.find_element(4), (Elem{edges.value + 1}));
  EXPECT_EQ(db.find_element(9), edges);
  EXPECT_EQ(db.find_element(10), hex);
  for (const int none : {-4, 0, 1, 11, largest_int})
    EXPECT_EQ(db.find_element(none), Elem()) << none;
}

struct IdRow {
  const char* name;
  std::vector<int> ids;
};

TEST(MeshDatabaseBuild, GivenBadIds_WhenAdding_ThenNothingIsAdded) {
  const IdRow rows[] = {{"zero", {3, 0}},
                        {"negative", {3, -1}},
                        {"repeated", {8, 8}},
                        {"repeated apart", {8, 20, 8}},
                        {"repeated, far from others", {1000000000, 3, 1000000000}},
                        {"taken", {6, 2}},
                        {"taken, not in order", {50, 1}}};
  for (const IdRow& row : rows) {
    SCOPED_TRACE(row.name);
    MeshDatabase db;
    const auto nodes = add_nodes(db, 4);
    db.add_elements(Tarn::OneNode, 1, 4, nodes.data());
    const std::vector<double> xyz(9);

    EXPECT_EQ(db.add_nodes(row.ids.size(), xyz.data(), row.ids.data()), Node());
    EXPECT_EQ(db.add_elements(Tarn::OneNode, 1, row.ids.size(), nodes.data(), row.ids.data()), Elem());

    EXPECT_EQ(db.node_count(), 4u);
    EXPECT_EQ(db.element_count(Tarn::OneNode), 4u);
    EXPECT_EQ(db.find_node(row.ids[0] == 50 ? 50 : 99), Node());
    EXPECT_THAT(node_ids(db, add_nodes(db, 1)), ElementsAre(5)) << "running numbers go on undisturbed";
  }
}

TEST(MeshDatabaseBuild, GivenTheLargestId_WhenMoreAreToRunOnFromIt_ThenNothingIsAdded) {
  MeshDatabase db;
  const double xyz[6] = {};
  const int ids[1] = {largest_int};
  const Node node = db.add_nodes(1, xyz, ids);
  ASSERT_NE(node, Node());
  EXPECT_EQ(db.find_node(largest_int), node);
  EXPECT_EQ(db.add_nodes(1, xyz), Node());
  const int small[1] = {1};
  EXPECT_NE(db.add_nodes(1, xyz, small), Node());

  const Elem element = db.add_elements(Tarn::OneNode, 1, 1, &node, ids);
  EXPECT_EQ(db.find_element(largest_int), element);
  EXPECT_EQ(db.add_elements(Tarn::OneNode, 1, 1, &node), Elem());
}

TEST(MeshDatabaseBuild, GivenNothingToAddOrTooMuch_WhenAdding_ThenNothingIsAdded) {
  MeshDatabase db;
  const double xyz[3] = {};
  const auto nodes = add_nodes(db, 4);

  EXPECT_EQ(db.add_nodes(0, xyz), Node());
  EXPECT_EQ(db.add_nodes((std::uint64_t(1) << 29) - 3, xyz), Node()) << "2^29 nodes are the limit";
  EXPECT_EQ(db.add_elements(Tarn::Tet, 4, 0, nodes.data()), Elem());
  EXPECT_EQ(db.add_elements(Tarn::Tet, 4, std::uint64_t(1) << 62, nodes.data()), Elem());
  EXPECT_EQ(db.node_count(), 4u);
}

TEST(MeshDatabaseBuild, GivenUnknownNodes_WhenAddingAnElement_ThenItIsNotAdded) {
  MeshDatabase db;
  auto nodes = add_nodes(db, 4);
  const Elem tet = db.add_elements(Tarn::Tet, 4, 1, nodes.data());
  for (const std::uint64_t bad : {std::uint64_t(0), nodes[3].value + 1, tet.value, ~std::uint64_t(0)}) {
    nodes[2].value = bad;
    EXPECT_EQ(db.add_elements(Tarn::Tet, 4, 1, nodes.data()), Elem());
  }
  EXPECT_EQ(db.element_count(Tarn::Tet), 1u);
}

TEST(MeshDatabaseBuild, GivenOwners_WhenAdded_ThenTheyAreListedWithNameAndDimension) {
  MeshDatabase db;
  MeshDatabase other;
  std::vector<Tarn::SMeshOwnerType*> owners;
  for (const std::uint32_t dimension : {0u, 1u, 2u, 3u, MeshDatabase::AnyDimension})
    owners.push_back(db.add_owner("part " + std::to_string(dimension), dimension));
  owners.push_back(db.add_owner("part 0"));

  EXPECT_EQ(db.add_owner("flat", 4), nullptr);
  EXPECT_EQ(db.owners(), owners);
  const std::uint32_t dimensions[] = {0, 1, 2, 3, 0xffffffffu, 0xffffffffu};
  for (std::size_t i = 0; i < owners.size(); ++i) {
    std::uint32_t dimension = 77;
    db.get_owner_dimension(owners[i], &dimension);
    EXPECT_EQ(dimension, dimensions[i]);
    other.get_owner_dimension(owners[i], &(dimension = 77));
    EXPECT_EQ(dimension, 77u) << "strangers are left alone";
  }
  EXPECT_EQ(db.owner_name(owners[2]), "part 2");
  EXPECT_EQ(db.owner_name(nullptr), "");
  EXPECT_EQ(other.owner_name(owners[2]), "");
  EXPECT_EQ(db.find_owner("part 0"), owners[0]);
  EXPECT_EQ(db.find_owner("part 3"), owners[3]);
  EXPECT_EQ(db.find_owner("part 9"), nullptr);
}

TEST(MeshDatabaseBuild, GivenAForeignOwner_WhenUsed_ThenNothingChangesAndItSaysSo) {
  MeshDatabase db;
  MeshDatabase other;
  auto* const stranger = other.add_owner("elsewhere");
  auto* const gone = db.add_owner("gone");
  ASSERT_TRUE(db.delete_owner(gone));
  const auto nodes = add_nodes(db, 4);
  const Elem tet = db.add_elements(Tarn::Tet, 4, 1, nodes.data());
  const double xyz[3] = {};

  for (auto* const owner : {stranger, gone}) {
    EXPECT_EQ(db.add_nodes(1, xyz, nullptr, owner), Node());
    EXPECT_EQ(db.add_elements(Tarn::Tet, 4, 1, nodes.data(), nullptr, owner), Elem());
    EXPECT_FALSE(db.set_node_owner(1, nodes.data(), owner));
    EXPECT_FALSE(db.set_element_owner(1, &tet, owner));
    EXPECT_FALSE(db.add_to_node_set(owner, 1, nodes.data()));
    EXPECT_FALSE(db.delete_owner(owner));
  }
  EXPECT_FALSE(db.add_to_node_set(nullptr, 1, nodes.data()));
  EXPECT_FALSE(db.delete_owner(nullptr));
  EXPECT_EQ(db.node_count(), 4u);
}

TEST(MeshDatabaseBuild, GivenUnknownEntitiesInAList_WhenEditing_ThenNothingChangesAndItSaysSo) {
  MeshDatabase db;
  auto* const owner = db.add_owner("part");
  const auto nodes = add_nodes(db, 4);
  const Elem tet = db.add_elements(Tarn::Tet, 4, 1, nodes.data());
  Elem edge[6];
  std::uint64_t edges = 6;
  ASSERT_EQ(db.get_adjacencies(tet, 1, 2, &edges, edge), 0);
  const Node bad_nodes[2] = {nodes[0], {nodes[3].value + 1}};
  const double xyz[6] = {9, 9, 9, 9, 9, 9};
  const int ids[2] = {1, 2};

  for (const Elem unknown : {Elem(), Elem{tet.value + 1}, Elem{nodes[0].value}, edge[0]}) {
    const Elem bad_elements[2] = {tet, unknown};
    EXPECT_FALSE(db.set_global_ids(2, bad_elements, ids));
    EXPECT_FALSE(db.set_element_owner(2, bad_elements, owner));
    EXPECT_FALSE(db.delete_elements(2, bad_elements));
  }
  EXPECT_FALSE(db.set_global_ids(tet, 2, ids));
  EXPECT_FALSE(db.set_node_owner(2, bad_nodes, owner));
  EXPECT_FALSE(db.add_to_node_set(owner, 2, bad_nodes));
  EXPECT_FALSE(db.move_nodes(2, bad_nodes, xyz));

  bool has_id = true;
  int id = -5;
  db.get_element_global_id(tet, &id, &has_id);
  EXPECT_FALSE(has_id);
  EXPECT_EQ(id, -5);
  Tarn::SMeshOwnerType* found = owner;
  db.get_element_owners(1, &tet, &found);
  EXPECT_EQ(found, nullptr);
  std::uint64_t count = 9;
  db.get_owner_node_count(owner, &count);
  EXPECT_EQ(count, 0u);
  double x = -1, y = -1, z = -1;
  db.get_node_coordinates(nodes[0], &x, &y, &z);
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(db.element_count(Tarn::Tet), 1u);
}

TEST(MeshDatabaseBuild, GivenGlobalIds_WhenSet_ThenTheyNeedNotBeUniqueAndOthersHaveNone) {
  MeshDatabase db;
  const auto nodes = add_nodes(db, 8);
  const Elem tets = db.add_elements(Tarn::Tet, 4, 2, nodes.data());
  const Elem hex = db.add_elements(Tarn::Hex, 8, 1, nodes.data());
  const Elem points = db.add_elements(Tarn::OneNode, 1, 3, nodes.data());
  const Elem some[2] = {hex, {tets.value + 1}};
  const int ids[3] = {-7, -7, 0};

  EXPECT_TRUE(db.set_global_ids(2, some, ids));
  EXPECT_TRUE(db.set_global_ids(points, 3, ids));

  const Elem all[6] = {tets, {tets.value + 1}, hex, points, {points.value + 1}, {points.value + 2}};
  int got[6] = {5, 5, 5, 5, 5, 5};
  char has[6] = {9, 9, 9, 9, 9, 9};
  db.get_global_element_ids(6, all, got, has);
  EXPECT_THAT(got, ElementsAre(5, -7, -7, -7, -7, 0));
  EXPECT_THAT(has, ElementsAre(0, 1, 1, 1, 1, 1));
  bool one = false;
  int id = 0;
  db.get_element_global_id(hex, &id, &one);
  EXPECT_TRUE(one);
  EXPECT_EQ(id, -7);
}

TEST(MeshDatabaseBuild, GivenReservedRoom_WhenAddingInPieces_ThenTheResultIsTheSame) {
  MeshDatabase db;
  db.reserve_nodes(1000);
  db.reserve_elements(Tarn::Edge, 2, 1000);
  db.reserve_elements(Tarn::Edge, 5, 1000);
  db.reserve_elements(static_cast<Tarn::ElementType>(12), 5, 1000);
  for (int i = 0; i < 1000; ++i) {
    const auto node = add_nodes(db, 1);
    const Node ends[2] = {node[0], db.find_node(1)};
    ASSERT_NE(db.add_elements(Tarn::Edge, 2, 1, ends), Elem());
  }

  EXPECT_EQ(db.node_count(), 1000u);
  std::uint64_t length = 4;
  Node nodes[4];
  const Elem list[2] = {db.find_element(1000), db.find_element(1)};
  db.get_connectivity(2, list, &length, nodes);
  EXPECT_THAT(nodes, ElementsAre(db.find_node(1000), db.find_node(1), db.find_node(1), db.find_node(1)));
}

} // namespace
