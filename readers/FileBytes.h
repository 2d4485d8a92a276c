#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace readers {

/// A regular file, mapped for reading.
class FileBytes {
public:
  /// Throws `Refusal` when there is no such file, it is not a regular file, cannot be read or is empty.
  explicit FileBytes(const std::string& path);
  ~FileBytes();
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  /// All bytes of the file; valid while this object lives.
  std::string_view view() const { return {data_, size_}; }
  std::uint64_t size() const { return size_; }

private:
  const char* data_ = nullptr;
  std::size_t size_ = 0;
};

} // namespace readers
