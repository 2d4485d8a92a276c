#pragma once

#include "MeshInputs.h"

#include "model/GMeshModel.h"
#include "pick/GMeshPicker.h"
#include "platform/base/GView.h"

#include <vtkNew.h>
#include <vtkRenderWindow.h>

#include <utility>
#include <vector>

namespace bench {

constexpr int width = 1280;
constexpr int height = 720;

/// A view of the usual size in a window that is never shown, and the mesh picker. Every model that is hooked to views
/// shows in it, so that one mesh at a time is `show`n.
class PickStage {
public:
  PickStage();

  GView* view() { return view_.get(); }
  GMeshPicker& picker() { return picker_; }
  /// Moves the camera so that what is shown fills the view, seen along the direction.
  void look_at_all(double x, double y, double z);

private:
  vtkNew<vtkRenderWindow> window_;
  std::unique_ptr<GView> view_;
  GMeshPicker picker_;
};

/// A mesh and the model that draws it; shown nowhere at first.
class PickedMesh {
public:
  /// All in one owner.
  explicit PickedMesh(const RawMesh& raw);
  /// In that many owners, each a run of elements of about equal length.
  PickedMesh(const RawMesh& raw, int owners);

  /// Shows the mesh in the view, and draws.
  void show(PickStage& stage);
  /// Takes it out again.
  void hide();
  /// Has what was kept of where the mesh lies forgotten, as when nodes were moved, and draws.
  void touch(PickStage& stage);
  /// Where the element stands in the mesh; the count of elements for a stranger.
  std::size_t position_of(Tarn::Handle<1> element) const { return element.value - first_element_.value; }

private:
  std::unique_ptr<Tarn::MeshDatabase> database_;
  std::unique_ptr<GMeshModel> model_;
  Tarn::Handle<1> first_element_;
};

} // namespace bench
