#pragma once

#include <vtkNew.h>

#include <cstdint>
#include <vector>

class vtkImageData;
class vtkPolyData;
class vtkTexturedActor2D;
class vtkViewport;
class vtkWindow;

/// A picture as large as a viewport that labels are painted on, to be laid over the viewport in one go. Painting many
/// small texts takes a graphics card, and more so a driver without one, longer than painting them here.
///
/// Only those tiles of it are drawn that something was painted on: flat props write depth wherever they are.
class LabelImage {
public:
  LabelImage();
  ~LabelImage();
  LabelImage(const LabelImage&) = delete;
  LabelImage& operator=(const LabelImage&) = delete;

  int width() const { return width_; }
  int height() const { return height_; }
  /// Wipes the picture, which gets that size.
  void clear(int width, int height);
  /// Paints a rectangle of pixels over what is there: four bytes each, red lowest, colours multiplied by alpha; rows
  /// upwards from the lower left corner at x, y. What lies outside the picture is left out.
  void paint(const std::uint32_t* pixels, int width, int height, int x, int y);
  /// To be called when all is painted.
  void finish();
  void draw(vtkViewport* viewport);
  void release(vtkWindow* window);

private:
  template <class Visit> void for_each_used_tile(Visit visit) const;

  int width_ = 0, height_ = 0;
  int tiles_across_ = 0;
  std::vector<std::uint32_t> pixels_;
  std::vector<char> used_tiles_;
  vtkNew<vtkImageData> image_;
  vtkNew<vtkPolyData> tiles_;
  vtkNew<vtkTexturedActor2D> actor_;
};
