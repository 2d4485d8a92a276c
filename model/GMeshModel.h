#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"
#include "mesh/database/SMeshOwnerType.h"
#include "mesh/orbel_mesh_api.h"
#include "platform/base/GModel.h"
#include "platform/util/TovanColor.h"

#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkTimeStamp.h>

#include <array>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Tarn {
class MeshData;
}

class GMeshDataGroup;
class GMeshGroup;
class vtkDataObject;
class vtkPlane;
class vtkProperty;

/// What a model keeps for each mesh that was added.
struct GMeshGraphics {
  GMeshGroup* group = nullptr; ///< the mesh's graphics, owned by the model
  /// The key of the mesh's label part, null when it has none. Kept alive, so that no other part comes to have its
  /// address.
  vtkSmartPointer<vtkDataObject> label_data;
};

/// The graphics model of one mesh database: the object that a host talks to. It keeps the groups that draw each owner's
/// entities and how they look, and passes on what changes in the database.
///
/// Several meshes may be added for one owner; operations that take an owner act on the first unless they say otherwise,
/// and do nothing for an owner without a mesh.
class ORBEL_MESH_API GMeshModel : public GModel {
public:
  /// `database` is borrowed and must outlive the model; it must not be null, which nobody checks. Nothing is drawn yet.
  explicit GMeshModel(Tarn::MeshData* database);
  ~GMeshModel() override;

  /// The database given at construction.
  Tarn::MeshData* database() const;

  // ------------------------------------------------------------------------------------------ meshes

  /// Draws a set of entities for `owner`, which may be null. An empty set is ignored. `color` all-zero reads as white;
  /// `shrink` is clamped to 0.1 to 1; `force_scalars` keeps the colour of edges and nodes under a line colour.
  void add_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, TovanColor color, float shrink,
                bool force_scalars);
  /// The same with colours per entity (lists parallel to those of `mesh`), or, where those lists are all empty, per
  /// node.
  void add_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, TovanColor color,
                const std::vector<TovanColor>& node_colors_list,
                const std::array<std::vector<TovanColor>, 10>& element_colors_by_type,
                const std::map<Tarn::Handle<0>, TovanColor>& node_colors, float shrink);
  /// Replaces what the owner's first mesh draws, keeping how it looks; adds one when there is none yet. The mesh is
  /// drawn afterwards even if it was hidden, though `get_visibility` goes on saying that it is. An empty set is
  /// ignored.
  void add_mesh_unique(const MeshVector& mesh, Tarn::SMeshOwnerType* owner);
  /// Removes the owner's first mesh, then tells every group that shows entities of the owner that the owner is gone.
  /// Further meshes of the owner stay until they are removed in turn, but show nothing: their entities were the
  /// owner's.
  void remove_mesh(Tarn::SMeshOwnerType* owner);
  /// Removes entities from all of the owner's meshes, and those meshes that become empty. `mesh` must be sorted and
  /// without duplicates. True when something went.
  bool remove_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh);
  /// The group that draws the owner's first mesh, or null; owned by the model.
  GMeshGroup* get_mesh(Tarn::SMeshOwnerType* owner);
  /// Removes all meshes, parts and widgets.
  void clear() override;

  // ------------------------------------------------------------------------------------------ one owner

  /// The mesh's single colour; all-zero reads as white.
  void set_color(Tarn::SMeshOwnerType* owner, TovanColor color);
  /// Shows or hides the mesh. Its labels go when it is hidden and stay away when it is shown again, until all label
  /// flags were off once.
  void set_visibility(Tarn::SMeshOwnerType* owner, bool vis);
  /// Whether it is shown; false for an owner without a mesh.
  bool get_visibility(Tarn::SMeshOwnerType* owner);
  /// Marks every mesh as visible, no more: one that was hidden comes back into the views when it is hidden and shown
  /// again with `set_visibility`, or with `add_mesh_unique`. While a label flag is on, meshes without a label part get
  /// one.
  void reset_entity_visibility();
  /// Shows or hides the mesh's nodes, whatever the model's own node visibility.
  void set_node_vis(Tarn::SMeshOwnerType* owner, bool vis);
  /// Whether its nodes are shown in their own right; false for an owner without a mesh.
  bool get_node_vis(Tarn::SMeshOwnerType* owner);

  /// The owner's entities that are to be drawn, from the database: its elements of the owner's dimension (of every kind
  /// where it has any), and those of its nodes that are flagged, all nodes for an owner of dimension 0. Lists that the
  /// owner has nothing for keep what they held. A null owner leaves `out` alone.
  void get_mesh_to_draw(Tarn::SMeshOwnerType* owner, MeshVector& out);

  // ------------------------------------------------------------------------------------------ changes

  /// The owner's entities changed in the database: groups that show them ask again when next drawn.
  void update_mesh_modified(Tarn::SMeshOwnerType* owner);
  /// The owner's nodes moved: groups that show them are rebuilt when next drawn.
  void update_mesh_transformed(Tarn::SMeshOwnerType* owner);
  /// From now on `group` (borrowed) is told of the owner's changes, once per call of this. A group that dies without
  /// leaving the registry is forgotten.
  void register_owner(GMeshGroup* group, Tarn::SMeshOwnerType* owner);
  /// Takes back every such call.
  void unregister_owner(GMeshGroup* group, Tarn::SMeshOwnerType* owner);
  /// Brings the data of all four data groups up to date.
  void update_parts() override;

  // ------------------------------------------------------------------------------------------ display of the model

  using GModel::get_render_mode;
  /// How surfaces are drawn. Modes below 3 show edges and nodes in wire form; mode 4 applies the opacity.
  void set_render_mode(OBUtil::RenderMode mode) override;
  /// Opacity of surfaces in mode 4, clamped to 0 to 1.
  void set_opacity(double o);
  /// That opacity; 0.5 at first.
  double get_opacity();
  /// Shows or hides edges.
  void set_edge_vis(bool on);
  /// Whether edges are shown; true at first.
  bool get_edge_vis();
  /// Shows or hides the nodes of all meshes but those whose own node visibility is on: these always show.
  void set_node_vis(bool on);
  /// Whether nodes are shown; false at first.
  bool get_node_vis();
  /// Width of edges in pixels.
  void set_line_width(float w);
  /// Width of edges in pixels.
  float get_line_width();
  /// Size of nodes in units of 6 pixels.
  void set_node_point_size(float s);
  /// Size of nodes in units of 6 pixels; 1 at first.
  float get_node_point_size();
  /// One colour for edges and nodes, except those of meshes with forced scalars; all-zero gives them their own colours
  /// back.
  void set_line_color(TovanColor color);
  /// That colour; all-zero at first.
  TovanColor get_line_color();
  /// Clips every mesh, also those added later; null for none. The model keeps a reference. After moving the plane in
  /// place, set it again.
  void set_clipping_plane(vtkPlane* plane);

  /// How surfaces are drawn, flat; owned by the model, as are the next three.
  vtkProperty* surface_flat_property();
  /// How surfaces with colours per node are drawn.
  vtkProperty* surface_smooth_property();
  /// How edges are drawn.
  vtkProperty* edge_property();
  /// How nodes are drawn.
  vtkProperty* node_property();

  // ------------------------------------------------------------------------------------------ labels

  /// Labels elements of a kind with their ids, at the centres of the cells that draw them: `NoLabel` for none,
  /// `GlobalId` for global ids (elements without one have no label), anything else for local ids. A flag on edges also
  /// labels the edges of triangles and quadrilaterals. Meshes that are shrunk have no labels. While any flag is on,
  /// every mesh has a label part, hidden ones included. Kinds that do not exist are ignored, and nothing is labelled by
  /// the flag of kind `None`.
  void set_element_label_flag(Tarn::ElementType type, OBUtil::LabelType flag);
  /// The kind's flag; `NoLabel` at first, and for kinds that do not exist.
  OBUtil::LabelType get_element_label_flag(Tarn::ElementType type);
  /// Labels the nodes that are drawn: `NoLabel` for none, `NodeElementId` and `GlobalId` for the local and the global
  /// id of the node's own element (nodes without one have no label), anything else for local node ids.
  void set_node_label_flag(OBUtil::LabelType flag);
  /// That flag; `NoLabel` at first.
  OBUtil::LabelType get_node_label_flag();
  /// Whether any kind or the nodes are labelled.
  bool any_label_flag_on();
  /// When a flag last changed; owned by the model.
  vtkTimeStamp* label_flag_time();
  /// Gives the record a label part unless it has one.
  void create_label_object(GMeshGraphics& record);
  /// Takes the record's label part away.
  void destroy_label_object(GMeshGraphics& record);
  /// Gives every record without a label part one.
  void create_label_objects();
  /// Takes all label parts away.
  void destroy_label_objects();

  // ------------------------------------------------------------------------------------------ view props

  /// A surface actor with the two properties (`back` may be null), to be drawn in `mode`; `scalar_vis`: by its "Color"
  /// array. Like the next two it gives a list of that one actor.
  static PropList create_mesh_tri_view(vtkDataObject* data, GView* view, vtkProperty* front, vtkProperty* back,
                                       OBUtil::RenderMode mode, bool scalar_vis);
  /// An edge actor, drawn as it is in every mode; it cannot be picked.
  static PropList create_mesh_edge_view(vtkDataObject* data, GView* view, vtkProperty* prop, vtkProperty* back,
                                        bool visible, bool scalar_vis);
  /// A node actor; it cannot be picked.
  static PropList create_mesh_node_view(vtkDataObject* data, GView* view, vtkProperty* prop, vtkProperty* back,
                                        bool visible, bool scalar_vis);
  /// The label actor of a mesh, a `vtkActor2D` with a `GMeshLabels`; `data` is the mesh's 2-D data, `view` is not used.
  static PropList create_mesh_label_view(vtkDataObject* data, GView* view, GMeshModel* model);
  /// A surface actor with the model's flat or smooth property, or those of normal-directed lighting.
  PropList create_mesh_tri_view(vtkDataObject* data, GView* view, bool flat);
  /// An edge actor with the model's property, or that of normal-directed lighting.
  PropList create_mesh_edge_view(vtkDataObject* data, GView* view, bool visible, bool scalar_vis);
  /// A node actor with the model's property, or that of normal-directed lighting.
  PropList create_mesh_node_view(vtkDataObject* data, GView* view, bool visible, bool scalar_vis);

  /// Sets the mode of a data group's surface actors, and its wire form (modes below 3).
  static void set_render_mode(OBUtil::RenderMode mode, GMeshDataGroup* group, ViewProps& views);
  /// Sets whether a data group's edge and node actors are coloured by their "Color" arrays.
  static void set_edge_node_scalar_vis(bool on, GMeshDataGroup* group, ViewProps& views);
  /// Shows or hides a data group's edge actors.
  static void set_edge_vis(bool on, GMeshDataGroup* group, ViewProps& views);
  /// Shows or hides a data group's node actors.
  static void set_node_vis(bool on, GMeshDataGroup* group, ViewProps& views);

private:
  using Records = std::multimap<Tarn::SMeshOwnerType*, GMeshGraphics>;
  struct Registration {
    GMeshGroup* group;
    vtkSmartPointer<vtkDataObject> life; ///< its back pointer turns null when the group dies
  };

  void remove_all_meshes();
  Records::iterator first_record(Tarn::SMeshOwnerType* owner);
  void add_record(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, std::unique_ptr<GMeshGroup> group);
  Records::iterator erase_record(Records::iterator record);
  template <class Change> void tell_groups(Tarn::SMeshOwnerType* owner, Change change);

  void add_label_part(vtkDataObject* data);
  void change_label_visibility(GMeshGraphics& record, bool vis);
  void label_flag_changed();

  void set_initial_looks();
  void set_surface_opacity(double opacity);
  GMeshDataGroup* data_group_of(GMeshGroup* group) const;
  void add_mesh_group(GMeshGroup* group);
  void remove_mesh_group(GMeshGroup* group);

  Records groups_;
  std::unique_ptr<GMeshDataGroup> plain_data_group_;
  std::unique_ptr<GMeshDataGroup> vertex_color_data_group_;
  std::unique_ptr<GMeshDataGroup> node_vis_data_group_;
  std::unique_ptr<GMeshDataGroup> scalar_data_group_;
  std::array<OBUtil::LabelType, 10> element_label_flags_{}; // by kind
  OBUtil::LabelType node_label_flag_ = OBUtil::NoLabel;
  vtkTimeStamp label_time_;
  std::unordered_map<const GMeshGroup*, GMeshDataGroup*> shown_in_; // the data group that each group in view is in
  vtkSmartPointer<vtkPlane> clipping_plane_;
  vtkNew<vtkProperty> surface_flat_;
  vtkNew<vtkProperty> surface_smooth_;
  vtkNew<vtkProperty> edge_prop_;
  vtkNew<vtkProperty> node_prop_;
  TovanColor line_color_;
  double opacity_ = 0.5;
  bool edge_vis_ = true;
  bool node_vis_ = false;
  Tarn::MeshData* mesh_data_;
  std::multimap<Tarn::SMeshOwnerType*, Registration> owner_registry_;
};
