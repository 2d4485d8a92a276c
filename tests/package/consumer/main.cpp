// Draws one hexahedron without a window and checks what comes out.
#include <orbel_mesh/group/GMeshGroup.h>
#include <orbel_mesh/mesh/orbel_mesh_version.h>
#include <orbel_mesh/model/GMeshModel.h>
#include <orbel_mesh/reference/tarn/MeshDatabase.h>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <cstdio>
#include <cstring>

int main() {
  const double corners[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
  Tarn::MeshDatabase database;
  Tarn::SMeshOwnerType* owner = database.add_owner("block", 3);
  database.add_nodes(8, corners);
  database.add_elements(Tarn::Hex, 8, 1, database.nodes().data(), nullptr, owner);

  GMeshModel model(&database);
  MeshVector mesh;
  model.get_mesh_to_draw(owner, mesh);
  model.add_mesh(owner, mesh, TovanColor(200, 100, 50), 1, false);
  GMeshGroup* group = model.get_mesh(owner);
  const bool right = group && group->get_2d_data()->GetNumberOfCells() == 6 &&
                     group->get_edge_data()->GetNumberOfCells() == 12 &&
                     std::strcmp(ORBEL_MESH_VERSION, EXPECTED_VERSION) == 0;
  std::puts(right ? "six faces, twelve edges" : "wrong");
  return right ? 0 : 1;
}
