#include "viewer/Legend.h"

#include "viewer/ScreenText.h"

#include <vtkActor2D.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>

namespace viewer {
namespace {

constexpr int text_size = 11;
constexpr double row_of_text = 1.7;   // a row's height, in sizes of the text
constexpr double widest_part = 0.4;   // of the window's width
constexpr double highest_part = 0.75; // of the window's height
constexpr int scroll_bar = 4;         // pixels

// Rectangles of plain colours.
class Boxes {
public:
  Boxes() { colors_->SetNumberOfComponents(4); }

  void add(double left, double bottom, double right, double top, TovanColor color) {
    const vtkIdType first = points_->InsertNextPoint(left, bottom, 0);
    points_->InsertNextPoint(right, bottom, 0);
    points_->InsertNextPoint(right, top, 0);
    points_->InsertNextPoint(left, top, 0);
    const vtkIdType corners[] = {first, first + 1, first + 2, first + 3};
    cells_->InsertNextCell(4, corners);
    const unsigned char rgba[] = {color.r, color.g, color.b, color.a};
    colors_->InsertNextTypedTuple(rgba);
  }

  void put_into(vtkPolyData* data) const {
    data->SetPoints(points_);
    data->SetPolys(cells_);
    data->GetCellData()->SetScalars(colors_);
  }

private:
  vtkNew<vtkPoints> points_;
  vtkNew<vtkCellArray> cells_;
  vtkNew<vtkUnsignedCharArray> colors_;
};

} // namespace

Legend::Legend(vtkRenderer* renderer) : renderer_(renderer) {
  vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(boxes_);
  box_actor_->SetMapper(mapper);
  box_actor_->PickableOff();
  renderer->AddActor2D(box_actor_);
}

Legend::~Legend() {
  renderer_->RemoveActor2D(box_actor_);
  for (const auto& text : texts_)
    renderer_->RemoveActor2D(text);
}

void Legend::set_rows(std::vector<LegendRow> rows) { rows_ = std::move(rows); }

void Legend::set_visible(bool visible) { visible_ = visible; }

bool Legend::is_visible() const { return visible_; }

bool Legend::scroll(int rows) {
  const int wanted = std::clamp(first_ + rows, 0, first_possible());
  const bool moved = wanted != first_;
  first_ = wanted;
  return moved;
}

void Legend::reveal(std::size_t owner) {
  const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const LegendRow& each) { return each.owner == owner; });
  if (row == rows_.end() || shown_ == 0) return;
  const int place = static_cast<int>(row - rows_.begin());
  first_ = std::clamp(first_, place - shown_ + 1, place);
}

void Legend::lay_out(bool leaves_room) {
  const int* const size = renderer_->GetSize();
  const double text = text_size * screen_scale(renderer_);
  row_height_ = std::max(1, static_cast<int>(row_of_text * text));
  const int margin = row_height_ / 3;
  shown_ =
      std::min(static_cast<int>(rows_.size()), std::max(1, static_cast<int>(highest_part * size[1]) / row_height_));
  first_ = std::clamp(first_, 0, first_possible());

  const int patch = row_height_;
  const int most_columns =
      std::max(4, static_cast<int>((widest_part * size[0] - patch - 3 * margin) / letter_width(text)));
  int columns = 1;
  for (const LegendRow& row : rows_)
    columns = std::max(columns, std::min(most_columns, column_count(row.text)));
  right_ = size[0] - margin;
  left_ = right_ - static_cast<int>(patch + 3 * margin + columns * letter_width(text));
  top_ = size[1] - margin;
  bottom_ = top_ - shown_ * row_height_ - margin;

  drawn_ = visible_ && !leaves_room ? shown_ : 0;
  box_actor_->SetVisibility(drawn_ > 0);
  if (drawn_ > 0) draw_boxes();
  for (int i = 0; i < drawn_; ++i) {
    const LegendRow& row = rows_[first_ + i];
    vtkTextActor* const actor = text_actor(i);
    actor->SetInput(drawable(shortened(row.text, columns)).c_str());
    vtkTextProperty* const property = actor->GetTextProperty();
    property->SetFontSize(static_cast<int>(text));
    property->SetBold(row.strong);
    const double grey = row.faint ? 0.55 : 0.1;
    property->SetColor(grey, grey, grey);
    const int indent = row.color ? patch + margin : margin;
    actor->SetPosition(left_ + indent, top_ - (i + 0.5) * row_height_ - margin / 2);
  }
  for (std::size_t i = 0; i < texts_.size(); ++i)
    texts_[i]->SetVisibility(static_cast<int>(i) < drawn_);
}

std::array<int, 4> Legend::frame() const { return {left_, bottom_, right_, top_}; }

bool Legend::covers(int x, int y) const { return drawn_ > 0 && x >= left_ && x < right_ && y >= bottom_ && y < top_; }

std::optional<std::size_t> Legend::owner_at(int x, int y) const {
  if (!covers(x, y)) return std::nullopt;
  const int row = (top_ - row_height_ / 6 - y) / row_height_;
  if (row < 0 || row >= shown_) return std::nullopt;
  return rows_[first_ + row].owner;
}

int Legend::first_possible() const { return std::max(0, static_cast<int>(rows_.size()) - shown_); }

vtkTextActor* Legend::text_actor(std::size_t index) {
  while (texts_.size() <= index) {
    auto actor = vtkSmartPointer<vtkTextActor>::New();
    style_text(actor, 0);
    actor->GetTextProperty()->SetVerticalJustificationToCentered();
    renderer_->AddActor2D(actor);
    texts_.push_back(actor);
  }
  return texts_[index];
}

void Legend::draw_boxes() {
  const TovanColor ground(255, 255, 255, 215), hollow(255, 255, 255), bar(120, 120, 120);
  const int margin = row_height_ / 3;
  Boxes boxes;
  boxes.add(left_, bottom_, right_, top_, ground);
  for (int i = 0; i < drawn_; ++i) {
    const LegendRow& row = rows_[first_ + i];
    if (!row.color) continue;
    const double bottom = top_ - margin / 2 - (i + 0.82) * row_height_, side = 0.64 * row_height_;
    const double left = left_ + margin;
    boxes.add(left, bottom, left + side, bottom + side, *row.color);
    if (row.faint) boxes.add(left + 2, bottom + 2, left + side - 2, bottom + side - 2, hollow);
  }
  const int count = static_cast<int>(rows_.size());
  if (count > drawn_) {
    const double unit = static_cast<double>(top_ - bottom_) / count;
    boxes.add(right_ - scroll_bar, top_ - (first_ + drawn_) * unit, right_, top_ - first_ * unit, bar);
  }
  boxes.put_into(boxes_);
}

} // namespace viewer
