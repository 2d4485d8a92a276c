#pragma once

#include "Report.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// What a run is told.
struct Settings {
  bool tiny = false;    ///< meshes of a few elements, to see that the program works: its figures mean nothing
  std::string wheelset; ///< the file wheelset_x8.vtu

  /// How many elements lie along the edge of a mesh that has `full` of them.
  int edge(int full) const { return tiny ? full / 25 + 2 : full; }
};

/// Something that can be asked for by name.
struct Row {
  std::string name;
  std::function<void(Report&)> measure; ///< throws std::runtime_error when ours and the peer's result differ
};

/// The 2-D grid from given side records, against cell-by-cell insertion.
std::vector<Row> grid_rows(const Settings& settings);
/// Everything that is drawn of a group never built, against VTK's filters on the volume grid.
std::vector<Row> first_display_rows(const Settings& settings);
/// Edges of a surface, against VTK's filter.
std::vector<Row> edge_rows(const Settings& settings);
/// Where the time of a first display goes.
std::vector<Row> stage_rows(const Settings& settings);
/// How the time of a first display grows with the mesh.
std::vector<Row> growth_rows(const Settings& settings);
/// Picks by ray against VTK's pickers; regions over many owners against one. They need a display.
std::vector<Row> pick_rows(const Settings& settings);
/// Frames with many labels, alone and against VTK's label mapper. They need a display.
std::vector<Row> label_rows(const Settings& settings);
/// What highlighting costs of a mesh that is shown.
std::vector<Row> highlight_rows(const Settings& settings);
/// Resident memory, each measured in a process of its own.
std::vector<Row> memory_rows(const Settings& settings);

/// Measures one of the memory rows in this process, which should have done nothing else. Throws std::invalid_argument
/// for other names.
double measure_memory_here(const std::string& name, const Settings& settings);

} // namespace bench
