#include "viewer/ViewerWindow.h"

#include "viewer/Camera.h"
#include "viewer/MeshBounds.h"
#include "viewer/Messages.h"
#include "viewer/OptionValues.h"
#include "viewer/Picture.h"
#include "viewer/Scene.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkMath.h>
#include <vtkOutlineSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace viewer {
namespace {

constexpr double usual_shrink = 0.8;
constexpr double clip_step = 0.05;
constexpr double turn_step = 15;
constexpr double zoom_step = 1.25;

std::array<double, 6> bounds_or_unit(Tarn::MeshDatabase& database) {
  std::array<double, 6> bounds = {0, 1, 0, 1, 0, 1};
  mesh_bounds(database, bounds);
  return bounds;
}

// A name in the working folder that is not taken yet.
std::string free_picture_name() {
  for (int number = 1;; ++number) {
    const std::string digits = std::to_string(number);
    const std::string name =
        "orbel_view-" + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits + ".png";
    if (!std::filesystem::exists(name)) return name;
  }
}

const char* on_or_off(bool on) { return on ? "on" : "off"; }

} // namespace

ViewerWindow::ViewerWindow(Scene& scene, const Options& options, const std::string& title)
    : scene_(scene), options_(options), title_(title), camera_(options.camera), view_(window_),
      overlay_(view_.renderer()), clip_(options.display.clip, bounds_or_unit(scene.database())) {
  window_->SetSize(options.resolution[0], options.resolution[1]);
  window_->SetWindowName(("orbel_view: " + one_line(title)).c_str());
  double background[3];
  options.display.background.to_rgb(background);
  view_.renderer()->SetBackground(background);

  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(outline_box_->GetOutputPort());
  outline_->SetMapper(mapper);
  outline_->GetProperty()->SetColor(0.1, 0.1, 0.1);
  outline_->GetProperty()->SetLineWidth(2);
  outline_->GetProperty()->LightingOff();
  outline_->PickableOff();
  outline_->VisibilityOff();
  view_.renderer()->AddActor(outline_);

  bind_mode_keys();
  bind_display_keys();
  bind_clip_keys();
  bind_view_keys();
  bind_owner_keys();
  bind_window_keys();
  overlay_.set_help(help_text(bindings_));
  style_->set_bindings(&bindings_);
  interactor_->SetRenderWindow(window_);
  interactor_->SetInteractorStyle(style_);
  // Frames go through the view, which brings the mesh up to date first.
  interactor_->EnableRenderOff();
  interactor_->AddObserver(vtkCommand::RenderEvent, this, &ViewerWindow::render);
}

ViewerWindow::~ViewerWindow() {
  view_.renderer()->RemoveActor(outline_);
  interactor_->SetInteractorStyle(nullptr);
}

void ViewerWindow::run() {
  interactor_->Initialize();
  look_from(options_.camera.view);
  say("H shows every key");
  interactor_->Start();
}

void ViewerWindow::bind(std::vector<std::string> keys, const std::string& label, const std::string& text,
                        std::function<void(const std::string& key)> action) {
  bindings_.push_back({std::move(keys), label, text, std::move(action)});
}

void ViewerWindow::bind_mode_keys() {
  bind({"1", "2", "3", "4", "5"}, "1 2 3 4 5", "wireframe, hidden lines, dimmed hidden lines, shaded, translucent",
       [this](const std::string& key) {
         change_display([&](DisplayOptions& display) {
           display.render_mode = static_cast<OBUtil::RenderMode>(OBUtil::Wireframe + key[0] - '1');
           return std::string(render_mode_name(display.render_mode));
         });
       });
}

void ViewerWindow::bind_display_keys() {
  const auto toggle = [this](const char* what, bool DisplayOptions::*setting) {
    return [this, what, setting](const std::string&) {
      change_display([&](DisplayOptions& display) {
        display.*setting = !(display.*setting);
        return std::string(what) + on_or_off(display.*setting);
      });
    };
  };
  bind({"e"}, "E", "edges on and off", toggle("edges ", &DisplayOptions::edges));
  bind({"n"}, "N", "nodes on and off", toggle("nodes ", &DisplayOptions::nodes));
  bind({"s"}, "S", "shrink elements, or not", [this](const std::string&) {
    change_display([&](DisplayOptions& display) {
      const double factor = options_.display.shrink < 1 ? options_.display.shrink : usual_shrink;
      display.shrink = display.shrink < 1 ? 1 : factor;
      return std::string("shrink ") + on_or_off(display.shrink < 1);
    });
  });
  bind({"k"}, "K", "colour by kind of element, or by owner", [this](const std::string&) {
    change_display([&](DisplayOptions& display) {
      display.color_by = display.color_by == ColorBy::Owner ? ColorBy::Kind : ColorBy::Owner;
      return std::string("colour by ") + (display.color_by == ColorBy::Owner ? "owner" : "kind");
    });
  });
}

void ViewerWindow::bind_clip_keys() {
  bind({"p"}, "P", "clipping plane on and off", [this](const std::string&) {
    clip_.toggle();
    apply_clip();
  });
  bind({"PageUp", "PageDown"}, "PageUp PageDown", "move the clipping plane", [this](const std::string& key) {
    clip_.move(key == "PageUp" ? clip_step : -clip_step);
    apply_clip();
  });
  bind({"a"}, "A", "turn the clipping plane to the next axis", [this](const std::string&) {
    clip_.turn();
    apply_clip();
  });
}

void ViewerWindow::bind_view_keys() {
  bind({"i"}, "I", "look from the corner", [this](const std::string&) { look_from(ViewFrom::Iso); });
  bind({"x", "y", "z"}, "X Y Z", "look from +x, +y, +z", [this](const std::string& key) {
    look_from(key == "x" ? ViewFrom::PlusX : key == "y" ? ViewFrom::PlusY : ViewFrom::PlusZ);
  });
  bind({"Shift+x", "Shift+y", "Shift+z"}, "Shift+X Y Z", "look from -x, -y, -z", [this](const std::string& key) {
    look_from(key == "Shift+x" ? ViewFrom::MinusX : key == "Shift+y" ? ViewFrom::MinusY : ViewFrom::MinusZ);
  });
  bind({"f"}, "F", "fit the visible mesh into the window", [this](const std::string&) { fit(); });
  bind({"v"}, "V", "parallel or perspective projection", [this](const std::string&) { toggle_parallel(); });
  bind({"Left", "Right", "Up", "Down"}, "Arrows", "turn", [this](const std::string& key) {
    turn(key == "Left"    ? -turn_step
         : key == "Right" ? turn_step
                          : 0,
         key == "Down" ? -turn_step
         : key == "Up" ? turn_step
                       : 0);
  });
  bind({"+", "-"}, "+ -", "zoom", [this](const std::string& key) { zoom(key == "+" ? zoom_step : 1 / zoom_step); });
}

void ViewerWindow::bind_owner_keys() {
  bind({"Tab", "Shift+Tab"}, "Tab Shift+Tab", "next and previous owner into focus",
       [this](const std::string& key) { focus(key == "Tab" ? 1 : -1); });
  bind({"Space"}, "Space", "hide or show the owner in focus", [this](const std::string&) {
    if (focus_)
      set_focused_visible(!scene_.is_visible(*focus_));
    else
      say("no owner is in focus: Tab takes one");
  });
  bind({"Return"}, "Return", "show the owner in focus alone", [this](const std::string&) { isolate(); });
  bind({"u"}, "U", "show all owners", [this](const std::string&) { show_all(); });
}

void ViewerWindow::bind_window_keys() {
  bind({"t"}, "T", "take a picture: orbel_view-001.png and so on", [this](const std::string&) { take_picture(); });
  bind({"r"}, "R", "everything as at the start", [this](const std::string&) { reset(); });
  bind({"h"}, "H", "this list", [this](const std::string&) {
    overlay_.show_help(!overlay_.shows_help());
    render();
  });
  bind({"q", "Ctrl+q"}, "Q", "quit", [this](const std::string&) { interactor_->TerminateApp(); });
  bind({}, "", "", nullptr);
  bind({}, "Mouse", "left rotates, middle or Shift+left pans, wheel or right zooms", nullptr);
}

void ViewerWindow::render() {
  overlay_.lay_out();
  view_.render();
  const auto errors = take_errors();
  if (errors.empty()) return;
  overlay_.set_message(errors.back(), true);
  view_.render();
}

void ViewerWindow::update_status() {
  std::size_t shown = 0;
  for (std::size_t i = 0; i < scene_.owners().size(); ++i)
    shown += scene_.is_visible(i);
  std::string text =
      title_ + "   " + std::to_string(shown) + " of " + std::to_string(scene_.owners().size()) + " owners shown";
  if (focus_)
    text += "   focus: " + std::to_string(*focus_ + 1) + " '" + scene_.owners()[*focus_].name + "'" +
            (scene_.is_visible(*focus_) ? "" : ", hidden");
  overlay_.set_status(one_line(text));
}

void ViewerWindow::say(const std::string& text, bool is_error) {
  overlay_.set_message(text, is_error);
  update_status();
  render();
}

void ViewerWindow::change_display(const Change& change) {
  DisplayOptions display = scene_.display();
  const std::string text = change(display);
  scene_.set_display(display);
  say(text);
}

void ViewerWindow::apply_clip() {
  change_display([&](DisplayOptions& display) {
    display.clip = clip_.plane();
    if (!display.clip) return std::string("clip off");
    std::string text = "clip: keep n.x >= " + std::to_string(display.clip->distance) + ", n =";
    for (const double component : display.clip->normal)
      text += " " + std::to_string(component);
    return text;
  });
}

void ViewerWindow::look_from(ViewFrom view) {
  CameraOptions camera = camera_;
  camera.view = view;
  point_camera(view_.renderer(), scene_.visible_points(), camera);
  // The zoom of the command line is for the first picture.
  camera_.zoom = 1;
  say(std::string("seen from ") + view_name(view));
}

void ViewerWindow::fit() {
  fit_camera(view_.renderer(), scene_.visible_points());
  say("the whole visible mesh");
}

void ViewerWindow::turn(double azimuth, double elevation) {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  camera->Azimuth(azimuth);
  camera->Elevation(elevation);
  camera->OrthogonalizeViewUp();
  view_.renderer()->ResetCameraClippingRange();
  render();
}

void ViewerWindow::zoom(double factor) {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  if (camera->GetParallelProjection() != 0)
    camera->SetParallelScale(camera->GetParallelScale() / factor);
  else
    camera->Dolly(factor);
  view_.renderer()->ResetCameraClippingRange();
  render();
}

// What is in focus keeps its size.
void ViewerWindow::toggle_parallel() {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  const double tangent = std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle() / 2));
  camera_.parallel = camera->GetParallelProjection() == 0;
  if (camera_.parallel)
    camera->SetParallelScale(camera->GetDistance() * tangent);
  else
    camera->Dolly(camera->GetDistance() * tangent / camera->GetParallelScale());
  camera->SetParallelProjection(camera_.parallel);
  view_.renderer()->ResetCameraClippingRange();
  say(camera_.parallel ? "parallel projection" : "perspective projection");
}

void ViewerWindow::focus(int step) {
  const std::size_t count = scene_.owners().size();
  if (count == 0) {
    say("there are no owners");
    return;
  }
  if (focus_)
    focus_ = (*focus_ + count + step) % count;
  else
    focus_ = step > 0 ? 0 : count - 1;
  outline_focus();
  say("owner '" + scene_.owners()[*focus_].name + "' is in focus");
}

void ViewerWindow::set_focused_visible(bool visible) {
  scene_.set_visible(*focus_, visible);
  say(std::string(visible ? "shown: '" : "hidden: '") + scene_.owners()[*focus_].name + "'");
}

void ViewerWindow::isolate() {
  if (!focus_) {
    say("no owner is in focus: Tab takes one");
    return;
  }
  for (std::size_t i = 0; i < scene_.owners().size(); ++i)
    scene_.set_visible(i, i == *focus_);
  say("alone: '" + scene_.owners()[*focus_].name + "'");
}

void ViewerWindow::show_all() {
  for (std::size_t i = 0; i < scene_.owners().size(); ++i)
    scene_.set_visible(i, true);
  say("all owners shown");
}

void ViewerWindow::outline_focus() {
  std::array<double, 6> bounds;
  const bool has_bounds = focus_ && scene_.owner_bounds(*focus_, bounds);
  outline_->SetVisibility(has_bounds);
  if (has_bounds) outline_box_->SetBounds(bounds.data());
}

void ViewerWindow::reset() {
  clip_ = ClipControl(options_.display.clip, bounds_or_unit(scene_.database()));
  scene_.set_display(options_.display);
  scene_.show_owners(options_.owners);
  focus_.reset();
  outline_focus();
  overlay_.show_help(false);
  camera_ = options_.camera;
  look_from(camera_.view);
  say("as at the start");
}

void ViewerWindow::take_picture() {
  const std::string name = free_picture_name();
  overlay_.set_visible(false);
  render();
  const std::string reason = write_png(window_, name);
  overlay_.set_visible(true);
  say(reason.empty() ? "picture written: " + name : "cannot write " + name + ": " + reason, !reason.empty());
}

} // namespace viewer
