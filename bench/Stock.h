#pragma once

#include <vtkSmartPointer.h>

#include <string>
#include <vector>

class vtkDataSet;
class vtkPolyData;
class vtkPolyDataAlgorithm;
class vtkUnstructuredGrid;

namespace bench {

/// Whether a surface's points say which point of the volume grid they were; off by default in VTK.
enum class OriginalPoints { Forget, Pass };

/// A way to draw a volume grid with VTK's own filters, at their default settings.
struct StockRoute {
  std::string name;
  vtkSmartPointer<vtkPolyDataAlgorithm> (*make_surface_filter)(OriginalPoints);
  const char* backend; ///< of vtkSMPTools
};

/// What is drawn of a mesh.
struct StockDrawing {
  vtkSmartPointer<vtkPolyData> surface;
  vtkSmartPointer<vtkPolyData> edges;
  vtkSmartPointer<vtkPolyData> nodes;
};

/// Both surface filters on the sequential and on the threaded back end.
std::vector<StockRoute> stock_routes();

/// The surface alone.
vtkSmartPointer<vtkPolyData> stock_surface(const StockRoute& route, vtkUnstructuredGrid* grid);
/// The surface, its edges and a vertex on each of its points.
StockDrawing stock_drawing(const StockRoute& route, vtkUnstructuredGrid* grid, OriginalPoints original_points);
/// The edges of a surface by vtkExtractEdges, on the sequential back end.
vtkSmartPointer<vtkPolyData> stock_edges(vtkDataSet* surface);

} // namespace bench
