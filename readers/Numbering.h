#pragma once

#include <cstdint>
#include <vector>

namespace readers {

/// Whether the numbers can be local ids: unique, positive and below 2^31.
bool are_unique_ids(const std::vector<std::int64_t>& numbers);

} // namespace readers
