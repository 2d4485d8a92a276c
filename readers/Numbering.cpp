#include "readers/Numbering.h"

#include <algorithm>
#include <limits>

namespace readers {

namespace {

// One bit for each number up to the largest: for numbers that are dense, as they nearly always are.
bool unique_by_marks(const std::vector<std::int64_t>& numbers, std::int64_t largest) {
  std::vector<bool> seen(static_cast<std::size_t>(largest) + 1);
  for (std::int64_t number : numbers) {
    if (seen[static_cast<std::size_t>(number)]) return false;
    seen[static_cast<std::size_t>(number)] = true;
  }
  return true;
}

bool unique_by_sorting(std::vector<std::int64_t> numbers) {
  std::sort(numbers.begin(), numbers.end());
  return std::adjacent_find(numbers.begin(), numbers.end()) == numbers.end();
}

} // namespace

bool are_unique_ids(const std::vector<std::int64_t>& numbers) {
  if (numbers.empty()) return true;
  const auto [smallest, largest] = std::minmax_element(numbers.begin(), numbers.end());
  if (*smallest < 1 || *largest > std::numeric_limits<std::int32_t>::max()) return false;
  const bool dense = static_cast<std::size_t>(*largest) / 64 <= numbers.size();
  return dense ? unique_by_marks(numbers, *largest) : unique_by_sorting(numbers);
}

} // namespace readers
