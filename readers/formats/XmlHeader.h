#pragma once

#include "readers/formats/XmlScan.h"

namespace readers {

/// Checks the header of a VTK XML file of a type ("UnstructuredGrid"): that it is one, that it has its closing tag,
/// that the counts its pieces declare fit into its size, and that the places of its appended arrays lie within it.
/// Throws `Refusal`.
void check_vtk_xml(std::string_view text, std::string_view type);

} // namespace readers
