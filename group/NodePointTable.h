#pragma once

#include <vtkType.h>

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
  /// `numbered`: how many points earlier numberings are taken to have had.
  explicit NodePointTable(std::uint32_t numbered = 0);
  ~NodePointTable();

  /// Numbers points anew, from 0 in the order in which nodes are met: each of the `count` ids is replaced by its node's
  /// point. Of `nodes`, as many handles, the one with which each point is met first moves up to the point's place.
  /// Returns how many points there are. Where memory runs out, the table begins anew.
  std::size_t number(std::size_t count, int* ids, vtkTypeUInt64* nodes);
  /// How many pages there are.
  std::size_t page_count() const { return page_count_; }

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
  std::uint32_t enter(std::size_t count, int* ids, vtkTypeUInt64* nodes);
  void make_room(std::size_t points);
  void drop_pages();

  std::array<std::unique_ptr<Directory>, directory_size> top_;
  std::size_t page_count_ = 0;
  std::uint32_t last_ = 0; // entries up to here belong to earlier numberings
};
