#pragma once

#include "mesh/database/MeshData.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Tarn {
class MeshDatabase;
}

/// Mesh files into the reference database. Nothing in a file is trusted.
namespace readers {

/// How entities get their owners.
enum class GroupBy {
  Owner, ///< from the file: blocks, sets, zones, material or part arrays
  None,  ///< everything in the file under one owner
};

/// What the caller may choose.
struct Options {
  GroupBy group_by = GroupBy::Owner; ///< where owners come from
  std::string owner_prefix;          ///< put before the name of every owner
};

/// Something in a file that was not brought into the database.
struct LeftOut {
  std::string reason;  ///< one line: what it is and why
  std::uint64_t count; ///< how many of them
};

/// What came of reading a file.
struct Report {
  std::string error;       ///< empty when the file was read, else one line: file, what is wrong, where
  std::uint64_t nodes = 0; ///< nodes of the file
  std::array<std::uint64_t, 10>
      elements{}; ///< elements of the file, by `Tarn::ElementType`, faces of side sets not counted
  std::array<std::uint64_t, 10> set_faces{}; ///< elements made from side sets, by `Tarn::ElementType`
  std::vector<LeftOut> left_out;             ///< what was not opened
  std::vector<std::string> notices;          ///< one line each: renumbered ids and the like
};

/// A file format.
struct Format {
  std::string name;                    ///< display name
  std::vector<std::string> extensions; ///< lower case, with the dot
};

/// Reads a file, its format told by the extension, and appends what it holds to `database`, which stays as it was when
/// the report has an error.
Report read_mesh(const std::string& path, Tarn::MeshDatabase& database, const Options& options = {});

/// The formats that `read_mesh` knows.
const std::vector<Format>& formats();

} // namespace readers
