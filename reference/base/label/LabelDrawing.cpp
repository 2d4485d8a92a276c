#include "reference/base/label/LabelDrawing.h"

#include "reference/base/label/FrameDepth.h"
#include "reference/base/label/LabelImage.h"
#include "reference/base/label/LabelList.h"
#include "reference/base/label/ScreenProjection.h"

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

#include <cmath>
#include <utility>

namespace {

unsigned char as_byte(double fraction) { return static_cast<unsigned char>(std::lround(255.0 * fraction)); }

TovanColor color_of(vtkTextProperty* style) {
  double rgb[3];
  style->GetColor(rgb);
  return {as_byte(rgb[0]), as_byte(rgb[1]), as_byte(rgb[2])};
}

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

int nearest(double place) { return static_cast<int>(std::floor(place + 0.5)); }

} // namespace

bool LabelDrawing::place(const LabelList& labels, vtkTextProperty* style, vtkRenderer* renderer,
                         const FrameDepth* depth) {
  const int dpi = renderer->GetRenderWindow()->GetDPI();
  if (!placed_.sheet || !placed_.sheet->serves(style, dpi)) placed_.sheet = GlyphSheet::get(style, dpi);
  placed_.list = labels.version();
  placed_.opacity = as_byte(style->GetOpacity());
  placed_.plain_color = color_of(style);
  find_labels_in_view(labels, style, renderer, depth);
  return !(placed_ == painted_);
}

void LabelDrawing::find_labels_in_view(const LabelList& labels, vtkTextProperty* style, vtkRenderer* renderer,
                                       const FrameDepth* depth) {
  placed_.shown.clear();
  pieces_.clear();
  const ScreenProjection projection(renderer);
  if (!projection.has_pixels()) return;
  ScreenProjection::Place place;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (!projection.project(labels.position(i), place)) continue;
    if (depth && depth->farthest_near(static_cast<int>(place.x), static_cast<int>(place.y)) < place.depth) continue;
    const GlyphSheet::Size size = placed_.sheet->lay_out(labels.text(i), pieces_);
    placed_.shown.push_back(
        {i, nearest(place.x - before_point(style, size)), nearest(place.y - below_point(style, size)), pieces_.size()});
  }
}

void LabelDrawing::paint(const LabelList& labels, LabelImage& image) {
  GlyphSheet& sheet = *placed_.sheet;
  GlyphSheet::Tinted* tinted = nullptr;
  TovanColor last_color;
  std::size_t next = 0;
  for (const Shown& each : placed_.shown) {
    const TovanColor color = labels.color(each.label);
    if (!tinted || color != last_color) tinted = &sheet.tinted(tint_of(color));
    last_color = color;
    int x = each.x;
    for (; next < each.end; ++next) {
      const GlyphSheet::Piece& piece = sheet.piece(pieces_[next]);
      image.paint(tinted->pixels(pieces_[next]), piece.width, piece.height, x + piece.left, each.y + piece.low);
      x += piece.advance;
    }
  }
  painted_ = placed_;
}

TovanColor LabelDrawing::tint_of(TovanColor color) const {
  TovanColor tint = color == TovanColor() ? placed_.plain_color : color;
  tint.a = static_cast<unsigned char>((tint.a * placed_.opacity + 127) / 255);
  return tint;
}
