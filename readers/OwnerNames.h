#pragma once

#include "readers/MeshDraft.h"

namespace readers {

/// Makes the names of owners and node sets fit to be shown and to be asked for: valid UTF-8 without control characters,
/// not empty, no two alike ("wall", "wall (2)").
void tidy_names(MeshDraft& draft);

} // namespace readers
