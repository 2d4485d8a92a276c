#include "viewer/ViewerWindow.h"

#include "mesh/database/MDBDefines.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/Camera.h"
#include "viewer/MeshBounds.h"
#include "viewer/Messages.h"
#include "viewer/OptionValues.h"
#include "viewer/OutputFile.h"
#include "viewer/Palette.h"
#include "viewer/PickKinds.h"
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

#include <cmath>

namespace viewer {
namespace {

constexpr int least_width_for_legend = 700; // in a smaller window it would lie on the mesh

std::array<double, 6> bounds_or_unit(Tarn::MeshDatabase& database) {
  std::array<double, 6> bounds = {0, 1, 0, 1, 0, 1};
  mesh_bounds(database, bounds);
  return bounds;
}

} // namespace

ViewerWindow::ViewerWindow(Scene& scene, const Options& options, const std::string& title)
    : scene_(scene), options_(options), title_(title), camera_(options.camera), view_(window_),
      overlay_(view_.renderer()), legend_(view_.renderer()), region_(view_.renderer()),
      clip_(options.display.clip, bounds_or_unit(scene.database())), owners_(scene), picking_(scene, options.picking) {
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
  bind_pick_keys();
  bind_region_keys();
  bind_label_keys();
  bind_window_keys();
  overlay_.set_help(help_lines(bindings_), static_cast<int>(help_indent(bindings_)));
  style_->set_handler(this);
  interactor_->SetRenderWindow(window_);
  interactor_->SetInteractorStyle(style_);
  // Frames go through the view, which brings the mesh up to date first.
  interactor_->EnableRenderOff();
  interactor_->AddObserver(vtkCommand::RenderEvent, this, &ViewerWindow::render);
  interactor_->AddObserver(vtkCommand::ConfigureEvent, this, &ViewerWindow::forget_click);
}

ViewerWindow::~ViewerWindow() {
  view_.renderer()->RemoveActor(outline_);
  interactor_->SetInteractorStyle(nullptr);
}

std::string ViewerWindow::select_at_start() {
  return picking_.select(view_, options_.picking.select, GPickerBase::Change::Replace);
}

void ViewerWindow::run() {
  interactor_->Initialize();
  start_anew();
  report_picks();
  look_from(options_.camera.view);
  say("H shows every key");
  interactor_->Start();
}

void ViewerWindow::render() {
  needs_frame_ = false;
  overlay_.lay_out();
  legend_.lay_out(overlay_.shows_help());
  view_.render();
  const auto errors = take_errors();
  if (errors.empty()) return;
  overlay_.set_message(errors.back(), true);
  overlay_.lay_out();
  view_.render();
}

// With the next timer, and so once for all keys and motion that wait already: where frames take long, they would pile
// up.
void ViewerWindow::render_soon() {
  needs_frame_ = true;
  wait(1);
}

void ViewerWindow::update_texts() {
  std::string text = title_ + "   " + std::to_string(owners_.shown_count()) + " of " +
                     std::to_string(scene_.owners().size()) + " owners shown";
  if (const auto& focus = owners_.focus())
    text += "   focus: " + std::to_string(*focus + 1) + " '" + scene_.owners()[*focus].name + "'" +
            (scene_.is_visible(*focus) ? "" : ", hidden");
  overlay_.set_status(one_line(text));

  std::string picks = "pick " + describe_filter(picking_.filter());
  if (picking_.through) picks += ", through";
  if (picking_.whole) picks += ", whole";
  if (!hovers_) picks += ", no hover";
  overlay_.set_pick_line(one_line(picks + "   " + picked_text_));
  update_legend();
}

void ViewerWindow::update_legend() {
  const TovanColor no_color(170, 170, 170);
  const bool by_kind = scene_.display().color_by == ColorBy::Kind;
  std::vector<LegendRow> rows;
  if (by_kind)
    for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind) {
      const auto type = static_cast<Tarn::ElementType>(kind);
      if (scene_.database().element_count(type) > 0)
        rows.push_back({MDBDefines::TarnTypeName(type), kind_color(type), false, false, std::nullopt});
    }
  rows.push_back({"Owners: " + std::to_string(owners_.shown_count()) + " of " + std::to_string(scene_.owners().size()),
                  std::nullopt, false, true, std::nullopt});
  for (std::size_t i = 0; i < scene_.owners().size(); ++i) {
    const SceneOwner& owner = scene_.owners()[i];
    rows.push_back(
        {one_line(owner.name), by_kind ? no_color : owner.color, !scene_.is_visible(i), owners_.focus() == i, i});
  }
  legend_.set_rows(std::move(rows));
}

void ViewerWindow::say(const std::string& text, bool is_error) {
  overlay_.set_message(one_line(text), is_error);
  update_texts();
  render();
}

void ViewerWindow::change_display(const Change& change) {
  DisplayOptions display = scene_.display();
  const ColorBy colors = display.color_by;
  const std::string text = change(display);
  scene_.set_display(display);
  // Colouring adds every mesh anew, and highlights follow their meshes' ends.
  if (display.color_by != colors) {
    end_hover();
    picking_.renew(view_);
  }
  say(text);
}

void ViewerWindow::apply_clip() {
  change_display([&](DisplayOptions& display) {
    display.clip = clip_.plane();
    return display.clip ? "--clip=" + clip_text(*display.clip) : "clip off";
  });
  const std::string reason = scene_.why_nothing_shows();
  if (!reason.empty()) say(reason);
}

// The kinds that can be picked turn together, by what the first of them shows.
void ViewerWindow::turn_labels() {
  change_display([this](DisplayOptions& display) {
    const auto filter = picking_.filter();
    const bool nodes = admits(filter, pick_kinds()[0]);
    const auto types = admitted_types(filter);
    const auto before = nodes || types.empty() ? display.labels.nodes : display.labels.elements[types[0]];
    const auto next = before == OBUtil::NoLabel   ? OBUtil::LocalId
                      : before == OBUtil::LocalId ? OBUtil::GlobalId
                                                  : OBUtil::NoLabel;
    if (nodes) display.labels.nodes = next;
    for (const Tarn::ElementType type : types)
      display.labels.elements[type] = next;
    const std::string ids = next == OBUtil::LocalId    ? "local ids"
                            : next == OBUtil::GlobalId ? "global ids"
                                                       : "no labels";
    return ids + " on " + describe_filter(filter) +
           (next != OBUtil::NoLabel && display.shrink < 1 ? ", once they are not shrunk" : "");
  });
}

void ViewerWindow::look_from(ViewFrom view) {
  CameraOptions camera = camera_;
  camera.view = view;
  place_camera([&](double covered) { point_camera(view_.renderer(), scene_.visible_points(), camera, covered); });
  // The zoom of the command line is for the first picture.
  camera_.zoom = 1;
  say(std::string("seen from ") + view_name(view));
}

void ViewerWindow::fit() {
  place_camera([&](double covered) { fit_camera(view_.renderer(), scene_.visible_points(), covered); });
  say("the whole visible mesh");
}

// Where the legend would lie on the mesh, the mesh takes the room beside it.
void ViewerWindow::place_camera(const std::function<void(double covered)>& place) {
  place(0);
  if (!legend_.is_visible()) return;
  update_legend();
  legend_.lay_out(overlay_.shows_help());
  const std::array<int, 4> frame = legend_.frame();
  if (shows_point_in(view_.renderer(), scene_.visible_points(), frame))
    place(1 - static_cast<double>(frame[0]) / view_.renderer()->GetSize()[0]);
}

void ViewerWindow::turn(double azimuth, double elevation) {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  camera->Azimuth(azimuth);
  camera->Elevation(elevation);
  camera->OrthogonalizeViewUp();
  view_.renderer()->ResetCameraClippingRange();
  render_soon();
}

void ViewerWindow::zoom(double factor) {
  vtkCamera* const camera = view_.renderer()->GetActiveCamera();
  if (camera->GetParallelProjection() != 0)
    camera->SetParallelScale(camera->GetParallelScale() / factor);
  else
    camera->Dolly(factor);
  view_.renderer()->ResetCameraClippingRange();
  render_soon();
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

void ViewerWindow::move_focus(int step) {
  if (!owners_.move_focus(step)) {
    say("there are no owners");
    return;
  }
  const std::size_t focus = *owners_.focus();
  outline_focus();
  legend_.reveal(focus);
  say("owner '" + scene_.owners()[focus].name + "' is in focus");
}

void ViewerWindow::outline_focus() {
  std::array<double, 6> bounds;
  const bool has_bounds = owners_.focus() && scene_.owner_bounds(*owners_.focus(), bounds);
  outline_->SetVisibility(has_bounds);
  if (has_bounds) outline_box_->SetBounds(bounds.data());
}

void ViewerWindow::start_anew() {
  legend_.set_visible(options_.resolution[0] >= least_width_for_legend);
  picking_.set_filter(options_.picking.filter);
  picking_.through = options_.picking.through;
  picking_.whole = options_.picking.whole;
  camera_ = options_.camera;
  hovers_ = !HoverPace::is_too_long(picking_.cost_of_point());
  long_looks_ = 0;
}

void ViewerWindow::reset() {
  clip_ = ClipControl(options_.display.clip, bounds_or_unit(scene_.database()));
  scene_.set_display(options_.display);
  owners_.remember();
  scene_.show_owners(options_.owners);
  owners_.end_focus();
  outline_focus();
  overlay_.end_help();
  end_hover();
  region_.cancel();
  start_anew();
  select_at_start();
  report_picks();
  look_from(camera_.view);
  say("as at the start");
}

void ViewerWindow::take_picture() {
  const std::string name = free_name("orbel_view", ".png");
  const bool has_legend = legend_.is_visible();
  overlay_.set_visible(false);
  legend_.set_visible(false);
  render();
  const std::string reason = write_png(window_, name);
  overlay_.set_visible(true);
  legend_.set_visible(has_legend);
  say(reason.empty() ? "picture written: " + name : "cannot write " + name + ": " + reason, !reason.empty());
}

} // namespace viewer
