#pragma once

#include "Pixels.h"

#include <functional>
#include <string>
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
  /// One notch of the wheel, forward or back.
  void turn_wheel(bool forward);
  void resize(int width, int height);

  /// What the window shows, as soon as it has come to rest.
  Pixels look();
  /// The same, as soon as that differs from `before`; when it does not within seconds, what it then shows.
  Pixels look_for_change(const Pixels& before);

private:
  Pixels grab() const;
  void xdotool(const std::string& command) const;

  pid_t viewer_ = -1;
  int status_ = -1;
  unsigned long window_ = 0;
};
