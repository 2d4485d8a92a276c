#include "Rows.h"

#include "Contest.h"
#include "MeshInputs.h"

#include "group/GMeshGroup.h"
#include "highlight/GMeshHighlight.h"
#include "highlight/GMeshHighlightProperties.h"
#include "model/GMeshModel.h"
#include "platform/util/TovanColor.h"

#include <vtkPolyData.h>

#include <stdexcept>

namespace bench {
namespace {

/// When what a model draws of a mesh was built; equal stamps say that nothing was built anew.
std::vector<vtkMTimeType> stamps_of(GMeshGroup& group) {
  return {group.get_tri_data()->GetMTime(), group.get_edge_data()->GetMTime(), group.get_node_data()->GetMTime()};
}

/// One element of a mesh that is shown: into the highlight set, and drawn up to date for the next frame.
void time_one_highlight(const RawMesh& raw, const std::string& name, Report& report) {
  DatabaseMesh mesh = as_database(raw);
  GMeshModel model(mesh.database.get());
  model.add_mesh(mesh.owner, mesh.entities, TovanColor(200, 200, 200), 1.0F, false);
  model.update_parts();
  const std::vector<vtkMTimeType> before = stamps_of(*model.get_mesh(mesh.owner));

  GMeshHighlightProperties looks;
  GMeshHighlight highlight(&model, &looks);
  const auto& elements = mesh.entities.elements[Tarn::Hex];
  MeshVector one;
  one.elements[Tarn::Hex] = {elements[elements.size() / 2]};
  const std::vector<double> medians = hold_contest({{[&] {
                                                       highlight.highlight_mesh(one);
                                                       highlight.update_parts();
                                                       model.update_parts();
                                                     },
                                                     [&] { highlight.unhighlight_mesh(one); }}});
  if (stamps_of(*model.get_mesh(mesh.owner)) != before) throw std::runtime_error(name + ": the model was rebuilt");
  report.add_time(name, medians.front());
}

} // namespace

std::vector<Row> highlight_rows(const Settings& settings) {
  return {{"highlight_one_of_1m", [settings](Report& report) {
             const int n = settings.edge(100);
             time_one_highlight(box_of_hexahedra(n, n, n), "highlight_one_of_1m", report);
           }}};
}

} // namespace bench
