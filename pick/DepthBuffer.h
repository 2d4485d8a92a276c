#pragma once

#include "mesh/database/Handle.h"

#include <cstddef>
#include <vector>

namespace Tarn {
class MeshData;
}

class vtkMatrix4x4;
class vtkRenderer;

/// A copy of a window's depth buffer, against which nodes are tested for being hidden.
class DepthBuffer {
public:
  /// Reads the buffer of the renderer's window, which must be current. Both arguments are borrowed; `matrix` takes
  /// world to view coordinates.
  DepthBuffer(vtkRenderer* renderer, vtkMatrix4x4* matrix);

  /// How many of the nodes are in the window and not hidden. A slack of 0.01 keeps those that lie on what is drawn.
  int count_visible_nodes(Tarn::MeshData* db, const Tarn::Handle<0>* nodes, std::size_t count) const;

  /// Whether the node shows.
  bool is_visible(Tarn::MeshData* db, Tarn::Handle<0> node) const;
  /// Whether enough of the element's nodes show: 2 of 2, 3 of more. An element with 0 or 1 nodes does; one whose nodes
  /// the database cannot give does not.
  bool is_visible(Tarn::MeshData* db, Tarn::Handle<1> element) const;

private:
  vtkRenderer* renderer_;
  vtkMatrix4x4* matrix_;
  int width_ = 0;
  int height_ = 0;
  std::vector<float> depth_; // width + 1 values a row: both corners of the rectangle that is read belong to it
};
