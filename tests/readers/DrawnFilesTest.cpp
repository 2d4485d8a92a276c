// Real files from the reader to the grid that is drawn.

#include "group/GMeshGroup.h"
#include "model/GMeshModel.h"
#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCellType.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <cmath>
#include <map>

namespace {

using namespace reader_tests;
using namespace Tarn;

using CellCounts = std::map<int, vtkIdType>; // by VTK type

CellCounts count_cells(vtkDataSet& data) {
  CellCounts result;
  for (vtkIdType cell = 0; cell < data.GetNumberOfCells(); ++cell)
    ++result[data.GetCellType(cell)];
  return result;
}

double triangle_area(const double* a, const double* b, const double* c) {
  double ab[3], ac[3], normal[3];
  vtkMath::Subtract(b, a, ab);
  vtkMath::Subtract(c, a, ac);
  vtkMath::Cross(ab, ac, normal);
  return 0.5 * vtkMath::Norm(normal);
}

// Of all faces, on corner nodes. A quadrilateral counts with the mean of its two splits, so that it does not matter
// which corner comes first where it is warped.
double area_on_corners(vtkDataSet& data) {
  double area = 0;
  vtkNew<vtkIdList> points;
  for (vtkIdType cell = 0; cell < data.GetNumberOfCells(); ++cell) {
    data.GetCellPoints(cell, points);
    const int type = data.GetCellType(cell);
    const bool triangle = type == VTK_TRIANGLE || type == VTK_QUADRATIC_TRIANGLE || type == VTK_BIQUADRATIC_TRIANGLE;
    double p[4][3] = {};
    for (int corner = 0; corner < (triangle ? 3 : 4); ++corner)
      data.GetPoint(points->GetId(corner), p[corner]);
    area += triangle ? triangle_area(p[0], p[1], p[2])
                     : 0.5 * (triangle_area(p[0], p[1], p[2]) + triangle_area(p[0], p[2], p[3]) +
                              triangle_area(p[0], p[1], p[3]) + triangle_area(p[1], p[2], p[3]));
  }
  return area;
}

MeshVector all_solids(const MeshDatabase& database) {
  MeshVector mesh;
  for (const ElementType type : {Tet, Hex, Wedge, Pyramid})
    mesh.elements[type] = database.elements(type);
  return mesh;
}

// The solids as linear cells of VTK.
vtkNew<vtkUnstructuredGrid> corner_grid(MeshDatabase& database) {
  vtkNew<vtkUnstructuredGrid> grid;
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  std::map<std::uint64_t, vtkIdType> point_of_node;
  for (const MeshDatabase::Node node : database.nodes()) {
    double xyz[3];
    database.get_double_coordinates(1, &node, xyz);
    point_of_node[node.value] = points->InsertNextPoint(xyz);
  }
  grid->SetPoints(points);
  const std::pair<ElementType, int> kinds[] = {
      {Tet, VTK_TETRA}, {Hex, VTK_HEXAHEDRON}, {Wedge, VTK_WEDGE}, {Pyramid, VTK_PYRAMID}};
  for (const auto& [type, cell_type] : kinds)
    for (const MeshDatabase::Elem element : database.elements(type)) {
      std::uint64_t count = 0;
      std::vector<MeshDatabase::Node> nodes(8);
      database.get_element_vertices(element, &count, 8, nodes.data());
      std::vector<vtkIdType> ids;
      for (std::uint64_t i = 0; i < count; ++i)
        ids.push_back(point_of_node[nodes[i].value]);
      grid->InsertNextCell(cell_type, static_cast<vtkIdType>(count), ids.data());
    }
  return grid;
}

TEST(DrawnFiles, GivenTheSolidsOfARealFile_WhenDrawnAsOneGroup_ThenFacesAndAreaAreThoseOfItsSkin) {
  const struct {
    const char* name;
    CellCounts faces;
    double area;
  } rows[] = {
      {"notch_quadratic.vtu", {{VTK_QUADRATIC_TRIANGLE, 4}, {VTK_QUADRATIC_QUAD, 2520}}, 0.088401146},
      {"wheelset_x8.vtu", {{VTK_TRIANGLE, 26544}}, 4.6542892},
      {"cylinder_quadratic_tets.vtk", {{VTK_QUADRATIC_TRIANGLE, 726}}, 0.0068462836},
      {"bridge_beams.vtk", {{VTK_QUAD, 528}}, 78},
      {"four_kinds.e", {{VTK_TRIANGLE, 6}, {VTK_QUAD, 8}}, 104.33782},
      {"ring_segments.exo", {{VTK_QUAD, 884}}, 0.34547142},
      {"pipe_bend.cgns", {{VTK_TRIANGLE, 6}, {VTK_QUAD, 614}}, 13.884173},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const ReadMesh read(find_mesh(row.name));
    GMeshModel model(read.database.get());
    GMeshGroup group;
    group.set_dont_observe();

    group.set_mesh(nullptr, all_solids(*read.database), &model);
    vtkUnstructuredGrid* grid = group.get_2d_data();

    EXPECT_EQ(count_cells(*grid), row.faces);
    const double area = area_on_corners(*grid);
    EXPECT_NEAR(area, row.area, 2e-4 * row.area);
    vtkNew<vtkDataSetSurfaceFilter> peer;
    const auto solids = corner_grid(*read.database);
    peer->SetInputData(solids);
    peer->Update();
    EXPECT_EQ(peer->GetOutput()->GetNumberOfCells(), grid->GetNumberOfCells());
    EXPECT_NEAR(area, area_on_corners(*peer->GetOutput()), 1e-5 * row.area);
  }
}

TEST(DrawnFiles, GivenTheOwnersOfARealFile_WhenEachIsDrawn_ThenEachHasItsOwnSkin) {
  const struct {
    const char* name;
    std::vector<std::pair<std::string, CellCounts>> owners;
  } rows[] = {
      {"blow_shell.vtk", {{"blow_shell", {{VTK_VERTEX, 1}, {VTK_TRIANGLE, 928}, {VTK_QUAD, 129}}}}},
      {"bridge_beams.vtk", {{"mat_id 1", {{VTK_QUAD, 528}}}, {"mat_id 2", {{VTK_POLY_LINE, 25}}}}},
      {"four_kinds.e",
       {{"block 1", {{VTK_QUAD, 6}}},
        {"block 10", {{VTK_TRIANGLE, 4}, {VTK_QUAD, 1}}},
        {"block 100", {{VTK_TRIANGLE, 4}}},
        {"block 1000", {{VTK_TRIANGLE, 2}, {VTK_QUAD, 3}}},
        {"side set 1", {{VTK_TRIANGLE, 2}, {VTK_QUAD, 3}}},
        {"side set 2", {{VTK_TRIANGLE, 1}, {VTK_QUAD, 2}}},
        {"side set 3", {{VTK_TRIANGLE, 1}, {VTK_QUAD, 2}}},
        {"side set 4", {{VTK_TRIANGLE, 1}, {VTK_QUAD, 1}}},
        {"side set 5", {{VTK_TRIANGLE, 2}, {VTK_QUAD, 2}}}}},
      {"pipe_bend.cgns",
       {{"box", {{VTK_TRIANGLE, 6}, {VTK_QUAD, 614}}},
        {"INLET", {{VTK_QUAD, 35}}},
        {"OUTLET", {{VTK_QUAD, 25}}},
        {"SYMMETRY", {{VTK_TRIANGLE, 3}, {VTK_QUAD, 207}}},
        {"WALL1", {{VTK_TRIANGLE, 3}, {VTK_QUAD, 98}}},
        {"WALL2", {{VTK_QUAD, 249}}}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const ReadMesh read(find_mesh(row.name));
    GMeshModel model(read.database.get());
    ASSERT_EQ(read.owner_names().size(), row.owners.size());
    for (const auto& [name, cells] : row.owners) {
      SCOPED_TRACE(name);
      MeshVector mesh;
      model.get_mesh_to_draw(read.owner(name), mesh);

      model.add_mesh(read.owner(name), mesh, {}, 1, false);

      ASSERT_NE(model.get_mesh(read.owner(name)), nullptr);
      EXPECT_EQ(count_cells(*model.get_mesh(read.owner(name))->get_2d_data()), cells);
    }
  }
}

} // namespace
