#pragma once

#include <string>

#include <sys/types.h>

namespace viewer {

/// Whether the X display that DISPLAY names can be opened and draws with OpenGL.
bool display_is_usable();

/// An X server of this process's own that shows nothing: for drawing off screen where there is no display. It ends with
/// this object, and with the process however that ends.
class VirtualDisplay {
public:
  VirtualDisplay() = default;
  ~VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  /// Starts Xvfb, waits until it is ready and makes it this process's DISPLAY. "" or, in a few words, why that was not
  /// possible.
  std::string start();

private:
  void stop();

  pid_t server_ = -1;
};

} // namespace viewer
