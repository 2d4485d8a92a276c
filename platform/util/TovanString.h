#pragma once

#include "platform/util/tovan_util_api.h"

#include <string>

/// A text, held by value.
class TOVAN_UTIL_API TovanString {
public:
  /// Copies a zero-terminated text; null reads as the empty text.
  TovanString(const char* text = "");

  /// The text, zero-terminated, owned by this string.
  const char* c_str() const;

private:
  std::string text_;
};
