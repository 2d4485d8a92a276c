#include "platform/base/GExtractEdges.h"

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkExtractEdges.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkStringArray.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace {

using Segment = std::pair<vtkIdType, vtkIdType>;

struct Options {
  bool lines = false;
  bool vertices = false;
};

vtkSmartPointer<vtkPolyData> extract(vtkDataSet* input, Options options = {}) {
  vtkNew<GExtractEdges> filter;
  filter->pass_lines(options.lines);
  filter->pass_vertices(options.vertices);
  filter->SetInputData(input);
  filter->Update();
  return filter->GetOutput();
}

std::vector<std::vector<vtkIdType>> cells_of(vtkCellArray* cells) {
  std::vector<std::vector<vtkIdType>> list;
  vtkNew<vtkIdList> points;
  for (vtkIdType i = 0; i < cells->GetNumberOfCells(); ++i) {
    cells->GetCellAtId(i, points);
    list.emplace_back(points->begin(), points->end());
  }
  return list;
}

// Random cells of these types on random points, with an integer array that numbers them and a colour.
vtkSmartPointer<vtkUnstructuredGrid> random_grid(unsigned seed, const std::vector<std::pair<int, int>>& types,
                                                 int cells) {
  std::mt19937 random(seed);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  const int count = 40;
  for (int i = 0; i < count; ++i)
    points->InsertNextPoint(i, (i * 7) % 11, (i * 13) % 17);
  grid->SetPoints(points);
  vtkNew<vtkIntArray> numbers;
  numbers->SetName("number");
  vtkNew<vtkUnsignedCharArray> colors;
  colors->SetName("Color");
  colors->SetNumberOfComponents(4);
  vtkNew<vtkStringArray> names;
  names->SetName("name");
  vtkNew<vtkDoubleArray> temperature;
  temperature->SetName("temperature");
  for (int i = 0; i < count; ++i)
    temperature->InsertNextValue(0.5 * i);
  std::vector<vtkIdType> order(count);
  for (int i = 0; i < count; ++i)
    order[std::size_t(i)] = i;
  grid->Allocate(cells);
  for (int i = 0; i < cells; ++i) {
    std::shuffle(order.begin(), order.end(), random);
    const auto [type, nodes] = types[random() % types.size()];
    grid->InsertNextCell(type, nodes, order.data());
    numbers->InsertNextValue(1000 + i);
    const unsigned char color[4] = {static_cast<unsigned char>(i), 1, 2, 255};
    colors->InsertNextTypedTuple(color);
    names->InsertNextValue("cell " + std::to_string(i));
  }
  grid->GetCellData()->AddArray(numbers);
  grid->GetCellData()->SetScalars(colors);
  grid->GetCellData()->AddArray(names);
  grid->GetPointData()->AddArray(temperature);
  return grid;
}

// The segments of one cell, written down kind by kind.
std::vector<Segment> segments_of(int type, const std::vector<vtkIdType>& p, Options options) {
  std::vector<Segment> list;
  const auto loop = [&] {
    for (std::size_t i = 0; i < p.size(); ++i)
      list.push_back({p[i], p[(i + 1) % p.size()]});
  };
  const auto quadratic_loop = [&](std::size_t corners) {
    for (std::size_t i = 0; i < corners; ++i) {
      list.push_back({p[i], p[corners + i]});
      list.push_back({p[corners + i], p[(i + 1) % corners]});
    }
  };
  switch (type) {
  case VTK_TRIANGLE:
  case VTK_QUAD:
  case VTK_POLYGON:
    loop();
    break;
  case VTK_QUADRATIC_TRIANGLE:
  case VTK_BIQUADRATIC_TRIANGLE:
    quadratic_loop(3);
    break;
  case VTK_QUADRATIC_QUAD:
  case VTK_BIQUADRATIC_QUAD:
    quadratic_loop(4);
    break;
  case VTK_LINE:
  case VTK_POLY_LINE:
    if (options.lines)
      for (std::size_t i = 1; i < p.size(); ++i)
        list.push_back({p[i - 1], p[i]});
    break;
  case VTK_QUADRATIC_EDGE:
    if (options.lines) list = {{p[0], p[2]}, {p[2], p[1]}};
    break;
  default:
    break;
  }
  return list;
}

const std::vector<std::pair<int, int>> all_types = {{VTK_VERTEX, 1},         {VTK_POLY_VERTEX, 3},
                                                    {VTK_LINE, 2},           {VTK_POLY_LINE, 4},
                                                    {VTK_QUADRATIC_EDGE, 3}, {VTK_TRIANGLE, 3},
                                                    {VTK_QUAD, 4},           {VTK_POLYGON, 6},
                                                    {VTK_POLYGON, 3},        {VTK_QUADRATIC_TRIANGLE, 6},
                                                    {VTK_QUADRATIC_QUAD, 8}, {VTK_BIQUADRATIC_QUAD, 9},
                                                    {VTK_TETRA, 4},          {VTK_QUADRATIC_HEXAHEDRON, 20}};

TEST(ExtractEdges, GivenRandomCellsOfAllKinds_WhenExtracted_ThenEdgesAndDataAreThoseOfAPlainWalk) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    const Options options = {seed % 2 == 1, seed % 4 >= 2};
    const auto grid = random_grid(seed, all_types, 60);
    std::map<Segment, bool> known;
    std::vector<std::vector<vtkIdType>> lines, vertices;
    std::vector<int> line_numbers, vertex_numbers;
    vtkNew<vtkIdList> ids;
    for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
      grid->GetCellPoints(cell, ids);
      const std::vector<vtkIdType> points(ids->begin(), ids->end());
      const int type = grid->GetCellType(cell);
      if (options.vertices && (type == VTK_VERTEX || type == VTK_POLY_VERTEX)) {
        vertices.push_back(points);
        vertex_numbers.push_back(1000 + int(cell));
      }
      for (const Segment& segment : segments_of(type, points, options)) {
        if (!known.emplace(std::minmax(segment.first, segment.second), true).second) continue;
        lines.push_back({segment.first, segment.second});
        line_numbers.push_back(1000 + int(cell));
      }
    }

    const auto edges = extract(grid, options);
    SCOPED_TRACE(seed);
    EXPECT_EQ(cells_of(edges->GetLines()), lines);
    EXPECT_EQ(cells_of(edges->GetVerts()), vertices);
    std::vector<int> numbers = vertex_numbers;
    numbers.insert(numbers.end(), line_numbers.begin(), line_numbers.end());
    auto* out = vtkIntArray::SafeDownCast(edges->GetCellData()->GetArray("number"));
    auto* names = vtkStringArray::SafeDownCast(edges->GetCellData()->GetAbstractArray("name"));
    ASSERT_NE(out, nullptr);
    ASSERT_NE(names, nullptr);
    ASSERT_EQ(out->GetNumberOfTuples(), vtkIdType(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      ASSERT_EQ(out->GetValue(vtkIdType(i)), numbers[i]);
      ASSERT_EQ(names->GetValue(vtkIdType(i)), "cell " + std::to_string(numbers[i] - 1000));
      unsigned char color[4];
      ASSERT_NE(edges->GetCellData()->GetScalars(), nullptr);
      vtkUnsignedCharArray::SafeDownCast(edges->GetCellData()->GetScalars())->GetTypedTuple(vtkIdType(i), color);
      ASSERT_EQ(color[0], numbers[i] - 1000);
    }
    EXPECT_EQ(edges->GetPoints(), grid->GetPoints()) << "points are shared, also those that no edge uses";
    EXPECT_EQ(edges->GetPointData()->GetArray("temperature"), grid->GetPointData()->GetArray("temperature"));
  }
}

TEST(ExtractEdges, GivenALinearSurface_WhenExtracted_ThenTheOutputEqualsVtksOwn) {
  // Numbered as cells meet their points, as VTK's filter numbers its output.
  vtkNew<vtkPolyData> surface;
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> polys;
  vtkNew<vtkIntArray> numbers;
  numbers->SetName("number");
  std::map<std::pair<int, int>, vtkIdType> known;
  const auto id = [&](int x, int y) {
    const auto [found, is_new] = known.emplace(std::make_pair(x, y), points->GetNumberOfPoints());
    if (is_new) points->InsertNextPoint(x, y, 0.1 * x * y);
    return found->second;
  };
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 30; ++x) {
      const vtkIdType a = id(x, y), b = id(x + 1, y), c = id(x + 1, y + 1), d = id(x, y + 1);
      if ((x + y) % 3) {
        polys->InsertNextCell({a, b, c, d});
        numbers->InsertNextValue(y * 100 + x);
      } else {
        polys->InsertNextCell({a, b, c});
        polys->InsertNextCell({a, c, d});
        numbers->InsertNextValue(y * 100 + x);
        numbers->InsertNextValue(-y * 100 - x);
      }
    }
  }
  surface->SetPoints(points);
  surface->SetPolys(polys);
  surface->GetCellData()->AddArray(numbers);

  const auto ours = extract(surface);
  vtkNew<vtkExtractEdges> stock;
  stock->SetInputData(surface);
  stock->Update();
  vtkPolyData* theirs = stock->GetOutput();
  ASSERT_GT(theirs->GetNumberOfLines(), 1800);
  EXPECT_EQ(cells_of(ours->GetLines()), cells_of(theirs->GetLines()));
  ASSERT_EQ(ours->GetNumberOfPoints(), theirs->GetNumberOfPoints());
  for (vtkIdType i = 0; i < ours->GetNumberOfPoints(); ++i)
    for (int axis = 0; axis < 3; ++axis)
      ASSERT_EQ(ours->GetPoint(i)[axis], theirs->GetPoint(i)[axis]);
  auto* mine = vtkIntArray::SafeDownCast(ours->GetCellData()->GetArray("number"));
  auto* other = vtkIntArray::SafeDownCast(theirs->GetCellData()->GetArray("number"));
  for (vtkIdType i = 0; i < ours->GetNumberOfLines(); ++i)
    ASSERT_EQ(mine->GetValue(i), other->GetValue(i));
}

TEST(ExtractEdges, GivenPolyDataOfAllParts_WhenExtracted_ThenCellDataFollowItsOwnOrderOfCells) {
  vtkNew<vtkPolyData> data;
  vtkNew<vtkPoints> points;
  for (int i = 0; i < 8; ++i)
    points->InsertNextPoint(i, i * i, 0);
  data->SetPoints(points);
  vtkNew<vtkCellArray> verts, lines, polys, strips;
  verts->InsertNextCell({7});
  lines->InsertNextCell({5, 6});
  polys->InsertNextCell({0, 1, 2});
  strips->InsertNextCell({2, 1, 3, 4});
  data->SetVerts(verts);
  data->SetLines(lines);
  data->SetPolys(polys);
  data->SetStrips(strips);
  vtkNew<vtkIntArray> numbers;
  numbers->SetName("number");
  for (int i = 0; i < 4; ++i)
    numbers->InsertNextValue(10 * i);
  data->GetCellData()->AddArray(numbers);

  const auto edges = extract(data, {true, true});
  ASSERT_EQ(cells_of(edges->GetVerts()), (std::vector<std::vector<vtkIdType>>{{7}}));
  const auto found = cells_of(edges->GetLines());
  ASSERT_GE(found.size(), 4u);
  EXPECT_EQ(found[0], (std::vector<vtkIdType>{5, 6}));
  EXPECT_EQ(found[1], (std::vector<vtkIdType>{0, 1}));
  auto* out = vtkIntArray::SafeDownCast(edges->GetCellData()->GetArray("number"));
  EXPECT_EQ(out->GetValue(0), 0);
  EXPECT_EQ(out->GetValue(1), 10);
  EXPECT_EQ(out->GetValue(2), 20);
  EXPECT_EQ(out->GetValue(out->GetNumberOfTuples() - 1), 30);
}

TEST(ExtractEdges, GivenConnectivityThatLeavesTheDataSet_WhenExtracted_ThenThatCellAloneIsLeftOut) {
  for (const auto& [type, wrong] : std::vector<std::pair<int, vtkIdType>>{{VTK_TRIANGLE, 6},
                                                                          {VTK_QUAD, -1},
                                                                          {VTK_POLYGON, 1000000},
                                                                          {VTK_LINE, 6},
                                                                          {VTK_VERTEX, -5},
                                                                          {VTK_QUADRATIC_TRIANGLE, 7},
                                                                          {VTK_LAGRANGE_TRIANGLE, 9}}) {
    SCOPED_TRACE(type);
    vtkNew<vtkUnstructuredGrid> grid;
    vtkNew<vtkPoints> points;
    for (int i = 0; i < 6; ++i)
      points->InsertNextPoint(i, i * i, 0);
    grid->SetPoints(points);
    const vtkIdType bad[6] = {0, wrong, 2, 3, 4, 5};
    const int counts[] = {type == VTK_TRIANGLE ? 3 : type == VTK_QUAD ? 4 : type == VTK_LINE ? 2 : 6};
    grid->InsertNextCell(type, type == VTK_VERTEX ? 1 : counts[0], type == VTK_VERTEX ? bad + 1 : bad);
    const vtkIdType good[3] = {1, 2, 3};
    grid->InsertNextCell(VTK_TRIANGLE, 3, good);
    const auto edges = extract(grid, {true, true});
    EXPECT_EQ(cells_of(edges->GetLines()), (std::vector<std::vector<vtkIdType>>{{1, 2}, {2, 3}, {3, 1}}));
    EXPECT_EQ(edges->GetNumberOfVerts(), 0);
  }
}

TEST(ExtractEdges, GivenRarerCellsOfTwoDimensions_WhenExtracted_ThenTheEdgesAreThoseOfVtksOwn) {
  const std::vector<std::pair<int, int>> kinds = {{VTK_PIXEL, 4},
                                                  {VTK_TRIANGLE_STRIP, 6},
                                                  {VTK_QUADRATIC_LINEAR_QUAD, 6},
                                                  {VTK_QUADRATIC_POLYGON, 10},
                                                  {VTK_LAGRANGE_TRIANGLE, 10},
                                                  {VTK_LAGRANGE_QUADRILATERAL, 9},
                                                  {VTK_BIQUADRATIC_TRIANGLE, 7}};
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.first);
    const auto grid = random_grid(static_cast<unsigned>(kind.first), {kind, {VTK_QUAD, 4}}, 6);
    vtkNew<vtkExtractEdges> stock;
    stock->UseAllPointsOn();
    stock->SetInputData(grid);
    stock->Update();
    const auto ours = extract(grid);
    ASSERT_GT(ours->GetNumberOfLines(), 20);
    EXPECT_EQ(cells_of(ours->GetLines()), cells_of(stock->GetOutput()->GetLines()));
  }
}

TEST(ExtractEdges, GivenManyEdgesAtOnePoint_WhenExtracted_ThenEachComesOnce) {
  // A fan round point 0, each triangle twice: more edges at one point than it has places for.
  vtkNew<vtkPolyData> fan;
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> polys;
  constexpr int rim = 50;
  for (int i = 0; i <= rim; ++i)
    points->InsertNextPoint(i, i * i, 0);
  for (int pass = 0; pass < 2; ++pass)
    for (int i = 1; i <= rim; ++i)
      polys->InsertNextCell({0, i, i % rim + 1});
  fan->SetPoints(points);
  fan->SetPolys(polys);
  EXPECT_EQ(extract(fan)->GetNumberOfLines(), 2 * rim);
}

TEST(ExtractEdges, GivenNarrowAndWideConnectivity_WhenExtracted_ThenTheEdgesAreTheSame) {
  const auto grid = random_grid(5, all_types, 50);
  grid->GetCells()->ConvertTo64BitStorage();
  const auto wide = extract(grid, {true, true});
  grid->GetCells()->ConvertTo32BitStorage();
  const auto narrow = extract(grid, {true, true});
  ASSERT_GT(wide->GetNumberOfLines(), 10);
  EXPECT_EQ(cells_of(wide->GetLines()), cells_of(narrow->GetLines()));
}

TEST(ExtractEdges, GivenAnImage_WhenExtracted_ThenItsPixelsHaveTheirEdges) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 1);
  const auto edges = extract(image);
  EXPECT_EQ(edges->GetNumberOfLines(), 12);
  EXPECT_EQ(edges->GetNumberOfPoints(), 9);
}

TEST(ExtractEdges, GivenEmptyInput_WhenExtracted_ThenNothingComesOut) {
  vtkNew<vtkUnstructuredGrid> nothing;
  EXPECT_EQ(extract(nothing, {true, true})->GetNumberOfCells(), 0);
  vtkNew<vtkPolyData> no_cells;
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(1, 2, 3);
  no_cells->SetPoints(points);
  const auto edges = extract(no_cells);
  EXPECT_EQ(edges->GetNumberOfCells(), 0);
  EXPECT_EQ(edges->GetNumberOfPoints(), 1);
}

TEST(ExtractEdges, GivenGlobalIds_WhenExtracted_ThenTheyStayBehindSinceTheyWouldRepeat) {
  const auto grid = random_grid(9, {{VTK_QUAD, 4}}, 5);
  vtkNew<vtkIdTypeArray> global;
  global->SetName("global");
  vtkNew<vtkIdTypeArray> pedigree;
  pedigree->SetName("pedigree");
  for (int i = 0; i < 5; ++i) {
    global->InsertNextValue(i);
    pedigree->InsertNextValue(10 + i);
  }
  grid->GetCellData()->SetGlobalIds(global);
  grid->GetCellData()->SetPedigreeIds(pedigree);
  const auto edges = extract(grid);
  EXPECT_EQ(edges->GetCellData()->GetAbstractArray("global"), nullptr);
  ASSERT_NE(edges->GetCellData()->GetPedigreeIds(), nullptr);
  EXPECT_EQ(edges->GetCellData()->GetPedigreeIds()->GetVariantValue(0).ToInt(), 10);
}

TEST(ExtractEdges, GivenOptions_WhenSet_ThenNoTimeStampMoves) {
  vtkNew<GExtractEdges> filter;
  const vtkMTimeType before = filter->GetMTime();
  filter->pass_lines(true);
  filter->pass_vertices(true);
  EXPECT_EQ(filter->GetMTime(), before);
}

} // namespace
