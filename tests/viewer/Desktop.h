#pragma once

#include "Pixels.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

/// The viewer's window on the display that DISPLAY names, used as a person would: through mouse, keyboard and eyes.
/// Coordinates are pixels of the window, origin at the lower left.
class Desktop {
public:
  /// Whether there are xdotool and a display.
  static bool is_available();

  /// Starts the viewer in `folder` and waits for its window.
  Desktop(const std::vector<std::string>& arguments, const std::string& folder);
  /// Ends the viewer if it still runs.
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  bool has_window() const;
  bool is_running();
  /// The exit status, once the viewer has ended; -1 when it does not.
  int wait_for_end();

  /// Presses a key as xdotool names it: "e", "shift+x", "Page_Up".
  void press(const std::string& key);
  /// Drags with a button (1 left, 2 middle, 3 right), `modifier` held down.
  void drag(int button, int x0, int y0, int x1, int y1, const std::string& modifier = "");
  /// Comes, presses the left button and moves on, all within a few milliseconds; releases it a little later.
  void drag_in_haste(int x0, int y0, int x1, int y1);
  void move_to(int x, int y);
  /// Clicks with the left button, `modifier` held down, so late that it is no double click.
  void click(int x, int y, const std::string& modifier = "");
  void double_click(int x, int y);
  void press_button(int x, int y);
  void release_button();
  /// Types letters and digits.
  void type(const std::string& text);
  /// One notch of the wheel, forward or back.
  void turn_wheel(bool forward);
  void resize(int width, int height);

  /// The next line that the viewer wrote to standard output, once it is there; "(none)" when none comes within seconds.
  std::string next_line();
  /// Whether there is no line beyond those already given.
  bool is_silent() const;

  /// What the window shows, as soon as it has come to rest.
  Pixels look();
  /// The same, as soon as that differs from `before`; when it does not within seconds, what it then shows.
  Pixels look_for_change(const Pixels& before);

  /// The same, as soon as that fulfils the condition; when it does not within seconds, what it then shows.
  Pixels look_until(const std::function<bool(const Pixels&)>& condition);

private:
  void wait_after_click_at(int x, int y);
  std::string at(int x, int y) const;
  std::vector<std::string> lines() const;
  Pixels grab() const;
  void xdotool(const std::string& command) const;

  pid_t viewer_ = -1;
  int status_ = -1;
  unsigned long window_ = 0;
  std::string output_;
  std::size_t lines_given_ = 0;
  double last_click_ = 0;
  std::pair<int, int> last_place_{-1, -1};
};
