#include "Rows.h"

#include "Contest.h"
#include "LiteralGrid.h"
#include "MeshInputs.h"
#include "OurDrawing.h"
#include "Stock.h"

#include "group/MeshSkin.h"

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <string>
#include <utility>

namespace bench {
namespace {

RawMesh cube_of_hexahedra(const Settings& settings, int n) {
  return box_of_hexahedra(settings.edge(n), settings.edge(n), settings.edge(n));
}

/// The parts of a first display, in the order in which they are asked for.
void time_stages(const std::string& mesh_name, const RawMesh& raw, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  OurDrawing ours(mesh);
  std::unique_ptr<MeshSkin> skin;
  const std::vector<double> medians = hold_contest({
      {[&] { skin = std::make_unique<MeshSkin>(mesh.database.get(), mesh.entities, nullptr); }, [&] { skin.reset(); }},
      {[&ours] { ours.group().get_2d_data(); }, [] {}, [&ours] { ours.prepare(); }},
      {[&ours] { ours.group().get_tri_data(); }},
      {[&ours] { ours.group().get_edge_data(); }},
      {[&ours] { ours.group().get_node_data(); }, [&ours] { ours.release(); }},
  });
  report.add_time("skin_" + mesh_name, medians[0]);
  report.add_time("2d_data_with_skin_" + mesh_name, medians[1]);
  report.add_time("tri_data_" + mesh_name, medians[2]);
  report.add_time("edge_data_" + mesh_name, medians[3]);
  report.add_time("node_data_" + mesh_name, medians[4]);
}

/// What the peers of the comparisons take by themselves, to be held against what is known of them.
void time_peers(const std::string& mesh_name, const RawMesh& raw, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  const MeshSkin skin(mesh.database.get(), mesh.entities, nullptr);
  const vtkSmartPointer<vtkUnstructuredGrid> volume = as_grid(raw);
  vtkSmartPointer<vtkUnstructuredGrid> grid;
  vtkSmartPointer<vtkPolyData> surface;
  vtkSmartPointer<vtkPolyData> result;
  const std::vector<StockRoute> routes = stock_routes();
  const auto release = [&result] { result = nullptr; };
  const std::vector<double> medians = hold_contest({
      {[&] { grid = literal_grid(*mesh.database, skin.sides()); }},
      {[&] { surface = literal_surface(grid); }},
      {[&] { result = literal_nodes(grid); }, release},
      {[&] { result = stock_edges(surface); }, release},
      {[&] { result = stock_surface(routes[0], volume); }, release},
      {[&] { result = stock_surface(routes[1], volume); }, release},
  });
  report.add_time("literal_grid_" + mesh_name, medians[0]);
  report.add_time("literal_grid_surface_nodes_" + mesh_name, medians[0] + medians[1] + medians[2]);
  report.add_time("vtkExtractEdges_" + mesh_name, medians[3]);
  report.add_time("vtkDataSetSurfaceFilter_" + mesh_name, std::min(medians[4], medians[5]));
}

/// First displays of cubes of hexahedra, from 125 thousand to 8 million.
void fit_growth(const Settings& settings, Report& report) {
  std::vector<double> sizes;
  std::vector<double> times;
  const std::pair<int, const char*> cubes[] = {{50, "hex125k"}, {63, "hex250k"}, {80, "hex500k"}, {100, "hex1m"},
                                               {126, "hex2m"},  {159, "hex4m"},  {200, "hex8m"}};
  for (const auto& [n, mesh_name] : cubes) {
    DatabaseMesh mesh = as_database(cube_of_hexahedra(settings, n));
    OurDrawing ours(mesh);
    sizes.push_back(static_cast<double>(mesh.entities.elements[Tarn::Hex].size()));
    times.push_back(
        hold_contest({{[&ours] { ours.build(); }, [&ours] { ours.release(); }, [&ours] { ours.prepare(); }}}).front());
    report.add_time(std::string("first_display_") + mesh_name, times.back());
  }
  report.add_exponent("first_display", fitted_exponent(sizes, times));
}

} // namespace

std::vector<Row> stage_rows(const Settings& settings) {
  return {
      {"stages_hex1m", [settings](Report& report) { time_stages("hex1m", cube_of_hexahedra(settings, 100), report); }},
      {"stages_tet1m",
       [settings](Report& report) { time_stages("tet1m", box_of_tetrahedra(settings.edge(55)), report); }},
      {"peers_hex1m", [settings](Report& report) { time_peers("hex1m", cube_of_hexahedra(settings, 100), report); }},
      {"peers_tet1m",
       [settings](Report& report) { time_peers("tet1m", box_of_tetrahedra(settings.edge(55)), report); }}};
}

std::vector<Row> growth_rows(const Settings& settings) {
  return {{"first_display", [settings](Report& report) { fit_growth(settings, report); }}};
}

} // namespace bench
