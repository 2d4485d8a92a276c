// Draws a mesh through liborbel_mesh and a platform that it was not built with; fails when a figure is wrong.
#include "SolverDatabase.h"

#include <orbel_mesh/group/GMeshGroup.h>
#include <orbel_mesh/highlight/GMeshHighlight.h>
#include <orbel_mesh/highlight/GMeshHighlightProperties.h>
#include <orbel_mesh/model/GMeshModel.h>
#include <orbel_mesh/pick/GMeshPicker.h>
#include <orbel_mesh/platform/base/GView.h>

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <dlfcn.h>

#include <iostream>
#include <string>

// The foreign platform's own way to pick.
extern "C" unsigned long long foreign_pick(vtkRenderer* renderer, float x, float y);

namespace {

bool failed = false;

void expect(const std::string& what, long long expected, long long found) {
  if (expected == found) return;
  failed = true;
  std::cerr << what << ": expected " << expected << ", found " << found << '\n';
}

void add(GMeshModel& model, const SolverDatabase& database, std::size_t part, TovanColor color) {
  MeshVector entities;
  model.get_mesh_to_draw(database.owner(part), entities);
  model.add_mesh(database.owner(part), entities, color, 1, false);
}

int pixels_of(const GView& view, int r, int g, int b) {
  const int* size = view.window()->GetSize();
  vtkNew<vtkUnsignedCharArray> pixels;
  view.window()->GetPixelData(0, 0, size[0] - 1, size[1] - 1, 0, pixels);
  int count = 0;
  for (vtkIdType p = 0; p < pixels->GetNumberOfTuples(); ++p) {
    const unsigned char* at = pixels->GetPointer(3 * p);
    count += at[0] == r && at[1] == g && at[2] == b;
  }
  return count;
}

// The platform that runs is the foreign one: the reference library defines this function, the foreign one does not.
void expect_foreign_platform() {
  expect("reference database in this process", 0, dlsym(RTLD_DEFAULT, "_ZN4Tarn12MeshDatabaseC1Ev") != nullptr);
}

} // namespace

int main() {
  enum Part { Foot, Bar, Plate };
  expect_foreign_platform();

  SolverMesh mesh = make_bar();
  SolverDatabase database(mesh);
  GView view;
  view.window()->SetOffScreenRendering(1);
  view.window()->SetSize(400, 400);
  view.window()->SetMultiSamples(0);
  GMeshModel model(&database);
  add(model, database, Foot, {255, 0, 0});
  add(model, database, Plate, {0, 0, 255});
  model.update_parts();

  // 8 x 8 x 6 hexahedra: their outside, counted by hand; 24 x 24 quadrilaterals.
  GMeshGroup* foot = model.get_mesh(database.owner(Foot));
  expect("faces of the foot", 2 * 64 + 4 * 48, foot->get_2d_data()->GetNumberOfCells());
  expect("points of the foot", 2 * 81 + 5 * 32, foot->get_2d_data()->GetNumberOfPoints());
  expect("surface of the foot", 320, foot->get_tri_data()->GetNumberOfCells());
  expect("edges of the foot", 640, foot->get_edge_data()->GetNumberOfCells());
  expect("cells of the plate", 576, model.get_mesh(database.owner(Plate))->get_2d_data()->GetNumberOfCells());

  // The upper three layers are beyond the plane.
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(0, 0, 0.3125);
  plane->SetNormal(0, 0, -1);
  model.set_clipping_plane(plane);
  expect("faces of the clipped foot", 2 * 64 + 4 * 24, foot->get_2d_data()->GetNumberOfCells());
  model.set_clipping_plane(nullptr);
  expect("faces of the foot again", 320, foot->get_2d_data()->GetNumberOfCells());

  // From above, flat colours: the foot hides the middle of the plate.
  model.surface_flat_property()->SetLighting(false);
  model.set_edge_vis(false);
  view.render();
  view.renderer()->ResetCamera();
  view.render();
  const int red = pixels_of(view, 255, 0, 0), blue = pixels_of(view, 0, 0, 255);
  expect("foot and plate are seen", 1, red > 5000 && blue > 4 * red);

  // A pick beside the middle, where a node is, finds an element, and what was picked is drawn in green.
  {
    GMeshPicker picker;
    GMeshHighlightProperties looks;
    GMeshHighlight highlight(&model, &looks);
    highlight.observe_selections(true);
    view.render();
    expect("nothing picked yet", 0, pixels_of(view, 0, 255, 0));
    expect("something is picked", 1, foreign_pick(view.renderer(), 206, 208) != 0);
    view.render();
    expect("what was picked is drawn", 1, pixels_of(view, 0, 255, 0) > 0);
  }

  model.set_visibility(database.owner(Foot), false);
  view.render();
  expect("foot hidden", 0, pixels_of(view, 255, 0, 0));
  return failed ? 1 : 0;
}
