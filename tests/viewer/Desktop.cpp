#include "Desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int patience = 400; // looks
constexpr useconds_t between_looks = 25000;
constexpr double between_clicks = 0.5; // seconds: less is a double click

double seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

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

Desktop::Desktop(const std::vector<std::string>& arguments, const std::string& folder)
    : output_(std::filesystem::temp_directory_path() / ("orbel_view_out_XXXXXX")) {
  const int output = mkstemp(output_.data());
  viewer_ = fork();
  if (viewer_ == 0) {
    std::vector<char*> list = {const_cast<char*>(ORBEL_VIEW_PROGRAM)};
    for (const std::string& argument : arguments)
      list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    if (chdir(folder.c_str()) != 0) _exit(126);
    dup2(output, STDOUT_FILENO);
    execv(list[0], list.data());
    _exit(126);
  }
  close(output);
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
  std::filesystem::remove(output_);
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
  const auto move_to = [&](double part) {
    return " " + at(int(x0 + part * (x1 - x0)), int(y0 + part * (y1 - y0))) + " sleep 0.03";
  };
  const std::string number = std::to_string(button);
  std::string command = modifier.empty() ? "" : "keydown " + modifier;
  command += move_to(0) + " mousedown " + number;
  for (const double part : {0.25, 0.5, 0.75, 1.0})
    command += move_to(part);
  command += " mouseup " + number;
  xdotool(command + (modifier.empty() ? "" : " keyup " + modifier));
}

void Desktop::drag_in_haste(int x0, int y0, int x1, int y1) {
  xdotool(at(x0, y0) + " mousedown 1 " + at(x1, y1) + " sleep 0.3 mouseup 1");
}

void Desktop::move_to(int x, int y) { xdotool(at(x, y)); }

// Two clicks at one place are to be two, not a double one.
void Desktop::wait_after_click_at(int x, int y) {
  const double left = last_click_ + between_clicks - seconds();
  const bool same_place = std::exchange(last_place_, {x, y}) == std::pair(x, y);
  if (same_place && left > 0) usleep(static_cast<useconds_t>(left * 1e6));
}

void Desktop::click(int x, int y, const std::string& modifier) {
  wait_after_click_at(x, y);
  xdotool(at(x, y) + (modifier.empty() ? "" : " keydown " + modifier) + " click 1" +
          (modifier.empty() ? "" : " keyup " + modifier));
  last_click_ = seconds();
}

void Desktop::double_click(int x, int y) {
  wait_after_click_at(x, y);
  xdotool(at(x, y) + " click --repeat 2 --delay 50 1");
  last_click_ = seconds();
}

void Desktop::press_button(int x, int y) { xdotool(at(x, y) + " mousedown 1"); }

void Desktop::release_button() { xdotool("mouseup 1"); }

void Desktop::type(const std::string& text) { xdotool("type --delay 5 '" + text + "'"); }

std::string Desktop::next_line() {
  for (int looks = 0; looks < patience; ++looks, usleep(between_looks)) {
    const auto all = lines();
    if (all.size() > lines_given_) return all[lines_given_++];
  }
  return "(none)";
}

bool Desktop::is_silent() const { return lines().size() <= lines_given_; }

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

Pixels Desktop::look_until(const std::function<bool(const Pixels&)>& condition) {
  for (int looks = 0; looks < patience; ++looks, usleep(between_looks)) {
    Pixels now = grab();
    if (condition(now)) return look();
  }
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

std::string Desktop::at(int x, int y) const {
  return "mousemove --window " + std::to_string(window_) + " " + std::to_string(x) + " " +
         std::to_string(height_of(window_) - 1 - y);
}

// Whole lines only.
std::vector<std::string> Desktop::lines() const {
  std::ifstream file(output_);
  std::vector<std::string> all;
  for (std::string line; std::getline(file, line) && !file.eof();)
    all.push_back(line);
  return all;
}

void Desktop::xdotool(const std::string& command) const {
  if (std::system(("xdotool " + command + " > /dev/null").c_str()) != 0)
    std::fprintf(stderr, "xdotool %s failed\n", command.c_str());
}
