#include "Rows.h"

#include "Agreement.h"
#include "Contest.h"
#include "LiteralGrid.h"
#include "MeshInputs.h"

#include "group/EntityColors.h"
#include "group/MeshSkin.h"
#include "group/VolumeGrid.h"

#include <vtkUnstructuredGrid.h>

#include <array>
#include <map>
#include <vector>

namespace bench {
namespace {

void compare_grids(const std::string& name, const RawMesh& raw, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  const MeshSkin skin(mesh.database.get(), mesh.entities, nullptr);
  const std::vector<TovanColor> no_nodes;
  const std::array<std::vector<TovanColor>, 10> no_elements;
  const std::map<Tarn::Handle<0>, TovanColor> no_vertices;
  const EntityColors one_color{GMeshGroup::SingleColor, TovanColor(), no_nodes, no_elements, no_vertices};
  const VolumeGridSource source{mesh.database.get(), mesh.entities, nullptr, nullptr, one_color};
  vtkSmartPointer<vtkUnstructuredGrid> grid;
  const Contender ours = {[&] { grid = make_volume_grid(source, skin.sides()); }, [&grid] { grid = nullptr; }};
  const Contender literal = {[&] { grid = literal_grid(*mesh.database, skin.sides()); }, [&grid] { grid = nullptr; }};

  require_equal(name, make_volume_grid(source, skin.sides()), literal_grid(*mesh.database, skin.sides()));
  const std::vector<double> medians = hold_contest({ours, literal});
  report.add_result(name, medians[0], medians[1]);
}

} // namespace

std::vector<Row> grid_rows(const Settings& settings) {
  const auto row = [](const std::string& name, const std::function<RawMesh()>& make_mesh) {
    return Row{name, [name, make_mesh](Report& report) { compare_grids(name, make_mesh(), report); }};
  };
  return {row("grid_hex1m",
              [settings] { return box_of_hexahedra(settings.edge(100), settings.edge(100), settings.edge(100)); }),
          row("grid_tet1m", [settings] { return box_of_tetrahedra(settings.edge(55)); }),
          row("grid_quad1m", [settings] { return square_of_quadrilaterals(settings.edge(1000)); })};
}

} // namespace bench
