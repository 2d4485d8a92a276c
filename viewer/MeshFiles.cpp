#include "viewer/MeshFiles.h"

#include "readers/SampleMesh.h"

#include <vtkBoundingBox.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace viewer {
namespace {

std::string file_name(const std::string& path) { return std::filesystem::path(path).filename().string(); }

bool same_name_elsewhere(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(),
                     [&](const std::string& other) { return other != path && file_name(other) == file_name(path); });
}

// A file that is given again is told apart by a number, as owners of one name in one file are.
std::string owner_prefix(const std::vector<std::string>& paths, std::size_t index) {
  if (paths.size() == 1) return "";
  const std::string& path = paths[index];
  const auto earlier = std::count(paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(index), path);
  return (same_name_elsewhere(paths, path) ? path : file_name(path)) +
         (earlier > 0 ? " (" + std::to_string(earlier + 1) + ")" : "") + "/";
}

// Beyond these sizes products of coordinates leave single precision, in which graphics cards and VTK's shaders reckon.
constexpr double smallest_drawn = 1e-21;
constexpr double largest_drawn = 1e33;

/// The diagonal of the box round all nodes; 0 when there are none.
double size_of(Tarn::MeshDatabase& database) {
  constexpr std::size_t batch = 65536;
  const auto nodes = database.nodes();
  std::vector<double> xyz(3 * std::min(batch, nodes.size()));
  vtkBoundingBox box;
  for (std::size_t begin = 0; begin < nodes.size(); begin += batch) {
    const std::size_t count = std::min(batch, nodes.size() - begin);
    database.get_double_coordinates(count, &nodes[begin], xyz.data());
    for (std::size_t i = 0; i < count; ++i)
      box.AddPoint(&xyz[3 * i]);
  }
  if (!box.IsValid()) return 0;
  return std::hypot(box.GetLength(0), box.GetLength(1), box.GetLength(2));
}

} // namespace

MeshFiles load_files(const std::vector<std::string>& paths, readers::GroupBy group_by) {
  MeshFiles files;
  files.database = std::make_unique<Tarn::MeshDatabase>();
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const std::string& path = paths[i];
    readers::Report report =
        readers::read_mesh(path, *files.database, readers::Options{group_by, owner_prefix(paths, i)});
    files.error = report.error;
    if (!files.error.empty()) break;
    files.paths.push_back(path);
    files.reports.push_back(std::move(report));
  }
  return files;
}

MeshFiles load_sample() {
  MeshFiles files;
  files.database = std::make_unique<Tarn::MeshDatabase>();
  files.paths.push_back("sample");
  files.reports.push_back(readers::build_sample_mesh(*files.database));
  files.error = files.reports.back().error;
  return files;
}

std::vector<std::string> notices(const MeshFiles& files) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < files.paths.size(); ++i) {
    std::string left_out;
    for (const auto& entry : files.reports[i].left_out)
      left_out += (left_out.empty() ? "" : ", ") + std::to_string(entry.count) + " " + entry.reason;
    if (!left_out.empty()) lines.push_back(files.paths[i] + ": left out: " + left_out);
    for (const std::string& notice : files.reports[i].notices)
      lines.push_back(files.paths[i] + ": " + notice);
  }
  const double size = size_of(*files.database);
  if (size > 0 && (size < smallest_drawn || size > largest_drawn)) {
    std::ostringstream line;
    line << "the mesh is " << size << " across, too " << (size < smallest_drawn ? "small" : "large")
         << " for single precision: it may not show";
    lines.push_back(line.str());
  }
  return lines;
}

} // namespace viewer
