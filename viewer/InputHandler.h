#pragma once

#include <string>

namespace viewer {

/// Where the mouse is, in pixels of the window with the origin at the lower left, and which keys are held.
struct MouseState {
  int x = 0;
  int y = 0;
  bool shift = false;
  bool control = false;
};

/// What a window does with the mouse besides turning the camera, and with keys.
class InputHandler {
public:
  virtual ~InputHandler() = default;

  /// The left button went down. True: the handler wants what follows up to the release; the camera stays.
  virtual bool press(const MouseState& mouse) = 0;
  /// The left button came up after a press that the handler wanted.
  virtual void release(const MouseState& mouse) = 0;
  /// The left button came up where it went down. `twice`: for the second time in short order.
  virtual void click(const MouseState& mouse, bool twice) = 0;
  /// The mouse moved without turning the camera.
  virtual void move(const MouseState& mouse) = 0;
  /// The camera begins to move by the mouse, or the mouse left the window.
  virtual void leave() = 0;
  /// The wheel turned a notch, 1 forward or -1. True: the handler used it; the camera stays.
  virtual bool turn_wheel(const MouseState& mouse, int notch) = 0;
  /// A timer that the handler set ran out.
  virtual void time_out() = 0;
  /// A key as `pressed_key` names it, and the character that it types, 0 for none.
  virtual void key(const std::string& key, char character) = 0;
};

} // namespace viewer
