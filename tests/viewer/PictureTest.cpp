#include "Pixels.h"
#include "RunViewer.h"

#include "viewer/Palette.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace {

using namespace run_viewer;

const TovanColor white(255, 255, 255), black(0, 0, 0), red(255, 0, 0);

class Picture : public testing::Test {
protected:
  Picture() : folder(scratch_folder()) {}
  ~Picture() override { std::filesystem::remove_all(folder); }

  Pixels draw(std::vector<std::string> arguments, const std::string& file = "four_kinds.e") {
    const std::string path = folder + "/picture.png";
    std::filesystem::remove(path);
    arguments.insert(arguments.begin(), {"--resolution=480,360", "--output=" + path});
    arguments.push_back(mesh(file));
    const Outcome run = run_orbel_view(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    const Pixels pixels = Pixels::read(path);
    EXPECT_EQ(pixels.width, 480);
    EXPECT_EQ(pixels.height, 360);
    return pixels;
  }

  std::string folder;
};

std::size_t painted(const Pixels& pixels) { return pixels.rgb.size() - pixels.count(white, 0); }

// The rows and columns in which something is painted: x0, x1, y0, y1.
std::array<int, 4> frame(const Pixels& pixels) {
  std::array<int, 4> ends = {pixels.width, -1, pixels.height, -1};
  for (int y = 0; y < pixels.height; ++y)
    for (int x = 0; x < pixels.width; ++x)
      if (pixels.at(x, y) != std::array<std::uint8_t, 3>{255, 255, 255}) {
        ends = {std::min(ends[0], x), std::max(ends[1], x), std::min(ends[2], y), std::max(ends[3], y)};
      }
  return ends;
}

TEST_F(Picture, GivenFourBlocks_WhenDrawn_ThenEachShowsInItsColorAndTheEdgesInBlack) {
  const Pixels pixels = draw({});
  for (int owner = 0; owner < 4; ++owner)
    EXPECT_GT(pixels.count_lit(viewer::palette_color(owner)), 300u) << owner;
  EXPECT_EQ(pixels.count_lit(viewer::palette_color(4)), 0u);
  EXPECT_GT(pixels.count(black, 40), 500u);
  EXPECT_GT(pixels.count(white, 0), 50000u);
}

TEST_F(Picture, GivenTheSameCommand_WhenRunTwice_ThenTheSamePicture) { EXPECT_EQ(draw({}).rgb, draw({}).rgb); }

TEST_F(Picture, GivenAnyView_WhenDrawn_ThenTheWholeMeshFillsThePictureAndNoneIsCutOff) {
  for (const char* view : {"iso", "+x", "-x", "+y", "-y", "+z", "-z"})
    for (const char* projection : {"--verbose", "--parallel"}) {
      SCOPED_TRACE(std::string(view) + projection);
      const auto ends = frame(draw({std::string("--view=") + view, projection}));
      EXPECT_GT(ends[0], 2);
      EXPECT_GT(ends[2], 2);
      EXPECT_LT(ends[1], 477);
      EXPECT_LT(ends[3], 357);
      EXPECT_TRUE(ends[1] - ends[0] > 0.75 * 480 || ends[3] - ends[2] > 0.75 * 360);
    }
}

TEST_F(Picture, GivenOppositeViews_WhenDrawnInParallel_ThenOneOutlineIsTheMirrorOfTheOther) {
  const Pixels front = draw({"--view=+z", "--parallel", "--no-edges"});
  const Pixels back = draw({"--view=-z", "--parallel", "--no-edges"});
  std::size_t wrong = 0;
  for (int y = 0; y < front.height; ++y)
    for (int x = 0; x < front.width; ++x)
      wrong += (front.at(x, y)[0] == 255) != (back.at(front.width - 1 - x, y)[0] == 255);
  EXPECT_LT(wrong, 2000u);
}

TEST_F(Picture, GivenZoom_WhenDrawn_ThenLengthsGrowByIt) {
  for (const char* projection : {"--parallel", "--view=+z"}) {
    const auto one = frame(draw({"--zoom=0.3", projection}));
    const auto two = frame(draw({"--zoom=0.6", projection}));
    EXPECT_NEAR(two[1] - two[0], 2 * (one[1] - one[0]), 6) << projection;
    EXPECT_NEAR(two[3] - two[2], 2 * (one[3] - one[2]), 6) << projection;
  }
}

TEST_F(Picture, GivenColors_WhenDrawn_ThenBackgroundAndLinesHaveThem) {
  const Pixels pixels = draw({"--background=#102030", "--line-color=#FF0000"});
  EXPECT_EQ(pixels.at(2, 2), (std::array<std::uint8_t, 3>{0x10, 0x20, 0x30}));
  EXPECT_EQ(pixels.at(477, 357), (std::array<std::uint8_t, 3>{0x10, 0x20, 0x30}));
  EXPECT_GT(pixels.count(red, 40), 500u);
  EXPECT_EQ(pixels.count(black, 10), 0u);
}

TEST_F(Picture, GivenNoEdges_WhenDrawn_ThenNothingIsBlack) {
  EXPECT_GT(draw({}).count(black, 40), 500u);
  EXPECT_EQ(draw({"--no-edges"}).count(black, 40), 0u);
}

TEST_F(Picture, GivenWiderLines_WhenDrawn_ThenMoreIsBlackInProportion) {
  const double thin = draw({"--line-width=2"}).count(black, 40), wide = draw({"--line-width=6"}).count(black, 40);
  EXPECT_NEAR(wide / thin, 3, 0.6);
}

TEST_F(Picture, GivenNodes_WhenDrawn_ThenOneSquareForEachVisibleOne) {
  const auto nodes = [&](const char* size) {
    return double(draw({"--nodes", "--no-edges", std::string("--point-size=") + size, "--line-color=#FF0000"}, //
                       "four_kinds.e")
                      .count(red, 40));
  };
  // 13 nodes, some behind the solids.
  EXPECT_GT(nodes("10"), 8 * 80);
  EXPECT_LT(nodes("10"), 13 * 110);
  EXPECT_NEAR(nodes("20") / nodes("10"), 4, 0.8);
}

TEST_F(Picture, GivenRenderModes_WhenDrawn_ThenEachShowsWhatItShould) {
  const auto colored = [](const Pixels& pixels) {
    std::size_t sum = 0;
    for (int owner = 0; owner < 4; ++owner)
      sum += pixels.count_lit(viewer::palette_color(owner));
    return sum;
  };
  const Pixels shaded = draw({"--render-mode=shaded"}), wire = draw({"--render-mode=wireframe"}),
               hidden = draw({"--render-mode=hidden-line"}), dimmed = draw({"--render-mode=dimmed"}),
               translucent = draw({"--render-mode=translucent", "--opacity=0.5"});

  EXPECT_GT(colored(shaded), 10000u);
  for (const Pixels* lines : {&wire, &hidden, &dimmed})
    EXPECT_LT(colored(*lines), 100u);
  // Edges behind: as strong as others, gone, weak.
  EXPECT_GT(wire.count(black, 100), hidden.count(black, 100) * 1.15);
  EXPECT_GT(painted(dimmed), painted(hidden) * 1.1);
  EXPECT_LT(dimmed.count(black, 60), wire.count(black, 60));
  // Through translucent surfaces the background and edges behind show.
  EXPECT_GT(shaded.differences(translucent, 20), 10000u);
  EXPECT_EQ(painted(translucent) > painted(shaded) * 0.95, true);
}

TEST_F(Picture, GivenOpacity_WhenItRises_ThenSurfacesComeNearerToShaded) {
  const Pixels shaded = draw({"--no-edges"});
  const auto distance = [&](const char* opacity) {
    const Pixels pixels = draw({"--no-edges", std::string("--opacity=") + opacity});
    double sum = 0;
    for (std::size_t i = 0; i < pixels.rgb.size(); ++i)
      for (int c = 0; c < 3; ++c)
        sum += std::abs(pixels.rgb[i][c] - shaded.rgb[i][c]);
    return sum;
  };
  const double weak = distance("0.2"), strong = distance("0.8");
  EXPECT_GT(weak, 2 * strong);
  EXPECT_GT(strong, 0);
}

TEST_F(Picture, GivenShrunkElements_WhenDrawn_ThenTheyStandApart) {
  const Pixels whole = draw({"--parallel", "--view=+y"}), shrunk = draw({"--parallel", "--view=+y", "--shrink=0.5"});
  EXPECT_LT(painted(shrunk), 0.9 * painted(whole));
}

TEST_F(Picture, GivenAClippingPlane_WhenDrawn_ThenTheSideOfTheNormalStaysInWholeElements) {
  const auto clipped = [&](const char* plane) {
    return draw({"--parallel", "--view=+z", "--no-edges", std::string("--clip=") + plane}, "bridge_beams.vtk");
  };
  // The deck is 12 long and 3 wide, in elements of 0.5: a plane at 6.2 keeps those from 6 on.
  const Pixels pixels = clipped("1,0,0,6.2");
  const auto ends = frame(pixels);
  EXPECT_NEAR(double(ends[1] - ends[0]) / (ends[3] - ends[2]), 6 / 3.0, 0.05);
  EXPECT_EQ(pixels.rgb, clipped("2,0,0,12.4").rgb);
  EXPECT_EQ(pixels.rgb, clipped("1,0,0,6.4").rgb);
  EXPECT_NE(pixels.rgb, clipped("1,0,0,6.6").rgb);
  EXPECT_NE(pixels.rgb, clipped("-1,0,0,-6.2").rgb);
}

TEST_F(Picture, GivenOwnersHidden_WhenDrawn_ThenTheirColorIsGone) {
  const Pixels all = draw({});
  ASSERT_GT(all.count_lit(viewer::palette_color(0)), 300u);
  const Outcome described = run_orbel_view({"--info", mesh("four_kinds.e")});
  const std::string key = "\"name\": \"";
  const std::size_t at = described.out.find(key) + key.size();
  const std::string first = described.out.substr(at, described.out.find('"', at) - at);

  const Pixels hidden = draw({"--hide=" + first});
  EXPECT_EQ(hidden.count_lit(viewer::palette_color(0)), 0u);
  EXPECT_GT(hidden.count_lit(viewer::palette_color(1)), 300u);

  const Pixels alone = draw({"--only=" + first});
  EXPECT_GT(alone.count_lit(viewer::palette_color(0)), 1000u);
  for (int owner = 1; owner < 4; ++owner)
    EXPECT_EQ(alone.count_lit(viewer::palette_color(owner)), 0u);
}

TEST_F(Picture, GivenColorsByKind_WhenDrawn_ThenEachKindHasItsOwn) {
  const Pixels apart = draw({"--color-by=kind"});
  for (const auto kind : {Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid})
    EXPECT_GT(apart.count_lit(viewer::kind_color(kind)), 300u) << kind;
  // One owner with three kinds in its skin.
  const Pixels mixed = draw({"--color-by=kind"}, "pipe_bend.cgns");
  EXPECT_GT(mixed.count_lit(viewer::kind_color(Tarn::Hex)), 10000u);
  EXPECT_GT(mixed.count_lit(viewer::kind_color(Tarn::Wedge)), 20u);
  EXPECT_GT(mixed.count_lit(viewer::kind_color(Tarn::Pyramid)), 20u);
}

TEST_F(Picture, GivenFacesTurnedAway_WhenDrawn_ThenTheyKeepLightEnoughForTheirColor) {
  const Pixels pixels = draw({"--no-edges"}, "blow_shell.vtk");
  const TovanColor color = viewer::palette_color(0);
  int darkest = 255;
  for (const auto& pixel : pixels.rgb)
    darkest = std::min<int>(darkest, pixel[1]);
  EXPECT_GE(darkest, color.g / 3);
  EXPECT_LT(darkest, color.g * 3 / 4);
}

TEST_F(Picture, GivenNothingVisible_WhenDrawn_ThenThePictureIsEmpty) {
  EXPECT_EQ(painted(draw({"--clip=1,0,0,1000"})), 0u);
}

} // namespace
