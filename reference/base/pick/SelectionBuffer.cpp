#include "reference/base/pick/SelectionBuffer.h"

#include "platform/base/PickedEntity.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

SelectionBuffer* current_buffer = nullptr;

// As often as groups may share an entity, with some to spare.
constexpr std::size_t most_steps = 64;

bool is_one_of(const char* name, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(), [name](const char* other) { return std::strcmp(name, other) == 0; });
}

// Points, curves and superelements have no surface. Databases name their kinds as they like: what is not known to be
// without one is taken to have it.
bool has_area(const char* type) { return !is_one_of(type, {"Node", "OneNode", "Edge", "Superelement", ""}); }

} // namespace

void SelectionBuffer::add(const GPicked::PickedEntity& entity, const float* point, float distance, bool exact) {
  const std::size_t place = follow(entity, point, distance, exact);
  Seen& known = seen_[place];
  const bool nearer = distance < known.distance;
  const bool as_near_but_exact = distance == known.distance && exact && !known.exact;
  if (!nearer && !as_near_but_exact) return;
  hits_[place].selection = EntitySelection(&entity, point, distance, exact);
  known = {&entity, distance, exact};
}

// The place of the entity: as a rule that of the next step, else it is looked up and put between.
std::size_t SelectionBuffer::follow(const GPicked::PickedEntity& entity, const float* point, float distance,
                                    bool exact) {
  const std::uint32_t expected = steps_.empty() ? 0 : steps_[last_].next;
  if (expected < steps_.size() && seen_[steps_[expected].place].record == &entity) {
    last_ = expected;
    return steps_[expected].place;
  }
  const std::size_t place = place_of(entity, point, distance, exact);
  // A record of its own for each report is never met again, and what comes in any order is not worth following.
  if (seen_[place].record != &entity || steps_.size() >= most_steps * seen_.size()) return place;
  const auto added = static_cast<std::uint32_t>(steps_.size());
  if (!steps_.empty()) steps_[last_].next = added;
  steps_.push_back({static_cast<std::uint32_t>(place), expected});
  last_ = added;
  return place;
}

std::size_t SelectionBuffer::place_of(const GPicked::PickedEntity& entity, const float* point, float distance,
                                      bool exact) {
  const EntityIdentity identity(entity);
  const auto [place, is_new] = places_.add(identity);
  if (is_new) {
    hits_.push_back({EntitySelection(&entity, point, distance, exact), identity, has_area(entity.type()), picker_});
    seen_.push_back({&entity, distance, exact});
  }
  return place;
}

SelectionBuffer::Scope::Scope(SelectionBuffer& buffer, GPicker* picker) : outer_(current_buffer) {
  buffer.picker_ = picker;
  current_buffer = &buffer;
}

SelectionBuffer::Scope::~Scope() { current_buffer = outer_; }

SelectionBuffer* SelectionBuffer::current() { return current_buffer; }

const PickHit* SelectionBuffer::find(const EntityIdentity& identity) const {
  const std::size_t place = places_.find(identity);
  return place < hits_.size() ? &hits_[place] : nullptr;
}
