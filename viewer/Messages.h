#pragma once

#include <string>
#include <vector>

namespace viewer {

/// From now on, warnings and errors of the graphics library go to standard error when `verbose`, each in one line, and
/// are kept for `take_errors`; nothing else prints them.
void catch_library_messages(bool verbose);

/// The errors of the graphics library since the last call, one line each.
std::vector<std::string> take_errors();

/// The text with every control character, line ends among them, made a blank: file and owner names may hold any.
std::string one_line(std::string text);

/// "orbel_view: " and the text as one line on standard error.
void tell(const std::string& text);

} // namespace viewer
