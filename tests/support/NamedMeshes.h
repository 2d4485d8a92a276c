#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"
#include "reference/tarn/MeshDatabase.h"

#include <array>
#include <memory>
#include <vector>

namespace test_support {

/// A small mesh in a database of its own. Node and element ids run from 1 in the order in which things are added.
struct NamedMesh {
  NamedMesh();

  std::unique_ptr<Tarn::MeshDatabase> database;
  Tarn::SMeshOwnerType* owner;        ///< owns everything; of any dimension
  std::vector<Tarn::Handle<0>> nodes; ///< all nodes, in the order added
  MeshVector mesh;                    ///< all elements, in the order added; no nodes

  /// Adds a node.
  Tarn::Handle<0> add_node(double x, double y, double z);
  /// Adds an element on nodes given by their positions in `nodes`.
  Tarn::Handle<1> add_element(Tarn::ElementType type, const std::vector<int>& node_positions);
  /// Adds an element of the kind, with nodes of its own and as many as asked for: corners, then mid-side nodes, face
  /// centres, the body's centre. It fills the unit cube (square, interval) at `x`; superelements lie along a line.
  Tarn::Handle<1> add_own_element(Tarn::ElementType type, int node_count, double x = 0);
};

/// The corner count of a kind; 3 for superelements.
int linear_node_count(Tarn::ElementType type);

/// One element of the kind and node count; see `NamedMesh::add_own_element`.
NamedMesh one_element(Tarn::ElementType type, int node_count);
/// A unit hexahedron.
NamedMesh one_hex();
/// A unit hexahedron, and a quadrilateral on each of its six sides.
NamedMesh one_hex_and_its_skin();
/// Two unit hexahedra that share the side x = 1.
NamedMesh two_hexes();
/// nx * ny * nz unit hexahedra; x runs fastest.
NamedMesh hex_block(int nx, int ny, int nz);
/// nx * ny * nz unit cubes of six tetrahedra each.
NamedMesh tet_block(int nx, int ny, int nz);
/// nx * ny unit quadrilaterals in the plane z = 0; x runs fastest.
NamedMesh quad_sheet(int nx, int ny);
/// n edges of unit length in a row along x.
NamedMesh edge_chain(int n);
/// One linear element of each of the nine kinds, in the order of the kinds, side by side along x.
NamedMesh each_linear_kind();
/// One element of each kind with mid-side nodes (superelement: 5 nodes), side by side along x.
NamedMesh each_quadratic_kind();
/// n nodes along x without elements.
NamedMesh lone_nodes(int n);

} // namespace test_support
