#include "reference/base/pick/EntityIdentity.h"

#include "platform/base/PickedEntity.h"

#include <cstring>
#include <limits>

namespace {

constexpr std::uint32_t no_number = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t least_slots = 16;

// Handles are often consecutive, or addresses: the multiplications spread them, upper bits best.
std::uint64_t hash_of(const EntityIdentity& identity) {
  const std::uint64_t own = (identity.handle * 2 + (identity.is_node ? 1 : 0)) * 0x9e3779b97f4a7c15U;
  const auto database = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(identity.database));
  return own ^ (database * 0xc2b2ae3d27d4eb4fU);
}

std::uint32_t mark_of(std::uint64_t hash) { return static_cast<std::uint32_t>(hash); }

} // namespace

EntityIdentity::EntityIdentity(const GPicked::PickedEntity& entity)
    : is_node(std::strcmp(entity.type(), "Node") == 0), database(entity.database()), handle(entity.handle()) {}

bool operator==(const EntityIdentity& left, const EntityIdentity& right) {
  return left.is_node == right.is_node && left.database == right.database && left.handle == right.handle;
}

void IdentityNumbers::reserve(std::size_t count) {
  identities_.reserve(count);
  std::size_t slot_count = least_slots;
  while (slot_count / 2 < count)
    slot_count *= 2;
  if (slot_count > slots_.size()) spread(slot_count);
}

std::pair<std::size_t, bool> IdentityNumbers::add(const EntityIdentity& identity) {
  if (slots_.size() < 2 * (identities_.size() + 1)) spread(slots_.empty() ? least_slots : 2 * slots_.size());
  const std::uint64_t hash = hash_of(identity);
  Slot& slot = slots_[slot_of(identity, hash)];
  const bool is_new = slot.number == no_number;
  if (is_new) {
    slot = {mark_of(hash), static_cast<std::uint32_t>(identities_.size())};
    identities_.push_back(identity);
  }
  return {slot.number, is_new};
}

std::size_t IdentityNumbers::find(const EntityIdentity& identity) const {
  if (slots_.empty()) return size();
  const Slot& slot = slots_[slot_of(identity, hash_of(identity))];
  return slot.number == no_number ? size() : slot.number;
}

void IdentityNumbers::clear() {
  identities_.clear();
  slots_.clear();
}

// The identity's slot, or the free one that it would take.
std::size_t IdentityNumbers::slot_of(const EntityIdentity& identity, std::uint64_t hash) const {
  std::size_t at = static_cast<std::size_t>(hash >> shift_);
  for (;; at = (at + 1) & (slots_.size() - 1)) {
    const Slot& slot = slots_[at];
    if (slot.number == no_number) return at;
    if (slot.mark == mark_of(hash) && identities_[slot.number] == identity) return at;
  }
}

void IdentityNumbers::spread(std::size_t slot_count) {
  slots_.assign(slot_count, {0, no_number});
  shift_ = 64;
  for (std::size_t rest = slot_count; rest > 1; rest /= 2)
    --shift_;
  for (std::size_t number = 0; number < identities_.size(); ++number) {
    const std::uint64_t hash = hash_of(identities_[number]);
    slots_[slot_of(identities_[number], hash)] = {mark_of(hash), static_cast<std::uint32_t>(number)};
  }
}
