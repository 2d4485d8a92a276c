#pragma once

#include <vtkNew.h>

#include <string>

class vtkRenderer;
class vtkTextActor;

namespace viewer {

/// Text over the picture: a status line at the bottom, a message above it, and the help in the middle.
class Overlay {
public:
  /// Adds the texts to the renderer, which must outlive the overlay.
  explicit Overlay(vtkRenderer* renderer);
  ~Overlay();
  Overlay(const Overlay&) = delete;
  Overlay& operator=(const Overlay&) = delete;

  void set_status(const std::string& text);
  /// Replaces the message; "" for none. Errors are red.
  void set_message(const std::string& text, bool is_error = false);
  void set_help(const std::string& text);
  void show_help(bool on);
  bool shows_help() const;
  /// Hides everything, or shows again what was shown.
  void set_visible(bool visible);
  /// Places the texts for the renderer's present size and resolution; to be called before each frame.
  void lay_out();

private:
  vtkRenderer* renderer_;
  vtkNew<vtkTextActor> status_;
  vtkNew<vtkTextActor> message_;
  vtkNew<vtkTextActor> help_;
  int help_lines_ = 1;
  int help_columns_ = 1;
  bool help_on_ = false;
};

} // namespace viewer
