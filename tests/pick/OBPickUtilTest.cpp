#include "platform/base/OBPickUtil.h"
#include "tests/pick/ClosestOracle.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace {

struct Vec {
  double at[3];
  operator const double*() const { return at; }
};

// How shapes and rays are drawn by lot.
struct Kind {
  const char* name;
  double scale;      // size of the shape
  double offset;     // how far from the origin of the world
  double ray_length; // in sizes of the shape
  bool round;        // coordinates on a coarse grid, so that shapes degenerate and rays meet corners
  double flat;       // thickness across z: 0 puts ray and shape into one plane
};

const Kind kinds[] = {
    {"ordinary", 1, 0, 5, false, 1},
    {"long ray", 1, 0, 1e6, false, 1},
    {"far from the origin", 1, 1e7, 5, false, 1},
    {"tiny", 1e-150, 0, 5, false, 1},
    {"huge", 1e150, 0, 5, false, 1},
    {"on a grid", 1, 0, 2, true, 1},
    {"in one plane", 1, 0, 3, false, 0},
    {"on a grid in one plane", 1, 0, 2, true, 0},
    {"all but in one plane", 1, 0, 3, false, 1e-9},
};

class Lot {
public:
  explicit Lot(const Kind& kind) : kind_(kind) {}

  Vec corner() { return make(1.0); }

  // Through the middle of things rather than past them.
  void ray(Vec& p, Vec& q) {
    p = make(kind_.ray_length);
    const Vec target = make(0.7);
    for (int axis = 0; axis < 3; ++axis) {
      const double centre = kind_.offset;
      q.at[axis] = centre + (2.0 * (target.at[axis] - centre) - (p.at[axis] - centre));
    }
  }

private:
  Vec make(double size) {
    Vec v;
    for (int axis = 0; axis < 3; ++axis) {
      double value = std::uniform_real_distribution<double>(-1.0, 1.0)(random_);
      if (kind_.round) value = std::round(value * 2.0) / 2.0;
      v.at[axis] = kind_.offset + kind_.scale * size * value * (axis == 2 ? kind_.flat : 1.0);
    }
    return v;
  }

  Kind kind_;
  std::mt19937 random_{20261120};
};

// What single steps of double precision may cost, at the size of the numbers that go in; and gaps of a shape's size
// times 1e-12 count as equal.
double rounding_of(const Kind& kind) {
  return 4e-12 * kind.scale + 4e-16 * kind.offset + 4e-16 * kind.scale * kind.ray_length;
}

oracle::Point at(const double* p) { return oracle::point(p); }

double gap_of(const Vec& p, const Vec& q, double t, const double* hit) {
  const auto on_ray = oracle::between(at(p), at(q), t);
  return double(oracle::length(oracle::minus(on_ray, at(hit))));
}

class OBPickUtilKinds : public testing::TestWithParam<Kind> {};

TEST_P(OBPickUtilKinds, GivenSegments_WhenIntersected_ThenVerdictAndGapAreThoseOfTheSearch) {
  const Kind kind = GetParam();
  Lot lot(kind);
  int hits = 0;
  int misses = 0;
  for (int i = 0; i < 1500; ++i) {
    Vec p, q;
    lot.ray(p, q);
    const Vec a = lot.corner();
    const Vec b = lot.corner();
    const double tolerance = kind.scale * (i % 3 == 0 ? 0.0 : 0.3);
    const double slack = rounding_of(kind);
    const double truth = double(oracle::segment_to_segment(at(p), at(q), at(a), at(b)));
    double t, u, hit[3], distance;
    const bool met = OBPickUtil::IntersectLineWithLine(p, q, a, b, tolerance, t, hit, u, distance) != 0;
    if (truth > tolerance + slack) {
      EXPECT_FALSE(met) << kind.name << " " << i;
    }
    if (truth < tolerance - slack) {
      EXPECT_TRUE(met) << kind.name << " " << i;
    }
    if (!met) {
      ++misses;
      continue;
    }
    ++hits;
    ASSERT_LE(distance, tolerance);
    ASSERT_NEAR(distance, truth, slack) << kind.name << " " << i;
    ASSERT_GE(t, 0.0);
    ASSERT_LE(t, 1.0);
    ASSERT_NEAR(gap_of(p, q, t, hit), distance, slack);
    const auto on_edge = oracle::between(at(a), at(b), u);
    ASSERT_LE(double(oracle::length(oracle::minus(on_edge, at(hit)))), slack);
  }
  EXPECT_GT(hits, 50);
  EXPECT_GT(misses, 50);
}

TEST_P(OBPickUtilKinds, GivenTriangles_WhenIntersected_ThenVerdictAndGapAreThoseOfTheSearch) {
  const Kind kind = GetParam();
  Lot lot(kind);
  int hits = 0;
  for (int i = 0; i < 1500; ++i) {
    Vec p, q;
    lot.ray(p, q);
    const Vec a = lot.corner();
    const Vec b = lot.corner();
    const Vec c = lot.corner();
    const double tolerance = kind.scale * (i % 3 == 0 ? 1e-3 : 0.2);
    const double slack = rounding_of(kind);
    const double truth = double(oracle::segment_to_triangle(at(p), at(q), at(a), at(b), at(c)));
    double t, hit[3], weights[3], distance;
    const bool met = OBPickUtil::IntersectTriangleWithLine(a, b, c, p, q, tolerance, t, hit, weights, distance) != 0;
    if (truth > tolerance + slack) {
      EXPECT_FALSE(met) << kind.name << " " << i;
    }
    if (truth < tolerance - slack) {
      EXPECT_TRUE(met) << kind.name << " " << i;
    }
    if (!met) continue;
    ++hits;
    ASSERT_LE(distance, tolerance);
    ASSERT_NEAR(distance, truth, slack) << kind.name << " " << i;
    ASSERT_NEAR(weights[0] + weights[1] + weights[2], 1.0, 1e-12);
    for (double weight : weights)
      ASSERT_GE(weight, -1e-15);
    for (int axis = 0; axis < 3; ++axis)
      ASSERT_NEAR(weights[0] * a[axis] + weights[1] * b[axis] + weights[2] * c[axis], hit[axis], slack);
    ASSERT_NEAR(gap_of(p, q, t, hit), distance, slack);
  }
  EXPECT_GT(hits, 100);
}

TEST_P(OBPickUtilKinds, GivenTriangles_WhenTurnedRound_ThenTheVerdictStays) {
  Lot lot(GetParam());
  for (int i = 0; i < 1500; ++i) {
    Vec p, q;
    lot.ray(p, q);
    const Vec a = lot.corner();
    const Vec b = lot.corner();
    const Vec c = lot.corner();
    const double tolerance = GetParam().scale * 0.01;
    double t, hit[3], weights[3], distance, other_t, other_hit[3], other_distance;
    const int one = OBPickUtil::IntersectTriangleWithLine(a, b, c, p, q, tolerance, t, hit, weights, distance);
    const int other =
        OBPickUtil::IntersectTriangleWithLine(a, c, b, p, q, tolerance, other_t, other_hit, weights, other_distance);
    ASSERT_EQ(one, other) << i;
    if (one) {
      ASSERT_NEAR(distance, other_distance, rounding_of(GetParam()));
    }
  }
}

TEST_P(OBPickUtilKinds, GivenQuads_WhenIntersected_ThenTheyAreTheirTwoTriangles) {
  const Kind kind = GetParam();
  Lot lot(kind);
  int hits = 0;
  for (int i = 0; i < 1500; ++i) {
    Vec p, q;
    lot.ray(p, q);
    const Vec a = lot.corner();
    const Vec b = lot.corner();
    const Vec c = lot.corner();
    const Vec d = lot.corner();
    const double tolerance = kind.scale * 0.1;
    const double slack = rounding_of(kind);
    const double truth = double(std::min(oracle::segment_to_triangle(at(p), at(q), at(a), at(b), at(c)),
                                         oracle::segment_to_triangle(at(p), at(q), at(a), at(c), at(d))));
    double t, hit[3], weights[3], distance;
    const bool met = OBPickUtil::IntersectQuadWithLine(a, b, c, d, p, q, tolerance, t, hit, weights, distance);
    if (truth > tolerance + slack) {
      EXPECT_FALSE(met) << kind.name << " " << i;
    }
    if (truth < tolerance - slack) {
      EXPECT_TRUE(met) << kind.name << " " << i;
    }
    if (!met) continue;
    ++hits;
    ASSERT_NEAR(distance, truth, slack) << kind.name << " " << i;
    ASSERT_NEAR(gap_of(p, q, t, hit), distance, slack);
  }
  EXPECT_GT(hits, 100);
}

INSTANTIATE_TEST_SUITE_P(Shapes, OBPickUtilKinds, testing::ValuesIn(kinds), [](const auto& row) {
  std::string name = row.param.name;
  for (char& letter : name)
    if (letter == ' ') letter = '_';
  return name;
});

TEST(OBPickUtil, GivenAQuadThatARayCrossesTwice_WhenIntersected_ThenTheNearerCrossingIsGiven) {
  // Bent along the diagonal from a to c, so that both halves are crossed.
  const Vec a = {{0, 0, 0}}, b = {{1, -1, 1}}, c = {{2, 0, 0}}, d = {{1, 1, 1}};
  const Vec from = {{1, -5, 0.5}}, to = {{1, 5, 0.5}};
  double t, hit[3], weights[3], distance;
  ASSERT_TRUE(OBPickUtil::IntersectQuadWithLine(a, b, c, d, from, to, 0.0, t, hit, weights, distance));
  EXPECT_DOUBLE_EQ(hit[1], -0.5);
  EXPECT_DOUBLE_EQ(t, 0.45);
  ASSERT_TRUE(OBPickUtil::IntersectQuadWithLine(a, b, c, d, to, from, 0.0, t, hit, weights, distance));
  EXPECT_DOUBLE_EQ(hit[1], 0.5);
}

TEST(OBPickUtil, GivenACrossing_WhenIntersected_ThenTheGapIsExactlyZero) {
  const Vec a = {{0, 0, 0}}, b = {{1, 0, 0}}, c = {{0, 1, 0}};
  const Vec from = {{0.25, 0.25, 3}}, to = {{0.25, 0.25, -1}};
  double t, hit[3], weights[3], distance = 7;
  ASSERT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, from, to, 0.0, t, hit, weights, distance), 1);
  EXPECT_EQ(distance, 0.0);
  EXPECT_DOUBLE_EQ(t, 0.75);
  EXPECT_DOUBLE_EQ(weights[0], 0.5);
}

TEST(OBPickUtil, GivenASharedBorder_WhenARayGoesThroughIt_ThenNeitherTriangleLetsItSlipWithoutTolerance) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  for (int i = 0; i < 20000; ++i) {
    const Vec a = {{-1.0, coordinate(random) * 0.1, coordinate(random)}};
    const Vec b = {{1.0, coordinate(random) * 0.1, coordinate(random)}};
    const Vec left = {{coordinate(random), 2.0, coordinate(random)}};
    const Vec right = {{coordinate(random), -2.0, coordinate(random)}};
    const double share = 0.5 + 0.4 * coordinate(random);
    Vec from, to;
    for (int axis = 0; axis < 3; ++axis) {
      const double on_border = a[axis] + share * (b[axis] - a[axis]);
      from.at[axis] = on_border + (axis == 2 ? 10.0 : 0.0);
      to.at[axis] = on_border - (axis == 2 ? 10.0 : 0.0);
    }
    double t, hit[3], weights[3], distance;
    const double tolerance = 1e-14;
    EXPECT_TRUE(OBPickUtil::IntersectTriangleWithLine(a, b, left, from, to, tolerance, t, hit, weights, distance) ||
                OBPickUtil::IntersectTriangleWithLine(b, a, right, from, to, tolerance, t, hit, weights, distance))
        << i;
  }
}

TEST(OBPickUtil, GivenWhatIsNotANumber_WhenIntersected_ThenNothingIsHit) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const Vec a = {{0, 0, 0}}, b = {{1, 0, 0}}, c = {{0, 1, 0}}, d = {{1, 1, 0}};
  const Vec from = {{0.25, 0.25, 3}}, to = {{0.25, 0.25, -1}};
  double t, hit[3], weights[3], u, distance;
  for (const double bad : {nan, inf, -inf}) {
    const Vec broken = {{bad, 0, 0}};
    EXPECT_EQ(OBPickUtil::IntersectLineWithLine(from, to, a, broken, 10.0, t, hit, u, distance), 0);
    EXPECT_EQ(OBPickUtil::IntersectLineWithLine(broken, to, a, b, 10.0, t, hit, u, distance), 0);
    EXPECT_EQ(OBPickUtil::IntersectTriangleWithLine(a, broken, c, from, to, 10.0, t, hit, weights, distance), 0);
    EXPECT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, from, broken, 10.0, t, hit, weights, distance), 0);
    EXPECT_FALSE(OBPickUtil::IntersectQuadWithLine(a, b, d, broken, from, to, 10.0, t, hit, weights, distance));
  }
  EXPECT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, from, to, nan, t, hit, weights, distance), 0);
  EXPECT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, from, to, 0.0, t, hit, weights, distance), 1);
}

TEST(OBPickUtil, GivenARayOfNoLength_WhenIntersected_ThenItIsAPoint) {
  const Vec a = {{0, 0, 0}}, b = {{1, 0, 0}}, c = {{0, 1, 0}};
  const Vec point = {{0.25, 0.25, 0.5}};
  double t, hit[3], weights[3], distance;
  EXPECT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, point, point, 0.4, t, hit, weights, distance), 0);
  ASSERT_EQ(OBPickUtil::IntersectTriangleWithLine(a, b, c, point, point, 0.6, t, hit, weights, distance), 1);
  EXPECT_DOUBLE_EQ(distance, 0.5);
  EXPECT_DOUBLE_EQ(hit[2], 0.0);
}

} // namespace
