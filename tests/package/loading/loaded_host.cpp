// A host that is itself loaded at run time, with the libraries behind it: it uses objects of all four.
#include "group/GMeshGroup.h"
#include "model/GMeshModel.h"
#include "platform/base/GView.h"
#include "reference/tarn/MeshDatabase.h"

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

/// Builds a mesh of one hexahedron and the data that draw it. The number of faces and edges.
extern "C" __attribute__((visibility("default"))) int use_objects() {
  const double corners[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
  Tarn::MeshDatabase database;
  Tarn::SMeshOwnerType* owner = database.add_owner("block", 3);
  database.add_nodes(8, corners);
  database.add_elements(Tarn::Hex, 8, 1, database.nodes().data(), nullptr, owner);

  GView view;
  GMeshModel model(&database);
  MeshVector mesh;
  model.get_mesh_to_draw(owner, mesh);
  model.add_mesh(owner, mesh, TovanColor(200, 100, 50), 1, false);
  model.update_parts();
  vtkNew<vtkPlane> plane;
  model.set_clipping_plane(plane);
  model.update_parts();
  model.set_clipping_plane(nullptr);
  GMeshGroup* group = model.get_mesh(owner);
  return static_cast<int>(group->get_2d_data()->GetNumberOfCells() + group->get_edge_data()->GetNumberOfCells());
}
