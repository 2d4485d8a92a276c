#pragma once

#include "viewer/Options.h"

#include <optional>
#include <string>

namespace viewer {

/// Exit statuses of the program.
enum ExitStatus : int {
  Done = 0,       ///< it did what was asked
  CouldNot = 1,   ///< it could not, and said why in one line
  WrongUsage = 2, ///< the command line makes no sense
};

/// What came of reading the command line.
struct CommandLine {
  /// The end of the program, when there is nothing more to do: help was asked for, or something is wrong.
  struct Ending {
    ExitStatus status;
    std::string output; ///< for standard output
    std::string error;  ///< for standard error, one line
  };
  Options options;
  std::optional<Ending> ending;
};

/// Reads the command line. Nothing is opened and nothing printed.
CommandLine parse_command_line(int argc, const char* const* argv);

} // namespace viewer
