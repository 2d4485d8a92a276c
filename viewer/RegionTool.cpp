#include "viewer/RegionTool.h"

#include <vtkActor2D.h>
#include <vtkCellArray.h>
#include <vtkMath.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>

#include <cmath>
#include <cstdlib>

namespace viewer {
namespace {

constexpr int shortest_drag = 3; // pixels: less is a click
constexpr int near_first_corner = 6;
constexpr int circle_sides = 64;

double distance(const std::array<int, 2>& a, const std::array<int, 2>& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1]);
}

} // namespace

RegionTool::RegionTool(vtkRenderer* renderer) : renderer_(renderer) {
  vtkNew<vtkPolyDataMapper2D> mapper;
  outline_->SetPoints(points_);
  mapper->SetInputData(outline_);
  actor_->SetMapper(mapper);
  actor_->GetProperty()->SetColor(0.85, 0.1, 0.1);
  actor_->GetProperty()->SetLineWidth(2);
  actor_->PickableOff();
  actor_->VisibilityOff();
  renderer->AddActor2D(actor_);
}

RegionTool::~RegionTool() { renderer_->RemoveActor2D(actor_); }

void RegionTool::start(PickRequest::Shape shape) {
  cancel();
  active_ = true;
  shape_ = shape;
}

void RegionTool::cancel() {
  active_ = pressed_ = false;
  corners_.clear();
  draw();
}

bool RegionTool::is_active() const { return active_; }

std::string RegionTool::hint() const {
  if (shape_ == PickRequest::Shape::Box) return "box: drag from corner to corner (Ctrl adds, Shift removes, Esc ends)";
  if (shape_ == PickRequest::Shape::Circle) return "circle: drag from its centre (Ctrl adds, Shift removes, Esc ends)";
  return "polygon: click corners, Return or the first corner closes (Ctrl adds, Shift removes, Esc ends)";
}

void RegionTool::press(int x, int y) {
  cursor_ = {x, y};
  pressed_ = true;
  if (!is_polygon()) corners_ = {cursor_};
  draw();
}

void RegionTool::move(int x, int y) {
  cursor_ = {x, y};
  draw();
}

bool RegionTool::release(int x, int y) {
  if (!pressed_) return false;
  pressed_ = false;
  cursor_ = {x, y};
  if (is_polygon()) {
    if (corners_.size() >= 3 && distance(corners_[0], cursor_) <= near_first_corner) return true;
    if (corners_.empty() || corners_.back() != cursor_) corners_.push_back(cursor_);
    draw();
    return false;
  }
  if (distance(corners_[0], cursor_) >= shortest_drag) return true;
  corners_.clear();
  draw();
  return false;
}

bool RegionTool::close() { return active_ && is_polygon() && corners_.size() >= 3; }

void RegionTool::remove_corner() {
  if (!is_polygon() || corners_.empty()) return;
  corners_.pop_back();
  draw();
}

PickRequest RegionTool::take() {
  PickRequest request{shape_, {}};
  for (const Place& corner : corners_)
    request.numbers.insert(request.numbers.end(), {double(corner[0]), double(corner[1])});
  if (shape_ == PickRequest::Shape::Box)
    request.numbers.insert(request.numbers.end(), {double(cursor_[0]), double(cursor_[1])});
  if (shape_ == PickRequest::Shape::Circle) request.numbers.push_back(distance(corners_[0], cursor_));
  cancel();
  return request;
}

bool RegionTool::is_polygon() const { return shape_ == PickRequest::Shape::Polygon; }

void RegionTool::draw() {
  points_->Reset();
  const auto add = [this](double x, double y) { points_->InsertNextPoint(x, y, 0); };
  if (active_ && !corners_.empty()) {
    const double x = corners_[0][0], y = corners_[0][1];
    if (shape_ == PickRequest::Shape::Box) {
      add(x, y);
      add(cursor_[0], y);
      add(cursor_[0], cursor_[1]);
      add(x, cursor_[1]);
      add(x, y);
    } else if (shape_ == PickRequest::Shape::Circle) {
      const double radius = distance(corners_[0], cursor_);
      for (int i = 0; i <= circle_sides; ++i) {
        const double angle = 2 * vtkMath::Pi() * i / circle_sides;
        add(x + radius * std::cos(angle), y + radius * std::sin(angle));
      }
    } else {
      for (const Place& corner : corners_)
        add(corner[0], corner[1]);
      add(cursor_[0], cursor_[1]);
      add(x, y);
    }
  }
  vtkNew<vtkCellArray> lines;
  lines->InsertNextCell(static_cast<int>(points_->GetNumberOfPoints()));
  for (vtkIdType i = 0; i < points_->GetNumberOfPoints(); ++i)
    lines->InsertCellPoint(i);
  points_->Modified();
  outline_->SetLines(lines);
  actor_->SetVisibility(points_->GetNumberOfPoints() > 1);
}

} // namespace viewer
