#pragma once

#include "mesh/database/MeshData.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Tarn {
class MeshDatabase;
}

/// Mesh files into the reference database. Nothing in a file is trusted: what it declares is bounded by its size first,
/// libraries that believe what they read run in a process of their own, and what comes back is checked. What cannot be
/// drawn is left out and counted, or the file is refused in one line.
///
/// **Kinds**: the nine kinds of the database, linear, quadratic and with face centres, stay what they are. Polylines,
/// triangle strips and poly-vertices become edges, triangles and one-nodes; pixels and voxels quadrilaterals and
/// hexahedra; structured grids their cells. Degenerate elements stay, coincident nodes stay apart; only STL, which has
/// no connectivity, has equal coordinates merged.
///
/// **Owners**: blocks of a multi-block file and of Exodus; zones of CGNS; values of an integer material or part array
/// of the cells ("mat_id 2"; names in `readers/OwnerArrays.h`); else the whole file, called by its stem. Side sets, and
/// sections of a CGNS zone below its own dimension, are owners of further elements on the same nodes. Node sets are
/// owners of dimension 0. Unnamed ones are called by their number ("block 1", "side set 3"); equal names get a number
/// behind them. A node belongs to the owner of the first element that uses it; nodes that no element uses belong to the
/// first owner of their file or block, so that they are drawn. The dimension of an owner is that of its elements, any
/// where these differ.
///
/// **Ids**: local ids are the file's numbers where all are unique, positive, below 2^31 and free in the database, else
/// running numbers in file order behind the largest so far, with a notice. Every element has a global id: the file's
/// number, else the running one.
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
  std::string error;                        ///< empty when the file was read, else one line: file, what is wrong, where
  std::uint64_t nodes = 0;                  ///< nodes read
  std::array<std::uint64_t, 10> elements{}; ///< elements read, by `Tarn::ElementType`, without those of `set_faces`
  std::array<std::uint64_t, 10> set_faces{}; ///< elements of side sets and boundary sections, by `Tarn::ElementType`
  std::vector<LeftOut> left_out;             ///< what was not read
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
