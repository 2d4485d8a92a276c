#pragma once

#include "platform/util/TovanColor.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// A picture and what is asked about it.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<std::array<std::uint8_t, 3>> rgb; ///< row by row from the lower left

  /// The picture in a PNG file; empty when there is none.
  static Pixels read(const std::string& path);

  const std::array<std::uint8_t, 3>& at(int x, int y) const;
  /// Pixels that have the colour, each channel within `tolerance`.
  std::size_t count(TovanColor color, int tolerance = 2) const;
  /// Pixels that a surface of the colour may have under white light: the colour, darkened.
  std::size_t count_lit(TovanColor color) const;
  /// Pixels that differ from the other picture of the same size by more than `tolerance` in a channel.
  std::size_t differences(const Pixels& other, int tolerance = 8) const;
};
