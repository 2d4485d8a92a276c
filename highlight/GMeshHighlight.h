#pragma once

#include "mesh/MeshVector.h"
#include "mesh/orbel_mesh_api.h"
#include "platform/base/GModel.h"
#include "platform/base/PickCallbackNow.h"
#include "platform/util/TovanColor.h"

#include <memory>
#include <set>

class GMeshDataGroup;
class GMeshGroup;
class GMeshHighlightProperties;
class GMeshModel;

/// Draws highlighted entities over a mesh model, as edges and nodes. It keeps three independent sets: what the pick
/// system reports as picked (besides whole groups that the host selects), what the host highlights, and what the pick
/// system reports as pre-selected. Entities of other databases are ignored.
///
/// Destroy it before its model. Operations on groups give false for null.
class ORBEL_MESH_API GMeshHighlight : public GModel, public GPicked::PickCallbackNow {
public:
  /// Both are borrowed and must outlive this object. It does not observe yet; nodes are hidden.
  GMeshHighlight(GMeshModel* model, GMeshHighlightProperties* properties);
  /// Stops observing.
  ~GMeshHighlight() override;

  /// Whether picks and pre-selections are followed.
  void observe_selections(bool on);

  /// Adds entities to the highlight set; true.
  bool highlight_mesh(const MeshVector& mesh);
  /// Removes entities from the highlight set; true.
  bool unhighlight_mesh(const MeshVector& mesh);
  /// Adds `mesh` to `set`, sorted and without duplicates, and stores in `group` a new group that draws the set (the
  /// caller's), or null for an empty one. What `group` was is left alone. True.
  bool highlight_mesh(const MeshVector& mesh, MeshVector& set, GMeshGroup*& group);
  /// Removes `mesh` from `set`, and stores a new group in `group` as above. True.
  bool unhighlight_mesh(const MeshVector& mesh, MeshVector& set, GMeshGroup*& group);
  /// Draws a group (borrowed) with the highlight set.
  bool highlight_mesh(GMeshGroup* group);
  /// No longer draws it there.
  bool unhighlight_mesh(GMeshGroup* group);

  /// Selects a whole group of the model (borrowed, must outlive its selection): it is drawn with the picked set.
  bool select_mesh(GMeshGroup* group);
  /// Ends its selection.
  bool unselect_mesh(GMeshGroup* group);
  /// Shows or hides a selected group's highlight; nothing for a group that is not selected.
  bool set_visibility(GMeshGroup* group, bool visible);

  /// Empties the highlight set. Every pick does that too.
  void clear_non_picked();
  /// Empties all three sets and tells the pick system. Selected groups are no longer drawn but stay listed: see
  /// `set_visibility`.
  void clear() override;
  /// Brings the data of the three sets up to date.
  void update_parts() override;

  /// Shows or hides the nodes of what is highlighted.
  void set_node_vis(bool visible);
  /// Whether they are shown; false at first.
  bool get_node_vis();

  /// How the highlight set and selected groups are drawn: the colour table's colour at construction, whatever the
  /// properties given there say later. Owned by this object.
  vtkProperty* edge_highlight_property();

  /// Empties the highlight set, then adds to or removes from the picked set.
  void notify_picked(int count, const GPicked::PickedEntity* const* entities, const float* const* points,
                     bool add) override;
  /// Adds to or removes from the pre-select set.
  void notify_pre_select(const GPicked::PickedEntity* entity, const float* const point, bool add) override;

  /// An edge actor that cannot be picked and is drawn in the property's colour; none where the property draws surfaces.
  static PropList create_mesh_edge_view(vtkDataObject* data, GView* view, vtkProperty* property);
  /// A node actor of the same kind.
  static PropList create_mesh_node_view(vtkDataObject* data, GView* view, bool show_nodes, vtkProperty* property);

private:
  // One of the three sets: without a group when empty, else with one that holds a copy of it.
  struct Highlighted {
    MeshVector mesh;
    std::unique_ptr<GMeshGroup> group;
    std::unique_ptr<GMeshDataGroup> data_group;
  };

  void handle_notify(int count, const GPicked::PickedEntity* const* entities, const float* const* points, bool add,
                     bool picked);
  bool add_mesh(GMeshGroup* group);
  bool remove_mesh(GMeshGroup* group);
  bool collect(int count, const GPicked::PickedEntity* const* entities, MeshVector& mesh) const;
  GMeshGroup* make_group(const MeshVector& mesh);
  void add_to_views(GMeshDataGroup& data_group, GMeshGroup* group, vtkProperty* property);
  void remove_from_views(GMeshDataGroup& data_group, GMeshGroup* group);
  void empty(Highlighted& set);

  bool observing_ = false;
  Highlighted picked_;
  Highlighted highlighted_;
  Highlighted pre_selected_;
  GMeshModel* model_;
  vtkProperty* edge_highlight_property_;
  TovanColor highlight_color_;
  bool node_visibility_ = false;
  GMeshHighlightProperties* properties_;
  std::set<GMeshGroup*> selected_groups_;
};
