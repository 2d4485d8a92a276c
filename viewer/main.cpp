#include "viewer/CommandLine.h"
#include "viewer/Info.h"
#include "viewer/MeshFiles.h"
#include "viewer/Messages.h"
#include "viewer/OutputFile.h"
#include "viewer/OwnerNames.h"
#include "viewer/Picking.h"
#include "viewer/Picture.h"
#include "viewer/Scene.h"
#include "viewer/ViewerWindow.h"
#include "viewer/VirtualDisplay.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <sstream>

namespace {

using namespace viewer;

// What ends the run with `CouldNot`: one line.
struct Failure {
  std::string text;
};

// With --verbose, how long each step took.
class Stopwatch {
public:
  explicit Stopwatch(bool tells) : tells_(tells) {}

  void step(const std::string& text) {
    const auto now = std::chrono::steady_clock::now();
    if (tells_) {
      std::ostringstream line;
      line << text << ": " << std::chrono::duration<double>(now - last_).count() << " s";
      tell(line.str());
    }
    last_ = now;
  }

private:
  bool tells_;
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts)
    all += (all.empty() ? "" : ", ") + text;
  return all;
}

// A picture is drawn on a display of its own where there is none; a window needs a real one.
void ensure_display(const Options& options, VirtualDisplay& own) {
  if (display_is_usable()) return;
  if (!options.output && !options.picking.request)
    throw Failure{
        "cannot open a window: no display with OpenGL (set DISPLAY, or write a picture with --output=FILE.png)"};
  const std::string reason = own.start();
  if (!reason.empty())
    throw Failure{(options.output ? "cannot draw " + *options.output : "cannot pick") +
                  ": no display with OpenGL, and " + reason + " (install xvfb, or set DISPLAY)"};
}

MeshFiles open_files(const Options& options) {
  MeshFiles files = options.sample ? load_sample() : load_files(options.files, options.group_by);
  if (!files.error.empty()) throw Failure{files.error};
  return files;
}

void choose_owners(Scene& scene, const Options& options, const std::string& what) {
  const std::string unknown = scene.show_owners(options.owners);
  if (!unknown.empty()) throw Failure{what + ": " + unknown_owner(unknown, scene.owners())};
}

std::vector<std::string> hidden_owners(const Scene& scene) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < scene.owners().size(); ++i)
    if (!scene.is_visible(i)) names.push_back("'" + scene.owners()[i].name + "'");
  return names;
}

// Picks what was asked for and draws the picture, which shows it. Gives the records of the pick.
std::vector<PickRecord> draw_and_pick(Scene& scene, const Options& options, const std::string& what) {
  StillView still(scene, options);
  Picking picking(scene, options.picking);
  const std::string missing = picking.select(still.view(), options.picking.select, GPickerBase::Change::Replace);
  if (!missing.empty()) throw Failure{what + ": " + missing};
  std::vector<PickRecord> records;
  if (options.picking.request) {
    // Rays need what a frame brings up to date.
    const std::string reason = still.draw();
    if (!reason.empty()) throw Failure{what + ": cannot draw: " + reason};
    picking.pick(still.view(), *options.picking.request, GPickerBase::Change::Add);
    records = picking.possible();
  }
  if (options.output) {
    const std::string reason = still.write(*options.output);
    if (!reason.empty()) throw Failure{"cannot write " + *options.output + ": " + reason};
  }
  return records;
}

void print(const std::string& text) {
  std::cout << text << std::flush;
  if (!std::cout) throw Failure{"cannot write to standard output"};
}

// Whether nothing is wanted but output, so that no window opens.
bool is_without_window(const Options& options) { return options.output || options.info || options.picking.request; }

void run(const Options& options) {
  const bool is_batch = is_without_window(options);
  const bool draws_still = options.output || options.picking.request;
  if (options.output) {
    const std::string reason = why_not_writable(*options.output);
    if (!reason.empty()) throw Failure{"cannot write " + *options.output + ": " + reason};
  }

  // Declared first: it must outlive every connection to it.
  VirtualDisplay own_display;
  Stopwatch watch(options.verbose);
  if (draws_still || !is_batch) ensure_display(options, own_display);
  watch.step("display");
  const MeshFiles files = open_files(options);
  watch.step("read " + joined(files.paths));
  Scene scene(*files.database, options.display);
  choose_owners(scene, options, joined(files.paths));
  watch.step("owners");
  if (options.verbose) tell("hidden: " + joined(hidden_owners(scene)));

  std::vector<PickRecord> records;
  std::string why_nothing_shows;
  if (draws_still) {
    records = draw_and_pick(scene, options, joined(files.paths));
    why_nothing_shows = scene.why_nothing_shows();
    watch.step(options.output ? "picture " + *options.output : "pick");
  }
  if (options.info) {
    print(describe(files, scene));
    watch.step("description");
  }
  if (options.picking.request) print(to_json(records));
  std::optional<ViewerWindow> window;
  if (!is_batch) {
    window.emplace(scene, options, joined(files.paths));
    const std::string missing = window->select_at_start();
    if (!missing.empty()) throw Failure{joined(files.paths) + ": " + missing};
  }
  // Only now, so that a run that fails says one thing only.
  for (const std::string& notice : notices(files))
    tell(notice);
  if (!why_nothing_shows.empty()) tell(joined(files.paths) + ": " + why_nothing_shows);
  if (window) window->run();
}

// A picture takes the window's place where the caller foresaw that none can open.
void run_with_or_without_display(Options options) {
  const bool needs_picture = options.picture_if_no_display && !is_without_window(options) && !display_is_usable();
  if (needs_picture) options.output = options.picture_if_no_display;
  run(options);
  if (needs_picture) tell("no display to open a window on; the picture is in " + *options.output);
}

int run_or_say_why(const Options& options) {
  try {
    run_with_or_without_display(options);
    return Done;
  } catch (const Failure& failure) {
    tell(failure.text);
  } catch (const std::bad_alloc&) {
    tell(joined(options.files) + ": not enough memory");
  } catch (const std::exception& error) {
    tell(joined(options.files) + ": " + error.what());
  }
  return CouldNot;
}

} // namespace

int main(int argc, char** argv) {
  const CommandLine line = parse_command_line(argc, argv);
  if (line.ending) {
    std::cout << line.ending->output << std::flush;
    std::cerr << line.ending->error;
    if (std::cout) return line.ending->status;
    std::cerr << "orbel_view: cannot write to standard output\n";
    return CouldNot;
  }
  catch_library_messages(line.options.verbose);
  return run_or_say_why(line.options);
}
