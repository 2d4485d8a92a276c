#include "viewer/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace viewer {

std::string why_not_writable(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (std::filesystem::is_directory(status)) return std::strerror(EISDIR);
  if (!std::filesystem::status_known(status)) return error.message();
  const auto folder = std::filesystem::absolute(path, error).parent_path();
  return access(folder.c_str(), W_OK | X_OK) == 0 ? "" : std::strerror(errno);
}

std::string write_file(const std::string& path, const void* bytes, std::size_t count) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) return std::strerror(errno);
  file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
  file.close();
  if (file) return "";
  const std::string reason = std::strerror(errno);
  std::error_code ignored;
  if (std::filesystem::is_regular_file(std::filesystem::symlink_status(path, ignored)))
    std::filesystem::remove(path, ignored);
  return reason;
}

std::string free_name(const std::string& stem, const std::string& end) {
  for (int number = 1;; ++number) {
    const std::string digits = std::to_string(number);
    const std::string name = stem + "-" + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits + end;
    std::error_code ignored; // writing will tell
    if (!std::filesystem::exists(name, ignored)) return name;
  }
}

} // namespace viewer
