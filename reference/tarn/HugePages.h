#pragma once

#include <cstddef>

namespace Tarn {

/// Asks the system to back a large block with large pages: touching fresh memory page by page costs more than the work
/// done on it. A hint only; small blocks and systems without such pages are left alone.
void prefer_huge_pages(void* block, std::size_t bytes);

} // namespace Tarn
