#include "viewer/VirtualDisplay.h"

#include <X11/Xlib.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace viewer {
namespace {

constexpr int patience_to_start_ms = 20000;
constexpr int patience_to_end_ms = 2000;

// What the server does between fork and its own start: no allocation, no locks.
[[noreturn]] void become_server(int ready_pipe, pid_t parent) {
  // Ends with the process that needs it, and is not ended by a Ctrl-C before that has drawn.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(127);
  setpgid(0, 0);
  const int nothing = open("/dev/null", O_RDWR);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(nothing, STDERR_FILENO);
  constexpr int ready_fd = 3;
  if (ready_pipe != ready_fd)
    dup2(ready_pipe, ready_fd);
  else
    fcntl(ready_fd, F_SETFD, 0);
  execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset",
         static_cast<char*>(nullptr));
  _exit(127);
}

// The display number that the server writes once it takes connections; "" when it ends or takes too long.
std::string read_display_number(int pipe) {
  std::string number;
  for (;;) {
    pollfd waiting = {pipe, POLLIN, 0};
    const int ready = poll(&waiting, 1, patience_to_start_ms);
    if (ready < 0 && errno == EINTR) continue;
    char c = 0;
    if (ready <= 0 || read(pipe, &c, 1) != 1) return "";
    if (c == '\n') return number;
    number += c;
  }
}

} // namespace

bool display_is_usable() {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return false;
  int opcode, event, error;
  const bool draws = XQueryExtension(display, "GLX", &opcode, &event, &error);
  XCloseDisplay(display);
  return draws;
}

VirtualDisplay::~VirtualDisplay() { stop(); }

std::string VirtualDisplay::start() {
  int ready[2];
  if (pipe2(ready, O_CLOEXEC) != 0) return std::strerror(errno);
  const pid_t self = getpid();
  server_ = fork();
  if (server_ == 0) become_server(ready[1], self);
  close(ready[1]);
  const std::string number = server_ < 0 ? "" : read_display_number(ready[0]);
  close(ready[0]);
  if (number.empty()) {
    stop();
    return "Xvfb could not be started";
  }
  setenv("DISPLAY", (":" + number).c_str(), 1);
  unsetenv("XAUTHORITY");
  if (display_is_usable()) return "";
  stop();
  return "Xvfb has no OpenGL";
}

void VirtualDisplay::stop() {
  if (server_ <= 0) return;
  kill(server_, SIGTERM);
  for (int tries = 0; waitpid(server_, nullptr, WNOHANG) == 0; ++tries) {
    if (tries == patience_to_end_ms) kill(server_, SIGKILL);
    poll(nullptr, 0, 1);
  }
  server_ = -1;
}

} // namespace viewer
