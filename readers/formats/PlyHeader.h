#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace readers {

/// Checks a PLY file: its header, and that the rows that it declares are all there. Throws `Refusal`. Gives the kinds
/// of rows besides vertices and faces, with their numbers.
std::vector<std::pair<std::string, std::uint64_t>> check_ply(std::string_view text);

} // namespace readers
