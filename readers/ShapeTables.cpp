#include "readers/ShapeTables.h"

#include <algorithm>
#include <array>

namespace readers {

namespace {

// The place of the group with just these corners, or -1.
int find_group(const CornerGroups& groups, std::vector<int> corners) {
  std::sort(corners.begin(), corners.end());
  for (std::size_t g = 0; g < groups.size(); ++g) {
    std::vector<int> group = groups[g];
    std::sort(group.begin(), group.end());
    if (group == corners) return static_cast<int>(g);
  }
  return -1;
}

} // namespace

const CornerGroups& mid_side_corners(Tarn::ElementType type) {
  static const std::array<CornerGroups, 10> table = {
      CornerGroups{},
      CornerGroups{},
      CornerGroups{{0, 1}},
      CornerGroups{{0, 1}, {1, 2}, {2, 0}},
      CornerGroups{{0, 1}, {1, 2}, {2, 3}, {3, 0}},
      CornerGroups{{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}},
      CornerGroups{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}},
      CornerGroups{{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}},
      CornerGroups{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
      CornerGroups{}};
  return table[type];
}

const CornerGroups& centre_corners(Tarn::ElementType type) {
  static const std::array<CornerGroups, 10> table = {
      CornerGroups{},
      CornerGroups{},
      CornerGroups{},
      CornerGroups{{0, 1, 2}},
      CornerGroups{{0, 1, 2, 3}},
      CornerGroups{},
      CornerGroups{
          {0, 3, 7, 4}, {1, 2, 6, 5}, {0, 1, 5, 4}, {3, 2, 6, 7}, {0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 2, 3, 4, 5, 6, 7}},
      CornerGroups{{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}},
      CornerGroups{{0, 1, 2, 3}},
      CornerGroups{}};
  return table[type];
}

int corner_count(Tarn::ElementType type) {
  constexpr int corners[] = {0, 1, 2, 3, 4, 4, 8, 6, 5, 0};
  return corners[type];
}

std::vector<int> side_places(Tarn::ElementType type, std::uint32_t nodes_per_element, const std::vector<int>& corners) {
  std::vector<int> places = corners;
  const CornerGroups& edges = mid_side_corners(type);
  const int first_mid = corner_count(type);
  const int first_centre = first_mid + static_cast<int>(edges.size());
  if (edges.empty() || static_cast<int>(nodes_per_element) < first_centre) return places;
  const std::size_t side_edges = corners.size() == 2 ? 1 : corners.size();
  for (std::size_t i = 0; i < side_edges; ++i)
    places.push_back(first_mid + find_group(edges, {corners[i], corners[(i + 1) % corners.size()]}));
  const int centre = find_group(centre_corners(type), corners);
  if (static_cast<int>(nodes_per_element) > first_centre && centre >= 0) places.push_back(first_centre + centre);
  return places;
}

} // namespace readers
