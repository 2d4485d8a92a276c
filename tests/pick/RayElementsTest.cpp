#include "tests/pick/GeometryDouble.h"
#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double close = 1e-12;

void expect_point(const double* point, double x, double y, double z) {
  EXPECT_NEAR(point[0], x, close);
  EXPECT_NEAR(point[1], y, close);
  EXPECT_NEAR(point[2], z, close);
}

// ------------------------------------------------------------------------------------------ every kind

struct KindRow {
  Tarn::ElementType type;
  int node_count;
  double x, y; ///< where the ray comes down
  double z;    ///< where it meets the element
};

class RayKinds : public testing::TestWithParam<KindRow> {
protected:
  RayKinds() : mesh_(test_support::one_element(GetParam().type, GetParam().node_count)) {}
  test_support::NamedMesh mesh_;
};

TEST_P(RayKinds, GivenAnElement_WhenPicked_ThenItIsHitWhereTheRayMeetsItFirst) {
  const KindRow& row = GetParam();
  PickInterface picker(mesh_.database.get());
  picker.setTolerance(0.01);
  Ray ray = down_at(row.x, row.y);
  ElementHits hits;
  EXPECT_TRUE(picker.pickEntities(mesh_.mesh.elements[row.type], ray.data(), hits));
  ASSERT_THAT(hits, SizeIs(1));
  EXPECT_EQ(hits[0].handle, mesh_.mesh.elements[row.type][0]);
  expect_point(hits[0].point, row.x, row.y, row.z);
  EXPECT_TRUE(hits[0].is_exact);
}

TEST_P(RayKinds, GivenAnElement_WhenTheRayPassesBeside_ThenItIsNotHit) {
  PickInterface picker(mesh_.database.get());
  picker.setTolerance(0.01);
  for (Ray ray : {down_at(-0.02, 0.5), down_at(1.02, 0.5), down_at(0.5, -0.02), Ray{0.2, 0.2, 5, 0.2, 0.2, 1.02}}) {
    ElementHits hits;
    picker.pickEntities(mesh_.mesh.elements[GetParam().type], ray.data(), hits);
    EXPECT_THAT(hits, IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, RayKinds,
    testing::Values(KindRow{Tarn::Edge, 2, 0.25, 0, 0}, KindRow{Tarn::Edge, 3, 0.25, 0, 0},
                    KindRow{Tarn::Tri, 3, 0.25, 0.25, 0}, KindRow{Tarn::Tri, 6, 0.25, 0.25, 0},
                    KindRow{Tarn::Tri, 7, 0.25, 0.25, 0}, KindRow{Tarn::Quad, 4, 0.75, 0.25, 0},
                    KindRow{Tarn::Quad, 8, 0.25, 0.75, 0}, KindRow{Tarn::Quad, 9, 0.75, 0.75, 0},
                    KindRow{Tarn::Tet, 4, 0.25, 0.25, 0.5}, KindRow{Tarn::Tet, 10, 0.25, 0.25, 0.5},
                    KindRow{Tarn::Hex, 8, 0.25, 0.75, 1}, KindRow{Tarn::Hex, 20, 0.25, 0.75, 1},
                    KindRow{Tarn::Hex, 27, 0.25, 0.75, 1}, KindRow{Tarn::Wedge, 6, 0.25, 0.25, 1},
                    KindRow{Tarn::Wedge, 15, 0.25, 0.25, 1}, KindRow{Tarn::Wedge, 18, 0.25, 0.25, 1},
                    KindRow{Tarn::Pyramid, 5, 0.5, 0.25, 0.5}, KindRow{Tarn::Pyramid, 13, 0.5, 0.25, 0.5},
                    KindRow{Tarn::Pyramid, 14, 0.5, 0.25, 0.5}, KindRow{Tarn::Superelement, 3, 0.5, 0, 0},
                    KindRow{Tarn::Superelement, 33, 0.5, 0, 0}, KindRow{Tarn::Superelement, 1, 0, 0, 0}),
    [](const auto& row) {
      return "kind" + std::to_string(row.param.type) + "with" + std::to_string(row.param.node_count);
    });

TEST(RayElements, GivenAOneNodeElementOrAnUnknownKind_WhenPicked_ThenTheyAreNeverHit) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::OneNode, 1);
  const Elem quad = mesh.add_own_element(Tarn::Quad, 4);
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(1);
  Ray ray = down_at(0, 0);
  for (const unsigned type : {0u, 1u, 10u, 200u, 0xffffffffu}) {
    SCOPED_TRACE(type);
    db.report_type(quad, type);
    ElementHits hits;
    EXPECT_TRUE(picker.pickEntities(Elems{mesh.mesh.elements[Tarn::OneNode][0], quad}, ray.data(), hits));
    EXPECT_THAT(hits, IsEmpty());
  }
  db.answer_well();
  ElementHits hits;
  picker.pickEntities(Elems{quad}, ray.data(), hits);
  EXPECT_THAT(hits, SizeIs(1));
}

TEST(RayElements, GivenASolidPiercedTwice_WhenPickedFromEitherEnd_ThenOneRecordLiesOnTheNearerFace) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.01);
  for (const double from : {5.0, -5.0}) {
    Ray ray{0.25, 0.5, from, 0.25, 0.5, -from};
    ElementHits hits;
    picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
    ASSERT_THAT(hits, SizeIs(1));
    expect_point(hits[0].point, 0.25, 0.5, from > 0 ? 1 : 0);
  }
}

TEST(RayElements, GivenACameraInsideASolid_WhenPicked_ThenTheSideAheadIsHit) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.01);
  Ray ray{0.5, 0.5, 0.5, 0.5, 0.5, -5};
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(1));
  expect_point(hits[0].point, 0.5, 0.5, 0);
}

TEST(RayElements, GivenARayOfNoLength_WhenPicked_ThenTheIntersectionTestsDecide) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  for (const double z : {0.05, 0.2}) {
    Ray ray{0.5, 0.5, z, 0.5, 0.5, z};
    ElementHits hits;
    EXPECT_TRUE(picker.pickEntities(mesh.mesh.elements[Tarn::Quad], ray.data(), hits));
    EXPECT_EQ(hits.size(), z < 0.1 ? 1u : 0u);
  }
}

// ------------------------------------------------------------------------------------------ within the tolerance

// A ray 0.9 of the tolerance off a shape, from all sides: no box may be in its way.
TEST(RayTolerance, GivenARayBesideAnElement_WhenWithinTheTolerance_ThenItIsHitInexactly) {
  for (const auto& [type, count] : std::vector<std::pair<Tarn::ElementType, int>>{
           {Tarn::Edge, 2}, {Tarn::Tri, 3}, {Tarn::Quad, 4}, {Tarn::Tet, 4}, {Tarn::Hex, 8}}) {
    test_support::NamedMesh mesh = test_support::one_element(type, count);
    PickInterface picker(mesh.database.get());
    picker.setTolerance(0.1);
    // Past the corner at the origin, along each axis, off along another.
    for (int along = 0; along < 3; ++along)
      for (int off = 0; off < 3; ++off)
        for (const double share : {0.9, 1.1}) {
          if (off == along) continue;
          SCOPED_TRACE(testing::Message()
                       << "kind " << type << " along " << along << " off " << off << " by " << share);
          Ray ray{};
          ray[std::size_t(along)] = 5;
          ray[std::size_t(3 + along)] = -5;
          ray[std::size_t(off)] = ray[std::size_t(3 + off)] = -0.1 * share;
          ElementHits hits;
          picker.pickEntities(mesh.mesh.elements[type], ray.data(), hits);
          ASSERT_EQ(hits.size(), share < 1 ? 1u : 0u);
          if (share < 1) {
            EXPECT_FALSE(hits[0].is_exact);
          }
        }
  }
}

TEST(RayTolerance, GivenARayOnTheFarSide_WhenWithinTheTolerance_ThenItIsHitToo) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  for (int along = 0; along < 3; ++along)
    for (int off = 0; off < 3; ++off)
      for (const double share : {0.9, 1.1}) {
        if (off == along) continue;
        Ray ray{0.5, 0.5, 0.5, 0.5, 0.5, 0.5};
        ray[std::size_t(along)] = 5;
        ray[std::size_t(3 + along)] = -5;
        ray[std::size_t(off)] = ray[std::size_t(3 + off)] = 1 + 0.1 * share;
        ElementHits hits;
        picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
        EXPECT_EQ(hits.size(), share < 1 ? 1u : 0u) << "along " << along << " off " << off << " by " << share;
      }
}

// ------------------------------------------------------------------------------------------ what is asked

struct Shape {
  Tarn::ElementType type;
  int node_count;
  std::vector<std::string> tests; ///< of its sides, or of itself
};

class RayShapes : public testing::TestWithParam<Shape> {};

TEST_P(RayShapes, GivenAHit_WhenTested_ThenEveryShapeIsGivenWithTheRayAndTheTolerance) {
  const Shape& shape = GetParam();
  test_support::NamedMesh mesh = test_support::one_element(shape.type, shape.node_count);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.25);
  Ray ray{0.2, 0.2, 5, 0.3, 0.25, -5};
  GeometryDouble geometry;
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[shape.type], ray.data(), hits);
  EXPECT_THAT(geometry.kinds(), ElementsAreArray(shape.tests)) << "every side, whether another was hit or not";
  for (const GeometryDouble::Call& call : geometry.calls) {
    EXPECT_EQ(call.tolerance, 0.25);
    // An edge comes after the ray, faces before it.
    const auto begin = call.kind == "line" ? call.points.begin() : call.points.end() - 6;
    EXPECT_THAT(std::vector<double>(begin, begin + 6), ElementsAreArray(ray));
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, RayShapes,
    testing::Values(Shape{Tarn::Edge, 3, {"line"}}, Shape{Tarn::Tri, 6, {"triangle"}}, Shape{Tarn::Quad, 9, {"quad"}},
                    Shape{Tarn::Tet, 10, {"triangle", "triangle", "triangle", "triangle"}},
                    Shape{Tarn::Hex, 27, {"quad", "quad", "quad", "quad", "quad", "quad"}},
                    Shape{Tarn::Wedge, 18, {"triangle", "triangle", "quad", "quad", "quad"}},
                    Shape{Tarn::Pyramid, 5, {"quad", "triangle", "triangle", "triangle", "triangle"}},
                    Shape{Tarn::Superelement, 4, {}}),
    [](const auto& row) { return "kind" + std::to_string(row.param.type); });

TEST(RayShape, GivenFaces_WhenTested_ThenTheirNodesComeInConnectivityOrder) {
  const std::vector<double> corners = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  test_support::NamedMesh quad = test_support::one_element(Tarn::Quad, 8);
  test_support::NamedMesh tri = test_support::one_element(Tarn::Tri, 6);
  Ray ray = down_at(0.25, 0.25);
  GeometryDouble geometry;
  ElementHits hits;
  PickInterface(quad.database.get()).pickEntities(quad.mesh.elements[Tarn::Quad], ray.data(), hits);
  PickInterface(tri.database.get()).pickEntities(tri.mesh.elements[Tarn::Tri], ray.data(), hits);
  ASSERT_THAT(geometry.calls, SizeIs(2));
  EXPECT_THAT(std::vector<double>(geometry.calls[0].points.begin(), geometry.calls[0].points.begin() + 12),
              ElementsAreArray(corners));
  EXPECT_THAT(std::vector<double>(geometry.calls[1].points.begin(), geometry.calls[1].points.begin() + 9),
              ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
}

TEST(RayShape, GivenASolid_WhenTested_ThenEachSideHasItsOwnNodes) {
  test_support::NamedMesh mesh = test_support::one_hex();
  Ray ray = down_at(0.5, 0.5);
  GeometryDouble geometry;
  ElementHits hits;
  PickInterface(mesh.database.get()).pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(geometry.calls, SizeIs(6));
  // x = 0, x = 1, y = 0, y = 1, z = 0, z = 1: that coordinate is the same in all four corners.
  for (std::size_t side = 0; side < 6; ++side)
    for (std::size_t corner = 0; corner < 4; ++corner)
      EXPECT_EQ(geometry.calls[side].points[3 * corner + side / 2], side % 2 == 0 ? 0 : 1);
}

TEST(RayShape, GivenAnElementFarFromTheRay_WhenPicked_ThenItsBoxRejectsItUntested) {
  Ray ray = down_at(3, 3);
  for (const auto& [type, count] :
       std::vector<std::pair<Tarn::ElementType, int>>{{Tarn::Tri, 3}, {Tarn::Quad, 4}, {Tarn::Hex, 8}}) {
    test_support::NamedMesh mesh = test_support::one_element(type, count);
    PickInterface picker(mesh.database.get());
    picker.setTolerance(1.9);
    GeometryDouble geometry;
    ElementHits hits;
    picker.pickEntities(mesh.mesh.elements[type], ray.data(), hits);
    EXPECT_THAT(geometry.calls, IsEmpty());
    picker.setTolerance(2);
    picker.pickEntities(mesh.mesh.elements[type], ray.data(), hits);
    EXPECT_FALSE(geometry.calls.empty());
  }
}

TEST(RayShape, GivenABoxBehindTheRaysBegin_WhenPicked_ThenItIsRejectedUntested) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  PickInterface picker(mesh.database.get());
  GeometryDouble geometry;
  ElementHits hits;
  Ray ray{0.5, 0.5, -1, 0.5, 0.5, -5};
  picker.pickEntities(mesh.mesh.elements[Tarn::Quad], ray.data(), hits);
  EXPECT_THAT(geometry.calls, IsEmpty());
}

// ------------------------------------------------------------------------------------------ order

TEST(RayOrder, GivenAllKindsInAnyOrder_WhenPicked_ThenHitsComeByKindAndEachKindInInputOrder) {
  test_support::NamedMesh mesh;
  Elems all;
  // Backwards by kind, twice each; all over the same spot.
  for (int repeat = 0; repeat < 2; ++repeat)
    for (int type = 9; type >= 1; --type)
      all.push_back(mesh.add_own_element(static_cast<Tarn::ElementType>(type),
                                         test_support::linear_node_count(static_cast<Tarn::ElementType>(type))));
  const auto& by_kind = mesh.mesh.elements;
  Elems expected;
  for (const auto type :
       {Tarn::Edge, Tarn::Tri, Tarn::Quad, Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid, Tarn::Superelement})
    expected.insert(expected.end(), by_kind[type].begin(), by_kind[type].end());
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  picker.setTolerance(0.01);
  Ray ray = down_at(0, 0); // the corner that all have
  const Elem before{12345};
  ElementHits hits = {{before, {0, 0, 0}, true}};
  picker.pickEntities(all, ray.data(), hits);
  expected.insert(expected.begin(), before);
  EXPECT_THAT(values_of(hits), ElementsAreArray(values_of(expected)));
  ASSERT_EQ(db.count("get_element_types"), 1u);
  EXPECT_THAT(db.calls()[0].handles, ElementsAreArray(values_of(all)));
}

TEST(RayOrder, GivenNoElements_WhenPicked_ThenNothingIsAskedOrChanged) {
  test_support::NamedMesh mesh;
  test_support::RecordingMeshData db(*mesh.database);
  PickInterface picker(&db);
  Ray ray = down_at(0, 0);
  ElementHits hits = {{{9}, {0, 0, 0}, true}, {{3}, {0, 0, 0}, true}};
  EXPECT_TRUE(picker.pickEntities(Elems{}, ray.data(), hits));
  EXPECT_THAT(values_of(hits), ElementsAre(9, 3));
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST(RaySuperelements, GivenSeveralNodesNearTheRay_WhenPicked_ThenTheSmallestHandleGivesThePlace) {
  test_support::NamedMesh mesh;
  for (int i = 0; i < 4; ++i)
    mesh.add_node(0, 0, i);
  const Elem element = mesh.add_element(Tarn::Superelement, {3, 1, 2});
  PickInterface picker(mesh.database.get());
  picker.setTolerance(1);
  Ray ray{0.5, 0, 5, 0, 0, -5}; // slanted: the node at z = 1 lies off it by 0.3, the others as well
  ElementHits hits;
  picker.pickEntities(Elems{element}, ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(1));
  expect_point(hits[0].point, 0, 0, 1);
  EXPECT_FALSE(hits[0].is_exact);
}

TEST(RaySuperelements, GivenSeveral_WhenPicked_ThenNodesOfOneAreNoHitsOfTheNext) {
  test_support::NamedMesh mesh;
  const Elem near = mesh.add_own_element(Tarn::Superelement, 3, 0);
  mesh.add_own_element(Tarn::Superelement, 3, 10);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  Ray ray = down_at(0, 0);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Superelement], ray.data(), hits);
  EXPECT_THAT(values_of(hits), ElementsAre(near.value));
}

} // namespace
