#pragma once

#include <string_view>

namespace readers {

/// Walks the sections of a legacy VTK file that make up its mesh and checks that what they declare fits into the file,
/// and that lists of cells end where they should. Attributes after the mesh are not looked at. Throws `Refusal`.
void check_legacy_vtk(std::string_view text);

} // namespace readers
