#include "viewer/ScreenText.h"

#include <vtkCoordinate.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <vector>

namespace viewer {
namespace {

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

std::vector<std::string> characters(const std::string& text) {
  std::vector<std::string> list;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = character_length(text, at);
    list.push_back(length == 0 ? "?" : text.substr(at, length));
    at += std::max<std::size_t>(length, 1);
  }
  return list;
}

std::string joined(const std::vector<std::string>& list, std::size_t begin, std::size_t end) {
  std::string text;
  for (std::size_t i = begin; i < end; ++i)
    text += list[i];
  return text;
}

std::string cut(const std::string& text, int columns, double head_part) {
  const auto list = characters(text);
  const auto room = static_cast<std::size_t>(std::max(columns, 4));
  if (list.size() <= room) return text;
  const auto head = static_cast<std::size_t>(head_part * static_cast<double>(room - 3));
  const std::size_t tail = room - 3 - head;
  return joined(list, 0, head) + "..." + joined(list, list.size() - tail, list.size());
}

} // namespace

double screen_scale(vtkRenderer* renderer) { return std::max(renderer->GetRenderWindow()->GetDPI(), 72) / 96.0; }

double letter_width(double text_size) { return 0.8 * text_size; }

double line_height(double text_size) { return 1.5 * text_size; }

void style_text(vtkTextActor* actor, double opacity) {
  vtkTextProperty* const property = actor->GetTextProperty();
  property->SetColor(0.1, 0.1, 0.1);
  property->SetBackgroundColor(1, 1, 1);
  property->SetBackgroundOpacity(opacity);
  property->SetFontFamilyToCourier();
  actor->GetPositionCoordinate()->SetCoordinateSystemToDisplay();
  actor->PickableOff();
}

std::string drawable(const std::string& text) {
  const auto list = characters(text);
  return joined(list, 0, list.size());
}

int column_count(const std::string& text) { return static_cast<int>(characters(text).size()); }

std::string shortened(const std::string& text, int columns) { return cut(text, columns, 1); }

std::vector<std::string> wrapped(const std::string& text, int columns, int indent) {
  const auto room = static_cast<std::size_t>(std::max(columns, indent + 8));
  std::vector<std::string> lines;
  auto rest = characters(text);
  while (rest.size() > room) {
    std::size_t end = room;
    while (end > static_cast<std::size_t>(indent) + 1 && rest[end] != " ")
      --end;
    if (rest[end] != " ") end = room;
    lines.push_back(joined(rest, 0, end));
    rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(end));
    while (!rest.empty() && rest.front() == " ")
      rest.erase(rest.begin());
    if (!rest.empty()) rest.insert(rest.begin(), static_cast<std::size_t>(indent), " ");
  }
  if (!rest.empty() || lines.empty()) lines.push_back(joined(rest, 0, rest.size()));
  return lines;
}

std::string shortened_amid(const std::string& text, int columns) { return cut(text, columns, 0.4); }

} // namespace viewer
