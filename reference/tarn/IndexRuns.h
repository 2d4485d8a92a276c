#pragma once

#include "reference/tarn/EntityHandles.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tarn {

/// A set of indexes, kept as runs of consecutive ones: what is added in bulk costs eight bytes a call. Removal is told
/// once for any number of indexes and carried out when the set is next read.
class IndexRuns {
public:
  /// `count` consecutive indexes; `count` is at least 1.
  struct Run {
    Index first;
    Index count;
  };

  /// Adds indexes; those that are there already stay single.
  void add(Index first, Index count) {
    if (!runs_.empty()) {
      Run& last = runs_.back();
      if (last.first + last.count == first) {
        last.count += count;
        return;
      }
      if (first < last.first + last.count) sorted_ = false;
    }
    runs_.push_back({first, count});
  }

  /// Says that some indexes may have gone: the next `tidy` asks about each.
  void mark_removals() { removals_ = true; }

  /// Puts the set in order and drops the indexes that `keeps(index)` denies, if removals were marked.
  template <class Keeps> void tidy(Keeps keeps) {
    if (!sorted_) merge();
    if (removals_) filter(keeps);
  }

  /// Ascending and apart after `tidy`.
  const std::vector<Run>& runs() const { return runs_; }
  /// How many indexes the set has after `tidy`.
  std::uint64_t size() const {
    std::uint64_t size = 0;
    for (const Run& run : runs_)
      size += run.count;
    return size;
  }
  /// Calls `visit(index)` for each, in ascending order after `tidy`.
  template <class Visit> void for_each(Visit visit) const {
    for (const Run& run : runs_)
      for (Index i = 0; i < run.count; ++i)
        visit(run.first + i);
  }
  std::size_t bytes() const { return runs_.size() * sizeof(Run); }
  void clear() { *this = IndexRuns(); }

private:
  void merge() {
    std::sort(runs_.begin(), runs_.end(), [](const Run& a, const Run& b) { return a.first < b.first; });
    std::size_t kept = 0;
    for (std::size_t i = 1; i < runs_.size(); ++i) {
      const Index end = runs_[kept].first + runs_[kept].count;
      if (runs_[i].first > end) {
        runs_[++kept] = runs_[i];
      } else {
        runs_[kept].count = std::max(end, runs_[i].first + runs_[i].count) - runs_[kept].first;
      }
    }
    runs_.resize(kept + 1);
    sorted_ = true;
  }

  template <class Keeps> void filter(Keeps keeps) {
    IndexRuns kept;
    for_each([&](Index index) {
      if (keeps(index)) kept.add(index, 1);
    });
    *this = std::move(kept);
  }

  std::vector<Run> runs_;
  bool sorted_ = true;
  bool removals_ = false;
};

} // namespace Tarn
