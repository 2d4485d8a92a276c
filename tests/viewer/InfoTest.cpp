#include "RunViewer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using namespace run_viewer;
using nlohmann::json;

const Environment no_display = {{"DISPLAY", ""}, {"PATH", "/nowhere"}};

json info(std::vector<std::string> arguments) {
  arguments.push_back("--info");
  const Outcome run = run_orbel_view(arguments, no_display);
  EXPECT_EQ(run.status, 0) << run.err;
  return json::parse(run.out, nullptr, false);
}

json kinds(const std::map<std::string, int>& given) {
  json counts;
  for (const char* kind : {"OneNode", "Edge", "Tri", "Quad", "Tet", "Hex", "Wedge", "Pyramid", "Superelement"})
    counts[kind] = given.count(kind) ? given.at(kind) : 0;
  return counts;
}

// Figures of the meshes, found with other tools. `skin`: what is drawn with everything under one owner.
struct MeshRow {
  const char* file;
  int nodes;
  std::map<std::string, int> elements;
  std::array<double, 6> bounds;
  json skin;
};

const MeshRow mesh_rows[] = {
    {"notch_quadratic.vtu",
     12717,
     {{"Hex", 2188}, {"Wedge", 4}},
     {0, 0.4, 0, 0.1, 0, 0.01},
     {{"VTK_QUADRATIC_TRIANGLE", 4}, {"VTK_QUADRATIC_QUAD", 2520}}},
    {"cylinder_quadratic_tets.vtk",
     2814,
     {{"Tet", 1522}},
     {-0.01, 0.01, -0.01, 0.01, 0, 0.1},
     {{"VTK_QUADRATIC_TRIANGLE", 726}}},
    {"bridge_beams.vtk",
     881,
     {{"Edge", 25}, {"Hex", 576}},
     {0, 12, 0, 3, -3, 0},
     {{"VTK_POLY_LINE", 25}, {"VTK_QUAD", 528}}},
    {"wheelset_x8.vtu", 36165, {{"Tet", 175472}}, {-1.09, 1.09, -0.46, 0.46, -0.46, 0.46}, {{"VTK_TRIANGLE", 26544}}},
    {"ring_segments.exo",
     1608,
     {{"Hex", 1110}},
     {-0.321394, 0.17101, 0.229813, 0.499961, -0.05, 0.05},
     {{"VTK_QUAD", 884}}},
    {"four_kinds.e",
     13,
     {{"Tet", 1}, {"Hex", 1}, {"Wedge", 1}, {"Pyramid", 1}},
     {0, 8, 0, 3, 0, 5},
     // Its side sets cover all 6 + 8 faces of the skin and lie between the solids, too: shells stand for what they
     // cover.
     {{"VTK_TRIANGLE", 7}, {"VTK_QUAD", 10}}},
    {"pipe_bend.cgns",
     1259,
     {{"Tet", 154}, {"Hex", 770}, {"Wedge", 31}, {"Pyramid", 333}},
     {0, 2, 0, 2, 0, 1},
     {{"VTK_TRIANGLE", 6}, {"VTK_QUAD", 614}}},
};

TEST(Info, GivenRealFiles_WhenDescribedAsOneOwner_ThenNodesElementsBoundsAndSkin) {
  for (const MeshRow& row : mesh_rows) {
    SCOPED_TRACE(row.file);
    const json described = info({"--group-by=none", mesh(row.file)});
    ASSERT_TRUE(described.is_object());
    EXPECT_EQ(described["file"], mesh(row.file));
    EXPECT_EQ(described["nodes"], row.nodes);
    EXPECT_EQ(described["elements"], kinds(row.elements));
    ASSERT_EQ(described["bounds"].size(), 6u);
    for (int i = 0; i < 6; ++i)
      EXPECT_NEAR(described["bounds"][i].get<double>(), row.bounds[i], 1e-5) << i;
    EXPECT_EQ(described["drawn"], row.skin);
    ASSERT_EQ(described["owners"].size(), 1u);
    EXPECT_EQ(described["owners"][0]["drawn"], row.skin);
    EXPECT_EQ(described["owners"][0]["visible"], true);
    EXPECT_EQ(described["left_out"], json::array());
  }
}

TEST(Info, GivenKeys_WhenDescribed_ThenExactlyThoseInOrder) {
  const Outcome run = run_orbel_view({"--info", mesh("four_kinds.e")}, no_display);
  const auto described = nlohmann::ordered_json::parse(run.out);
  std::vector<std::string> keys, owner_keys;
  for (const auto& item : described.items())
    keys.push_back(item.key());
  for (const auto& item : described["owners"][0].items())
    owner_keys.push_back(item.key());
  EXPECT_THAT(keys,
              testing::ElementsAre("file", "nodes", "elements", "set_faces", "bounds", "owners", "drawn", "left_out"));
  EXPECT_THAT(owner_keys, testing::ElementsAre("name", "dimension", "visible", "nodes", "elements", "drawn"));
  EXPECT_EQ(run.err, "");
}

std::vector<std::string> names(const json& described, bool visible) {
  std::vector<std::string> found;
  for (const json& owner : described["owners"])
    if (owner["visible"] == visible) found.push_back(owner["name"]);
  return found;
}

TEST(Info, GivenBlocksAndSideSets_WhenDescribed_ThenBlocksShowAndSideSetsAreHidden) {
  const json described = info({mesh("four_kinds.e")});
  EXPECT_THAT(names(described, true), testing::ElementsAre("block 1", "block 10", "block 100", "block 1000"));
  ASSERT_EQ(names(described, false).size(), 5u);
  int solids = 0, faces = 0;
  json drawn = json::object();
  for (const json& owner : described["owners"]) {
    const bool is_block = owner["visible"];
    EXPECT_EQ(owner["dimension"], is_block ? 3 : 2) << owner["name"];
    for (const auto& [name, count] : owner["drawn"].items())
      drawn[name] = drawn.value(name, 0) + count.get<int>();
    for (const char* kind : {"Tet", "Hex", "Wedge", "Pyramid"})
      solids += owner["elements"][kind].get<int>();
    for (const char* kind : {"Tri", "Quad"})
      faces += owner["elements"][kind].get<int>();
    if (!is_block) {
      EXPECT_EQ(owner["drawn"], json::object());
    }
  }
  EXPECT_EQ(solids, 4);
  EXPECT_GT(faces, 0);
  EXPECT_EQ(faces, described["set_faces"]["Tri"].get<int>() + described["set_faces"]["Quad"].get<int>());
  // Each block has a skin of its own: 4 + 2 + 4 triangles, 6 + 3 + 1 quadrilaterals.
  EXPECT_EQ(drawn, json({{"VTK_TRIANGLE", 10}, {"VTK_QUAD", 10}}));
  EXPECT_EQ(described["drawn"], drawn);
}

TEST(Info, GivenOwnersHiddenAndShown_WhenDescribed_ThenVisibleSaysSo) {
  const json plain = info({mesh("four_kinds.e")});
  const auto blocks = names(plain, true), sets = names(plain, false);
  ASSERT_FALSE(blocks.empty() || sets.empty());

  EXPECT_THAT(names(info({"--only=" + blocks[1], mesh("four_kinds.e")}), true), testing::ElementsAre(blocks[1]));
  EXPECT_THAT(names(info({"--show=" + sets[0], mesh("four_kinds.e")}), true), testing::Contains(sets[0]));
  EXPECT_THAT(names(info({"--hide=" + blocks[0], "--hide=" + blocks[2], mesh("four_kinds.e")}), true),
              testing::UnorderedElementsAre(blocks[1], blocks[3]));
  EXPECT_THAT(
      names(info({"--only=" + sets[0], "--show=" + blocks[0], "--hide=" + sets[0], mesh("four_kinds.e")}), true),
      testing::ElementsAre(blocks[0]));
}

TEST(Info, GivenAClippingPlane_WhenDescribed_ThenDrawnIsWhatIsLeft) {
  const json whole = info({mesh("bridge_beams.vtk")});
  const json none = info({"--clip=1,0,0,1000", mesh("bridge_beams.vtk")});
  const json half = info({"--clip=1,0,0,6", mesh("bridge_beams.vtk")});
  EXPECT_EQ(none["drawn"], json::object());
  EXPECT_EQ(none["elements"], whole["elements"]);
  EXPECT_GT(half["drawn"]["VTK_QUAD"], 0);
  EXPECT_LT(half["drawn"]["VTK_QUAD"], whole["drawn"]["VTK_QUAD"]);
}

TEST(Info, GivenShrunkElements_WhenDescribed_ThenEveryFaceOfEverySolidIsDrawn) {
  EXPECT_EQ(info({"--shrink=0.8", mesh("four_kinds.e")})["drawn"], json({{"VTK_POLYGON", 20}}));
  EXPECT_EQ(info({"--shrink=0.8", "--group-by=none", mesh("wheelset_x8.vtu")})["drawn"],
            json({{"VTK_POLYGON", 4 * 175472}}));
}

TEST(Info, GivenShrunkElements_WhenOwnersHaveNodesOnly_ThenTheirNodesAreStillDrawn) {
  const json whole = info({"--sample"}), shrunk = info({"--sample", "--shrink=0.5"});
  int owners_of_nodes = 0;
  for (std::size_t i = 0; i < whole["owners"].size(); ++i) {
    const json& owner = whole["owners"][i];
    if (owner["elements"] != kinds({})) continue;
    ++owners_of_nodes;
    EXPECT_GT(owner["drawn"].value("VTK_VERTEX", 0), 0) << owner["name"];
    EXPECT_EQ(shrunk["owners"][i]["drawn"], owner["drawn"]) << owner["name"];
  }
  EXPECT_GT(owners_of_nodes, 0);
}

TEST(Info, GivenWhatCannotBeDrawn_WhenDescribed_ThenItIsCountedThereAndInOneLine) {
  const std::string folder = scratch_folder(), path = folder + "/pentagon.vtk";
  std::ofstream(path) << "# vtk DataFile Version 2.0\nx\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 5 double\n"
                         "0 0 0 1 0 0 2 1 0 1 2 0 0 1 0\nCELLS 2 10\n5 0 1 2 3 4\n3 0 1 2\nCELL_TYPES 2\n7\n5\n";
  const Outcome run = run_orbel_view({"--info", path}, no_display);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "orbel_view: " + path + ": left out: 1 polygons with more than 4 corners\n");
  EXPECT_EQ(json::parse(run.out)["left_out"],
            json::array({{{"reason", "polygons with more than 4 corners"}, {"count", 1}}}));
}

TEST(Info, GivenTwoFiles_WhenDescribed_ThenOneMeshWithOwnersByFile) {
  const json described = info({mesh("four_kinds.e"), mesh("bridge_beams.vtk")});
  EXPECT_EQ(described["file"], json({mesh("four_kinds.e"), mesh("bridge_beams.vtk")}));
  EXPECT_EQ(described["nodes"], 13 + 881);
  EXPECT_EQ(described["elements"]["Hex"], 1 + 576);
  for (const json& owner : described["owners"])
    EXPECT_THAT(owner["name"].get<std::string>(),
                testing::AnyOf(testing::StartsWith("four_kinds.e/"), testing::StartsWith("bridge_beams.vtk/")));
  EXPECT_EQ(described["owners"].size(),
            info({mesh("four_kinds.e")})["owners"].size() + info({mesh("bridge_beams.vtk")})["owners"].size());
}

TEST(Info, GivenTwoFilesOfOneName_WhenDescribed_ThenOwnersGoByTheirPaths) {
  const std::string folder = scratch_folder();
  std::filesystem::copy(mesh("four_kinds.e"), folder + "/four_kinds.e");
  const json described = info({mesh("four_kinds.e"), folder + "/four_kinds.e"});
  const std::string first = described["owners"].front()["name"], last = described["owners"].back()["name"];
  EXPECT_THAT(first, testing::StartsWith(mesh("four_kinds.e") + "/"));
  EXPECT_THAT(last, testing::StartsWith(folder + "/four_kinds.e/"));
  std::filesystem::remove_all(folder);
}

TEST(Info, GivenOneFileThrice_WhenDescribed_ThenOwnersAreNumbered) {
  const json once = info({mesh("bridge_beams.vtk")});
  const json described = info({mesh("bridge_beams.vtk"), mesh("bridge_beams.vtk"), mesh("bridge_beams.vtk")});
  std::vector<std::string> expected, names;
  for (const std::string prefix : {"bridge_beams.vtk/", "bridge_beams.vtk (2)/", "bridge_beams.vtk (3)/"})
    for (const json& owner : once["owners"])
      expected.push_back(prefix + owner["name"].get<std::string>());
  for (const json& owner : described["owners"])
    names.push_back(owner["name"]);
  ASSERT_FALSE(once["owners"].empty());
  EXPECT_EQ(names, expected);
}

TEST(Info, GivenTheSample_WhenDescribed_ThenEveryKindOfElement) {
  const json described = info({"--sample"});
  EXPECT_EQ(described["file"], "sample");
  for (const auto& [kind, count] : described["elements"].items())
    EXPECT_GT(count, 0) << kind;
  EXPECT_TRUE(described["drawn"].contains("VTK_POLY_VERTEX"));
}

TEST(Info, GivenColorsOfKinds_WhenDescribed_ThenTheSameCells) {
  EXPECT_EQ(info({"--color-by=kind", mesh("four_kinds.e")}), info({mesh("four_kinds.e")}));
}

} // namespace
