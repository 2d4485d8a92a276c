#pragma once

namespace Tarn {

/// The geometry entity (or block, or part) that owns a set of nodes and elements. Opaque: only its address matters, and
/// only its database knows more.
struct SMeshOwnerType;

} // namespace Tarn
