#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include "platform/base/PickRectangle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

PickRectangle rectangle(double x0, double y0, double x1, double y1) {
  const double from[2] = {x0, y0};
  const double to[2] = {x1, y1};
  return PickRectangle(from, to);
}

// ------------------------------------------------------------------------------------------ projecting

TEST(TransformPoint, GivenAMatrixWithPerspective_WhenProjected_ThenItDividesByTheFourthCoordinate) {
  OpenPickInterface picker(nullptr);
  vtkNew<vtkMatrix4x4> matrix; // w = 2 + z
  matrix->SetElement(3, 2, 1);
  matrix->SetElement(3, 3, 2);
  int size[2] = {400, 100};
  double viewport[4] = {0.5, 0.25, 1, 0.75};
  picker.setTransform(matrix, size, viewport);
  size[0] = size[1] = 7; // copied, both of them
  viewport[0] = viewport[3] = 0.9;
  double point[3] = {2, -3, 4};
  picker.TransformPoint(point);
  // View (1/3, -1/2, 2/3), in the right half of 400 pixels and the middle half of 100.
  EXPECT_DOUBLE_EQ(point[0], 200 + 200 * (1.0 / 3 + 1) / 2);
  EXPECT_DOUBLE_EQ(point[1], 25 + 50 * 0.25);
  EXPECT_DOUBLE_EQ(point[2], 2.0 / 3);
  matrix->SetElement(3, 3, 0);
  double again[3] = {4, 0, 4};
  picker.TransformPoint(again);
  EXPECT_DOUBLE_EQ(again[0], 400) << "the matrix is borrowed";
}

// ------------------------------------------------------------------------------------------ nodes

TEST(RegionNodes, GivenNodes_WhenPicked_ThenEachDisplayPointIsAskedAboutInOrder) {
  test_support::NamedMesh mesh;
  const Nodes nodes = {mesh.add_node(1, 2, 3), mesh.add_node(4, 5, 6), mesh.add_node(7, 8, 9)};
  FlatPicker picker(mesh.database.get());
  ScriptedRegion region;
  region.point = [](const double* p) { return p[0] != 40; };
  Nodes picked = {{99}};
  picker.pickEntities(nodes, region, picked);
  EXPECT_THAT(values_of(picked), ElementsAre(99, nodes[0].value, nodes[2].value)) << "appended, not sorted";
  ASSERT_THAT(region.kinds_asked(), ElementsAre("point", "point", "point"));
  EXPECT_DOUBLE_EQ(region.asked[0].at[0], 10);
  EXPECT_DOUBLE_EQ(region.asked[0].at[1], 20);
  EXPECT_DOUBLE_EQ(region.asked[2].at[0], 70);
  EXPECT_DOUBLE_EQ(region.asked[2].at[1], 80);
}

TEST(RegionNodes, GivenMoreNodesThanAChunk_WhenPicked_ThenChunksOf1024AreRead) {
  for (const std::size_t count : {0, 1, 1023, 1024, 1025, 2048, 2049}) {
    SCOPED_TRACE(count);
    test_support::NamedMesh mesh = test_support::lone_nodes(static_cast<int>(count));
    test_support::RecordingMeshData db(*mesh.database);
    FlatPicker picker(&db);
    ScriptedRegion region;
    region.point = [](const double*) { return true; };
    Nodes picked;
    picker.pickEntities(mesh.nodes, region, picked);
    EXPECT_EQ(picked, mesh.nodes);
    Values asked;
    const auto calls = db.calls("get_coordinate_arrays");
    EXPECT_EQ(calls.size(), (count + 1023) / 1024);
    EXPECT_EQ(db.calls().size(), calls.size());
    for (std::size_t i = 0; i < calls.size(); ++i) {
      EXPECT_EQ(calls[i].handles.size(), std::min<std::size_t>(1024, count - 1024 * i));
      asked.insert(asked.end(), calls[i].handles.begin(), calls[i].handles.end());
    }
    EXPECT_THAT(asked, ElementsAreArray(values_of(mesh.nodes)));
  }
}

TEST(RegionNodes, GivenAnUnknownNodeAfterKnownOnes_WhenPicked_ThenItIsNotWhereAnotherWas) {
  test_support::NamedMesh mesh;
  Nodes nodes(1024, mesh.add_node(1, 1, 0));
  nodes.push_back({}); // first of the second chunk
  nodes.push_back(mesh.add_node(not_a_number, 1, 0));
  FlatPicker picker(mesh.database.get());
  PickRectangle all = rectangle(-1e9, -1e9, 1e9, 1e9);
  Nodes picked;
  picker.pickEntities(nodes, all, picked);
  EXPECT_THAT(picked, SizeIs(1024));
}

TEST(AllNodesAreInBounds, GivenNodes_WhenAsked_ThenOneCallReadsThemAndTheFirstOutsideEndsTheWalk) {
  test_support::NamedMesh mesh = test_support::lone_nodes(5);
  test_support::RecordingMeshData db(*mesh.database);
  OpenPickInterface picker(&db);
  FlatScreen screen;
  screen.put_into(picker);
  ScriptedRegion region;
  region.point = [](const double* p) { return p[0] < 25; };
  std::vector<double> scratch[3] = {{1, 2, 3}, {}, {4}};
  EXPECT_FALSE(picker.AllNodesAreInBounds(mesh.nodes, region, scratch));
  EXPECT_THAT(region.asked, SizeIs(4)) << "0, 10, 20, then 30, which is out";
  ASSERT_THAT(db.operations(), ElementsAre("get_coordinate_arrays"));
  EXPECT_THAT(db.calls()[0].handles, ElementsAreArray(values_of(mesh.nodes)));
  for (const auto& axis : scratch)
    EXPECT_THAT(axis, SizeIs(5));
  EXPECT_TRUE(picker.AllNodesAreInBounds({mesh.nodes[0], mesh.nodes[2]}, region, scratch));
  EXPECT_TRUE(picker.AllNodesAreInBounds({}, region, scratch));
  EXPECT_EQ(db.count("get_coordinate_arrays"), 3u) << "also for none";
}

// ------------------------------------------------------------------------------------------ elements

struct KindRow {
  Tarn::ElementType type;
  int node_count;
  bool touches; ///< whether a region that crosses it picks it
  bool inside;  ///< whether a region round it picks it when the whole element counts
};

class RegionKinds : public testing::TestWithParam<KindRow> {
protected:
  RegionKinds() : mesh_(test_support::one_element(GetParam().type, GetParam().node_count)) {}

  Elems pick(PickBounds& region, bool partial) {
    FlatPicker picker(mesh_.database.get());
    picker.setPartialAccept(partial);
    Elems picked;
    picker.pickEntities(mesh_.mesh.elements[GetParam().type], region, picked);
    return picked;
  }

  test_support::NamedMesh mesh_;
};

// All elements lie in the unit square of the plane, pixels 0 to 10.
TEST_P(RegionKinds, GivenARegionThatCrossesIt_WhenPicked_ThenItCountsOnlyWhenTouchingSuffices) {
  PickRectangle crossing = rectangle(2, -1, 3, 11);
  EXPECT_THAT(pick(crossing, true), SizeIs(GetParam().touches ? 1 : 0));
  EXPECT_THAT(pick(crossing, false), IsEmpty());
}

TEST_P(RegionKinds, GivenARegionAroundIt_WhenPicked_ThenItCounts) {
  PickRectangle around = rectangle(-1, -1, 11, 11);
  EXPECT_THAT(pick(around, true), SizeIs(GetParam().touches ? 1 : 0));
  EXPECT_THAT(pick(around, false), SizeIs(GetParam().inside ? 1 : 0));
}

TEST_P(RegionKinds, GivenARegionBeside_WhenPicked_ThenItDoesNotCount) {
  for (PickRectangle beside : {rectangle(11, 0, 20, 10), rectangle(0, 11, 10, 20)}) {
    EXPECT_THAT(pick(beside, true), IsEmpty());
    EXPECT_THAT(pick(beside, false), IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(All, RegionKinds,
                         testing::Values(KindRow{Tarn::Edge, 2, true, true}, KindRow{Tarn::Edge, 3, true, true},
                                         KindRow{Tarn::Tri, 3, true, true}, KindRow{Tarn::Tri, 6, true, true},
                                         KindRow{Tarn::Tri, 7, true, true}, KindRow{Tarn::Quad, 4, true, true},
                                         KindRow{Tarn::Quad, 8, true, true}, KindRow{Tarn::Quad, 9, true, true},
                                         KindRow{Tarn::Tet, 4, true, true}, KindRow{Tarn::Tet, 10, true, true},
                                         KindRow{Tarn::Hex, 8, true, true}, KindRow{Tarn::Hex, 20, true, true},
                                         KindRow{Tarn::Hex, 27, true, true}, KindRow{Tarn::Wedge, 6, true, true},
                                         KindRow{Tarn::Wedge, 15, true, true}, KindRow{Tarn::Wedge, 18, true, true},
                                         KindRow{Tarn::Pyramid, 5, true, true}, KindRow{Tarn::Pyramid, 13, true, true},
                                         KindRow{Tarn::Pyramid, 14, true, true},
                                         KindRow{Tarn::Superelement, 3, false, true},
                                         KindRow{Tarn::Superelement, 33, false, true}),
                         [](const auto& row) {
                           return "kind" + std::to_string(row.param.type) + "with" +
                                  std::to_string(row.param.node_count);
                         });

TEST(RegionElements, GivenAOneNodeElement_WhenPicked_ThenOnlyWholeContainmentTakesIt) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::OneNode, 1);
  FlatPicker picker(mesh.database.get());
  PickRectangle around = rectangle(-1, -1, 1, 1);
  Elems picked;
  picker.pickEntities(mesh.mesh.elements[Tarn::OneNode], around, picked);
  EXPECT_THAT(picked, IsEmpty()) << "touching suffices at first, and it has nothing that touches";
  picker.setPartialAccept(false);
  picker.pickEntities(mesh.mesh.elements[Tarn::OneNode], around, picked);
  EXPECT_THAT(picked, SizeIs(1));
}

TEST(RegionElements, GivenTheModes_WhenPicked_ThenTheDatabaseIsAskedInThisOrder) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Hex, 27);
  mesh.add_own_element(Tarn::Hex, 8, 2);
  const Elems hexes = mesh.mesh.elements[Tarn::Hex];
  test_support::RecordingMeshData db(*mesh.database);
  FlatPicker picker(&db);
  ScriptedRegion region;
  region.box = false;
  Elems picked = {{77}};
  picker.pickEntitiesTemplate(hexes, region, picked, true);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_types", "get_element_connectivity", "get_double_coordinates",
                                           "get_element_connectivity", "get_double_coordinates"));
  EXPECT_THAT(db.calls()[0].handles, ElementsAreArray(values_of(hexes)));
  EXPECT_THAT(db.calls()[1].numbers, ElementsAre(8)) << "no more than 8 nodes of an element";
  const Nodes first_eight(mesh.nodes.begin(), mesh.nodes.begin() + 8);
  EXPECT_THAT(db.calls()[2].handles, ElementsAreArray(values_of(first_eight)));

  db.forget_calls();
  region.point = [](const double*) { return true; };
  picker.pickEntitiesTemplate(hexes, region, picked, false);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_connectivity", "get_coordinate_arrays",
                                           "get_element_connectivity", "get_coordinate_arrays"));
  EXPECT_THAT(db.calls()[0].numbers, ElementsAre(8));
  EXPECT_THAT(db.calls()[1].handles, ElementsAreArray(values_of(first_eight)));
  EXPECT_THAT(values_of(picked), ElementsAre(77, hexes[0].value, hexes[1].value));

  db.forget_calls();
  for (const bool partial : {true, false})
    picker.pickEntitiesTemplate({}, region, picked, partial);
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST(RegionElements, GivenPartialAccept_WhenSet_ThenThePicksOfElementsAndEdgesFollowIt) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  FlatPicker picker(mesh.database.get());
  PickRectangle corner = rectangle(-1, -1, 1, 1);
  for (const bool partial : {true, false, true}) {
    picker.setPartialAccept(partial);
    Elems quads;
    picker.pickEntities(mesh.mesh.elements[Tarn::Quad], corner, quads);
    EXPECT_THAT(quads, SizeIs(partial ? 1 : 0));
    Elems edges;
    picker.pickEdges(mesh.mesh.elements[Tarn::Quad], corner, edges);
    EXPECT_THAT(edges, SizeIs(partial ? 2 : 0));
  }
}

TEST(RegionElements, GivenAnElementWithoutNodes_WhenTheWholeElementCounts_ThenItIsInside) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  test_support::RecordingMeshData db(*mesh.database);
  db.report_count("get_element_connectivity", 0);
  FlatPicker picker(&db);
  ScriptedRegion nothing;
  Elems picked;
  picker.setPartialAccept(false);
  picker.pickEntities(mesh.mesh.elements[Tarn::Quad], nothing, picked);
  EXPECT_THAT(picked, SizeIs(1));
  picker.setPartialAccept(true);
  picker.pickEntities(mesh.mesh.elements[Tarn::Quad], nothing, picked);
  EXPECT_THAT(picked, SizeIs(1)) << "nothing of it can touch";
}

} // namespace
