#include "reference/tarn/HugePages.h"

#include <cstdint>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace Tarn {

#if defined(__linux__)
namespace {
constexpr std::uintptr_t huge = std::uintptr_t(1) << 21;
}
#endif

void prefer_huge_pages(void* block, std::size_t bytes) {
#if defined(__linux__)
  const auto begin = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t first = (begin + huge - 1) & ~(huge - 1);
  const std::uintptr_t last = (begin + bytes) & ~(huge - 1);
  if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  static_cast<void>(block);
  static_cast<void>(bytes);
#endif
}

void* allocate_block(std::size_t bytes) {
#if defined(__linux__)
  if (bytes >= huge / 2 && bytes <= SIZE_MAX - huge) {
    const std::size_t whole = (bytes + huge - 1) & ~(huge - 1);
    void* const block = std::aligned_alloc(huge, whole);
    if (block) prefer_huge_pages(block, whole);
    return block;
  }
#endif
  return std::malloc(bytes);
}

} // namespace Tarn
