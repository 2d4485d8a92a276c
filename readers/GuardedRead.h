#pragma once

#include "readers/MeshDraft.h"

#include <functional>

namespace readers {

/// What the child process may use.
struct Limits {
  std::uint64_t memory_bytes; ///< address space beyond what this process has already
  unsigned cpu_seconds;
};

/// Generous limits for a file of this size.
Limits limits_for(std::uint64_t file_size);

/// Runs `parse` in a forked child and brings its draft over. Neither memory that the parser damages, nor what it
/// allocates, nor its death or endless loop reach this process: they become a `Refusal`, as does a `Refusal` that
/// `parse` throws. The child prints nothing.
MeshDraft read_guarded(const std::function<MeshDraft()>& parse, const Limits& limits);

} // namespace readers
