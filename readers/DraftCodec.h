#pragma once

#include "readers/MeshDraft.h"

#include <string_view>

namespace readers {

/// Writes a draft to a file descriptor, from its current place. False when it cannot be written.
bool write_draft(const MeshDraft& draft, int fd);

/// Reads back what `write_draft` wrote. False when the bytes are not a draft; whether the draft is consistent is for
/// `find_inconsistency` to say.
bool decode_draft(std::string_view bytes, MeshDraft& draft);

} // namespace readers
