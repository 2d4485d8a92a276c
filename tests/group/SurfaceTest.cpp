#include "group/Surface.h"

#include "group/SequentialFilter.h"
#include "tests/group/GridInspection.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataArray.h>
#include <vtkGeometryFilter.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <random>

namespace {

using namespace group_test;

vtkSmartPointer<vtkPolyData> filtered(vtkUnstructuredGrid* grid) {
  return run_sequential(vtkNew<vtkGeometryFilter>().Get(), grid);
}

/// Grids such as groups have: every point is used, and points and cells carry handles and colours.
class RandomGrid {
public:
  explicit RandomGrid(unsigned seed) : random_(seed) {}

  vtkSmartPointer<vtkUnstructuredGrid> make(const std::vector<int>& types, int cell_count, bool in_order) {
    auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
    vtkNew<vtkPoints> points;
    if (roll(3) == 0) points->SetDataTypeToDouble();
    grid->Allocate(cell_count);
    for (int cell = 0; cell < cell_count; ++cell) {
      const auto i = static_cast<std::size_t>(in_order ? cell * static_cast<int>(types.size()) / cell_count
                                                       : roll(static_cast<int>(types.size())));
      add_cell(types[i], grid, points);
    }
    grid->SetPoints(points);
    add_arrays(grid);
    if (roll(2) == 0) grid->GetCells()->ConvertTo32BitStorage();
    return grid;
  }

private:
  int roll(int sides) { return static_cast<int>(random_() % static_cast<unsigned>(sides)); }

  int size_of(int type) {
    switch (type) {
    case VTK_VERTEX:
      return 1;
    case VTK_LINE:
      return 2;
    case VTK_TRIANGLE:
      return 3;
    case VTK_QUAD:
      return 4;
    case VTK_QUADRATIC_TRIANGLE:
      return 6;
    case VTK_QUADRATIC_QUAD:
      return 8;
    case VTK_POLYGON:
      return 3 + roll(4);
    default:
      return 2 + roll(4);
    }
  }

  void add_cell(int type, vtkUnstructuredGrid* grid, vtkPoints* points) {
    std::vector<vtkIdType> ids;
    for (int i = size_of(type); i > 0; --i) {
      const vtkIdType known = points->GetNumberOfPoints();
      const vtkIdType id = roll(static_cast<int>(known) + 3);
      ids.push_back(id < known ? id : points->InsertNextPoint(roll(9), roll(9), roll(9)));
    }
    grid->InsertNextCell(type, static_cast<vtkIdType>(ids.size()), ids.data());
  }

  void add_arrays(vtkUnstructuredGrid* grid) {
    add_arrays(grid->GetPointData(), "NodeIds", grid->GetNumberOfPoints());
    add_arrays(grid->GetCellData(), "ElemIds", grid->GetNumberOfCells());
  }

  void add_arrays(vtkDataSetAttributes* data, const char* name, vtkIdType count) {
    vtkNew<vtkTypeUInt64Array> handles;
    handles->SetName(name);
    for (vtkIdType i = 0; i < count; ++i)
      handles->InsertNextValue(random_() | vtkTypeUInt64(1) << 60);
    data->AddArray(handles);
    if (roll(4) == 0) return;
    vtkNew<vtkUnsignedCharArray> colors;
    colors->SetName("Color");
    colors->SetNumberOfComponents(4);
    for (vtkIdType i = 0; i < 4 * count; ++i)
      colors->InsertNextValue(static_cast<unsigned char>(roll(256)));
    data->SetScalars(colors);
  }

  std::mt19937_64 random_;
};

// The cells of an unshrunk grid in its order, then those of a shrunk one in its order.
const std::vector<int> volume_types = {VTK_VERTEX, VTK_POLY_LINE, VTK_VERTEX, VTK_POLY_VERTEX, VTK_TRIANGLE, VTK_QUAD};
const std::vector<int> shrunk_types = {VTK_VERTEX, VTK_LINE, VTK_TRIANGLE, VTK_QUAD, VTK_POLYGON, VTK_POLY_VERTEX};

TEST(Surface, GivenRandomLinearGrids_WhenCompared_ThenTheSurfaceIsWhatTheFilterGives) {
  RandomGrid random(11);
  for (int round = 0; round < 600; ++round) {
    const auto& types = round % 2 ? volume_types : shrunk_types;
    const auto grid = random.make(types, round % 40, round % 3 != 0);
    ASSERT_EQ(difference(make_surface(grid), filtered(grid)), "") << "round " << round;
  }
}

TEST(Surface, GivenRandomGridsWithQuadraticFaces_WhenCompared_ThenTheSurfaceIsWhatTheFilterGives) {
  RandomGrid random(12);
  std::vector<int> types = volume_types;
  types.push_back(VTK_QUADRATIC_TRIANGLE);
  types.push_back(VTK_QUADRATIC_QUAD);
  for (int round = 0; round < 200; ++round) {
    const auto grid = random.make(types, 1 + round % 40, round % 2 == 0);
    ASSERT_EQ(difference(make_surface(grid), filtered(grid)), "") << "round " << round;
  }
}

TEST(Surface, GivenGridsOfOneList_WhenCompared_ThenTheSurfaceIsWhatTheFilterGives) {
  RandomGrid random(13);
  for (const std::vector<int>& types :
       {std::vector<int>{VTK_VERTEX}, {VTK_POLY_VERTEX}, {VTK_POLY_LINE}, {VTK_LINE}, {VTK_QUAD}, {VTK_POLYGON}})
    for (int round = 0; round < 10; ++round) {
      const auto grid = random.make(types, 12, true);
      ASSERT_EQ(difference(make_surface(grid), filtered(grid)), "") << types[0];
    }
}

TEST(Surface, GivenAGridOfFacesOnly_WhenItsSurfaceIsMade_ThenNothingIsCopied) {
  const auto grid = RandomGrid(14).make({VTK_TRIANGLE, VTK_QUAD}, 20, false);
  const auto surface = make_surface(grid);
  EXPECT_EQ(surface->GetPoints(), grid->GetPoints());
  EXPECT_EQ(surface->GetPolys(), grid->GetCells());
  EXPECT_EQ(surface->GetPointData()->GetArray("NodeIds"), grid->GetPointData()->GetArray("NodeIds"));
  EXPECT_EQ(surface->GetCellData()->GetArray("ElemIds"), grid->GetCellData()->GetArray("ElemIds"));
}

TEST(Surface, GivenAGridWithoutCells_WhenItsSurfaceIsMade_ThenItIsEmpty) {
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(vtkNew<vtkPoints>());
  EXPECT_EQ(make_surface(grid)->GetNumberOfCells(), 0);
  EXPECT_EQ(make_surface(grid)->GetNumberOfPoints(), 0);
}

TEST(Surface, GivenAnyGrid_WhenSmoothed_ThenItIsTheFiltersSurfaceWithNormals) {
  RandomGrid random(15);
  for (int round = 0; round < 50; ++round) {
    const auto grid = random.make(volume_types, 1 + round % 30, true);
    vtkNew<vtkPolyDataNormals> normals;
    const auto expected = run_sequential(normals.Get(), filtered(grid));
    const auto smooth = make_smooth_surface(grid);
    ASSERT_EQ(difference(smooth, expected), "") << "round " << round;
    EXPECT_EQ(smooth->GetPointData()->GetNormals() != nullptr, expected->GetPointData()->GetNormals() != nullptr);
  }
}

TEST(Surface, GivenATwoSidedRoof_WhenSmoothed_ThenPointsAreSplitAlongTheRidge) {
  vtkNew<vtkUnstructuredGrid> grid;
  vtkNew<vtkPoints> points;
  for (const auto& [x, z] : {std::pair(0.0, 0.0), std::pair(1.0, 1.0), std::pair(2.0, 0.0)})
    for (const double y : {0.0, 1.0})
      points->InsertNextPoint(x, y, z);
  grid->SetPoints(points);
  const vtkIdType left[] = {0, 2, 3, 1};
  const vtkIdType right[] = {2, 4, 5, 3};
  grid->InsertNextCell(VTK_QUAD, 4, left);
  grid->InsertNextCell(VTK_QUAD, 4, right);
  EXPECT_EQ(make_surface(grid)->GetNumberOfPoints(), 6);
  EXPECT_EQ(make_smooth_surface(grid)->GetNumberOfPoints(), 8);
}

} // namespace
