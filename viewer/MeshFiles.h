#pragma once

#include "reference/tarn/MeshDatabase.h"
#include "viewer/Options.h"

#include <memory>
#include <string>
#include <vector>

namespace viewer {

/// Mesh files in one database.
struct MeshFiles {
  std::unique_ptr<Tarn::MeshDatabase> database;
  std::vector<std::string> paths;       ///< as given
  std::vector<readers::Report> reports; ///< one per path
  std::string error;                    ///< empty, or one line about the file that ended it
};

/// Reads files into one database. With more than one, the name of each owner begins with its file's name and a slash;
/// where files of the same name come from several folders, with the path as given; where a file is given again, "file
/// (2)/" and so on. Stops at the first file that cannot be read.
MeshFiles load_files(const std::vector<std::string>& paths, readers::GroupBy group_by);

/// The built-in sample mesh, every kind of element, as if it came from a file of the name "sample".
MeshFiles load_sample();

/// What was left out and what else is worth knowing about the files, one line each.
std::vector<std::string> notices(const MeshFiles& files);

} // namespace viewer
