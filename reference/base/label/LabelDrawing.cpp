#include "reference/base/label/LabelDrawing.h"

#include "reference/base/label/LabelList.h"
#include "reference/base/label/ScreenProjection.h"

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

#include <cmath>
#include <utility>

namespace {

using Paint = GlyphSheet::Paint;

// Darker texts would drown in a black rim.
constexpr int kDark = 80;

bool is_dark(TovanColor color) { return (299 * color.r + 587 * color.g + 114 * color.b) / 1000 < kDark; }

unsigned char as_byte(double fraction) { return static_cast<unsigned char>(std::lround(255.0 * fraction)); }

/// How far the left end of a text lies left of its point.
double before_point(vtkTextProperty* style, const GlyphSheet::Size& size) {
  switch (style->GetJustification()) {
  case VTK_TEXT_LEFT:
    return 0.0;
  case VTK_TEXT_RIGHT:
    return size.width;
  default:
    return size.width / 2.0;
  }
}

/// How far the lower end of a text's line lies below its point.
double below_point(vtkTextProperty* style, const GlyphSheet::Size& size) {
  switch (style->GetVerticalJustification()) {
  case VTK_TEXT_BOTTOM:
    return 0.0;
  case VTK_TEXT_TOP:
    return size.line;
  default:
    return size.middle;
  }
}

int pixel(double place) { return static_cast<int>(std::floor(place)); }

} // namespace

LabelDrawing::LabelDrawing(vtkRenderer* renderer) : renderer_(renderer), depth_(FrameDepth::get(renderer)) {}

void LabelDrawing::draw(const LabelList& labels, vtkTextProperty* style, bool hides) {
  choose_sheet(style);
  place_labels(labels, style, hides);
  if (!(wanted_ == drawn_)) {
    make_quads(labels);
    std::swap(wanted_, drawn_);
  }
  quads_.draw(renderer_, *sheet_);
}

void LabelDrawing::choose_sheet(vtkTextProperty* style) {
  vtkRenderWindow* window = renderer_->GetRenderWindow();
  if (!sheet_ || !sheet_->is_for(style, window->GetDPI())) {
    sheet_ = GlyphSheet::get(window, style, window->GetDPI());
    drawn_ = State();
  }
  sheet_->tidy_up();
}

void LabelDrawing::place_labels(const LabelList& labels, vtkTextProperty* style, bool hides) {
  double plain_color[3];
  style->GetColor(plain_color);
  wanted_.list = labels.version();
  wanted_.sheet = sheet_->version();
  wanted_.opacity = as_byte(style->GetOpacity());
  wanted_.plain_color = TovanColor(as_byte(plain_color[0]), as_byte(plain_color[1]), as_byte(plain_color[2])).value();
  wanted_.shown.clear();
  pieces_.clear();

  const ScreenProjection projection(renderer_);
  if (!projection.has_pixels()) return;
  if (hides) depth_->read();
  ScreenProjection::Place place;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (!projection.project(labels.position(i), place)) continue;
    if (hides && depth_->farthest_near(pixel(place.x), pixel(place.y)) < place.depth) continue;
    const Paint paint = is_dark(tint_of(labels.color(i))) ? Paint::Rim : Paint::Outlined;
    const GlyphSheet::Size size = sheet_->lay_out(labels.text(i), paint, pieces_);
    if (paint == Paint::Rim) sheet_->lay_out(labels.text(i), Paint::Plain, pieces_);
    const auto x = static_cast<int>(std::lround(place.x - before_point(style, size)));
    const auto y = static_cast<int>(std::lround(place.y - below_point(style, size)));
    wanted_.shown.push_back({i, x, y, pieces_.size()});
  }
}

TovanColor LabelDrawing::tint_of(TovanColor color) const {
  TovanColor tint = color == TovanColor() ? TovanColor(wanted_.plain_color) : color;
  tint.a = static_cast<unsigned char>((tint.a * wanted_.opacity + 127) / 255);
  return tint;
}

void LabelDrawing::make_quads(const LabelList& labels) {
  quads_.resize(pieces_.size());
  std::size_t next = 0;
  for (const Shown& each : wanted_.shown) {
    const TovanColor tint = tint_of(labels.color(each.label));
    // Dark texts come twice: a white rim, then the text.
    const std::size_t count = each.end - next;
    const std::size_t rim_end = is_dark(tint) ? next + count / 2 : next;
    int x = each.x;
    for (; next < each.end; ++next) {
      if (next == rim_end) x = each.x;
      const GlyphSheet::Piece& piece = sheet_->piece(pieces_[next]);
      const TovanColor paint = next < rim_end ? TovanColor(255, 255, 255, tint.a) : tint;
      quads_.set(next, *sheet_, pieces_[next], x + piece.left, each.y + piece.low, paint);
      x += piece.advance;
    }
  }
  quads_.finish();
}

void LabelDrawing::release(vtkWindow* window) {
  quads_.release(window);
  sheet_.reset();
  drawn_ = State();
}
