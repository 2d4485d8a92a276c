#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"
#include "mesh/database/SMeshOwnerType.h"
#include "reference/tarn/MeshDatabase.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the proofs hold the pick system against: meshes written down in plain lists, with tables of their own. The
/// database is filled from them; nothing is ever read back from it.
namespace proof {

using Point = std::array<double, 3>;

/// An element of a mesh.
struct Element {
  Tarn::ElementType type;
  std::vector<int> nodes; ///< positions in `Mesh::points`; corners, then mid-side nodes in VTK's order
  int owner;              ///< position in `Mesh::owners`
  bool curved = false;    ///< mid-side nodes lie off the straight sides
  Tarn::Handle<1> handle; ///< once filled
};

/// A half space that is kept; `normal` points into it. Elements go when all their nodes lie beyond.
struct Clip {
  bool on = false;
  Point origin = {0, 0, 0};
  Point normal = {0, 0, 1};
};

/// Points and elements of any kind, in owners.
struct Mesh {
  std::vector<Point> points;
  std::vector<Element> elements;
  std::vector<std::pair<int, int>> lone_nodes; ///< nodes drawn in their own right: position in `points`, owner
  int owner_count = 1;

  std::unique_ptr<Tarn::MeshDatabase> database; ///< once filled
  std::vector<Tarn::SMeshOwnerType*> owners;
  std::vector<Tarn::Handle<0>> handles; ///< of `points`

  int add_point(Point point);
  void add(Tarn::ElementType type, std::vector<int> nodes, int owner = 0);
  /// Puts a node between the corners of every edge of every element, and moves it with `bend`.
  void make_quadratic(const std::function<Point(Point)>& bend = nullptr);
  /// Moves every point.
  void move(const std::function<Point(Point)>& where);
  /// Makes the database.
  void fill();

  /// The elements of an owner as a host hands them over.
  MeshVector of_owner(int owner) const;
  /// Of each element, whether it shows: its owner is not hidden, and some node is left.
  std::vector<char> shown(const std::vector<int>& hidden_owners, const Clip& clip) const;
  /// The same of each lone node.
  std::vector<char> shown_lone_nodes(const std::vector<int>& hidden_owners, const Clip& clip) const;
  /// Smallest and largest coordinates: x y z x y z.
  std::array<double, 6> bounds() const;
};

/// The corners of the kind's faces, of a shell its own; each a fan around its first corner.
const std::vector<std::vector<int>>& faces_of(Tarn::ElementType type);
/// The corners of the kind's edges, in the order of their mid-side nodes.
const std::vector<std::array<int, 2>>& edges_of(Tarn::ElementType type);
/// How many corners the kind has; 0 for superelements, all of whose nodes count.
int corner_count(Tarn::ElementType type);

/// Splits a cube (corners in a hexahedron's order) into elements of a kind and adds them: 1 hexahedron, 2 wedges, 6
/// tetrahedra, 6 pyramids.
void add_cube(Mesh& mesh, Tarn::ElementType type, const std::array<int, 8>& corners, int owner = 0);
/// nx * ny * nz unit cubes, each of the kind and in the owner that the functions say; owner -1 leaves a hole.
Mesh block(int nx, int ny, int nz, const std::function<Tarn::ElementType(int, int, int)>& kind,
           const std::function<int(int, int, int)>& owner = nullptr);
/// The same of one kind, in one owner.
Mesh block(int nx, int ny, int nz, Tarn::ElementType kind);
/// nx * ny unit squares in the plane z = 0, each one quadrilateral or two triangles.
Mesh sheet(int nx, int ny, Tarn::ElementType kind);
/// Covers every `nth` outer face of the solids with a shell on the same nodes, in `owner`.
void add_shells(Mesh& mesh, int nth, int owner);

} // namespace proof
