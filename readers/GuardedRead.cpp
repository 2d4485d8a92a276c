#include "readers/GuardedRead.h"

#include "readers/DraftCodec.h"
#include "readers/Refusal.h"

#include <vtkSMPTools.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace readers {

namespace {

// Exit codes that nobody else uses: libraries may call exit, sanitizers leave with 1.
enum Outcome : int { Parsed = 80, Refused = 81, OutOfMemory = 82, Broken = 83 };

// The shadow memory of this sanitizer alone exceeds every sensible limit.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool can_limit_memory = false;
#elif defined(__has_feature)
constexpr bool can_limit_memory = !__has_feature(address_sanitizer);
#else
constexpr bool can_limit_memory = true;
#endif

// A file without a name, in memory, that both processes see.
class SharedFile {
public:
  SharedFile() : fd_(::memfd_create("mesh", MFD_CLOEXEC)) {
    if (fd_ < 0) throw Refusal(std::string("cannot make a shared file: ") + std::strerror(errno));
  }
  ~SharedFile() {
    if (mapped_ != MAP_FAILED) ::munmap(mapped_, size_);
    ::close(fd_);
  }
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;

  int fd() const { return fd_; }
  std::string_view bytes() {
    struct stat status {};
    if (::fstat(fd_, &status) != 0 || status.st_size == 0) return {};
    size_ = static_cast<std::size_t>(status.st_size);
    mapped_ = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd_, 0);
    return mapped_ == MAP_FAILED ? std::string_view() : std::string_view(static_cast<const char*>(mapped_), size_);
  }

private:
  int fd_;
  std::size_t size_ = 0;
  void* mapped_ = MAP_FAILED;
};

std::uint64_t address_space_in_use() {
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

void set_limit(decltype(RLIMIT_AS) resource, std::uint64_t value) {
  rlimit limit{};
  ::getrlimit(resource, &limit);
  limit.rlim_cur = std::min<rlim_t>(value, limit.rlim_max);
  ::setrlimit(resource, &limit);
}

void confine(const Limits& limits) {
  if (can_limit_memory) set_limit(RLIMIT_AS, address_space_in_use() + limits.memory_bytes);
  set_limit(RLIMIT_CORE, 0);
  set_limit(RLIMIT_CPU, limits.cpu_seconds);
  // Should it sleep for ever instead of computing.
  ::alarm(10 * limits.cpu_seconds);
}

// The signals' default action: the host's handlers must not run in the child.
void reset_signals() {
  for (int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGXCPU, SIGALRM, SIGTERM})
    ::signal(signal, SIG_DFL);
}

void silence() {
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
}

bool write_text(int fd, const std::string& text) {
  return ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

Outcome run(const std::function<MeshDraft()>& parse, int fd) {
  try {
    return write_draft(parse(), fd) ? Parsed : OutOfMemory;
  } catch (const Refusal& refusal) {
    return write_text(fd, refusal.what()) ? Refused : Broken;
  } catch (const std::bad_alloc&) {
    return OutOfMemory;
  } catch (const std::length_error&) {
    return OutOfMemory;
  } catch (...) {
    return Broken;
  }
}

[[noreturn]] void be_the_child(const std::function<MeshDraft()>& parse, const Limits& limits, int fd) {
  reset_signals();
  silence();
  confine(limits);
  // Threads do not come along in a fork: a pool that the parent has started would be waited for in vain.
  vtkSMPTools::SetBackend("Sequential");
  ::_exit(run(parse, fd));
}

int wait_for(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

[[noreturn]] void refuse(int status, const std::string& text) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == Refused) throw Refusal(text);
  if (WIFEXITED(status) && WEXITSTATUS(status) == OutOfMemory)
    throw Refusal("damaged, or too large: reading it takes more memory than it may");
  if (WIFSIGNALED(status) && (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGALRM))
    throw Refusal("damaged, or too large: reading it does not come to an end");
  throw Refusal("damaged: its reader does not survive it");
}

} // namespace

Limits limits_for(std::uint64_t file_size) {
  constexpr std::uint64_t floor = std::uint64_t{2} << 30;
  constexpr std::uint64_t per_byte = 100; // compressed XML unpacks to about a tenth of this
  constexpr std::uint64_t megabyte = 1u << 20;
  const auto pages = static_cast<std::uint64_t>(std::max(0l, ::sysconf(_SC_PHYS_PAGES)));
  const std::uint64_t physical = pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
  return {std::max(floor, std::min(floor + file_size * per_byte, physical)),
          static_cast<unsigned>(20 + std::min<std::uint64_t>(file_size / megabyte, 3600))};
}

MeshDraft read_guarded(const std::function<MeshDraft()>& parse, const Limits& limits) {
  SharedFile result;
  const pid_t child = ::fork();
  if (child < 0) throw Refusal(std::string("cannot start a process to read it: ") + std::strerror(errno));
  if (child == 0) be_the_child(parse, limits, result.fd());
  const int status = wait_for(child);
  const std::string_view bytes = result.bytes();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != Parsed) refuse(status, std::string(bytes));
  MeshDraft draft;
  if (!decode_draft(bytes, draft)) throw Refusal("damaged: its reader does not survive it");
  return draft;
}

} // namespace readers
