#pragma once

#include "platform/base/EntitySelection.h"
#include "reference/base/pick/SelectionBuffer.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace GPicked {
class PickCallbackNow;
}

class GPicker;

/// A list of selections in order, with what is known of each beside it.
class SelectionList {
public:
  /// Appends a hit.
  void add(const PickHit& hit);
  /// Takes out the entries of which `goes` is true, and gives them back in order.
  std::vector<PickHit> take_out(const std::function<bool(const PickHit&)>& goes);
  /// Takes all out.
  void clear();

  /// The selections alone.
  const std::vector<EntitySelection>& entries() const { return entries_; }
  /// The selections with what is known of them.
  const std::vector<PickHit>& hits() const { return hits_; }

private:
  std::vector<EntitySelection> entries_;
  std::vector<PickHit> hits_;
};

/// The pick system's memory: one for the process.
struct PickState {
  static PickState& instance();

  std::vector<std::pair<std::string, GPicker*>> pickers; ///< in order of registration
  std::vector<std::string> filter;
  std::vector<GPicked::PickCallbackNow*> pick_observers;
  std::vector<GPicked::PickCallbackNow*> pre_selection_observers;
  SelectionList picked;
  SelectionList possible; ///< best first
  std::size_t walked = 0; ///< which of the possible selections was picked last
  EntitySelection pre_selection;
  std::vector<PickHit> pre_selected; ///< the pre-selection with what is known of it, or empty

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
