// What a grid asks the database, and what it makes of odd answers and failures.

#include "tests/group/VolumeGridFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;

// ------------------------------------------------------------------------------------------ database calls

TEST_F(VolumeGrid, GivenAllLists_WhenBuilt_ThenIdsOfAllAreAskedForWithOneCall) {
  Everything all;
  all.skin.add(3, {all.mesh.nodes[4], all.mesh.nodes[1], all.mesh.nodes[6]}, all.tri);
  for (const auto& skin : {all.skin.scattered(), all.skin.in_one_block()}) {
    build(all.mesh, all.drawn, skin);
    const auto calls = recorder->calls("get_node_ids");
    ASSERT_EQ(calls.size(), 1u);
    std::vector<std::uint64_t> expected;
    for (const std::size_t node : {5, 2, 3, 1, 6, 4, 0}) // as cells meet them, each once
      expected.push_back(all.mesh.nodes[node].value);
    EXPECT_EQ(calls[0].handles, expected);
    EXPECT_EQ(recorder->count("get_connectivity"), 3u);
    EXPECT_EQ(recorder->count("get_coordinate_arrays"), 1u);
    EXPECT_EQ(recorder->calls().size(), 5u);
  }
}

TEST_F(VolumeGrid, GivenCentreNodes_WhenBuilt_ThenTheyAreNotAskedAbout) {
  const NamedMesh mesh = lone_nodes(9);
  SideList skin;
  skin.add(4, mesh.nodes, {5});
  for (const auto& sides : {skin.scattered(), skin.in_one_block()}) {
    build(mesh, MeshVector(), sides);
    ASSERT_EQ(recorder->count("get_node_ids"), 1u);
    EXPECT_EQ(recorder->calls("get_node_ids")[0].handles.size(), 8u);
    EXPECT_EQ(recorder->calls("get_coordinate_arrays")[0].handles.size(), 8u);
  }
}

TEST_F(VolumeGrid, GivenManyNodes_WhenBuilt_ThenEachIsReadOnceInBatchesOfAThousand) {
  struct Row {
    int nodes;
    std::vector<std::size_t> batches;
  };
  for (const Row& row :
       {Row{1, {1}}, Row{999, {999}}, Row{1000, {1000}}, Row{1001, {1000, 1}}, Row{2500, {1000, 1000, 500}}}) {
    NamedMesh mesh = lone_nodes(row.nodes);
    mesh.mesh.nodes = mesh.nodes;
    mesh.mesh.nodes.insert(mesh.mesh.nodes.end(), mesh.nodes.begin(), mesh.nodes.end());
    const auto grid = build(mesh, mesh.mesh);
    std::vector<std::size_t> batches;
    std::vector<std::uint64_t> read;
    for (const DatabaseCall& call : recorder->calls("get_coordinate_arrays")) {
      batches.push_back(call.handles.size());
      read.insert(read.end(), call.handles.begin(), call.handles.end());
    }
    EXPECT_EQ(batches, row.batches);
    EXPECT_EQ(read, values_of(mesh.nodes));
    ASSERT_EQ(grid->GetNumberOfPoints(), row.nodes);
    for (int i = 0; i < row.nodes; ++i)
      ASSERT_EQ(grid->GetPoint(i)[0], i);
  }
}

// ------------------------------------------------------------------------------------------ ids

/// Gives nodes the local ids of a table.
class OddIds : public RecordingMeshData {
public:
  OddIds(NamedMesh& mesh, std::vector<int> ids)
      : RecordingMeshData(*mesh.database), mesh_(mesh), ids_(std::move(ids)) {}
  void get_node_ids(Count count, const Node* nodes, int* ids) override {
    for (Count i = 0; i < count; ++i) {
      const auto found = std::find(mesh_.nodes.begin(), mesh_.nodes.end(), nodes[i]);
      ids[i] = ids_.at(static_cast<std::size_t>(found - mesh_.nodes.begin()));
    }
  }

private:
  NamedMesh& mesh_;
  std::vector<int> ids_;
};

TEST_F(VolumeGrid, GivenIdsThatAreZeroNegativeOrFarApart_WhenBuilt_ThenEachNodeHasItsPoint) {
  NamedMesh mesh = edge_chain(5);
  recorder = std::make_unique<OddIds>(
      mesh, std::vector<int>{0, -1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 4096});
  const auto grid = build(mesh.mesh);
  EXPECT_EQ(handle_values(grid->GetPointData(), "NodeIds"), values_of(mesh.nodes));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{1, 2}, Ids{2, 3}, Ids{3, 4}, Ids{4, 5}));
}

TEST_F(VolumeGrid, GivenTwoNodesWithOneId_WhenBuilt_ThenTheyAreOnePointThatStandsForTheFirst) {
  NamedMesh mesh = edge_chain(2);
  recorder = std::make_unique<OddIds>(mesh, std::vector<int>{7, 8, 7});
  const auto grid = build(mesh.mesh);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), ElementsAre(mesh.nodes[0].value, mesh.nodes[1].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{1, 0}));
}

// ------------------------------------------------------------------------------------------ failures

TEST_F(VolumeGrid, GivenNullNodes_WhenBuilt_ThenTheirVerticesAreLeftOut) {
  const NamedMesh mesh = lone_nodes(2);
  MeshVector drawn;
  drawn.nodes = {{}, mesh.nodes[1], {}, mesh.nodes[0]};
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(0), color_number(1), color_number(2), color_number(3)};
  const auto grid = build(mesh, drawn);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), ElementsAre(mesh.nodes[1].value, mesh.nodes[0].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1}));
  EXPECT_THAT(scalar_colors(grid->GetCellData()), ElementsAre(channels(color_number(1)), channels(color_number(3))));
  for (const DatabaseCall& call : recorder->calls())
    EXPECT_THAT(call.handles, Each(::testing::Ne(0u))) << call.operation;
}

TEST_F(VolumeGrid, GivenLostElements_WhenBuilt_ThenTheyAreLeftOutAndTheOthersKeepTheirColors) {
  NamedMesh mesh = edge_chain(3);
  for (const int count : {2, 2})
    mesh.add_own_element(Tarn::Superelement, count);
  mesh.add_own_element(Tarn::OneNode, 1);
  color_type = GMeshGroup::CellColors;
  element_colors[Tarn::Edge] = {color_number(0), color_number(1), color_number(2)};
  element_colors[Tarn::Superelement] = {color_number(3), color_number(4)};
  const auto& elements = mesh.mesh.elements;
  spoil = [&](RecordingMeshData& db) {
    db.lose(elements[Tarn::Edge][1]);
    db.lose(elements[Tarn::OneNode][0]);
    db.lose(elements[Tarn::Superelement][0]);
  };
  const auto grid = build(mesh, mesh.mesh);
  EXPECT_THAT(
      handle_values(grid->GetCellData(), "ElemIds"),
      ElementsAre(elements[Tarn::Edge][0].value, elements[Tarn::Edge][2].value, elements[Tarn::Superelement][1].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{2, 3}, Ids{4, 5}));
  EXPECT_THAT(scalar_colors(grid->GetCellData()),
              ElementsAre(channels(color_number(0)), channels(color_number(2)), channels(color_number(4))));
}

TEST_F(VolumeGrid, GivenFacesThatLackANode_WhenBuilt_ThenTheyAreLeftOut) {
  const NamedMesh mesh = lone_nodes(5);
  SideList skin;
  skin.add(3, {mesh.nodes[0], {}, mesh.nodes[2]}, {1});
  skin.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], {}}, {2}); // only the centre
  skin.add(4, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], {}}, {3});
  for (const auto& sides : {skin.scattered(), skin.in_one_block()})
    EXPECT_THAT(handle_values(build(mesh, MeshVector(), sides)->GetCellData(), "ElemIds"), ElementsAre(2));
}

TEST_F(VolumeGrid, GivenAnOperationThatFails_WhenBuilt_ThenTheGridIsStillWhole) {
  Everything all;
  struct Row {
    const char* operation;
    vtkIdType cells;
    vtkIdType points;
  };
  // Without connectivity only nodes and faces are left; without ids every node is number 0.
  for (const Row row : {Row{"get_connectivity", 3, 5}, Row{"get_node_ids", 7, 1}, Row{"get_coordinate_arrays", 7, 7}}) {
    spoil = [&](RecordingMeshData& db) { db.fail(row.operation); };
    const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_EQ(grid->GetNumberOfCells(), row.cells) << row.operation;
    ASSERT_EQ(grid->GetNumberOfPoints(), row.points) << row.operation;
    for (const Ids& points : cell_points(grid))
      EXPECT_THAT(points, Each(::testing::AllOf(::testing::Ge(0), ::testing::Lt(row.points)))) << row.operation;
    EXPECT_TRUE(grid->GetCells()->IsValid());
  }
}

TEST_F(VolumeGrid, GivenABatchOfCoordinatesThatFails_WhenBuilt_ThenItsNodesLieAtTheOriginAndOnlyThey) {
  NamedMesh mesh;
  for (int i = 0; i < 2500; ++i)
    mesh.add_node(i, i + 0.25, i + 0.5);
  mesh.mesh.nodes = mesh.nodes;
  spoil = [&](RecordingMeshData& db) {
    db.fail_call("get_coordinate_arrays", 1);
    db.lose(mesh.nodes[2400]);
  };
  const auto grid = build(mesh, mesh.mesh);
  ASSERT_EQ(grid->GetNumberOfPoints(), 2500);
  const auto points = points_of(grid);
  for (const int known : {0, 999, 2000, 2499})
    EXPECT_EQ(points[static_cast<std::size_t>(known)], (Point{1.0 * known, known + 0.25, known + 0.5}));
  for (const std::size_t failed : {1000u, 1999u})
    EXPECT_EQ(points[failed], (Point{0, 0, 0})) << failed;
}

/// Knows no more than one node of each element.
class OneNodeEach : public RecordingMeshData {
public:
  using RecordingMeshData::RecordingMeshData;
  void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) override {
    RecordingMeshData::get_connectivity(count, elements, length, nodes);
    for (Count i = 0; i < *length; ++i)
      if (i % (*length / count) != 1) nodes[i] = {};
  }
};

TEST_F(VolumeGrid, GivenElementsOfWhichOneNodeIsKnown_WhenBuilt_ThenEdgesAreLeftOutAndSuperelementsHaveIt) {
  NamedMesh mesh = edge_chain(2);
  mesh.add_own_element(Tarn::Superelement, 4);
  recorder = std::make_unique<OneNodeEach>(*mesh.database);
  const auto grid = build(mesh.mesh);
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"),
              ElementsAre(mesh.mesh.elements[Tarn::Superelement][0].value));
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), ElementsAre(mesh.nodes[4].value));
}

TEST_F(VolumeGrid, GivenAFalseLengthOfConnectivity_WhenBuilt_ThenItIsNotBelieved) {
  Everything all;
  const auto expected = build(all.mesh, all.drawn);
  for (const std::uint64_t length : {std::uint64_t(0), std::uint64_t(1), ~std::uint64_t(0)}) {
    spoil = [&](RecordingMeshData& db) { db.report_count("get_connectivity", length); };
    EXPECT_EQ(difference(build(all.mesh, all.drawn), expected), "");
  }
}

} // namespace
