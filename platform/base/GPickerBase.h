#pragma once

#include "platform/base/EntitySelection.h"
#include "platform/base/orbel_base_api.h"

#include <string>
#include <vector>

class GPicker;
class GView;
class PickBounds;

namespace GPicked {
class PickCallbackNow;
class PickedEntity;
} // namespace GPicked

/// The pick system: which pickers there are, which kinds of entity are admitted, what is picked and pre-selected, and
/// who is told. One for the process. Kinds and observers are compared by content and by address. Observers are told
/// removals before additions and may come and go from within a notification.
class ORBEL_BASE_API GPickerBase {
public:
  /// Registers a borrowed picker for a kind of entity. False: that pair is registered already.
  static bool register_picker(const char* name, GPicker* picker);
  /// Takes the pair out. False: it was not registered.
  static bool unregister_picker(const char* name, GPicker* picker);

  /// Whether the filter admits the kind.
  static bool is_filtered(const char* name);
  /// Admits these kinds and no others. At first all are admitted but "Element", which is a mode rather than a kind: it
  /// turns nodes into their own elements and drops elements without a global id.
  static void set_filter(std::vector<std::string> admitted);
  /// The admitted kinds.
  static std::vector<std::string> filter();

  /// Tells `observer` (borrowed) of picks; adding it twice is adding it once.
  static void add_pick_observer(GPicked::PickCallbackNow* observer);
  /// Tells it no longer; a stranger is ignored.
  static void remove_pick_observer(GPicked::PickCallbackNow* observer);
  /// Tells `observer` (borrowed) of pre-selections; adding it twice is adding it once.
  static void add_pre_selection_observer(GPicked::PickCallbackNow* observer);
  /// Tells it no longer; a stranger is ignored.
  static void remove_pre_selection_observer(GPicked::PickCallbackNow* observer);

  /// Takes the entity (compared by kind, database and handle) out of the list of possible selections.
  static void remove_from_possible_selections_list(const GPicked::PickedEntity* entity);
  /// Takes the entities out of the picked list and tells the observers.
  static void remove_from_picked_list(int count, const GPicked::PickedEntity* const* entities);
  /// Replaces the pre-selection, telling of the old one's removal and, unless it is empty, of the new one.
  static void set_pre_selection(const EntitySelection& selection);

  /// What a pick does to the picked list.
  enum class Change {
    Replace, ///< the new entities instead of the old
    Add,     ///< the new entities besides the old
    Remove,  ///< the new entities are picked no longer
    Toggle,  ///< each new entity is added, or removed if it was picked
  };
  /// Picks the best hit under a display point of the view. Brings the models' parts up to date first, and does nothing
  /// where the view is not open or has no pixels, as do the next two. True: something was hit.
  static bool pick(GView* view, float x, float y, Change change = Change::Replace);
  /// Picks all distinct entities in a region. Where only the visible is to be picked it draws the depth first. True:
  /// something was hit.
  static bool pick_by_bounds(GView* view, PickBounds& bounds, Change change = Change::Replace);
  /// Pre-selects the best hit under a display point, or nothing. True: something was hit.
  static bool hover(GView* view, float x, float y);
  /// Picks the next of the possible selections instead of the one picked now, the first again after the last. False:
  /// there is no other.
  static bool next_possible_selection();

  /// What is picked, in order of picking.
  static const std::vector<EntitySelection>& picked();
  /// All hits of the last pick, best first.
  static const std::vector<EntitySelection>& possible_selections();
  /// What is pre-selected; no entity when nothing is.
  static const EntitySelection& pre_selection();
};
