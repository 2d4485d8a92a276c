#pragma once

#include "reference/base/edges/CellOrigins.h"
#include "reference/base/edges/CellShape.h"
#include "reference/base/edges/EdgeTable.h"

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkDataSet.h>
#include <vtkGenericCell.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <array>
#include <cstdint>

/// Walks the cells of a data set in order of their ids and collects edges and vertices. `Array` holds the output's
/// offsets and connectivity.
template <class Array> class EdgeExtraction {
public:
  using Id = typename Array::ValueType;

  /// `capacity`: room for that many edges; only cells that are asked one by one may need more.
  EdgeExtraction(vtkDataSet* input, vtkIdType capacity, bool lines, bool vertices)
      : points_(static_cast<std::uint64_t>(input->GetNumberOfPoints())),
        edges_(static_cast<Id>(input->GetNumberOfPoints()), static_cast<Id>(capacity)), pass_lines_(lines),
        pass_vertices_(vertices) {
    origins_.lines_of_cell.reserve(static_cast<std::size_t>(input->GetNumberOfCells()));
  }

  /// All cells of a grid.
  void add_cells(vtkUnstructuredGrid* grid) {
    if (grid->GetNumberOfCells() == 0) return;
    const unsigned char* types = grid->GetCellTypesArray()->GetPointer(0);
    visit(grid->GetCells(), [&](vtkIdType cell, const auto* points, int count) {
      const CellShape shape = shape_of(types[cell]);
      if (shape == CellShape::Other)
        add_any(grid, cell);
      else
        add(shape, types[cell], points, count);
    });
  }

  /// All cells of poly data: vertices, lines, polygons, strips.
  void add_cells(vtkPolyData* data) {
    const auto add_all = [this](vtkCellArray* cells, CellShape shape) {
      visit(cells, [&](vtkIdType, const auto* points, int count) { add(shape, VTK_EMPTY_CELL, points, count); });
    };
    add_all(data->GetVerts(), CellShape::Points);
    add_all(data->GetLines(), CellShape::Chain);
    add_all(data->GetPolys(), CellShape::Loop);
    add_all(data->GetStrips(), CellShape::Strip);
  }

  /// All cells of a data set of any other kind, through cell objects.
  void add_cells(vtkDataSet* data) {
    for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell)
      add_any(data, cell);
  }

  const CellOrigins& origins() const { return origins_; }

  /// Hands the cells over, once.
  void take_cells(vtkPolyData* output) {
    if (vertices_->GetNumberOfCells() > 0) output->SetVerts(vertices_);
    vtkNew<Array> offsets;
    offsets->SetNumberOfValues(static_cast<vtkIdType>(edges_.count()) + 1);
    std::generate_n(offsets->GetPointer(0), offsets->GetNumberOfValues(),
                    [offset = Id{-2}]() mutable { return offset += 2; });
    vtkNew<vtkCellArray> lines;
    lines->SetData(offsets, edges_.take_ends());
    output->SetLines(lines);
  }

private:
  template <class Function> static void visit(vtkCellArray* cells, Function function) {
    if (cells->IsStorage64Bit())
      visit(cells->GetNumberOfCells(), cells->GetOffsetsArray64()->GetPointer(0),
            cells->GetConnectivityArray64()->GetPointer(0), function);
    else
      visit(cells->GetNumberOfCells(), cells->GetOffsetsArray32()->GetPointer(0),
            cells->GetConnectivityArray32()->GetPointer(0), function);
  }

  template <class Index, class Function>
  static void visit(vtkIdType cells, const Index* offsets, const Index* connectivity, Function function) {
    for (vtkIdType cell = 0; cell < cells; ++cell)
      function(cell, connectivity + offsets[cell], static_cast<int>(offsets[cell + 1] - offsets[cell]));
  }

  template <class Index> void add(CellShape shape, int cell_type, const Index* points, int count) {
    const Id before = edges_.count();
    if (shape == CellShape::Loop && count == 4)
      add_ring<4>(points);
    else if (shape == CellShape::Loop && count == 3)
      add_ring<3>(points);
    else if (are_points(points, count))
      add_rarer(shape, cell_type, points, count);
    origins_.lines_of_cell.push_back(static_cast<int>(edges_.count() - before));
  }

  /// A loop of a number of points that is known when compiled, held in registers.
  template <int Count, class Index> void add_ring(const Index* points) {
    std::array<std::uint64_t, Count> ring;
    std::copy_n(points, Count, ring.begin());
    for (const std::uint64_t point : ring)
      if (point >= points_) return;
    for (int i = 0; i < Count; ++i)
      edges_.add(static_cast<Id>(ring[i]), static_cast<Id>(ring[(i + 1) % Count]));
  }

  template <class Index> void add_rarer(CellShape shape, int cell_type, const Index* points, int count) {
    switch (shape) {
    case CellShape::Points:
      if (pass_vertices_) add_vertices(points, count);
      break;
    case CellShape::Chain:
      if (pass_lines_) add_chain(points, count);
      break;
    case CellShape::QuadraticChain:
      if (pass_lines_ && count == 3) add_halves(points[0], points[2], points[1]);
      break;
    case CellShape::Loop:
      add_loop(points, count);
      break;
    case CellShape::QuadraticLoop:
      add_quadratic_loop(points, count, corners_of(cell_type, count));
      break;
    case CellShape::Pixel:
      if (count == 4) add_pixel(points);
      break;
    case CellShape::Strip:
      add_strip(points, count);
      break;
    case CellShape::LinearSides:
      if (count == 6) add_linear_sides(points);
      break;
    default:
      break;
    }
  }

  /// A cell whose connectivity leads outside the data set is left out.
  template <class Index> bool are_points(const Index* points, int count) const {
    bool all = true;
    for (int i = 0; i < count; ++i)
      all &= static_cast<std::uint64_t>(points[i]) < points_;
    return all;
  }

  void add_edge(vtkIdType a, vtkIdType b) { edges_.add(static_cast<Id>(a), static_cast<Id>(b)); }

  template <class Index> void add_chain(const Index* points, int count) {
    for (int i = 0; i + 1 < count; ++i)
      add_edge(points[i], points[i + 1]);
  }

  template <class Index> void add_loop(const Index* points, int count) {
    if (count < 3) return;
    add_chain(points, count);
    add_edge(points[count - 1], points[0]);
  }

  template <class Index> void add_vertices(const Index* points, int count) {
    if (count == 0) return;
    vertices_->InsertNextCell(count);
    for (int i = 0; i < count; ++i)
      vertices_->InsertCellPoint(points[i]);
    origins_.vertices.push_back(static_cast<vtkIdType>(origins_.lines_of_cell.size()));
  }

  void add_halves(vtkIdType from, vtkIdType middle, vtkIdType to) {
    add_edge(from, middle);
    add_edge(middle, to);
  }

  template <class Index> void add_quadratic_loop(const Index* points, int count, int corners) {
    if (count < 2 * corners) return;
    for (int i = 0; i < corners; ++i)
      add_halves(points[i], points[corners + i], points[(i + 1) % corners]);
  }

  template <class Index> void add_pixel(const Index* points) {
    add_edge(points[0], points[1]);
    add_edge(points[1], points[3]);
    add_edge(points[2], points[3]);
    add_edge(points[0], points[2]);
  }

  template <class Index> void add_strip(const Index* points, int count) {
    if (count < 3) return;
    add_edge(points[0], points[1]);
    for (int i = 0; i + 2 < count; ++i)
      add_edge(points[i], points[i + 2]);
    add_edge(points[count - 2], points[count - 1]);
  }

  template <class Index> void add_linear_sides(const Index* points) {
    add_halves(points[0], points[4], points[1]);
    add_edge(points[1], points[2]);
    add_halves(points[2], points[5], points[3]);
    add_edge(points[3], points[0]);
  }

  /// Asks the cell itself: for kinds whose edges depend on more than the list of points.
  void add_any(vtkDataSet* data, vtkIdType cell) {
    const Id before = edges_.count();
    data->GetCellPoints(cell, ids_);
    if (are_points(ids_->GetPointer(0), static_cast<int>(ids_->GetNumberOfIds()))) {
      data->GetCell(cell, cell_);
      const int dimension = cell_->GetCellDimension();
      if (dimension == 0 && pass_vertices_)
        add_vertices(cell_->GetPointIds()->GetPointer(0), static_cast<int>(cell_->GetNumberOfPoints()));
      else if (dimension == 1 && pass_lines_)
        add_curve(cell_->GetRepresentativeCell());
      else if (dimension == 2)
        for (int side = 0; side < cell_->GetNumberOfEdges(); ++side)
          add_curve(cell_->GetEdge(side));
    }
    origins_.lines_of_cell.push_back(static_cast<int>(edges_.count() - before));
  }

  void add_curve(vtkCell* curve) {
    if (curve->IsLinear()) {
      vtkIdList* points = curve->GetPointIds();
      edges_.make_room(static_cast<Id>(points->GetNumberOfIds()));
      add_chain(points->GetPointer(0), static_cast<int>(points->GetNumberOfIds()));
      return;
    }
    curve->Triangulate(0, ids_, segment_points_);
    edges_.make_room(static_cast<Id>(ids_->GetNumberOfIds()));
    for (vtkIdType i = 0; i + 1 < ids_->GetNumberOfIds(); i += 2)
      add_edge(ids_->GetId(i), ids_->GetId(i + 1));
  }

  std::uint64_t points_;
  EdgeTable<Array> edges_;
  vtkNew<vtkCellArray> vertices_;
  CellOrigins origins_;
  bool pass_lines_;
  bool pass_vertices_;
  vtkNew<vtkGenericCell> cell_;
  vtkNew<vtkIdList> ids_;
  vtkNew<vtkPoints> segment_points_;
};
