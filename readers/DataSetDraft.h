#pragma once

#include "readers/MeshDraft.h"

class vtkDataSet;

namespace readers {

/// Appends a data set of any VTK kind to the draft, with nodes of its own; structured kinds become explicit cells.
/// Owners are the values of a material or part array ("mat_id 2") where the cells have one, else the whole data set
/// under `name`. Nodes that no element uses get the first of these owners. With `keep_name` the data set is a block
/// that has a name of its own: several values become "name/mat_id 2", a single one just the name.
void add_data_set(MeshDraft& draft, vtkDataSet& data, const std::string& name, bool keep_name = false);

} // namespace readers
