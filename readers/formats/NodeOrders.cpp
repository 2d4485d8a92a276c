#include "readers/formats/NodeOrders.h"

namespace readers {

const std::uint8_t* order_with_verticals_first(Tarn::ElementType type, std::uint32_t nodes_per_element) {
  static constexpr std::uint8_t hex20[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15};
  static constexpr std::uint8_t wedge15[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11};
  static constexpr std::uint8_t wedge18[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11, 15, 16, 17};
  if (type == Tarn::Hex && nodes_per_element == 20) return hex20;
  if (type == Tarn::Wedge && nodes_per_element == 15) return wedge15;
  if (type == Tarn::Wedge && nodes_per_element == 18) return wedge18;
  return nullptr;
}

} // namespace readers
