#pragma once

#include "viewer/Options.h"

#include <string>

class GView;
class vtkRenderWindow;

namespace viewer {

class Scene;

/// Why no picture can be written to the path, as far as that can be told beforehand: its folder is missing or closed,
/// or the path is a folder. "" when nothing speaks against it.
std::string why_not_writable(const std::string& path);

/// Writes what the window shows to a PNG file. "" or, in a few words, why that was not possible.
std::string write_png(vtkRenderWindow* window, const std::string& path);

/// Draws the scene off screen and writes the picture. Needs a display. "" or, in a few words, why that was not
/// possible.
std::string write_picture(Scene& scene, const Options& options);

} // namespace viewer
