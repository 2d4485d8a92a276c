#include "viewer/ClipControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using viewer::ClipControl;
using viewer::ClipPlane;

constexpr std::array<double, 6> box = {0, 2, -1, 1, 10, 14};

TEST(ClipControl, GivenNoPlane_WhenToggled_ThenOneAcrossTheMiddleComesAndGoes) {
  ClipControl clip(std::nullopt, box);
  EXPECT_FALSE(clip.plane().has_value());
  clip.toggle();
  ASSERT_TRUE(clip.plane().has_value());
  EXPECT_THAT(clip.plane()->normal, ElementsAre(1, 0, 0));
  EXPECT_EQ(clip.plane()->distance, 1);
  clip.toggle();
  EXPECT_FALSE(clip.plane().has_value());
}

TEST(ClipControl, GivenAPlane_WhenToggledTwice_ThenThatPlaneAgain) {
  ClipControl clip(ClipPlane{{0, 3, 4}, 7}, box);
  ASSERT_TRUE(clip.plane().has_value());
  clip.toggle();
  EXPECT_FALSE(clip.plane().has_value());
  clip.toggle();
  ASSERT_TRUE(clip.plane().has_value());
  EXPECT_THAT(clip.plane()->normal, ElementsAre(0, 3, 4));
  EXPECT_EQ(clip.plane()->distance, 7);
}

TEST(ClipControl, GivenAPlaneOff_WhenMoved_ThenItIsOnAndStaysWithinTheBox) {
  ClipControl clip(std::nullopt, box);
  clip.move(0.25);
  ASSERT_TRUE(clip.plane().has_value());
  EXPECT_EQ(clip.plane()->distance, 1.5);
  clip.move(5);
  EXPECT_EQ(clip.plane()->distance, 2);
  clip.move(-5);
  EXPECT_EQ(clip.plane()->distance, 0);
}

TEST(ClipControl, GivenAPlane_WhenTurned_ThenEachAxisInTurnAcrossTheMiddle) {
  ClipControl clip(std::nullopt, box);
  const std::pair<std::array<double, 3>, double> rows[] = {{{0, 1, 0}, 0},  {{0, 0, 1}, 12},   {{-1, 0, 0}, -1},
                                                           {{0, -1, 0}, 0}, {{0, 0, -1}, -12}, {{1, 0, 0}, 1}};
  for (const auto& [normal, distance] : rows) {
    clip.turn();
    ASSERT_TRUE(clip.plane().has_value());
    EXPECT_EQ(clip.plane()->normal, normal);
    EXPECT_EQ(clip.plane()->distance, distance);
  }
}

} // namespace
