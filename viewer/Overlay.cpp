#include "viewer/Overlay.h"

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <sstream>

namespace viewer {
namespace {

constexpr int status_size = 14; // pixels at 96 dots per inch
constexpr int help_size = 15;
constexpr double line_spacing = 1.2; // of a letter's height
constexpr double width_of_a_letter = 0.8;

// How many bytes the UTF-8 character at `at` has; 0 when there is none.
std::size_t character_length(const std::string& text, std::size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xf0 && first < 0xf5 ? 4 : first >= 0xe0 ? 3 : first >= 0xc2 ? 2 : 0;
  if (first >= 0xf5 || length == 0 || at + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((static_cast<unsigned char>(text[at + i]) & 0xc0) != 0x80) return 0;
  return length;
}

// Names from files may hold any bytes; the text renderer takes UTF-8 only.
std::string drawable(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = character_length(text, at);
    out += length == 0 ? "?" : text.substr(at, length);
    at += std::max<std::size_t>(length, 1);
  }
  return out;
}

void style(vtkTextActor* actor, double opacity) {
  vtkTextProperty* const property = actor->GetTextProperty();
  property->SetColor(0.1, 0.1, 0.1);
  property->SetBackgroundColor(1, 1, 1);
  property->SetBackgroundOpacity(opacity);
  property->SetFontFamilyToCourier();
  actor->GetPositionCoordinate()->SetCoordinateSystemToDisplay();
  actor->PickableOff();
}

} // namespace

Overlay::Overlay(vtkRenderer* renderer) : renderer_(renderer) {
  for (vtkTextActor* actor : {status_.Get(), message_.Get(), help_.Get()}) {
    style(actor, 0.8);
    renderer->AddActor2D(actor);
  }
  help_->GetTextProperty()->SetBackgroundOpacity(0.95);
  help_->GetTextProperty()->FrameOn();
  help_->GetTextProperty()->SetFrameColor(0.1, 0.1, 0.1);
  help_->GetTextProperty()->SetVerticalJustificationToCentered();
  help_->GetTextProperty()->SetJustificationToLeft();
  set_visible(true);
}

Overlay::~Overlay() {
  for (vtkTextActor* actor : {status_.Get(), message_.Get(), help_.Get()})
    renderer_->RemoveActor2D(actor);
}

void Overlay::set_status(const std::string& text) { status_->SetInput(drawable(text).c_str()); }

void Overlay::set_message(const std::string& text, bool is_error) {
  message_->SetInput(drawable(text).c_str());
  message_->GetTextProperty()->SetColor(is_error ? 0.75 : 0.1, is_error ? 0.0 : 0.1, is_error ? 0.0 : 0.1);
}

void Overlay::set_help(const std::string& text) {
  help_->SetInput(text.c_str());
  help_lines_ = help_columns_ = 1;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line); ++help_lines_)
    help_columns_ = std::max(help_columns_, static_cast<int>(line.size()));
}

void Overlay::show_help(bool on) {
  help_on_ = on;
  help_->SetVisibility(on);
}

bool Overlay::shows_help() const { return help_on_; }

void Overlay::set_visible(bool visible) {
  status_->SetVisibility(visible);
  message_->SetVisibility(visible);
  help_->SetVisibility(visible && help_on_);
}

void Overlay::lay_out() {
  const int* const size = renderer_->GetSize();
  const double scale = std::max(renderer_->GetRenderWindow()->GetDPI(), 72) / 96.0;
  const int text = static_cast<int>(status_size * scale);
  const int most_help = static_cast<int>(
      std::min(size[1] * 0.9 / (help_lines_ * line_spacing), size[0] * 0.95 / (help_columns_ * width_of_a_letter)));
  status_->GetTextProperty()->SetFontSize(text);
  message_->GetTextProperty()->SetFontSize(text);
  help_->GetTextProperty()->SetFontSize(std::clamp(most_help, 6, static_cast<int>(help_size * scale)));
  status_->SetPosition(text / 2.0, text / 2.0);
  message_->SetPosition(text / 2.0, text / 2.0 + 2 * line_spacing * text);
  double width[2];
  help_->GetSize(renderer_, width);
  help_->SetPosition(std::max(0.0, (size[0] - width[0]) / 2), size[1] / 2.0);
}

} // namespace viewer
