#include "reference/base/label/LabelImage.h"

#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkTexture.h>
#include <vtkTexturedActor2D.h>
#include <vtkUnsignedCharArray.h>
#include <vtkViewport.h>
#include <vtkWindow.h>

#include <algorithm>
#include <array>

namespace {

constexpr int tile = 16;

constexpr std::uint32_t red_and_blue = 0x00ff00ffu;

/// One pixel over another, both multiplied by alpha.
std::uint32_t over(std::uint32_t top, std::uint32_t bottom) {
  const std::uint32_t rest = 256 - (top >> 24);
  const std::uint32_t red_blue = ((bottom & red_and_blue) * rest >> 8) & red_and_blue;
  const std::uint32_t green_alpha = ((bottom >> 8) & red_and_blue) * rest & ~red_and_blue;
  return top + (red_blue | green_alpha);
}

/// 255 * 2^16 / alpha.
constexpr std::array<std::uint32_t, 256> make_reciprocals() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t alpha = 1; alpha < 256; ++alpha)
    table[alpha] = (255u << 16) / alpha;
  return table;
}

constexpr std::array<std::uint32_t, 256> reciprocals = make_reciprocals();

/// Four bytes as blending wants them, colours not multiplied by alpha.
void write_straight(std::uint32_t pixel, unsigned char* out) {
  const std::uint32_t alpha = pixel >> 24;
  const std::uint32_t scale = reciprocals[alpha];
  for (int shift = 0; shift < 24; shift += 8)
    *out++ = static_cast<unsigned char>(std::min(255u, ((pixel >> shift & 255u) * scale + 32768u) >> 16));
  *out = static_cast<unsigned char>(alpha);
}

} // namespace

LabelImage::LabelImage() {
  vtkNew<vtkTexture> texture;
  texture->SetInputData(image_);
  texture->SetColorModeToDirectScalars();
  texture->InterpolateOff();
  texture->RepeatOff();
  texture->EdgeClampOn();
  vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(tiles_);
  actor_->SetTexture(texture);
  actor_->SetMapper(mapper);
}

LabelImage::~LabelImage() = default;

void LabelImage::clear(int width, int height) {
  if (width != width_ || height != height_) {
    width_ = width;
    height_ = height;
    tiles_across_ = (width + tile - 1) / tile;
    const int tiles_up = (height + tile - 1) / tile;
    pixels_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    used_tiles_.assign(static_cast<std::size_t>(tiles_across_) * static_cast<std::size_t>(tiles_up), 0);
    return;
  }
  for_each_used_tile([this](int left, int right, int low, int high) {
    for (int y = low; y < high; ++y) {
      std::uint32_t* row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
      std::fill(row + left, row + right, 0u);
    }
  });
  std::fill(used_tiles_.begin(), used_tiles_.end(), 0);
}

template <class Visit> void LabelImage::for_each_used_tile(Visit visit) const {
  for (std::size_t i = 0; i < used_tiles_.size(); ++i) {
    if (!used_tiles_[i]) continue;
    const int left = static_cast<int>(i) % tiles_across_ * tile;
    const int low = static_cast<int>(i) / tiles_across_ * tile;
    visit(left, std::min(width_, left + tile), low, std::min(height_, low + tile));
  }
}

void LabelImage::paint(const std::uint32_t* pixels, int width, int height, int x, int y) {
  const int left = std::max(x, 0), right = std::min(x + width, width_);
  const int low = std::max(y, 0), high = std::min(y + height, height_);
  if (left >= right || low >= high) return;
  for (int row = low; row < high; ++row) {
    const std::uint32_t* from = pixels + static_cast<std::ptrdiff_t>(row - y) * width + (left - x);
    std::uint32_t* to = pixels_.data() + static_cast<std::ptrdiff_t>(row) * width_ + left;
    for (int i = 0; i < right - left; ++i)
      to[i] = over(from[i], to[i]);
  }
  for (int tile_y = low / tile; tile_y <= (high - 1) / tile; ++tile_y)
    for (int tile_x = left / tile; tile_x <= (right - 1) / tile; ++tile_x)
      used_tiles_[static_cast<std::size_t>(tile_y) * static_cast<std::size_t>(tiles_across_) +
                  static_cast<std::size_t>(tile_x)] = 1;
}

void LabelImage::finish() {
  vtkNew<vtkUnsignedCharArray> texels;
  texels->SetNumberOfComponents(4);
  unsigned char* out = texels->WritePointer(0, 4 * static_cast<vtkIdType>(pixels_.size()));
  vtkNew<vtkPoints> corners;
  vtkNew<vtkFloatArray> places;
  places->SetNumberOfComponents(2);
  vtkNew<vtkCellArray> triangles;
  for_each_used_tile([&](int left, int right, int low, int high) {
    for (int y = low; y < high; ++y) {
      const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(y) * width_;
      for (int x = left; x < right; ++x)
        write_straight(pixels_[static_cast<std::size_t>(row + x)], out + 4 * (row + x));
    }
    const vtkIdType first = corners->GetNumberOfPoints();
    for (const auto& [x, y] : {std::pair(left, low), {right, low}, {right, high}, {left, high}}) {
      corners->InsertNextPoint(x, y, 0);
      places->InsertNextTuple2(double(x) / width_, double(y) / height_);
    }
    for (const vtkIdType second : {first + 1, first + 2})
      triangles->InsertNextCell({first, second, second + 1});
  });
  tiles_->SetPoints(corners);
  tiles_->GetPointData()->SetTCoords(places);
  tiles_->SetPolys(triangles);
  image_->SetDimensions(width_, height_, 1);
  image_->GetPointData()->SetScalars(texels);
  image_->Modified();
}

void LabelImage::draw(vtkViewport* viewport) {
  if (tiles_->GetNumberOfPolys() > 0) actor_->RenderOverlay(viewport);
}

void LabelImage::release(vtkWindow* window) { actor_->ReleaseGraphicsResources(window); }
