#pragma once

#include "readers/MeshReader.h"
#include "reference/tarn/MeshDatabase.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace reader_tests {

/// A folder of this test program's own, emptied when the program starts.
std::string scratch_folder();
/// A path in it.
std::string scratch(const std::string& name);
/// Writes a file into the scratch folder and gives its path.
std::string write_file(const std::string& name, const std::string& bytes);
std::string read_bytes(const std::string& path);

/// A mesh of `tests/data` or `data/samples`, whichever has it.
std::string find_mesh(const std::string& name);

/// A file read into a database of its own.
struct ReadMesh {
  explicit ReadMesh(const std::string& path, const readers::Options& options = {});

  std::unique_ptr<Tarn::MeshDatabase> database;
  readers::Report report;

  std::vector<std::string> owner_names() const;
  Tarn::SMeshOwnerType* owner(const std::string& name) const;
  std::uint32_t dimension(const std::string& name) const;
  /// Elements of the owner by kind.
  std::array<std::uint64_t, 10> owner_elements(const std::string& name) const;
  std::uint64_t owner_nodes(const std::string& name) const;
  /// Positions (in `nodes()`) of the nodes of the element number `position` of a kind.
  std::vector<int> connectivity(Tarn::ElementType type, std::size_t position) const;
  std::vector<int> node_ids() const;
  std::vector<int> element_ids(Tarn::ElementType type) const;
  std::vector<int> global_ids(Tarn::ElementType type) const;
  std::vector<double> coordinates() const;
  std::vector<char> node_flags() const;
};

/// Kinds with counts, in the order of `Tarn::ElementType`, all others 0.
std::array<std::uint64_t, 10> counts(std::initializer_list<std::pair<Tarn::ElementType, std::uint64_t>> some);

/// "12 reason; 3 other reason"
std::string text_of(const std::vector<readers::LeftOut>& left_out);

/// Empty when the database and the report agree and every element has nodes of the database, an owner and a global id.
std::string find_fault(Tarn::MeshDatabase& database, const readers::Report& report);

} // namespace reader_tests
