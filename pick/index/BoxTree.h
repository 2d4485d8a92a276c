#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

/// Boxes of many things, by which those are found that meet a line or a part of the screen. Things lie along a Morton
/// curve through their boxes' centres (Morton, "A computer oriented geodetic data base", IBM 1966), so that neighbours
/// on it are neighbours in space; boxes of eight of them are put into one, eight of these into one more, up to a few.
class BoxTree {
public:
  /// A closed box, in single precision and never smaller than what it stands for.
  struct Box {
    float minimum[3];
    float maximum[3];

    /// The empty box.
    Box();
    /// Makes it hold a point; one that is no number makes it hold nothing at all, `is_finite` false.
    void add(const double* point);
    void add(const Box& other);
    bool is_finite() const;
  };

  BoxTree() = default;
  /// Things whose boxes are not finite are always found.
  explicit BoxTree(const std::vector<Box>& boxes);

  /// The things, by their places in the list, ascending, whose boxes are admitted; or all things, where that is most of
  /// them. `admit` must admit a box that holds one that it admits.
  template <class Admit> std::vector<std::uint32_t> find(Admit admit) const {
    std::vector<std::uint32_t> found = always_;
    std::vector<std::uint32_t> here;
    std::vector<std::uint32_t> below;
    for (std::size_t level = levels_.size(); level-- > 0;) {
      below.clear();
      const std::vector<Box>& boxes = levels_[level];
      const auto look_at = [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i)
          if (admit(boxes[i])) below.push_back(static_cast<std::uint32_t>(i));
      };
      if (level + 1 == levels_.size()) {
        look_at(0, boxes.size());
      } else {
        for (const std::uint32_t i : here)
          look_at(std::size_t(i) * branches, std::min(boxes.size(), (std::size_t(i) + 1) * branches));
      }
      if (boxes.size() >= many && below.size() > boxes.size() / 8 * 7) return everything();
      here.swap(below);
    }
    for (const std::uint32_t i : here)
      found.push_back(order_[i]);
    std::sort(found.begin(), found.end());
    return found;
  }

private:
  static constexpr std::size_t branches = 8;
  static constexpr std::size_t many = 64; ///< boxes, the most of which stand for the most of all

  std::vector<std::uint32_t> everything() const {
    std::vector<std::uint32_t> all(order_.size() + always_.size());
    std::iota(all.begin(), all.end(), std::uint32_t{0});
    return all;
  }

  std::vector<std::uint32_t> order_;     ///< the things along the curve
  std::vector<std::vector<Box>> levels_; ///< their boxes, then boxes of eight boxes each
  std::vector<std::uint32_t> always_;    ///< things without a finite box
};
