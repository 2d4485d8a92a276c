#include "RunViewer.h"

#include "viewer/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace run_viewer;
using testing::HasSubstr;
using testing::StartsWith;

viewer::CommandLine parsed(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "orbel_view");
  return viewer::parse_command_line(static_cast<int>(arguments.size()), arguments.data());
}

struct WrongRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* complaint;
};

const WrongRow wrong_rows[] = {
    {"no file", {}, "no FILE given"},
    {"no file but options", {"--info"}, "no FILE given"},
    {"sample and file", {"--sample", "a.vtu"}, "--sample takes no FILE"},
    {"unknown option", {"--frobnicate", "a.vtu"}, "The following argument was not expected: --frobnicate"},
    {"option of one dash", {"-x", "a.vtu"}, "The following argument was not expected: -x"},
    {"value missing", {"a.vtu", "--output"}, "--output: 1 required FILE.png missing"},
    {"value empty", {"--hide=", "a.vtu"}, "--hide: no value after ="},
    {"no picture format", {"--output=a.jpg", "a.vtu"}, "--output: 'a.jpg' does not end in .png"},
    {"resolution", {"--resolution=100", "a.vtu"}, "--resolution: '100' is not of the form W,H"},
    {"resolution of nothing", {"--resolution=0,0", "a.vtu"}, "--resolution: '0' is not a whole number"},
    {"resolution of too much", {"--resolution=16384,16384", "a.vtu"}, "--resolution: '16384,16384' has more than"},
    {"opacity not a number", {"--opacity=nan", "a.vtu"}, "--opacity: 'nan' is not a number"},
    {"opacity above one", {"--opacity=1.5", "a.vtu"}, "--opacity: '1.5' is not from 0 to 1"},
    {"line width negative", {"--line-width=-1", "a.vtu"}, "--line-width: '-1' is not from 0.1 to 50"},
    {"line width absurd", {"--line-width=1e9", "a.vtu"}, "--line-width: '1e9' is not from 0.1 to 50"},
    {"point size infinite", {"--point-size=inf", "a.vtu"}, "--point-size: 'inf' is not a number"},
    {"point size zero", {"--point-size=0", "a.vtu"}, "--point-size: '0' is not from 0.1 to 100"},
    {"line colour", {"--line-color=black", "a.vtu"}, "--line-color: 'black' is not of the form #RRGGBB"},
    {"background", {"--background=#FFF", "a.vtu"}, "--background: '#FFF' is not of the form #RRGGBB"},
    {"shrink too far", {"--shrink=0.05", "a.vtu"}, "--shrink: '0.05' is not from 0.1 to 1"},
    {"shrink that grows", {"--shrink=1.01", "a.vtu"}, "--shrink: '1.01' is not from 0.1 to 1"},
    {"clip without distance", {"--clip=1,0,0", "a.vtu"}, "--clip: '1,0,0' is not of the form NX,NY,NZ,D"},
    {"clip without normal", {"--clip=0,0,0,1", "a.vtu"}, "--clip: '0,0,0,1' has no normal"},
    {"clip not a number", {"--clip=1,0,nan,0", "a.vtu"}, "--clip: 'nan' is not a number"},
    {"view", {"--view=top", "a.vtu"}, "--view: 'top' is not one of iso, +x, -x, +y, -y, +z, -z"},
    {"zoom zero", {"--zoom=0", "a.vtu"}, "--zoom: '0' is not from 0.001 to 100000"},
    {"zoom not a number", {"--zoom=NaN", "a.vtu"}, "--zoom: 'NaN' is not a number"},
    {"render mode", {"--render-mode=xray", "a.vtu"}, "--render-mode: 'xray' is not one of wireframe,"},
    {"colour source", {"--color-by=material", "a.vtu"}, "--color-by: 'material' is not one of owner, kind"},
    {"pick not a point", {"--pick=1", "a.vtu"}, "--pick: '1' is not of the form X,Y"},
    {"pick not a number", {"--pick=1,x", "a.vtu"}, "--pick: 'x' is not a number"},
    {"pick outside", {"--pick=1280,5", "a.vtu"}, "--pick: the point lies outside the picture of 1280 x 720"},
    {"pick below", {"--pick=5,-1", "a.vtu"}, "--pick: the point lies outside the picture of 1280 x 720"},
    {"box of three", {"--pick-box=1,2,3", "a.vtu"}, "--pick-box: '1,2,3' is not of the form X0,Y0,X1,Y1"},
    {"circle of nothing", {"--pick-circle=1,2,0", "a.vtu"}, "--pick-circle: '1,2,0' has no positive radius"},
    {"polygon of two", {"--pick-polygon=1,2,3,4", "a.vtu"}, "--pick-polygon: '1,2,3,4' is not of the form X0,Y0,X1"},
    {"odd polygon", {"--pick-polygon=1,2,3,4,5,6,7", "a.vtu"}, "--pick-polygon: '1,2,3,4,5,6,7' is not of the form"},
    {"two picks", {"--pick=1,2", "--pick-box=1,2,3,4", "a.vtu"}, "--pick and --pick-box exclude each other"},
    {"through at a point", {"--pick=1,2", "--through", "a.vtu"}, "--through is for regions, not for --pick"},
    {"whole at a point", {"--pick=1,2", "--whole", "a.vtu"}, "--whole is for regions, not for --pick"},
    {"filter", {"--filter=Hex,Quad", "a.vtu"}, "--filter: 'Quad' is not one of Hex, Tet, Pyramid, Wedge, Knife,"},
    {"filter of nothing", {"--filter=", "a.vtu"}, "--filter: "},
    {"selection without ids", {"--select=hex", "a.vtu"}, "--select: 'hex' is not of the form KIND:IDS"},
    {"selection of no kind", {"--select=brick:1", "a.vtu"}, "--select: 'brick' is not one of node, edge, tri,"},
    {"selection by other ids", {"--select=hex@file:1", "a.vtu"}, "--select: '@file' is not @global"},
    {"global nodes", {"--select=node@global:1", "a.vtu"}, "--select: nodes have no global ids"},
    {"selection backwards", {"--select=hex:9-5", "a.vtu"}, "--select: '9-5' runs backwards"},
    {"selection of no id", {"--select=hex:1,,2", "a.vtu"}, "--select: '' is not an id"},
    {"second selection", {"--select=hex:1", "--select=hex:x", "a.vtu"}, "--select: 'x' is not an id"},
    {"labels without source", {"--labels=hexes", "a.vtu"}, "--labels: 'hexes' is not of the form KIND:local"},
    {"labels of no kind", {"--labels=all:local", "a.vtu"}, "--labels: 'all' is not one of node, edge,"},
    {"labels of other ids", {"--labels=hexes:file", "a.vtu"}, "--labels: 'file' is not one of local, global, element"},
    {"elements of hexes", {"--labels=hexes:element", "a.vtu"}, "--labels: 'hexes:element': only nodes can show"},
    {"grouping", {"--group-by=block", "a.vtu"}, "--group-by: 'block' is not one of owner, none"},
};

TEST(CommandLine, GivenWrongUsage_WhenRun_ThenOneLineOnStandardErrorAndStatusTwo) {
  for (const WrongRow& row : wrong_rows) {
    const Outcome run = run_orbel_view(row.arguments);
    EXPECT_EQ(run.status, 2) << row.name;
    EXPECT_EQ(run.out, "") << row.name;
    EXPECT_THAT(run.err, StartsWith(std::string("orbel_view: ") + row.complaint)) << row.name;
    EXPECT_THAT(run.err, testing::EndsWith(" (see orbel_view --help)\n")) << row.name;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << row.name;
  }
}

TEST(CommandLine, GivenHelp_WhenRun_ThenEveryOptionAndExamplesOnStandardOutput) {
  const Outcome run = run_orbel_view({"--help"}, {{"DISPLAY", ""}});

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, HasSubstr("Usage: orbel_view [OPTIONS] FILE..."));
  for (const char* option : {"--output=FILE.png",
                             "--resolution=W,H",
                             "--info",
                             "--group-by=owner|none",
                             "--render-mode=MODE",
                             "--opacity=F",
                             "--line-width=F",
                             "--point-size=F",
                             "--line-color=#RRGGBB",
                             "--background=#RRGGBB",
                             "--nodes",
                             "--no-edges",
                             "--shrink=F",
                             "--clip=NX,NY,NZ,D",
                             "--color-by=owner|kind",
                             "--hide=NAME",
                             "--show=NAME",
                             "--only=NAME",
                             "--view=FROM",
                             "--zoom=F",
                             "--parallel",
                             "-h,--help",
                             "--version",
                             "--list-readers",
                             "--verbose",
                             "--sample",
                             "--pick=X,Y",
                             "--pick-box=X0,Y0,X1,Y1",
                             "--pick-circle=X,Y,R",
                             "--pick-polygon=X0,Y0,...",
                             "--filter=NAME[,...]",
                             "--through",
                             "--whole",
                             "--select=KIND:IDS",
                             "--labels=KIND:SOURCE[,...]"})
    EXPECT_THAT(run.out, HasSubstr(std::string("  ") + option)) << option;
  EXPECT_THAT(run.out, HasSubstr("Exit status: 0 done; 1 could not"));
  EXPECT_THAT(run.out, HasSubstr("Examples:"));
  EXPECT_THAT(run.out, HasSubstr("H shows every key"));
}

TEST(CommandLine, GivenHelp_WhenPrinted_ThenNoLineIsWiderThan120) {
  const std::string help = run_orbel_view({"--help"}).out;
  ASSERT_GT(help.size(), 1000u);
  for (std::size_t at = 0, end; at < help.size(); at = end + 1) {
    end = std::min(help.find('\n', at), help.size());
    EXPECT_LE(end - at, 120u) << help.substr(at, end - at);
  }
}

TEST(CommandLine, GivenVersion_WhenRun_ThenItsOwnAndVtks) {
  const Outcome run = run_orbel_view({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, testing::MatchesRegex("orbel_view [0-9]+\\.[0-9]+\\.[0-9]+ \\(VTK 9\\.[0-9]+\\.[0-9]+\\)\n"));
}

TEST(CommandLine, GivenListReaders_WhenRun_ThenEveryExtension) {
  const Outcome run = run_orbel_view({"--list-readers"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  for (const char* extension : {".vtu", ".vtk", ".vtm", ".exo", ".e", ".ex2", ".g", ".cgns", ".stl", ".ply", ".obj"})
    EXPECT_THAT(run.out, testing::ContainsRegex(std::string(" \\") + extension + "[ \n]")) << extension;
}

TEST(CommandLine, GivenNoOptions_WhenParsed_ThenTheDefaults) {
  const auto line = parsed({"a.vtu", "b.vtu"});
  ASSERT_FALSE(line.ending.has_value());
  EXPECT_THAT(line.options.files, testing::ElementsAre("a.vtu", "b.vtu"));
  EXPECT_FALSE(line.options.output.has_value());
  EXPECT_THAT(line.options.resolution, testing::ElementsAre(1280, 720));
  EXPECT_FALSE(line.options.info);
  EXPECT_FALSE(line.options.verbose);
  EXPECT_EQ(line.options.group_by, readers::GroupBy::Owner);
  EXPECT_EQ(line.options.display.render_mode, OBUtil::Shaded);
  EXPECT_EQ(line.options.display.opacity, 0.5);
  EXPECT_EQ(line.options.display.line_width, 1);
  EXPECT_EQ(line.options.display.point_size, 6);
  EXPECT_EQ(line.options.display.line_color, TovanColor(0, 0, 0, 255));
  EXPECT_EQ(line.options.display.background, TovanColor(255, 255, 255, 255));
  EXPECT_FALSE(line.options.display.nodes);
  EXPECT_TRUE(line.options.display.edges);
  EXPECT_EQ(line.options.display.shrink, 1);
  EXPECT_FALSE(line.options.display.clip.has_value());
  EXPECT_EQ(line.options.display.color_by, viewer::ColorBy::Owner);
  EXPECT_EQ(line.options.camera.view, viewer::ViewFrom::Iso);
  EXPECT_EQ(line.options.camera.zoom, 1);
  EXPECT_FALSE(line.options.camera.parallel);
}

TEST(CommandLine, GivenEveryOption_WhenParsed_ThenTheirValues) {
  const auto line = parsed({"--output=a.png",
                            "--resolution=10,20",
                            "--info",
                            "--verbose",
                            "--group-by=none",
                            "--render-mode=dimmed",
                            "--opacity=0.25",
                            "--line-width=2",
                            "--point-size=9",
                            "--line-color=#010203",
                            "--background=#040506",
                            "--nodes",
                            "--no-edges",
                            "--shrink=0.5",
                            "--clip=0,0,1,-2",
                            "--color-by=kind",
                            "--hide=a",
                            "--hide=b,c",
                            "--show",
                            "d",
                            "--only=e",
                            "--view=-z",
                            "--pick-box=1,2,3.5,-4",
                            "--filter=Hex,Node",
                            "--through",
                            "--whole",
                            "--select=hex:1,5-7",
                            "--select=quads@global:9",
                            "--labels=nodes:element,elements:local,hexes:global",
                            "--zoom=3",
                            "--parallel",
                            "m.vtu"});
  ASSERT_FALSE(line.ending.has_value()) << line.ending->error;
  const auto& [files, sample, picture_if_no_display, output, resolution, info, group_by, verbose, display, owners,
               camera, picking] = line.options;
  EXPECT_THAT(files, testing::ElementsAre("m.vtu"));
  EXPECT_FALSE(sample);
  EXPECT_FALSE(picture_if_no_display.has_value());
  EXPECT_EQ(output, "a.png");
  EXPECT_THAT(resolution, testing::ElementsAre(10, 20));
  EXPECT_TRUE(info);
  EXPECT_TRUE(verbose);
  EXPECT_EQ(group_by, readers::GroupBy::None);
  EXPECT_EQ(display.render_mode, OBUtil::DimmedHiddenLine);
  EXPECT_EQ(display.opacity, 0.25);
  EXPECT_EQ(display.line_width, 2);
  EXPECT_EQ(display.point_size, 9);
  EXPECT_EQ(display.line_color, TovanColor(1, 2, 3));
  EXPECT_EQ(display.background, TovanColor(4, 5, 6));
  EXPECT_TRUE(display.nodes);
  EXPECT_FALSE(display.edges);
  EXPECT_EQ(display.shrink, 0.5);
  ASSERT_TRUE(display.clip.has_value());
  EXPECT_THAT(display.clip->normal, testing::ElementsAre(0, 0, 1));
  EXPECT_EQ(display.clip->distance, -2);
  EXPECT_EQ(display.color_by, viewer::ColorBy::Kind);
  EXPECT_THAT(owners.hide, testing::ElementsAre("a", "b,c"));
  EXPECT_THAT(owners.show, testing::ElementsAre("d"));
  EXPECT_THAT(owners.only, testing::ElementsAre("e"));
  EXPECT_EQ(display.labels.nodes, OBUtil::NodeElementId);
  EXPECT_EQ(display.labels.elements[Tarn::Quad], OBUtil::LocalId);
  EXPECT_EQ(display.labels.elements[Tarn::Hex], OBUtil::GlobalId);
  ASSERT_TRUE(picking.request.has_value());
  EXPECT_EQ(picking.request->shape, viewer::PickRequest::Shape::Box);
  EXPECT_THAT(picking.request->numbers, testing::ElementsAre(1, 2, 3.5, -4));
  EXPECT_THAT(picking.filter, testing::ElementsAre("Hex", "Node"));
  EXPECT_TRUE(picking.through);
  EXPECT_TRUE(picking.whole);
  ASSERT_EQ(picking.select.size(), 2u);
  EXPECT_EQ(picking.select[0].kind, viewer::EntityKind::Hex);
  EXPECT_FALSE(picking.select[0].global);
  ASSERT_EQ(picking.select[0].ranges.size(), 2u);
  EXPECT_EQ(picking.select[0].ranges[1].first, 5);
  EXPECT_EQ(picking.select[0].ranges[1].last, 7);
  EXPECT_EQ(picking.select[1].kind, viewer::EntityKind::Quad);
  EXPECT_TRUE(picking.select[1].global);
  EXPECT_EQ(camera.view, viewer::ViewFrom::MinusZ);
  EXPECT_EQ(camera.zoom, 3);
  EXPECT_TRUE(camera.parallel);
}

TEST(CommandLine, GivenTheOptionsOfScripts_WhenParsed_ThenTheyActOnlyWhereNothingElseWasAskedFor) {
  const auto bare = parsed({"--sample-if-no-file", "--picture-if-no-display=a.png"});
  ASSERT_FALSE(bare.ending.has_value()) << bare.ending->error;
  EXPECT_TRUE(bare.options.sample);
  EXPECT_EQ(bare.options.picture_if_no_display, "a.png");
  EXPECT_FALSE(bare.options.output.has_value());

  const auto with_file = parsed({"--sample-if-no-file", "m.vtu"});
  ASSERT_FALSE(with_file.ending.has_value()) << with_file.ending->error;
  EXPECT_FALSE(with_file.options.sample);
  EXPECT_THAT(run_orbel_view({"--help"}).out, testing::Not(HasSubstr("-if-no-")));
}

TEST(CommandLine, GivenValuesApartFromTheirOptions_WhenTheyBeginWithADash_ThenTheyAreValues) {
  const auto line = parsed({"--clip", "-1,0,0,-2", "--view", "-x", "a.vtu"});
  ASSERT_FALSE(line.ending.has_value()) << line.ending->error;
  EXPECT_EQ(line.options.display.clip->distance, -2);
  EXPECT_EQ(line.options.camera.view, viewer::ViewFrom::MinusX);
  EXPECT_THAT(line.options.files, testing::ElementsAre("a.vtu"));
}

TEST(CommandLine, GivenAnOptionTwice_WhenParsed_ThenTheLastCounts) {
  EXPECT_EQ(parsed({"--zoom=2", "--zoom=3", "a.vtu"}).options.camera.zoom, 3);
}

TEST(CommandLine, GivenOpacity_WhenNoModeIsNamed_ThenSurfacesAreTranslucent) {
  EXPECT_EQ(parsed({"--opacity=0.3", "a.vtu"}).options.display.render_mode, OBUtil::Translucent);
  EXPECT_EQ(parsed({"--opacity=0.3", "--render-mode=shaded", "a.vtu"}).options.display.render_mode, OBUtil::Shaded);
}

TEST(CommandLine, GivenADoubleDash_WhenParsed_ThenWhatFollowsIsAFile) {
  EXPECT_THAT(parsed({"--", "--odd.vtu"}).options.files, testing::ElementsAre("--odd.vtu"));
}

} // namespace
