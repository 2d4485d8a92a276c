#include "group/NodePointTable.h"

#include <limits>

namespace {
// 64 MB: sixteen million ids in a row. Ids that lie far apart may need much more for a moment.
constexpr std::size_t pages_worth_keeping = 4096;
} // namespace

NodePointTable::NodePointTable() = default;
NodePointTable::~NodePointTable() = default;

void NodePointTable::start(std::uint32_t max_points) {
  base_ += count_;
  count_ = 0;
  if (max_points > std::numeric_limits<std::uint32_t>::max() - base_) drop_pages();
}

void NodePointTable::finish() {
  if (page_count_ > pages_worth_keeping) drop_pages();
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

void NodePointTable::drop_pages() {
  for (std::unique_ptr<Directory>& directory : top_)
    directory.reset();
  page_count_ = 0;
  base_ = 0;
  count_ = 0;
}
