#include "Pixels.h"

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

// Darker than this, colours can no longer be told apart.
constexpr double least_light = 0.25;

bool is_lit(const std::array<std::uint8_t, 3>& pixel, const std::array<double, 3>& color) {
  double dot = 0, square = 0, pixel_square = 0;
  for (int i = 0; i < 3; ++i) {
    dot += pixel[i] * color[i];
    square += color[i] * color[i];
    pixel_square += pixel[i] * pixel[i];
  }
  const double light = dot / square;
  const double off = pixel_square - light * dot;
  return light > least_light && light < 1.02 && off < 9;
}

} // namespace

Pixels Pixels::read(const std::string& path) {
  vtkNew<vtkPNGReader> reader;
  Pixels pixels;
  if (!reader->CanReadFile(path.c_str())) return pixels;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkImageData* const image = reader->GetOutput();
  auto* const values = vtkUnsignedCharArray::SafeDownCast(image->GetPointData()->GetScalars());
  if (values == nullptr || values->GetNumberOfComponents() < 3) return pixels;
  const int* const size = image->GetDimensions();
  pixels.width = size[0];
  pixels.height = size[1];
  pixels.rgb.resize(static_cast<std::size_t>(values->GetNumberOfTuples()));
  for (std::size_t i = 0; i < pixels.rgb.size(); ++i)
    for (int c = 0; c < 3; ++c)
      pixels.rgb[i][c] = values->GetTypedComponent(static_cast<vtkIdType>(i), c);
  return pixels;
}

const std::array<std::uint8_t, 3>& Pixels::at(int x, int y) const { return rgb.at(std::size_t(y) * width + x); }

std::size_t Pixels::count(TovanColor color, int tolerance) const {
  return std::count_if(rgb.begin(), rgb.end(), [&](const auto& pixel) {
    return std::abs(pixel[0] - color.r) <= tolerance && std::abs(pixel[1] - color.g) <= tolerance &&
           std::abs(pixel[2] - color.b) <= tolerance;
  });
}

std::size_t Pixels::count_lit(TovanColor color) const {
  const std::array<double, 3> wanted = {double(color.r), double(color.g), double(color.b)};
  return std::count_if(rgb.begin(), rgb.end(), [&](const auto& pixel) { return is_lit(pixel, wanted); });
}

std::size_t Pixels::differences(const Pixels& other, int tolerance) const {
  std::size_t different = 0;
  for (std::size_t i = 0; i < rgb.size(); ++i) {
    int most = 0;
    for (int c = 0; c < 3; ++c)
      most = std::max(most, std::abs(rgb[i][c] - other.rgb.at(i)[c]));
    different += most > tolerance;
  }
  return different;
}
