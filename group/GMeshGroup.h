#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/SMeshOwnerType.h"
#include "mesh/orbel_mesh_api.h"
#include "platform/base/GDataGroupEntity.h"
#include "platform/util/TovanColor.h"

#include <vtkSmartPointer.h>
#include <vtkTimeStamp.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class GMeshModel;
class vtkDataSet;
class vtkPlane;
class vtkPolyData;
class vtkUnstructuredGrid;
struct EntityColors;
struct GroupCache;
namespace Tarn {
class MeshData;
}

/// The graphics of one set of mesh entities: those of one owner, or any that the caller hands in. Keeps how they look
/// and turns them into VTK data sets, each rebuilt when it is asked for and something newer than it asks for that.
///
/// The data sets belong to the group. The five poly data stay the same objects for the group's life, so that mappers
/// may hold them; the unstructured grid is replaced when it is rebuilt unshrunk.
class ORBEL_MESH_API GMeshGroup : public GDataGroupEntity {
public:
  /// Where the colours of the data sets come from.
  enum ColorType : std::int32_t {
    CellColors = 0,   ///< one per entity: `set_cell_color_array`
    VertexColors = 1, ///< one per node: `set_vertex_color_array`
    SingleColor = 2,  ///< `set_color` for everything; the initial type
  };

  /// An empty group: visible, nodes hidden, white, not shrunk, not clipped.
  GMeshGroup();
  /// Leaves the model's owner registry, unless the group does not observe: the registry then forgets it by itself.
  ~GMeshGroup() override;

  /// Replaces the entities. `mesh` is copied as it is, neither sorted nor made unique: colour lists are positional.
  /// Unless the group does not observe, it registers with `model` (borrowed, must outlive the group) under `owner`, or,
  /// where that is null, under every owner that the database gives for the entities. `model` must not be null, which
  /// nobody checks.
  virtual void set_mesh(Tarn::SMeshOwnerType* owner, const MeshVector& mesh, GMeshModel* model);

  /// The entities to draw, brought up to date with the database first if it was reported to have changed.
  const MeshVector& get_mesh();
  /// Those of them that survive clipping, as of the last `get_2d_data`. Brings the entities up to date too.
  const MeshVector& get_filtered_mesh();
  /// Whether there is nothing to draw, as last known.
  bool empty() const;
  /// Adds another group's entities, sorted and without duplicates.
  void add_mesh(const GMeshGroup* other);
  /// Removes entities; `m` must be sorted and without duplicates. True when something went. A group that became empty
  /// is not marked as changed: its model discards it.
  bool remove_mesh(const MeshVector& m);

  /// The group that built the data set, or null.
  static GMeshGroup* get_group(vtkDataSet* ds);

  /// The owner whose entities are shown; null for an explicit set.
  Tarn::SMeshOwnerType* mesh_owner() const;
  /// The model, null before `set_mesh`.
  GMeshModel* get_model();

  /// Whether the group is drawn. A plain flag, as are the next two: nothing is marked, nobody is told.
  void set_visibility(bool on);
  /// Whether the group is drawn; true at first.
  bool get_visibility() const;
  /// Whether its nodes are drawn.
  void set_node_visibility(bool on);
  /// Whether its nodes are drawn; false at first.
  bool get_node_visibility() const;
  /// Whether its edges and nodes keep their own colours under a line colour.
  void set_force_scalars(bool on);
  /// Whether its edges and nodes keep their own colours under a line colour; false at first.
  bool get_force_scalars() const;
  /// For good: from now on the group neither registers with the model nor unregisters. Where it is registered already
  /// it goes on being told of changes, so call it before `set_mesh`.
  void set_dont_observe();

  /// Sets the single colour; all-zero reads as white. The colour type stays.
  void set_color(TovanColor c);
  /// The single colour; all channels 255 at first.
  TovanColor get_color();
  /// Where colours come from.
  ColorType get_color_type();
  /// Colours per entity, positions as in the lists of the entity set; lists that are too short read as all-255. On a
  /// group that was built already it shows after the entities next change: follow it with
  /// `GMeshModel::update_mesh_transformed`.
  void set_cell_color_array(const std::vector<TovanColor>& node_colors,
                            const std::array<std::vector<TovanColor>, 10>& element_colors);
  /// Colours per node; nodes without one take the single colour. Shows when `set_cell_color_array` would. How the model
  /// draws a surface is settled when its mesh is shown: hide the mesh before and show it after to have it drawn smooth.
  void set_vertex_color_array(const std::map<Tarn::Handle<0>, TovanColor>& colors);

  /// Leaves out what lies beyond the plane (shared; null for none). A plane that is moved in place is noticed at the
  /// next request, but tells no data group: set it again.
  void set_clipping_plane(vtkPlane* plane);
  /// Draws each element scaled about its centre, 0.1 to 1 (outside values are clamped, NaN is not). Takes effect at the
  /// next rebuild: follow it with `GMeshModel::update_mesh_transformed`.
  void set_shrink_factor(float f);

  /// The database's entities changed: they are asked for again when next needed.
  void notify_mesh_modified();
  /// The owner is gone: as `notify_mesh_modified`, and the group no longer belongs to it.
  void notify_mesh_deleted(Tarn::SMeshOwnerType* owner);
  /// Nodes moved: the data sets are rebuilt when next needed.
  void notify_mesh_transformed();

  /// Asks the database for the ids of all entities and drops the answers: exercises the database on the handles.
  void validate();

  /// When the entities, the owner or the plane last changed.
  vtkTimeStamp& MeshTime();
  /// When colours last changed.
  vtkTimeStamp& ColorTime();

  /// Nodes, points and lines as they are, and the skin of shells and solids. Point data "NodeIds" and cell data
  /// "ElemIds" (unless shrunk) hold the handles, "Color" the colours.
  vtkUnstructuredGrid* get_2d_data();
  /// Its surface; with normals where vertices are coloured.
  vtkPolyData* get_tri_data();
  /// Its edges, lines and points, for modes that draw no surface.
  vtkPolyData* get_wire_data();
  /// The edges of its faces.
  vtkPolyData* get_edge_data();
  /// A vertex on each point that has none in the grid.
  vtkPolyData* get_node_data();
  /// A vertex on each point.
  vtkPolyData* get_wire_node_data();

protected:
  /// Carries out a pending `rebuild_mesh`.
  void update_mesh();
  /// Writes the single colour into the grid's "Color" arrays and marks it modified; nothing for other colour types.
  void update_color_array();

  /// Asks the model for the current entities and carries colours over to them.
  virtual void rebuild_mesh();
  /// Builds the grid from `mesh`. Positions tell where each entry stands in the unfiltered lists, to which colours
  /// belong; null is identity.
  virtual void add_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                    const std::vector<int> (*element_positions)[10]);
  /// Refills the grid with each element on its own, pulled to its centre. Same arguments.
  virtual void add_shrink_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                           const std::vector<int> (*element_positions)[10]);

private:
  void unregister();
  std::vector<Tarn::SMeshOwnerType*> owners_of(const MeshVector& mesh) const;
  Tarn::MeshData* database() const;
  EntityColors colors() const;
  MeshVector what_is_left() const;
  void replace_mesh(MeshVector mesh);
  void keep_filtered_mesh();
  bool grid_is_stale() const;
  void build_whole_grid();
  void build_clipped_grid();
  void build_grid(const MeshVector& mesh, const std::vector<int>* node_positions,
                  const std::vector<int> (*element_positions)[10]);
  template <class Make> vtkPolyData* refreshed(vtkPolyData* data, Make make);

  bool visibility_ = true;
  bool node_visibility_ = false;
  bool force_scalars_ = false;
  bool observe_ = true;
  bool mesh_dirty_ = false;
  ColorType color_type_ = SingleColor;
  double shrink_factor_ = 1.0;
  TovanColor color_;
  Tarn::SMeshOwnerType* mesh_owner_ = nullptr;
  std::vector<Tarn::SMeshOwnerType*> owners_; // under which it is registered, ascending, each once
  GMeshModel* model_ = nullptr;
  vtkSmartPointer<vtkPlane> clipping_plane_;
  std::vector<TovanColor> node_colors_;                    // parallel to mesh_.nodes
  std::array<std::vector<TovanColor>, 10> element_colors_; // parallel to mesh_.elements
  std::map<Tarn::Handle<0>, TovanColor> vertex_colors_;
  vtkTimeStamp mesh_time_;
  vtkTimeStamp color_time_;
  MeshVector mesh_;
  MeshVector filtered_mesh_;      // what survived clipping, unless
  bool filtered_is_mesh_ = false; // everything did: a big mesh is not kept twice
  vtkSmartPointer<vtkUnstructuredGrid> grid_;
  vtkSmartPointer<vtkPolyData> tri_data_;
  vtkSmartPointer<vtkPolyData> wire_data_;
  vtkSmartPointer<vtkPolyData> edge_data_;
  vtkSmartPointer<vtkPolyData> node_data_;
  vtkSmartPointer<vtkPolyData> wire_node_data_;
  vtkTimeStamp filtered_time_; // when the filtered entities were last chosen
  friend class GroupPickIndex; // which keeps itself here
  std::unique_ptr<GroupCache> pick_cache_;
};
