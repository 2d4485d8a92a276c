#include "reference/base/label/LabelList.h"

#include <cmath>
#include <cstring>
#include <functional>

namespace {

constexpr std::size_t first_table = 64;

std::uint64_t bits_of(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t value) {
  hash = (hash ^ value) * 0x9e3779b97f4a7c15u;
  return hash ^ (hash >> 32);
}

std::uint64_t hash_of(const TovanVector& position, std::string_view text) {
  std::uint64_t hash = std::hash<std::string_view>()(text);
  for (const double value : {position.x, position.y, position.z})
    hash = mixed(hash, bits_of(value + 0.0)); // both zeros are one
  return hash;
}

} // namespace

void LabelList::add(const TovanVector& position, std::string_view text, TovanColor color) {
  if (text.empty() || !std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z)) return;
  if (2 * (size() + 1) > table_.size()) grow_table();
  const std::uint64_t hash = hash_of(position, text);
  const std::size_t mask = table_.size() - 1;
  std::size_t slot = hash & mask;
  for (; table_[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t other = table_[slot] - 1;
    if (hashes_[other] == hash && holds(other, position, text)) return;
  }
  positions_.push_back(position);
  colors_.push_back(color);
  texts_.append(text);
  ends_.push_back(texts_.size());
  hashes_.push_back(hash);
  table_[slot] = static_cast<std::uint32_t>(size());
  ++version_;
}

bool LabelList::holds(std::size_t i, const TovanVector& position, std::string_view text_wanted) const {
  const TovanVector& own = positions_[i];
  return own.x == position.x && own.y == position.y && own.z == position.z && text(i) == text_wanted;
}

void LabelList::grow_table() {
  table_.assign(table_.empty() ? first_table : 2 * table_.size(), 0);
  const std::size_t mask = table_.size() - 1;
  for (std::size_t i = 0; i < size(); ++i) {
    std::size_t slot = hashes_[i] & mask;
    while (table_[slot] != 0)
      slot = (slot + 1) & mask;
    table_[slot] = static_cast<std::uint32_t>(i + 1);
  }
}

void LabelList::clear() {
  positions_.clear();
  colors_.clear();
  texts_.clear();
  ends_.assign(1, 0);
  hashes_.clear();
  table_.clear();
  ++version_;
}
