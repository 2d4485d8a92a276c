#include "tests/pick/GeometryDouble.h"
#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ lines and faces

TEST(RayExactness, GivenADistanceOfAHundredthOfTheTolerance_WhenHit_ThenItIsStillExact) {
  for (const auto& [type, count] :
       std::vector<std::pair<Tarn::ElementType, int>>{{Tarn::Edge, 2}, {Tarn::Tri, 3}, {Tarn::Quad, 4}, {Tarn::Tet, 4}})
    for (const double distance : {0.0, 1.0, 1.0000001, 100.0}) {
      test_support::NamedMesh mesh = test_support::one_element(type, count);
      PickInterface picker(mesh.database.get());
      picker.setTolerance(100);
      GeometryDouble geometry;
      geometry.script = [distance](const GeometryDouble::Call&) {
        return GeometryDouble::Answer{2, {7, 8, 9}, distance}; // any answer but 0 is a hit
      };
      Ray ray = down_at(0.2, 0.2);
      ElementHits hits;
      picker.pickEntities(mesh.mesh.elements[type], ray.data(), hits);
      ASSERT_THAT(hits, SizeIs(1));
      EXPECT_THAT(hits[0].point, ElementsAre(7, 8, 9)) << "as the test gave it";
      EXPECT_EQ(hits[0].is_exact, distance <= 1) << "kind " << type << " at " << distance;
    }
}

TEST(RayExactness, GivenNoHit_WhenTested_ThenNothingIsRecorded) {
  test_support::NamedMesh mesh = test_support::each_linear_kind();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(100);
  GeometryDouble geometry;
  geometry.script = [](const GeometryDouble::Call&) { return GeometryDouble::Answer{0, {0, 0, 0}, 0}; };
  Ray ray = down_at(4, 50);
  ElementHits hits;
  for (unsigned type = Tarn::Edge; type <= Tarn::Pyramid; ++type)
    picker.pickEntities(mesh.mesh.elements[type], ray.data(), hits);
  EXPECT_FALSE(geometry.calls.empty());
  EXPECT_THAT(hits, IsEmpty());
}

// ------------------------------------------------------------------------------------------ sides of solids

struct SideAnswer {
  double z;        ///< the hit lies below the eye, which is at z = 5
  double distance; ///< as the test reports it; the tolerance is 100
};

struct SidesRow {
  const char* name;
  std::map<int, SideAnswer> hits; ///< by side, in the order tested
  double z;                       ///< what the record says
  bool is_exact;
};

class RaySides : public testing::TestWithParam<SidesRow> {};

TEST_P(RaySides, GivenHitsOnSomeSides_WhenPicked_ThenTheNearestIsRecordedAndExactnessIsOnlyEverRaised) {
  const SidesRow& row = GetParam();
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(100);
  GeometryDouble geometry;
  int side = -1;
  geometry.script = [&](const GeometryDouble::Call&) {
    const auto found = row.hits.find(++side);
    if (found == row.hits.end()) return GeometryDouble::Answer{0, {0, 0, 0}, 0};
    // x tells which side it was; the eye is far enough for it not to count.
    return GeometryDouble::Answer{1, {side * 1e-12, 0, found->second.z}, found->second.distance};
  };
  Ray ray = down_at(0, 0);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(geometry.calls, SizeIs(6)) << "every side is tested";
  ASSERT_THAT(hits, SizeIs(row.hits.empty() ? 0 : 1));
  if (row.hits.empty()) return;
  EXPECT_EQ(hits[0].point[2], row.z);
  EXPECT_EQ(hits[0].is_exact, row.is_exact);
}

INSTANTIATE_TEST_SUITE_P(
    Hits, RaySides,
    testing::Values(SidesRow{"none", {}, 0, false}, SidesRow{"the_first_alone", {{0, {3, 0}}}, 3, true},
                    SidesRow{"the_last_alone", {{5, {3, 0}}}, 3, true},
                    SidesRow{"inexact_alone", {{2, {3, 2}}}, 3, false},
                    SidesRow{"exact_then_nearer_inexact", {{0, {1, 0}}, {3, {4, 50}}}, 4, true},
                    SidesRow{"inexact_then_nearer_exact", {{0, {1, 50}}, {3, {4, 0}}}, 4, true},
                    SidesRow{"near_inexact_then_farther_exact", {{0, {4, 50}}, {3, {1, 0}}}, 4, false},
                    SidesRow{"raised_in_the_middle", {{0, {1, 50}}, {1, {2, 1}}, {2, {3, 50}}, {4, {0, 0}}}, 3, true},
                    SidesRow{"near_then_far", {{1, {4, 0}}, {2, {-4, 0}}}, 4, true},
                    SidesRow{"far_then_near", {{1, {-4, 0}}, {2, {4, 0}}}, 4, true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(RaySide, GivenTwoSidesEquallyFar_WhenPicked_ThenTheEarlierWins) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(100);
  GeometryDouble geometry;
  int side = -1;
  geometry.script = [&](const GeometryDouble::Call&) {
    ++side;
    // Left and right of the eye at the same distance, the second exact: it comes too late to count.
    return GeometryDouble::Answer{side == 1 || side == 4, {side == 1 ? -3.0 : 3.0, 0, 1}, side == 4 ? 0.0 : 50.0};
  };
  Ray ray = down_at(0, 0);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(1));
  EXPECT_EQ(hits[0].point[0], -3);
  EXPECT_FALSE(hits[0].is_exact);
}

TEST(RaySide, GivenASolidAfterAnExactOne_WhenPicked_ThenItStartsAnew) {
  test_support::NamedMesh mesh = test_support::two_hexes();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(100);
  GeometryDouble geometry;
  int call = -1;
  geometry.script = [&](const GeometryDouble::Call&) {
    ++call;
    return GeometryDouble::Answer{call == 0 || call == 6, {0, 0, call == 0 ? 4.0 : 1.0}, call == 0 ? 0.0 : 50.0};
  };
  Ray ray = down_at(0.5, 0.5);
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], ray.data(), hits);
  ASSERT_THAT(hits, SizeIs(2));
  EXPECT_TRUE(hits[0].is_exact);
  EXPECT_FALSE(hits[1].is_exact);
  EXPECT_EQ(hits[1].point[2], 1);
}

// The same with true geometry: the ray comes up at 45 degrees and pierces x = 0 just above the corner, so that y = 0,
// which it only grazes, is met at the corner, which is nearer.
TEST(RaySide, GivenAGrazedSideNearerThanThePiercedOne_WhenThePiercedIsTestedFirst_ThenTheHitIsExact) {
  test_support::NamedMesh mesh = test_support::one_hex();
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.1);
  Ray through_x{-1, -1, 0.5, 1, 1.1, 0.5};
  ElementHits hits;
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], through_x.data(), hits);
  Ray through_y{-1, -1, 0.5, 1.1, 1, 0.5};
  picker.pickEntities(mesh.mesh.elements[Tarn::Hex], through_y.data(), hits);
  ASSERT_THAT(hits, SizeIs(2));
  for (const auto& hit : hits) {
    EXPECT_NEAR(hit.point[0], 0, 1e-12);
    EXPECT_NEAR(hit.point[1], 0, 1e-12);
  }
  EXPECT_TRUE(hits[0].is_exact) << "x = 0 came first and raised it";
  EXPECT_FALSE(hits[1].is_exact) << "y = 0 came later, and farther";
}

} // namespace
