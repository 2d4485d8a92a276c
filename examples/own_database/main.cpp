// A host whose mesh lives in its own arrays.
//
//   own_database            shows a bar in a window while it is being twisted
//   own_database FILE.png   writes a picture of the twisted bar
#include "SolverDatabase.h"

#include <orbel_mesh/model/GMeshModel.h>
#include <orbel_mesh/platform/base/GView.h>

#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkWindowToImageFilter.h>

#include <iostream>

namespace {

constexpr double half_turn = 3.14159265358979;
constexpr int steps = 60;

void show_parts(GMeshModel& model, const SolverDatabase& database, const SolverMesh& mesh) {
  const TovanColor colors[] = {{230, 159, 0}, {86, 180, 233}, {190, 190, 190}};
  for (std::size_t part = 0; part < mesh.part_names.size(); ++part) {
    MeshVector entities;
    model.get_mesh_to_draw(database.owner(part), entities);
    model.add_mesh(database.owner(part), entities, colors[part % 3], 1, false);
  }
}

// The solver moves its nodes in its own arrays; the library is told which owners are affected.
void load_step(GMeshModel& model, const SolverDatabase& database, SolverMesh& mesh, const SolverMesh& straight,
               double radians) {
  twist(mesh, straight, radians);
  for (std::size_t part = 0; part < mesh.part_names.size(); ++part)
    model.update_mesh_transformed(database.owner(part));
}

void look_at(const GView& view) {
  view.renderer()->SetBackground(1, 1, 1);
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(3, -5, 6);
  camera->SetViewUp(0, 0, 1);
  view.renderer()->ResetCamera();
}

bool write_picture(const GView& view, const char* path) {
  vtkNew<vtkWindowToImageFilter> grabber;
  grabber->SetInput(view.window());
  grabber->ReadFrontBufferOff();
  vtkNew<vtkPNGWriter> writer;
  writer->SetInputConnection(grabber->GetOutputPort());
  writer->SetFileName(path);
  writer->Write();
  return writer->GetErrorCode() == 0;
}

} // namespace

int main(int argc, char** argv) {
  // In this order, so that each outlives what borrows it: mesh, database, view, model.
  const SolverMesh straight = make_bar();
  SolverMesh mesh = straight;
  SolverDatabase database(mesh);
  GView view;
  view.window()->SetSize(800, 600);
  view.window()->SetWindowName("own_database");
  view.window()->SetOffScreenRendering(argc > 1);
  GMeshModel model(&database);
  show_parts(model, database, mesh);
  model.set_line_color({40, 40, 40});
  view.render();
  look_at(view);

  if (argc > 1) {
    load_step(model, database, mesh, straight, half_turn);
    view.render();
    if (write_picture(view, argv[1])) return 0;
    std::cerr << "own_database: cannot write " << argv[1] << '\n';
    return 1;
  }

  vtkNew<vtkRenderWindowInteractor> interactor;
  interactor->SetRenderWindow(view.window());
  for (int step = 1; step <= steps; ++step) {
    load_step(model, database, mesh, straight, half_turn * step / steps);
    view.render();
  }
  interactor->Start();
  return 0;
}
