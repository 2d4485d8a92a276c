#pragma once

#include "platform/base/GView.h"
#include "viewer/ClipControl.h"
#include "viewer/HoverPace.h"
#include "viewer/InputHandler.h"
#include "viewer/KeyBindings.h"
#include "viewer/Legend.h"
#include "viewer/Options.h"
#include "viewer/Overlay.h"
#include "viewer/OwnerControl.h"
#include "viewer/Picking.h"
#include "viewer/RegionTool.h"
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

/// The window: the scene in a view, and what mouse and keys do to it. Each change of what is picked goes to standard
/// output as one line. Needs a display.
class ViewerWindow : private InputHandler {
public:
  /// `scene` is borrowed. `title` names what is shown.
  ViewerWindow(Scene& scene, const Options& options, const std::string& title);
  ~ViewerWindow() override;
  ViewerWindow(const ViewerWindow&) = delete;
  ViewerWindow& operator=(const ViewerWindow&) = delete;

  /// Picks what the options say: "" or one line that says what is missing.
  std::string select_at_start();
  /// Opens the window and returns when it is closed.
  void run();

private:
  using Change = std::function<std::string(DisplayOptions&)>;

  // Keys: ViewerWindowKeys.cpp.
  void bind_mode_keys();
  void bind_display_keys();
  void bind_clip_keys();
  void bind_label_keys();
  void bind_view_keys();
  void bind_owner_keys();
  void bind_pick_keys();
  void bind_region_keys();
  void bind_window_keys();
  void bind(std::vector<std::string> keys, const std::string& label, const std::string& text,
            std::function<void(const std::string& key)> action);
  void key(const std::string& key, char character) override;
  bool region_key(const std::string& key);
  void type(const std::string& key, char character);

  // Mouse and picks: ViewerWindowPicks.cpp.
  bool press(const MouseState& mouse) override;
  void release(const MouseState& mouse) override;
  void click(const MouseState& mouse, bool twice) override;
  void move(const MouseState& mouse) override;
  void leave() override;
  bool turn_wheel(const MouseState& mouse, int notch) override;
  void time_out() override;
  void forget_click();
  void wait(int milliseconds);
  void hover();
  void end_hover();
  void toggle_hover();
  void finish_region(GPickerBase::Change change);
  void start_region(PickRequest::Shape shape);
  void recentre();
  void look_at(const std::array<double, 3>& point);
  void clear_picks();
  void report_picks();
  void find(const std::string& text);
  void save_picks();
  void set_filter(const std::vector<std::string>& filter);
  void toggle_kind(const std::string& key);
  void hide_picked();
  void isolate_picked();
  void owners_changed(const std::string& text);

  // Everything else: ViewerWindow.cpp.
  void render();
  void render_soon();
  void update_texts();
  void update_legend();
  void say(const std::string& text, bool is_error = false);
  void change_display(const Change& change);
  void apply_clip();
  void turn_labels();
  void look_from(ViewFrom view);
  void fit();
  void place_camera(const std::function<void(double covered)>& place);
  void turn(double azimuth, double elevation);
  void zoom(double factor);
  void toggle_parallel();
  void move_focus(int step);
  void outline_focus();
  void start_anew();
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
  Legend legend_;
  RegionTool region_;
  ClipControl clip_;
  OwnerControl owners_;
  Picking picking_;
  vtkNew<vtkOutlineSource> outline_box_;
  vtkNew<vtkActor> outline_;
  std::vector<KeyBinding> bindings_;

  std::string picked_ids_;           // as told last
  std::string picked_text_;          // the same in words
  std::optional<MouseState> walk_;   // where the next click takes what lies below
  std::optional<std::string> typed_; // what is being typed to be found
  std::optional<std::size_t> legend_press_;
  MouseState mouse_;
  HoverPace pace_;
  bool hovers_ = true;
  int long_looks_ = 0; // hovering, in a row
  bool button_down_ = false;
  std::optional<double> timer_due_; // when the next timer ends, in seconds
  bool needs_frame_ = false;        // something changed since the last one
};

} // namespace viewer
