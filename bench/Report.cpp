#include "Report.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

void print_figure(const Report::Figure& figure) {
  std::printf("%-38s %12.3f %s\n", figure.name.c_str(), figure.value, figure.unit.c_str());
  std::fflush(stdout);
}

nlohmann::json results_as_json(const std::vector<Report::Comparison>& results) {
  nlohmann::json list = nlohmann::json::array();
  for (const auto& result : results)
    list.push_back({{"name", result.name},
                    {"ours_ms", result.ours_ms},
                    {"peer_ms", result.peer_ms},
                    {"ratio", result.peer_ms / result.ours_ms}});
  return list;
}

/// One object a figure, its value under `key`, its unit where it is asked for.
nlohmann::json figures_as_json(const std::vector<Report::Figure>& figures, const char* key, bool with_unit) {
  nlohmann::json list = nlohmann::json::array();
  for (const auto& figure : figures) {
    nlohmann::json entry = {{"name", figure.name}, {key, figure.value}};
    if (with_unit) entry["unit"] = figure.unit;
    list.push_back(entry);
  }
  return list;
}

} // namespace

void Report::add_result(const std::string& name, double ours_ms, double peer_ms) {
  results.push_back({name, ours_ms, peer_ms});
  std::printf("%-38s ours %10.3f ms   peer %10.3f ms   %6.2f times as fast\n", name.c_str(), ours_ms, peer_ms,
              peer_ms / ours_ms);
  std::fflush(stdout);
}

void Report::add_exponent(const std::string& name, double value) {
  exponents.push_back({name, value, "exponent"});
  print_figure(exponents.back());
}

void Report::add_memory(const std::string& name, double value, const std::string& unit) {
  memory.push_back({name, value, unit});
  print_figure(memory.back());
}

void Report::add_time(const std::string& name, double ms) {
  times.push_back({name, ms, "ms"});
  print_figure(times.back());
}

void Report::write_json(const std::string& path) const {
  const nlohmann::json document = {{"results", results_as_json(results)},
                                   {"exponents", figures_as_json(exponents, "value", false)},
                                   {"memory", figures_as_json(memory, "value", true)},
                                   {"times", figures_as_json(times, "ms", false)}};
  std::ofstream file(path);
  file << document.dump(2) << '\n';
  file.close();
  if (!file) throw std::runtime_error(path + ": cannot be written");
}

} // namespace bench
