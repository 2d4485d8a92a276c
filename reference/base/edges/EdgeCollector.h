#pragma once

#include "reference/base/edges/CellRuns.h"
#include "reference/base/edges/CellShape.h"
#include "reference/base/edges/EdgeTable.h"

#include <vtkCell.h>
#include <vtkNew.h>
#include <vtkPolyData.h>

/// What passes besides the edges of two-dimensional cells.
struct EdgeOptions {
  bool lines;
  bool vertices;
};

/// Gathers the edges of cells that are handed in one by one, in order. `Array` is the type of the connectivity that
/// comes out; its values must hold the number of points and twice the number of edges.
template <class Array> class EdgeCollector {
public:
  using Id = typename Array::ValueType;

  /// For cells on points 0 to `points` - 1, with at most `capacity` points in all.
  EdgeCollector(vtkIdType points, vtkIdType capacity, EdgeOptions options)
      : options_(options), edges_(static_cast<Id>(points), static_cast<Id>(capacity)) {}

  /// Adds cell number `cell` of a type that `shape_of` knows, with its `count` points.
  template <class InputId> void add(vtkIdType cell, CellShape shape, int type, const InputId* points, vtkIdType count) {
    const Id before = edges_.count();
    switch (shape) {
    case CellShape::Points:
      if (options_.vertices && count > 0) add_vertices(cell, points, count);
      return;
    case CellShape::Chain:
      if (!options_.lines) return;
      for (vtkIdType i = 1; i < count; ++i)
        add_segment(points[i - 1], points[i]);
      break;
    case CellShape::QuadraticChain:
      if (!options_.lines || count < 3) return;
      add_segment(points[0], points[2]);
      add_segment(points[2], points[1]);
      break;
    case CellShape::Loop:
      add_loop(points, count);
      break;
    case CellShape::QuadraticLoop:
      add_quadratic_loop(points, corners_of(type, static_cast<int>(count)), count);
      break;
    default:
      return;
    }
    remember(cell, before);
  }

  /// Adds a cell of any other type, which is asked for its edges.
  void add(vtkIdType cell, vtkCell* asked) {
    const Id before = edges_.count();
    const int dimension = asked->GetCellDimension();
    if (dimension == 0 && options_.vertices && asked->GetNumberOfPoints() > 0)
      add_vertices(cell, asked->GetPointIds()->GetPointer(0), asked->GetNumberOfPoints());
    else if (dimension == 1 && options_.lines)
      add_curve(asked);
    else if (dimension == 2)
      for (int i = 0; i < asked->GetNumberOfEdges(); ++i)
        add_curve(asked->GetEdge(i));
    remember(cell, before);
  }

  /// Hands everything over: vertices and lines, and the cell data of `input` for them.
  void put_into(vtkPolyData* output, vtkCellData* input) {
    std::vector<CellRun> runs = vertex_runs_;
    runs.insert(runs.end(), line_runs_.begin(), line_runs_.end());
    if (!vertex_ends_.empty()) output->SetVerts(make_vertices());
    output->SetLines(make_lines());
    copy_cell_data(input, runs, output->GetCellData());
  }

private:
  template <class InputId> void add_segment(InputId a, InputId b) {
    edges_.reserve_one();
    edges_.add(static_cast<Id>(a), static_cast<Id>(b));
  }

  template <class InputId> void add_loop(const InputId* points, vtkIdType count) {
    if (count < 2) return;
    for (vtkIdType i = 1; i < count; ++i)
      add_segment(points[i - 1], points[i]);
    add_segment(points[count - 1], points[0]);
  }

  template <class InputId> void add_quadratic_loop(const InputId* points, int corners, vtkIdType count) {
    if (count < 2 * corners) return;
    for (int i = 0; i < corners; ++i) {
      add_segment(points[i], points[corners + i]);
      add_segment(points[corners + i], points[(i + 1) % corners]);
    }
  }

  void add_curve(vtkCell* curve) {
    const vtkIdType count = curve->GetNumberOfPoints();
    const vtkIdType* points = curve->GetPointIds()->GetPointer(0);
    // Curves of higher order list their ends first.
    if (count == 3 && !curve->IsLinear()) {
      add_segment(points[0], points[2]);
      add_segment(points[2], points[1]);
      return;
    }
    if (count > 3 && !curve->IsLinear()) {
      add_segment(points[0], points[2]);
      for (vtkIdType i = 3; i < count; ++i)
        add_segment(points[i - 1], points[i]);
      add_segment(points[count - 1], points[1]);
      return;
    }
    for (vtkIdType i = 1; i < count; ++i)
      add_segment(points[i - 1], points[i]);
  }

  template <class InputId> void add_vertices(vtkIdType cell, const InputId* points, vtkIdType count) {
    vertex_points_.insert(vertex_points_.end(), points, points + count);
    vertex_ends_.push_back(static_cast<Id>(vertex_points_.size()));
    vertex_runs_.push_back({cell, 1});
  }

  void remember(vtkIdType cell, Id before) {
    if (edges_.count() > before) line_runs_.push_back({cell, static_cast<vtkIdType>(edges_.count() - before)});
  }

  vtkSmartPointer<vtkCellArray> make_lines() {
    const Id count = edges_.count();
    vtkNew<Array> offsets;
    offsets->SetNumberOfValues(static_cast<vtkIdType>(count) + 1);
    Id* offset = offsets->GetPointer(0);
    for (Id i = 0; i <= count; ++i)
      offset[i] = 2 * i;
    auto lines = vtkSmartPointer<vtkCellArray>::New();
    lines->SetData(offsets, edges_.take_ends());
    return lines;
  }

  vtkSmartPointer<vtkCellArray> make_vertices() const {
    vtkNew<Array> offsets;
    offsets->SetNumberOfValues(static_cast<vtkIdType>(vertex_ends_.size()) + 1);
    offsets->SetValue(0, 0);
    std::copy(vertex_ends_.begin(), vertex_ends_.end(), offsets->GetPointer(1));
    vtkNew<Array> connectivity;
    connectivity->SetNumberOfValues(static_cast<vtkIdType>(vertex_points_.size()));
    std::copy(vertex_points_.begin(), vertex_points_.end(), connectivity->GetPointer(0));
    auto vertices = vtkSmartPointer<vtkCellArray>::New();
    vertices->SetData(offsets, connectivity);
    return vertices;
  }

  EdgeOptions options_;
  EdgeTable<Array> edges_;
  std::vector<CellRun> line_runs_;
  std::vector<Id> vertex_points_;
  std::vector<Id> vertex_ends_;
  std::vector<CellRun> vertex_runs_;
};
