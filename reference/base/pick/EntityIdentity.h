#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace GPicked {
class PickedEntity;
}

namespace Tarn {
class MeshData;
}

/// What makes two records the same entity: node or not, database, handle. Taken once: asking a record for its kind may
/// ask its database.
struct EntityIdentity {
  explicit EntityIdentity(const GPicked::PickedEntity& entity);

  bool is_node;
  const Tarn::MeshData* database;
  unsigned long long handle;
};

bool operator==(const EntityIdentity& left, const EntityIdentity& right);

/// Numbers identities from 0 in the order in which they are met first. Picks of a million entities are common: all lies
/// in two arrays.
class IdentityNumbers {
public:
  /// Makes room for so many.
  void reserve(std::size_t count);
  /// The identity's number, and whether it was met for the first time. At most 2^32 - 1 different ones.
  std::pair<std::size_t, bool> add(const EntityIdentity& identity);
  /// The identity's number; `size()` for a stranger.
  std::size_t find(const EntityIdentity& identity) const;
  bool has(const EntityIdentity& identity) const { return find(identity) < size(); }
  std::size_t size() const { return identities_.size(); }
  /// Forgets all.
  void clear();

private:
  // A part of the hash, which tells most strangers without a look at the identity, and the number.
  struct Slot {
    std::uint32_t mark;
    std::uint32_t number;
  };

  std::size_t slot_of(const EntityIdentity& identity, std::uint64_t hash) const;
  void spread(std::size_t slot_count);

  std::vector<EntityIdentity> identities_;
  std::vector<Slot>
      slots_;     // a power of two of them, at most half in use; an identity lies in the first free after its own
  int shift_ = 0; // brings a hash to a slot
};
