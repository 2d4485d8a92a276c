#include "reference/tarn/MeshDatabase.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

using test_support::NamedMesh;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = std::uint64_t;

constexpr Count untouched = 0xabcdef;

std::vector<Node> nodes_at(const NamedMesh& mesh, const std::vector<int>& positions) {
  std::vector<Node> nodes;
  for (const int position : positions)
    nodes.push_back(position < 0 ? Node() : mesh.nodes[static_cast<std::size_t>(position)]);
  return nodes;
}

std::vector<Node> connectivity(NamedMesh& mesh, const std::vector<Elem>& elements, Count length, Count* written) {
  std::vector<Node> nodes(length + 1, Node{untouched});
  *written = length;
  mesh.database->get_connectivity(elements.size(), elements.data(), written, nodes.data());
  EXPECT_EQ(nodes.back().value, untouched);
  nodes.pop_back();
  return nodes;
}

/// Handles that mean nothing to the database: null, foreign, past the end, of a deleted element.
std::vector<Elem> unknown_elements(NamedMesh& mesh) {
  const Elem deleted = mesh.add_element(Tarn::Tri, {0, 1, 2});
  EXPECT_TRUE(mesh.database->delete_elements(1, &deleted));
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  const std::uint64_t far_edge = std::uint64_t(10) << 58 | std::uint64_t(1) << 29 | 1000;
  const std::uint64_t loop_edge = std::uint64_t(10) << 58 | std::uint64_t(1) << 29 | 1;
  return {{},
          {hex.value + 1},
          {hex.value | 1u << 30},
          {~std::uint64_t(0)},
          deleted,
          {mesh.nodes[0].value},
          {far_edge},
          {loop_edge},
          {std::uint64_t(11) << 58},
          {1}};
}

TEST(MeshDatabaseQuery, GivenListsWithRepeats_WhenAsked_ThenAnswersComeInInputOrder) {
  NamedMesh mesh = test_support::each_linear_kind();
  auto& db = *mesh.database;
  std::vector<Elem> list;
  std::vector<Tarn::ElementType> kinds;
  for (int type : {9, 2, 5, 5, 1, 8, 3, 4, 7, 6, 2}) {
    kinds.push_back(static_cast<Tarn::ElementType>(type));
    list.push_back(mesh.mesh.elements[static_cast<std::size_t>(type)].front());
  }
  std::vector<Tarn::ElementType> types(list.size());
  std::vector<int> ids(list.size());
  std::vector<Tarn::SMeshOwnerType*> owners(list.size());

  db.get_element_types(list.size(), list.data(), types.data());
  db.get_element_ids(list.size(), list.data(), ids.data());
  db.get_element_owners(list.size(), list.data(), owners.data());

  EXPECT_EQ(types, kinds);
  EXPECT_THAT(ids, ElementsAre(9, 2, 5, 5, 1, 8, 3, 4, 7, 6, 2));
  EXPECT_THAT(owners, Each(mesh.owner));
  for (std::size_t i = 0; i < list.size(); ++i) {
    Tarn::ElementType type = Tarn::None;
    int id = 0;
    db.get_element_type(list[i], &type);
    db.get_element_id(list[i], &id);
    EXPECT_EQ(type, types[i]);
    EXPECT_EQ(id, ids[i]);
  }
}

TEST(MeshDatabaseQuery, GivenNodesInAnyOrder_WhenAskedForCoordinates_ThenAllFormsAgree) {
  NamedMesh mesh;
  mesh.add_node(1, 2, 3);
  mesh.add_node(-4, 5.5, 1e10);
  mesh.add_node(0.1, 0.2, 0.3);
  const std::vector<Node> list = nodes_at(mesh, {2, 0, 1, 2});
  auto& db = *mesh.database;
  double x[4], y[4], z[4], xyz[12];
  float single[12];
  int ids[4];
  Tarn::SMeshOwnerType* owners[4];

  db.get_coordinate_arrays(4, list.data(), x, y, z);
  db.get_double_coordinates(4, list.data(), xyz);
  db.get_float_coordinates(4, list.data(), single);
  db.get_node_ids(4, list.data(), ids);
  db.get_node_owners(4, list.data(), owners);

  const double expected[12] = {0.1, 0.2, 0.3, 1, 2, 3, -4, 5.5, 1e10, 0.1, 0.2, 0.3};
  EXPECT_THAT(xyz, ElementsAreArray(expected));
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(x[i], expected[3 * i]);
    EXPECT_EQ(y[i], expected[3 * i + 1]);
    EXPECT_EQ(z[i], expected[3 * i + 2]);
    double one[3];
    db.get_node_coordinates(list[static_cast<std::size_t>(i)], one, one + 1, one + 2);
    EXPECT_TRUE(std::equal(one, one + 3, expected + 3 * i));
    for (int axis = 0; axis < 3; ++axis)
      EXPECT_EQ(single[3 * i + axis], static_cast<float>(expected[3 * i + axis]));
  }
  EXPECT_THAT(ids, ElementsAre(3, 1, 2, 3));
  EXPECT_THAT(owners, Each(mesh.owner));
}

TEST(MeshDatabaseQuery, GivenUnknownElements_WhenAsked_ThenTheyAreNoKindAndOutputsStay) {
  NamedMesh mesh = test_support::one_hex();
  const std::vector<Elem> unknown = unknown_elements(mesh);
  auto& db = *mesh.database;
  for (const Elem element : unknown) {
    SCOPED_TRACE(element.value);
    Tarn::ElementType type = Tarn::Hex;
    int id = -3;
    bool has_id = true;
    char has = 5;
    auto* owner = mesh.owner;
    db.get_element_type(element, &type);
    EXPECT_EQ(type, Tarn::None);
    db.get_element_types(1, &element, &(type = Tarn::Hex));
    EXPECT_EQ(type, Tarn::None);
    db.get_element_id(element, &id);
    db.get_element_ids(1, &element, &id);
    db.get_element_global_id(element, &id, &has_id);
    db.get_global_element_ids(1, &element, &id, &has);
    db.get_element_owners(1, &element, &owner);
    EXPECT_EQ(id, -3);
    EXPECT_TRUE(has_id);
    EXPECT_EQ(has, 5);
    EXPECT_EQ(owner, mesh.owner);

    Count count = 27;
    Node nodes[27];
    std::fill_n(nodes, 27, Node{untouched});
    EXPECT_NE(db.get_element_connectivity(element, &count, nodes), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_NE(db.get_element_vertices(element, &(count = 27), 27, nodes), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_NE(db.get_nodes_of_elements(1, &element, 0, &(count = 27), nodes), 0);
    EXPECT_EQ(count, 0u);
    db.get_element_node_count(element, &(count = 27));
    EXPECT_EQ(count, 0u);
    Elem edges[24];
    edges[0].value = untouched;
    EXPECT_NE(db.get_adjacencies(element, 1, 2, &(count = 24), edges), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(edges[0].value, untouched);
    EXPECT_EQ(nodes[0].value, untouched);
  }
}

TEST(MeshDatabaseQuery, GivenUnknownNodes_WhenAsked_ThenOutputsStay) {
  NamedMesh mesh = test_support::one_hex();
  auto& db = *mesh.database;
  const Elem hex = mesh.mesh.elements[Tarn::Hex].front();
  for (const std::uint64_t value : {std::uint64_t(0), mesh.nodes.back().value + 1, hex.value, ~std::uint64_t(0)}) {
    const Node node{value};
    double xyz[3] = {7, 7, 7};
    float single[3] = {7, 7, 7};
    int id = -3;
    char flag = 5;
    auto* owner = mesh.owner;
    Elem element{untouched};
    db.get_node_coordinates(node, xyz, xyz + 1, xyz + 2);
    db.get_coordinate_arrays(1, &node, xyz, xyz + 1, xyz + 2);
    db.get_double_coordinates(1, &node, xyz);
    db.get_float_coordinates(1, &node, single);
    db.get_node_ids(1, &node, &id);
    db.get_node_flags(1, &node, &flag);
    db.get_node_owners(1, &node, &owner);
    db.get_elements_on_nodes(1, 1, &node, &element);
    EXPECT_THAT(xyz, Each(7.0));
    EXPECT_THAT(single, Each(7.0f));
    EXPECT_EQ(id, -3);
    EXPECT_EQ(flag, 5);
    EXPECT_EQ(owner, mesh.owner);
    EXPECT_EQ(element, Elem()) << "no element belongs to it";
  }
}

TEST(MeshDatabaseQuery, GivenUnknownOwners_WhenAsked_ThenCountsAreZero) {
  NamedMesh mesh = test_support::one_hex();
  Tarn::MeshDatabase other;
  for (auto* const owner : {static_cast<Tarn::SMeshOwnerType*>(nullptr), other.add_owner("elsewhere")}) {
    Count count = 9;
    Node node{untouched};
    Elem element{untouched};
    std::uint32_t dimension = 77;
    mesh.database->get_owner_node_count(owner, &count);
    EXPECT_EQ(count, 0u);
    mesh.database->get_owner_nodes(owner, &(count = 1), 0, &node);
    EXPECT_EQ(count, 0u);
    mesh.database->get_owner_element_count(owner, Tarn::Hex, &(count = 9));
    EXPECT_EQ(count, 0u);
    mesh.database->get_owner_elements(owner, Tarn::Hex, &(count = 1), &element);
    EXPECT_EQ(count, 0u);
    mesh.database->get_owner_dimension(owner, &dimension);
    EXPECT_EQ(dimension, 77u);
    EXPECT_EQ(node.value, untouched);
    EXPECT_EQ(element.value, untouched);
  }
  Count count = 9;
  mesh.database->get_owner_element_count(mesh.owner, static_cast<Tarn::ElementType>(10), &count);
  EXPECT_EQ(count, 0u);
  Elem element{untouched};
  mesh.database->get_owner_elements(mesh.owner, static_cast<Tarn::ElementType>(10), &(count = 1), &element);
  EXPECT_EQ(count, 0u);
}

struct StrideRow {
  const char* name;
  Count length;
  Count written;
  std::vector<std::vector<int>> nodes;
};

TEST(MeshDatabaseQuery, GivenElementsOfSeveralNodeCounts_WhenAskedInBulk_ThenEachGivesItsFirstNodes) {
  NamedMesh mesh;
  const Elem linear = mesh.add_own_element(Tarn::Tri, 3);      // nodes 0 to 2
  const Elem with_centre = mesh.add_own_element(Tarn::Tri, 7); // nodes 3 to 9
  const Elem quadratic = mesh.add_own_element(Tarn::Tri, 6);   // nodes 10 to 15
  const std::vector<Elem> list = {quadratic, linear, {}, with_centre};
  const StrideRow rows[] = {
      {"no room", 0, 0, {{}, {}, {}, {}}},
      {"less than one each", 3, 0, {{}, {}, {}, {}}},
      {"one each", 4, 4, {{10}, {0}, {-1}, {3}}},
      {"corners and a rest", 15, 12, {{10, 11, 12}, {0, 1, 2}, {-1, -1, -1}, {3, 4, 5}}},
      {"one more", 16, 16, {{10, 11, 12, 13}, {0, 1, 2, -1}, {-1, -1, -1, -1}, {3, 4, 5, 6}}},
      {"more than any has",
       32,
       32,
       {{10, 11, 12, 13, 14, 15, -1, -1},
        {0, 1, 2, -1, -1, -1, -1, -1},
        {-1, -1, -1, -1, -1, -1, -1, -1},
        {3, 4, 5, 6, 7, 8, 9, -1}}},
  };
  for (const StrideRow& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<int> positions;
    for (const auto& nodes : row.nodes)
      positions.insert(positions.end(), nodes.begin(), nodes.end());
    Count written = 0;
    std::vector<Node> nodes = connectivity(mesh, list, row.length, &written);
    EXPECT_EQ(written, row.written);
    nodes.resize(positions.size());
    EXPECT_EQ(nodes, nodes_at(mesh, positions));
  }
}

TEST(MeshDatabaseQuery, GivenOneNodeCount_WhenAskedInBulk_ThenRunsAndStrayElementsAnswerAlike) {
  NamedMesh mesh = test_support::hex_block(3, 3, 3);
  const std::vector<Elem>& all = mesh.mesh.elements[Tarn::Hex];
  std::vector<Elem> list(all.begin() + 2, all.begin() + 9);
  list.insert(list.end(), {all[26], all[25], {}, all[0], all[0], all[1], {all[26].value + 1}});
  for (const bool with_gap : {false, true}) {
    if (with_gap) {
      ASSERT_TRUE(mesh.database->delete_elements(1, &all[4]));
    }
    for (const Count stride : {1u, 4u, 8u, 9u, 27u}) {
      Count written = 0;
      const auto bulk = connectivity(mesh, list, list.size() * stride, &written);
      EXPECT_EQ(written, list.size() * stride);
      for (std::size_t i = 0; i < list.size(); ++i) {
        Node own[8] = {};
        Count count = 8;
        mesh.database->get_element_connectivity(list[i], &count, own);
        for (Count k = 0; k < stride; ++k)
          EXPECT_EQ(bulk[i * stride + k], k < count ? own[k] : Node()) << i << ' ' << k;
      }
    }
  }
}

TEST(MeshDatabaseQuery, GivenNoElements_WhenAskedInBulk_ThenNothingIsWritten) {
  NamedMesh mesh = test_support::one_hex();
  Count length = 8;
  mesh.database->get_connectivity(0, nullptr, &length, nullptr);
  EXPECT_EQ(length, 0u);
  Count count = 4;
  EXPECT_EQ(mesh.database->get_nodes_of_elements(0, nullptr, 0, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
}

struct VertexRow {
  Tarn::ElementType type;
  int nodes;
  Count vertices;
};

TEST(MeshDatabaseQuery, GivenEveryKindAndNodeCount_WhenAskedForNodes_ThenAllOrCornersComeInCanonicalOrder) {
  const VertexRow rows[] = {
      {Tarn::OneNode, 1, 1},      {Tarn::Edge, 2, 2},          {Tarn::Edge, 3, 2},     {Tarn::Tri, 3, 3},
      {Tarn::Tri, 6, 3},          {Tarn::Tri, 7, 3},           {Tarn::Quad, 4, 4},     {Tarn::Quad, 8, 4},
      {Tarn::Quad, 9, 4},         {Tarn::Tet, 4, 4},           {Tarn::Tet, 10, 4},     {Tarn::Hex, 8, 8},
      {Tarn::Hex, 20, 8},         {Tarn::Hex, 27, 8},          {Tarn::Wedge, 6, 6},    {Tarn::Wedge, 15, 6},
      {Tarn::Wedge, 18, 6},       {Tarn::Pyramid, 5, 5},       {Tarn::Pyramid, 13, 5}, {Tarn::Pyramid, 14, 5},
      {Tarn::Superelement, 1, 1}, {Tarn::Superelement, 40, 40}};
  NamedMesh mesh;
  std::vector<Elem> elements;
  for (const VertexRow& row : rows)
    elements.push_back(mesh.add_own_element(row.type, row.nodes));
  auto& db = *mesh.database;
  std::size_t first = 0;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const VertexRow& row = rows[i];
    SCOPED_TRACE(testing::Message() << row.type << " of " << row.nodes);
    const auto size = static_cast<std::size_t>(row.nodes);
    const std::vector<Node> own(mesh.nodes.begin() + static_cast<std::ptrdiff_t>(first),
                                mesh.nodes.begin() + static_cast<std::ptrdiff_t>(first + size));
    first += size;
    Count count = 0;
    db.get_element_node_count(elements[i], &count);
    EXPECT_EQ(count, size);

    for (Count capacity : {Count(0), Count(1), row.vertices, Count(size), Count(50)}) {
      std::vector<Node> nodes(51, Node{untouched});
      count = capacity;
      EXPECT_EQ(db.get_element_connectivity(elements[i], &count, nodes.data()), 0);
      EXPECT_EQ(count, std::min<Count>(capacity, size));
      EXPECT_TRUE(std::equal(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(count), own.begin()));
      EXPECT_EQ(nodes[count].value, untouched);

      std::fill(nodes.begin(), nodes.end(), Node{untouched});
      count = 12345;
      EXPECT_EQ(db.get_element_vertices(elements[i], &count, capacity, nodes.data()), 0);
      EXPECT_EQ(count, std::min(capacity, row.vertices));
      EXPECT_TRUE(std::equal(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(count), own.begin()));
      EXPECT_EQ(nodes[count].value, untouched);
    }
  }

  std::vector<Node> all(mesh.nodes.size() + 1, Node{untouched});
  Count count = all.size();
  EXPECT_EQ(db.get_nodes_of_elements(elements.size(), elements.data(), 0, &count, all.data()), 0);
  EXPECT_EQ(count, mesh.nodes.size());
  all.resize(count);
  EXPECT_EQ(all, mesh.nodes);
}

TEST(MeshDatabaseQuery, GivenALostElementAmongOthers_WhenAskedForNodes_ThenTheOthersAreGiven) {
  NamedMesh mesh = test_support::edge_chain(2);
  const std::vector<Elem>& edges = mesh.mesh.elements[Tarn::Edge];
  const std::vector<Elem> list = {edges[1], {}, edges[0]};
  Node nodes[4];

  Count count = 4;
  EXPECT_EQ(mesh.database->get_nodes_of_elements(3, list.data(), 0, &count, nodes), 0);
  EXPECT_EQ(count, 4u);
  EXPECT_THAT(nodes, ElementsAreArray(nodes_at(mesh, {1, 2, 0, 1})));

  count = 3;
  EXPECT_EQ(mesh.database->get_nodes_of_elements(3, list.data(), 0, &count, nodes), 0);
  EXPECT_EQ(count, 3u);
}

TEST(MeshDatabaseQuery, GivenElementsOfTwoOwners_WhenOwnersAreAsked_ThenEachListsItsOwnInOrder) {
  NamedMesh mesh = test_support::hex_block(3, 2, 1);
  auto& db = *mesh.database;
  auto* const other = db.add_owner("other", 3);
  const std::vector<Elem>& hexes = mesh.mesh.elements[Tarn::Hex];
  const std::vector<Elem> moved = {hexes[4], hexes[0], hexes[5]};
  const std::vector<Node> moved_nodes = nodes_at(mesh, {7, 3, 3});

  EXPECT_TRUE(db.set_element_owner(3, moved.data(), other));
  EXPECT_TRUE(db.set_node_owner(3, moved_nodes.data(), other));

  const auto elements_of = [&db](Tarn::SMeshOwnerType* owner, Count capacity) {
    std::vector<Elem> list(capacity, Elem{untouched});
    Count count = capacity;
    db.get_owner_elements(owner, Tarn::Hex, &count, list.data());
    list.resize(count);
    return list;
  };
  EXPECT_THAT(elements_of(other, 10), ElementsAre(hexes[0], hexes[4], hexes[5]));
  EXPECT_THAT(elements_of(mesh.owner, 10), ElementsAre(hexes[1], hexes[2], hexes[3]));
  EXPECT_THAT(elements_of(other, 2), ElementsAre(hexes[0], hexes[4])) << "too little capacity";
  Count count = 0;
  db.get_owner_element_count(other, Tarn::Hex, &count);
  EXPECT_EQ(count, 3u);
  db.get_owner_element_count(other, Tarn::Tet, &count);
  EXPECT_EQ(count, 0u);

  std::vector<Node> nodes(30);
  db.get_owner_node_count(other, &count);
  EXPECT_EQ(count, 2u);
  db.get_owner_nodes(other, &(count = 30), 0, nodes.data());
  nodes.resize(count);
  EXPECT_EQ(nodes, nodes_at(mesh, {3, 7}));
  db.get_owner_node_count(mesh.owner, &count);
  EXPECT_EQ(count, mesh.nodes.size() - 2);
  db.get_owner_nodes(other, &(count = 1), 0, nodes.data());
  EXPECT_EQ(count, 1u);

  EXPECT_TRUE(db.set_element_owner(1, moved.data(), nullptr));
  EXPECT_TRUE(db.set_element_owner(1, &moved[2], mesh.owner));
  EXPECT_TRUE(db.set_element_owner(1, &moved[1], mesh.owner));
  EXPECT_TRUE(db.set_element_owner(1, &moved[1], other));
  EXPECT_THAT(elements_of(other, 10), ElementsAre(hexes[0]));
  EXPECT_THAT(elements_of(mesh.owner, 10), ElementsAre(hexes[1], hexes[2], hexes[3], hexes[5]));
  Tarn::SMeshOwnerType* owners[2] = {other, other};
  const Elem asked[2] = {hexes[4], hexes[5]};
  db.get_element_owners(2, asked, owners);
  EXPECT_THAT(owners, ElementsAre(nullptr, mesh.owner));
}

TEST(MeshDatabaseQuery, GivenOneNodeElements_WhenNodesAreAsked_ThenTheFirstLivingOneAnswers) {
  NamedMesh mesh = test_support::lone_nodes(4);
  auto& db = *mesh.database;
  const auto on_nodes = [&] {
    std::vector<Elem> elements(4, Elem{untouched});
    db.get_elements_on_nodes(4, 1, mesh.nodes.data(), elements.data());
    return elements;
  };
  EXPECT_THAT(on_nodes(), Each(Elem()));
  const Elem a = mesh.add_element(Tarn::OneNode, {2});
  const Elem b = mesh.add_element(Tarn::OneNode, {2});
  const Elem c = mesh.add_element(Tarn::OneNode, {0});
  mesh.add_element(Tarn::Edge, {1, 3});

  EXPECT_THAT(on_nodes(), ElementsAre(c, Elem(), a, Elem()));
  EXPECT_TRUE(db.delete_elements(1, &a));
  EXPECT_THAT(on_nodes(), ElementsAre(c, Elem(), b, Elem()));
  mesh.add_node(9, 9, 9);
  const Elem d = mesh.add_element(Tarn::OneNode, {4});
  Elem found;
  db.get_elements_on_nodes(1, 1, &mesh.nodes[4], &found);
  EXPECT_EQ(found, d);
}

} // namespace
