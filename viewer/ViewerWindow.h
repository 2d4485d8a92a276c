#pragma once

#include "platform/base/GView.h"
#include "viewer/ClipControl.h"
#include "viewer/KeyBindings.h"
#include "viewer/Options.h"
#include "viewer/Overlay.h"
#include "viewer/ViewerStyle.h"

#include <vtkNew.h>

#include <optional>
#include <string>
#include <vector>

class vtkActor;
class vtkOutlineSource;
class vtkRenderWindow;
class vtkRenderWindowInteractor;

namespace viewer {

class Scene;

/// The window: the scene in a view, and what mouse and keys do to it. Needs a display.
class ViewerWindow {
public:
  /// `scene` is borrowed. `title` names what is shown.
  ViewerWindow(Scene& scene, const Options& options, const std::string& title);
  ~ViewerWindow();
  ViewerWindow(const ViewerWindow&) = delete;
  ViewerWindow& operator=(const ViewerWindow&) = delete;

  /// Opens the window and returns when it is closed.
  void run();

private:
  using Change = std::function<std::string(DisplayOptions&)>;

  void bind_mode_keys();
  void bind_display_keys();
  void bind_clip_keys();
  void bind_view_keys();
  void bind_owner_keys();
  void bind_window_keys();
  void bind(std::vector<std::string> keys, const std::string& label, const std::string& text,
            std::function<void(const std::string& key)> action);

  void render();
  void update_status();
  void say(const std::string& text, bool is_error = false);
  void change_display(const Change& change);
  void apply_clip();
  void look_from(ViewFrom view);
  void fit();
  void turn(double azimuth, double elevation);
  void zoom(double factor);
  void toggle_parallel();
  void focus(int step);
  void set_focused_visible(bool visible);
  void isolate();
  void show_all();
  void outline_focus();
  void reset();
  void take_picture();

  Scene& scene_;
  Options options_;
  std::string title_;
  CameraOptions camera_;
  vtkNew<vtkRenderWindow> window_;
  vtkNew<vtkRenderWindowInteractor> interactor_;
  vtkNew<ViewerStyle> style_;
  GView view_;
  Overlay overlay_;
  ClipControl clip_;
  vtkNew<vtkOutlineSource> outline_box_;
  vtkNew<vtkActor> outline_;
  std::vector<KeyBinding> bindings_;
  std::optional<std::size_t> focus_;
};

} // namespace viewer
