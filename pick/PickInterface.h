#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "mesh/orbel_mesh_api.h"

#include <vector>

namespace Tarn {
class MeshData;
}

class PickBounds;
class vtkMatrix4x4;

/// Finds the mesh entities that a pick ray meets or that a region of the screen touches. Every pick appends to the
/// caller's results and clears nothing; entities that the database cannot answer for are skipped. Plain: each entity is
/// looked at, in the order given.
///
/// A ray is six doubles: the first point, then the second; picks look along the segment between them.
class ORBEL_MESH_API PickInterface {
public:
  /// What a ray met.
  template <class H> struct PickResult {
    H handle;        ///< the entity
    double point[3]; ///< a node's own coordinates; where an element was hit, on a solid's nearest side
    bool is_exact;   ///< the ray passes within a small fraction of the tolerance: a tenth for nodes, a hundredth else
  };

  /// `database` is borrowed. Tolerance 0, partial accept on, no transform.
  explicit PickInterface(Tarn::MeshData* database);

  /// How far from the ray, in world units, an entity is still hit.
  void setTolerance(double tolerance);
  /// What region picks project with: world to view (borrowed), the window's size (two ints, copied) and the viewport
  /// (four fractions, copied). Needed before any region pick.
  void setTransform(vtkMatrix4x4* matrix, int* size, double* viewport);
  /// Whether region picks take elements that only touch the region, or only those whose nodes all lie in it.
  void setPartialAccept(bool partial);

  /// Nodes near the ray, in input order: each coordinate must lie within the tolerance of the nearest point of the
  /// segment. False only for a ray of no length.
  bool pickEntities(const std::vector<Tarn::Handle<0>>& nodes, double* ray,
                    std::vector<PickResult<Tarn::Handle<0>>>& results);
  /// Elements that the ray meets: edges, triangles, quadrilaterals, solids, superelements (by their nodes), each kind
  /// in input order. One-node elements never are. True.
  bool pickEntities(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                    std::vector<PickResult<Tarn::Handle<1>>>& results);
  /// Corner nodes of the elements near the ray. Sorts all of `results`, also what it held before, and drops repeated
  /// nodes. True.
  bool pickVertices(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                    std::vector<PickResult<Tarn::Handle<0>>>& results);
  /// Edges of the elements that the ray meets. Sorts all of `results`, also what it held before, and drops repeated
  /// edges. True.
  bool pickEdges(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                 std::vector<PickResult<Tarn::Handle<1>>>& results);

  /// Nodes in the region, in input order.
  void pickEntities(const std::vector<Tarn::Handle<0>>& nodes, PickBounds& bounds,
                    std::vector<Tarn::Handle<0>>& picked);
  /// Elements in the region, in input order; their first 8 nodes count.
  void pickEntities(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                    std::vector<Tarn::Handle<1>>& picked);
  /// Nodes of the elements in the region. Sorts all of `picked` and drops repeated nodes.
  void pickVertices(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                    std::vector<Tarn::Handle<0>>& picked);
  /// Edges of the elements in the region. Sorts all of `picked` and drops repeated edges.
  void pickEdges(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                 std::vector<Tarn::Handle<1>>& picked);

  /// Whether an element touches the region. `display` holds three coordinates per node, in connectivity order, of which
  /// x and y count; too few of them are false.
  static bool evaluateEntity(Tarn::ElementType type, std::vector<double>& display, PickBounds& bounds);

protected:
  /// Edges that the ray meets; true.
  bool pickEdgeEntities(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                        std::vector<PickResult<Tarn::Handle<1>>>& results);
  /// Triangles that the ray meets; true.
  bool pickTriEntities(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                       std::vector<PickResult<Tarn::Handle<1>>>& results);
  /// Quadrilaterals that the ray meets; true. An element whose connectivity cannot be had is tested all the same, with
  /// the nodes of the one before it.
  bool pickFaceEntities(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                        std::vector<PickResult<Tarn::Handle<1>>>& results);
  /// Solids that the ray meets; true.
  bool pick3DEntities(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                      std::vector<PickResult<Tarn::Handle<1>>>& results);
  /// Does the work of `pickVertices`.
  void pickVerticesTemplate(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                            std::vector<PickResult<Tarn::Handle<0>>>& results);
  /// Does the work of `pickEdges`.
  void pickEdgesTemplate(const std::vector<Tarn::Handle<1>>& elements, double* ray,
                         std::vector<PickResult<Tarn::Handle<1>>>& results);

  /// Does the work of the region pick of elements.
  void pickEntitiesTemplate(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                            std::vector<Tarn::Handle<1>>& picked, bool partial);
  /// Does the work of the region pick of corner nodes.
  void pickVerticesTemplate(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                            std::vector<Tarn::Handle<0>>& picked);
  /// Does the work of the region pick of edges.
  void pickEdgesTemplate(const std::vector<Tarn::Handle<1>>& elements, PickBounds& bounds,
                         std::vector<Tarn::Handle<1>>& picked);
  /// Whether all nodes lie in the region; true for none. `scratch` is an array of three vectors.
  bool AllNodesAreInBounds(const std::vector<Tarn::Handle<0>>& nodes, PickBounds& bounds, std::vector<double>* scratch);
  /// Turns a world point of three doubles into a display point, in place.
  void TransformPoint(double* point) const;

private:
  Tarn::MeshData* database_;
  double tolerance_ = 0.0;
  vtkMatrix4x4* transform_ = nullptr; // until `setTransform`
  int display_size_[2] = {};
  double viewport_[4] = {};
  bool partial_accept_ = true;
};
