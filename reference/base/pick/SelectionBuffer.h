#pragma once

#include "platform/base/EntitySelection.h"
#include "reference/base/pick/EntityIdentity.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class GPicker;

/// A hit of a pick, and who reported it.
struct PickHit {
  EntitySelection selection;
  EntityIdentity identity;
  bool has_area;   ///< a face or a solid, which a ray can pierce
  GPicker* picker; ///< who reported it; borrowed
};

/// Gathers the hits of a pick, one entry per entity: of several reports the nearest stays, of equally near ones the
/// first that is exact.
class SelectionBuffer {
public:
  /// Adds a hit reported by the picker that `run` calls at the time.
  void add(const GPicked::PickedEntity& entity, const float* point, float distance, bool exact);
  /// Makes this buffer the one that hits go to, and `picker` their reporter, for as long as the scope lives.
  class Scope {
  public:
    Scope(SelectionBuffer& buffer, GPicker* picker);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

  private:
    SelectionBuffer* outer_;
  };
  /// The buffer of the pick that is under way, or null.
  static SelectionBuffer* current();

  /// The hits in the order in which their entities were first reported.
  const std::vector<PickHit>& hits() const { return hits_; }
  /// The hit of an entity, or null.
  const PickHit* find(const EntityIdentity& identity) const;

private:
  // What a report is held against, close together in memory.
  struct Seen {
    const GPicked::PickedEntity* record; // held by the hit
    float distance;
    bool exact;
  };
  // Region picks report everything found so far again with each group, the same records in the same order with new ones
  // between. The steps are a ring of what was reported: each expects the next.
  struct Step {
    std::uint32_t place;
    std::uint32_t next;
  };

  std::size_t follow(const GPicked::PickedEntity& entity, const float* point, float distance, bool exact);
  std::size_t place_of(const GPicked::PickedEntity& entity, const float* point, float distance, bool exact);

  std::vector<PickHit> hits_;
  std::vector<Seen> seen_; // parallel to `hits_`
  std::vector<Step> steps_;
  std::uint32_t last_ = 0; // the step of the last report
  IdentityNumbers places_;
  GPicker* picker_ = nullptr;
};
