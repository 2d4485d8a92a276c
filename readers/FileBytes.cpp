#include "readers/FileBytes.h"

#include "readers/Refusal.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace readers {

namespace {

struct Descriptor {
  // Not blocking: opening a pipe that nobody writes to must not hang.
  explicit Descriptor(const std::string& path) : fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~Descriptor() {
    if (fd >= 0) ::close(fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd;
};

} // namespace

FileBytes::FileBytes(const std::string& path) {
  const Descriptor file(path);
  if (file.fd < 0) throw Refusal(errno == ENOENT ? "no such file" : std::strerror(errno));
  struct stat status {};
  if (::fstat(file.fd, &status) != 0) throw Refusal(std::strerror(errno));
  if (S_ISDIR(status.st_mode)) throw Refusal("is a directory");
  if (!S_ISREG(status.st_mode)) throw Refusal("is not a regular file");
  if (status.st_size == 0) throw Refusal("is empty");
  size_ = static_cast<std::size_t>(status.st_size);
  void* mapped = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file.fd, 0);
  if (mapped == MAP_FAILED) throw Refusal(std::strerror(errno));
  data_ = static_cast<const char*>(mapped);
}

FileBytes::~FileBytes() { ::munmap(const_cast<char*>(data_), size_); }

} // namespace readers
