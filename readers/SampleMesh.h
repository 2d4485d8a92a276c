#pragma once

#include "readers/MeshReader.h"

namespace readers {

/// Appends the built-in sample: every kind of element in a small block of its own, side by side along x: one-nodes,
/// edges, triangles, quadrilaterals, tetrahedra, hexahedra, wedges, pyramids, a superelement. Linear blocks stand in
/// front, quadratic ones behind (twisted, so that their edges are curved), those with face centres last; free nodes lie
/// before them all. Each block is an owner with nodes of its own.
Report build_sample_mesh(Tarn::MeshDatabase& database);

} // namespace readers
