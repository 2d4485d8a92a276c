#pragma once

#include "platform/base/EntitySelection.h"
#include "reference/base/pick/EntityIdentity.h"
#include "reference/base/pick/SelectionBuffer.h"

#include <cstddef>
#include <functional>
#include <vector>

/// A list of selections in order, with what is known of each beside it, and the place that a walk through it has
/// reached. No entity is in it twice.
class SelectionList {
public:
  /// Appends a hit.
  void add(const PickHit& hit);
  /// Takes out the entries of which `goes` is true, and gives them back in order.
  std::vector<PickHit> take_out(const std::function<bool(const PickHit&)>& goes);
  /// Takes out the entity's entry, if there is one. Hosts call this for one entity after the other, so the list closes
  /// up when it is read next: taking out all costs what one does.
  void take_out(const EntityIdentity& identity);
  /// Takes all out.
  void clear();

  /// The selections alone.
  const std::vector<EntitySelection>& entries() const;
  /// The selections with what is known of them.
  const std::vector<PickHit>& hits() const;

  /// The entry where the walk stands, at first the first; null when that has been taken out, or there is none.
  const PickHit* standing() const;
  /// Moves the walk to the next entry, the first after the last. Nothing in an empty list.
  void step();

private:
  void close_up() const;

  // All closed up when read, which changes nothing that can be seen.
  mutable std::vector<EntitySelection> entries_;
  mutable std::vector<PickHit> hits_;
  mutable std::size_t place_ = 0;
  mutable bool left_ = false;      // the entry where the walk stood is gone; `place_` is the next one's
  mutable std::vector<char> gone_; // parallel, or empty: none is gone
  mutable IdentityNumbers places_; // made for the first that goes
};
