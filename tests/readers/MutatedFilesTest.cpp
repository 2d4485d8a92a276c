#include "tests/readers/ReadFiles.h"

#include "readers/MeshDraft.h"

#include <gtest/gtest.h>

#include <vtkDataSet.h>
#include <vtkDataSetReader.h>
#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <filesystem>
#include <random>

namespace {

using namespace reader_tests;

// For each file. To fork a sanitized process takes a tenth of a second.
#if defined(__SANITIZE_ADDRESS__)
constexpr int rounds = 12;
#else
constexpr int rounds = 60;
#endif
constexpr unsigned seed = 20240611;

// Cuts a file short, flips bits, overwrites, rewrites digits, deletes or repeats pieces; half of it near the head,
// where the counts are.
std::string mutate(std::string bytes, std::mt19937_64& random) {
  const auto below = [&random](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  const std::size_t way = below(6);
  if (way == 0) return bytes.substr(0, 1 + below(bytes.size() - 1));
  const std::size_t region = below(2) == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 600);
  for (std::size_t i = 0, n = 1 + below(8); i < n && !bytes.empty(); ++i) {
    const std::size_t at = std::min(below(region), bytes.size() - 1);
    switch (way) {
    case 1:
      bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
      break;
    case 2:
      bytes[at] = static_cast<char>(below(256));
      break;
    case 3:
      bytes[at] = "0123456789-"[below(11)];
      break;
    case 4:
      bytes.erase(at, 1 + below(16));
      break;
    default:
      bytes.insert(at, bytes.substr(below(bytes.size()), 1 + below(32)));
      break;
    }
  }
  return bytes.empty() ? "x" : bytes;
}

std::vector<std::string> write_vtk_variants() {
  vtkNew<vtkDataSetReader> reader;
  reader->SetFileName(find_mesh("bridge_beams.vtk").c_str());
  reader->Update();
  std::vector<std::string> paths;
  for (const auto& [name, mode, compressed] :
       {std::tuple{"ascii.vtu", 0, false}, {"inline.vtu", 1, true}, {"appended.vtu", 2, false}}) {
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetInputData(reader->GetOutput());
    writer->SetFileName(scratch(name).c_str());
    writer->SetDataMode(mode);
    if (!compressed) writer->SetCompressor(nullptr);
    writer->EncodeAppendedDataOff();
    writer->Write();
    paths.push_back(scratch(name));
  }
  for (const auto& [name, version] : {std::pair{"binary4.vtk", 42}, {"binary5.vtk", 51}}) {
    vtkNew<vtkUnstructuredGridWriter> writer;
    writer->SetInputData(reader->GetOutput());
    writer->SetFileName(scratch(name).c_str());
    writer->SetFileTypeToBinary();
    writer->SetFileVersion(version);
    writer->Write();
    paths.push_back(scratch(name));
  }
  return paths;
}

std::string binary_stl() {
  std::string bytes(80, ' ');
  const std::uint32_t count = 20;
  bytes.append(reinterpret_cast<const char*>(&count), 4);
  for (std::uint32_t i = 0; i < count; ++i) {
    const float values[12] = {0, 0, 1, float(i), 0, 0, float(i + 1), 0, 0, float(i), 1, 0};
    bytes.append(reinterpret_cast<const char*>(values), sizeof values).append(2, '\0');
  }
  return bytes;
}

std::string ply(const std::string& format) {
  std::string text = "ply\nformat " + format +
                     " 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\n"
                     "element face 2\nproperty list uchar int vertex_indices\nend_header\n";
  if (format == "ascii") return text + "0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n";
  const float points[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  text.append(reinterpret_cast<const char*>(points), sizeof points);
  for (const auto& face : {std::array{0, 1, 2}, {0, 2, 3}})
    text.append(1, '\3').append(reinterpret_cast<const char*>(face.data()), 12);
  return text;
}

std::vector<std::string> seeds() {
  std::vector<std::string> paths = write_vtk_variants();
  for (const char* name : {"bridge_beams.vtk", "four_kinds.e", "pipe_bend.cgns"})
    paths.push_back(find_mesh(name));
  paths.push_back(write_file("binary.stl", binary_stl()));
  paths.push_back(write_file("text.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                                         "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n"));
  paths.push_back(write_file("text.ply", ply("ascii")));
  paths.push_back(write_file("binary.ply", ply("binary_little_endian")));
  paths.push_back(write_file("mesh.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nf 1/1 2/1 3/1\nf -4 -2 -1\n"
                                         "l 1 2 3\np 1\n"));
  paths.push_back(write_file("blocks.vtm",
                             "<VTKFile type=\"vtkMultiBlockDataSet\"><vtkMultiBlockDataSet><Block name=\"a\">"
                             "<DataSet name=\"b\" file=\"ascii.vtu\"/></Block><DataSet file=\"text.ply\"/>"
                             "</vtkMultiBlockDataSet></VTKFile>"));
  return paths;
}

// An error in one line and an untouched database, or a mesh without fault.
std::string judge(const std::string& path, bool& opened) {
  const ReadMesh read(path);
  opened = read.report.error.empty();
  if (opened) return find_fault(*read.database, read.report);
  if (read.report.error.find('\n') != std::string::npos) return "more than one line";
  if (read.report.error.rfind(path + ": ", 0) != 0) return "an error that does not name the file";
  return read.database->node_count() == 0 ? "" : "an error, but nodes in the database";
}

TEST(MutatedFiles, GivenDamagedFilesOfEveryFormat_WhenReading_ThenALineOrASoundMesh) {
  std::mt19937_64 random(seed);
  const std::vector<std::string> paths = seeds();
  ASSERT_EQ(paths.size(), 14u);
  for (const std::string& path : paths) {
    const std::string bytes = read_bytes(path);
    ASSERT_FALSE(bytes.empty()) << path;
    bool opened = false;
    ASSERT_EQ(judge(path, opened), "") << path;
    ASSERT_TRUE(opened) << path;
    int refused = 0;
    for (int round = 0; round < rounds; ++round) {
      const std::string damaged = mutate(bytes, random);
      const std::string damaged_path =
          write_file("damaged" + std::filesystem::path(path).extension().string(), damaged);
      EXPECT_EQ(judge(damaged_path, opened), "") << path << " round " << round;
      refused += opened ? 0 : 1;
    }
    EXPECT_GT(refused, 0) << path << ": nothing was damaged";
  }
}

} // namespace
