#pragma once

#include "platform/base/GView.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

/// A colour of a pixel.
struct Rgb {
  int r = 0, g = 0, b = 0;
};
bool operator==(const Rgb& left, const Rgb& right);
std::ostream& operator<<(std::ostream& os, const Rgb& color);
/// The largest difference of a channel.
int distance(const Rgb& left, const Rgb& right);

/// A picture, rows from the bottom up.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Rgb> pixels;

  const Rgb& at(int x, int y) const;
  /// How many pixels differ by at most `tolerance` in each channel from the colour.
  int count(const Rgb& color, int tolerance = 8) const;
  int count_if(const std::function<bool(const Rgb&)>& wanted) const;
  /// Whether a pixel like that lies within `reach` of the place.
  bool has_near(std::array<int, 2> place, const Rgb& color, int reach, int tolerance = 8) const;
};

/// How two pictures of one size differ.
struct Difference {
  double mean = 0.0;             ///< of the channels' differences, 0 to 255
  double fraction_differing = 0; ///< of pixels that differ by more than 32 in a channel
};
Difference difference(const Picture& left, const Picture& right);

Picture read_png(const std::string& path);
void write_png(const Picture& picture, const std::string& path);

/// An off-screen view of 400 by 300 pixels with a plain background and a parallel camera.
class Screen {
public:
  static constexpr int window_width = 400;
  static constexpr int window_height = 300;
  static constexpr Rgb background{250, 240, 230};

  Screen();

  GView& view() { return view_; }
  /// Looks from `direction` at `centre`, y (z where that is the direction) upwards; `height` in world units fills the
  /// picture.
  void look_at(std::array<double, 3> centre, std::array<double, 3> direction, double height);
  /// Draws a frame and reads it.
  Picture shoot();
  /// Depth at the pixel as of the last frame, 0 near to 1 far.
  double depth_at(std::array<int, 2> pixel);
  /// The pixel where a point of the world is drawn.
  std::array<int, 2> pixel_of(std::array<double, 3> point);

private:
  GView view_;
};
