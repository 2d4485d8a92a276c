#pragma once

#include "platform/util/TovanColor.h"
#include "platform/util/tovan_util_api.h"

/// Colours that the whole process agrees on.
struct TOVAN_UTIL_API TovanColorTable {
  /// The colour in which picked and highlighted entities are drawn: at first an opaque orange.
  static TovanColor get_highlight_color();
  /// Replaces it. Those who asked before keep the colour that they were given.
  static void set_highlight_color(TovanColor color);
};
