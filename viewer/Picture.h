#pragma once

#include "platform/base/GView.h"
#include "viewer/Options.h"

#include <vtkNew.h>

#include <string>

class vtkRenderWindow;

namespace viewer {

class Scene;

/// Writes what the window shows to a PNG file. "" or, in a few words, why that was not possible.
std::string write_png(vtkRenderWindow* window, const std::string& path);

/// The scene as a picture of the size asked for, off screen. Needs a display.
class StillView {
public:
  /// Looks at the scene as the options say.
  StillView(Scene& scene, const Options& options);
  ~StillView();
  StillView(const StillView&) = delete;
  StillView& operator=(const StillView&) = delete;

  GView& view();
  /// Draws the picture. "" or, in a few words, why that was not possible.
  std::string draw();
  /// Draws and writes the picture to a PNG file. "" or, in a few words, why that was not possible.
  std::string write(const std::string& path);

private:
  vtkNew<vtkRenderWindow> window_;
  GView view_;
};

} // namespace viewer
