#include "Rows.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <regex>

namespace {

std::vector<bench::Row> all_rows(const bench::Settings& settings) {
  std::vector<bench::Row> rows;
  for (const auto& make_rows :
       {bench::grid_rows, bench::first_display_rows, bench::edge_rows, bench::stage_rows, bench::growth_rows,
        bench::pick_rows, bench::label_rows, bench::highlight_rows, bench::memory_rows})
    for (bench::Row& row : make_rows(settings))
      rows.push_back(std::move(row));
  return rows;
}

} // namespace

int main(int argc, char** argv) {
  bench::Settings settings;
  settings.wheelset = ORBEL_MESH_BENCH_WHEELSET;
  std::string json_path;
  std::string only = "";
  std::string measure_here;
  CLI::App app("Times orbel_mesh against VTK's own filters. Leave the machine alone while it runs.", "orbel_bench");
  app.add_option("--json", json_path, "write the results to this file");
  app.add_option("--only", only, "only the rows whose name this regular expression finds");
  app.add_option("--wheelset", settings.wheelset, "where wheelset_x8.vtu is")->capture_default_str();
  app.add_flag("--tiny", settings.tiny, "meshes of a few elements, to see that it runs; the figures mean nothing");
  app.add_option("--measure-here", measure_here)->group("");
  CLI11_PARSE(app, argc, argv);
  try {
    if (!measure_here.empty()) {
      std::printf("%.17g\n", bench::measure_memory_here(measure_here, settings));
      return 0;
    }
    bench::Report report;
    const std::regex wanted(only);
    for (const bench::Row& row : all_rows(settings))
      if (std::regex_search(row.name, wanted)) row.measure(report);
    if (!json_path.empty()) report.write_json(json_path);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orbel_bench: %s\n", error.what());
    return 1;
  }
  return 0;
}
