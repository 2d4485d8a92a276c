#pragma once

#include "mesh/database/Handle.h"

/// One face of a mesh's skin: a shell element, or an exterior side of a solid. Valid while its `MeshSkinner` lives.
struct Side {
  int kind;                     ///< 3 triangle, 4 quadrilateral
  int node_count;               ///< 3, 4, 6 or 7 for a triangle, 4, 5, 8 or 9 for a quadrilateral
  const Tarn::Handle<0>* nodes; ///< `node_count` nodes: corners, mid-side nodes, centre
  Tarn::Handle<1> element;      ///< the element that it is a side of
  int position;                 ///< that element's position, as given to the `add_...` operation
};
