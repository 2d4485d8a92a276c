#include "Pixels.h"
#include "RunViewer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using namespace run_viewer;
using testing::HasSubstr;

std::string run_and_read(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  for (int c; (c = std::fgetc(pipe)) != EOF;)
    output += static_cast<char>(c);
  pclose(pipe);
  return output;
}

// Servers whose parent is a viewer, or whose parent died.
std::size_t own_displays() {
  const std::string list = run_and_read("ps -eo args");
  std::size_t count = 0;
  for (std::size_t at = 0; (at = list.find("Xvfb -displayfd 3", at)) != std::string::npos; ++at)
    ++count;
  return count;
}

class InFolder : public testing::Test {
protected:
  InFolder() : folder(scratch_folder()) {}
  ~InFolder() override { std::filesystem::remove_all(folder); }

  void expect_failure(const Outcome& run, const std::string& line) {
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, line + "\n");
  }
  std::string folder;
};
class Failures : public InFolder {};
class Displays : public InFolder {};

TEST_F(Failures, GivenAMissingFile_WhenOpened_ThenOneLineNamesIt) {
  const Outcome run = run_orbel_view({"--info", folder + "/none.vtu"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr(folder + "/none.vtu"));
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
}

TEST_F(InFolder, GivenAPictureThatShowsNothing_WhenWritten_ThenOneLineSaysWhy) {
  const std::string beams = mesh("bridge_beams.vtk"), output = "--output=" + folder + "/a.png";
  const auto said = [&](std::vector<std::string> options) {
    options.insert(options.end(), {output, "--resolution=64,64", beams});
    const Outcome run = run_orbel_view(options);
    EXPECT_EQ(run.status, 0);
    return run.err;
  };
  EXPECT_EQ(said({"--clip=1,0,0,1000"}),
            "orbel_view: " + beams + ": nothing shows: the clipping plane leaves nothing of it\n");
  EXPECT_EQ(said({"--hide=mat_id 1", "--only=mat_id 1"}),
            "orbel_view: " + beams + ": nothing shows: all owners are hidden\n");
  EXPECT_EQ(said({}), "");
}

TEST_F(Failures, GivenBadFiles_WhenOpened_ThenOneLineNamesTheFile) {
  const std::pair<const char*, const char*> rows[] = {{"empty.vtu", ""},
                                                      {"noise.vtk", "this is no mesh\n"},
                                                      {"half.vtu", "<?xml version=\"1.0\"?>\n<VTKFile ty"},
                                                      {"noise.exo", "CDFnoise"},
                                                      {"noise.xyz", "1 2 3\n"},
                                                      {"noise.stl", "solid\n"}};
  for (const auto& [name, text] : rows) {
    const std::string path = folder + "/" + name;
    std::ofstream(path) << text;
    for (const std::string& how : {std::string("--info"), "--output=" + folder + "/a.png"}) {
      const Outcome run = run_orbel_view({how, path});
      EXPECT_EQ(run.status, 1) << name;
      EXPECT_EQ(run.out, "") << name;
      EXPECT_THAT(run.err, testing::StartsWith("orbel_view: ")) << name;
      EXPECT_THAT(run.err, HasSubstr(path)) << name;
      EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << name << run.err;
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder + "/a.png"));
}

TEST_F(Failures, GivenOneBadFileAmongGoodOnes_WhenOpened_ThenTheRunEnds) {
  const std::string bad = folder + "/bad.vtu";
  std::ofstream(bad) << "bad";
  const Outcome run = run_orbel_view({"--info", mesh("four_kinds.e"), bad});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr(bad));
}

TEST_F(Failures, GivenAPicturePathThatTakesNoFile_WhenDrawing_ThenOneLineSaysWhy) {
  const std::string taken = folder + "/folder.png", nowhere = folder + "/none/a.png", full = folder + "/full.png";
  std::filesystem::create_directory(taken);
  const std::string loop = folder + "/loop.png";
  std::filesystem::create_symlink("/dev/full", full);
  std::filesystem::create_symlink(loop, loop);
  expect_failure(run_orbel_view({"--output=" + taken, mesh("four_kinds.e")}),
                 "orbel_view: cannot write " + taken + ": Is a directory");
  expect_failure(run_orbel_view({"--output=" + nowhere, mesh("four_kinds.e")}),
                 "orbel_view: cannot write " + nowhere + ": No such file or directory");
  expect_failure(run_orbel_view({"--output=" + full, mesh("four_kinds.e")}),
                 "orbel_view: cannot write " + full + ": No space left on device");
  expect_failure(run_orbel_view({"--output=" + loop, mesh("four_kinds.e")}),
                 "orbel_view: cannot write " + loop + ": Too many levels of symbolic links");
  EXPECT_TRUE(std::filesystem::is_symlink(full)) << "what is no file of the run's own stays";
  EXPECT_THAT(run_orbel_view({"--output=/proc/self/a.png", mesh("four_kinds.e")}).err,
              testing::StartsWith("orbel_view: cannot write /proc/self/a.png: "));
}

TEST_F(Failures, GivenAFullStandardOutput_WhenWriting_ThenOneLineSaysSo) {
  const std::string program = ORBEL_VIEW_PROGRAM;
  for (const std::string& arguments :
       {std::string("--help"), std::string("--version"), "--info " + mesh("four_kinds.e")})
    EXPECT_EQ(run_and_read(program + " " + arguments + " 2>&1 >/dev/full; echo $?"),
              "orbel_view: cannot write to standard output\n1\n");
}

TEST_F(Failures, GivenAnUnknownOwner_WhenAskedFor_ThenOneLineListsTheNearestNames) {
  for (const char* option : {"--hide=", "--show=", "--only="}) {
    const Outcome run = run_orbel_view({"--info", option + std::string("nobody"), mesh("four_kinds.e")});
    EXPECT_EQ(run.status, 1) << option;
    EXPECT_EQ(run.out, "") << option;
    EXPECT_THAT(run.err,
                testing::StartsWith("orbel_view: " + mesh("four_kinds.e") + ": no owner is named 'nobody'; owners: '"));
    EXPECT_THAT(run.err, HasSubstr("' and 1 more (--info lists them)\n")) << option;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << option;
  }
}

TEST_F(Failures, GivenNamesWithLineEnds_WhenTheyAreTold_ThenStillInOneLine) {
  const Outcome run = run_orbel_view({"--info", folder + "/a\nb.vtu"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
}

TEST_F(Displays, GivenNoDisplay_WhenAWindowIsAskedFor_ThenOneLineSaysHow) {
  for (const char* display : {"", ":4711"})
    expect_failure(run_orbel_view({mesh("four_kinds.e")}, {{"DISPLAY", display}}),
                   "orbel_view: cannot open a window: no display with OpenGL (set DISPLAY, or write a picture with "
                   "--output=FILE.png)");
}

TEST_F(Displays, GivenNoDisplayAndNoServer_WhenAPictureIsAskedFor_ThenOneLineSaysHow) {
  const std::string path = folder + "/a.png";
  expect_failure(run_orbel_view({"--output=" + path, mesh("four_kinds.e")}, {{"DISPLAY", ""}, {"PATH", "/nowhere"}}),
                 "orbel_view: cannot draw " + path +
                     ": no display with OpenGL, and Xvfb could not be started (install xvfb, or set DISPLAY)");
}

TEST_F(Displays, GivenAServerThatFails_WhenAPictureIsAskedFor_ThenOneLineSaysHow) {
  const std::string server = folder + "/Xvfb", path = folder + "/a.png";
  for (const char* script :
       {"#!/bin/sh\nexit 1\n", "#!/bin/sh\necho >&3\n", "#!/bin/sh\necho 4711 >&3\n/bin/sleep 60\n"}) {
    std::ofstream(server) << script;
    std::filesystem::permissions(server, std::filesystem::perms::owner_all);
    const Outcome run = run_orbel_view({"--output=" + path, mesh("four_kinds.e")}, {{"DISPLAY", ""}, {"PATH", folder}});
    EXPECT_EQ(run.status, 1) << script;
    EXPECT_THAT(run.err, testing::MatchesRegex("orbel_view: cannot draw .*a\\.png: no display with OpenGL, and Xvfb "
                                               "(could not be started|has no OpenGL) \\(install.*\n"));
  }
}

TEST_F(Displays, GivenNoDisplay_WhenAPictureIsAskedFor_ThenAVirtualOneComesAndGoes) {
  const std::string with = folder + "/with.png", without = folder + "/without.png";
  const std::size_t before = own_displays();
  EXPECT_EQ(run_orbel_view({"--output=" + with, mesh("four_kinds.e")}).status, 0);
  const Outcome run = run_orbel_view({"--output=" + without, mesh("four_kinds.e")}, {{"DISPLAY", ""}});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  ASSERT_GT(Pixels::read(with).rgb.size(), 0u);
  EXPECT_EQ(Pixels::read(with).rgb, Pixels::read(without).rgb);
  EXPECT_EQ(own_displays(), before);
}

TEST_F(Displays, GivenNoDisplay_WhenRunsComeTogether_ThenEachHasItsOwn) {
  const std::string command = "for i in 1 2 3 4 5 6; do env -u DISPLAY " + std::string(ORBEL_VIEW_PROGRAM) +
                              " --resolution=64,48 --output=" + folder + "/$i.png " + mesh("four_kinds.e") +
                              " & done; wait";
  ASSERT_EQ(std::system(command.c_str()), 0);
  for (int i = 1; i <= 6; ++i)
    EXPECT_EQ(Pixels::read(folder + "/" + std::to_string(i) + ".png").width, 64) << i;
}

TEST_F(Displays, GivenAnExistingPicture_WhenWritten_ThenItIsReplaced) {
  const std::string path = folder + "/a.png";
  std::ofstream(path) << std::string(1000000, 'x');
  EXPECT_EQ(run_orbel_view({"--resolution=20,10", "--output=" + path, mesh("four_kinds.e")}).status, 0);
  EXPECT_EQ(Pixels::read(path).width, 20);
  EXPECT_LT(std::filesystem::file_size(path), 10000u);
}

TEST_F(Displays, GivenPictureAndInfo_WhenBothAreAskedFor_ThenBothCome) {
  const std::string path = folder + "/a.png";
  const Outcome run = run_orbel_view({"--info", "--output=" + path, mesh("four_kinds.e")});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::StartsWith("{\n  \"file\""));
  EXPECT_EQ(Pixels::read(path).width, 1280);
}

TEST_F(InFolder, GivenAMeshOfAnySize_WhenDescribed_ThenOneLineTellsWhatCannotBeDrawn) {
  struct Row {
    const char* size;
    const char* line;
  };
  const Row rows[] = {
      {"2e-21", ""},
      {"1", ""},
      {"5e32", ""},
      {"5e-22", "orbel_view: the mesh is 5e-22 across, too small for single precision: it may not show\n"},
      {"2e38", "orbel_view: the mesh is 2e+38 across, too large for single precision: it may not show\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.size);
    const std::string path = folder + "/line.vtk";
    std::ofstream(path) << "# vtk DataFile Version 3.0\nline\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 2 double\n0 0 0 "
                        << row.size << " 0 0\nCELLS 1 3\n2 0 1\nCELL_TYPES 1\n3\n";
    const Outcome run = run_orbel_view({"--info", path});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, row.line);
  }
}

TEST_F(Displays, GivenVerbose_WhenRun_ThenStepsAndTimesOnStandardErrorOnly) {
  const Outcome quiet = run_orbel_view({"--info", mesh("four_kinds.e")}),
                verbose = run_orbel_view({"--info", "--verbose", mesh("four_kinds.e")});
  EXPECT_EQ(quiet.err, "");
  EXPECT_EQ(verbose.out, quiet.out);
  EXPECT_THAT(verbose.err, HasSubstr("orbel_view: hidden: 'side set 1', 'side set 2', 'side set 3', "));
  EXPECT_THAT(verbose.err, testing::ContainsRegex("orbel_view: read .*four_kinds.e: [0-9.e-]+ s\n"));
}

} // namespace
