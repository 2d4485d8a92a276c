#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

/// Numbers the points of a grid: which point stands for the node of a given id. Three levels, 10, 10 and 12 bits of the
/// id, so that memory goes only to the ranges of ids that are in use.
///
/// Pages outlive a numbering: entries of an earlier one count as empty, so that starting anew costs nothing.
class NodePointTable {
public:
  NodePointTable();
  ~NodePointTable();

  /// Starts a numbering of at most `max_points` points.
  void start(std::uint32_t max_points);
  /// The point of the node, and whether it is new; points are numbered from 0 in the order in which they are met.
  std::uint32_t point(std::uint32_t node_id, bool& is_new) {
    std::uint32_t& entry = page(node_id)[node_id & (page_size - 1)];
    is_new = entry <= base_;
    if (is_new) entry = base_ + ++count_;
    return entry - base_ - 1;
  }
  /// Begins to fetch the entry of a node that is asked for soon: on a skin the next node is often far from the last.
  void prefetch(std::uint32_t node_id) const {
    const std::unique_ptr<Directory>& directory = top_[node_id >> 22];
    if (!directory) return;
    const std::unique_ptr<Page>& page = (*directory)[(node_id >> 12) & (directory_size - 1)];
    if (page) __builtin_prefetch(page->data() + (node_id & (page_size - 1)), 1);
  }
  /// How many points there are.
  std::uint32_t size() const { return count_; }
  /// How many pages there are.
  std::size_t page_count() const { return page_count_; }
  /// Ends a numbering; gives back pages when there are more of them than are worth keeping.
  void finish();

  /// The table that all groups share. Groups are built one after another, on one thread.
  static NodePointTable& shared();

private:
  static constexpr std::uint32_t page_size = 1u << 12;
  static constexpr std::uint32_t directory_size = 1u << 10;
  using Page = std::array<std::uint32_t, page_size>;
  using Directory = std::array<std::unique_ptr<Page>, directory_size>;

  std::uint32_t* page(std::uint32_t node_id) {
    const std::unique_ptr<Directory>& directory = top_[node_id >> 22];
    if (directory) {
      const std::unique_ptr<Page>& page = (*directory)[(node_id >> 12) & (directory_size - 1)];
      if (page) return page->data();
    }
    return add_page(node_id);
  }
  std::uint32_t* add_page(std::uint32_t node_id);
  void drop_pages();

  std::array<std::unique_ptr<Directory>, directory_size> top_;
  std::size_t page_count_ = 0;
  std::uint32_t base_ = 0;  // entries up to here belong to earlier numberings
  std::uint32_t count_ = 0; // points of this one
};
