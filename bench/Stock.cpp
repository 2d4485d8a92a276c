#include "Stock.h"

#include <vtkDataSetSurfaceFilter.h>
#include <vtkExtractEdges.h>
#include <vtkGeometryFilter.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSMPTools.h>
#include <vtkUnstructuredGrid.h>
#include <vtkVertexGlyphFilter.h>

namespace bench {
namespace {

template <class Filter> vtkSmartPointer<vtkPolyDataAlgorithm> make_filter(OriginalPoints original_points) {
  auto filter = vtkSmartPointer<Filter>::New();
  filter->SetPassThroughPointIds(original_points == OriginalPoints::Pass);
  return filter;
}

template <class Work> void on_backend(const char* backend, const Work& work) {
  vtkSMPTools::LocalScope(vtkSMPTools::Config(std::string(backend)), work);
}

vtkSmartPointer<vtkPolyData> output_of(vtkPolyDataAlgorithm* filter, vtkDataSet* input) {
  filter->SetInputDataObject(input);
  filter->Update();
  return filter->GetOutput();
}

} // namespace

std::vector<StockRoute> stock_routes() {
  return {{"vtkDataSetSurfaceFilter, Sequential", make_filter<vtkDataSetSurfaceFilter>, "Sequential"},
          {"vtkDataSetSurfaceFilter, TBB", make_filter<vtkDataSetSurfaceFilter>, "TBB"},
          {"vtkGeometryFilter, Sequential", make_filter<vtkGeometryFilter>, "Sequential"},
          {"vtkGeometryFilter, TBB", make_filter<vtkGeometryFilter>, "TBB"}};
}

vtkSmartPointer<vtkPolyData> stock_surface(const StockRoute& route, vtkUnstructuredGrid* grid) {
  vtkSmartPointer<vtkPolyData> surface;
  on_backend(route.backend, [&] { surface = output_of(route.make_surface_filter(OriginalPoints::Forget), grid); });
  return surface;
}

StockDrawing stock_drawing(const StockRoute& route, vtkUnstructuredGrid* grid, OriginalPoints original_points) {
  StockDrawing drawing;
  on_backend(route.backend, [&] {
    drawing.surface = output_of(route.make_surface_filter(original_points), grid);
    drawing.edges = output_of(vtkNew<vtkExtractEdges>(), drawing.surface);
    drawing.nodes = output_of(vtkNew<vtkVertexGlyphFilter>(), drawing.surface);
  });
  return drawing;
}

vtkSmartPointer<vtkPolyData> stock_edges(vtkDataSet* surface) {
  vtkSmartPointer<vtkPolyData> edges;
  on_backend("Sequential", [&] { edges = output_of(vtkNew<vtkExtractEdges>(), surface); });
  return edges;
}

} // namespace bench
