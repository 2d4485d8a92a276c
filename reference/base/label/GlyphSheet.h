#pragma once

#include <vtkNew.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class vtkImageData;
class vtkTextProperty;
class vtkTexture;
class vtkWindow;

/// A picture of pieces of text in one font at one size, from which labels of any number are put together. One for each
/// window, font and size; all mappers there share it.
///
/// Texts of digits are cut into pieces of three, so that few pieces make any number and few rectangles draw it. Other
/// texts are one piece each.
class GlyphSheet {
public:
  /// How a piece is painted: white, which the label's colour is multiplied with.
  enum class Paint {
    Outlined, ///< on a black rim
    Rim,      ///< the area of text and rim alone
    Plain,    ///< without a rim
  };
  /// Where a piece is in the picture, in texels, and how it lies in a label: `left` from where its text begins, `low`
  /// above the lower end of the line.
  struct Piece {
    int x = 0, y = 0, width = 0, height = 0;
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

  /// The sheet for that window, font and size. The window is borrowed.
  static std::shared_ptr<GlyphSheet> get(vtkWindow* window, vtkTextProperty* style, int dpi);

  GlyphSheet(vtkTextProperty* style, int dpi);
  ~GlyphSheet();
  GlyphSheet(const GlyphSheet&) = delete;
  GlyphSheet& operator=(const GlyphSheet&) = delete;

  /// Whether the sheet is for this font and size.
  bool is_for(vtkTextProperty* style, int dpi) const;
  /// Makes room if there is little left. All pieces are void after that, and `version` has moved.
  void tidy_up();
  /// Appends the pieces of the text, as numbers that `piece` takes, making those that are not there yet. Nothing is
  /// appended when they do not fit any more. Gives the label's size.
  Size lay_out(std::string_view text, Paint paint, std::vector<std::uint32_t>& pieces);
  const Piece& piece(std::uint32_t number) const { return pieces_[number]; }
  /// The picture's size in texels; it may grow with each piece.
  int width() const;
  int height() const;
  std::uint64_t version() const { return version_; }
  /// The picture, up to date.
  vtkTexture* texture();

private:
  struct Ink;
  static constexpr int kPaints = 3;
  static constexpr std::uint32_t kNone = 0xffffffffu;

  static std::string font_of(vtkTextProperty* style, int dpi);
  std::uint32_t find_or_make(std::string_view text, Paint paint);
  void make_numbers(Paint paint);
  std::uint32_t make(std::string_view text, Paint paint);
  Ink ink_of(std::string_view text);
  bool place(int width, int height, Piece& piece);
  void paint_piece(const Ink& ink, Paint paint, const Piece& piece);
  void empty();

  vtkNew<vtkTextProperty> style_;
  int dpi_;
  std::string font_;
  double digits_middle_ = 0.0;
  std::vector<Piece> pieces_;
  std::array<std::vector<std::uint32_t>, kPaints> numbers_; // pieces of one to three digits
  std::array<std::unordered_map<std::string, std::uint32_t>, kPaints> other_texts_;
  std::vector<unsigned char> texels_; // four bytes each, rows upwards
  int shelf_x_ = 0, shelf_y_ = 0, shelf_height_ = 0;
  std::uint64_t version_ = 1;
  bool changed_ = true;
  vtkNew<vtkImageData> image_;
  vtkNew<vtkTexture> texture_;
};
