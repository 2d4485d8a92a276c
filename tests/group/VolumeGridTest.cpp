// The cells and points of a grid, and how they are stored.

#include "tests/group/VolumeGridFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(VolumeGrid, GivenEntitiesOfAllOrigins_WhenBuilt_ThenCellsComeInTheFixedOrder) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_VERTEX, VTK_VERTEX, VTK_POLY_LINE, VTK_POLY_LINE, VTK_VERTEX,
                                            VTK_POLY_VERTEX, VTK_TRIANGLE));
  const auto& elements = all.drawn.elements;
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"),
              ElementsAre(0, 0, elements[Tarn::Edge][0].value, elements[Tarn::Edge][1].value,
                          elements[Tarn::OneNode][0].value, elements[Tarn::Superelement][0].value, all.tri.value));
}

TEST_F(VolumeGrid, GivenCells_WhenBuilt_ThenPointsAreSharedAndNumberedInTheOrderInWhichCellsMeetThem) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  // Nodes met: 5 2 | 2 3 | 3 1 5 | 6 | 6 4 0 | 0 1 4.
  const int order[] = {5, 2, 3, 1, 6, 4, 0};
  std::vector<std::uint64_t> expected_nodes;
  std::vector<Point> expected_points;
  for (const int node : order) {
    expected_nodes.push_back(all.mesh.nodes[static_cast<std::size_t>(node)].value);
    expected_points.push_back({1.0 * node, 10.0 * node, 100.0 * node});
  }
  EXPECT_EQ(handle_values(grid->GetPointData(), "NodeIds"), expected_nodes);
  EXPECT_EQ(points_of(grid), expected_points);
  EXPECT_THAT(cell_points(grid),
              ElementsAre(Ids{0}, Ids{1}, Ids{1, 2}, Ids{2, 3, 0}, Ids{4}, Ids{4, 5, 6}, Ids{6, 3, 5}));
}

TEST_F(VolumeGrid, GivenAnEmptySet_WhenBuilt_ThenTheHandleArraysAreThereAndEmpty) {
  const NamedMesh nothing;
  const auto grid = build(nothing, MeshVector());
  EXPECT_EQ(grid->GetNumberOfPoints(), 0);
  EXPECT_EQ(grid->GetNumberOfCells(), 0);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), IsEmpty());
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"), IsEmpty());
  EXPECT_THAT(recorder->calls(), IsEmpty());
}

TEST_F(VolumeGrid, GivenOneColor_WhenBuilt_ThenOnlyTheHandleArraysAreThereAndNotAsAttributes) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  for (vtkDataSetAttributes* data : {static_cast<vtkDataSetAttributes*>(grid->GetPointData()),
                                     static_cast<vtkDataSetAttributes*>(grid->GetCellData())}) {
    EXPECT_EQ(data->GetNumberOfArrays(), 1);
    for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type)
      EXPECT_EQ(data->GetAbstractAttribute(type), nullptr);
  }
}

struct FaceRow {
  int kind, node_count, cell_type, points;
};

class VolumeGridFaces : public VolumeGrid, public ::testing::WithParamInterface<int> {};

TEST_P(VolumeGridFaces, GivenAFaceOfEachKindAndNodeCount_WhenBuilt_ThenTheTableSaysWhatIsDrawn) {
  const FaceRow drawn[] = {
      {3, 3, VTK_TRIANGLE, 3},           {3, 4, VTK_TRIANGLE, 3},      {3, 6, VTK_QUADRATIC_TRIANGLE, 6},
      {3, 7, VTK_QUADRATIC_TRIANGLE, 6}, {4, 4, VTK_QUAD, 4},          {4, 5, VTK_QUAD, 4},
      {4, 8, VTK_QUADRATIC_QUAD, 8},     {4, 9, VTK_QUADRATIC_QUAD, 8}};
  const int kind = GetParam();
  for (int count = 0; count <= 10; ++count) {
    const NamedMesh mesh = lone_nodes(10);
    SideList skin;
    skin.add(kind, {mesh.nodes.begin(), mesh.nodes.begin() + count}, {77});
    // A neighbour on either side shows that nothing shifts.
    SideList between;
    between.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2]}, {1});
    between.add(kind, {mesh.nodes.begin(), mesh.nodes.begin() + count}, {77});
    between.add(4, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], mesh.nodes[3]}, {2});
    const FaceRow* row = std::find_if(std::begin(drawn), std::end(drawn), [&](const FaceRow& candidate) {
      return candidate.kind == kind && candidate.node_count == count;
    });
    const bool is_drawn = row != std::end(drawn);

    const auto alone = build(mesh, MeshVector(), skin.scattered());
    ASSERT_EQ(alone->GetNumberOfCells(), is_drawn ? 1 : 0) << "kind " << kind << ", " << count << " nodes";
    EXPECT_EQ(alone->GetCellData()->GetArray("ElemIds")->GetNumberOfTuples(), alone->GetNumberOfCells());
    EXPECT_EQ(alone->GetNumberOfPoints(), is_drawn ? row->points : 0) << "kind " << kind << ", " << count << " nodes";
    if (is_drawn) {
      EXPECT_EQ(alone->GetCellType(0), row->cell_type) << "kind " << kind << ", " << count << " nodes";
      Ids points(static_cast<std::size_t>(row->points));
      std::iota(points.begin(), points.end(), 0);
      EXPECT_THAT(cell_points(alone), ElementsAre(points));
    }
    for (const auto& sides : {between.scattered(), between.in_one_block()}) {
      const auto grid = build(mesh, MeshVector(), sides);
      const auto ids = handle_values(grid->GetCellData(), "ElemIds");
      if (is_drawn)
        EXPECT_THAT(ids, ElementsAre(1, 77, 2));
      else
        EXPECT_THAT(ids, ElementsAre(1, 2));
      EXPECT_THAT(cell_points(grid).back(), ElementsAre(0, 1, 2, 3));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, VolumeGridFaces, ::testing::Values(0, 2, 3, 4, 5, 9));

TEST_F(VolumeGrid, GivenANodeInTheSetAndInAnElement_WhenBuilt_ThenItHasOnePointAndAVertexBesides) {
  const NamedMesh chain = edge_chain(1);
  MeshVector mesh = chain.mesh;
  mesh.nodes = {chain.nodes[1]};
  const auto grid = build(chain, mesh);
  EXPECT_EQ(grid->GetNumberOfPoints(), 2);
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_VERTEX, VTK_POLY_LINE));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1, 0}));
}

TEST_F(VolumeGrid, GivenDuplicates_WhenBuilt_ThenEachEntryIsDrawnOnItsOwn) {
  const NamedMesh chain = edge_chain(1);
  MeshVector mesh;
  mesh.nodes = {chain.nodes[0], chain.nodes[0]};
  mesh.elements[Tarn::Edge] = {chain.mesh.elements[Tarn::Edge][0], chain.mesh.elements[Tarn::Edge][0]};
  const auto grid = build(chain, mesh);
  EXPECT_EQ(grid->GetNumberOfPoints(), 2);
  EXPECT_EQ(grid->GetNumberOfCells(), 4);
}

TEST_F(VolumeGrid, GivenSuperelementsOfManySizes_WhenBuilt_ThenEachHasAllItsNodes) {
  NamedMesh mesh;
  for (const int count : {1, 7, 3})
    mesh.add_own_element(Tarn::Superelement, count);
  const auto grid = build(mesh, mesh.mesh);
  EXPECT_THAT(cell_types(grid), Each(VTK_POLY_VERTEX));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1, 2, 3, 4, 5, 6, 7}, Ids{8, 9, 10}));
}

// ------------------------------------------------------------------------------------------ precision and storage

TEST_F(VolumeGrid, GivenMeshesNearAndFar_WhenBuilt_ThenPointsAreSingleUnlessThatWouldShow) {
  for (int axis = 0; axis < 3; ++axis) {
    for (const double offset : {0.0, 900.0, 1e7}) {
      Point at = {0, 0, 0};
      at[static_cast<std::size_t>(axis)] = offset;
      NamedMesh mesh;
      mesh.add_node(at[0], at[1], at[2]);
      at[static_cast<std::size_t>(axis)] += 1.25;
      mesh.add_node(at[0], at[1], at[2]);
      mesh.add_element(Tarn::Edge, {0, 1});
      const auto grid = build(mesh, mesh.mesh);
      EXPECT_EQ(grid->GetPoints()->GetDataType(), offset > 1250 ? VTK_DOUBLE : VTK_FLOAT)
          << offset << ", axis " << axis;
      EXPECT_EQ(points_of(grid)[1], at) << "axis " << axis;
    }
  }
}

TEST_F(VolumeGrid, GivenTwoBuilds_WhenCompared_ThenTheyAreTwoGridsWithEqualContent) {
  Everything all;
  const auto first = build(all.mesh, all.drawn, all.skin.scattered());
  const auto second = build(all.mesh, all.drawn, all.skin.in_one_block());
  EXPECT_NE(first, second);
  EXPECT_EQ(difference(first, second), "");
}

TEST_F(VolumeGrid, GivenCells_WhenTheirUsesOfPointsDoNotFit_ThenIdsAreWideAndEverythingElseIsTheSame) {
  Everything all;
  color_type = GMeshGroup::CellColors;
  for (const bool failing : {false, true}) {
    if (failing) spoil = [](RecordingMeshData& db) { db.fail("get_node_ids"); };
    narrow_uses = std::numeric_limits<std::int32_t>::max();
    const auto narrow = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_FALSE(narrow->GetCells()->IsStorage64Bit());
    const auto calls = recorder->operations();
    // Two nodes, two edges with room for three nodes, one and three point-like nodes, and room for eight of a face.
    narrow_uses = 2 + 6 + 1 + 3 + 8;
    EXPECT_FALSE(build(all.mesh, all.drawn, all.skin.scattered())->GetCells()->IsStorage64Bit());
    --narrow_uses;
    const auto wide = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_TRUE(wide->GetCells()->IsStorage64Bit());
    EXPECT_EQ(difference(narrow, wide), "");
    EXPECT_EQ(recorder->operations(), calls);
  }
}

TEST_F(VolumeGrid, GivenAGrid_WhenItsArraysAreMeasured_ThenNoneHoldsRoomThatIsNotUsed) {
  const NamedMesh mesh = quad_sheet(30, 30);
  SideList skin;
  for (const auto quad : mesh.mesh.elements[Tarn::Quad]) {
    std::vector<Tarn::Handle<0>> nodes(4);
    Tarn::MeshData::Count count = 4;
    ASSERT_EQ(mesh.database->get_element_connectivity(quad, &count, nodes.data()), 0);
    skin.add(4, nodes, quad);
  }
  const auto grid = build(mesh, MeshVector(), skin.scattered());
  auto* node_ids = vtkTypeUInt64Array::SafeDownCast(grid->GetPointData()->GetArray("NodeIds"));
  ASSERT_EQ(node_ids->GetNumberOfTuples(), 31 * 31);
  EXPECT_EQ(node_ids->GetSize(), 31 * 31);
  EXPECT_TRUE(grid->GetCells()->IsValid());
  EXPECT_FALSE(grid->GetCells()->IsStorage64Bit());
  EXPECT_EQ(grid->GetCells()->GetConnectivityArray()->GetSize(), 4 * 30 * 30);
}

// Room is made for faces like the first: here it is made anew while faces are added.
TEST_F(VolumeGrid, GivenAFirstFaceThatIsNotDrawn_WhenMeasured_ThenPointIdsStillHoldNoRoomThatIsNotUsed) {
  const NamedMesh mesh = lone_nodes(10);
  SideList skin;
  skin.add(5, {mesh.nodes.begin(), mesh.nodes.begin() + 5}, {1});
  for (std::uint64_t i = 0; i < 7; ++i)
    skin.add(3, {mesh.nodes[i], mesh.nodes[i + 1], mesh.nodes[i + 3]}, {2 + i});
  const auto grid = build(mesh, MeshVector(), skin.scattered());
  ASSERT_EQ(grid->GetNumberOfCells(), 7);
  EXPECT_EQ(grid->GetCellTypesArray()->GetNumberOfTuples(), 7);
  EXPECT_EQ(grid->GetCells()->GetConnectivityArray()->GetSize(), 7 * 3);
  EXPECT_THAT(cell_points(grid).front(), ElementsAre(0, 1, 2));
  EXPECT_EQ(points_of(grid)[static_cast<std::size_t>(cell_points(grid).back()[2])][0], 9);
}

} // namespace
