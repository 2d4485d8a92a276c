#include "viewer/Overlay.h"

#include "viewer/ScreenText.h"

#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>

namespace viewer {
namespace {

constexpr double status_size = 14; // at 96 dots per inch
constexpr double least_size = 9;
constexpr double least_letters = 46; // for which a line should have room
constexpr double help_size = 14;
constexpr double least_help_size = 8; // below that nobody can read it
constexpr double tooltip_part = 0.93; // of the status line's letters
constexpr int beside_cursor = 14;     // pixels

int columns_in(double pixels, double text) { return static_cast<int>(pixels / letter_width(text)); }

void put(vtkTextActor* actor, const std::string& text, double x, double y, double size) {
  actor->SetInput(drawable(text).c_str());
  actor->GetTextProperty()->SetFontSize(static_cast<int>(size));
  actor->SetPosition(x, y);
}

} // namespace

Overlay::Overlay(vtkRenderer* renderer) : renderer_(renderer) {
  for (vtkTextActor* actor : actors()) {
    style_text(actor, 0.8);
    renderer->AddActor2D(actor);
  }
  for (vtkTextActor* actor : {help_.Get(), tooltip_.Get()}) {
    vtkTextProperty* const property = actor->GetTextProperty();
    property->SetBackgroundOpacity(0.95);
    property->FrameOn();
    property->SetFrameColor(0.1, 0.1, 0.1);
  }
  help_->GetTextProperty()->SetVerticalJustificationToCentered();
  tooltip_->GetTextProperty()->SetBackgroundColor(1, 1, 0.88);
  tooltip_->GetTextProperty()->SetBackgroundOpacity(1);
}

Overlay::~Overlay() {
  for (vtkTextActor* actor : actors())
    renderer_->RemoveActor2D(actor);
}

void Overlay::set_status(const std::string& text) { status_text_ = text; }

void Overlay::set_pick_line(const std::string& text) { pick_text_ = text; }

void Overlay::set_message(const std::string& text, bool is_error) {
  message_text_ = text;
  message_->GetTextProperty()->SetColor(is_error ? 0.75 : 0.1, is_error ? 0.0 : 0.1, is_error ? 0.0 : 0.1);
}

void Overlay::set_help(std::vector<std::string> lines, int indent) {
  help_lines_ = std::move(lines);
  help_indent_ = indent;
}

void Overlay::turn_help() { help_page_ = help_page_ < help_pages_ ? help_page_ + 1 : 0; }

void Overlay::end_help() { help_page_ = 0; }

bool Overlay::shows_help() const { return help_page_ > 0; }

void Overlay::set_tooltip(const std::string& text, int x, int y) {
  tooltip_text_ = text;
  tooltip_place_[0] = x;
  tooltip_place_[1] = y;
}

void Overlay::set_visible(bool visible) { visible_ = visible; }

void Overlay::lay_out() {
  const double scale = screen_scale(renderer_);
  // Smaller letters in a small window.
  const double text = scale * std::clamp(renderer_->GetSize()[0] / (scale * least_letters), least_size, status_size);
  const double margin = text / 2;
  const int columns = columns_in(renderer_->GetSize()[0] - 2 * margin, text);
  put(status_, shortened_amid(status_text_, columns), margin, margin, text);
  put(picks_, shortened(pick_text_, columns), margin, margin + line_height(text), text);
  put(message_, shortened(message_text_, columns), margin, margin + 2.2 * line_height(text), text);
  lay_out_help(scale);
  lay_out_tooltip(text * tooltip_part);
  status_->SetVisibility(visible_);
  picks_->SetVisibility(visible_);
  message_->SetVisibility(visible_);
  help_->SetVisibility(visible_ && help_page_ > 0);
  tooltip_->SetVisibility(visible_ && !tooltip_text_.empty() && help_page_ == 0);
}

std::vector<vtkTextActor*> Overlay::actors() const {
  return {status_.Get(), picks_.Get(), message_.Get(), help_.Get(), tooltip_.Get()};
}

// As large as fits; where that is too small to read, in pages.
void Overlay::lay_out_help(double scale) {
  const int* const size = renderer_->GetSize();
  int columns = 1;
  for (const std::string& line : help_lines_)
    columns = std::max(columns, column_count(line));
  int lines = static_cast<int>(help_lines_.size());
  const double high = 0.92 * size[1], wide = 0.96 * size[0];
  const double fits = std::min(high / line_height(lines + 2), wide / letter_width(columns));
  const double text = std::clamp(fits, least_help_size * scale, help_size * scale);
  std::vector<std::string> all;
  for (const std::string& line : help_lines_)
    for (const std::string& part : wrapped(line, columns_in(wide, text), help_indent_))
      all.push_back(part);
  lines = static_cast<int>(all.size());
  int room = std::max(1, static_cast<int>(high / line_height(text)) - 2);
  // The last line of each page tells of the others.
  if (lines > room) room = std::max(1, room - 1);
  help_pages_ = (lines + room - 1) / room;
  help_page_ = std::min(help_page_, help_pages_);
  if (help_page_ == 0) return;

  std::string page = "\n"; // a margin of blank lines, since the text's frame has none
  const int first = (help_page_ - 1) * room;
  for (int i = first; i < std::min(first + room, lines); ++i)
    page += all[i] + "\n";
  if (help_pages_ > 1)
    page += "  H: " + std::string(help_page_ < help_pages_ ? "next page" : "close") + " (" +
            std::to_string(help_page_) + " of " + std::to_string(help_pages_) + ")\n";
  put(help_, page, 0, size[1] / 2.0, text);
  double drawn[2];
  help_->GetSize(renderer_, drawn);
  help_->SetPosition(std::max(0.0, (size[0] - drawn[0]) / 2), size[1] / 2.0);
}

void Overlay::lay_out_tooltip(double text) {
  if (tooltip_text_.empty()) return;
  const int* const size = renderer_->GetSize();
  put(tooltip_, tooltip_text_, 0, 0, text);
  double drawn[2];
  tooltip_->GetSize(renderer_, drawn);
  // Above the cursor and to its right, but never outside, and never under the cursor.
  double x = tooltip_place_[0] + beside_cursor, y = tooltip_place_[1] + beside_cursor;
  if (x + drawn[0] > size[0]) x = tooltip_place_[0] - beside_cursor - drawn[0];
  if (y + drawn[1] > size[1]) y = tooltip_place_[1] - beside_cursor - drawn[1];
  tooltip_->SetPosition(std::max(0.0, x), std::max(0.0, y));
}

} // namespace viewer
