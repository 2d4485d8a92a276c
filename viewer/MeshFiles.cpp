#include "viewer/MeshFiles.h"

#include "readers/SampleMesh.h"

#include <algorithm>
#include <filesystem>

namespace viewer {
namespace {

std::string file_name(const std::string& path) { return std::filesystem::path(path).filename().string(); }

bool same_name_elsewhere(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(),
                     [&](const std::string& other) { return other != path && file_name(other) == file_name(path); });
}

std::string owner_prefix(const std::vector<std::string>& paths, const std::string& path) {
  if (paths.size() == 1) return "";
  return (same_name_elsewhere(paths, path) ? path : file_name(path)) + "/";
}

} // namespace

MeshFiles load_files(const std::vector<std::string>& paths, readers::GroupBy group_by) {
  MeshFiles files;
  files.database = std::make_unique<Tarn::MeshDatabase>();
  for (const std::string& path : paths) {
    readers::Report report =
        readers::read_mesh(path, *files.database, readers::Options{group_by, owner_prefix(paths, path)});
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
  return lines;
}

} // namespace viewer
