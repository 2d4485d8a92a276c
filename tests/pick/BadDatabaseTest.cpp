#include "tests/pick/ErraticMeshData.h"
#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include "platform/base/PickRectangle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// Three like elements side by side, each of which a ray can be sent at.
struct ThreeElements {
  explicit ThreeElements(Tarn::ElementType kind) : type(kind) {
    for (int i = 0; i < 3; ++i)
      mesh.add_own_element(kind, test_support::linear_node_count(kind), 2.0 * i);
  }
  const Elems& elements() const { return mesh.mesh.elements[type]; }
  // Which of the three a pick finds, each by a ray of its own.
  std::vector<int> found_by_ray(Tarn::MeshData& db) const {
    PickInterface picker(&db);
    picker.setTolerance(0.01);
    std::vector<int> found;
    for (int i = 0; i < 3; ++i) {
      Ray ray = down_at(2.0 * i + 0.25, type == Tarn::Edge ? 0 : 0.25);
      ElementHits hits;
      picker.pickEntities(elements(), ray.data(), hits);
      for (const auto& hit : hits)
        if (hit.handle == elements()[std::size_t(i)]) found.push_back(i);
    }
    return found;
  }
  test_support::NamedMesh mesh;
  Tarn::ElementType type;
};

constexpr Tarn::ElementType tested[] = {Tarn::Edge, Tarn::Tri,   Tarn::Quad,   Tarn::Tet,
                                        Tarn::Hex,  Tarn::Wedge, Tarn::Pyramid};

// ------------------------------------------------------------------------------------------ failing

TEST(FailingDatabase, GivenALostElement_WhenPickedByRay_ThenItAloneIsSkipped) {
  for (const Tarn::ElementType type : tested) {
    SCOPED_TRACE(type);
    const ThreeElements three(type);
    test_support::RecordingMeshData db(*three.mesh.database);
    ASSERT_THAT(three.found_by_ray(db), ElementsAre(0, 1, 2));
    db.lose(three.elements()[1]);
    EXPECT_THAT(three.found_by_ray(db), ElementsAre(0, 2));
  }
}

TEST(FailingDatabase, GivenALostNode_WhenPickedByRay_ThenItsElementIsNotHitAndTheOthersAre) {
  for (const Tarn::ElementType type : {Tarn::Edge, Tarn::Tri, Tarn::Quad}) {
    SCOPED_TRACE(type);
    const ThreeElements three(type);
    test_support::RecordingMeshData db(*three.mesh.database);
    db.lose(three.mesh.nodes[std::size_t(test_support::linear_node_count(type))]); // the second's first
    EXPECT_THAT(three.found_by_ray(db), ElementsAre(0, 2));
  }
}

TEST(FailingDatabase, GivenAnOperationThatFails_WhenPickedByRay_ThenNothingIsHit) {
  for (const Tarn::ElementType type : tested)
    for (const char* operation : {"get_element_types", "get_element_connectivity", "get_node_coordinates"}) {
      SCOPED_TRACE(testing::Message() << operation << " of kind " << type);
      const ThreeElements three(type);
      test_support::RecordingMeshData db(*three.mesh.database);
      db.fail(operation);
      EXPECT_THAT(three.found_by_ray(db), IsEmpty());
    }
}

TEST(FailingDatabase, GivenATriangleWhoseConnectivityFails_WhenPicked_ThenItIsSkipped) {
  const ThreeElements three(Tarn::Tri);
  test_support::RecordingMeshData db(*three.mesh.database);
  db.fail_call("get_element_connectivity", 1);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.25, 0.25); // at the first, whose nodes are still at hand
  ElementHits hits;
  picker.pickEntities(three.elements(), ray.data(), hits);
  EXPECT_THAT(values_of(hits), ElementsAre(three.elements()[0].value));
}

TEST(FailingDatabase, GivenAQuadrilateralWhoseConnectivityFails_WhenPicked_ThenItHasTheNodesOfTheOneBefore) {
  const ThreeElements three(Tarn::Quad);
  test_support::RecordingMeshData db(*three.mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.25, 0.25);
  db.fail_call("get_element_connectivity", 1);
  ElementHits hits;
  picker.pickEntities(three.elements(), ray.data(), hits);
  EXPECT_THAT(values_of(hits), ElementsAre(three.elements()[0].value, three.elements()[1].value));

  // The first to fail has null handles; the call goes on to their coordinates all the same.
  db.answer_well();
  db.forget_calls();
  db.fail_call("get_element_connectivity", 0);
  hits.clear();
  picker.pickEntities(three.elements(), ray.data(), hits);
  EXPECT_THAT(hits, IsEmpty());
  const auto coordinates = db.calls("get_node_coordinates");
  ASSERT_THAT(coordinates, SizeIs(12));
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_THAT(coordinates[i].handles, ElementsAre(0));
}

TEST(FailingDatabase, GivenEverySecondCallFails_WhenPicked_ThenTheRestIsFound) {
  const ThreeElements three(Tarn::Tri);
  test_support::RecordingMeshData db(*three.mesh.database);
  for (const std::size_t n : {1, 3, 5, 7})
    db.fail_call("get_element_connectivity", n);
  // Three rays over three elements: calls 0 to 8, of which 1, 3, 5 and 7 fail. The pick of the i-th by its own ray is
  // call 4 i.
  EXPECT_THAT(three.found_by_ray(db), ElementsAre(0, 1, 2));
  db.answer_well();
  db.forget_calls();
  for (const std::size_t n : {0, 2, 4, 6, 8})
    db.fail_call("get_element_connectivity", n);
  EXPECT_THAT(three.found_by_ray(db), IsEmpty());
}

TEST(FailingDatabase, GivenNoNodeCount_WhenPicked_ThenSolidsAreTakenForEightNodesAndVerticesForNone) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Hex, 27);
  test_support::RecordingMeshData db(*mesh.database);
  db.fail("get_element_node_count");
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.25, 0.5);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  EXPECT_THAT(hits, SizeIs(1));
  EXPECT_THAT(db.calls("get_element_connectivity")[0].numbers, ElementsAre(8));
  NodeHits nodes;
  picker.pickVertices(mesh.mesh.elements[Tarn::Hex], ray.data(), nodes);
  EXPECT_THAT(db.calls("get_element_vertices")[0].numbers, ElementsAre(0));
}

TEST(FailingDatabase, GivenVerticesOrEdgesThatFail_WhenPicked_ThenTheirElementsAreSkipped) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray at_first = down_at(0, 0);
  Ray at_second = down_at(2, 0);
  db.fail_call("get_element_vertices", 0);
  NodeHits nodes;
  picker.pickVertices(mesh.mesh.elements[Tarn::Quad], at_first.data(), nodes);
  EXPECT_THAT(nodes, IsEmpty());
  picker.pickVertices(mesh.mesh.elements[Tarn::Quad], at_second.data(), nodes);
  EXPECT_THAT(values_of(nodes), ElementsAre(mesh.nodes[2].value));
  db.fail_call("get_adjacencies", 0);
  ElementHits edges;
  picker.pickEdges(mesh.mesh.elements[Tarn::Quad], at_first.data(), edges);
  EXPECT_THAT(edges, IsEmpty());
  picker.pickEdges(mesh.mesh.elements[Tarn::Quad], at_second.data(), edges);
  EXPECT_THAT(edges, SizeIs(2));
}

// ------------------------------------------------------------------------------------------ lying

TEST(LyingDatabase, GivenFewerNodesThanTheKindHas_WhenPicked_ThenItsWholeSidesAreTested) {
  test_support::NamedMesh mesh = test_support::one_hex();
  test_support::RecordingMeshData db(*mesh.database);
  db.report_count("get_element_node_count", 4); // the bottom alone
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.5, 0.5);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(1));
  EXPECT_NEAR(hits[0].point[2], 0, 1e-12);
  EXPECT_THAT(db.calls("get_node_coordinates"), SizeIs(4));
  for (const std::uint64_t count : {0, 1, 3}) {
    db.report_count("get_element_node_count", count);
    hits.clear();
    picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
    EXPECT_THAT(hits, IsEmpty());
  }
}

TEST(LyingDatabase, GivenMoreNodesThanThereAre_WhenPicked_ThenTheRestIsNowhere) {
  test_support::NamedMesh mesh = test_support::one_hex();
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0.25, 0.5);
  for (const char* operation : {"get_element_node_count", "get_element_connectivity"}) {
    db.report_count(operation, 500);
    ElementHits hits;
    picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
    EXPECT_THAT(hits, SizeIs(1)) << operation;
  }
}

TEST(LyingDatabase, GivenCountsBeyondTheRoom_WhenPicked_ThenOnlyWhatThereIsRoomForIsRead) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  FlatScreen screen;
  screen.put_into(picker);
  const Elems& quads = mesh.mesh.elements[Tarn::Quad];
  for (const char* operation :
       {"get_element_vertices", "get_adjacencies", "get_nodes_of_elements", "get_element_connectivity"})
    db.report_count(operation, 1000);
  Ray ray = down_at(0, 0);
  NodeHits nodes;
  picker.pickVertices(quads, ray.data(), nodes);
  EXPECT_THAT(nodes, SizeIs(1));
  ElementHits edges;
  picker.pickEdges(quads, ray.data(), edges);
  EXPECT_THAT(edges, SizeIs(2));
  const double low[2] = {-1, -1};
  const double high[2] = {100, 100};
  PickRectangle all(low, high);
  Nodes picked_nodes;
  picker.pickVertices(quads, all, picked_nodes);
  EXPECT_THAT(picked_nodes, SizeIs(6));
  Elems picked_edges;
  picker.pickEdges(quads, all, picked_edges);
  EXPECT_THAT(picked_edges, SizeIs(7));
  Elems picked;
  picker.pickEntities(quads, all, picked);
  EXPECT_THAT(picked, SizeIs(2));
}

TEST(LyingDatabase, GivenElementsThatClaimMoreThanTheyWrite_WhenPicked_ThenNobodyElsesNodesAreRead) {
  // The quadrilateral first, so that its nodes are at hand when the edge claims as many.
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Quad, 4);
  const Elem edge = mesh.add_own_element(Tarn::Edge, 2, 10);
  test_support::RecordingMeshData db(*mesh.database);
  db.report_count("get_element_node_count", 4);
  db.report_count("get_element_vertices", 4);
  PickInterface picker(&db);
  Ray ray = down_at(50, 50);
  NodeHits hits;
  picker.pickVertices({mesh.mesh.elements[Tarn::Quad][0], edge}, ray.data(), hits);
  const auto calls = db.calls("get_coordinate_arrays");
  ASSERT_THAT(calls, SizeIs(2));
  EXPECT_THAT(calls[1].handles, ElementsAre(mesh.nodes[4].value, mesh.nodes[5].value, 0, 0));

  db.report_count("get_adjacencies", 6);
  db.forget_calls();
  ElementHits edges;
  picker.pickEdges({mesh.mesh.elements[Tarn::Quad][0], edge}, ray.data(), edges);
  const auto connectivity = db.calls("get_element_connectivity");
  ASSERT_THAT(connectivity, SizeIs(12));
  for (std::size_t i = 6; i < 12; ++i)
    EXPECT_THAT(connectivity[i].handles, ElementsAre(0)) << "an edge has no edges";
}

TEST(LyingDatabase, GivenACountThatNoMemoryHolds_WhenPicked_ThenTheContainersErrorPasses) {
  test_support::NamedMesh mesh = test_support::one_hex();
  test_support::RecordingMeshData db(*mesh.database);
  db.report_count("get_element_node_count", ~std::uint64_t(0));
  PickInterface picker(&db);
  Ray ray = down_at(0.5, 0.5);
  ElementHits elements;
  EXPECT_THROW(picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), elements), std::length_error);
  NodeHits nodes;
  EXPECT_THROW(picker.pickVertices(mesh.mesh.elements[Tarn::Hex], ray.data(), nodes), std::length_error);
}

TEST(LyingDatabase, GivenASolidThatChangesItsKind_WhenPicked_ThenTheSecondAnswerSaysWhichSidesItHas) {
  test_support::NamedMesh mesh = test_support::one_hex();
  // One kind in the list of all, another when asked by itself.
  struct TwoFaced : test_support::RecordingMeshData {
    using RecordingMeshData::RecordingMeshData;
    void get_element_type(Elem, Tarn::ElementType* type) override { *type = static_cast<Tarn::ElementType>(says); }
    unsigned says = 0;
  };
  TwoFaced db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  for (const auto& [type, found] : std::vector<std::pair<unsigned, std::size_t>>{
           {0, 0}, {1, 0}, {2, 0}, {4, 0}, {6, 1}, {9, 0}, {10, 0}, {99, 0}}) {
    db.says = type;
    Ray ray = down_at(0.25, 0.5);
    ElementHits hits;
    picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
    EXPECT_EQ(hits.size(), found) << type;
  }
}

TEST(LyingDatabase, GivenNullHandles_WhenPicked_ThenTheyAreNeverFound) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(1e6);
  FlatScreen screen;
  screen.put_into(picker);
  Ray ray = down_at(0, 0);
  NodeHits node_hits;
  ElementHits element_hits;
  picker.pickEntities(Nodes(3), ray.data(), node_hits);
  picker.pickEntities(Elems(3), ray.data(), element_hits);
  picker.pickVertices(Elems(3), ray.data(), node_hits);
  picker.pickEdges(Elems(3), ray.data(), element_hits);
  const double low[2] = {-1e9, -1e9};
  const double high[2] = {1e9, 1e9};
  PickRectangle all(low, high);
  Nodes nodes;
  Elems elements;
  picker.pickEntities(Nodes(3), all, nodes);
  picker.pickEntities(Elems(3), all, elements);
  picker.pickVertices(Elems(3), all, nodes);
  picker.pickEdges(Elems(3), all, elements);
  EXPECT_THAT(node_hits, IsEmpty());
  EXPECT_THAT(element_hits, IsEmpty());
  EXPECT_THAT(nodes, IsEmpty());
  EXPECT_THAT(elements, IsEmpty());
}

TEST(ErraticDatabase, GivenErrorsOfAllSorts_WhenPicked_ThenOnlyEntitiesAskedAboutOrNamedComeBack) {
  test_support::NamedMesh linear = test_support::each_linear_kind();
  test_support::NamedMesh quadratic = test_support::each_quadratic_kind();
  std::size_t found = 0;
  for (unsigned seed = 0; seed < 300; ++seed) {
    test_support::NamedMesh& mesh = seed % 2 ? linear : quadratic;
    ErraticMeshData db(*mesh.database, seed, seed % 3 ? 40 : 5000);
    PickInterface picker(&db);
    picker.setTolerance(seed % 5 ? 0.1 : 30);
    picker.setPartialAccept(seed % 2);
    FlatScreen screen;
    screen.put_into(picker);
    Elems all;
    for (const auto& list : mesh.mesh.elements)
      all.insert(all.end(), list.begin(), list.end());
    Ray ray{2.0 * (seed % 10), 0.1, 5, 2.0 * (seed % 10) + 0.5, 0.1, -5};
    NodeHits node_hits;
    ElementHits element_hits;
    ElementHits hits;
    picker.pickEntities(mesh.nodes, ray.data(), node_hits);
    picker.pickVertices(all, ray.data(), node_hits);
    picker.pickEdges(all, ray.data(), element_hits);
    picker.pickEntities(all, ray.data(), hits);
    for (const auto& hit : hits)
      EXPECT_THAT(all, testing::Contains(hit.handle));
    const double low[2] = {10, -5};
    const double high[2] = {120, 8};
    PickRectangle region(low, high);
    Nodes nodes;
    Elems edges;
    Elems elements;
    picker.pickEntities(mesh.nodes, region, nodes);
    picker.pickVertices(all, region, nodes);
    picker.pickEdges(all, region, edges);
    picker.pickEntities(all, region, elements);
    for (const Elem element : elements)
      EXPECT_THAT(all, testing::Contains(element));
    found += hits.size() + elements.size() + nodes.size() + node_hits.size();
  }
  EXPECT_GT(found, 1000u) << "it is not all errors";
}

} // namespace
