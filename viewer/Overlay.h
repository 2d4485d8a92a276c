#pragma once

#include <vtkNew.h>

#include <string>
#include <vector>

class vtkRenderer;
class vtkTextActor;

namespace viewer {

/// Text over the picture: at the bottom a line on the scene, one on what is picked, and a message above them; the help
/// in the middle; a tooltip beside the cursor. What is too long for the window is shortened.
class Overlay {
public:
  /// Adds the texts to the renderer, which must outlive the overlay.
  explicit Overlay(vtkRenderer* renderer);
  ~Overlay();
  Overlay(const Overlay&) = delete;
  Overlay& operator=(const Overlay&) = delete;

  void set_status(const std::string& text);
  void set_pick_line(const std::string& text);
  /// Replaces the message; "" for none. Errors are red.
  void set_message(const std::string& text, bool is_error = false);
  /// One text per line; where it is too long for the window it goes on below, indented by so many letters.
  void set_help(std::vector<std::string> lines, int indent);
  /// Shows the help, then what of it had no room, page by page, and then hides it.
  void turn_help();
  void end_help();
  bool shows_help() const;
  /// Shows the text beside a place in pixels of the window, or where there is room; "" hides it.
  void set_tooltip(const std::string& text, int x = 0, int y = 0);
  /// Hides everything, or shows again what was shown.
  void set_visible(bool visible);
  /// Places the texts for the renderer's present size and resolution; to be called before each frame.
  void lay_out();

private:
  std::vector<vtkTextActor*> actors() const;
  void lay_out_help(double scale);
  void lay_out_tooltip(double text);

  vtkRenderer* renderer_;
  vtkNew<vtkTextActor> status_;
  vtkNew<vtkTextActor> picks_;
  vtkNew<vtkTextActor> message_;
  vtkNew<vtkTextActor> help_;
  vtkNew<vtkTextActor> tooltip_;
  std::string status_text_, pick_text_, message_text_, tooltip_text_;
  int tooltip_place_[2] = {0, 0};
  std::vector<std::string> help_lines_;
  int help_indent_ = 0;
  int help_page_ = 0; // 0: none
  int help_pages_ = 1;
  bool visible_ = true;
};

} // namespace viewer
