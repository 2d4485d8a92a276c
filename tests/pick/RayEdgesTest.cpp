#include "tests/pick/GeometryDouble.h"
#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

Elems edges_of(test_support::NamedMesh& mesh, Elem element) {
  Elems edges(24);
  Tarn::MeshData::Count count = 24;
  EXPECT_EQ(mesh.database->get_adjacencies(element, 1, 2, &count, edges.data()), 0);
  edges.resize(count);
  return edges;
}

TEST(RayEdges, GivenAnEdgeOfTwoFaces_WhenPicked_ThenItIsListedOnce) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.05);
  Ray ray = down_at(1, 0.5); // the side between the two
  GeometryDouble geometry;
  ElementHits hits;
  EXPECT_TRUE(picker.pickEdges(mesh.mesh.elements[Tarn::Quad], ray.data(), hits));
  ASSERT_THAT(hits, SizeIs(1));
  EXPECT_EQ(hits[0].point[1], 0.5);
  EXPECT_TRUE(hits[0].is_exact);
  EXPECT_THAT(geometry.calls, SizeIs(8)) << "tested once for each face that has it";
}

TEST(RayEdges, GivenEachKind_WhenPickedOnOneOfItsEdges_ThenThatEdgeIsHit) {
  for (const auto make : {test_support::each_linear_kind, test_support::each_quadratic_kind}) {
    test_support::NamedMesh mesh = make();
    PickInterface picker(mesh.database.get());
    picker.setTolerance(0.01);
    for (const Tarn::ElementType type : {Tarn::Tri, Tarn::Quad, Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid}) {
      SCOPED_TRACE(type);
      // All but the wedge have an edge from their corner along x; the wedge has one there too, its last.
      Ray ray{2.0 * type + 0.25, 0, -5, 2.0 * type + 0.25, 0, 0};
      ElementHits hits;
      picker.pickEdges(mesh.mesh.elements[type], ray.data(), hits);
      ASSERT_THAT(hits, SizeIs(1));
      EXPECT_NEAR(hits[0].point[0], 2.0 * type + 0.25, 1e-12);
    }
  }
}

TEST(RayEdges, GivenHitsOfTheCallers_WhenPicked_ThenTheyAreSortedInAndRepeatedOnesGo) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.05);
  Ray ray = down_at(0.5, 0);
  const Elem last{~std::uint64_t(0)};
  ElementHits hits = {
      {last, {1, 1, 1}, true}, {{1}, {2, 2, 2}, true}, {last, {3, 3, 3}, false}, {{1}, {4, 4, 4}, true}};
  picker.pickEdges(mesh.mesh.elements[Tarn::Quad], ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(3));
  EXPECT_EQ(hits[0].handle, Elem{1});
  EXPECT_EQ(hits[0].point[0], 2);
  EXPECT_EQ(hits[2].handle, last);
  EXPECT_FALSE(hits[2].is_exact) << "the inexact record stays";
  EXPECT_EQ(hits[2].point[0], 3);
  ElementHits unsorted = {{{5}, {0, 0, 0}, true}, {{2}, {0, 0, 0}, true}, {{5}, {0, 0, 0}, true}};
  picker.pickEdges({}, ray.data(), unsorted);
  EXPECT_THAT(values_of(unsorted), ElementsAre(2, 5)) << "also when there is nothing to pick";
}

TEST(RayEdges, GivenElements_WhenPicked_ThenAdjacenciesComeFirstThenTheBatchesEdges) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  const Elems quads = mesh.mesh.elements[Tarn::Quad];
  Elems edges = edges_of(mesh, quads[0]);
  for (const Elem edge : edges_of(mesh, quads[1]))
    edges.push_back(edge);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  Ray ray = down_at(9, 9);
  ElementHits hits;
  picker.pickEdges(quads, ray.data(), hits);
  std::vector<std::string> expected = {"get_adjacencies", "get_adjacencies"};
  for (std::size_t i = 0; i < edges.size(); ++i)
    for (const char* name : {"get_element_connectivity", "get_node_coordinates", "get_node_coordinates"})
      expected.push_back(name);
  EXPECT_THAT(db.operations(), ElementsAreArray(expected));
  for (const auto& call : db.calls("get_adjacencies"))
    EXPECT_THAT(call.numbers, ElementsAre(1, 2, 24));
  Values asked;
  for (const auto& call : db.calls("get_element_connectivity")) {
    EXPECT_THAT(call.numbers, ElementsAre(2));
    asked.push_back(call.handles.at(0));
  }
  EXPECT_THAT(asked, ElementsAreArray(values_of(edges)));
}

TEST(RayEdges, GivenMoreElementsThanABatch_WhenPicked_ThenEachBatchIsFinishedBeforeTheNext) {
  struct Row {
    std::size_t count;
    std::vector<std::size_t> batches;
  };
  for (const Row& row : {Row{0, {}}, Row{4095, {4095}}, Row{4096, {4096}}, Row{4097, {4096, 1}},
                         Row{8192, {4096, 4096}}, Row{8193, {4096, 4096, 1}}}) {
    SCOPED_TRACE(row.count);
    test_support::NamedMesh mesh = test_support::one_element(Tarn::Tri, 3);
    test_support::RecordingMeshData db(*mesh.database);
    PickInterface picker(&db);
    Ray ray = down_at(9, 9);
    ElementHits hits;
    picker.pickEdges(Elems(row.count, mesh.mesh.elements[Tarn::Tri][0]), ray.data(), hits);
    EXPECT_THAT(runs_of("get_adjacencies", db), ElementsAreArray(row.batches));
    EXPECT_EQ(db.count("get_element_connectivity"), 3 * row.count);
  }
}

// ------------------------------------------------------------------------------------------ calls per kind

struct CallsRow {
  Tarn::ElementType type;
  int node_count;
  std::vector<std::string> before; ///< the calls for one element, but for those of its nodes' coordinates
  std::size_t coordinates;
  std::vector<std::int64_t> capacity; ///< given to get_element_connectivity
};

class RayCalls : public testing::TestWithParam<CallsRow> {};

TEST_P(RayCalls, GivenAnElement_WhenPicked_ThenTheDatabaseIsAskedInThisOrder) {
  const CallsRow& row = GetParam();
  test_support::NamedMesh mesh = test_support::one_element(row.type, row.node_count);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.2, 0.2);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[row.type], ray.data(), hits);
  std::vector<std::string> expected = {"get_element_types"};
  expected.insert(expected.end(), row.before.begin(), row.before.end());
  expected.insert(expected.end(), row.coordinates, "get_node_coordinates");
  EXPECT_THAT(db.operations(), ElementsAreArray(expected));
  if (!row.capacity.empty()) {
    EXPECT_THAT(db.calls("get_element_connectivity")[0].numbers, ElementsAreArray(row.capacity));
  }
  Values nodes;
  for (const auto& call : db.calls("get_node_coordinates"))
    nodes.push_back(call.handles.at(0));
  EXPECT_THAT(nodes,
              ElementsAreArray(values_of(Nodes(mesh.nodes.begin(), mesh.nodes.begin() + long(row.coordinates)))));
}

const std::vector<std::string> solid_calls = {"get_element_type", "get_element_node_count", "get_element_connectivity"};

INSTANTIATE_TEST_SUITE_P(
    Kinds, RayCalls,
    testing::Values(
        CallsRow{Tarn::OneNode, 1, {}, 0, {}}, CallsRow{Tarn::Edge, 3, {"get_element_connectivity"}, 2, {2}},
        CallsRow{Tarn::Tri, 7, {"get_element_connectivity"}, 3, {3}},
        CallsRow{Tarn::Quad, 9, {"get_element_connectivity"}, 4, {4}}, CallsRow{Tarn::Tet, 10, solid_calls, 10, {10}},
        CallsRow{Tarn::Hex, 8, solid_calls, 8, {8}}, CallsRow{Tarn::Hex, 27, solid_calls, 27, {27}},
        CallsRow{Tarn::Wedge, 15, solid_calls, 15, {15}}, CallsRow{Tarn::Pyramid, 14, solid_calls, 14, {14}},
        CallsRow{
            Tarn::Superelement, 5, {"get_element_node_count", "get_element_vertices", "get_coordinate_arrays"}, 0, {}}),
    [](const auto& row) {
      return "kind" + std::to_string(row.param.type) + "with" + std::to_string(row.param.node_count);
    });

TEST(RayParts, GivenOneKindsPick_WhenCalledByASubclass_ThenItTakesAnyListAndSaysTrue) {
  test_support::NamedMesh mesh = test_support::each_linear_kind();
  OpenPickInterface picker(mesh.database.get());
  picker.setTolerance(0.01);
  struct Row {
    bool (OpenPickInterface::*pick)(const Elems&, double*, ElementHits&);
    Tarn::ElementType type;
    double y;
  };
  for (const Row& row : {Row{&OpenPickInterface::pickEdgeEntities, Tarn::Edge, 0},
                         Row{&OpenPickInterface::pickTriEntities, Tarn::Tri, 0.25},
                         Row{&OpenPickInterface::pickFaceEntities, Tarn::Quad, 0.25},
                         Row{&OpenPickInterface::pick3DEntities, Tarn::Hex, 0.25}}) {
    Ray ray = down_at(2.0 * row.type + 0.25, row.y);
    ElementHits hits;
    EXPECT_TRUE((picker.*row.pick)({}, ray.data(), hits));
    EXPECT_THAT(hits, IsEmpty());
    EXPECT_TRUE((picker.*row.pick)(mesh.mesh.elements[row.type], ray.data(), hits));
    EXPECT_THAT(values_of(hits), ElementsAre(mesh.mesh.elements[row.type][0].value));
  }
}

TEST(RayParts, GivenAPicker_WhenCopied_ThenTheCopyHasItsToleranceAndDatabase) {
  test_support::NamedMesh mesh = test_support::lone_nodes(1);
  PickInterface first(mesh.database.get());
  first.setTolerance(2);
  const PickInterface copy = first;
  PickInterface assigned(nullptr);
  assigned = copy;
  first.setTolerance(0);
  Ray ray = down_at(1.5, 0);
  NodeHits hits;
  assigned.pickEntities(mesh.nodes, ray.data(), hits);
  EXPECT_THAT(hits, SizeIs(1));
}

} // namespace
