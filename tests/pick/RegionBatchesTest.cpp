#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include "platform/base/PickRectangle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ vertices of elements

TEST(RegionVertices, GivenMoreElementsThanABatch_WhenPicked_ThenBatchesOf256AreReadWithRoomFor27NodesEach) {
  for (const std::size_t count : {0, 1, 255, 256, 257, 512, 513}) {
    SCOPED_TRACE(count);
    test_support::NamedMesh mesh = test_support::edge_chain(static_cast<int>(count));
    test_support::RecordingMeshData db(*mesh.database);
    FlatPicker picker(&db);
    ScriptedRegion region;
    region.point = [](const double*) { return true; };
    Nodes picked;
    picker.pickVertices(mesh.mesh.elements[Tarn::Edge], region, picked);
    EXPECT_THAT(values_of(picked), ElementsAreArray(values_of(count ? mesh.nodes : Nodes())));
    const auto calls = db.calls("get_nodes_of_elements");
    ASSERT_EQ(calls.size(), (count + 255) / 256);
    Values asked;
    for (std::size_t i = 0; i < calls.size(); ++i) {
      const std::size_t batch = std::min<std::size_t>(256, count - 256 * i);
      EXPECT_EQ(calls[i].handles.size(), batch);
      EXPECT_THAT(calls[i].numbers, ElementsAre(0, 27 * batch));
      asked.insert(asked.end(), calls[i].handles.begin(), calls[i].handles.end());
    }
    EXPECT_THAT(asked, ElementsAreArray(values_of(mesh.mesh.elements[Tarn::Edge])));
    // 512 nodes of 256 edges are one chunk, so each batch is one read, straight after it.
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < calls.size(); ++i)
      expected.insert(expected.end(), {"get_nodes_of_elements", "get_coordinate_arrays"});
    EXPECT_THAT(db.operations(), ElementsAreArray(expected));
  }
}

TEST(RegionVertices, GivenAQuadraticElement_WhenPicked_ThenAllItsNodesCount) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Hex, 27);
  FlatPicker picker(mesh.database.get());
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  Nodes picked;
  picker.pickVertices(mesh.mesh.elements[Tarn::Hex], region, picked);
  EXPECT_THAT(picked, SizeIs(27));
}

TEST(RegionVertices, GivenASuperelementBeyondTheLimit_WhenPicked_ThenItsFirst27NodesCount) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Superelement, 40);
  FlatPicker picker(mesh.database.get());
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  Nodes picked;
  picker.pickVertices(mesh.mesh.elements[Tarn::Superelement], region, picked);
  EXPECT_THAT(values_of(picked), ElementsAreArray(values_of(Nodes(mesh.nodes.begin(), mesh.nodes.begin() + 27))));
}

TEST(RegionVertices, GivenNodesOfTheCallers_WhenPicked_ThenAllAreSortedAndListedOnce) {
  test_support::NamedMesh mesh = test_support::edge_chain(2);
  FlatPicker picker(mesh.database.get());
  ScriptedRegion region;
  region.point = [](const double* p) { return p[0] > 5; };
  const Node last{~std::uint64_t(0)};
  Nodes picked = {last, mesh.nodes[2], last, {1}};
  picker.pickVertices(mesh.mesh.elements[Tarn::Edge], region, picked);
  EXPECT_THAT(values_of(picked), ElementsAre(1, mesh.nodes[1].value, mesh.nodes[2].value, last.value));
  Nodes unsorted = {{5}, {2}, {5}};
  picker.pickVertices({}, region, unsorted);
  EXPECT_THAT(values_of(unsorted), ElementsAre(2, 5));
}

TEST(RegionVertices, GivenABatchThatFails_WhenPicked_ThenItAloneIsSkipped) {
  test_support::NamedMesh mesh = test_support::edge_chain(600);
  test_support::RecordingMeshData db(*mesh.database);
  db.fail_call("get_nodes_of_elements", 1);
  FlatPicker picker(&db);
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  Nodes picked;
  picker.pickVertices(mesh.mesh.elements[Tarn::Edge], region, picked);
  Nodes expected(mesh.nodes.begin(), mesh.nodes.begin() + 257);
  expected.insert(expected.end(), mesh.nodes.begin() + 512, mesh.nodes.end());
  EXPECT_THAT(values_of(picked), ElementsAreArray(values_of(expected)));
}

// ------------------------------------------------------------------------------------------ edges of elements

TEST(RegionEdges, GivenMoreElementsThanABatch_WhenPicked_ThenBatchesOf1365AreFinishedInTurn) {
  struct Row {
    std::size_t count;
    std::vector<std::size_t> batches;
  };
  for (const Row& row : {Row{0, {}}, Row{1, {1}}, Row{1365, {1365}}, Row{1366, {1365, 1}}, Row{2730, {1365, 1365}}}) {
    SCOPED_TRACE(row.count);
    test_support::NamedMesh mesh = test_support::one_element(Tarn::Tri, 3);
    test_support::RecordingMeshData db(*mesh.database);
    FlatPicker picker(&db);
    ScriptedRegion region;
    region.segment = [](const double*, const double*) { return true; };
    Elems picked;
    picker.pickEdges(Elems(row.count, mesh.mesh.elements[Tarn::Tri][0]), region, picked);
    EXPECT_THAT(picked, SizeIs(row.count ? 3 : 0)) << "each edge once";
    EXPECT_THAT(runs_of("get_adjacencies", db), ElementsAreArray(row.batches));
    const auto types = db.calls("get_element_types");
    ASSERT_EQ(types.size(), row.batches.size());
    for (std::size_t i = 0; i < types.size(); ++i)
      EXPECT_EQ(types[i].handles.size(), 3 * row.batches[i]);
    for (const auto& call : db.calls("get_adjacencies"))
      EXPECT_THAT(call.numbers, ElementsAre(1, 2, 24));
  }
}

TEST(RegionEdges, GivenEdgesOfTheCallers_WhenPicked_ThenAllAreSortedAndListedOnce) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  FlatPicker picker(mesh.database.get());
  const double from[2] = {9, 4};
  const double to[2] = {11, 6};
  PickRectangle middle(from, to); // touches the side between the two
  const Elem last{~std::uint64_t(0)};
  Elems picked = {last, {1}, last};
  picker.pickEdges(mesh.mesh.elements[Tarn::Quad], middle, picked);
  ASSERT_THAT(picked, SizeIs(3));
  EXPECT_EQ(picked[0], Elem{1});
  EXPECT_EQ(picked[2], last);
  Elems unsorted = {{5}, {2}, {5}};
  picker.pickEdges({}, middle, unsorted);
  EXPECT_THAT(values_of(unsorted), ElementsAre(2, 5));
}

TEST(RegionEdges, GivenAnElementThatFails_WhenPicked_ThenItAloneIsSkipped) {
  test_support::NamedMesh mesh;
  for (int i = 0; i < 3; ++i)
    mesh.add_own_element(Tarn::Tri, 3, 2.0 * i);
  test_support::RecordingMeshData db(*mesh.database);
  db.fail_call("get_adjacencies", 1);
  FlatPicker picker(&db);
  ScriptedRegion region;
  region.segment = [](const double*, const double*) { return true; };
  Elems picked;
  picker.pickEdges(mesh.mesh.elements[Tarn::Tri], region, picked);
  EXPECT_THAT(picked, SizeIs(6));
}

TEST(RegionTemplates, GivenASubclass_WhenItCallsThem_ThenTheyDoTheWork) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  FlatPicker picker(mesh.database.get());
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  region.segment = [](const double*, const double*) { return true; };
  Nodes nodes;
  picker.pickVerticesTemplate(mesh.mesh.elements[Tarn::Quad], region, nodes);
  EXPECT_THAT(nodes, SizeIs(4));
  Elems edges;
  picker.pickEdgesTemplate(mesh.mesh.elements[Tarn::Quad], region, edges);
  EXPECT_THAT(edges, SizeIs(4));
  Ray ray = down_at(0, 0);
  NodeHits node_hits;
  picker.pickVerticesTemplate(mesh.mesh.elements[Tarn::Quad], ray.data(), node_hits);
  EXPECT_THAT(node_hits, SizeIs(1));
  ElementHits edge_hits;
  picker.pickEdgesTemplate(mesh.mesh.elements[Tarn::Quad], ray.data(), edge_hits);
  EXPECT_THAT(edge_hits, SizeIs(2));
}

} // namespace
