#include "readers/OwnerArrays.h"
#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkIntArray.h>
#include <vtkLongLongArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridWriter.h>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAre;
using testing::ElementsAreArray;

// n edges in a row and a free node behind them.
vtkNew<vtkUnstructuredGrid> edge_row(int n) {
  vtkNew<vtkUnstructuredGrid> grid;
  vtkNew<vtkPoints> points;
  for (int i = 0; i < n + 2; ++i)
    points->InsertNextPoint(i, 0, 0);
  grid->SetPoints(points);
  for (vtkIdType i = 0; i < n; ++i) {
    const vtkIdType edge[] = {i, i + 1};
    grid->InsertNextCell(VTK_LINE, 2, edge);
  }
  return grid;
}

template <typename Array, typename T>
void add_cell_array(vtkUnstructuredGrid* grid, const char* name, const std::vector<T>& values) {
  vtkNew<Array> array;
  array->SetName(name);
  for (T value : values)
    array->InsertNextValue(value);
  grid->GetCellData()->AddArray(array);
}

void add_integers(vtkUnstructuredGrid* grid, const char* name, const std::vector<int>& values) {
  add_cell_array<vtkIntArray>(grid, name, values);
}

std::string write(const std::string& name, vtkUnstructuredGrid* grid) {
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetInputData(grid);
  writer->SetFileName(scratch(name).c_str());
  writer->Write();
  return scratch(name);
}

TEST(Owners, GivenAMaterialArray_WhenReading_ThenEachValueIsAnOwnerInRisingOrder) {
  const auto grid = edge_row(5);
  add_integers(grid, "mat_id", {7, -2, 7, 3, -2});
  const ReadMesh read(write("materials.vtu", grid));
  EXPECT_THAT(read.owner_names(), ElementsAre("mat_id -2", "mat_id 3", "mat_id 7"));
  EXPECT_EQ(read.owner_elements("mat_id -2")[Edge], 2u);
  EXPECT_EQ(read.owner_elements("mat_id 3")[Edge], 1u);
  EXPECT_EQ(read.owner_elements("mat_id 7")[Edge], 2u);
  EXPECT_THAT(read.element_ids(Edge), ElementsAre(1, 3, 2, 5, 4)); // owner by owner, numbered in file order
}

TEST(Owners, GivenAMaterialArray_WhenReading_ThenANodeBelongsToItsFirstElementAndAFreeOneToTheFirstOwner) {
  const auto grid = edge_row(2);
  add_integers(grid, "mat_id", {9, 4});
  const ReadMesh read(write("nodes.vtu", grid));
  const auto nodes = read.database->nodes();
  std::vector<SMeshOwnerType*> owners(nodes.size());
  read.database->get_node_owners(nodes.size(), nodes.data(), owners.data());
  SMeshOwnerType* four = read.owner("mat_id 4");
  SMeshOwnerType* nine = read.owner("mat_id 9");
  EXPECT_THAT(owners, ElementsAre(nine, nine, four, four));
  EXPECT_THAT(read.node_flags(), ElementsAre(0, 0, 0, testing::Ne(0)));
}

TEST(Owners, GivenNamesOfArrays_WhenAsked_ThenTheKnownOnesCountInAnyCase) {
  for (const char* name : {"mat_id", "MAT_ID", "Material", "MaterialIds", "part", "PartId", "block", "ObjectId",
                           "gmsh:physical", "CellEntityIds", "ElementBlockIds", "GroupIds", "zone", "PID"})
    EXPECT_TRUE(readers::is_owner_array(name)) << name;
  for (const char* name : {"temperature", "mat_id2", "", "matid_", "partition", "GlobalIds"})
    EXPECT_FALSE(readers::is_owner_array(name)) << name;
}

TEST(Owners, GivenSeveralKnownArrays_WhenReading_ThenTheFirstOfTheListCounts) {
  const auto grid = edge_row(2);
  add_integers(grid, "mat_id", {1, 2});
  add_integers(grid, "PartId", {5, 5});
  const ReadMesh read(write("several.vtu", grid));
  EXPECT_THAT(read.owner_names(), ElementsAre("PartId 5"));
}

TEST(Owners, GivenAnArrayOfRealsOrOfPairs_WhenReading_ThenItIsNoOwner) {
  const auto reals = edge_row(2);
  add_cell_array<vtkDoubleArray, double>(reals, "mat_id", {1, 2});
  EXPECT_THAT(ReadMesh(write("reals.vtu", reals)).owner_names(), ElementsAre("reals"));

  const auto pairs = edge_row(2);
  vtkNew<vtkIntArray> array;
  array->SetName("mat_id");
  array->SetNumberOfComponents(2);
  array->SetNumberOfTuples(2);
  array->Fill(1);
  pairs->GetCellData()->AddArray(array);
  EXPECT_THAT(ReadMesh(write("pairs.vtu", pairs)).owner_names(), ElementsAre("pairs"));
}

TEST(Owners, GivenValuesThatRealsCannotTellApart_WhenReading_ThenTheyAreTwoOwners) {
  const auto grid = edge_row(2);
  const long long large = 9007199254740993;
  add_cell_array<vtkLongLongArray, long long>(grid, "mat_id", {large, large - 1});
  EXPECT_THAT(ReadMesh(write("large.vtu", grid)).owner_names(),
              ElementsAre("mat_id 9007199254740992", "mat_id 9007199254740993"));
}

TEST(Owners, GivenTooManyValues_WhenReading_ThenThereIsOneOwnerAndANotice) {
  const int n = 65537;
  const auto grid = edge_row(n);
  std::vector<int> values(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i)
    values[static_cast<std::size_t>(i)] = i;
  add_integers(grid, "part", values);
  const ReadMesh read(write("many.vtu", grid));
  EXPECT_THAT(read.owner_names(), ElementsAre("many"));
  EXPECT_THAT(read.report.notices, ElementsAre("cell array part has more than 65536 values: not taken for owners"));
}

TEST(Owners, GivenABlockWithMaterials_WhenReading_ThenOwnersAreBlockAndMaterial) {
  const auto two = edge_row(2);
  add_integers(two, "mat_id", {1, 2});
  write("two.vtu", two);
  const auto one = edge_row(2);
  add_integers(one, "mat_id", {4, 4});
  write("one.vtu", one);
  const std::string path =
      write_file("materials.vtm", "<VTKFile type=\"vtkMultiBlockDataSet\"><vtkMultiBlockDataSet>"
                                  "<DataSet name=\"a\" file=\"two.vtu\"/><DataSet name=\"b\" file=\"one.vtu\"/>"
                                  "</vtkMultiBlockDataSet></VTKFile>");
  EXPECT_THAT(ReadMesh(path).owner_names(), ElementsAre("a/mat_id 1", "a/mat_id 2", "b"));
}

TEST(Owners, GivenGroupByNone_WhenReading_ThenEverythingIsUnderOneOwnerCalledByTheFile) {
  readers::Options options;
  options.group_by = readers::GroupBy::None;
  options.owner_prefix = "left/";
  const ReadMesh read(find_mesh("four_kinds.e"), options);
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.owner_names(), ElementsAre("left/four_kinds"));
  EXPECT_EQ(read.dimension("left/four_kinds"), MeshDatabase::AnyDimension);
  EXPECT_EQ(read.owner_nodes("left/four_kinds"), 13u);
  EXPECT_THAT(read.owner_elements("left/four_kinds"),
              ElementsAreArray(counts({{Tri, 7}, {Quad, 10}, {Tet, 1}, {Hex, 1}, {Wedge, 1}, {Pyramid, 1}})));
  EXPECT_THAT(read.report.set_faces, ElementsAreArray(counts({{Tri, 7}, {Quad, 10}})));
  EXPECT_EQ(find_fault(*read.database, read.report), "");
}

TEST(Owners, GivenAPrefix_WhenReading_ThenEveryOwnerHasIt) {
  readers::Options options;
  options.owner_prefix = "bridge/";
  EXPECT_THAT(ReadMesh(find_mesh("bridge_beams.vtk"), options).owner_names(),
              ElementsAre("bridge/mat_id 1", "bridge/mat_id 2"));
}

TEST(Owners, GivenTwoFiles_WhenReadIntoOneDatabase_ThenBothAreThere) {
  ReadMesh read(find_mesh("four_kinds.e"));
  readers::Options options;
  options.owner_prefix = "ring/";

  const readers::Report report = readers::read_mesh(find_mesh("ring_segments.exo"), *read.database, options);

  ASSERT_EQ(report.error, "");
  EXPECT_EQ(report.nodes, 1608u);
  EXPECT_EQ(read.database->node_count(), 13u + 1608u);
  EXPECT_EQ(read.owner_elements("ring/block 101")[Hex], 555u);
  EXPECT_EQ(read.owner_elements("block 1")[Hex], 1u);
  EXPECT_THAT(report.notices, ElementsAre("node numbers of the file are not unique, positive, below 2^31 and unused: "
                                          "numbered from 14",
                                          "element numbers of the file are not unique, positive, below 2^31 and "
                                          "unused: numbered from 22"));
  EXPECT_EQ(read.global_ids(Hex).back(), 1110);
}

} // namespace
