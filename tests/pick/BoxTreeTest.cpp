#include "pick/index/BoxTree.h"
#include "pick/index/PickAdmission.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace {

using Box = BoxTree::Box;
using Places = std::vector<std::uint32_t>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Box box_of(double x, double y, double z) {
  const double point[3] = {x, y, z};
  Box box;
  box.add(point);
  return box;
}

bool overlap(const Box& left, const Box& right) {
  for (int axis = 0; axis < 3; ++axis)
    if (left.maximum[axis] < right.minimum[axis] || right.maximum[axis] < left.minimum[axis]) return false;
  return true;
}

TEST(Box, GivenAPoint_WhenAdded_ThenTheBoxIsNeverTooSmallAndHardlyTooLarge) {
  std::mt19937 random(2);
  for (int i = 0; i < 10000; ++i) {
    const double value =
        std::ldexp(std::uniform_real_distribution<>(-1, 1)(random), static_cast<int>(random() % 200) - 100);
    const Box box = box_of(value, 0, 0);
    ASSERT_LE(double(box.minimum[0]), value);
    ASSERT_GE(double(box.maximum[0]), value);
    ASSERT_LE(double(box.maximum[0]) - double(box.minimum[0]), std::abs(value) * 2e-7);
  }
}

TEST(Box, GivenWhatIsNoNumber_WhenAddedAmongOthers_ThenTheBoxIsNotFinite) {
  constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
  const double points[3][3] = {{1, 2, 3}, {4, nowhere, 6}, {7, 8, 9}};
  for (const auto& order : {std::array<int, 3>{0, 1, 2}, {1, 0, 2}, {0, 2, 1}}) {
    Box box;
    for (const int i : order)
      box.add(points[i]);
    EXPECT_FALSE(box.is_finite());
  }
  EXPECT_TRUE(box_of(1, 2, 3).is_finite());
  EXPECT_FALSE(Box().is_finite());
  for (const double far : {1e300, -1e39, std::numeric_limits<double>::infinity()})
    EXPECT_FALSE(box_of(0, 0, far).is_finite());
}

TEST(BoxTree, GivenFewBoxes_WhenFound_ThenThoseAdmittedAreThereInOrder) {
  const auto all = [](const Box&) { return true; };
  EXPECT_THAT(BoxTree().find(all), IsEmpty());
  EXPECT_THAT(BoxTree(std::vector<Box>()).find(all), IsEmpty());
  const BoxTree tree({box_of(5, 0, 0), Box(), box_of(1, 0, 0), box_of(5, 0, 0)});
  EXPECT_THAT(tree.find(all), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(tree.find([](const Box& box) { return box.maximum[0] >= 5; }), ElementsAre(0, 1, 3))
      << "and the boundless";
  EXPECT_THAT(tree.find([](const Box&) { return false; }), ElementsAre(1));
}

TEST(BoxTree, GivenRandomBoxes_WhenFoundByAWindow_ThenTheyAreThoseOfAWalkThroughAll) {
  std::mt19937 random(4);
  const auto number = [&] { return std::uniform_real_distribution<>(-10, 10)(random); };
  for (const std::size_t count : {1u, 7u, 8u, 9u, 64u, 65u, 5000u}) {
    std::vector<Box> boxes(count);
    for (Box& box : boxes) {
      if (random() % 50 == 0) continue; // empty
      const double corner[3] = {number(), number(), random() % 2 ? 0 : number()};
      const double other[3] = {corner[0] + 0.1 * number(), corner[1], corner[2] + number()};
      box.add(corner);
      box.add(other);
    }
    const BoxTree tree(boxes);
    int all_found = 0;
    for (int i = 0; i < 50; ++i) {
      Box window = box_of(number(), number(), number());
      window.add(box_of(number(), number(), number()));
      const auto admit = [&window](const Box& box) { return overlap(box, window); };
      Places expected;
      for (std::size_t place = 0; place < count; ++place)
        if (!boxes[place].is_finite() || admit(boxes[place])) expected.push_back(static_cast<std::uint32_t>(place));
      const Places found = tree.find(admit);
      if (count >= 512 && found.size() == count)
        ++all_found; // most of them would be looked at: all are found
      else
        ASSERT_EQ(found, expected);
    }
    EXPECT_LT(all_found, 10);
  }
}

TEST(BoxTree, GivenManyBoxes_WhenMostAreAdmitted_ThenAllAreFoundAtOnce) {
  std::vector<Box> boxes(5000);
  for (std::size_t i = 0; i < boxes.size(); ++i)
    boxes[i] = i % 100 == 7 ? Box() : box_of(double(i % 71), double(i / 71), 0);
  int looked_at = 0;
  const Places found = BoxTree(boxes).find([&looked_at](const Box&) {
    ++looked_at;
    return true;
  });
  ASSERT_EQ(found.size(), boxes.size());
  for (std::size_t i = 0; i < found.size(); ++i)
    ASSERT_EQ(found[i], i);
  EXPECT_LT(looked_at, 200);
}

TEST(BoxTree, GivenManyBoxes_WhenAFewAreFound_ThenFewAreLookedAt) {
  std::vector<Box> boxes;
  for (int x = 0; x < 40; ++x)
    for (int y = 0; y < 40; ++y)
      for (int z = 0; z < 40; ++z)
        boxes.push_back(box_of(x, y, z));
  std::mt19937 random(8);
  std::shuffle(boxes.begin(), boxes.end(), random);
  // Reference nodes far away, a few, must not spoil it.
  for (const double stray : {17.0, 1e3, 1e6, 1e30}) {
    boxes.back() = box_of(stray, stray, stray);
    const BoxTree tree(boxes);
    int looked_at = 0;
    const Places found = tree.find([&looked_at](const Box& box) {
      ++looked_at;
      return overlap(box, box_of(17, 23, 5));
    });
    EXPECT_LE(found.size(), 1u);
    EXPECT_LT(looked_at, 300) << stray;
  }
}

// Points as far from a ray as the tolerance reaches, on every axis, as the pick of nodes takes them.
TEST(LineAdmission, GivenPointsAtTheTolerance_WhenAsked_ThenTheyAreAdmittedAndThoseBeyondAreNot) {
  std::mt19937 random(6);
  const auto number = [&] { return std::uniform_real_distribution<>(-10, 10)(random); };
  for (const double far : {0.0, 1e3, 1e7}) {
    for (int i = 0; i < 2000; ++i) {
      double ray[6];
      for (double& coordinate : ray)
        coordinate = far + number();
      const int still = static_cast<int>(random() % 4); // an axis along which the ray does not go, or none
      if (still < 3) ray[still + 3] = ray[still];
      const double tolerance = i % 5 == 0 ? 0 : std::abs(number()) / 20;
      const double t = number() / 2; // the line goes on at both ends
      double near[3];
      double beyond[3];
      for (int axis = 0; axis < 3; ++axis) {
        const double on = ray[axis] + t * (ray[axis + 3] - ray[axis]);
        near[axis] = on + (random() % 2 ? tolerance : -tolerance);
        beyond[axis] = on;
      }
      const LineAdmission admit(ray, tolerance);
      ASSERT_TRUE(admit(box_of(near[0], near[1], near[2])));
      if (still == 3 || far > 0) continue;
      beyond[still] += tolerance * 1.01 + 1e-3;
      ASSERT_FALSE(admit(box_of(beyond[0], beyond[1], beyond[2])));
    }
  }
}

} // namespace
