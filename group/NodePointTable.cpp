#include "group/NodePointTable.h"

#include <algorithm>
#include <limits>
#include <new>

namespace {

/// Has the processor fetch what will be changed soon.
void fetch(const std::uint32_t* entry) {
#if defined(__GNUC__)
  __builtin_prefetch(entry, 1);
#else
  static_cast<void>(entry);
#endif
}

// 64 MB: sixteen million ids in a row. Ids that lie far apart may need much more for a moment.
constexpr std::size_t pages_worth_keeping = 4096;

} // namespace

NodePointTable::NodePointTable(std::uint32_t numbered) : last_(numbered) {}
NodePointTable::~NodePointTable() = default;

std::size_t NodePointTable::number(std::size_t count, int* ids, vtkTypeUInt64* nodes) {
  make_room(count);
  const std::uint32_t base = last_;
  try {
    last_ = enter(count, ids, nodes);
  } catch (const std::bad_alloc&) {
    // What was entered so far would be taken for points of the next numbering.
    drop_pages();
    throw;
  }
  const std::size_t point_count = last_ - base;
  if (page_count_ > pages_worth_keeping) drop_pages();
  return point_count;
}

std::uint32_t NodePointTable::enter(std::size_t count, int* ids, vtkTypeUInt64* nodes) {
  const std::uint32_t base = last_;
  std::uint32_t last = base;
  std::uint32_t* current = nullptr;
  std::uint32_t current_number = std::numeric_limits<std::uint32_t>::max();
  // On a skin the next node is often far from the last: the entries of a block are fetched together.
  constexpr std::size_t block_size = 64;
  std::array<std::uint32_t*, block_size> entries;
  for (std::size_t first = 0; first < count; first += block_size) {
    const std::size_t size = std::min(block_size, count - first);
    for (std::size_t i = 0; i < size; ++i) {
      const auto id = static_cast<std::uint32_t>(ids[first + i]);
      if (id / page_size != current_number) {
        current_number = id / page_size;
        current = page(id);
      }
      entries[i] = current + id % page_size;
      fetch(entries[i]);
    }
    for (std::size_t i = first; i < first + size; ++i) {
      std::uint32_t& entry = *entries[i - first];
      if (entry <= base) {
        nodes[last - base] = nodes[i];
        entry = ++last;
      }
      ids[i] = static_cast<int>(entry - base - 1);
    }
  }
  return last;
}

NodePointTable& NodePointTable::shared() {
  static NodePointTable table;
  return table;
}

std::uint32_t* NodePointTable::add_page(std::uint32_t node_id) {
  std::unique_ptr<Directory>& directory = top_[node_id >> 22];
  if (!directory) directory = std::make_unique<Directory>();
  std::unique_ptr<Page>& page = (*directory)[(node_id >> 12) & (directory_size - 1)];
  page = std::make_unique<Page>();
  ++page_count_;
  return page->data();
}

// Entries are 32 bits: before they would not suffice, all begin anew.
void NodePointTable::make_room(std::size_t points) {
  if (points > std::numeric_limits<std::uint32_t>::max() - last_) drop_pages();
}

void NodePointTable::drop_pages() {
  for (std::unique_ptr<Directory>& directory : top_)
    directory.reset();
  page_count_ = 0;
  last_ = 0;
}
