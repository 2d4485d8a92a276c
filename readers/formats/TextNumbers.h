#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace readers {

/// A blank, a tab, an end of line or a form feed, whatever the locale.
bool is_blank(char c);

/// The next word of a text from `at`, which moves behind it; empty at the end.
std::string_view next_word(std::string_view text, std::size_t& at);

/// A whole number, blanks around it allowed; nothing for any other text or one beyond 63 bits.
std::optional<std::int64_t> to_integer(std::string_view text);

/// A real number with a point, whatever the locale; "nan" and "inf" are numbers. Nothing for any other text.
std::optional<double> to_real(std::string_view text);

/// Whether the text is a real number.
bool is_number(std::string_view text);

} // namespace readers
