#pragma once

#include "platform/base/EntitySelection.h"
#include "reference/base/pick/SelectionList.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace GPicked {
class PickCallbackNow;
}

class GPicker;

/// The pick system's memory: one for the process.
struct PickState {
  static PickState& instance();

  std::vector<std::pair<std::string, GPicker*>> pickers; ///< in order of registration
  std::vector<std::string> filter;
  std::vector<GPicked::PickCallbackNow*> pick_observers;
  std::vector<GPicked::PickCallbackNow*> pre_selection_observers;
  SelectionList picked;
  SelectionList possible; ///< best first; the walk stands at what was picked last
  EntitySelection pre_selection;
  std::vector<PickHit> pre_selected; ///< the pre-selection with what is known of it, or empty

  /// The hits whose entities are not picked, in order; of several of one entity the first.
  std::vector<PickHit> not_picked(const std::vector<PickHit>& hits) const;
  /// Puts hits into the picked list and tells the observers.
  void add_to_picked(const std::vector<PickHit>& hits);
  /// Takes hits out of the picked list and tells the observers of those that were in it.
  void remove_from_picked(const std::function<bool(const PickHit&)>& goes);
  /// Replaces the pre-selection and tells the observers; nothing where it is the same entity.
  void replace_pre_selection(const EntitySelection& selection, GPicker* picker);
  /// Drops every record that came from the picker.
  void forget(GPicker* picker);

private:
  PickState();
  void tell_picked(const std::vector<PickHit>& hits, bool add);
  void tell_pre_selected(const EntitySelection& selection, bool add);
};
