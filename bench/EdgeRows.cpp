#include "Rows.h"

#include "Agreement.h"
#include "Contest.h"
#include "LiteralGrid.h"
#include "MeshInputs.h"
#include "Stock.h"

#include "group/MeshSkin.h"
#include "platform/base/GExtractEdges.h"

#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace bench {
namespace {

vtkSmartPointer<vtkPolyData> our_edges(vtkDataSet* surface) {
  vtkNew<GExtractEdges> filter;
  filter->SetInputDataObject(surface);
  filter->Update();
  return filter->GetOutput();
}

/// The edges of what is drawn of a mesh, from the same grid on both sides.
void compare_edges(const std::string& name, const RawMesh& raw, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  const MeshSkin skin(mesh.database.get(), mesh.entities, nullptr);
  const vtkSmartPointer<vtkUnstructuredGrid> surface = literal_grid(*mesh.database, skin.sides());
  vtkSmartPointer<vtkPolyData> edges;
  const Contender ours = {[&] { edges = our_edges(surface); }, [&edges] { edges = nullptr; }};
  const Contender peer = {[&] { edges = stock_edges(surface); }, [&edges] { edges = nullptr; }};

  require_equal(name, our_edges(surface), stock_edges(surface));
  const std::vector<double> medians = hold_contest({ours, peer});
  report.add_result(name, medians[0], medians[1]);
}

} // namespace

std::vector<Row> edge_rows(const Settings& settings) {
  const auto row = [](const std::string& name, const std::function<RawMesh()>& make_mesh) {
    return Row{name, [name, make_mesh](Report& report) { compare_edges(name, make_mesh(), report); }};
  };
  return {row("edges_quad60k",
              [settings] { return box_of_hexahedra(settings.edge(100), settings.edge(100), settings.edge(100)); }),
          row("edges_quad1m", [settings] { return square_of_quadrilaterals(settings.edge(1000)); })};
}

} // namespace bench
