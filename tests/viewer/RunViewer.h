#pragma once

#include <map>
#include <string>
#include <vector>

/// The viewer as a user starts it.
namespace run_viewer {

/// What a finished run left behind.
struct Outcome {
  int status; ///< exit status; 128 + n after signal n
  std::string out;
  std::string err;
};

/// Environment variables to set, or, with "", to take away.
using Environment = std::map<std::string, std::string>;

/// Runs the viewer to its end, a minute at most.
Outcome run_orbel_view(const std::vector<std::string>& arguments, const Environment& environment = {});

/// The path of a test mesh.
std::string mesh(const std::string& name);

/// A folder of this test's own, empty.
std::string scratch_folder();

/// The whole of a file; "" when there is none.
std::string contents(const std::string& path);

} // namespace run_viewer
