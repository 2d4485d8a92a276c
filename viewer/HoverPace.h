#pragma once

namespace viewer {

/// When to look what lies under the mouse: once it rests, the longer the costlier looking is, since the window answers
/// nothing meanwhile.
class HoverPace {
public:
  /// The mouse moved at that time, in seconds of any clock.
  void moved(double now);
  /// Nothing is to be looked for until the mouse moves again.
  void stop();
  /// Whether the mouse moved and nobody looked since.
  bool is_waiting() const;
  /// Milliseconds from that time until it has rested long enough; 0 when it has.
  int wait_ms(double now) const;
  /// Looking took so many seconds.
  void looked(double seconds);
  /// Whether that many are too many to look unasked.
  static bool is_too_long(double seconds);

private:
  double rest_ = 0.03;
  double due_ = 0;
  bool waiting_ = false;
};

} // namespace viewer
