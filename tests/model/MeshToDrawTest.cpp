// Which entities of an owner are drawn, and which questions the database is asked for that.

#include "ModelScene.h"
#include "group/GMeshGroup.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// One owner of every dimension with something of every kind, and nodes of which some are drawn in their own right.
class MeshToDraw : public testing::Test {
protected:
  static constexpr std::uint32_t dimensions[] = {0, 1, 2, 3, Tarn::MeshDatabase::AnyDimension};

  /// An owner with one element of each kind 1 to 9 and three lone nodes.
  Owner add_owner(std::uint32_t dimension) {
    const Owner owner = db.add_owner("owner", dimension);
    const double lone[] = {0, 0, 0, 1, 0, 0, 2, 0, 0};
    const Node first = db.add_nodes(3, lone, nullptr, owner);
    const Point corner{0, 0, 0};
    const int counts[] = {0, 1, 2, 3, 4, 4, 8, 6, 5, 3};
    for (int kind = 1; kind < 10; ++kind) {
      const std::vector<Point> corners(static_cast<std::size_t>(counts[kind]), corner);
      of_kind[kind] = add_element(db, owner, static_cast<Tarn::ElementType>(kind), corners).elements[0];
    }
    lone_nodes = {first, {first.value + 1}, {first.value + 2}};
    return owner;
  }

  std::vector<std::string> calls() const {
    std::vector<std::string> result;
    for (const auto& call : database.calls()) {
      std::string text = call.operation;
      for (auto number : call.numbers)
        text += " " + std::to_string(number);
      result.push_back(text);
    }
    return result;
  }

  std::vector<Node> all_nodes(Owner owner) {
    Tarn::MeshData::Count count = 0;
    db.get_owner_node_count(owner, &count);
    std::vector<Node> nodes(count);
    db.get_owner_nodes(owner, &count, 0, nodes.data());
    return nodes;
  }

  Tarn::MeshDatabase db;
  test_support::RecordingMeshData database{db};
  GMeshModel model{&database};
  Elem of_kind[10];
  std::vector<Node> lone_nodes;
};

TEST_F(MeshToDraw, GivenANullOwner_WhenAsked_ThenTheSetStaysAndTheDatabaseIsLeftInPeace) {
  MeshVector out = mesh_of(Tarn::Hex, {Elem{7}});
  out.nodes = {Node{3}};
  model.get_mesh_to_draw(nullptr, out);
  EXPECT_THAT(out.nodes, ElementsAre(Node{3}));
  EXPECT_THAT(out.elements[Tarn::Hex], ElementsAre(Elem{7}));
  EXPECT_THAT(database.calls(), IsEmpty());
}

TEST_F(MeshToDraw, GivenOwnersOfEachDimension_WhenAsked_ThenTheKindsOfThatDimensionComeAndOtherListsStay) {
  struct Row {
    std::uint32_t dimension;
    std::vector<int> kinds;
  };
  const Row rows[] = {{0, {1}},
                      {1, {2}},
                      {2, {3, 4}},
                      {3, {5, 6, 7, 8, 9}},
                      {Tarn::MeshDatabase::AnyDimension, {1, 2, 3, 4, 5, 6, 7, 8, 9}}};
  const Elem held{12345};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.dimension);
    const Owner owner = add_owner(row.dimension);
    MeshVector out;
    for (auto& list : out.elements)
      list = {held};
    model.get_mesh_to_draw(owner, out);
    for (int kind = 0; kind < 10; ++kind) {
      const bool drawn = std::find(row.kinds.begin(), row.kinds.end(), kind) != row.kinds.end();
      EXPECT_THAT(out.elements[static_cast<std::size_t>(kind)], ElementsAre(drawn ? of_kind[kind] : held))
          << "kind " << kind;
    }
  }
}

TEST_F(MeshToDraw, GivenNodesOfWhichSomeAreFlagged_WhenAsked_ThenThoseComeInTheirOrder) {
  const Owner owner = add_owner(3);
  const auto nodes = all_nodes(owner);
  ASSERT_GT(nodes.size(), lone_nodes.size()) << "the elements' nodes are the owner's too";
  MeshVector out;
  out.nodes = {Node{3}, Node{4}};
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(out.nodes, ElementsAreArray(lone_nodes));
}

TEST_F(MeshToDraw, GivenAnOwnerOfDimensionZero_WhenAsked_ThenAllItsNodesComeWhateverTheirFlags) {
  const Owner owner = add_owner(0);
  MeshVector out;
  model.get_mesh_to_draw(owner, out);
  EXPECT_EQ(out.nodes, all_nodes(owner));
  EXPECT_GT(out.nodes.size(), lone_nodes.size());
}

TEST_F(MeshToDraw, GivenAnOwner_WhenAsked_ThenTheDatabaseHearsExactlyTheseQuestions) {
  const Owner owner = add_owner(2);
  const auto nodes = std::to_string(all_nodes(owner).size());
  database.forget_calls();
  MeshVector out;
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(calls(), ElementsAre("get_owner_node_count", "get_owner_nodes " + nodes + " 0", "get_node_flags",
                                   "get_owner_dimension", "get_owner_element_count 3", "get_owner_elements 3 1",
                                   "get_owner_element_count 4", "get_owner_elements 4 1"));
  for (const auto& call : database.calls())
    EXPECT_EQ(call.owner, call.operation == "get_node_flags" ? nullptr : owner) << call.operation;
  const auto flag_calls = database.calls("get_node_flags");
  ASSERT_THAT(flag_calls, SizeIs(1));
  EXPECT_EQ(flag_calls[0].handles.size(), all_nodes(owner).size());
}

TEST_F(MeshToDraw, GivenAnOwnerOfDimensionZero_WhenAsked_ThenItsNodesAreAskedForTwice) {
  const Owner owner = add_owner(0);
  const auto nodes = std::to_string(all_nodes(owner).size());
  database.forget_calls();
  MeshVector out;
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(calls(), ElementsAre("get_owner_node_count", "get_owner_nodes " + nodes + " 0", "get_node_flags",
                                   "get_owner_dimension", "get_owner_element_count 1", "get_owner_elements 1 1",
                                   "get_owner_node_count", "get_owner_nodes " + nodes + " 0"));
}

TEST_F(MeshToDraw, GivenAnOwnerWithoutAnything_WhenAsked_ThenCountsAreAllThatIsAsked) {
  const Owner owner = db.add_owner("nothing");
  MeshVector out;
  out.nodes = {Node{3}};
  out.elements[4] = {Elem{5}};
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(out.nodes, IsEmpty());
  EXPECT_THAT(out.elements[4], ElementsAre(Elem{5}));
  std::vector<std::string> expected{"get_owner_node_count", "get_owner_dimension"};
  for (int kind = 1; kind < 10; ++kind)
    expected.push_back("get_owner_element_count " + std::to_string(kind));
  EXPECT_EQ(calls(), expected);
}

TEST_F(MeshToDraw, GivenAnOwnerOfDimensionZeroWithoutNodes_WhenAsked_ThenItIsNotAskedToFillAnEmptyList) {
  const Owner owner = db.add_owner("nothing", 0);
  MeshVector out;
  out.nodes = {Node{3}};
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(out.nodes, IsEmpty());
  EXPECT_THAT(calls(), ElementsAre("get_owner_node_count", "get_owner_dimension", "get_owner_element_count 1",
                                   "get_owner_node_count"));
}

TEST_F(MeshToDraw, GivenADatabaseThatFillsLessThanItCounted_WhenAsked_ThenListsAreCutToWhatItFilled) {
  const Owner owner = db.add_owner("owner", 2);
  const Block sheet = add_quads(db, owner, {3, 1}, {0, 0, 0});
  const double lone[] = {0, 0, 0, 1, 0, 0, 2, 0, 0};
  const Owner points = db.add_owner("points", 0);
  const Node first = db.add_nodes(3, lone, nullptr, points);
  database.report_count("get_owner_elements", 2);
  database.report_count("get_owner_nodes", 1);

  MeshVector out;
  model.get_mesh_to_draw(owner, out);
  EXPECT_THAT(out.elements[Tarn::Quad], ElementsAre(sheet.elements[0], sheet.elements[1]));
  const auto flag_calls = database.calls("get_node_flags");
  ASSERT_THAT(flag_calls, SizeIs(1));
  EXPECT_THAT(flag_calls[0].handles, ElementsAre(sheet.nodes[0].value)) << "flags of the nodes that are left";

  model.get_mesh_to_draw(points, out);
  EXPECT_THAT(out.nodes, ElementsAre(first));
}

TEST_F(MeshToDraw, GivenADatabaseThatDoesNotAnswer_WhenAsked_ThenNothingIsMadeUp) {
  const Owner owner = add_owner(3);
  for (const char* silent : {"get_owner_node_count", "get_node_flags"}) {
    SCOPED_TRACE(silent);
    database.answer_well();
    database.fail(silent);
    MeshVector out;
    model.get_mesh_to_draw(owner, out);
    EXPECT_THAT(out.nodes, IsEmpty());
    EXPECT_THAT(out.elements[Tarn::Hex], ElementsAre(of_kind[Tarn::Hex]));
  }
  database.answer_well();
  database.fail("get_owner_dimension");
  MeshVector of_any;
  model.get_mesh_to_draw(owner, of_any);
  for (int kind = 1; kind < 10; ++kind)
    EXPECT_THAT(of_any.elements[kind], ElementsAre(of_kind[kind])) << "any dimension, kind " << kind;

  database.answer_well();
  database.fail("get_owner_element_count");
  database.forget_calls();
  MeshVector out;
  model.get_mesh_to_draw(owner, out);
  EXPECT_EQ(static_cast<std::size_t>(out.size()), out.nodes.size()) << "no elements";
  EXPECT_EQ(database.count("get_owner_elements"), 0U);
}

TEST_F(MeshToDraw, GivenEveryOwner_WhenAddedAsDrawn_ThenItsGroupHoldsTheSameAfterAReportedChange) {
  for (std::uint32_t dimension : dimensions) {
    SCOPED_TRACE(dimension);
    const Owner owner = add_owner(dimension);
    MeshVector to_draw;
    model.get_mesh_to_draw(owner, to_draw);
    ASSERT_FALSE(to_draw.empty());
    model.add_mesh(owner, to_draw, red, 1.0f, false);
    model.update_mesh_modified(owner);
    const MeshVector& again = model.get_mesh(owner)->get_mesh();
    EXPECT_EQ(again.nodes, to_draw.nodes);
    EXPECT_EQ(again.elements, to_draw.elements);
  }
}

} // namespace
