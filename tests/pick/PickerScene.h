#pragma once

#include "model/GMeshModel.h"
#include "pick/GMeshPicker.h"
#include "tests/base/Frame.h"
#include "tests/pick/PickDoubles.h"
#include "tests/pick/PickSystemDouble.h"
#include "tests/support/NamedMeshes.h"

#include <vtkActor.h>
#include <vtkActorCollection.h>
#include <vtkCamera.h>

/// A view of 300 by 200 pixels that looks down z at the plane z = 0 in parallel: a unit is 50 pixels, and (3, 2, 0) is
/// the centre. The eye is at z = 10, the clipping planes at z = 5 and z = -5.
class PlanView : public OffscreenView {
public:
  PlanView() { look_down(*renderer()); }

  static void look_down(vtkRenderer& renderer) {
    vtkCamera* camera = renderer.GetActiveCamera();
    camera->SetPosition(3, 2, 10);
    camera->SetFocalPoint(3, 2, 0);
    camera->SetViewUp(0, 1, 0);
    camera->ParallelProjectionOn();
    camera->SetParallelScale(2);
    camera->SetClippingRange(5, 15);
  }

  /// Makes every actor pickable, whatever its model thinks of that.
  void let_all_be_picked() {
    for (vtkActor* actor : actors())
      actor->SetPickable(1);
  }

  /// The actors in order.
  std::vector<vtkActor*> actors() {
    std::vector<vtkActor*> found;
    vtkCollectionSimpleIterator at;
    vtkActorCollection* all = renderer()->GetActors();
    all->InitTraversal(at);
    while (vtkActor* actor = all->GetNextActor(at))
      found.push_back(actor);
    return found;
  }
};

/// Where the plan view shows x and y.
inline float pixel(double coordinate) { return static_cast<float>(50 * coordinate); }

/// A sheet of unit quadrilaterals that a model shows; one owner.
struct ShownSheet {
  explicit ShownSheet(int nx, double z = 0) {
    for (int i = 0; i <= nx; ++i)
      for (const int y : {0, 1})
        mesh.add_node(i, y, z);
    for (int i = 0; i < nx; ++i)
      mesh.add_element(Tarn::Quad, {2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
    model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
    model.update_parts();
  }
  const Elems& quads() const { return mesh.mesh.elements[Tarn::Quad]; }

  test_support::NamedMesh mesh;
  GMeshModel model{mesh.database.get()};
};
