#include "Desktop.h"
#include "RunViewer.h"

#include "viewer/Palette.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr int skipped = 77; // what CTest takes as such
constexpr int width = 640, height = 480;
constexpr int text_height = 90; // of status lines and message, at the bottom

// Without tools there is nothing to test, which is not the same as passing.
class Tools : public testing::Environment {
public:
  void SetUp() override {
    if (Desktop::is_available()) return;
    std::puts("skipped: needs a display and xdotool");
    std::exit(skipped);
  }
};
const auto* const tools = testing::AddGlobalTestEnvironment(new Tools);

// The picture without the texts.
Pixels mesh_part(const Pixels& pixels) {
  Pixels part = pixels;
  part.height = pixels.height - text_height;
  part.rgb.assign(pixels.rgb.begin() + std::ptrdiff_t(text_height) * pixels.width, pixels.rgb.end());
  return part;
}

std::size_t difference(const Pixels& a, const Pixels& b) { return mesh_part(a).differences(mesh_part(b)); }

std::size_t painted(const Pixels& pixels) {
  const Pixels part = mesh_part(pixels);
  return part.rgb.size() - part.count(TovanColor(255, 255, 255), 0);
}

// The mean place of what is painted.
std::pair<double, double> centre(const Pixels& pixels) {
  double x = 0, y = 0, count = 0;
  for (int row = text_height; row < pixels.height; ++row)
    for (int column = 0; column < pixels.width; ++column)
      if (pixels.at(column, row) != std::array<std::uint8_t, 3>{255, 255, 255}) {
        x += column;
        y += row;
        ++count;
      }
  return {x / count, y / count};
}

class Window : public testing::Test {
protected:
  Window() : folder(run_viewer::scratch_folder()), desktop(arguments(), folder) {}
  ~Window() override { std::filesystem::remove_all(folder); }

  void SetUp() override {
    ASSERT_TRUE(desktop.has_window());
    start = desktop.look();
    ASSERT_EQ(start.width, width);
    ASSERT_EQ(start.height, height);
    ASSERT_GT(painted(start), 10000u);
  }
  void TearDown() override { EXPECT_TRUE(desktop.is_running()); }

  static std::vector<std::string> arguments() {
    return {"--resolution=" + std::to_string(width) + "," + std::to_string(height),
            run_viewer::mesh("ring_segments.exo")};
  }

  Pixels after(const std::string& key, const Pixels& before) {
    desktop.press(key);
    return desktop.look_for_change(before);
  }

  std::string folder;
  Desktop desktop;
  Pixels start;
};

struct KeyRow {
  const char* name;
  std::vector<const char*> first; // brings the window into the state that the key is tried in
  const char* key;
  const char* undo;
};

const KeyRow key_rows[] = {
    {"wireframe", {}, "1", "4"},
    {"hidden lines", {}, "2", "4"},
    {"dimmed", {}, "3", "4"},
    {"translucent", {}, "5", "4"},
    {"edges", {}, "e", "e"},
    {"nodes", {}, "n", "n"},
    {"shrink", {}, "s", "s"},
    {"colour by kind", {}, "k", "k"},
    {"clip", {}, "p", "p"},
    {"move the plane", {"p"}, "Page_Down", "Page_Up"},
    {"turn the plane", {"p", "a", "a", "a", "a", "a"}, "a", "r"},
    {"from +x", {}, "x", "i"},
    {"from +y", {}, "y", "i"},
    {"from +z", {}, "z", "i"},
    {"from -x", {}, "shift+x", "i"},
    {"from -y", {}, "shift+y", "i"},
    {"from -z", {}, "shift+z", "i"},
    {"fit", {"plus", "plus"}, "f", "r"},
    {"parallel", {}, "v", "v"},
    {"turn left", {}, "Left", "Right"},
    {"turn up", {}, "Up", "Down"},
    {"nearer", {}, "plus", "minus"},
    {"focus", {}, "Tab", "r"},
    {"focus backwards", {"Tab"}, "shift+Tab", "Tab"},
    {"hide the owner in focus", {"Tab"}, "space", "space"},
    {"the owner in focus alone", {"Tab"}, "Return", "r"},
    {"all owners", {"Tab", "space"}, "u", "r"},
    {"help", {}, "h", "Escape"},
    {"the help's next page", {"h"}, "h", "r"},
};

TEST_F(Window, GivenAKey_WhenPressed_ThenTheMeshChangesAndItsOppositeUndoesThat) {
  for (const KeyRow& row : key_rows) {
    SCOPED_TRACE(row.name);
    Pixels before = start;
    for (const char* key : row.first)
      before = after(key, before);
    const Pixels changed = after(row.key, before);
    EXPECT_GT(difference(before, changed), 100u);
    const Pixels undone = after(row.undo, changed);
    if (std::string(row.undo) == "r")
      EXPECT_EQ(difference(start, undone), 0u);
    else
      EXPECT_EQ(difference(before, undone), 0u);
    desktop.press("r");
    start = desktop.look();
  }
}

TEST_F(Window, GivenKeysOfNoMeaning_WhenPressed_ThenNothingHappens) {
  for (const char* key : {"F1", "Insert", "comma", "ctrl+e"}) {
    desktop.press(key);
    EXPECT_EQ(start.differences(desktop.look(), 0), 0u) << key;
  }
}

TEST_F(Window, GivenEveryChangeAtOnce_WhenReset_ThenThePictureOfTheStart) {
  Pixels now = start;
  for (const char* key : {"5", "n", "s", "k", "p", "y", "v", "Tab", "Left", "plus", "space", "h"})
    now = after(key, now);
  ASSERT_GT(difference(start, now), 1000u);
  EXPECT_EQ(difference(start, after("r", now)), 0u);
}

TEST_F(Window, GivenALeftDrag_WhenDone_ThenTheMeshTurnsAboutItsPlace) {
  desktop.drag(1, 320, 280, 420, 320);
  const Pixels turned = desktop.look_for_change(start);
  EXPECT_GT(difference(start, turned), 2000u);
  EXPECT_NEAR(centre(turned).first, centre(start).first, 60);
  EXPECT_NEAR(centre(turned).second, centre(start).second, 60);
}

TEST_F(Window, GivenAMiddleDrag_WhenDone_ThenTheMeshFollowsTheMouse) {
  desktop.drag(2, 320, 240, 370, 270);
  const Pixels moved = desktop.look_for_change(start);
  EXPECT_NEAR(centre(moved).first - centre(start).first, 50, 12);
  EXPECT_NEAR(centre(moved).second - centre(start).second, 30, 12);
}

TEST_F(Window, GivenALeftDragWithShift_WhenDone_ThenItIsTheMiddleDrag) {
  desktop.drag(1, 320, 240, 370, 270, "shift");
  const Pixels moved = desktop.look_for_change(start);
  EXPECT_NEAR(centre(moved).first - centre(start).first, 50, 12);
  EXPECT_NEAR(centre(moved).second - centre(start).second, 30, 12);
}

TEST_F(Window, GivenTheWheel_WhenTurned_ThenTheMeshGrowsAndShrinksAgain) {
  desktop.drag(2, 320, 240, 320, 240);
  desktop.turn_wheel(false);
  const Pixels smaller = desktop.look_for_change(start);
  EXPECT_LT(painted(smaller), painted(start) * 0.95);
  desktop.turn_wheel(true);
  EXPECT_NEAR(double(painted(desktop.look_for_change(smaller))), double(painted(start)), 0.02 * painted(start));
}

TEST_F(Window, GivenARightDragDown_WhenDone_ThenTheMeshShrinks) {
  desktop.drag(3, 320, 280, 320, 200);
  EXPECT_LT(painted(desktop.look_for_change(start)), painted(start) * 0.8);
}

TEST_F(Window, GivenTheScreenshotKey_WhenPressedTwice_ThenTwoPicturesWithoutTexts) {
  Pixels now = after("t", start);
  after("t", now);
  const Pixels first = Pixels::read(folder + "/orbel_view-001.png");
  const Pixels second = Pixels::read(folder + "/orbel_view-002.png");
  ASSERT_EQ(first.width, width);
  ASSERT_EQ(first.height, height);
  EXPECT_EQ(first.differences(second, 0), 0u);
  EXPECT_EQ(difference(first, start), 0u);
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 100; ++x)
      ASSERT_EQ(first.at(x, y), (std::array<std::uint8_t, 3>{255, 255, 255})) << x << " " << y;
}

TEST_F(Window, GivenAnotherSize_WhenResized_ThenTheMeshIsDrawnInIt) {
  desktop.resize(400, 300);
  const Pixels small = desktop.look_for_change(start);
  ASSERT_EQ(small.width, 400);
  ASSERT_EQ(small.height, 300);
  EXPECT_GT(painted(small), 3000u);
  EXPECT_LT(painted(small), painted(start));
}

TEST(WindowEnd, GivenTheQuitKey_WhenPressed_ThenTheViewerEndsWithZero) {
  for (const char* key : {"q", "ctrl+q"}) {
    Desktop desktop({"--resolution=320,240", run_viewer::mesh("four_kinds.e")}, testing::TempDir());
    ASSERT_TRUE(desktop.has_window());
    desktop.look();
    desktop.press(key);
    EXPECT_EQ(desktop.wait_for_end(), 0) << key;
  }
}

TEST(WindowEnd, GivenAFolderThatTakesNoFile_WhenTakingAPicture_ThenTheWindowSaysSoInRed) {
  // Nobody, not even root, can make a file here.
  Desktop desktop({"--resolution=640,480", run_viewer::mesh("four_kinds.e")}, "/proc/self");
  ASSERT_TRUE(desktop.has_window());
  const Pixels before = desktop.look();
  EXPECT_EQ(before.count(TovanColor(191, 0, 0), 40), 0u);
  desktop.press("t");
  EXPECT_GT(desktop.look_for_change(before).count(TovanColor(191, 0, 0), 40), 50u);
  EXPECT_TRUE(desktop.is_running());
}

// The pixels of the legend's upper part that are not white.
std::size_t painted_at_upper_right(const Pixels& pixels) {
  std::size_t count = 0;
  for (int y = pixels.height - 300; y < pixels.height; ++y)
    for (int x = pixels.width - 270; x < pixels.width; ++x)
      count += pixels.at(x, y) != std::array<std::uint8_t, 3>{255, 255, 255};
  return count;
}

TEST(WideWindow, GivenALegendThatWouldCoverTheMesh_WhenFitted_ThenTheMeshLiesBesideIt) {
  const std::string folder = run_viewer::scratch_folder();
  {
    Desktop desktop({"--resolution=1200,700", "--sample"}, folder);
    ASSERT_TRUE(desktop.has_window());
    const Pixels with = desktop.look();
    ASSERT_GT(painted_at_upper_right(with), 2000u) << "the legend";
    desktop.press("g");
    const Pixels without = desktop.look_for_change(with);
    EXPECT_EQ(painted_at_upper_right(without), 0u);
    EXPECT_GT(painted(without), 100000u);
    desktop.press("f");
    EXPECT_GT(painted_at_upper_right(desktop.look_for_change(without)), 2000u) << "the mesh takes the whole window";
  }
  std::filesystem::remove_all(folder);
}

// Where a mesh is large and the graphics system slow, a frame for each letter would lag far behind who types.
TEST(WideWindow, GivenSlowFrames_WhenTypingFast_ThenFewAreDrawn) {
  const std::string folder = run_viewer::scratch_folder();
  {
    Desktop desktop(
        {"--resolution=1000,700", "--render-mode=translucent", "--nodes", run_viewer::mesh("wheelset_x8.vtu")}, folder);
    ASSERT_TRUE(desktop.has_window());
    desktop.look();
    // The answer comes after all frames that were asked for before.
    const auto find = [&](const std::string& ids, const std::string& found) {
      desktop.press("slash");
      desktop.type(ids);
      desktop.press("Return");
      EXPECT_EQ(desktop.next_line(), found);
    };
    const auto seconds_of = [](const auto& action) {
      const auto begin = std::chrono::steady_clock::now();
      action();
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const double frames = seconds_of([&] {
      for (int i = 0; i < 10; ++i)
        desktop.press("Tab"); // a frame each
      find("tet:1", "tet:1");
    });
    std::string ids = "tet:2";
    for (int i = 0; i < 60; ++i)
      ids += ",2";
    const double letters = seconds_of([&] { find(ids, "tet:2"); });
    EXPECT_LT(letters, 3 * frames);
  }
  std::filesystem::remove_all(folder);
}

} // namespace
