#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "platform/util/TovanBox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Point = std::array<double, 3>;
using Corners = std::vector<std::array<double, 2>>;

Point flat(double x, double y) { return {x, y, 0.0}; }

// The regions of the tables, and whether a point lies well inside, well outside, or too near a border to say by
// sampling. Written anew, without the code under test.
struct Region {
  std::string name;
  std::shared_ptr<PickBounds> bounds;
  std::function<double(double, double)> signed_distance; // negative inside
};

double to_segment(double x, double y, std::array<double, 2> a, std::array<double, 2> b) {
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  const double t = std::clamp(((x - a[0]) * dx + (y - a[1]) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(x - a[0] - t * dx, y - a[1] - t * dy);
}

double polygon_distance(const Corners& corners, double x, double y) {
  double border = 1e300;
  int crossings = 0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const auto a = corners[i];
    const auto b = corners[(i + 1) % corners.size()];
    border = std::min(border, to_segment(x, y, a, b));
    // Downwards from the point: does the side pass below it?
    if ((a[0] > x) == (b[0] > x)) continue;
    const double at = a[1] + (x - a[0]) / (b[0] - a[0]) * (b[1] - a[1]);
    if (at < y) ++crossings;
  }
  return crossings % 2 ? -border : border;
}

std::vector<Region> regions() {
  std::vector<Region> list;
  const double low[2] = {2, 3};
  const double high[2] = {7, 6};
  list.push_back({"rectangle", std::make_shared<PickRectangle>(high, low), [](double x, double y) {
                    return std::max({2 - x, x - 7, 3 - y, y - 6});
                  }});
  const double centre[2] = {5, 5};
  list.push_back({"circle", std::make_shared<PickCircle>(centre, 3.0),
                  [](double x, double y) { return std::hypot(x - 5, y - 5) - 3.0; }});
  const Corners convex = {{1, 1}, {8, 2}, {5, 8}};
  list.push_back({"triangle", std::make_shared<PickPolygon>(convex),
                  [convex](double x, double y) { return polygon_distance(convex, x, y); }});
  const Corners star = {{1, 1}, {9, 4}, {1, 4}, {9, 1}, {5, 9}};
  list.push_back({"star that crosses itself", std::make_shared<PickPolygon>(star),
                  [star](double x, double y) { return polygon_distance(star, x, y); }});
  const Corners horseshoe = {{1, 1}, {9, 1}, {9, 9}, {7, 9}, {7, 3}, {3, 3}, {3, 9}, {1, 9}};
  list.push_back({"horseshoe", std::make_shared<PickPolygon>(horseshoe),
                  [horseshoe](double x, double y) { return polygon_distance(horseshoe, x, y); }});
  return list;
}

// The deepest sample of a shape in the region: negative when the shape surely touches it.
double deepest(const Region& region, const std::vector<Point>& shape) {
  double best = 1e300;
  const int steps = shape.size() == 2 ? 400 : 60;
  for (int i = 0; i <= steps; ++i) {
    const double u = double(i) / steps;
    if (shape.size() == 2) {
      best = std::min(best, region.signed_distance(shape[0][0] + u * (shape[1][0] - shape[0][0]),
                                                   shape[0][1] + u * (shape[1][1] - shape[0][1])));
      continue;
    }
    for (int j = 0; i + j <= steps; ++j) {
      const double v = double(j) / steps;
      best = std::min(best, region.signed_distance(
                                shape[0][0] + u * (shape[1][0] - shape[0][0]) + v * (shape[2][0] - shape[0][0]),
                                shape[0][1] + u * (shape[1][1] - shape[0][1]) + v * (shape[2][1] - shape[0][1])));
    }
  }
  return best;
}

PickBounds::Result test(PickBounds& bounds, const std::vector<Point>& shape) {
  double distance = 0;
  if (shape.size() == 1) return bounds.test(shape[0].data(), distance);
  if (shape.size() == 2) return bounds.test(shape[0].data(), shape[1].data(), distance);
  return bounds.test(shape[0].data(), shape[1].data(), shape[2].data(), distance);
}

TEST(PickBounds, GivenRandomShapes_WhenTested_ThenTheVerdictIsThatOfSampling) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> coordinate(-2.0, 12.0);
  for (const Region& region : regions()) {
    SCOPED_TRACE(region.name);
    int touching = 0;
    int apart = 0;
    for (int i = 0; i < 400; ++i) {
      std::vector<Point> shape(1 + i % 3);
      for (Point& corner : shape)
        corner = {coordinate(random), coordinate(random), coordinate(random)};
      const PickBounds::Result result = test(*region.bounds, shape);
      if (shape.size() == 1) {
        const double signed_distance = region.signed_distance(shape[0][0], shape[0][1]);
        if (std::abs(signed_distance) > 1e-9) {
          ASSERT_EQ(result.touches, signed_distance < 0) << i;
        }
      } else {
        const double depth = deepest(region, shape);
        if (depth < -1e-9) {
          ASSERT_TRUE(result.touches) << i;
        }
        if (depth > 0.25) {
          ASSERT_FALSE(result.touches) << i;
        }
      }
      (result.touches ? touching : apart) += 1;
      if (!result.touches) {
        EXPECT_EQ(result.x, 0.0);
        EXPECT_EQ(result.y, 0.0);
        continue;
      }
      // The point given lies in the region and on the shape, and a box round the shape is not ruled out.
      EXPECT_LT(region.signed_distance(result.x, result.y), 1e-6);
      double low[3] = {1e300, 1e300, 0};
      double high[3] = {-1e300, -1e300, 0};
      for (const Point& corner : shape) {
        for (int axis = 0; axis < 2; ++axis) {
          low[axis] = std::min(low[axis], corner[axis]);
          high[axis] = std::max(high[axis], corner[axis]);
        }
      }
      EXPECT_TRUE(region.bounds->test(TovanBox(low, high))) << i;
      EXPECT_GE(result.x, low[0] - 1e-9);
      EXPECT_LE(result.x, high[0] + 1e-9);
      EXPECT_GE(result.y, low[1] - 1e-9);
      EXPECT_LE(result.y, high[1] + 1e-9);
    }
    EXPECT_GT(touching, 50);
    EXPECT_GT(apart, 50);
  }
}

TEST(PickBounds, GivenBorders_WhenTested_ThenTheyBelongToTheRegion) {
  struct Row {
    const char* name;
    double x, y;
    bool inside;
  };
  const double low[2] = {2, 3};
  const double high[2] = {7, 6};
  PickRectangle rectangle(low, high);
  for (const Row& row :
       {Row{"corner", 2, 3, true}, Row{"side", 7, 4.5, true}, Row{"just out", 7.0000001, 4.5, false}}) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(test(rectangle, {flat(row.x, row.y)}).touches, row.inside);
  }
  const double centre[2] = {0, 0};
  PickCircle circle(centre, 5.0);
  for (const Row& row : {Row{"rim", 3, 4, true}, Row{"top", 0, 5, true}, Row{"just out", 0, 5.0000001, false}}) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(test(circle, {flat(row.x, row.y)}).touches, row.inside);
  }
  PickPolygon polygon({{0, 0}, {4, 0}, {0, 4}});
  for (const Row& row : {Row{"corner", 4, 0, true}, Row{"slope", 2, 2, true}, Row{"just out", 2.0000001, 2, false}}) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(test(polygon, {flat(row.x, row.y)}).touches, row.inside);
  }
  // A segment and a triangle that touch at one point only.
  EXPECT_TRUE(test(polygon, {flat(4, 0), flat(9, 0)}).touches);
  EXPECT_TRUE(test(polygon, {flat(2, 2), flat(9, 9), flat(9, 8)}).touches);
  EXPECT_FALSE(test(polygon, {flat(4.001, 0), flat(9, 0)}).touches);
}

TEST(PickBounds, GivenARegionInsideAShape_WhenTested_ThenItTouches) {
  for (const Region& region : regions()) {
    SCOPED_TRACE(region.name);
    EXPECT_TRUE(test(*region.bounds, {flat(-100, -100), flat(200, -100), flat(0, 300)}).touches);
    EXPECT_FALSE(test(*region.bounds, {flat(-100, -100), flat(-50, -100), flat(-70, -20)}).touches);
  }
}

TEST(PickBounds, GivenWhatIsNotANumber_WhenTested_ThenItIsOutside) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Region& region : regions()) {
    SCOPED_TRACE(region.name);
    EXPECT_FALSE(test(*region.bounds, {flat(nan, 5)}).touches);
    EXPECT_FALSE(test(*region.bounds, {flat(5, nan)}).touches);
    EXPECT_FALSE(test(*region.bounds, {flat(5, 5), flat(nan, 5)}).touches);
    EXPECT_FALSE(test(*region.bounds, {flat(nan, 5), flat(5, 5)}).touches);
    EXPECT_FALSE(test(*region.bounds, {flat(5, 5), flat(4, 5), flat(5, nan)}).touches);
  }
}

TEST(PickBounds, GivenPoints_WhenTested_ThenTheGapIsGiven) {
  const double low[2] = {2, 3};
  const double high[2] = {7, 6};
  PickRectangle rectangle(low, high);
  const double centre[2] = {0, 0};
  PickCircle circle(centre, 5.0);
  PickPolygon polygon({{0, 0}, {4, 0}, {0, 4}});
  double distance = -1;
  rectangle.test(flat(10, 10).data(), distance);
  EXPECT_DOUBLE_EQ(distance, 5.0);
  circle.test(flat(6, 8).data(), distance);
  EXPECT_DOUBLE_EQ(distance, 5.0);
  polygon.test(flat(7, -4).data(), distance);
  EXPECT_DOUBLE_EQ(distance, 5.0);
  polygon.test(flat(1, 1).data(), distance);
  EXPECT_EQ(distance, 0.0);
}

TEST(PickBounds, GivenEmptyRegionsAndBoxes_WhenTested_ThenNothingTouches) {
  PickPolygon nothing({});
  EXPECT_FALSE(test(nothing, {flat(0, 0)}).touches);
  EXPECT_FALSE(test(nothing, {flat(-9, -9), flat(9, -9), flat(0, 9)}).touches);
  const double centre[2] = {0, 0};
  PickCircle inverted(centre, -1.0);
  EXPECT_FALSE(test(inverted, {flat(0, 0)}).touches);
  PickPolygon point({{3, 3}});
  EXPECT_TRUE(test(point, {flat(3, 3)}).touches);
  EXPECT_TRUE(test(point, {flat(0, 0), flat(6, 6)}).touches);
  EXPECT_FALSE(test(point, {flat(0, 0), flat(6, 5)}).touches);
  for (const Region& region : regions())
    EXPECT_FALSE(region.bounds->test(TovanBox())) << region.name;
}

TEST(PickBounds, GivenABoxFarAway_WhenTested_ThenItIsRuledOut) {
  const double low[3] = {50, 50, 0};
  const double high[3] = {60, 60, 0};
  for (const Region& region : regions())
    EXPECT_FALSE(region.bounds->test(TovanBox(low, high))) << region.name;
}

} // namespace
