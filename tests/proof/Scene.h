#pragma once

#include "model/GMeshModel.h"
#include "pick/GMeshPicker.h"
#include "platform/base/GView.h"
#include "tests/proof/ProofMesh.h"

#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>

#include <memory>
#include <string>
#include <vector>

namespace proof {

/// From where a view looks. Directions and sizes are relative to the mesh.
struct Look {
  Point direction = {0.5, 0.6, 1}; ///< from the mesh to the eye
  Point up = {0, 1, 0};
  bool parallel = false;
  double zoom = 1.4;       ///< 1: the mesh's sphere fills the view's height
  double angle = 30;       ///< of perspective, degrees
  Point shift = {0, 0, 0}; ///< of eye and focal point, in radii of that sphere
  double viewport[4] = {0, 0, 1, 1};
};

/// A mesh, how it is shown and from where.
struct Scene {
  std::string name;
  Mesh mesh;
  std::vector<Look> views = {Look{}};
  int width = 200;
  int height = 170;
  std::vector<int> hidden;
  Clip clip;
  bool translucent = false;
};

/// The thirty odd scenes of the proof.
std::vector<Scene> all_scenes();

/// Makes the camera of a view.
void set_camera(vtkCamera* camera, const Mesh& mesh, const Look& look);

/// A scene as a host puts it up: model, views in one window, picker.
class Stage {
public:
  explicit Stage(Scene& scene);

  Scene& scene() { return scene_; }
  GMeshModel& model() { return *model_; }
  GView* view(std::size_t i) { return views_[i].get(); }
  std::size_t view_count() const { return views_.size(); }
  vtkRenderWindow* window() { return window_; }
  /// Of each element, whether it shows.
  const std::vector<char>& shown() const { return shown_; }
  /// Says anew what is hidden and clipped, and draws a frame.
  void show(const std::vector<int>& hidden, const Clip& clip, bool draw = true);

private:
  Scene& scene_;
  vtkNew<vtkRenderWindow> window_;
  std::vector<std::unique_ptr<GView>> views_;
  std::unique_ptr<GMeshModel> model_;
  GMeshPicker picker_;
  std::vector<char> shown_;
};

/// The element drawn in each pixel of a view's window, rows from the bottom; -1 where there is none. Every shown
/// element of a pickable kind in a flat colour of its own: faces of shells and solids, dots of superelements
/// (`dot_size` pixels).
std::vector<int> draw_ids(const Scene& scene, const std::vector<char>& shown, const Look& look, double dot_size);

} // namespace proof
