#include "tests/pick/PickSystemDouble.h"

#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "platform/base/GPicker.h"
#include "platform/base/GPickerBase.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {
PickSystemDouble* current = nullptr;
}

PickSystemDouble::PickSystemDouble() { current = this; }

PickSystemDouble::~PickSystemDouble() { current = nullptr; }

void PickSystemDouble::add(GPicker* picker, GPicked::PickedEntity* entity, const float* point, float distance,
                           bool exact) {
  if (!current) return;
  const bool is_node = dynamic_cast<PickedNode*>(entity) != nullptr;
  EXPECT_TRUE(is_node || dynamic_cast<PickedElement*>(entity));
  current->reports.push_back(
      {is_node, entity->handle(), entity->database(), {point[0], point[1], point[2]}, distance, exact, picker});
  if (current->on_report) current->on_report();
}

std::vector<std::uint64_t> PickSystemDouble::handles() const {
  std::vector<std::uint64_t> values;
  for (const Report& each : reports)
    values.push_back(each.handle);
  return values;
}

std::vector<std::uint64_t> PickSystemDouble::handles(bool nodes) const {
  std::vector<std::uint64_t> values;
  for (const Report& each : reports)
    if (each.is_node == nodes) values.push_back(each.handle);
  return values;
}

// ------------------------------------------------------------------------------------------ the definitions that win

void GPicker::add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance, bool exact) {
  PickSystemDouble::add(this, entity, point, distance, exact);
}

bool GPickerBase::register_picker(const char* name, GPicker* picker) {
  if (!current) return true;
  if (current->registered.size() == current->refuse_at) throw std::runtime_error("registry");
  current->registered.emplace_back(name, picker);
  return current->answer;
}

bool GPickerBase::unregister_picker(const char* name, GPicker* picker) {
  if (!current) return true;
  current->unregistered.emplace_back(name, picker);
  return current->answer;
}

bool GPickerBase::is_filtered(const char* name) {
  if (!current) return true;
  current->questions.push_back(name);
  return current->admitted.count(name) != 0;
}
