#include "Screen.h"

#include <vtkCamera.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPNGWriter.h>
#include <vtkPointData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int plainly_different = 32;

Picture picture_of(int width, int height, vtkUnsignedCharArray* channels) {
  Picture picture{width, height, {}};
  const int components = channels->GetNumberOfComponents();
  for (vtkIdType i = 0; i < channels->GetNumberOfTuples(); ++i) {
    const unsigned char* pixel = channels->GetPointer(i * components);
    picture.pixels.push_back({pixel[0], pixel[1], pixel[2]});
  }
  return picture;
}

} // namespace

bool operator==(const Rgb& left, const Rgb& right) { return distance(left, right) == 0; }

std::ostream& operator<<(std::ostream& os, const Rgb& color) {
  return os << "rgb(" << color.r << ", " << color.g << ", " << color.b << ")";
}

int distance(const Rgb& left, const Rgb& right) {
  return std::max({std::abs(left.r - right.r), std::abs(left.g - right.g), std::abs(left.b - right.b)});
}

const Rgb& Picture::at(int x, int y) const { return pixels.at(static_cast<std::size_t>(x + width * y)); }

int Picture::count(const Rgb& color, int tolerance) const {
  return count_if([&](const Rgb& pixel) { return distance(pixel, color) <= tolerance; });
}

int Picture::count_if(const std::function<bool(const Rgb&)>& wanted) const {
  return static_cast<int>(std::count_if(pixels.begin(), pixels.end(), wanted));
}

bool Picture::has_near(std::array<int, 2> place, const Rgb& color, int reach, int tolerance) const {
  for (int y = std::max(0, place[1] - reach); y <= std::min(height - 1, place[1] + reach); ++y)
    for (int x = std::max(0, place[0] - reach); x <= std::min(width - 1, place[0] + reach); ++x)
      if (distance(at(x, y), color) <= tolerance) return true;
  return false;
}

Difference difference(const Picture& left, const Picture& right) {
  if (left.width != right.width || left.height != right.height) return {255.0, 1.0};
  double sum = 0.0;
  int differing = 0;
  for (std::size_t i = 0; i < left.pixels.size(); ++i) {
    const Rgb& a = left.pixels[i];
    const Rgb& b = right.pixels[i];
    sum += (std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b)) / 3.0;
    differing += distance(a, b) > plainly_different;
  }
  const auto count = static_cast<double>(left.pixels.size());
  return {sum / count, differing / count};
}

Picture read_png(const std::string& path) {
  vtkNew<vtkPNGReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkImageData* image = reader->GetOutput();
  auto* channels = vtkUnsignedCharArray::SafeDownCast(image->GetPointData()->GetScalars());
  return channels ? picture_of(image->GetDimensions()[0], image->GetDimensions()[1], channels) : Picture();
}

void write_png(const Picture& picture, const std::string& path) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(picture.width, picture.height, 1);
  image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
  auto* channels = vtkUnsignedCharArray::SafeDownCast(image->GetPointData()->GetScalars());
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const Rgb& pixel = picture.pixels[i];
    const auto tuple = static_cast<vtkIdType>(i);
    channels->SetTypedComponent(tuple, 0, static_cast<unsigned char>(pixel.r));
    channels->SetTypedComponent(tuple, 1, static_cast<unsigned char>(pixel.g));
    channels->SetTypedComponent(tuple, 2, static_cast<unsigned char>(pixel.b));
  }
  vtkNew<vtkPNGWriter> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputData(image);
  writer->Write();
}

Screen::Screen() {
  vtkRenderWindow* window = view_.window();
  EXPECT_STREQ(window->GetClassName(), "vtkXOpenGLRenderWindow") << "nothing would be drawn";
  window->OffScreenRenderingOn();
  window->SetMultiSamples(0);
  window->SetSize(window_width, window_height);
  vtkRenderer* renderer = view_.renderer();
  renderer->GradientBackgroundOff();
  renderer->SetBackground(background.r / 255.0, background.g / 255.0, background.b / 255.0);
  renderer->SetUseFXAA(false);
  renderer->GetActiveCamera()->ParallelProjectionOn();
}

void Screen::look_at(std::array<double, 3> centre, std::array<double, 3> direction, double height) {
  double length = 0.0;
  for (double component : direction)
    length += component * component;
  length = std::sqrt(length);
  vtkCamera* camera = view_.renderer()->GetActiveCamera();
  const double away = 10.0 * height / length;
  camera->SetFocalPoint(centre.data());
  camera->SetPosition(centre[0] + away * direction[0], centre[1] + away * direction[1],
                      centre[2] + away * direction[2]);
  const bool along_y = direction[0] == 0.0 && direction[2] == 0.0;
  camera->SetViewUp(0.0, along_y ? 0.0 : 1.0, along_y ? 1.0 : 0.0);
  camera->SetParallelScale(height / 2.0);
}

Picture Screen::shoot() {
  // Clipping planes follow what is drawn, which a frame's update of the parts may have changed.
  view_.render();
  view_.renderer()->ResetCameraClippingRange();
  view_.render();
  vtkNew<vtkUnsignedCharArray> channels;
  view_.window()->GetRGBACharPixelData(0, 0, window_width - 1, window_height - 1, 0, channels);
  return picture_of(window_width, window_height, channels);
}

double Screen::depth_at(std::array<int, 2> pixel) {
  float depth = 0.0f;
  view_.window()->GetZbufferData(pixel[0], pixel[1], pixel[0], pixel[1], &depth);
  return depth;
}

std::array<int, 2> Screen::pixel_of(std::array<double, 3> point) {
  vtkRenderer* renderer = view_.renderer();
  renderer->SetWorldPoint(point[0], point[1], point[2], 1.0);
  renderer->WorldToDisplay();
  const double* display = renderer->GetDisplayPoint();
  return {static_cast<int>(std::floor(display[0])), static_cast<int>(std::floor(display[1]))};
}
