#include "reference/base/pick/SelectionBuffer.h"

#include "platform/base/PickedEntity.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>

namespace {

SelectionBuffer* current_buffer = nullptr;

bool is_one_of(const char* name, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(), [name](const char* other) { return std::strcmp(name, other) == 0; });
}

// Points, curves and superelements have no surface. Databases name their kinds as they like: what is not known to be
// without one is taken to have it.
bool has_area(const char* type) { return !is_one_of(type, {"Node", "OneNode", "Edge", "Superelement", ""}); }

} // namespace

EntityIdentity::EntityIdentity(const GPicked::PickedEntity& entity)
    : is_node(std::strcmp(entity.type(), "Node") == 0), database(entity.database()), handle(entity.handle()) {}

bool operator==(const EntityIdentity& left, const EntityIdentity& right) {
  return left.is_node == right.is_node && left.database == right.database && left.handle == right.handle;
}

std::size_t EntityIdentityHash::operator()(const EntityIdentity& identity) const {
  // Handles are often consecutive; the multiplication spreads them.
  const unsigned long long mixed = (identity.handle * 2 + identity.is_node) * 0x9e3779b97f4a7c15ull;
  return static_cast<std::size_t>(mixed ^ (mixed >> 32)) ^ std::hash<const void*>()(identity.database);
}

void SelectionBuffer::add(const GPicked::PickedEntity& entity, const float* point, float distance, bool exact) {
  const std::size_t expected = last_ < seen_.size() ? seen_[last_].next : 0;
  const bool as_before = expected < seen_.size() && seen_[expected].record == &entity;
  const std::size_t place = as_before ? expected : place_of(entity, point, distance, exact);
  if (last_ < seen_.size()) seen_[last_].next = static_cast<std::uint32_t>(place);
  last_ = place;

  Seen& known = seen_[place];
  const bool nearer = distance < known.distance;
  const bool as_near_but_exact = distance == known.distance && exact && !known.exact;
  if (!nearer && !as_near_but_exact) return;
  hits_[place].selection = EntitySelection(&entity, point, distance, exact);
  known = {&entity, known.next, distance, exact};
}

std::size_t SelectionBuffer::place_of(const GPicked::PickedEntity& entity, const float* point, float distance,
                                      bool exact) {
  const EntityIdentity identity(entity);
  const auto [found, is_new] = place_of_.emplace(identity, hits_.size());
  if (is_new) {
    hits_.push_back({EntitySelection(&entity, point, distance, exact), identity, has_area(entity.type()), picker_});
    seen_.push_back({&entity, 0, distance, exact});
  }
  return found->second;
}

SelectionBuffer::Scope::Scope(SelectionBuffer& buffer, GPicker* picker) : outer_(current_buffer) {
  buffer.picker_ = picker;
  current_buffer = &buffer;
}

SelectionBuffer::Scope::~Scope() { current_buffer = outer_; }

SelectionBuffer* SelectionBuffer::current() { return current_buffer; }

const PickHit* SelectionBuffer::find(const EntityIdentity& identity) const {
  const auto found = place_of_.find(identity);
  return found == place_of_.end() ? nullptr : &hits_[found->second];
}
