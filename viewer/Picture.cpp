#include "viewer/Picture.h"

#include "viewer/Camera.h"
#include "viewer/Messages.h"
#include "viewer/OutputFile.h"
#include "viewer/Scene.h"

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkPointData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

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

// VTK's text tells source file and object first: what a user can use comes last.
std::string message_of(const std::string& error) {
  const std::size_t address = error.find("): ");
  return address == std::string::npos ? error : error.substr(address + 3);
}

} // namespace

std::string write_png(vtkRenderWindow* window, const std::string& path) {
  const auto bytes = encode_png(window);
  if (bytes == nullptr || bytes->GetNumberOfValues() == 0) return "the graphics system gave no picture";
  return write_file(path, bytes->GetPointer(0), bytes->GetNumberOfValues());
}

StillView::StillView(Scene& scene, const Options& options) : view_(window_) {
  window_->SetOffScreenRendering(1);
  window_->SetSize(options.resolution[0], options.resolution[1]);
  double background[3];
  options.display.background.to_rgb(background);
  view_.renderer()->SetBackground(background);
  point_camera(view_.renderer(), scene.visible_points(), options.camera);
}

StillView::~StillView() = default;

GView& StillView::view() { return view_; }

std::string StillView::draw() {
  take_errors();
  view_.render();
  const auto errors = take_errors();
  return errors.empty() ? "" : message_of(errors.front());
}

std::string StillView::write(const std::string& path) {
  const std::string reason = draw();
  return reason.empty() ? write_png(window_, path) : reason;
}

} // namespace viewer
