#include "reference/tarn/HugePages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace Tarn {

void prefer_huge_pages(void* block, std::size_t bytes) {
#if defined(__linux__)
  constexpr std::uintptr_t huge = std::uintptr_t(1) << 21;
  const auto begin = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t first = (begin + huge - 1) & ~(huge - 1);
  const std::uintptr_t last = (begin + bytes) & ~(huge - 1);
  if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  static_cast<void>(block);
  static_cast<void>(bytes);
#endif
}

} // namespace Tarn
