#include "readers/SampleMesh.h"

#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCellSizeFilter.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

#include <cmath>
#include <map>
#include <set>

namespace {

using namespace Tarn;
using reader_tests::counts;

TEST(SampleMesh, GivenAnEmptyDatabase_WhenBuilding_ThenEveryKindIsThere) {
  MeshDatabase database;

  const readers::Report report = readers::build_sample_mesh(database);

  ASSERT_EQ(report.error, "");
  EXPECT_THAT(report.elements, testing::ElementsAreArray(counts({{OneNode, 27},
                                                                 {Edge, 2 * 16},
                                                                 {Tri, 3 * 8},
                                                                 {Quad, 3 * 4},
                                                                 {Tet, 2 * 48},
                                                                 {Hex, 3 * 8},
                                                                 {Wedge, 3 * 16},
                                                                 {Pyramid, 3 * 6},
                                                                 {Superelement, 1}})));
  EXPECT_EQ(reader_tests::find_fault(database, report), "");
}

TEST(SampleMesh, GivenTheSample_WhenNodesAreCounted_ThenEveryNumberOfNodesOfAKindOccurs) {
  MeshDatabase database;
  readers::build_sample_mesh(database);
  std::map<ElementType, std::set<std::uint64_t>> found;
  for (std::uint32_t type = 1; type < 10; ++type)
    for (const auto element : database.elements(static_cast<ElementType>(type))) {
      std::uint64_t count = 0;
      database.get_element_node_count(element, &count);
      found[static_cast<ElementType>(type)].insert(count);
    }
  using Counts = std::set<std::uint64_t>;
  EXPECT_EQ(found[OneNode], Counts({1}));
  EXPECT_EQ(found[Edge], Counts({2, 3}));
  EXPECT_EQ(found[Tri], Counts({3, 6, 7}));
  EXPECT_EQ(found[Quad], Counts({4, 8, 9}));
  EXPECT_EQ(found[Tet], Counts({4, 10}));
  EXPECT_EQ(found[Hex], Counts({8, 20, 27}));
  EXPECT_EQ(found[Wedge], Counts({6, 15, 18}));
  EXPECT_EQ(found[Pyramid], Counts({5, 13, 14}));
  EXPECT_EQ(found[Superelement], Counts({13}));
}

// In a wrong order another node would be nearer.
TEST(SampleMesh, GivenTheSample_WhenFurtherNodesAreLookedAt_ThenEachIsTheNearestToTheMeanOfItsCorners) {
  MeshDatabase database;
  readers::build_sample_mesh(database);
  struct Row {
    ElementType type;
    std::size_t place;
    std::vector<std::size_t> corners;
  };
  const Row rows[] = {
      {Edge, 2, {0, 1}},         {Tri, 4, {1, 2}},
      {Tri, 6, {0, 1, 2}},       {Quad, 7, {3, 0}},
      {Quad, 8, {0, 1, 2, 3}},   {Tet, 6, {2, 0}},
      {Tet, 9, {2, 3}},          {Hex, 11, {3, 0}},
      {Hex, 12, {4, 5}},         {Hex, 16, {0, 4}},
      {Hex, 19, {3, 7}},         {Hex, 20, {0, 3, 4, 7}},
      {Hex, 21, {1, 2, 5, 6}},   {Hex, 22, {0, 1, 4, 5}},
      {Hex, 23, {2, 3, 6, 7}},   {Hex, 24, {0, 1, 2, 3}},
      {Hex, 25, {4, 5, 6, 7}},   {Wedge, 8, {2, 0}},
      {Wedge, 9, {3, 4}},        {Wedge, 14, {2, 5}},
      {Wedge, 15, {0, 1, 3, 4}}, {Wedge, 16, {1, 2, 4, 5}},
      {Wedge, 17, {0, 2, 3, 5}}, {Pyramid, 8, {3, 0}},
      {Pyramid, 9, {0, 4}},      {Pyramid, 13, {0, 1, 2, 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::to_string(row.type) + " node " + std::to_string(row.place));
    int checked = 0;
    for (const auto element : database.elements(row.type)) {
      std::uint64_t count = 27;
      std::vector<MeshDatabase::Node> nodes(27);
      database.get_element_connectivity(element, &count, nodes.data());
      if (count <= row.place) continue;
      std::vector<double> xyz(3 * count);
      database.get_double_coordinates(count, nodes.data(), xyz.data());
      double mean[3] = {};
      for (std::size_t corner : row.corners)
        for (std::size_t axis = 0; axis < 3; ++axis)
          mean[axis] += xyz[3 * corner + axis] / double(row.corners.size());
      const auto distance = [&](std::size_t node) {
        return std::hypot(xyz[3 * node] - mean[0], xyz[3 * node + 1] - mean[1], xyz[3 * node + 2] - mean[2]);
      };
      for (std::size_t node = 0; node < count; ++node)
        EXPECT_TRUE(node == row.place || distance(row.place) < distance(node)) << node;
      ++checked;
    }
    EXPECT_GT(checked, 0);
  }
}

TEST(SampleMesh, GivenTheSample_WhenSolidsAreMeasured_ThenNoneIsInsideOut) {
  MeshDatabase database;
  readers::build_sample_mesh(database);
  vtkNew<vtkUnstructuredGrid> grid;
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  const std::pair<ElementType, int> kinds[] = {
      {Tet, VTK_TETRA}, {Hex, VTK_HEXAHEDRON}, {Wedge, VTK_WEDGE}, {Pyramid, VTK_PYRAMID}};
  for (const auto& [type, cell_type] : kinds)
    for (const auto element : database.elements(type)) {
      std::uint64_t count = 0;
      std::vector<MeshDatabase::Node> nodes(8);
      database.get_element_vertices(element, &count, 8, nodes.data());
      std::vector<vtkIdType> ids;
      for (std::uint64_t i = 0; i < count; ++i) {
        double xyz[3];
        database.get_double_coordinates(1, &nodes[i], xyz);
        ids.push_back(points->InsertNextPoint(xyz));
      }
      grid->InsertNextCell(cell_type, static_cast<vtkIdType>(count), ids.data());
    }
  grid->SetPoints(points);
  vtkNew<vtkCellSizeFilter> sizes;
  sizes->SetInputData(grid);
  sizes->Update();
  auto* volumes =
      vtkDoubleArray::SafeDownCast(vtkDataSet::SafeDownCast(sizes->GetOutput())->GetCellData()->GetArray("Volume"));
  ASSERT_EQ(volumes->GetNumberOfTuples(), 2 * 48 + 3 * 8 + 3 * 16 + 3 * 6);
  for (vtkIdType i = 0; i < volumes->GetNumberOfTuples(); ++i)
    EXPECT_GT(volumes->GetValue(i), 0) << i;
}

TEST(SampleMesh, GivenTheSample_WhenOwnersAreListed_ThenEachBlockIsOneAndFreeNodesAreDrawn) {
  MeshDatabase database;
  readers::build_sample_mesh(database);
  std::vector<std::string> names;
  for (auto* owner : database.owners())
    names.push_back(database.owner_name(owner));
  EXPECT_THAT(names, testing::ElementsAre("one-nodes", "superelement", "edges", "edges quadratic", "triangles",
                                          "triangles quadratic", "triangles with centres", "quadrilaterals",
                                          "quadrilaterals quadratic", "quadrilaterals with centres", "tetrahedra",
                                          "tetrahedra quadratic", "hexahedra", "hexahedra quadratic",
                                          "hexahedra with centres", "wedges", "wedges quadratic", "wedges with centres",
                                          "pyramids", "pyramids quadratic", "pyramids with centres", "nodes"));
  std::vector<char> flags(database.node_count());
  const auto nodes = database.nodes();
  database.get_node_flags(nodes.size(), nodes.data(), flags.data());
  EXPECT_EQ(std::count_if(flags.begin(), flags.end(), [](char flag) { return flag != 0; }), 9);
}

} // namespace
