#include "Pixels.h"
#include "PlateMesh.h"
#include "RunViewer.h"

#include "platform/util/TovanColorTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>

// Picks without a window.

namespace {

using namespace run_viewer;
using nlohmann::json;
using testing::ElementsAre;

std::string pixel(double x, double y) { return std::to_string(plate::column(x)) + "," + std::to_string(plate::row(y)); }

class Picks : public testing::Test {
protected:
  Picks() : folder(scratch_folder()), file(plate::write(folder)) {}
  ~Picks() override { std::filesystem::remove_all(folder); }

  Outcome run(std::vector<std::string> options) const {
    for (const char* option : {"--resolution=640,480", "--parallel", "--view=+z"})
      options.emplace_back(option);
    options.push_back(file);
    return run_orbel_view(options);
  }
  json records(const std::vector<std::string>& options) const {
    const Outcome outcome = run(options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const json list = json::parse(outcome.out, nullptr, false);
    EXPECT_TRUE(list.is_array()) << outcome.out;
    return list;
  }
  std::vector<int> ids(const std::vector<std::string>& options) const {
    std::vector<int> list;
    for (const json& record : records(options))
      list.push_back(record["id"]);
    std::sort(list.begin(), list.end());
    return list;
  }
  Pixels picture(std::vector<std::string> options) const {
    const std::string path = folder + "/picture.png";
    options.push_back("--output=" + path);
    EXPECT_EQ(run(options).status, 0);
    return Pixels::read(path);
  }

  std::string folder, file;
};

std::size_t highlighted(const Pixels& pixels) { return pixels.count(TovanColorTable::get_highlight_color()); }

TEST_F(Picks, GivenAPoint_WhenPicked_ThenRecordsOfAllThatLiesThereNearestFirst) {
  const json list = records({"--pick=" + pixel(1.5, 3.5)});
  ASSERT_EQ(list.size(), 2u);
  const json& winner = list[0];
  EXPECT_EQ(winner["kind"], "Element");
  EXPECT_EQ(winner["type"], "Hex");
  EXPECT_EQ(winner["id"], 1 + 1 + 5 * 3 + 25);
  EXPECT_EQ(winner["global_id"], 42);
  EXPECT_EQ(winner["owner"], "MaterialIds 2");
  EXPECT_EQ(winner["exact"], true);
  ASSERT_EQ(winner["point"].size(), 3u);
  EXPECT_NEAR(winner["point"][0], 1.5, 0.02);
  EXPECT_NEAR(winner["point"][1], 3.5, 0.02);
  EXPECT_EQ(winner["point"][2], 2.0);
  EXPECT_THAT(winner["handle"].get<std::string>(), testing::MatchesRegex("0x[0-9a-f]{16}"));
  EXPECT_EQ(list[1]["id"], 17);
  EXPECT_EQ(list[1]["owner"], "MaterialIds 1");
  EXPECT_LT(winner["distance"], list[1]["distance"]);
  EXPECT_NE(winner["handle"], list[1]["handle"]);
}

TEST_F(Picks, GivenAPointBesideTheMesh_WhenPicked_ThenAnEmptyList) {
  const Outcome outcome = run({"--pick=3,3"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "[]\n");
}

TEST_F(Picks, GivenTheSamePick_WhenRunAgain_ThenTheSameBytes) {
  const std::vector<std::vector<std::string>> picks = {{"--pick=" + pixel(2, 2), "--filter=Node,Edge,Hex"},
                                                       {"--pick-box=0,0,640,480", "--through", "--filter=Edge,Node"}};
  for (const auto& options : picks) {
    const Outcome first = run(options), second = run(options);
    ASSERT_GT(first.out.size(), 500u);
    EXPECT_EQ(first.out, second.out);
    auto with_picture = options;
    with_picture.push_back("--output=" + folder + "/a.png");
    EXPECT_EQ(run(with_picture).out, first.out);
  }
}

TEST_F(Picks, GivenFilters_WhenPicked_ThenOnlyWhatTheyAdmit) {
  const json nodes = records({"--pick=" + pixel(2, 3), "--filter=Node"});
  ASSERT_EQ(nodes.size(), 3u); // one above the other
  EXPECT_EQ(nodes[0]["kind"], "Node");
  EXPECT_EQ(nodes[0]["type"], "Node");
  EXPECT_EQ(nodes[0]["id"], 1 + 2 + 6 * 3 + 36 * 2);
  EXPECT_TRUE(nodes[0]["global_id"].is_null());

  const json edges = records({"--pick=" + pixel(2.5, 3), "--filter=Edge"});
  ASSERT_EQ(edges.size(), 3u);
  EXPECT_EQ(edges[0]["type"], "Edge");
  EXPECT_TRUE(edges[0]["owner"].is_null());

  EXPECT_TRUE(records({"--pick=" + pixel(2.5, 3.5), "--filter=Face,Tri,Tet"}).empty());
  EXPECT_EQ(records({"--pick=" + pixel(2.5, 3.5), "--filter=ThreeDimElement"}).size(), 2u);
}

TEST_F(Picks, GivenNoFilter_WhenTheMeshHasEdgeElements_ThenTheyArePickedToo) {
  const Outcome bridge = run_orbel_view({"--pick-box=0,0,1280,720", "--through", mesh("bridge_beams.vtk")});
  EXPECT_THAT(bridge.out, testing::HasSubstr("\"type\":\"Edge\""));
  for (const json& record : records({"--pick-box=0,0,640,480", "--through"}))
    EXPECT_EQ(record["type"], "Hex");
}

// A box from the middle of hexahedron (1, 2) to that of (3, 2), and its like.
TEST_F(Picks, GivenRegions_WhenPicked_ThenVisibleOnesUnlessThroughAndTouchedOnesUnlessWhole) {
  const std::string box = "--pick-box=" + pixel(1.5, 2.3) + "," + pixel(3.5, 2.7);
  EXPECT_THAT(ids({box}), ElementsAre(37, 38, 39));
  EXPECT_THAT(ids({box, "--through"}), ElementsAre(12, 13, 14, 37, 38, 39));
  EXPECT_THAT(ids({box, "--whole"}), ElementsAre());
  const std::string higher = "--pick-box=" + pixel(1.5, 1.9) + "," + pixel(3.5, 3.1);
  EXPECT_THAT(ids({higher, "--whole"}), ElementsAre(38));
  EXPECT_THAT(ids({higher, "--whole", "--through"}), ElementsAre(13, 38));
  EXPECT_THAT(ids({"--pick-circle=" + pixel(2.5, 2.5) + ",20"}), ElementsAre(38));
  EXPECT_THAT(ids({"--pick-circle=" + pixel(2.5, 2.5) + ",60"}), ElementsAre(33, 37, 38, 39, 43));
  const std::string corner = "--pick-polygon=" + pixel(1.2, 1.2) + "," + pixel(1.8, 1.2) + "," + pixel(1.2, 2.5);
  EXPECT_THAT(ids({corner}), ElementsAre(32, 37));
}

TEST_F(Picks, GivenARegion_WhenPicked_ThenItsRecordsHaveNoPoint) {
  const json list = records({"--pick-circle=" + pixel(2.5, 2.5) + ",20"});
  ASSERT_EQ(list.size(), 1u);
  EXPECT_TRUE(list[0]["point"].is_null());
  EXPECT_EQ(list[0]["distance"], 0);
}

TEST_F(Picks, GivenAHiddenOwner_WhenPicked_ThenNothingOfIt) {
  EXPECT_THAT(ids({"--hide=MaterialIds 2", "--pick=" + pixel(2.5, 2.5)}), ElementsAre(13));
  EXPECT_THAT(ids({"--hide=MaterialIds 2", "--through", "--pick-circle=" + pixel(2.5, 2.5) + ",20"}), ElementsAre(13));
}

TEST_F(Picks, GivenAPlaneThatTakesTheUpperLayer_WhenPicked_ThenTheLowerOne) {
  EXPECT_THAT(ids({"--clip=0,0,-1,-0.5", "--pick=" + pixel(2.5, 2.5)}), ElementsAre(13));
}

TEST_F(Picks, GivenAPictureToo_WhenPicked_ThenItShowsWhatWon) {
  EXPECT_EQ(highlighted(picture({})), 0u);
  const Pixels picked = picture({"--pick=" + pixel(2.5, 2.5)});
  // Four sides of 89 pixels, each 4 wide.
  EXPECT_NEAR(double(highlighted(picked)), 4 * plate::unit * 4, 250);
}

TEST_F(Picks, GivenEdgesOfTheMesh_WhenPicksLieOnThem_ThenTheyDoNotShowThrough) {
  std::vector<std::string> options = {"--resolution=480,320", "--output=" + folder + "/a.png", "--select=hex:1000-1100",
                                      mesh("ring_segments.exo")};
  EXPECT_EQ(run_orbel_view(options).status, 0);
  const auto with = double(highlighted(Pixels::read(folder + "/a.png")));
  options.emplace_back("--no-edges");
  EXPECT_EQ(run_orbel_view(options).status, 0);
  const auto without = double(highlighted(Pixels::read(folder + "/a.png")));
  EXPECT_GT(without, 5000);
  EXPECT_NEAR(with, without, 0.01 * without);
}

TEST_F(Picks, GivenInfoToo_WhenPicked_ThenBothAreWritten) {
  const Outcome outcome = run({"--info", "--pick=3,3"});
  EXPECT_THAT(outcome.out, testing::StartsWith("{\n  \"file\""));
  EXPECT_THAT(outcome.out, testing::EndsWith("}\n[]\n"));
}

TEST_F(Picks, GivenIds_WhenSelected_ThenThePictureShowsThem) {
  const std::size_t one = highlighted(picture({"--select=hex:38"}));
  EXPECT_NEAR(double(one), 4 * plate::unit * 4, 250);
  EXPECT_GT(highlighted(picture({"--select=hex:38", "--select=elements@global:40,26-27"})), 2 * one);
  EXPECT_GT(highlighted(picture({"--select=node:87"})), 40u);
  EXPECT_EQ(highlighted(picture({"--select=hex:13"})), 0u) << "it lies behind";
}

TEST_F(Picks, GivenIdsThatNothingHas_WhenSelected_ThenOneLineSaysWhich) {
  const std::pair<const char*, const char*> rows[] = {{"hex:1,51", "no hex has the id 51"},
                                                      {"hex:50-52,60-70", "no hex has the id 60-70"},
                                                      {"tet:1", "no tet has the id 1"},
                                                      {"node:109", "no node has the id 109"},
                                                      {"element@global:51", "no element has the global id 51"}};
  for (const auto& [selection, reason] : rows) {
    for (const std::string& how : {std::string("--output=" + folder + "/none.png"), std::string("--pick=3,3")}) {
      const Outcome outcome = run({"--select=" + std::string(selection), how});
      EXPECT_EQ(outcome.status, 1) << selection;
      EXPECT_EQ(outcome.out, "") << selection;
      EXPECT_EQ(outcome.err, "orbel_view: " + file + ": " + reason + "\n");
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder + "/none.png"));
  EXPECT_EQ(run({"--select=hex:51"}).status, 1) << "a window";
}

// A run that takes more than a minute is ended, and then its status is none of its own.
TEST_F(Picks, GivenALargeMesh_WhenAllOfItIsPicked_ThenInGoodTime) {
  const Outcome all = run_orbel_view({"--pick-box=0,0,1280,720", "--through", mesh("wheelset_x8.vtu")});
  EXPECT_EQ(all.status, 0);
  EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 175472 + 2);
}

TEST_F(Picks, GivenNoDisplayAndNoServer_WhenPicking_ThenOneLineSaysHow) {
  const Outcome outcome = run_orbel_view({"--pick=3,3", file}, {{"DISPLAY", ""}, {"PATH", "/nowhere"}});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "orbel_view: cannot pick: no display with OpenGL, and Xvfb could not be started (install xvfb, "
            "or set DISPLAY)\n");
}

TEST_F(Picks, GivenNoDisplay_WhenPicking_ThenAVirtualOneGivesTheSame) {
  const std::string pick = "--pick=" + pixel(2.5, 2.5);
  const Outcome without =
      run_orbel_view({"--resolution=640,480", "--parallel", "--view=+z", pick, file}, {{"DISPLAY", ""}});
  EXPECT_EQ(without.status, 0) << without.err;
  EXPECT_EQ(without.out, run({pick}).out);
}

TEST_F(Picks, GivenLabels_WhenDrawn_ThenOnVisibleOwnersOnly) {
  const Pixels bare = picture({}), nodes = picture({"--labels=nodes:local"}),
               hexes = picture({"--labels=hexes:global"});
  EXPECT_GT(bare.differences(nodes), 500u);
  EXPECT_GT(bare.differences(hexes), 500u);
  EXPECT_GT(nodes.differences(hexes), 500u);
  EXPECT_EQ(bare.differences(picture({"--labels=nodes:element,tets:local"}), 0), 0u) << "there are none";
  const std::vector<std::string> nothing = {"--hide=MaterialIds 1", "--hide=MaterialIds 2", "--labels=nodes:local"};
  EXPECT_EQ(picture(nothing).count(TovanColor(255, 255, 255), 0), std::size_t(plate::width) * plate::height);
}

} // namespace
