#include "reference/tarn/ElementShape.h"

#include <algorithm>
#include <iterator>

namespace Tarn {

namespace {

constexpr ElementShape shapes[] = {
    {0, 0, 0, 0, {}, 0, {}, {}},
    {0, 1, 0, 0, {1}, 0, {}, {}},
    {1, 2, 0, 0, {2, 3}, 0, {}, {}},
    {2, 3, 3, 0, {3, 6, 7}, 0, {{0, 1}, {1, 2}, {2, 0}}, {}},
    {2, 4, 4, 0, {4, 8, 9}, 0, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}, {}},
    {3,
     4,
     6,
     4,
     {4, 10},
     0,
     {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}},
     {{3, {0, 1, 3, 4, 8, 7}, 0}, {3, {1, 2, 3, 5, 9, 8}, 0}, {3, {2, 0, 3, 6, 7, 9}, 0}, {3, {0, 2, 1, 6, 5, 4}, 0}}},
    {3,
     8,
     12,
     6,
     {8, 20, 27},
     27,
     {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}},
     {{4, {0, 4, 7, 3, 16, 15, 19, 11}, 20},
      {4, {1, 2, 6, 5, 9, 18, 13, 17}, 21},
      {4, {0, 1, 5, 4, 8, 17, 12, 16}, 22},
      {4, {3, 7, 6, 2, 19, 14, 18, 10}, 23},
      {4, {0, 3, 2, 1, 11, 10, 9, 8}, 24},
      {4, {4, 5, 6, 7, 12, 13, 14, 15}, 25}}},
    // VTK's wedge stands on its head: the triangle (0, 1, 2) turns its normal away from (3, 4, 5).
    {3,
     6,
     9,
     5,
     {6, 15, 18},
     18,
     {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}},
     {{3, {0, 1, 2, 6, 7, 8}, 0},
      {3, {3, 5, 4, 11, 10, 9}, 0},
      {4, {0, 3, 4, 1, 12, 9, 13, 6}, 15},
      {4, {1, 4, 5, 2, 13, 10, 14, 7}, 16},
      {4, {2, 5, 3, 0, 14, 11, 12, 8}, 17}}},
    {3,
     5,
     8,
     5,
     {5, 13, 14},
     14,
     {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
     {{4, {0, 3, 2, 1, 8, 7, 6, 5}, 13},
      {3, {0, 1, 4, 5, 10, 9}, 0},
      {3, {1, 2, 4, 6, 11, 10}, 0},
      {3, {2, 3, 4, 7, 12, 11}, 0},
      {3, {3, 0, 4, 8, 9, 12}, 0}}},
    {3, 0, 0, 0, {}, 0, {}, {}},
};

} // namespace

const ElementShape& element_shape(ElementType type) { return shapes[type <= Superelement ? type : None]; }

std::size_t most_nodes(ElementType type) {
  const ElementShape& shape = element_shape(type);
  return *std::max_element(std::begin(shape.node_counts), std::end(shape.node_counts));
}

bool is_node_count(ElementType type, int count) {
  if (count <= 0) return false;
  if (type == Superelement) return true;
  const ElementShape& shape = element_shape(type);
  return std::find(std::begin(shape.node_counts), std::end(shape.node_counts), count) != std::end(shape.node_counts);
}

} // namespace Tarn
