#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAreArray;

struct OwnerRow {
  std::string name;
  std::uint32_t dimension;
  std::array<std::uint64_t, 10> elements;
};

struct FileRow {
  std::string name;
  std::uint64_t nodes;
  std::array<std::uint64_t, 10> elements;
  std::array<std::uint64_t, 10> set_faces;
  std::array<double, 6> bounds; ///< of the nodes that elements use: xmin xmax ymin ymax zmin zmax
  std::vector<OwnerRow> owners;
};

// Counts and bounds as established when the files were chosen, with other tools.
std::vector<FileRow> real_files() {
  return {
      {"notch_quadratic.vtu",
       12717,
       counts({{Hex, 2188}, {Wedge, 4}}),
       {},
       {0, 0.4, 0, 0.1, 0, 0.01},
       {{"notch_quadratic", 3, counts({{Hex, 2188}, {Wedge, 4}})}}},
      {"wheelset_x8.vtu",
       36165,
       counts({{Tet, 175472}}),
       {},
       {-1.09, 1.09, -0.46, 0.46, -0.46, 0.46},
       {{"mat_id 0", 3, counts({{Tet, 175472}})}}},
      {"cylinder_quadratic_tets.vtk",
       2814,
       counts({{Tet, 1522}}),
       {},
       {-0.01, 0.01, -0.01, 0.01, 0, 0.1},
       {{"cylinder_quadratic_tets", 3, counts({{Tet, 1522}})}}},
      {"bridge_beams.vtk",
       881,
       counts({{Edge, 25}, {Hex, 576}}),
       {},
       {0, 12, 0, 3, -3, 0},
       {{"mat_id 1", 3, counts({{Hex, 576}})}, {"mat_id 2", 1, counts({{Edge, 25}})}}},
      {"blow_shell.vtk",
       687,
       counts({{Tri, 928}, {Quad, 129}}),
       {},
       {0, 7, -12, 36, -11, 13},
       {{"blow_shell", 2, counts({{Tri, 928}, {Quad, 129}})}}},
      {"four_kinds.e",
       13,
       counts({{Tet, 1}, {Hex, 1}, {Wedge, 1}, {Pyramid, 1}}),
       counts({{Tri, 7}, {Quad, 10}}),
       {0, 8, 0, 3, 0, 5},
       {{"block 1", 3, counts({{Hex, 1}})},
        {"block 10", 3, counts({{Pyramid, 1}})},
        {"block 100", 3, counts({{Tet, 1}})},
        {"block 1000", 3, counts({{Wedge, 1}})},
        {"side set 1", 2, counts({{Tri, 2}, {Quad, 3}})},
        {"side set 2", 2, counts({{Tri, 1}, {Quad, 2}})},
        {"side set 3", 2, counts({{Tri, 1}, {Quad, 2}})},
        {"side set 4", 2, counts({{Tri, 1}, {Quad, 1}})},
        {"side set 5", 2, counts({{Tri, 2}, {Quad, 2}})}}},
      {"ring_segments.exo",
       1608,
       counts({{Hex, 1110}}),
       counts({{Quad, 360}}),
       {-0.321394, 0.17101, 0.229813, 0.499961, -0.05, 0.05},
       {{"block 1", 3, counts({{Hex, 555}})},
        {"block 101", 3, counts({{Hex, 555}})},
        {"side set 402", 2, counts({{Quad, 50}})},
        {"side set 302", 2, counts({{Quad, 50}})},
        {"side set 300", 2, counts({{Quad, 10}})},
        {"side set 301", 2, counts({{Quad, 50}})},
        {"side set 250", 2, counts({{Quad, 70}})},
        {"side set 400", 2, counts({{Quad, 10}})},
        {"side set 401", 2, counts({{Quad, 50}})},
        {"side set 350", 2, counts({{Quad, 70}})}}},
      {"pipe_bend.cgns",
       1259,
       counts({{Tet, 154}, {Hex, 770}, {Wedge, 31}, {Pyramid, 333}}),
       counts({{Tri, 6}, {Quad, 614}}),
       {0, 2, 0, 2, 0, 1},
       {{"box", 3, counts({{Tet, 154}, {Hex, 770}, {Wedge, 31}, {Pyramid, 333}})},
        {"INLET", 2, counts({{Quad, 35}})},
        {"OUTLET", 2, counts({{Quad, 25}})},
        {"SYMMETRY", 2, counts({{Tri, 3}, {Quad, 207}})},
        {"WALL1", 2, counts({{Tri, 3}, {Quad, 98}})},
        {"WALL2", 2, counts({{Quad, 249}})}}},
  };
}

std::array<double, 6> bounds_of_used_nodes(MeshDatabase& database) {
  constexpr double far = std::numeric_limits<double>::max();
  std::array<double, 6> bounds{far, -far, far, -far, far, -far};
  for (std::uint32_t type = 1; type < 10; ++type)
    for (const auto element : database.elements(static_cast<ElementType>(type))) {
      std::uint64_t count = 0;
      database.get_element_node_count(element, &count);
      std::vector<MeshDatabase::Node> nodes(count);
      database.get_element_connectivity(element, &count, nodes.data());
      std::vector<double> xyz(3 * count);
      database.get_double_coordinates(count, nodes.data(), xyz.data());
      for (std::size_t i = 0; i < xyz.size(); ++i) {
        bounds[2 * (i % 3)] = std::min(bounds[2 * (i % 3)], xyz[i]);
        bounds[2 * (i % 3) + 1] = std::max(bounds[2 * (i % 3) + 1], xyz[i]);
      }
    }
  return bounds;
}

class RealFile : public testing::TestWithParam<FileRow> {};

TEST_P(RealFile, GivenAMeshOfTheWorld_WhenReading_ThenCountsOwnersAndBoundsAreItsOwn) {
  const FileRow& row = GetParam();

  const ReadMesh read(find_mesh(row.name));

  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(text_of(read.report.left_out), "");
  EXPECT_THAT(read.report.notices, testing::IsEmpty());
  EXPECT_EQ(read.report.nodes, row.nodes);
  EXPECT_THAT(read.report.elements, ElementsAreArray(row.elements));
  EXPECT_THAT(read.report.set_faces, ElementsAreArray(row.set_faces));
  EXPECT_EQ(find_fault(*read.database, read.report), "");
  const std::array<double, 6> bounds = bounds_of_used_nodes(*read.database);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(bounds[i], row.bounds[i], 1e-6) << i;
  ASSERT_EQ(read.owner_names().size(), row.owners.size());
  for (std::size_t i = 0; i < row.owners.size(); ++i) {
    SCOPED_TRACE(row.owners[i].name);
    EXPECT_EQ(read.owner_names()[i], row.owners[i].name);
    EXPECT_EQ(read.dimension(row.owners[i].name), row.owners[i].dimension);
    EXPECT_THAT(read.owner_elements(row.owners[i].name), ElementsAreArray(row.owners[i].elements));
  }
}

INSTANTIATE_TEST_SUITE_P(All, RealFile, testing::ValuesIn(real_files()), [](const auto& row) {
  std::string name = row.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

} // namespace
