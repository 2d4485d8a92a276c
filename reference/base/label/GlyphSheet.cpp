#include "reference/base/label/GlyphSheet.h"

#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkStdString.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>
#include <vtkTexture.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWindow.h>

#include <algorithm>
#include <map>

namespace {

constexpr int kWidth = 1024;
constexpr int kFirstHeight = 256;
constexpr int kMostHeight = 8192;
constexpr int kFullHeight = kMostHeight / 2;
constexpr std::size_t kDigits = 3;
constexpr std::size_t kNumbers = 10 + 100 + 1000;
constexpr double kRimOpacity = 0.85;

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

} // namespace

/// The coverage of a text, 0 to 255, rows upwards, with a rim of one pixel that is free.
struct GlyphSheet::Ink {
  int width = 0, height = 0; ///< 0 when nothing can be seen
  int left = 0, low = 0;
  int advance = 0;
  int line = 0;
  std::vector<unsigned char> coverage;

  int at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return 0;
    return coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
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

std::shared_ptr<GlyphSheet> GlyphSheet::get(vtkWindow* window, vtkTextProperty* style, int dpi) {
  // Sheets live as long as a mapper uses them.
  static std::map<std::pair<vtkWindow*, std::string>, std::weak_ptr<GlyphSheet>> sheets;
  for (auto it = sheets.begin(); it != sheets.end();)
    it = it->second.expired() ? sheets.erase(it) : std::next(it);
  std::weak_ptr<GlyphSheet>& entry = sheets[{window, font_of(style, dpi)}];
  std::shared_ptr<GlyphSheet> sheet = entry.lock();
  if (!sheet) entry = sheet = std::make_shared<GlyphSheet>(style, dpi);
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

GlyphSheet::GlyphSheet(vtkTextProperty* style, int dpi) : dpi_(dpi), font_(font_of(style, dpi)) {
  style_->SetFontFamily(style->GetFontFamily());
  style_->SetFontFile(style->GetFontFile());
  style_->SetFontSize(style->GetFontSize());
  style_->SetBold(style->GetBold());
  style_->SetItalic(style->GetItalic());
  style_->SetColor(1.0, 1.0, 1.0);
  const Ink zero = ink_of("0");
  digits_middle_ = zero.low + zero.height / 2.0;

  texture_->SetInputData(image_);
  texture_->SetColorModeToDirectScalars();
  texture_->InterpolateOff();
  texture_->RepeatOff();
  texture_->EdgeClampOn();
  empty();
}

GlyphSheet::~GlyphSheet() = default;

bool GlyphSheet::is_for(vtkTextProperty* style, int dpi) const { return dpi == dpi_ && font_of(style, dpi) == font_; }

void GlyphSheet::empty() {
  pieces_.clear();
  for (auto& numbers : numbers_)
    numbers.clear();
  for (auto& texts : other_texts_)
    texts.clear();
  texels_.assign(4u * kWidth * kFirstHeight, 0);
  shelf_x_ = shelf_y_ = shelf_height_ = 0;
  changed_ = true;
  ++version_;
}

void GlyphSheet::tidy_up() {
  if (height() > kFullHeight) empty();
}

int GlyphSheet::width() const { return kWidth; }

int GlyphSheet::height() const { return static_cast<int>(texels_.size() / (4u * kWidth)); }

GlyphSheet::Size GlyphSheet::lay_out(std::string_view text, Paint paint, std::vector<std::uint32_t>& pieces) {
  const std::size_t before = pieces.size();
  const bool number = is_number(text);
  if (!number) {
    pieces.push_back(find_or_make(text, paint));
  } else {
    const auto& numbers = numbers_[static_cast<std::size_t>(paint)];
    if (numbers.empty()) make_numbers(paint);
    if (text.front() == '-') {
      pieces.push_back(find_or_make("-", paint));
      text.remove_prefix(1);
    }
    // The first piece takes what the others leave over.
    for (std::size_t length = (text.size() - 1) % kDigits + 1; !text.empty(); length = kDigits) {
      pieces.push_back(numbers[number_place(text.substr(0, length))]);
      text.remove_prefix(length);
    }
  }
  Size size;
  for (std::size_t i = before; i < pieces.size(); ++i) {
    if (pieces[i] == kNone) {
      pieces.resize(before);
      return {};
    }
    size.width += pieces_[pieces[i]].advance;
    size.line = std::max(size.line, pieces_[pieces[i]].line);
  }
  size.middle = number ? digits_middle_ : size.line / 2.0;
  return size;
}

// All at once: each piece that comes later costs another upload of the picture.
void GlyphSheet::make_numbers(Paint paint) {
  auto& numbers = numbers_[static_cast<std::size_t>(paint)];
  numbers.reserve(kNumbers);
  for (std::size_t digits = 1, end = 10; digits <= kDigits; ++digits, end *= 10)
    for (std::size_t value = 0; value < end; ++value) {
      const std::string text = std::to_string(value);
      numbers.push_back(make(std::string(digits - text.size(), '0') + text, paint));
    }
}

std::uint32_t GlyphSheet::find_or_make(std::string_view text, Paint paint) {
  auto& texts = other_texts_[static_cast<std::size_t>(paint)];
  const auto [entry, is_new] = texts.emplace(std::string(text), kNone);
  if (is_new) entry->second = make(text, paint);
  return entry->second;
}

std::uint32_t GlyphSheet::make(std::string_view text, Paint paint) {
  const Ink ink = ink_of(text);
  Piece piece;
  piece.advance = ink.advance;
  piece.line = ink.line;
  if (ink.width > 0) {
    if (!place(ink.width, ink.height, piece)) return kNone;
    piece.left = ink.left;
    piece.low = ink.low;
    paint_piece(ink, paint, piece);
    changed_ = true;
  }
  pieces_.push_back(piece);
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
  ink.advance = size[0];
  ink.line = size[1];
  if (high < 0) return ink;
  ink.width = right - left + 3;
  ink.height = high - low + 3;
  ink.left = left - 1;
  ink.low = low - 1;
  ink.coverage.assign(static_cast<std::size_t>(ink.width) * static_cast<std::size_t>(ink.height), 0);
  for (int y = low; y <= high; ++y)
    for (int x = left; x <= right; ++x)
      ink.coverage[static_cast<std::size_t>((y - low + 1) * ink.width + x - left + 1)] = coverage_at(x, y);
  return ink;
}

// On shelves: pieces of one font are about equally high.
bool GlyphSheet::place(int width, int height_wanted, Piece& piece) {
  if (width > kWidth) return false;
  if (shelf_x_ + width > kWidth) {
    shelf_y_ += shelf_height_;
    shelf_x_ = shelf_height_ = 0;
  }
  int rows = height();
  while (shelf_y_ + height_wanted > rows)
    rows *= 2;
  if (rows > kMostHeight) return false;
  texels_.resize(4u * kWidth * static_cast<std::size_t>(rows), 0);
  piece.x = shelf_x_;
  piece.y = shelf_y_;
  piece.width = width;
  piece.height = height_wanted;
  shelf_x_ += width;
  shelf_height_ = std::max(shelf_height_, height_wanted);
  return true;
}

void GlyphSheet::paint_piece(const Ink& ink, Paint paint, const Piece& piece) {
  for (int y = 0; y < ink.height; ++y) {
    unsigned char* texel =
        &texels_[4u * (static_cast<std::size_t>(piece.y + y) * kWidth + static_cast<std::size_t>(piece.x))];
    for (int x = 0; x < ink.width; ++x, texel += 4) {
      const double text = ink.at(x, y) / 255.0;
      const double rim = paint == Paint::Plain ? 0.0 : kRimOpacity * ink.reach(x, y) / 255.0;
      const double alpha = paint == Paint::Rim ? rim : text + rim * (1.0 - text);
      const double white = paint == Paint::Outlined && alpha > 0.0 ? text / alpha : 1.0;
      std::fill_n(texel, 3, static_cast<unsigned char>(255.0 * white + 0.5));
      texel[3] = static_cast<unsigned char>(255.0 * alpha + 0.5);
    }
  }
}

vtkTexture* GlyphSheet::texture() {
  if (changed_) {
    vtkNew<vtkUnsignedCharArray> scalars;
    scalars->SetNumberOfComponents(4);
    scalars->SetNumberOfTuples(static_cast<vtkIdType>(texels_.size() / 4));
    std::copy(texels_.begin(), texels_.end(), scalars->WritePointer(0, static_cast<vtkIdType>(texels_.size())));
    image_->SetDimensions(width(), height(), 1);
    image_->GetPointData()->SetScalars(scalars);
    image_->Modified();
    changed_ = false;
  }
  return texture_;
}
