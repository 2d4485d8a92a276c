#include "viewer/Picture.h"

#include "platform/base/GView.h"
#include "viewer/Camera.h"
#include "viewer/Messages.h"
#include "viewer/Scene.h"

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkPointData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace viewer {
namespace {

vtkSmartPointer<vtkUnsignedCharArray> encode_png(vtkRenderWindow* window) {
  const int* const size = window->GetSize();
  vtkNew<vtkUnsignedCharArray> pixels;
  window->GetPixelData(0, 0, size[0] - 1, size[1] - 1, 0, pixels);
  vtkNew<vtkImageData> image;
  image->SetDimensions(size[0], size[1], 1);
  image->GetPointData()->SetScalars(pixels);
  if (pixels->GetNumberOfTuples() != image->GetNumberOfPoints()) return nullptr;
  vtkNew<vtkPNGWriter> writer;
  writer->SetInputData(image);
  writer->WriteToMemoryOn();
  writer->Write();
  return writer->GetResult();
}

std::string write_bytes(const std::string& path, const unsigned char* bytes, std::size_t count) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) return std::strerror(errno);
  file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
  file.close();
  if (file) return "";
  const std::string reason = std::strerror(errno);
  std::error_code ignored;
  if (std::filesystem::is_regular_file(std::filesystem::symlink_status(path, ignored)))
    std::filesystem::remove(path, ignored);
  return reason;
}

// VTK's text tells source file and object first: what a user can use comes last.
std::string message_of(const std::string& error) {
  const std::size_t address = error.find("): ");
  return address == std::string::npos ? error : error.substr(address + 3);
}

} // namespace

std::string why_not_writable(const std::string& path) {
  if (std::filesystem::is_directory(path)) return std::strerror(EISDIR);
  const auto folder = std::filesystem::absolute(path).parent_path();
  return access(folder.c_str(), W_OK | X_OK) == 0 ? "" : std::strerror(errno);
}

std::string write_png(vtkRenderWindow* window, const std::string& path) {
  const auto bytes = encode_png(window);
  if (bytes == nullptr || bytes->GetNumberOfValues() == 0) return "the graphics system gave no picture";
  return write_bytes(path, bytes->GetPointer(0), bytes->GetNumberOfValues());
}

std::string write_picture(Scene& scene, const Options& options) {
  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  window->SetSize(options.resolution[0], options.resolution[1]);
  GView view(window);
  double background[3];
  options.display.background.to_rgb(background);
  view.renderer()->SetBackground(background);
  point_camera(view.renderer(), scene.visible_points(), options.camera);
  take_errors();
  view.render();
  const auto errors = take_errors();
  return errors.empty() ? write_png(window, *options.output) : message_of(errors.front());
}

} // namespace viewer
