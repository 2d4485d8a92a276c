#pragma once

#include "highlight/GMeshHighlight.h"
#include "highlight/GMeshHighlightProperties.h"
#include "pick/GMeshPicker.h"
#include "platform/base/GPickerBase.h"
#include "viewer/IdPicker.h"
#include "viewer/Options.h"
#include "viewer/PickRecord.h"

#include <array>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class GView;

namespace viewer {

class Scene;

/// What a click or a region does to what is picked: Ctrl adds, Shift removes, alone it takes its place.
GPickerBase::Change change_of(bool shift, bool control);

/// Picks in a scene, and shows what is picked and pre-selected. One at a time: the pick system is the process's.
class Picking {
public:
  /// `scene` is borrowed and must outlive this. Nothing is picked yet.
  Picking(Scene& scene, const PickOptions& options);
  ~Picking();
  Picking(const Picking&) = delete;
  Picking& operator=(const Picking&) = delete;

  /// Picks what lies at the place, or in the region. The view must have been drawn. True: something was hit.
  bool pick(GView& view, const PickRequest& request, GPickerBase::Change change = GPickerBase::Change::Replace);
  /// Picks entities by their ids; "" or one line that says which are missing, and then nothing changes.
  std::string select(GView& view, const std::vector<IdSelection>& selections, GPickerBase::Change change);
  /// Picks once more what is picked: highlights end with the meshes that they lie on.
  void renew(GView& view);
  /// Takes the next of what the last pick hit; false when there is no other.
  bool next();
  /// Pre-selects what lies under the point. True: that changed.
  bool hover(GView& view, int x, int y);
  /// Pre-selects nothing. True: that changed.
  bool end_hover();
  /// Picks nothing any more.
  void drop_all();
  /// Picks no longer what belongs to one of the owners.
  void drop(const std::set<Tarn::SMeshOwnerType*>& owners);

  /// What is picked, in order of picking.
  std::vector<PickRecord> picked() const;
  std::size_t picked_count() const;
  /// The owners of what is picked.
  std::set<Tarn::SMeshOwnerType*> picked_owners() const;
  /// The middle of the box round the nodes of what is picked; false when nothing is.
  bool picked_centre(std::array<double, 3>& centre) const;
  /// All hits of the last pick, best first.
  std::vector<PickRecord> possible() const;
  /// Which of these was picked last, counted from 1 (0 for none), and how many there are.
  std::pair<std::size_t, std::size_t> place_among_possible() const;
  std::optional<PickRecord> hovered() const;

  /// Seconds that the first pick of one point may take, by the size of the mesh: a rough guess.
  double cost_of_point() const;

  /// The names that the pick filter admits; when set to nothing, the kinds that the mesh has.
  std::vector<std::string> filter() const;
  void set_filter(const std::vector<std::string>& filter);

  bool through = false; ///< whether regions take hidden entities too
  bool whole = false;   ///< whether regions take only what is wholly inside

private:
  void drop(const std::vector<EntitySelection>& gone);
  void picks_changed();
  void show_nodes_where_picked();

  Scene& scene_;
  GMeshHighlightProperties looks_;
  GMeshHighlight highlight_;
  GMeshPicker picker_;
  IdPicker id_picker_;
  bool node_is_picked_ = false;
};

} // namespace viewer
