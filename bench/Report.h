#pragma once

#include <string>
#include <vector>

namespace bench {

/// Everything that one run of the program found out.
struct Report {
  /// A comparison: medians of both sides.
  struct Comparison {
    std::string name;
    double ours_ms;
    double peer_ms;
  };
  /// A number and what it counts; the unit may be empty.
  struct Figure {
    std::string name;
    double value;
    std::string unit;
  };

  std::vector<Comparison> results; ///< in JSON also with their ratio, peer over ours
  std::vector<Figure> exponents;   ///< how times grow with size
  std::vector<Figure> memory;      ///< resident bytes and ratios of them
  std::vector<Figure> times;       ///< single medians, in milliseconds

  /// Adds a comparison and prints it on standard output, as the next three do.
  void add_result(const std::string& name, double ours_ms, double peer_ms);
  void add_exponent(const std::string& name, double value);
  void add_memory(const std::string& name, double value, const std::string& unit);
  void add_time(const std::string& name, double ms);

  /// Writes the JSON file. Throws std::runtime_error when it cannot.
  void write_json(const std::string& path) const;
};

} // namespace bench
