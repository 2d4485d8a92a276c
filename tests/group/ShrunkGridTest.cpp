#include "group/ShrunkGrid.h"

#include "group/EntityColors.h"
#include "mesh/database/MDBDefines.h"
#include "tests/group/GridInspection.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;

class ShrunkGrid : public ::testing::Test {
protected:
  void fill(const NamedMesh& from, double factor) { fill(from, from.mesh, factor); }
  void fill(const NamedMesh& from, const MeshVector& mesh, double factor) {
    recorder = std::make_unique<RecordingMeshData>(*from.database);
    if (spoil) spoil(*recorder);
    const EntityColors colors{color_type, single, node_colors, element_colors, vertex_colors};
    fill_shrunk_grid({recorder.get(), mesh, element_positions, colors, factor}, grid, narrow_uses);
  }

  vtkNew<vtkUnstructuredGrid> grid;
  std::unique_ptr<RecordingMeshData> recorder;
  std::function<void(RecordingMeshData&)> spoil;
  GMeshGroup::ColorType color_type = GMeshGroup::SingleColor;
  TovanColor single{1, 2, 3, 4};
  std::vector<TovanColor> node_colors;
  std::array<std::vector<TovanColor>, 10> element_colors;
  std::map<Tarn::Handle<0>, TovanColor> vertex_colors;
  const std::vector<int> (*element_positions)[10] = nullptr;
  std::size_t narrow_uses = std::numeric_limits<std::int32_t>::max();
};

TEST_F(ShrunkGrid, GivenAnEdge_WhenShrunkByHalf_ThenItsPointsMoveHalfWayToItsCentre) {
  NamedMesh mesh;
  mesh.add_node(2, 0, 8);
  mesh.add_node(6, 4, 0);
  mesh.add_element(Tarn::Edge, {0, 1});
  fill(mesh, 0.5);
  EXPECT_THAT(points_of(grid), ElementsAre(Point{3, 1, 6}, Point{5, 3, 2}));
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_LINE));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}));
}

TEST_F(ShrunkGrid, GivenElementsThatShareANode_WhenShrunk_ThenItHasAPointForEach) {
  fill(edge_chain(2), 0.5);
  EXPECT_THAT(points_of(grid), ElementsAre(Point{0.25, 0, 0}, Point{0.75, 0, 0}, Point{1.25, 0, 0}, Point{1.75, 0, 0}));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{2, 3}));
}

TEST_F(ShrunkGrid, GivenAnyMesh_WhenShrunk_ThenThereAreNoHandleArrays) {
  fill(each_linear_kind(), 0.5);
  EXPECT_GT(grid->GetNumberOfCells(), 0);
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 0);
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 0);
}

struct KindRow {
  Tarn::ElementType kind;
  int linear_nodes, quadratic_nodes;
  int cell_type;
  std::vector<Ids> cells;
};

const KindRow kinds[] = {
    {Tarn::OneNode, 1, 1, VTK_VERTEX, {{0}}},
    {Tarn::Edge, 2, 3, VTK_LINE, {{0, 1}}},
    {Tarn::Tri, 3, 6, VTK_TRIANGLE, {{0, 1, 2}}},
    {Tarn::Quad, 4, 9, VTK_QUAD, {{0, 1, 2, 3}}},
    {Tarn::Superelement, 5, 5, VTK_POLY_VERTEX, {{0, 1, 2, 3, 4}}},
};

TEST_F(ShrunkGrid, GivenEachFlatKind_WhenShrunk_ThenItIsOneCellOnItsCorners) {
  for (const KindRow& row : kinds)
    for (const int node_count : {row.linear_nodes, row.quadratic_nodes}) {
      fill(one_element(row.kind, node_count), 0.5);
      EXPECT_THAT(cell_types(grid), ElementsAre(row.cell_type)) << row.kind;
      EXPECT_EQ(cell_points(grid), row.cells) << row.kind;
      EXPECT_EQ(static_cast<std::size_t>(grid->GetNumberOfPoints()), row.cells[0].size()) << row.kind;
    }
}

TEST_F(ShrunkGrid, GivenEachSolidKind_WhenShrunk_ThenItIsAPolygonPerSideOnItsCorners) {
  const std::pair<Tarn::ElementType, int> solids[] = {{Tarn::Tet, 4},     {Tarn::Tet, 10},    {Tarn::Hex, 8},
                                                      {Tarn::Hex, 27},    {Tarn::Wedge, 6},   {Tarn::Wedge, 15},
                                                      {Tarn::Pyramid, 5}, {Tarn::Pyramid, 13}};
  for (const auto& [kind, node_count] : solids) {
    fill(one_element(kind, node_count), 0.5);
    const auto table = MDBDefines::ElementTypeFromTarnType(kind);
    std::vector<Ids> expected;
    for (int side = 0; side < MDBDefines::NumSides(table); ++side) {
      const std::uint32_t* nodes = MDBDefines::SidesetNodeIndices(table, side);
      expected.emplace_back(nodes, nodes + MDBDefines::NodesPerSide(table, side));
    }
    ASSERT_GE(expected.size(), 4u);
    EXPECT_EQ(cell_points(grid), expected) << kind;
    EXPECT_THAT(cell_types(grid), Each(VTK_POLYGON)) << kind;
    EXPECT_EQ(grid->GetNumberOfPoints(), linear_node_count(kind)) << kind;
  }
}

TEST_F(ShrunkGrid, GivenTwoHexes_WhenShrunk_ThenInteriorSidesAreDrawnToo) {
  fill(two_hexes(), 0.5);
  EXPECT_EQ(grid->GetNumberOfCells(), 12);
  EXPECT_EQ(grid->GetNumberOfPoints(), 16);
  // Each cube stays within half a unit about its centre, with none of its points on the side that both share.
  for (const Point& point : points_of(grid))
    EXPECT_TRUE(point[0] == 0.25 || point[0] == 0.75 || point[0] == 1.25 || point[0] == 1.75) << point[0];
}

TEST_F(ShrunkGrid, GivenAllKinds_WhenShrunk_ThenTheyComeInTheOrderOfTheKindsAndNodesAreNotDrawn) {
  NamedMesh mesh = each_linear_kind();
  mesh.mesh.nodes = mesh.nodes;
  fill(mesh, 0.5);
  std::vector<int> expected = {VTK_VERTEX, VTK_LINE, VTK_TRIANGLE, VTK_QUAD};
  expected.insert(expected.end(), 4 + 6 + 5 + 5, VTK_POLYGON);
  expected.push_back(VTK_POLY_VERTEX);
  EXPECT_EQ(cell_types(grid), expected);
  // Elements lie side by side, so that their order shows in x.
  const auto points = points_of(grid);
  EXPECT_EQ(points.size(), 1u + 2 + 3 + 4 + 4 + 8 + 6 + 5 + 3);
  EXPECT_LT(points.front()[0], points.back()[0]);
}

TEST_F(ShrunkGrid, GivenCoordinatesThatRound_WhenShrunk_ThenOnlyTheScalingIsInDoublePrecision) {
  NamedMesh mesh;
  const double xs[] = {0.1, 0.7, 1.9};
  for (const double x : xs)
    mesh.add_node(x, -3 * x, 0.3);
  mesh.add_element(Tarn::Tri, {0, 1, 2});
  const double factor = static_cast<double>(0.1f);
  fill(mesh, factor);
  ASSERT_EQ(grid->GetNumberOfPoints(), 3);
  const float x[] = {0.1f, 0.7f, 1.9f};
  float sum = 0;
  for (const float value : x)
    sum += value;
  const float center = sum / 3.0f;
  for (int i = 0; i < 3; ++i) {
    const float difference = x[i] - center;
    const double expected = static_cast<double>(center) + factor * static_cast<double>(difference);
    EXPECT_EQ(grid->GetPoint(i)[0], static_cast<double>(static_cast<float>(expected)));
  }
}

TEST_F(ShrunkGrid, GivenAnyFactor_WhenShrunk_ThenDistancesFromTheCentreScaleWithIt) {
  for (const double factor : {0.1, 0.25, 0.75, 0.999}) {
    fill(one_hex(), factor);
    for (const Point& point : points_of(grid))
      for (const double value : point)
        EXPECT_FLOAT_EQ(static_cast<float>(std::abs(value - 0.5)), static_cast<float>(factor / 2));
  }
  fill(one_hex(), std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(grid->GetNumberOfCells(), 6);
  EXPECT_TRUE(std::isnan(grid->GetPoint(0)[0]));
}

TEST_F(ShrunkGrid, GivenAFarMesh_WhenShrunk_ThenPointsAreInDoublePrecision) {
  for (int axis = 0; axis < 3; ++axis) {
    NamedMesh mesh;
    for (const double x : {1e6, 1e6 + 1}) {
      double xyz[3] = {0, 0, 0};
      xyz[axis] = x;
      mesh.add_node(xyz[0], xyz[1], xyz[2]);
    }
    mesh.add_element(Tarn::Edge, {0, 1});
    fill(mesh, 0.25);
    EXPECT_EQ(grid->GetPoints()->GetDataType(), VTK_DOUBLE);
    EXPECT_EQ(grid->GetPoint(0)[axis], 1e6 + 0.375);
    EXPECT_EQ(grid->GetPoint(1)[axis], 1e6 + 0.625);
  }
  fill(edge_chain(1), 0.25);
  EXPECT_EQ(grid->GetPoints()->GetDataType(), VTK_FLOAT);
}

TEST_F(ShrunkGrid, GivenCells_WhenTheirUsesOfPointsDoNotFit_ThenIdsAreWideAndEverythingElseIsTheSame) {
  const NamedMesh mesh = each_linear_kind();
  color_type = GMeshGroup::CellColors;
  fill(mesh, 0.5);
  EXPECT_FALSE(grid->GetCells()->IsStorage64Bit());
  vtkNew<vtkUnstructuredGrid> narrow;
  narrow->DeepCopy(grid);
  // One to four points, then the sides: four triangles, six quadrilaterals, two and three, one and four; a
  // superelement.
  narrow_uses = 1 + 2 + 3 + 4 + 12 + 24 + 18 + 16 + 3;
  fill(mesh, 0.5);
  EXPECT_FALSE(grid->GetCells()->IsStorage64Bit());
  --narrow_uses;
  fill(mesh, 0.5);
  EXPECT_TRUE(grid->GetCells()->IsStorage64Bit());
  EXPECT_EQ(difference(grid, narrow), "");
}

// ------------------------------------------------------------------------------------------ database calls

TEST_F(ShrunkGrid, GivenElements_WhenShrunk_ThenEachKindIsReadWithTwoCallsForItsWholeList) {
  const NamedMesh mesh = two_hexes();
  fill(mesh, 0.5);
  ASSERT_THAT(recorder->operations(), ElementsAre("get_connectivity", "get_float_coordinates"));
  EXPECT_EQ(recorder->calls()[0].handles, values_of(mesh.mesh.elements[Tarn::Hex]));
  EXPECT_THAT(recorder->calls()[0].numbers, ElementsAre(16));
  EXPECT_EQ(recorder->calls()[1].handles.size(), 16u);
  EXPECT_EQ(recorder->calls()[1].handles[8], mesh.nodes[1].value);
}

TEST_F(ShrunkGrid, GivenSuperelementsOfManySizes_WhenShrunk_ThenPaddingTakesNoPart) {
  NamedMesh mesh;
  mesh.add_own_element(Tarn::Superelement, 5, 10);
  mesh.add_own_element(Tarn::Superelement, 2, 20);
  mesh.add_own_element(Tarn::Superelement, 1, 30);
  fill(mesh, 0.5);
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1, 2, 3, 4}, Ids{5, 6}, Ids{7}));
  EXPECT_THAT(points_of(grid),
              ElementsAre(Point{10.25, 0, 0}, Point{10.375, 0, 0}, Point{10.5, 0, 0}, Point{10.625, 0, 0},
                          Point{10.75, 0, 0}, Point{20.25, 0, 0}, Point{20.75, 0, 0}, Point{30, 0, 0}));
  EXPECT_THAT(recorder->calls("get_float_coordinates")[0].handles, Each(::testing::Ne(0u)));
}

// ------------------------------------------------------------------------------------------ colours

TEST_F(ShrunkGrid, GivenCellColors_WhenShrunk_ThenAllSidesOfAnElementHaveItsColor) {
  NamedMesh mesh = two_hexes();
  mesh.add_element(Tarn::Edge, {0, 1});
  mesh.mesh.nodes = mesh.nodes;
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(50)};
  element_colors[Tarn::Edge] = {color_number(1)};
  element_colors[Tarn::Hex] = {color_number(2), color_number(3), color_number(4)};
  const auto expect_colors = [&](const Color& edge, const Color& first, const Color& second) {
    std::vector<Color> expected = {edge};
    expected.insert(expected.end(), 6, first);
    expected.insert(expected.end(), 6, second);
    EXPECT_EQ(scalar_colors(grid->GetCellData()), expected);
    EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 1);
    EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 0);
  };
  fill(mesh, 0.5);
  expect_colors(channels(color_number(1)), channels(color_number(2)), channels(color_number(3)));
  const std::vector<int> positions[10] = {{}, {}, {4}, {}, {}, {}, {2, 0}, {}, {}, {}};
  element_positions = &positions;
  fill(mesh, 0.5);
  expect_colors(white, channels(color_number(4)), channels(color_number(2)));
}

TEST_F(ShrunkGrid, GivenVertexColors_WhenShrunk_ThenEachPointHasItsNodesColorOrTheSingleOne) {
  const NamedMesh mesh = edge_chain(2);
  color_type = GMeshGroup::VertexColors;
  vertex_colors[mesh.nodes[1]] = color_number(5);
  fill(mesh, 0.5);
  const Color one = channels(single);
  EXPECT_THAT(scalar_colors(grid->GetPointData()),
              ElementsAre(one, channels(color_number(5)), channels(color_number(5)), one));
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 1);
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 0);
}

// ------------------------------------------------------------------------------------------ the kept grid

TEST_F(ShrunkGrid, GivenAFilledGrid_WhenFilledAgain_ThenOnlyTheNewContentIsThereAndItIsNewer) {
  color_type = GMeshGroup::CellColors;
  fill(two_hexes(), 0.5);
  vtkNew<vtkDoubleArray> stranger;
  stranger->SetName("NodeIds");
  stranger->SetNumberOfTuples(16);
  grid->GetPointData()->AddArray(stranger);
  const vtkMTimeType before = grid->GetMTime();
  color_type = GMeshGroup::SingleColor;
  fill(edge_chain(1), 0.5);
  EXPECT_EQ(grid->GetNumberOfCells(), 1);
  EXPECT_EQ(grid->GetNumberOfPoints(), 2);
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 0);
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 0);
  EXPECT_GT(grid->GetMTime(), before);
  double bounds[6];
  grid->GetBounds(bounds);
  EXPECT_THAT(bounds, ElementsAre(0.25, 0.75, 0, 0, 0, 0));
}

TEST_F(ShrunkGrid, GivenArraysThatOthersShare_WhenFilledAgain_ThenThoseStayAsTheyAre) {
  color_type = GMeshGroup::CellColors;
  fill(two_hexes(), 0.5);
  vtkNew<vtkUnstructuredGrid> sharing;
  sharing->ShallowCopy(grid);
  ASSERT_EQ(sharing->GetPoints(), grid->GetPoints());
  vtkNew<vtkUnstructuredGrid> copy;
  copy->DeepCopy(grid);
  fill(edge_chain(3), 0.5);
  EXPECT_NE(sharing->GetPoints(), grid->GetPoints());
  EXPECT_NE(sharing->GetCells(), grid->GetCells());
  EXPECT_EQ(difference(sharing, copy), "");
}

TEST_F(ShrunkGrid, GivenNoElements_WhenFilled_ThenTheGridIsEmptied) {
  fill(two_hexes(), 0.5);
  NamedMesh nodes = lone_nodes(3);
  nodes.mesh.nodes = nodes.nodes;
  fill(nodes, 0.5);
  EXPECT_EQ(grid->GetNumberOfCells(), 0);
  EXPECT_EQ(grid->GetNumberOfPoints(), 0);
  EXPECT_THAT(recorder->calls(), ::testing::IsEmpty());
}

// ------------------------------------------------------------------------------------------ failures

TEST_F(ShrunkGrid, GivenLostElements_WhenShrunk_ThenTheyAreLeftOutAndTheOthersKeepTheirColors) {
  const NamedMesh mesh = edge_chain(3);
  color_type = GMeshGroup::CellColors;
  element_colors[Tarn::Edge] = {color_number(0), color_number(1), color_number(2)};
  spoil = [&](RecordingMeshData& db) { db.lose(mesh.mesh.elements[Tarn::Edge][1]); };
  fill(mesh, 0.5);
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{2, 3}));
  EXPECT_EQ(grid->GetPoint(2)[0], 2.25);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), ElementsAre(channels(color_number(0)), channels(color_number(2))));
}

TEST_F(ShrunkGrid, GivenAnOperationThatFails_WhenShrunk_ThenTheGridIsStillWhole) {
  const NamedMesh mesh = each_linear_kind();
  spoil = [](RecordingMeshData& db) { db.fail("get_connectivity"); };
  fill(mesh, 0.5);
  EXPECT_EQ(grid->GetNumberOfCells(), 0);
  spoil = [](RecordingMeshData& db) { db.fail("get_float_coordinates"); };
  fill(mesh, 0.5);
  EXPECT_EQ(grid->GetNumberOfCells(), 4 + 20 + 1);
  EXPECT_THAT(points_of(grid), Each(Point{0, 0, 0}));
  for (const std::uint64_t length : {std::uint64_t(0), ~std::uint64_t(0)}) {
    spoil = [&](RecordingMeshData& db) { db.report_count("get_connectivity", length); };
    fill(mesh, 0.5);
    EXPECT_EQ(grid->GetNumberOfCells(), 4 + 20 + 1);
  }
}

TEST_F(ShrunkGrid, GivenAnElementOfAnotherKindInAList_WhenShrunk_ThenItIsDrawnOnlyWhenItHasTheNodes) {
  const NamedMesh mesh = each_linear_kind();
  MeshVector wrong;
  wrong.elements[Tarn::Quad] = {mesh.mesh.elements[Tarn::Tri][0], mesh.mesh.elements[Tarn::Hex][0]};
  fill(mesh, wrong, 0.5);
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_QUAD));
}

} // namespace
