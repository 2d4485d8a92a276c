#include "Desktop.h"
#include "PlateMesh.h"
#include "RunViewer.h"

#include "platform/util/TovanColorTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

// Picking with the mouse, on a plate whose places in the window are known: see PlateMesh.h.

namespace {

const TovanColor preselect(255, 0, 0), tooltip(255, 255, 224), error(191, 0, 0), paper(255, 255, 255);
constexpr int text_height = 90; // of status lines and message, at the bottom

std::size_t highlighted(const Pixels& pixels) { return pixels.count(TovanColorTable::get_highlight_color()); }

// What is painted where no text is.
std::size_t painted(const Pixels& pixels) {
  std::size_t count = 0;
  for (int y = text_height; y < pixels.height; ++y)
    for (int x = 0; x < pixels.width; ++x)
      count += pixels.at(x, y) != std::array<std::uint8_t, 3>{255, 255, 255};
  return count;
}

bool shows_tooltip(const Pixels& pixels) { return pixels.count(tooltip) > 500; }

std::size_t outlined(const Pixels& pixels) { return pixels.count(TovanColor(217, 26, 26), 30); }

class PickWindow : public testing::Test {
protected:
  explicit PickWindow(const std::vector<std::string>& more = {})
      : folder(run_viewer::scratch_folder()), desktop(arguments(folder, more), folder) {}
  ~PickWindow() override { std::filesystem::remove_all(folder); }

  void SetUp() override {
    ASSERT_TRUE(desktop.has_window());
    start = desktop.look();
    ASSERT_GT(painted(start), 10000u);
  }
  void TearDown() override {
    EXPECT_TRUE(desktop.is_running());
    EXPECT_TRUE(desktop.is_silent()) << desktop.next_line();
  }

  static std::vector<std::string> arguments(const std::string& folder, const std::vector<std::string>& more) {
    std::vector<std::string> list = {"--resolution=640,480", "--parallel", "--view=+z", plate::write(folder)};
    list.insert(list.end(), more.begin(), more.end());
    return list;
  }

  // Clicks at a place of the plate, and gives what the viewer tells.
  std::string click(double x, double y, const std::string& modifier = "") {
    desktop.click(plate::column(x), plate::row(y), modifier);
    return desktop.next_line();
  }
  void drag(double x0, double y0, double x1, double y1, const std::string& modifier = "") {
    desktop.drag(1, plate::column(x0), plate::row(y0), plate::column(x1), plate::row(y1), modifier);
  }
  // What is told next is what is found by id: all before has been answered by then, and told nothing.
  void expect_nothing_was_told() {
    desktop.press("slash");
    desktop.type("hex:26");
    desktop.press("Return");
    EXPECT_EQ(desktop.next_line(), "hex:26");
  }
  Pixels after(const std::string& key, const Pixels& before) {
    desktop.press(key);
    return desktop.look_for_change(before);
  }

  std::string folder;
  Desktop desktop;
  Pixels start;
};

TEST_F(PickWindow, GivenAMouse_WhenItRestsOnTheMeshAndLeaves_ThenPreSelectionAndTooltipComeAndGo) {
  EXPECT_EQ(start.count(preselect), 0u);
  EXPECT_EQ(start.count(tooltip), 0u);
  desktop.move_to(plate::column(1.5), plate::row(3.5));
  const Pixels on = desktop.look_until(shows_tooltip);
  EXPECT_NEAR(double(on.count(preselect)), 4 * plate::unit * 3, 300);
  EXPECT_GT(on.count(tooltip), 2000u);
  desktop.move_to(plate::column(2.5), plate::row(3.5));
  const Pixels next = desktop.look_for_change(on);
  EXPECT_NEAR(double(next.count(preselect)), 4 * plate::unit * 3, 300) << "one only";
  desktop.move_to(5, 475);
  const Pixels left = desktop.look_until([](const Pixels& now) { return !shows_tooltip(now); });
  EXPECT_EQ(start.differences(left), 0u);

  const Pixels off = after("j", start);
  desktop.move_to(plate::column(1.5), plate::row(3.5));
  EXPECT_EQ(off.differences(desktop.look(), 0), 0u) << "no hover";
  expect_nothing_was_told();
}

TEST_F(PickWindow, GivenTheBordersOfTheWindow_WhenHovering_ThenTheWholeTooltipIsInside) {
  desktop.resize(240, 180);
  const Pixels small = desktop.look_for_change(start);
  std::size_t least = 100000, most = 0;
  Pixels before = small;
  for (const auto& [x, y] : {std::pair(60, 60), std::pair(180, 60), std::pair(60, 165), std::pair(180, 165)}) {
    desktop.move_to(x, y);
    before = desktop.look_for_change(before);
    least = std::min(least, before.count(tooltip));
    most = std::max(most, before.count(tooltip));
  }
  EXPECT_GT(least, 1000u);
  EXPECT_LT(double(most - least), 0.25 * double(most));
}

TEST_F(PickWindow, GivenClicks_WhenWithCtrlAndShift_ThenAddedAndRemoved) {
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  const Pixels one = desktop.look_until(highlighted);
  EXPECT_NEAR(double(highlighted(one)), 4 * plate::unit * 4, 300);
  EXPECT_EQ(click(4.5, 2.5, "ctrl"), "hex:38,40");
  const auto is_two = [&](const Pixels& now) { return double(highlighted(now)) > 1.8 * double(highlighted(one)); };
  EXPECT_TRUE(is_two(desktop.look_until(is_two)));
  EXPECT_EQ(click(3.5, 2.5, "ctrl"), "hex:38-40");
  EXPECT_EQ(click(2.5, 2.5, "shift"), "hex:39,40");
  EXPECT_EQ(click(0.5, 0.5), "hex:26");
  EXPECT_EQ(click(-0.3, 0.5), "nothing");
  EXPECT_EQ(highlighted(desktop.look_until([](const Pixels& now) { return highlighted(now) == 0; })), 0u);
}

TEST_F(PickWindow, GivenAPlace_WhenClickedAgainAndAgain_ThenItWalksThroughWhatLiesBelow) {
  EXPECT_EQ(click(1.5, 1.5), "hex:32");
  EXPECT_EQ(click(1.5, 1.5), "hex:7");
  EXPECT_EQ(click(1.5, 1.5), "hex:32") << "round again";
  EXPECT_EQ(click(3.5, 1.5), "hex:34") << "elsewhere it begins anew";
  EXPECT_EQ(click(1.5, 1.5), "hex:32");
  desktop.press("m");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_EQ(click(1.5, 1.5), "hex:7") << "of what is hidden nothing is picked";
}

TEST_F(PickWindow, GivenADrag_WhenDone_ThenNothingIsPicked) {
  desktop.drag(2, 300, 250, 340, 260);
  desktop.look_for_change(start);
  desktop.drag(1, 300, 250, 360, 280);
  expect_nothing_was_told();
}

TEST_F(PickWindow, GivenADoubleClick_WhenDone_ThenThePlaceIsTheCentre) {
  desktop.double_click(plate::column(0.5), plate::row(3.5));
  EXPECT_EQ(desktop.next_line(), "hex:41");
  desktop.look_for_change(start);
  desktop.press("Escape");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_EQ(click(2.5, 2.5), "hex:41");
}

TEST_F(PickWindow, GivenABox_WhenDragged_ThenVisibleTouchedOnesOrAsTheKeysSay) {
  desktop.press("b");
  drag(1.5, 2.3, 3.5, 2.7);
  EXPECT_EQ(desktop.next_line(), "hex:37-39");
  desktop.press("d");
  desktop.press("b");
  drag(3.5, 2.7, 1.5, 2.3);
  EXPECT_EQ(desktop.next_line(), "hex:12-14,37-39");
  desktop.press("w");
  desktop.press("b");
  drag(1.5, 1.9, 3.5, 3.1);
  EXPECT_EQ(desktop.next_line(), "hex:13,38");
}

TEST_F(PickWindow, GivenARegion_WhenWithCtrlAndShift_ThenAddedAndRemoved) {
  EXPECT_EQ(click(0.5, 0.5), "hex:26");
  desktop.press("b");
  drag(1.5, 2.3, 3.5, 2.7, "ctrl");
  EXPECT_EQ(desktop.next_line(), "hex:26,37-39");
  desktop.press("c");
  drag(2.5, 2.5, 2.6, 2.6, "shift");
  EXPECT_EQ(desktop.next_line(), "hex:26,37,39");
}

TEST_F(PickWindow, GivenCircleAndPolygon_WhenDrawn_ThenWhatLiesInThem) {
  desktop.press("c");
  drag(2.5, 2.5, 3.2, 2.5);
  EXPECT_EQ(desktop.next_line(), "hex:33,37-39,43");
  desktop.press("o");
  for (const auto& [x, y] : {std::pair(1.2, 1.2), std::pair(1.8, 1.2), std::pair(1.2, 2.5)})
    desktop.click(plate::column(x), plate::row(y));
  // Sides of 53, 127 and 116 pixels, 2 wide.
  const Pixels open = desktop.look_until([](const Pixels& now) { return outlined(now) > 450; });
  EXPECT_GT(outlined(open), 450u) << "its outline shows";
  EXPECT_TRUE(desktop.is_silent()) << "it is not closed yet";
  desktop.press("Return");
  EXPECT_EQ(desktop.next_line(), "hex:32,37");
  desktop.press("o");
  for (const auto& [x, y] : {std::pair(3.2, 3.2), std::pair(3.8, 3.2), std::pair(3.8, 3.8), std::pair(3.2, 3.2)})
    desktop.click(plate::column(x), plate::row(y));
  EXPECT_EQ(desktop.next_line(), "hex:44") << "the first corner closes it";
}

TEST_F(PickWindow, GivenARegion_WhenGivenUp_ThenNothingIsPickedAndTheMouseTurnsAgain) {
  desktop.press("b");
  desktop.press_button(plate::column(1.5), plate::row(1.5));
  desktop.move_to(plate::column(3.5), plate::row(3.5));
  const Pixels drawn = desktop.look_until([](const Pixels& now) { return outlined(now) > 1000; });
  EXPECT_GT(outlined(drawn), 1000u);
  desktop.press("Escape");
  desktop.release_button();
  const Pixels ended = desktop.look_until([](const Pixels& now) { return outlined(now) == 0; });
  EXPECT_EQ(outlined(ended), 0u);
  drag(2.5, 2.5, 3.5, 3.5);
  EXPECT_GT(ended.differences(desktop.look_for_change(ended)), 2000u);
  expect_nothing_was_told();
}

TEST_F(PickWindow, GivenTextsOverTheMesh_WhenARegionIsPicked_ThenTheSameAsWithout) {
  Pixels now = start;
  for (const char* over : {"g", "l", "h", "n"}) {
    now = after(over, now); // legend, labels, help, nodes
    desktop.press("b");
    drag(1.6, 1.4, 3.4, 3.6);
    EXPECT_EQ(desktop.next_line(), "hex:32-34,37-39,42-44") << over;
    desktop.press("Escape"); // the help's end
    desktop.press("Escape");
    EXPECT_EQ(desktop.next_line(), "nothing") << over;
    now = desktop.look();
  }
}

TEST_F(PickWindow, GivenADragBeforeTheMouseRested_WhenItRestsLater_ThenItHoversStill) {
  desktop.drag_in_haste(20, 470, 30, 460);
  const Pixels turned = desktop.look_for_change(start);
  ASSERT_GT(start.differences(turned), 500u);
  desktop.press("r");
  desktop.look();
  desktop.move_to(plate::column(2.5), plate::row(3.5));
  EXPECT_TRUE(shows_tooltip(desktop.look_until(shows_tooltip)));
}

TEST_F(PickWindow, GivenTheKeysOfKinds_WhenPressed_ThenOnlyTheseArePicked) {
  const Pixels nodes = after("6", start);
  EXPECT_EQ(click(2, 3), "node:93");
  EXPECT_NE(highlighted(nodes), highlighted(desktop.look_until(highlighted)));
  desktop.press("7");
  EXPECT_THAT(click(2.5, 3), testing::MatchesRegex("edge:[0-9]+"));
  desktop.press("8");
  EXPECT_EQ(click(2.5, 3.5), "nothing") << "there are no faces";
  desktop.press("9");
  EXPECT_EQ(click(2, 3.5), "hex:42");
  desktop.press("ctrl+6");
  EXPECT_EQ(click(2, 3), "node:93") << "besides the others";
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  desktop.press("0");
  EXPECT_EQ(click(3, 3), "node:94");
}

TEST_F(PickWindow, GivenPickedOwners_WhenHiddenShownAloneAndUndone_ThenThePictureFollows) {
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  desktop.press("shift+m");
  desktop.look();
  desktop.press("Escape");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  desktop.press("m");
  EXPECT_EQ(desktop.next_line(), "nothing") << "what is hidden is picked no longer";
  const auto is_empty = [](const Pixels& now) { return painted(now) == 0; };
  const auto is_as_before = [&](const Pixels& now) { return painted(now) == painted(start); };
  EXPECT_TRUE(is_empty(desktop.look_until(is_empty)));
  desktop.press("BackSpace");
  EXPECT_TRUE(is_as_before(desktop.look_until(is_as_before)));
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  desktop.press("m");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_TRUE(is_empty(desktop.look_until(is_empty)));
  desktop.press("u");
  EXPECT_TRUE(is_as_before(desktop.look_until(is_as_before)));
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
}

TEST_F(PickWindow, GivenTheLegend_WhenClicked_ThenItsOwnerGoesAndComes) {
  desktop.resize(900, 600);
  // The plate has 555 x 555 pixels now, the lowest under the texts.
  const auto is_large = [](const Pixels& now) { return now.width == 900 && painted(now) > 200000; };
  const Pixels wide = desktop.look_until(is_large);
  ASSERT_TRUE(is_large(wide));
  const Pixels with = after("g", wide);
  EXPECT_GT(wide.differences(with), 500u);
  // Under the heading; the second owner is the upper layer.
  const int x = 900 - 60, heading = 600 - 17, line = 18;
  desktop.click(x, heading - 2 * line);
  const Pixels hidden = desktop.look_for_change(with);
  EXPECT_GT(with.differences(hidden), 5000u) << "the lower layer has another colour";
  desktop.click(x, heading - 2 * line);
  const Pixels shown = desktop.look_for_change(hidden);
  desktop.click(x, heading - line, "shift");
  const Pixels alone = desktop.look_for_change(shown);
  EXPECT_LT(alone.differences(hidden), 3000u) << "but for the message";
  desktop.press("g");
  desktop.press("ctrl+z");
  desktop.press("ctrl+z");
  desktop.press("ctrl+z");
  const auto is_as_before = [&](const Pixels& now) { return painted(now) == painted(wide); };
  EXPECT_TRUE(is_as_before(desktop.look_until(is_as_before)));
}

TEST_F(PickWindow, GivenIds_WhenTyped_ThenFoundAndInTheMiddle) {
  desktop.press("slash");
  desktop.type("e12x");
  desktop.press("BackSpace");
  desktop.press("Escape");
  EXPECT_EQ(painted(desktop.look_for_change(start)), painted(start)) << "letters that are typed do nothing else";
  desktop.press("slash");
  desktop.type("hex:26,x");
  desktop.press("BackSpace");
  desktop.type("27-30");
  desktop.press("Return");
  EXPECT_EQ(desktop.next_line(), "hex:26-30");
  desktop.press("slash");
  desktop.type("hex:26,28,31,33,36,38,41,43");
  desktop.press("Return");
  EXPECT_EQ(desktop.next_line(), "hex:26,28,31,33,36,38,41,43");
  desktop.press("slash");
  desktop.type("50");
  desktop.press("Return");
  EXPECT_EQ(desktop.next_line(), "hex:50");
  desktop.press("Escape");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_EQ(click(2.5, 2.5), "hex:50");
  const Pixels before = desktop.look();
  EXPECT_EQ(before.count(error, 40), 0u);
  desktop.press("slash");
  desktop.type("51");
  desktop.press("Return");
  EXPECT_GT(desktop.look_for_change(before).count(error, 40), 50u);
}

TEST_F(PickWindow, GivenPickedOnes_WhenWritten_ThenAFileOfRecords) {
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  EXPECT_EQ(click(3.5, 2.5, "ctrl"), "hex:38,39");
  const Pixels before = desktop.look();
  after("ctrl+s", before);
  const auto records =
      nlohmann::json::parse(run_viewer::contents(folder + "/orbel_view-picked-001.json"), nullptr, false);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0]["id"], 38);
  EXPECT_EQ(records[1]["id"], 39);
  EXPECT_EQ(records[1]["owner"], "MaterialIds 2");
}

TEST_F(PickWindow, GivenPickedOnes_WhenColoursAndModesChange_ThenTheyStayHighlighted) {
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  Pixels now = desktop.look_until(highlighted);
  const std::size_t before = highlighted(now);
  for (const char* key : {"k", "k", "5", "4", "s"}) {
    now = after(key, now);
    EXPECT_GT(highlighted(now), before / 2) << key;
  }
}

TEST_F(PickWindow, GivenLabels_WhenTurned_ThenOnlyOnWhatIsShown) {
  const Pixels local = after("l", start);
  EXPECT_GT(start.differences(local), 1000u);
  EXPECT_EQ(click(2.5, 2.5), "hex:38");
  desktop.press("m");
  EXPECT_EQ(desktop.next_line(), "nothing");
  EXPECT_EQ(click(2.5, 2.5), "hex:13");
  desktop.press("m");
  EXPECT_EQ(desktop.next_line(), "nothing");
  const Pixels none = desktop.look_until([](const Pixels& now) { return painted(now) == 0; });
  EXPECT_EQ(painted(none), 0u) << "no labels without a mesh";
  desktop.press("u");
  const Pixels shown = desktop.look_until([&](const Pixels& now) { return painted(now) == painted(local); });
  EXPECT_EQ(painted(shown), painted(local));
  std::size_t labels = 0;
  for (int y = text_height; y < start.height; ++y)
    for (int x = 0; x < start.width; ++x)
      labels += shown.at(x, y) != start.at(x, y);
  EXPECT_GT(labels, 500u) << "they came back";
  const Pixels off = after("shift+l", shown);
  EXPECT_EQ(painted(off), painted(start));
}

class SelectedAtStart : public PickWindow {
protected:
  SelectedAtStart() : PickWindow({"--select=hex:26-28", "--filter=Node"}) {}
};

TEST_F(SelectedAtStart, GivenASelection_WhenChangedAndReset_ThenAsAtTheStart) {
  EXPECT_EQ(desktop.next_line(), "hex:26-28");
  EXPECT_GT(highlighted(start), 1000u);
  EXPECT_EQ(click(2, 3), "node:93");
  desktop.press("r");
  EXPECT_EQ(desktop.next_line(), "hex:26-28");
  const auto is_as_before = [&](const Pixels& now) { return highlighted(now) == highlighted(start); };
  EXPECT_TRUE(is_as_before(desktop.look_until(is_as_before)));
}

} // namespace
