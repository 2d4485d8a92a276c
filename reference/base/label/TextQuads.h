#pragma once

#include "platform/util/TovanColor.h"

#include <vtkNew.h>

#include <cstddef>

class GlyphSheet;
class vtkFloatArray;
class vtkPolyData;
class vtkPolyDataMapper2D;
class vtkTexturedActor2D;
class vtkUnsignedCharArray;
class vtkViewport;
class vtkWindow;

/// Rectangles of pixels, filled from a glyph sheet and tinted: drawn in one go.
class TextQuads {
public:
  TextQuads();
  ~TextQuads();
  TextQuads(const TextQuads&) = delete;
  TextQuads& operator=(const TextQuads&) = delete;

  /// Makes room for so many rectangles, whose content is then void.
  void resize(std::size_t count);
  /// Sets the rectangle of a piece, lower left corner at the pixel.
  void set(std::size_t i, const GlyphSheet& sheet, std::uint32_t piece, int x, int y, TovanColor tint);
  /// To be called when all are set.
  void finish();
  void draw(vtkViewport* viewport, GlyphSheet& sheet);
  void release(vtkWindow* window);

private:
  std::size_t count_ = 0;
  vtkNew<vtkFloatArray> corners_;
  vtkNew<vtkFloatArray> texture_coordinates_;
  vtkNew<vtkUnsignedCharArray> tints_;
  vtkNew<vtkPolyData> data_;
  vtkNew<vtkPolyDataMapper2D> mapper_;
  vtkNew<vtkTexturedActor2D> actor_;
};
