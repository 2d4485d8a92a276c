#pragma once

#include <cstddef>

namespace Tarn {

/// Asks the system to back a large block with large pages: touching fresh memory page by page costs more than the work
/// done on it. A hint only; small blocks and systems without such pages are left alone.
void prefer_huge_pages(void* block, std::size_t bytes);

/// Like malloc. Large blocks begin where a large page does, so that such pages back them whole.
void* allocate_block(std::size_t bytes);

} // namespace Tarn
