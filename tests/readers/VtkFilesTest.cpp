#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataSetAttributes.h>
#include <vtkDoubleArray.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataWriter.h>
#include <vtkRectilinearGrid.h>
#include <vtkRectilinearGridWriter.h>
#include <vtkStructuredGrid.h>
#include <vtkStructuredGridWriter.h>
#include <vtkStructuredPointsWriter.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridWriter.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLRectilinearGridWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <numeric>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAre;
using testing::ElementsAreArray;

void add_points(vtkPointSet* data, int count) {
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (int i = 0; i < count; ++i)
    points->InsertNextPoint(i, 0.5 * i, -i);
  data->SetPoints(points);
}

// One cell on points 0, 1, 2 ...
vtkNew<vtkUnstructuredGrid> one_cell(int type, int point_count) {
  vtkNew<vtkUnstructuredGrid> grid;
  add_points(grid, point_count);
  std::vector<vtkIdType> points(static_cast<std::size_t>(point_count));
  std::iota(points.begin(), points.end(), 0);
  grid->InsertNextCell(type, point_count, points.data());
  return grid;
}

template <typename Writer, typename Data> std::string write(const std::string& name, Data* data) {
  vtkNew<Writer> writer;
  writer->SetInputData(data);
  writer->SetFileName(scratch(name).c_str());
  writer->Write();
  return scratch(name);
}

template <typename Data> std::string write_vtu(const std::string& name, Data* grid) {
  return write<vtkXMLUnstructuredGridWriter>(name, grid);
}

struct CellRow {
  const char* name;
  int vtk_type;
  int points;
  ElementType type;
  std::vector<std::vector<int>> elements; ///< connectivity of each; empty: 0, 1, 2 ...
};

const CellRow drawn_cells[] = {
    {"vertex", VTK_VERTEX, 1, OneNode, {}},
    {"line", VTK_LINE, 2, Edge, {}},
    {"triangle", VTK_TRIANGLE, 3, Tri, {}},
    {"quad", VTK_QUAD, 4, Quad, {}},
    {"tetra", VTK_TETRA, 4, Tet, {}},
    {"hexahedron", VTK_HEXAHEDRON, 8, Hex, {}},
    {"wedge", VTK_WEDGE, 6, Wedge, {}},
    {"pyramid", VTK_PYRAMID, 5, Pyramid, {}},
    {"quadratic edge", VTK_QUADRATIC_EDGE, 3, Edge, {}},
    {"quadratic triangle", VTK_QUADRATIC_TRIANGLE, 6, Tri, {}},
    {"biquadratic triangle", VTK_BIQUADRATIC_TRIANGLE, 7, Tri, {}},
    {"quadratic quad", VTK_QUADRATIC_QUAD, 8, Quad, {}},
    {"biquadratic quad", VTK_BIQUADRATIC_QUAD, 9, Quad, {}},
    {"quadratic tetra", VTK_QUADRATIC_TETRA, 10, Tet, {}},
    {"quadratic hexahedron", VTK_QUADRATIC_HEXAHEDRON, 20, Hex, {}},
    {"triquadratic hexahedron", VTK_TRIQUADRATIC_HEXAHEDRON, 27, Hex, {}},
    {"quadratic wedge", VTK_QUADRATIC_WEDGE, 15, Wedge, {}},
    {"biquadratic wedge", VTK_BIQUADRATIC_QUADRATIC_WEDGE, 18, Wedge, {}},
    {"quadratic pyramid", VTK_QUADRATIC_PYRAMID, 13, Pyramid, {}},
    {"pixel", VTK_PIXEL, 4, Quad, {{0, 1, 3, 2}}},
    {"voxel", VTK_VOXEL, 8, Hex, {{0, 1, 3, 2, 4, 5, 7, 6}}},
    {"triangle as polygon", VTK_POLYGON, 3, Tri, {}},
    {"quad as polygon", VTK_POLYGON, 4, Quad, {}},
    {"polyline", VTK_POLY_LINE, 4, Edge, {{0, 1}, {1, 2}, {2, 3}}},
    {"strip", VTK_TRIANGLE_STRIP, 5, Tri, {{0, 1, 2}, {2, 1, 3}, {2, 3, 4}}},
    {"poly-vertex", VTK_POLY_VERTEX, 3, OneNode, {{0}, {1}, {2}}},
};

void expect_elements(const ReadMesh& read, const CellRow& row) {
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(text_of(read.report.left_out), "");
  std::vector<std::vector<int>> elements = row.elements;
  if (elements.empty()) {
    elements.emplace_back(static_cast<std::size_t>(row.points));
    std::iota(elements[0].begin(), elements[0].end(), 0);
  }
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{row.type, elements.size()}})));
  for (std::size_t i = 0; i < elements.size(); ++i)
    EXPECT_THAT(read.connectivity(row.type, i), ElementsAreArray(elements[i]));
  ASSERT_EQ(read.database->node_count(), static_cast<std::uint64_t>(row.points));
  const std::vector<double> xyz = read.coordinates();
  for (std::size_t i = 0; i < xyz.size() / 3; ++i) {
    EXPECT_EQ(xyz[3 * i], double(i));
    EXPECT_EQ(xyz[3 * i + 1], 0.5 * double(i));
    EXPECT_EQ(xyz[3 * i + 2], -double(i));
  }
}

TEST(VtkFiles, GivenOneCellOfAType_WhenReadFromXml_ThenItIsTheElementInCanonicalOrder) {
  for (const CellRow& row : drawn_cells) {
    SCOPED_TRACE(row.name);
    const auto grid = one_cell(row.vtk_type, row.points);
    expect_elements(ReadMesh(write_vtu("cell.vtu", grid.Get())), row);
  }
}

TEST(VtkFiles, GivenOneCellOfAType_WhenReadFromLegacy_ThenItIsTheElementInCanonicalOrder) {
  for (const CellRow& row : drawn_cells)
    for (const int version : {42, 51})
      for (const int file_type : {VTK_ASCII, VTK_BINARY}) {
        SCOPED_TRACE(row.name);
        const auto grid = one_cell(row.vtk_type, row.points);
        vtkNew<vtkUnstructuredGridWriter> writer;
        writer->SetInputData(grid);
        writer->SetFileName(scratch("cell.vtk").c_str());
        writer->SetFileVersion(version);
        writer->SetFileType(file_type);
        writer->Write();
        expect_elements(ReadMesh(scratch("cell.vtk")), row);
      }
}

TEST(VtkFiles, GivenACellThatCannotBeDrawn_WhenReading_ThenItIsCountedAndTheOthersAreThere) {
  const struct {
    int vtk_type;
    int points;
    const char* reason;
  } rows[] = {
      {VTK_POLYGON, 5, "1 polygons with more than 4 corners"},
      {VTK_PENTAGONAL_PRISM, 10, "1 pentagonal prisms"},
      {VTK_HEXAGONAL_PRISM, 12, "1 hexagonal prisms"},
      {VTK_QUADRATIC_POLYGON, 6, "1 quadratic polygons"},
      {VTK_TRIQUADRATIC_PYRAMID, 19, "1 pyramids with 19 nodes"},
      {VTK_QUADRATIC_LINEAR_QUAD, 6, "1 quadrilaterals with 6 nodes"},
      {VTK_QUADRATIC_LINEAR_WEDGE, 12, "1 wedges with 12 nodes"},
      {VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON, 24, "1 hexahedra with 24 nodes"},
      {VTK_CUBIC_LINE, 4, "1 cubic edges"},
      {VTK_CONVEX_POINT_SET, 5, "1 convex point sets"},
      {VTK_LAGRANGE_TRIANGLE, 10, "1 Lagrange elements of higher order"},
      {VTK_BEZIER_TRIANGLE, 10, "1 Bezier elements"},
      {VTK_EMPTY_CELL, 0, "1 empty cells"},
      {VTK_POLY_LINE, 1, "1 cells with a wrong number of points for their type"},
      {VTK_TRIANGLE_STRIP, 2, "1 cells with a wrong number of points for their type"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.reason);
    const auto grid = one_cell(row.vtk_type, std::max(row.points, 3));
    vtkNew<vtkUnstructuredGrid> both;
    both->SetPoints(grid->GetPoints());
    std::vector<vtkIdType> points(static_cast<std::size_t>(row.points));
    std::iota(points.begin(), points.end(), 0);
    both->InsertNextCell(row.vtk_type, row.points, points.data());
    const vtkIdType triangle[] = {0, 1, 2};
    both->InsertNextCell(VTK_TRIANGLE, 3, triangle);

    const ReadMesh read(write_vtu("undrawn.vtu", both.Get()));

    ASSERT_EQ(read.report.error, "");
    EXPECT_EQ(text_of(read.report.left_out), row.reason);
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 1}})));
    EXPECT_THAT(read.element_ids(Tri), ElementsAre(1));
  }
}

TEST(VtkFiles, GivenAPolyhedron_WhenReading_ThenItIsCounted) {
  vtkNew<vtkUnstructuredGrid> grid;
  add_points(grid, 4);
  const vtkIdType faces[] = {3, 0, 1, 2, 3, 0, 1, 3, 3, 1, 2, 3, 3, 0, 2, 3};
  grid->InsertNextCell(VTK_POLYHEDRON, 4, faces);
  const vtkIdType tetra[] = {0, 1, 2, 3};
  grid->InsertNextCell(VTK_TETRA, 4, tetra);
  const ReadMesh read(write_vtu("polyhedron.vtu", grid.Get()));
  EXPECT_EQ(text_of(read.report.left_out), "1 polyhedra");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tet, 1}})));
}

TEST(VtkFiles, GivenADegenerateCell_WhenReading_ThenItIsKept) {
  vtkNew<vtkUnstructuredGrid> grid;
  add_points(grid, 3);
  const vtkIdType points[] = {0, 1, 1, 2};
  grid->InsertNextCell(VTK_QUAD, 4, points);
  const ReadMesh read(write_vtu("degenerate.vtu", grid.Get()));
  EXPECT_THAT(read.connectivity(Quad, 0), ElementsAre(0, 1, 1, 2));
}

TEST(VtkFiles, GivenPolyData_WhenReading_ThenVerticesLinesPolygonsAndStripsAreElements) {
  vtkNew<vtkPolyData> data;
  add_points(data, 8);
  data->AllocateExact(10, 30);
  const vtkIdType points[] = {0, 1, 2, 3, 4, 5, 6, 7};
  data->InsertNextCell(VTK_VERTEX, 1, points);
  data->InsertNextCell(VTK_POLY_VERTEX, 2, points);
  data->InsertNextCell(VTK_LINE, 2, points);
  data->InsertNextCell(VTK_POLY_LINE, 3, points);
  data->InsertNextCell(VTK_TRIANGLE, 3, points);
  data->InsertNextCell(VTK_QUAD, 4, points);
  data->InsertNextCell(VTK_POLYGON, 5, points);
  data->InsertNextCell(VTK_TRIANGLE_STRIP, 4, points);
  for (const std::string& path :
       {write<vtkXMLPolyDataWriter>("poly.vtp", data.Get()), write<vtkPolyDataWriter>("poly.vtk", data.Get())}) {
    const ReadMesh read(path);
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{OneNode, 3}, {Edge, 3}, {Tri, 3}, {Quad, 1}})));
    EXPECT_EQ(text_of(read.report.left_out), "1 polygons with more than 4 corners");
  }
}

TEST(VtkFiles, GivenStructuredKinds_WhenReading_ThenTheyBecomeHexahedraInCanonicalOrder) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 2, 2);
  image->SetOrigin(1, 2, 3);
  image->SetSpacing(0.5, 1, 2);
  vtkNew<vtkStructuredGrid> curved;
  curved->SetDimensions(3, 2, 2);
  vtkNew<vtkPoints> points;
  for (vtkIdType i = 0; i < 12; ++i)
    points->InsertNextPoint(image->GetPoint(i));
  curved->SetPoints(points);
  vtkNew<vtkRectilinearGrid> rectilinear;
  rectilinear->SetDimensions(3, 2, 2);
  const auto axis = [](std::initializer_list<double> values) {
    auto array = vtkSmartPointer<vtkDoubleArray>::New();
    for (double value : values)
      array->InsertNextValue(value);
    return array;
  };
  rectilinear->SetXCoordinates(axis({1, 1.5, 2}));
  rectilinear->SetYCoordinates(axis({2, 3}));
  rectilinear->SetZCoordinates(axis({3, 5}));
  for (const std::string& path :
       {write<vtkXMLImageDataWriter>("s.vti", image.Get()), write<vtkXMLStructuredGridWriter>("s.vts", curved.Get()),
        write<vtkXMLRectilinearGridWriter>("s.vtr", rectilinear.Get()),
        write<vtkStructuredPointsWriter>("points.vtk", image.Get()),
        write<vtkStructuredGridWriter>("grid.vtk", curved.Get()),
        write<vtkRectilinearGridWriter>("rectilinear.vtk", rectilinear.Get())}) {
    SCOPED_TRACE(path);
    const ReadMesh read(path);
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Hex, 2}})));
    EXPECT_THAT(read.connectivity(Hex, 1), ElementsAre(1, 2, 5, 4, 7, 8, 11, 10));
    const std::vector<double> xyz = read.coordinates();
    ASSERT_EQ(xyz.size(), 36u);
    EXPECT_THAT(std::vector<double>(xyz.end() - 3, xyz.end()), ElementsAre(2, 3, 5));
  }
}

TEST(VtkFiles, GivenASheetOfImageData_WhenReading_ThenItIsQuadrilaterals) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 2, 1);
  const ReadMesh read(write<vtkXMLImageDataWriter>("sheet.vti", image.Get()));
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Quad, 2}})));
  EXPECT_THAT(read.connectivity(Quad, 0), ElementsAre(0, 1, 4, 3));
}

TEST(VtkFiles, GivenGhostCells_WhenReading_ThenTheyAreLeftOut) {
  vtkNew<vtkUnstructuredGrid> grid;
  add_points(grid, 4);
  const vtkIdType edges[] = {0, 1, 2, 3};
  for (int i = 0; i < 3; ++i)
    grid->InsertNextCell(VTK_LINE, 2, edges + i);
  vtkUnsignedCharArray* ghosts = grid->AllocateCellGhostArray();
  ghosts->SetValue(0, vtkDataSetAttributes::DUPLICATECELL);
  ghosts->SetValue(2, vtkDataSetAttributes::HIDDENCELL);
  const ReadMesh read(write_vtu("ghosts.vtu", grid.Get()));
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Edge, 1}})));
  EXPECT_THAT(read.connectivity(Edge, 0), ElementsAre(1, 2));
  EXPECT_EQ(text_of(read.report.left_out), "2 ghost and blanked cells");
}

TEST(VtkFiles, GivenPointsWithoutCells_WhenReading_ThenTheyAreNodesToBeDrawn) {
  vtkNew<vtkUnstructuredGrid> grid;
  add_points(grid, 3);
  const ReadMesh read(write_vtu("cloud.vtu", grid.Get()));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(read.report.nodes, 3u);
  EXPECT_THAT(read.node_flags(), testing::Each(testing::Ne(0)));
  EXPECT_EQ(read.owner_nodes("cloud"), 3u);
}

TEST(VtkFiles, GivenGlobalIds_WhenReading_ThenTheyAreTheIds) {
  const auto grid = one_cell(VTK_TRIANGLE, 3);
  vtkNew<vtkIdTypeArray> points;
  vtkNew<vtkIdTypeArray> cells;
  for (vtkIdType id : {30, 10, 20})
    points->InsertNextValue(id);
  cells->InsertNextValue(500);
  points->SetName("point numbers");
  cells->SetName("cell numbers");
  grid->GetPointData()->SetGlobalIds(points);
  grid->GetCellData()->SetGlobalIds(cells);
  for (const std::string& path :
       {write_vtu("ids.vtu", grid.Get()), write<vtkUnstructuredGridWriter>("ids.vtk", grid.Get())}) {
    const ReadMesh read(path);
    EXPECT_THAT(read.node_ids(), ElementsAre(30, 10, 20));
    EXPECT_THAT(read.element_ids(Tri), ElementsAre(500));
    EXPECT_THAT(read.global_ids(Tri), ElementsAre(500));
  }
}

TEST(VtkFiles, GivenAMultiBlockFile_WhenReading_ThenBlocksAreOwnersByName) {
  const auto triangle = one_cell(VTK_TRIANGLE, 3);
  const auto hexahedron = one_cell(VTK_HEXAHEDRON, 8);
  write_vtu("triangle.vtu", triangle.Get());
  write_vtu("hexahedron.vtu", hexahedron.Get());
  const std::string path =
      write_file("blocks.vtm",
                 "<?xml version=\"1.0\"?>\n<!-- <DataSet file=\"no.vtu\"/> -->\n<VTKFile type=\"vtkMultiBlockDataSet\" "
                 "version=\"1.0\"><vtkMultiBlockDataSet>"
                 "<DataSet index=\"0\" name=\"a &amp; b\" file=\"triangle.vtu\"/>"
                 "<Block index=\"1\" name=\"outer\"><Block><DataSet index=\"0\" file=\"hexahedron.vtu\"/></Block>"
                 "<DataSet index=\"1\" name=\"inner\" file=\"triangle.vtu\"/></Block>"
                 "<DataSet index=\"2\"/><DataSet index=\"3\" file=\"triangle.vtu\"/>"
                 "</vtkMultiBlockDataSet></VTKFile>\n");

  const ReadMesh read(path);

  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.owner_names(), ElementsAre("a & b", "outer", "inner", "block 4"));
  EXPECT_EQ(read.report.nodes, 3u + 8u + 3u + 3u);
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 3}, {Hex, 1}})));
  EXPECT_THAT(read.connectivity(Tri, 1), ElementsAre(11, 12, 13));
  EXPECT_EQ(read.dimension("outer"), 3u);
  EXPECT_EQ(read.dimension("inner"), 2u);
  EXPECT_EQ(find_fault(*read.database, read.report), "");
}

TEST(VtkFiles, GivenUpperCaseExtensions_WhenReading_ThenTheFormatIsKnown) {
  const auto grid = one_cell(VTK_TRIANGLE, 3);
  EXPECT_EQ(ReadMesh(write_vtu("UPPER.VTU", grid.Get())).report.error, "");
}

TEST(Formats, GivenTheList_WhenAsked_ThenEveryExtensionIsThereOnce) {
  std::vector<std::string> extensions;
  for (const readers::Format& format : readers::formats()) {
    EXPECT_FALSE(format.name.empty());
    extensions.insert(extensions.end(), format.extensions.begin(), format.extensions.end());
  }
  EXPECT_THAT(extensions, testing::UnorderedElementsAre(".vtu", ".vtp", ".vts", ".vtr", ".vti", ".vtm", ".vtk", ".e",
                                                        ".ex2", ".exo", ".g", ".cgns", ".stl", ".ply", ".obj"));
}

} // namespace
