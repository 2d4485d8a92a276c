#include "reference/base/label/GlyphSheet.h"

#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkStdString.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr std::size_t most_digits = 3;
constexpr std::size_t number_count = 10 + 100 + 1000;
constexpr double rim_opacity = 0.85;
constexpr std::size_t most_coverage = std::size_t{64} << 20;
constexpr std::size_t most_tints = 64;
// Where black and white contrast with a text alike: texts darker than that would drown in a black rim.
constexpr int dark = 117;

bool is_dark(TovanColor color) { return (299 * color.r + 587 * color.g + 114 * color.b) / 1000 < dark; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Whether the text is a number, with or without a sign.
bool is_number(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

/// The place of one to three digits among all of them.
std::size_t number_place(std::string_view digits) {
  std::size_t value = 0;
  for (const char digit : digits)
    value = 10 * value + static_cast<std::size_t>(digit - '0');
  constexpr std::size_t firsts[] = {0, 0, 10, 110};
  return firsts[digits.size()] + value;
}

// What tells fonts apart; asked for each frame and mapper, and so without the text that `font_of` makes.
bool is_same_font(vtkTextProperty* a, vtkTextProperty* b) {
  const auto file_of = [](vtkTextProperty* style) {
    return std::string_view(style->GetFontFile() ? style->GetFontFile() : "");
  };
  return a->GetFontSize() == b->GetFontSize() && a->GetBold() == b->GetBold() && a->GetItalic() == b->GetItalic() &&
         a->GetFontFamily() == b->GetFontFamily() && file_of(a) == file_of(b);
}

} // namespace

/// The coverage of a text, 0 to 255, rows upwards, and room for the rim round it.
struct GlyphSheet::Ink {
  Piece piece;
  std::vector<unsigned char> coverage;

  std::size_t pixel(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(piece.width) + static_cast<std::size_t>(x);
  }
  int at(int x, int y) const {
    if (x < 0 || y < 0 || x >= piece.width || y >= piece.height) return 0;
    return coverage[pixel(x, y)];
  }
  /// The strongest coverage round a pixel.
  int reach(int x, int y) const {
    int most = 0;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        most = std::max(most, at(x + dx, y + dy));
    return most;
  }
};

std::shared_ptr<GlyphSheet> GlyphSheet::get(vtkTextProperty* style, int dpi) {
  // Sheets live as long as a mapper uses them.
  static std::map<std::string, std::weak_ptr<GlyphSheet>> sheets;
  for (auto it = sheets.begin(); it != sheets.end();)
    it = it->second.expired() ? sheets.erase(it) : std::next(it);
  std::weak_ptr<GlyphSheet>& entry = sheets[font_of(style, dpi)];
  std::shared_ptr<GlyphSheet> sheet = entry.lock();
  if (!sheet || !sheet->serves(style, dpi)) entry = sheet = std::make_shared<GlyphSheet>(style, dpi);
  return sheet;
}

std::string GlyphSheet::font_of(vtkTextProperty* style, int dpi) {
  const auto words = {style->GetFontFamily(), style->GetFontSize(), style->GetBold(), style->GetItalic(), dpi};
  std::string font;
  for (const int word : words)
    font += std::to_string(word) + ' ';
  if (style->GetFontFile()) font += style->GetFontFile();
  return font;
}

GlyphSheet::GlyphSheet(vtkTextProperty* style, int dpi) : dpi_(dpi) {
  style_->SetFontFamily(style->GetFontFamily());
  style_->SetFontFile(style->GetFontFile());
  style_->SetFontSize(style->GetFontSize());
  style_->SetBold(style->GetBold());
  style_->SetItalic(style->GetItalic());
  const Piece zero = ink_of("0").piece;
  digits_middle_ = zero.low + zero.height / 2.0;
}

GlyphSheet::~GlyphSheet() = default;

bool GlyphSheet::serves(vtkTextProperty* style, int dpi) const {
  return coverage_.size() < most_coverage && dpi == dpi_ && is_same_font(style, style_);
}

GlyphSheet::Size GlyphSheet::lay_out(std::string_view text, std::vector<std::uint32_t>& pieces) {
  const std::size_t before = pieces.size();
  const bool number = is_number(text);
  if (number) {
    if (numbers_.empty()) make_numbers();
    if (text.front() == '-') {
      pieces.push_back(find_or_make("-"));
      text.remove_prefix(1);
    }
    // The first piece takes what the others leave over.
    for (std::size_t length = (text.size() - 1) % most_digits + 1; !text.empty(); length = most_digits) {
      pieces.push_back(numbers_[number_place(text.substr(0, length))]);
      text.remove_prefix(length);
    }
  } else {
    pieces.push_back(find_or_make(text));
  }
  Size size;
  for (std::size_t i = before; i < pieces.size(); ++i) {
    size.width += pieces_[pieces[i]].advance;
    size.line = std::max(size.line, pieces_[pieces[i]].line);
  }
  size.middle = number ? digits_middle_ : size.line / 2.0;
  return size;
}

void GlyphSheet::make_numbers() {
  numbers_.reserve(number_count);
  for (std::size_t digits = 1, end = 10; digits <= most_digits; ++digits, end *= 10)
    for (std::size_t value = 0; value < end; ++value) {
      const std::string text = std::to_string(value);
      numbers_.push_back(make(std::string(digits - text.size(), '0') + text));
    }
}

std::uint32_t GlyphSheet::find_or_make(std::string_view text) {
  const auto [entry, is_new] = other_texts_.emplace(std::string(text), 0u);
  if (is_new) entry->second = make(text);
  return entry->second;
}

std::uint32_t GlyphSheet::make(std::string_view text) {
  const Ink ink = ink_of(text);
  coverage_starts_.push_back(coverage_.size());
  for (int y = 0; y < ink.piece.height; ++y)
    for (int x = 0; x < ink.piece.width; ++x) {
      const int covered = ink.at(x, y);
      const double rim = rim_opacity * ink.reach(x, y) * (255 - covered) / 255.0;
      coverage_.push_back(static_cast<unsigned char>(covered));
      coverage_.push_back(static_cast<unsigned char>(std::lround(rim)));
    }
  pieces_.push_back(ink.piece);
  return static_cast<std::uint32_t>(pieces_.size() - 1);
}

GlyphSheet::Ink GlyphSheet::ink_of(std::string_view text) {
  Ink ink;
  vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
  if (!renderer) return ink; // without a rendering back end there are no fonts
  vtkNew<vtkImageData> image;
  int size[2] = {0, 0};
  const vtkStdString string{std::string(text)};
  if (!renderer->RenderString(style_, string, image, size, dpi_, vtkTextRenderer::FreeType)) return ink;
  auto* pixels = vtkUnsignedCharArray::SafeDownCast(image->GetPointData()->GetScalars());
  if (!pixels || pixels->GetNumberOfComponents() != 4) return ink;

  const int stride = image->GetDimensions()[0];
  size[0] = std::min(size[0], stride);
  size[1] = std::min(size[1], image->GetDimensions()[1]);
  const auto coverage_at = [&](int x, int y) { return pixels->GetValue(4 * (y * vtkIdType(stride) + x) + 3); };
  int low = size[1], high = -1, left = size[0], right = -1;
  for (int y = 0; y < size[1]; ++y)
    for (int x = 0; x < size[0]; ++x) {
      if (coverage_at(x, y) == 0) continue;
      low = std::min(low, y);
      high = std::max(high, y);
      left = std::min(left, x);
      right = std::max(right, x);
    }
  ink.piece.advance = size[0];
  ink.piece.line = size[1];
  if (high < 0) return ink;
  ink.piece.width = right - left + 3;
  ink.piece.height = high - low + 3;
  ink.piece.left = left - 1;
  ink.piece.low = low - 1;
  ink.coverage.assign(ink.pixel(0, ink.piece.height), 0);
  for (int y = low; y <= high; ++y)
    for (int x = left; x <= right; ++x)
      ink.coverage[ink.pixel(x - left + 1, y - low + 1)] = coverage_at(x, y);
  return ink;
}

// ------------------------------------------------------------------------------------------ in colour

GlyphSheet::Tinted& GlyphSheet::tinted(TovanColor tint) {
  if (tinted_.size() >= most_tints && tinted_.count(tint.value()) == 0) tinted_.clear();
  std::unique_ptr<Tinted>& entry = tinted_[tint.value()];
  if (!entry) entry = std::make_unique<Tinted>(*this, tint);
  return *entry;
}

const std::uint32_t* GlyphSheet::Tinted::pixels(std::uint32_t piece) {
  if (piece >= starts_.size()) starts_.resize(sheet_.pieces_.size(), unpainted);
  if (starts_[piece] == unpainted) paint(piece);
  return pixels_.data() + starts_[piece];
}

void GlyphSheet::Tinted::paint(std::uint32_t piece) {
  starts_[piece] = pixels_.size();
  const std::uint32_t rim_color = is_dark(tint_) ? 255 : 0;
  const auto count =
      static_cast<std::size_t>(sheet_.pieces_[piece].width) * static_cast<std::size_t>(sheet_.pieces_[piece].height);
  const unsigned char* coverage = sheet_.coverage_.data() + sheet_.coverage_starts_[piece];
  for (std::size_t i = 0; i < count; ++i, coverage += 2) {
    const std::uint32_t text = coverage[0] * std::uint32_t{tint_.a} / 255;
    const std::uint32_t rim = coverage[1] * std::uint32_t{tint_.a} / 255;
    const auto channel = [&](std::uint32_t value) { return (text * value + rim * rim_color + 127) / 255; };
    pixels_.push_back(channel(tint_.r) | channel(tint_.g) << 8 | channel(tint_.b) << 16 | (text + rim) << 24);
  }
}
