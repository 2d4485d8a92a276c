#include "Desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int patience = 400; // looks
constexpr useconds_t between_looks = 25000;

Display* display() {
  static Display* const connection = XOpenDisplay(nullptr);
  return connection;
}

std::string output_of(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  for (int c; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;)
    output += static_cast<char>(c);
  if (pipe != nullptr) pclose(pipe);
  return output;
}

bool equal(const Pixels& a, const Pixels& b) { return a.width == b.width && a.height == b.height && a.rgb == b.rgb; }

// Whether nothing was drawn yet.
bool is_plain(const Pixels& pixels) {
  return std::all_of(pixels.rgb.begin(), pixels.rgb.end(), [&](const auto& pixel) { return pixel == pixels.rgb[0]; });
}

int height_of(unsigned long window) {
  XWindowAttributes attributes;
  return XGetWindowAttributes(display(), window, &attributes) != 0 ? attributes.height : 0;
}

} // namespace

bool Desktop::is_available() { return display() != nullptr && std::system("xdotool version > /dev/null 2>&1") == 0; }

Desktop::Desktop(const std::vector<std::string>& arguments, const std::string& folder) {
  viewer_ = fork();
  if (viewer_ == 0) {
    std::vector<char*> list = {const_cast<char*>(ORBEL_VIEW_PROGRAM)};
    for (const std::string& argument : arguments)
      list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    if (chdir(folder.c_str()) != 0) _exit(126);
    execv(list[0], list.data());
    _exit(126);
  }
  for (int looks = 0; looks < patience && window_ == 0 && is_running(); ++looks, usleep(between_looks))
    window_ =
        std::strtoul(output_of("xdotool search --onlyvisible --name '^orbel_view: ' 2>/dev/null").c_str(), nullptr, 10);
  if (!has_window()) return;
  // Without a window manager nobody else gives the window the keyboard.
  xdotool("windowfocus --sync " + std::to_string(window_));
  for (int looks = 0; looks < patience && is_plain(grab()); ++looks)
    usleep(between_looks);
}

Desktop::~Desktop() {
  if (is_running()) {
    kill(viewer_, SIGKILL);
    waitpid(viewer_, nullptr, 0);
  }
}

bool Desktop::has_window() const { return window_ != 0; }

bool Desktop::is_running() {
  if (viewer_ > 0 && waitpid(viewer_, &status_, WNOHANG) == viewer_) viewer_ = -1;
  return viewer_ > 0;
}

int Desktop::wait_for_end() {
  for (int looks = 0; looks < patience && is_running(); ++looks)
    usleep(between_looks);
  return !is_running() && WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

void Desktop::press(const std::string& key) { xdotool("key " + key); }

void Desktop::drag(int button, int x0, int y0, int x1, int y1, const std::string& modifier) {
  const int top = height_of(window_) - 1;
  const auto move_to = [&](double part) {
    return " mousemove --window " + std::to_string(window_) + " " + std::to_string(int(x0 + part * (x1 - x0))) + " " +
           std::to_string(top - int(y0 + part * (y1 - y0))) + " sleep 0.03";
  };
  const std::string number = std::to_string(button);
  std::string command = modifier.empty() ? "" : "keydown " + modifier;
  command += move_to(0) + " mousedown " + number;
  for (const double part : {0.25, 0.5, 0.75, 1.0})
    command += move_to(part);
  command += " mouseup " + number;
  xdotool(command + (modifier.empty() ? "" : " keyup " + modifier));
}

void Desktop::turn_wheel(bool forward) { xdotool(forward ? "click 4" : "click 5"); }

void Desktop::resize(int width, int height) {
  xdotool("windowsize --sync " + std::to_string(window_) + " " + std::to_string(width) + " " + std::to_string(height));
}

Pixels Desktop::look() {
  Pixels last = grab();
  for (int looks = 0, still = 0; looks < patience && still < 4; ++looks) {
    usleep(between_looks);
    Pixels now = grab();
    still = equal(now, last) ? still + 1 : 0;
    last = std::move(now);
  }
  return last;
}

Pixels Desktop::look_for_change(const Pixels& before) {
  for (int looks = 0; looks < patience && equal(grab(), before); ++looks)
    usleep(between_looks);
  return look();
}

Pixels Desktop::grab() const {
  Pixels pixels;
  XWindowAttributes attributes;
  if (XGetWindowAttributes(display(), window_, &attributes) == 0) return pixels;
  XImage* const image = XGetImage(display(), window_, 0, 0, attributes.width, attributes.height, AllPlanes, ZPixmap);
  if (image == nullptr) return pixels;
  pixels.width = image->width;
  pixels.height = image->height;
  pixels.rgb.reserve(std::size_t(image->width) * image->height);
  for (int y = image->height - 1; y >= 0; --y)
    for (int x = 0; x < image->width; ++x) {
      const unsigned long pixel = XGetPixel(image, x, y);
      pixels.rgb.push_back({std::uint8_t(pixel >> 16), std::uint8_t(pixel >> 8), std::uint8_t(pixel)});
    }
  XDestroyImage(image);
  return pixels;
}

void Desktop::xdotool(const std::string& command) const {
  if (std::system(("xdotool " + command + " > /dev/null").c_str()) != 0)
    std::fprintf(stderr, "xdotool %s failed\n", command.c_str());
}
