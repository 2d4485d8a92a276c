#pragma once

#include "platform/util/tovan_util_api.h"

#include <cstdint>

/// A 32-bit colour: red, green, blue and alpha, one byte each, in memory order. All zero by default, which several
/// classes read as "no colour given"; each says so where it does.
struct TOVAN_UTIL_API TovanColor {
  unsigned char r = 0; ///< red, 0 to 255
  unsigned char g = 0; ///< green, 0 to 255
  unsigned char b = 0; ///< blue, 0 to 255
  unsigned char a = 0; ///< alpha, 0 (transparent) to 255 (opaque)

  /// All channels 0.
  TovanColor() = default;
  /// Unpacks `value`: red in its lowest byte, alpha in its highest.
  explicit TovanColor(std::uint32_t value);
  /// Opaque unless `a` says otherwise.
  TovanColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a = 255);

  /// The packed form: red in the lowest byte, alpha in the highest.
  std::uint32_t value() const;
  /// Three doubles, channel / 255.0; alpha is dropped.
  void to_rgb(double rgb[3]) const;
  /// The four channels as they are.
  void to_rgba(unsigned char rgba[4]) const;
};

/// True when all four channels are equal.
TOVAN_UTIL_API bool operator==(const TovanColor& left, const TovanColor& right);
/// True when any channel differs.
TOVAN_UTIL_API bool operator!=(const TovanColor& left, const TovanColor& right);
