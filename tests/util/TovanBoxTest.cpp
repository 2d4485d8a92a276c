#include "platform/util/TovanBox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

TovanBox box(double x0, double y0, double z0, double x1, double y1, double z1) {
  const double minimum[3] = {x0, y0, z0};
  const double maximum[3] = {x1, y1, z1};
  return TovanBox(minimum, maximum);
}

const TovanBox unit = box(0, 0, 0, 1, 1, 1);

struct RayRow {
  const char* name;
  TovanVector origin;
  TovanVector direction;
  bool hits;
};

void PrintTo(const RayRow& row, std::ostream* out) { *out << row.name; }

class RayOnUnitBox : public testing::TestWithParam<RayRow> {};

INSTANTIATE_TEST_SUITE_P(
    TovanBox, RayOnUnitBox,
    testing::Values(
        RayRow{"through", {-1, 0.5, 0.5}, {1, 0, 0}, true}, RayRow{"through_slanted", {-1, -1, -1}, {1, 1, 1}, true},
        RayRow{"slanted_past", {-1, -1, 3}, {1, 1, 0.1}, false}, RayRow{"away", {-1, 0.5, 0.5}, {-1, 0, 0}, false},
        RayRow{"behind", {2, 0.5, 0.5}, {1, 0, 0}, false}, RayRow{"from_inside", {0.5, 0.5, 0.5}, {0, 0, -1}, true},
        RayRow{"no_far_end", {-1e9, 0.5, 0.5}, {1e-3, 0, 0}, true},
        RayRow{"along_a_side", {-1, 0, 0.5}, {1, 0, 0}, true}, RayRow{"along_an_edge", {-1, 1, 1}, {1, 0, 0}, true},
        RayRow{"beside_a_side", {-1, -1e-12, 0.5}, {1, 0, 0}, false},
        RayRow{"touching_a_corner", {-1, 1, 0}, {1, -1, 0}, true},
        RayRow{"starting_on_the_far_side", {1, 0.5, 0.5}, {1, 0, 0}, true},
        RayRow{"starting_on_a_corner_going_away", {0, 0, 0}, {-1, -1, -1}, true},
        RayRow{"zero_component_inside", {0.5, 0.5, -2}, {0, 0, 5}, true},
        RayRow{"zero_component_outside", {0.5, 1.5, -2}, {0, 0, 5}, false},
        RayRow{"negative_zero_component", {0.5, 0.5, -2}, {-0.0, -0.0, 5}, true},
        RayRow{"no_direction_inside", {0.5, 0.5, 0.5}, {0, 0, 0}, true},
        RayRow{"no_direction_outside", {0.5, 0.5, 1.5}, {0, 0, 0}, false},
        RayRow{"tiny_component", {0, 0.5, 0.5}, {1e-320, 1, 0}, true},
        RayRow{"origin_not_a_number", {not_a_number, 0.5, 0.5}, {1, 0, 0}, false},
        RayRow{"origin_not_a_number_across", {-1, not_a_number, 0.5}, {1, 0, 0}, false},
        RayRow{"direction_not_a_number", {-1, 0.5, 0.5}, {1, not_a_number, 0}, false},
        RayRow{"slab_order_y", {0.5, 3, 0.5}, {0.1, -1, 0}, true},
        RayRow{"slabs_apart", {-1, -3, 0.5}, {1, 1, 0}, false}),
    [](const auto& row) { return row.param.name; });

TEST_P(RayOnUnitBox, GivenARay_WhenTested_ThenItHitsAsDrawn) {
  EXPECT_EQ(unit.intersect(GetParam().origin, GetParam().direction), GetParam().hits);
}

TEST(TovanBox, GivenNothing_WhenMade_ThenItIsEmptyAndNeverHit) {
  const TovanBox empty;

  for (int axis = 0; axis < 3; ++axis)
    EXPECT_GT(empty.minimum()[axis], empty.maximum()[axis]);
  EXPECT_FALSE(empty.intersect({0, 0, 0}, {1, 1, 1}));
  EXPECT_FALSE(empty.intersect({0, 0, 0}, {0, 0, 0}));
}

TEST(TovanBox, GivenCorners_WhenMadeOrReset_ThenTheyAreKeptAsGiven) {
  TovanBox made = box(3, -2, 5, 1, 7, 6);
  EXPECT_EQ(made.minimum()[0], 3.0);
  EXPECT_EQ(made.minimum()[1], -2.0);
  EXPECT_EQ(made.maximum()[0], 1.0);
  EXPECT_EQ(made.maximum()[2], 6.0);

  const double minimum[3] = {-1, -2, -3};
  const double maximum[3] = {1, 2, 3};
  made.reset(minimum, maximum);

  EXPECT_TRUE(std::equal(minimum, minimum + 3, made.minimum()));
  EXPECT_TRUE(std::equal(maximum, maximum + 3, made.maximum()));
}

TEST(TovanBox, GivenABoxInvertedOnAnyAxis_WhenTested_ThenNoRayHits) {
  for (int axis = 0; axis < 3; ++axis) {
    double minimum[3] = {0, 0, 0};
    double maximum[3] = {1, 1, 1};
    std::swap(minimum[axis], maximum[axis]);
    const TovanBox inverted(minimum, maximum);
    for (int along = 0; along < 3; ++along) {
      TovanVector origin(0.5, 0.5, 0.5);
      double* const start[3] = {&origin.x, &origin.y, &origin.z};
      *start[along] = -1;
      const TovanVector direction(along == 0, along == 1, along == 2);
      ASSERT_TRUE(unit.intersect(origin, direction));
      EXPECT_FALSE(inverted.intersect(origin, direction)) << axis << along;
    }
    EXPECT_FALSE(inverted.intersect({0.5, 0.5, 0.5}, {0, 0, 0})) << axis;
  }
}

TEST(TovanBox, GivenACornerThatIsNotANumber_WhenTested_ThenNoRayHits) {
  for (int axis = 0; axis < 3; ++axis)
    for (const bool low : {true, false}) {
      double minimum[3] = {0, 0, 0};
      double maximum[3] = {1, 1, 1};
      (low ? minimum : maximum)[axis] = not_a_number;
      const TovanBox broken(minimum, maximum);
      EXPECT_FALSE(broken.intersect({-1, 0.5, 0.5}, {1, 0, 0}));
      EXPECT_FALSE(broken.intersect({0.5, -1, 0.5}, {0, 1, 0}));
      EXPECT_FALSE(broken.intersect({0.5, 0.5, -1}, {0, 0, 1}));
    }
}

TEST(TovanBox, GivenABoxWithoutThickness_WhenTested_ThenARayThroughItHits) {
  const TovanBox sheet = box(0, 0, 2, 1, 1, 2);
  const TovanBox point = box(1, 2, 3, 1, 2, 3);

  EXPECT_TRUE(sheet.intersect({0.5, 0.5, 0}, {0, 0, 1}));
  EXPECT_TRUE(sheet.intersect({-1, 0.5, 2}, {1, 0, 0}));
  EXPECT_FALSE(sheet.intersect({-1, 0.5, 2.5}, {1, 0, 0}));
  EXPECT_TRUE(point.intersect({0, 0, 0}, {1, 2, 3}));
  EXPECT_FALSE(point.intersect({0, 0, 0}, {1, 2, 2}));
}

TEST(TovanBox, GivenABoxWithoutEnd_WhenTested_ThenItIsHitFromAnywhere) {
  const TovanBox all = box(-infinite, -infinite, -infinite, infinite, infinite, infinite);

  EXPECT_TRUE(all.intersect({1e300, -5, 3}, {-1, 2, 0}));
}

/// A number whose low bits matter: halves, neighbours of one another, tiny and large ones.
double awkward(std::mt19937& random) {
  const double sizes[] = {1e-9, 0.1, 1, 3, 1e5};
  const double value = sizes[random() % 5] * (static_cast<int>(random() % 2001) - 1000) / 1000.0;
  return random() % 8 == 0 ? std::nextafter(value, random() % 2 ? infinite : -infinite) : value;
}

TEST(TovanBox, GivenABoxInsideAnother_WhenTheInnerIsHit_ThenTheOuterIs) {
  std::mt19937 random(11);
  int hits = 0;
  for (int round = 0; round < 300000; ++round) {
    double inner_minimum[3], inner_maximum[3], outer_minimum[3], outer_maximum[3];
    for (int axis = 0; axis < 3; ++axis) {
      const auto sides = std::minmax({awkward(random), awkward(random)});
      inner_minimum[axis] = sides.first;
      inner_maximum[axis] = sides.second;
      const bool grow_low = random() % 2, grow_high = random() % 2;
      outer_minimum[axis] = grow_low ? std::nextafter(sides.first, -infinite) : sides.first;
      outer_maximum[axis] = grow_high ? sides.second + std::abs(awkward(random)) : sides.second;
    }
    const TovanVector origin(awkward(random), awkward(random), awkward(random));
    // Mostly aimed at the box, so that rays graze it.
    const bool aimed = random() % 4 != 0;
    const TovanVector direction =
        aimed ? TovanVector(inner_minimum[0] - origin.x, inner_maximum[1] - origin.y, inner_minimum[2] - origin.z)
              : TovanVector(awkward(random), awkward(random), awkward(random));
    if (!TovanBox(inner_minimum, inner_maximum).intersect(origin, direction)) continue;
    ++hits;
    ASSERT_TRUE(TovanBox(outer_minimum, outer_maximum).intersect(origin, direction)) << "round " << round;
  }
  EXPECT_GT(hits, 50000);
}

TEST(TovanBox, GivenRandomRays_WhenTested_ThenTheyHitWhereAPointOfTheRayIsWellInside) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> any(-3, 3);
  int inside = 0;
  int outside = 0;
  for (int round = 0; round < 20000; ++round) {
    const TovanVector origin(any(random), any(random), any(random));
    const TovanVector direction(any(random), any(random), any(random));
    bool is_inside = false;
    bool is_near = false;
    for (int step = 0; step <= 4000; ++step) {
      const double t = step / 100.0;
      const std::array<double, 3> at = {origin.x + t * direction.x, origin.y + t * direction.y,
                                        origin.z + t * direction.z};
      is_inside = is_inside || std::all_of(at.begin(), at.end(), [](double c) { return c > 0.0 && c < 1.0; });
      is_near = is_near || std::all_of(at.begin(), at.end(), [](double c) { return c > -0.1 && c < 1.1; });
    }
    if (is_inside) {
      ++inside;
      ASSERT_TRUE(unit.intersect(origin, direction));
    } else if (!is_near) {
      ++outside;
      ASSERT_FALSE(unit.intersect(origin, direction));
    }
  }
  EXPECT_GT(inside, 500);
  EXPECT_GT(outside, 5000);
}

} // namespace
