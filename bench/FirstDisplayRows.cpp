#include "Rows.h"

#include "Agreement.h"
#include "Contest.h"
#include "MeshInputs.h"
#include "OurDrawing.h"
#include "Stock.h"

#include <vtkIdTypeArray.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

namespace bench {
namespace {

constexpr std::uint64_t seed = 20240611;

/// Ours and a peer's drawing show the same faces, edges and nodes of the same mesh.
void require_same_drawing(const std::string& name, const DatabaseMesh& mesh, GMeshGroup& group,
                          const StockDrawing& peer) {
  const auto our_nodes = [&mesh](vtkPolyData* data) {
    return nodes_of_handles(vtkTypeUInt64Array::SafeDownCast(data->GetPointData()->GetArray("NodeIds")),
                            mesh.first_node.value);
  };
  const auto peer_nodes = [](vtkPolyData* data) {
    return nodes_of_point_ids(vtkIdTypeArray::SafeDownCast(data->GetPointData()->GetArray("vtkOriginalPointIds")));
  };
  vtkPolyData* surface = group.get_tri_data();
  vtkPolyData* edges = group.get_edge_data();
  vtkPolyData* nodes = group.get_node_data();
  require_equal(name + ", areas", surface_area(surface), surface_area(peer.surface), 1e-6);
  require_equal(name + ", faces", cell_set(surface->GetPolys(), our_nodes(surface)),
                cell_set(peer.surface->GetPolys(), peer_nodes(peer.surface)));
  require_equal(name + ", edges", cell_set(edges->GetLines(), our_nodes(edges)),
                cell_set(peer.edges->GetLines(), peer_nodes(peer.edges)));
  require_equal(name + ", nodes", cell_set(nodes->GetVerts(), our_nodes(nodes)),
                cell_set(peer.nodes->GetVerts(), peer_nodes(peer.nodes)));
}

void check_drawings(const std::string& name, DatabaseMesh& mesh, OurDrawing& ours, const StockRoute& route,
                    vtkUnstructuredGrid* grid) {
  ours.prepare();
  require_same_drawing(name, mesh, ours.group(), stock_drawing(route, grid, OriginalPoints::Pass));
  ours.release();
}

/// The routes that have a chance: those that take at most twice the time of the fastest.
std::vector<StockRoute> promising_routes(vtkUnstructuredGrid* grid) {
  const std::vector<StockRoute> routes = stock_routes();
  std::vector<double> times;
  for (const StockRoute& route : routes)
    times.push_back(time_once({[&] { stock_drawing(route, grid, OriginalPoints::Forget); }}));
  const double limit = 2 * *std::min_element(times.begin(), times.end());
  std::vector<StockRoute> promising;
  for (std::size_t i = 0; i < routes.size(); ++i)
    if (times[i] <= limit) promising.push_back(routes[i]);
  return promising;
}

void compare_first_display(const std::string& name, const RawMesh& raw, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  const vtkSmartPointer<vtkUnstructuredGrid> grid = as_grid(raw);
  OurDrawing ours(mesh);
  StockDrawing peer;
  std::vector<Contender> contenders = {
      {[&ours] { ours.build(); }, [&ours] { ours.release(); }, [&ours] { ours.prepare(); }}};
  const std::vector<StockRoute> routes = promising_routes(grid);
  for (const StockRoute& route : routes)
    contenders.push_back({[&peer, &grid, route] { peer = stock_drawing(route, grid, OriginalPoints::Forget); },
                          [&peer] { peer = StockDrawing(); }});
  check_drawings(name, mesh, ours, routes.front(), grid);
  const std::vector<double> medians = hold_contest(contenders);
  report.add_result(name, medians.front(), *std::min_element(medians.begin() + 1, medians.end()));
}

} // namespace

std::vector<Row> first_display_rows(const Settings& settings) {
  const auto row = [](const std::string& name, const std::function<RawMesh()>& make_mesh) {
    return Row{name, [name, make_mesh](Report& report) { compare_first_display(name, make_mesh(), report); }};
  };
  const auto hexes = [settings](int n) {
    return box_of_hexahedra(settings.edge(n), settings.edge(n), settings.edge(n));
  };
  const auto tets = [settings](int n) { return box_of_tetrahedra(settings.edge(n)); };
  return {row("first_display_hex1m", [hexes] { return hexes(100); }),
          row("first_display_tet1m", [tets] { return tets(55); }),
          row("first_display_hex1m_shuffled", [hexes] { return shuffled(hexes(100), seed); }),
          row("first_display_tet1m_shuffled", [tets] { return shuffled(tets(55), seed); }),
          row("first_display_tet5m", [tets] { return tets(94); }),
          row("first_display_hex8m", [hexes] { return hexes(200); }),
          row("first_display_wheelset", [settings] { return read_tetrahedra(settings.wheelset); })};
}

} // namespace bench
