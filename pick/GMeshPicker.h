#pragma once

#include "mesh/MeshVector.h"
#include "mesh/orbel_mesh_api.h"
#include "pick/PickInterface.h"
#include "platform/base/GPicker.h"

#include <vector>

/// The picker of mesh entities. Made by the host, it is registered with the pick system under the names of all kinds of
/// mesh entities until it is destroyed, and answers from the visible groups of the renderer that it is asked about.
/// What was hidden or clipped since the last frame is not reported, though it is still on the screen.
///
/// Every hit is reported, with its depth as distance (plus a small bias per kind); which one wins is the pick system's
/// business. Picking and pre-selecting are the same computation.
class ORBEL_MESH_API GMeshPicker : public GPicker {
public:
  static const char* const gHexType;       ///< "Hex"
  static const char* const gTetType;       ///< "Tet"
  static const char* const gPyramidType;   ///< "Pyramid"
  static const char* const gWedgeType;     ///< "Wedge"
  static const char* const gKnifeType;     ///< "Knife", of which there are no elements
  static const char* const gSuperElemType; ///< "Superelement"
  static const char* const gQuadType;      ///< "Face": quadrilaterals
  static const char* const gTriType;       ///< "Tri"
  static const char* const gEdgeType;      ///< "Edge"
  static const char* const gNodeType;      ///< "Node"
  static const char* const g3dElementType; ///< "ThreeDimElement"
  static const char* const g2dElementType; ///< "TwoDimElement"
  static const char* const gElementType;   ///< "Element": nodes become their own elements

  /// Registers the picker under the thirteen names, in the order above.
  GMeshPicker();
  /// Unregisters it in the same order.
  ~GMeshPicker() override;

  /// The ray pick, by the filter.
  void compute_pick(vtkRenderer* renderer, float x, float y) override;
  /// The same.
  void compute_pre_select(vtkRenderer* renderer, float x, float y) override;
  /// The region pick, by the filter.
  void compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override;

  /// Reports what lies under a display point. Without `use_filter` all kinds are admitted.
  virtual void compute_pick(vtkRenderer* renderer, float x, float y, bool use_filter);
  /// Forwards to `compute_pick`.
  virtual void compute_pre_select(vtkRenderer* renderer, float x, float y, bool use_filter);
  /// Reports what lies in a region, by the settings of `MultiCellPicker`. Hits of one group are handed over again with
  /// those of each group after it. For visible entities only, the depth buffer must be current: `GView::render_depth`.
  virtual void compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds, bool use_filter);

  /// Whether picks of large groups, by all pickers, look first where entities lie, in an index that is made at a
  /// group's first pick and kept with it; true at first. Answers are the same either way, as long as a host reports
  /// what it changes, moved nodes (`GMeshModel::update_mesh_transformed`) as well as deleted elements: one that does
  /// not must switch the index off. What is kept stays until the group changes. The operations below never use it.
  static void use_index(bool on);

  /// The ray through a display point, from the near to the far clipping plane: six doubles, left as they are where the
  /// camera is degenerate.
  static void compute_pick_ray(vtkRenderer* renderer, float x, float y, double* const ray);
  /// The pick tolerance in world units, at the depth of the focal point.
  static void compute_pick_tolerance(vtkRenderer* renderer, double& tolerance);

  /// Appends what the ray meets of one mesh, by the pick filter or, without `use_filter`, of all kinds.
  static void pick_mesh_by_ray(PickInterface& picker, const MeshVector& mesh, double* const ray,
                               std::vector<PickInterface::PickResult<Tarn::Handle<0>>>& node_hits,
                               std::vector<PickInterface::PickResult<Tarn::Handle<1>>>& element_hits, bool use_filter);
  /// Reports ray hits to the pick system through `picker`. With `element_filter` nodes become their own elements, and
  /// elements without a global id are left out.
  static void process_picks(Tarn::MeshData* db,
                            const std::vector<PickInterface::PickResult<Tarn::Handle<0>>>& node_hits,
                            const std::vector<PickInterface::PickResult<Tarn::Handle<1>>>& element_hits,
                            vtkRenderer* renderer, bool element_filter, GPicker* picker);
  /// Appends what lies in a region of one mesh, by the pick filter or, without `use_filter`, of all kinds.
  static void pick_mesh_by_bounds(PickInterface& picker, const MeshVector& mesh, PickBounds* bounds,
                                  std::vector<Tarn::Handle<0>>& nodes, std::vector<Tarn::Handle<1>>& elements,
                                  bool use_filter);
  /// Reports region hits to the pick system through `picker`. With `select_visible_only`, nodes that the depth buffer
  /// hides are left out, and elements of which fewer than 3 nodes (2 of a two-node element) show.
  static void process_picks(Tarn::MeshData* db, const std::vector<Tarn::Handle<0>>& nodes,
                            const std::vector<Tarn::Handle<1>>& elements, vtkRenderer* renderer, vtkMatrix4x4* matrix,
                            bool select_visible_only, GPicker* picker);
};
