#include "readers/formats/TextNumbers.h"

#include <charconv>
#include <limits>

namespace readers {

namespace {

// from_chars takes no plus sign.
std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

} // namespace

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view next_word(std::string_view text, std::size_t& at) {
  while (at < text.size() && is_blank(text[at]))
    ++at;
  const std::size_t start = at;
  while (at < text.size() && !is_blank(text[at]))
    ++at;
  return text.substr(start, at - start);
}

std::optional<std::int64_t> to_integer(std::string_view text) {
  while (!text.empty() && is_blank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back()))
    text.remove_suffix(1);
  text = without_plus(text);
  std::int64_t value = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (status != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> to_real(std::string_view text) {
  text = without_plus(text);
  double value = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size() || text.empty()) return std::nullopt;
  // Too small or too large: neither can be drawn as something else than zero or nothing.
  if (status == std::errc::result_out_of_range)
    return text.find("e-") != std::string_view::npos || text.find("E-") != std::string_view::npos
               ? 0.0
               : std::numeric_limits<double>::infinity();
  if (status != std::errc()) return std::nullopt;
  return value;
}

bool is_number(std::string_view text) { return to_real(text).has_value(); }

} // namespace readers
