#pragma once

#include <string>

/// Files that the viewer writes.
namespace viewer {

/// Why no file can be written to the path, as far as that can be told beforehand: its folder is missing or closed, or
/// the path is a folder. "" when nothing speaks against it.
std::string why_not_writable(const std::string& path);

/// Writes or replaces a file. "" or why that was not possible; then no part of a file stays behind.
std::string write_file(const std::string& path, const void* bytes, std::size_t count);

/// A name in the working folder that is not taken yet: `stem`-001`end`, `stem`-002`end` and so on.
std::string free_name(const std::string& stem, const std::string& end);

} // namespace viewer
