#pragma once

#include <string>

namespace viewer {

class Scene;
struct MeshFiles;

/// The mesh as JSON text, with a newline at the end. Every count is a number, lists by kind have all nine kinds:
/// - `file`: the path as given; a list of paths where several files were opened
/// - `nodes`, `elements` (by kind), `set_faces` (faces made from side sets, by kind): of the files
/// - `bounds`: xmin, xmax, ymin, ymax, zmin, zmax of the nodes that elements use, null when there are none
/// - `owners`: `name`, `dimension` (null: any), `visible`, `nodes`, `elements` (by kind), `drawn` of each
/// - `drawn`: cells of the 2-D grids of visible owners, by the name of VTK's cell type
/// - `left_out`: `reason` and `count`, and `file` where several were opened, of what was not brought in
std::string describe(const MeshFiles& files, Scene& scene);

} // namespace viewer
