#pragma once

#include "platform/util/TovanColor.h"
#include "platform/util/TovanVector.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The labels of one mapper, each position and text once, in order of adding.
class LabelList {
public:
  /// Adds a label unless one of equal text stands at an equal position. Positions that are not finite and empty texts
  /// are nothing to draw and left out.
  void add(const TovanVector& position, std::string_view text, TovanColor color);
  void clear();

  std::size_t size() const { return positions_.size(); }
  const TovanVector& position(std::size_t i) const { return positions_[i]; }
  TovanColor color(std::size_t i) const { return colors_[i]; }
  std::string_view text(std::size_t i) const {
    return std::string_view(texts_).substr(ends_[i], ends_[i + 1] - ends_[i]);
  }
  /// Moves whenever the list changes.
  std::uint64_t version() const { return version_; }

private:
  bool holds(std::size_t i, const TovanVector& position, std::string_view text) const;
  void grow_table();

  std::vector<TovanVector> positions_;
  std::vector<TovanColor> colors_;
  std::string texts_; // one after the other
  std::vector<std::size_t> ends_{0};
  std::vector<std::uint64_t> hashes_;
  std::vector<std::uint32_t> table_; // open addressing; a label's place plus one, 0 where free
  std::uint64_t version_ = 1;
};
