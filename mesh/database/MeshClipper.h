#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "mesh/database/tovan_tarn_api.h"
#include "platform/util/TovanVector.h"

#include <memory>
#include <vector>

namespace Tarn {
class MeshData;
}

/// Tells which nodes and elements of a set lie beyond a plane. The side that the normal points to is kept. A node is
/// clipped when its signed distance is below 0; an element is clipped when all its nodes are, so that elements which
/// cross the plane stay whole. What has no readable coordinates is not clipped.
class TOVAN_TARN_API MeshClipper {
public:
  /// `database` is borrowed and must outlive the clipper.
  explicit MeshClipper(Tarn::MeshData* database);
  ~MeshClipper();
  MeshClipper(const MeshClipper&) = delete;
  MeshClipper& operator=(const MeshClipper&) = delete;

  /// Sets the elements of one kind; kind 0 and values above 9 are ignored. The list is copied.
  void setMesh(Tarn::ElementType type, const std::vector<Tarn::Handle<1>>& elements);
  /// Sets the nodes that are judged in their own right. The list is copied.
  void setNodes(const std::vector<Tarn::Handle<0>>& nodes);
  /// Sets the plane. The normal need not have unit length.
  void setPlane(const TovanVector& origin, const TovanVector& normal);

  /// Computes all flags. False, with all flags clear, when no plane was set or its normal is zero or not finite.
  bool clipMesh();

  /// One flag per element of that kind, in list order, true where it is clipped away. Empty for kind 0, for values
  /// above 9 and for kinds that were not set; all clear before `clipMesh`.
  std::vector<bool> getClippedFlag(Tarn::ElementType type);
  /// One flag per node, in list order, true where it is clipped away.
  std::vector<bool> getClippedNodesFlag();

private:
  struct Private;
  std::unique_ptr<Private> d;
};
