#include "ColorDifference.h"

#include "platform/util/TovanColorTable.h"
#include "viewer/Palette.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace colors;

constexpr double far_apart = 12;
constexpr double apart = 6.5;
constexpr double apart_from_highlight = 16;

struct Row {
  const char* name;
  Vision vision;
};
constexpr Row visions[] = {{"normal", Vision::Normal},
                           {"protanopia", Vision::Protanopia},
                           {"deuteranopia", Vision::Deuteranopia},
                           {"tritanopia", Vision::Tritanopia}};

TEST(ColorDifference, GivenPublishedPairs_WhenMeasured_ThenThePublishedFigures) {
  // From the supplementary data of Sharma, Wu and Dalal (2005).
  EXPECT_NEAR(difference({50, 2.6772, -79.7751}, {50, 0, -82.7485}), 2.0425, 1e-4);
  EXPECT_NEAR(difference({50, -1.1848, -84.8006}, {50, 0, -82.7485}), 1.0000, 1e-4);
  EXPECT_NEAR(difference({50, 2.5, 0}, {50, 0, -2.5}), 4.3065, 1e-4);
  EXPECT_NEAR(difference({22.7233, 20.0904, -46.6940}, {23.0331, 14.9730, -42.5619}), 2.0373, 1e-4);
  EXPECT_NEAR(difference({2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}), 0.9082, 1e-4);
}

TEST(ColorDifference, GivenRedAndGreenOfOneLightness_WhenSeenByDichromats_ThenTheyComeTogetherWhereTheyShould) {
  const TovanColor red(200, 60, 60), green(95, 125, 30);
  const auto seen_apart = [&](Vision vision) { return difference(seen(red, vision), seen(green, vision)); };

  EXPECT_GT(seen_apart(Vision::Normal), 40);
  EXPECT_LT(seen_apart(Vision::Deuteranopia), 15);
  EXPECT_GT(seen_apart(Vision::Tritanopia), 30);
}

TEST(Palette, GivenAnyVision_WhenTwoOfItsColorsAreCompared_ThenTheyAreApartTheFirstDozenFar) {
  ASSERT_EQ(viewer::far_apart_count, 12u);
  for (const Row& row : visions)
    for (std::size_t i = 0; i < viewer::palette().size(); ++i)
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_GE(difference(seen(viewer::palette()[i], row.vision), seen(viewer::palette()[j], row.vision)),
                  i < viewer::far_apart_count ? far_apart : apart)
            << row.name << ", colours " << j << " and " << i;
}

TEST(Palette, GivenAnyVision_WhenComparedWithTheHighlight_ThenNoColorComesNearIt) {
  for (const Row& row : visions)
    for (std::size_t i = 0; i < viewer::palette().size(); ++i)
      EXPECT_GE(
          difference(seen(viewer::palette()[i], row.vision), seen(TovanColorTable::get_highlight_color(), row.vision)),
          apart_from_highlight)
          << row.name << ", colour " << i;
}

TEST(Palette, GivenBlackEdgesOnWhitePaper_WhenDrawn_ThenEveryColorIsApartFromBoth) {
  for (std::size_t i = 0; i < viewer::palette().size(); ++i) {
    const double lightness = seen(viewer::palette()[i], Vision::Normal)[0];
    EXPECT_GT(lightness, 44) << "colour " << i;
    EXPECT_LT(lightness, 90) << "colour " << i;
  }
}

TEST(Palette, GivenMoreOwnersThanColors_WhenAsked_ThenItStartsAgain) {
  ASSERT_EQ(viewer::palette().size(), 24u);
  for (std::size_t i = 0; i < viewer::palette().size(); ++i) {
    EXPECT_EQ(viewer::palette()[i].a, 255);
    EXPECT_EQ(viewer::palette_color(i), viewer::palette()[i]);
    EXPECT_EQ(viewer::palette_color(i + 24), viewer::palette()[i]);
  }
}

TEST(Palette, GivenTheNineKinds_WhenAsked_ThenNineColorsOfThePalette) {
  std::set<std::uint32_t> of_palette, of_kinds;
  for (const TovanColor color : viewer::palette())
    of_palette.insert(color.value());
  for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind) {
    const TovanColor color = viewer::kind_color(static_cast<Tarn::ElementType>(kind));
    EXPECT_EQ(of_palette.count(color.value()), 1u) << kind;
    of_kinds.insert(color.value());
  }
  EXPECT_EQ(of_kinds.size(), 9u);
}

} // namespace
