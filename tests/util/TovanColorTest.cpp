#include "platform/util/TovanColor.h"
#include "platform/util/TovanColorTable.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(TovanColor, GivenNothing_WhenMade_ThenAllChannelsAreZero) {
  const TovanColor color;

  EXPECT_EQ(color.r, 0);
  EXPECT_EQ(color.g, 0);
  EXPECT_EQ(color.b, 0);
  EXPECT_EQ(color.a, 0);
  EXPECT_EQ(color.value(), 0u);
}

TEST(TovanColor, GivenChannels_WhenPacked_ThenRedIsLowestAndAlphaHighest) {
  EXPECT_EQ(TovanColor(0x11, 0x22, 0x33, 0x44).value(), 0x44332211u);
  EXPECT_EQ(TovanColor(255, 0, 0, 0).value(), 0x000000ffu);
  EXPECT_EQ(TovanColor(0, 0, 0, 255).value(), 0xff000000u);
}

TEST(TovanColor, GivenNoAlpha_WhenMadeFromChannels_ThenItIsOpaque) { EXPECT_EQ(TovanColor(1, 2, 3).a, 255); }

TEST(TovanColor, GivenAValue_WhenUnpacked_ThenChannelsComeFromItsBytes) {
  const TovanColor color(0x84c2a180u);

  EXPECT_EQ(color.r, 0x80);
  EXPECT_EQ(color.g, 0xa1);
  EXPECT_EQ(color.b, 0xc2);
  EXPECT_EQ(color.a, 0x84);
  EXPECT_EQ(color.value(), 0x84c2a180u);
}

TEST(TovanColor, GivenAColor_WhenConverted_ThenChannelsKeepTheirOrder) {
  const TovanColor color(255, 51, 0, 7);
  double rgb[4] = {-1, -1, -1, -1};
  unsigned char rgba[5] = {9, 9, 9, 9, 9};

  color.to_rgb(rgb);
  color.to_rgba(rgba);

  EXPECT_EQ(rgb[0], 1.0);
  EXPECT_EQ(rgb[1], 51 / 255.0);
  EXPECT_EQ(rgb[2], 0.0);
  EXPECT_EQ(rgb[3], -1) << "alpha is dropped";
  const unsigned char expected[5] = {255, 51, 0, 7, 9};
  EXPECT_EQ(std::memcmp(rgba, expected, 5), 0);
}

TEST(TovanColor, GivenAColorInMemory_WhenReadAsBytes_ThenRedIsFirst) {
  static_assert(sizeof(TovanColor) == 4, "arrays of colours are arrays of four bytes");
  const TovanColor color(1, 2, 3, 4);
  const unsigned char expected[4] = {1, 2, 3, 4};

  EXPECT_EQ(std::memcmp(&color, expected, 4), 0);
}

TEST(TovanColor, GivenColorsThatDifferInOneChannel_WhenCompared_ThenTheyDiffer) {
  const TovanColor color(10, 20, 30, 40);

  EXPECT_TRUE(color == TovanColor(10, 20, 30, 40));
  EXPECT_FALSE(color != TovanColor(10, 20, 30, 40));
  for (const TovanColor& other : {TovanColor(11, 20, 30, 40), TovanColor(10, 21, 30, 40), TovanColor(10, 20, 31, 40),
                                  TovanColor(10, 20, 30, 41)}) {
    EXPECT_TRUE(color != other);
    EXPECT_FALSE(color == other);
  }
}

TEST(TovanColorTable, GivenNoChoice_WhenAskedForTheHighlight_ThenItIsAnOpaqueOrange) {
  const TovanColor color = TovanColorTable::get_highlight_color();

  EXPECT_EQ(color.a, 255);
  EXPECT_GT(color.r, color.g);
  EXPECT_GT(color.g, color.b);
}

TEST(TovanColorTable, GivenAChoice_WhenAskedForTheHighlight_ThenItIsThatColor) {
  const TovanColor before = TovanColorTable::get_highlight_color();
  const TovanColor chosen(1, 2, 3, 4);

  TovanColorTable::set_highlight_color(chosen);
  const TovanColor after = TovanColorTable::get_highlight_color();
  TovanColorTable::set_highlight_color(before);

  EXPECT_TRUE(after == chosen);
  EXPECT_TRUE(before != chosen);
  EXPECT_TRUE(TovanColorTable::get_highlight_color() == before);
}

} // namespace
