#include "Rows.h"

#include "MeshInputs.h"
#include "OurDrawing.h"

#include <vtkPolyData.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <numeric>
#include <stdexcept>

namespace bench {
namespace {

constexpr char database_row[] = "database_hex10m";
constexpr char peak_row[] = "peak_hex8m_per_face";

// ------------------------------------------------------------------------------------------ in the child

/// A figure of this process from /proc, in bytes.
double bytes_in_status(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.compare(0, key.size(), key) == 0) return std::stod(line.substr(key.size())) * 1024;
  throw std::runtime_error("/proc/self/status: no " + key);
}

double resident_bytes() {
  malloc_trim(0);
  return bytes_in_status("VmRSS:");
}

void forget_peak() {
  std::ofstream refs("/proc/self/clear_refs");
  refs << "5" << std::flush;
  if (!refs) throw std::runtime_error("/proc/self/clear_refs: cannot be written");
}

/// Ids with gaps, as files have them.
std::vector<int> ids_with_gaps(std::size_t count) {
  std::vector<int> ids(count);
  for (std::size_t i = 0; i < count; ++i)
    ids[i] = static_cast<int>(i + i / 10 + 1);
  return ids;
}

double database_over_raw_arrays(const Settings& settings) {
  const double before = resident_bytes();
  double raw_bytes = 0;
  DatabaseMesh mesh;
  {
    const RawMesh raw = box_of_hexahedra(settings.edge(250), settings.edge(200), settings.edge(200));
    const std::vector<int> node_ids = ids_with_gaps(raw.node_count());
    const std::vector<int> element_ids = ids_with_gaps(raw.element_count());
    raw_bytes = 24.0 * static_cast<double>(raw.node_count()) + 8.0 * static_cast<double>(raw.nodes.size()) +
                4.0 * static_cast<double>(node_ids.size() + element_ids.size());
    mesh = as_database(raw, node_ids.data(), element_ids.data());
  }
  mesh.entities = MeshVector();
  return (resident_bytes() - before) / raw_bytes;
}

double peak_per_face(const Settings& settings) {
  DatabaseMesh mesh = as_database(box_of_hexahedra(settings.edge(200), settings.edge(200), settings.edge(200)));
  mesh.entities = MeshVector();
  const double database_alone = resident_bytes();
  forget_peak();
  mesh.entities = entities_of(mesh);
  OurDrawing drawing(mesh);
  drawing.prepare();
  mesh.entities = MeshVector();
  drawing.build();
  const double peak = bytes_in_status("VmHWM:");
  return (peak - database_alone) / static_cast<double>(drawing.group().get_tri_data()->GetNumberOfPolys());
}

// ------------------------------------------------------------------------------------------ in the parent

/// What this program prints when it is told to measure `name` itself.
double measure_in_child(const std::string& name, const Settings& settings) {
  const std::string option = "--measure-here=" + name;
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no child process");
  if (child == 0) {
    dup2(pipe_ends[1], STDOUT_FILENO);
    close(pipe_ends[0]);
    execl("/proc/self/exe", "orbel_bench", option.c_str(), settings.tiny ? "--tiny" : nullptr, nullptr);
    _exit(127);
  }
  close(pipe_ends[1]);
  std::string printed;
  std::array<char, 256> buffer;
  for (ssize_t count; (count = read(pipe_ends[0], buffer.data(), buffer.size())) > 0;)
    printed.append(buffer.data(), static_cast<std::size_t>(count));
  close(pipe_ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(name + ": the measuring process failed");
  return std::stod(printed);
}

} // namespace

std::vector<Row> memory_rows(const Settings& settings) {
  const auto row = [settings](const std::string& name, const std::string& unit) {
    return Row{name, [=](Report& report) { report.add_memory(name, measure_in_child(name, settings), unit); }};
  };
  return {row(database_row, "ratio"), row(peak_row, "bytes/face")};
}

double measure_memory_here(const std::string& name, const Settings& settings) {
  if (name == database_row) return database_over_raw_arrays(settings);
  if (name == peak_row) return peak_per_face(settings);
  throw std::invalid_argument(name + ": no such memory row");
}

} // namespace bench
