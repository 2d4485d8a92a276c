#include "tests/readers/ReadFiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <set>
#include <unistd.h>

namespace reader_tests {

namespace fs = std::filesystem;
using Tarn::MeshDatabase;

namespace {

struct ScratchFolder {
  ScratchFolder() : path(fs::temp_directory_path() / ("readers_test_" + std::to_string(::getpid()))) {
    fs::remove_all(path);
    fs::create_directories(path);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  fs::path path;
};

} // namespace

std::string scratch_folder() {
  static const ScratchFolder folder;
  return folder.path.string();
}

std::string scratch(const std::string& name) { return scratch_folder() + "/" + name; }

std::string write_file(const std::string& name, const std::string& bytes) {
  std::ofstream(scratch(name), std::ios::binary) << bytes;
  return scratch(name);
}

std::string read_bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string find_mesh(const std::string& name) {
  const std::string in_samples = std::string(ORBEL_MESH_SAMPLES) + "/" + name;
  return fs::exists(in_samples) ? in_samples : std::string(ORBEL_MESH_TEST_DATA) + "/" + name;
}

ReadMesh::ReadMesh(const std::string& path, const readers::Options& options)
    : database(std::make_unique<MeshDatabase>()), report(readers::read_mesh(path, *database, options)) {}

std::vector<std::string> ReadMesh::owner_names() const {
  std::vector<std::string> names;
  for (Tarn::SMeshOwnerType* one : database->owners())
    names.push_back(database->owner_name(one));
  return names;
}

Tarn::SMeshOwnerType* ReadMesh::owner(const std::string& name) const {
  for (Tarn::SMeshOwnerType* one : database->owners())
    if (database->owner_name(one) == name) return one;
  return nullptr;
}

std::uint32_t ReadMesh::dimension(const std::string& name) const {
  std::uint32_t result = 77;
  database->get_owner_dimension(owner(name), &result);
  return result;
}

std::array<std::uint64_t, 10> ReadMesh::owner_elements(const std::string& name) const {
  std::array<std::uint64_t, 10> result{};
  for (std::uint32_t type = 1; type < 10; ++type)
    database->get_owner_element_count(owner(name), static_cast<Tarn::ElementType>(type), &result[type]);
  return result;
}

std::uint64_t ReadMesh::owner_nodes(const std::string& name) const {
  std::uint64_t count = 0;
  database->get_owner_node_count(owner(name), &count);
  return count;
}

std::vector<int> ReadMesh::connectivity(Tarn::ElementType type, std::size_t position) const {
  const auto element = database->elements(type).at(position);
  std::vector<MeshDatabase::Node> nodes(1000);
  std::uint64_t count = nodes.size();
  database->get_element_connectivity(element, &count, nodes.data());
  const auto all = database->nodes();
  std::vector<int> positions;
  for (std::uint64_t i = 0; i < count; ++i)
    positions.push_back(static_cast<int>(std::find(all.begin(), all.end(), nodes[i]) - all.begin()));
  return positions;
}

std::vector<int> ReadMesh::node_ids() const {
  const auto nodes = database->nodes();
  std::vector<int> ids(nodes.size());
  database->get_node_ids(nodes.size(), nodes.data(), ids.data());
  return ids;
}

std::vector<int> ReadMesh::element_ids(Tarn::ElementType type) const {
  const auto elements = database->elements(type);
  std::vector<int> ids(elements.size());
  database->get_element_ids(elements.size(), elements.data(), ids.data());
  return ids;
}

std::vector<int> ReadMesh::global_ids(Tarn::ElementType type) const {
  const auto elements = database->elements(type);
  std::vector<int> ids(elements.size());
  std::vector<char> has(elements.size());
  database->get_global_element_ids(elements.size(), elements.data(), ids.data(), has.data());
  for (std::size_t i = 0; i < ids.size(); ++i)
    if (!has[i]) ids[i] = -1;
  return ids;
}

std::vector<double> ReadMesh::coordinates() const {
  const auto nodes = database->nodes();
  std::vector<double> xyz(3 * nodes.size());
  database->get_double_coordinates(nodes.size(), nodes.data(), xyz.data());
  return xyz;
}

std::vector<char> ReadMesh::node_flags() const {
  const auto nodes = database->nodes();
  std::vector<char> flags(nodes.size());
  database->get_node_flags(nodes.size(), nodes.data(), flags.data());
  return flags;
}

std::array<std::uint64_t, 10> counts(std::initializer_list<std::pair<Tarn::ElementType, std::uint64_t>> some) {
  std::array<std::uint64_t, 10> result{};
  for (const auto& [type, count] : some)
    result[type] = count;
  return result;
}

std::string text_of(const std::vector<readers::LeftOut>& left_out) {
  std::string text;
  for (const readers::LeftOut& one : left_out)
    text += (text.empty() ? "" : "; ") + std::to_string(one.count) + " " + one.reason;
  return text;
}

namespace {

std::string find_fault_of(MeshDatabase& database, const std::vector<MeshDatabase::Elem>& elements,
                          const std::set<std::uint64_t>& nodes) {
  std::vector<Tarn::SMeshOwnerType*> owners(elements.size());
  database.get_element_owners(elements.size(), elements.data(), owners.data());
  if (std::count(owners.begin(), owners.end(), nullptr) > 0) return "an element without owner";
  std::vector<int> ids(elements.size());
  std::vector<char> has(elements.size());
  database.get_global_element_ids(elements.size(), elements.data(), ids.data(), has.data());
  if (std::count(has.begin(), has.end(), 0) > 0) return "an element without global id";
  for (const MeshDatabase::Elem element : elements) {
    std::uint64_t count = 0;
    database.get_element_node_count(element, &count);
    std::vector<MeshDatabase::Node> connectivity(count);
    if (count == 0 || database.get_element_connectivity(element, &count, connectivity.data()) != 0)
      return "an element without nodes";
    for (const MeshDatabase::Node node : connectivity)
      if (nodes.count(node.value) == 0) return "an element on a node that is not there";
  }
  return "";
}

} // namespace

std::string find_fault(MeshDatabase& database, const readers::Report& report) {
  if (database.node_count() != report.nodes) return "node count";
  const auto all = database.nodes();
  std::set<std::uint64_t> nodes;
  for (const auto node : all)
    nodes.insert(node.value);
  std::vector<Tarn::SMeshOwnerType*> owners(all.size());
  database.get_node_owners(all.size(), all.data(), owners.data());
  if (std::count(owners.begin(), owners.end(), nullptr) > 0) return "a node without owner";
  for (std::uint32_t type = 1; type < 10; ++type) {
    const auto elements = database.elements(static_cast<Tarn::ElementType>(type));
    if (elements.size() != report.elements[type] + report.set_faces[type]) return "element count";
    const std::string fault = find_fault_of(database, elements, nodes);
    if (!fault.empty()) return fault;
  }
  return "";
}

} // namespace reader_tests
