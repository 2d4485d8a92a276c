#include "tests/readers/ReadFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace {

using namespace reader_tests;

struct BadFile {
  std::string name;
  std::string expectation;
};

std::string folder_of_bad_files() {
  static const std::string folder = [] {
    const std::string path = scratch("bad");
    const std::string command = std::string("mkdir -p ") + path + " && " + READERS_TEST_PYTHON + " " +
                                READERS_TEST_SOURCE + "/make_bad_files.py " + path + " " + ORBEL_MESH_TEST_DATA + " " +
                                ORBEL_MESH_SAMPLES;
    return std::system(command.c_str()) == 0 ? path : std::string();
  }();
  return folder;
}

void replace_all(std::string& text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
}

std::vector<BadFile> list_bad_files() {
  std::vector<BadFile> files;
  std::ifstream table(folder_of_bad_files() + "/expected.tsv");
  for (std::string line; std::getline(table, line);) {
    const std::size_t tab = line.find('\t');
    files.push_back({line.substr(0, tab), line.substr(tab + 1)});
    replace_all(files.back().expectation, "{folder}", folder_of_bad_files());
  }
  return files;
}

std::string outcome(const readers::Report& report, const std::string& path) {
  if (report.error.empty()) return "left out: " + text_of(report.left_out);
  const std::string start = path + ": ";
  return report.error.rfind(start, 0) == 0 ? "error: " + report.error.substr(start.size())
                                           : "error that does not name the file: " + report.error;
}

TEST(BadFiles, GivenTheScript_WhenItRuns_ThenThereAreFilesOfEveryFormat) {
  ASSERT_FALSE(folder_of_bad_files().empty()) << "python3 is needed to make the files";
  const std::vector<BadFile> files = list_bad_files();
  EXPECT_GE(files.size(), 100u);
  for (const char* extension : {".vtu", ".vtm", ".vti", ".vtk", ".e", ".cgns", ".stl", ".ply", ".obj"}) {
    const std::string end = extension;
    EXPECT_TRUE(std::any_of(files.begin(), files.end(), [&](const BadFile& file) {
      return file.name.size() > end.size() && file.name.compare(file.name.size() - end.size(), end.size(), end) == 0;
    })) << extension;
  }
}

TEST(BadFiles, GivenAMalformedFile_WhenReading_ThenOneLineSaysWhatIsWrong) {
  const std::vector<BadFile> files = list_bad_files();
  ASSERT_GE(files.size(), 25u);
  for (const BadFile& file : files) {
    SCOPED_TRACE(file.name);
    const std::string path = folder_of_bad_files() + "/" + file.name;

    const ReadMesh read(path);

    EXPECT_EQ(outcome(read.report, path), file.expectation);
    EXPECT_EQ(read.report.error.find('\n'), std::string::npos);
    EXPECT_EQ(find_fault(*read.database, read.report), "");
  }
}

TEST(BadFiles, GivenADatabaseWithAMesh_WhenABadFileIsRead_ThenTheDatabaseIsAsBefore) {
  const std::vector<BadFile> files = list_bad_files();
  ASSERT_FALSE(files.empty());
  ReadMesh read(find_mesh("four_kinds.e"));
  const std::uint64_t nodes = read.database->node_count();
  const std::vector<std::string> owners = read.owner_names();
  ASSERT_GT(nodes, 0u);
  for (const BadFile& file : files) {
    if (file.expectation.rfind("error", 0) != 0) continue;
    SCOPED_TRACE(file.name);

    const readers::Report report = readers::read_mesh(folder_of_bad_files() + "/" + file.name, *read.database);

    EXPECT_FALSE(report.error.empty());
    EXPECT_EQ(report.nodes, 0u);
    EXPECT_EQ(read.database->node_count(), nodes);
    EXPECT_EQ(read.owner_names(), owners);
  }
}

} // namespace
