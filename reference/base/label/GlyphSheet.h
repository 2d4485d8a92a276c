#pragma once

#include "platform/util/TovanColor.h"

#include <vtkNew.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class vtkTextProperty;

/// Pieces of text in one font at one size, rendered once, from which labels of any number are put together. All mappers
/// of that font and size share a sheet.
///
/// Numbers are cut into pieces of three digits, so that few pieces make any number. Other texts are one piece each. A
/// piece is painted in the label's colour on a rim of one pixel, black or white, which keeps it legible on a surface of
/// that same colour.
class GlyphSheet {
public:
  /// How a piece lies in a label: `left` from where its text begins, `low` above the lower end of the line. Nothing can
  /// be seen of it where width is 0.
  struct Piece {
    int width = 0, height = 0;
    int left = 0, low = 0;
    int advance = 0; ///< how far on the next piece begins
    int line = 0;    ///< height of the line
  };
  /// The extent of a label in pixels. What one sees of it lies round `middle`, above the lower end of the line.
  struct Size {
    int width = 0;
    int line = 0;
    double middle = 0.0;
  };
  /// The pieces in one colour.
  class Tinted;

  /// The sheet of that font and size.
  static std::shared_ptr<GlyphSheet> get(vtkTextProperty* style, int dpi);

  GlyphSheet(vtkTextProperty* style, int dpi);
  ~GlyphSheet();
  GlyphSheet(const GlyphSheet&) = delete;
  GlyphSheet& operator=(const GlyphSheet&) = delete;

  /// Whether the sheet is of this font and size, and may take more texts. One that may not is kept by those who use it
  /// and is no longer given out.
  bool serves(vtkTextProperty* style, int dpi) const;
  /// Appends the pieces of the text, as numbers that `piece` takes, making those that are not there yet. Gives the
  /// label's size.
  Size lay_out(std::string_view text, std::vector<std::uint32_t>& pieces);
  const Piece& piece(std::uint32_t number) const { return pieces_[number]; }
  /// The pieces in that colour; valid until the next call.
  Tinted& tinted(TovanColor tint);

private:
  struct Ink;

  static std::string font_of(vtkTextProperty* style, int dpi);
  void make_numbers();
  std::uint32_t find_or_make(std::string_view text);
  std::uint32_t make(std::string_view text);
  Ink ink_of(std::string_view text);

  vtkNew<vtkTextProperty> style_;
  int dpi_;
  double digits_middle_ = 0.0;
  std::vector<Piece> pieces_;
  std::vector<std::size_t> coverage_starts_;
  std::vector<unsigned char>
      coverage_; // two bytes a pixel: that of the text and that of the rim beside it; rows upwards
  std::vector<std::uint32_t> numbers_; // pieces of one to three digits
  std::unordered_map<std::string, std::uint32_t> other_texts_;
  std::unordered_map<std::uint32_t, std::unique_ptr<Tinted>> tinted_; // by colour
};

/// Pixels have four bytes, red lowest, colours multiplied by alpha.
class GlyphSheet::Tinted {
public:
  Tinted(const GlyphSheet& sheet, TovanColor tint) : sheet_(sheet), tint_(tint) {}
  /// The piece's pixels, row by row upwards; valid until the next call.
  const std::uint32_t* pixels(std::uint32_t piece);

private:
  void paint(std::uint32_t piece);

  static constexpr std::size_t unpainted = static_cast<std::size_t>(-1);

  const GlyphSheet& sheet_;
  const TovanColor tint_;
  std::vector<std::size_t> starts_;
  std::vector<std::uint32_t> pixels_;
};
