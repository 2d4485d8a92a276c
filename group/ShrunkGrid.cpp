#include "group/ShrunkGrid.h"

#include "group/CoordinateRange.h"
#include "group/EntityColors.h"
#include "mesh/MeshQueries.h"
#include "mesh/database/ElementType.h"
#include "mesh/database/MDBDefines.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <numeric>
#include <type_traits>

namespace {

using Node = Tarn::Handle<0>;
using Indexes = std::vector<std::size_t>;

// ------------------------------------------------------------------------------------------ what a kind becomes

/// The cells of an element that has a given number of nodes.
struct CellPattern {
  unsigned char cell_type;
  std::size_t point_count;    // the element's first nodes get a point each
  std::vector<Indexes> cells; // which of these points each cell uses

  std::size_t use_count() const {
    return std::accumulate(cells.begin(), cells.end(), std::size_t(0),
                           [](std::size_t sum, const Indexes& cell) { return sum + cell.size(); });
  }
};

CellPattern one_cell(unsigned char cell_type, std::size_t point_count) {
  Indexes points(point_count);
  std::iota(points.begin(), points.end(), std::size_t(0));
  return {cell_type, point_count, {points}};
}

CellPattern one_polygon_a_side(MDBDefines::ElementType type, std::size_t node_count) {
  CellPattern pattern{VTK_POLYGON, node_count, {}};
  for (int side = 0; side < MDBDefines::NumSides(type); ++side) {
    const std::uint32_t* nodes = MDBDefines::SidesetNodeIndices(type, side);
    if (nodes) pattern.cells.emplace_back(nodes, nodes + MDBDefines::NodesPerSide(type, side));
  }
  return pattern;
}

CellPattern pattern_of(Tarn::ElementType kind, std::size_t node_count) {
  switch (kind) {
  case Tarn::OneNode:
    return one_cell(VTK_VERTEX, 1);
  case Tarn::Edge:
    return one_cell(VTK_LINE, 2);
  case Tarn::Tri:
    return one_cell(VTK_TRIANGLE, 3);
  case Tarn::Quad:
    return one_cell(VTK_QUAD, 4);
  case Tarn::Superelement:
    return one_cell(VTK_POLY_VERTEX, node_count);
  default:
    return one_polygon_a_side(MDBDefines::ElementTypeFromTarnType(kind), node_count);
  }
}

std::size_t corner_count(Tarn::ElementType kind) {
  return static_cast<std::size_t>(std::max(0, MDBDefines::NodesPerElement(MDBDefines::ElementTypeFromTarnType(kind))));
}

// ------------------------------------------------------------------------------------------ what the database gives

/// Elements of one kind that can be drawn.
struct Elements {
  Indexes positions;       // in the kind's list
  Indexes node_counts;     // of each
  std::vector<Node> nodes; // concatenated
  std::vector<float> xyz;  // three for each node
};

bool is_null(Node node) { return node.value == 0; }

// Padding goes, and with it each element that lacks a corner. Superelements have as many nodes as they have.
void drop_nulls(Tarn::ElementType kind, std::size_t stride, Elements& read) {
  const std::size_t least = kind == Tarn::Superelement ? 1 : stride;
  const std::size_t element_count = read.nodes.size() / stride;
  read.positions.reserve(element_count);
  read.node_counts.reserve(element_count);
  auto end = read.nodes.begin();
  for (std::size_t i = 0; i < element_count; ++i) {
    const auto first = read.nodes.begin() + static_cast<std::ptrdiff_t>(i * stride);
    const auto last = std::remove_copy_if(first, first + static_cast<std::ptrdiff_t>(stride), end, is_null);
    const auto count = static_cast<std::size_t>(last - end);
    if (count < least) continue;
    end = last;
    read.positions.push_back(i);
    read.node_counts.push_back(count);
  }
  read.nodes.erase(end, read.nodes.end());
}

Elements read_elements(const ShrunkGridSource& source, Tarn::ElementType kind) {
  Elements read;
  const std::size_t stride = corner_count(kind);
  if (source.mesh.elements[kind].empty() || stride == 0) return read;
  OB::get_element_type_connectivity(source.mesh.elements[kind], static_cast<int>(stride), read.nodes, source.database);
  drop_nulls(kind, stride, read);
  read.xyz.resize(3 * read.nodes.size());
  if (!read.nodes.empty()) OB::get_coordinates(read.nodes, read.xyz.data(), source.database);
  return read;
}

// ------------------------------------------------------------------------------------------ the grid

/// `PointArray`: in which precision points are kept. `IdArray`: how wide offsets and point ids are.
template <class PointArray, class IdArray> class ShrunkGridBuilder {
public:
  explicit ShrunkGridBuilder(const ShrunkGridSource& source);

  void add(Tarn::ElementType kind);
  bool needs_double() const { return range_.needs_double(); }
  void install(vtkUnstructuredGrid* grid);

private:
  using Id = typename IdArray::ValueType;
  using Coordinate = typename PointArray::ValueType;

  void make_room(std::size_t points, std::size_t cells, std::size_t uses);
  void add_points(const Node* nodes, const float* xyz, std::size_t node_count, std::size_t point_count);
  void add_cells(const CellPattern& pattern, TovanColor color);
  TovanColor color_of(Tarn::ElementType kind, std::size_t i) const;

  const ShrunkGridSource& source_;
  const bool color_cells_;
  const bool color_points_;
  CoordinateRange range_;
  vtkNew<PointArray> coordinates_;
  vtkNew<IdArray> offsets_;
  vtkNew<IdArray> connectivity_;
  vtkNew<vtkUnsignedCharArray> types_;
  vtkSmartPointer<vtkUnsignedCharArray> colors_ = make_color_array(0);
  Id point_count_ = 0;
  Id use_count_ = 0;
  // Where the next entry of each array goes.
  Coordinate* coordinate_ = nullptr;
  Id* offset_ = nullptr;
  Id* use_ = nullptr;
  unsigned char* type_ = nullptr;
  unsigned char* color_ = nullptr;
};

template <class PointArray, class IdArray>
ShrunkGridBuilder<PointArray, IdArray>::ShrunkGridBuilder(const ShrunkGridSource& source)
    : source_(source), color_cells_(source.colors.type == GMeshGroup::CellColors),
      color_points_(source.colors.type == GMeshGroup::VertexColors) {
  coordinates_->SetNumberOfComponents(3);
  offsets_->InsertNextValue(0);
}

template <class PointArray, class IdArray> void ShrunkGridBuilder<PointArray, IdArray>::add(Tarn::ElementType kind) {
  const Elements read = read_elements(source_, kind);
  if (read.positions.empty()) return;
  const bool any_number = kind == Tarn::Superelement;
  CellPattern pattern = pattern_of(kind, corner_count(kind));
  const std::size_t count = read.positions.size();
  if (any_number)
    make_room(read.nodes.size(), count, read.nodes.size());
  else
    make_room(count * pattern.point_count, count * pattern.cells.size(), count * pattern.use_count());

  std::size_t node = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (any_number) pattern = pattern_of(kind, read.node_counts[i]);
    add_cells(pattern, color_cells_ ? color_of(kind, read.positions[i]) : TovanColor());
    add_points(&read.nodes[node], &read.xyz[3 * node], read.node_counts[i], pattern.point_count);
    node += read.node_counts[i];
  }
}

template <class PointArray, class IdArray>
void ShrunkGridBuilder<PointArray, IdArray>::make_room(std::size_t points, std::size_t cells, std::size_t uses) {
  const auto more = [](auto& array, std::size_t values) {
    return array->WritePointer(array->GetNumberOfValues(), static_cast<vtkIdType>(values));
  };
  coordinate_ = more(coordinates_, 3 * points);
  offset_ = more(offsets_, cells);
  use_ = more(connectivity_, uses);
  type_ = more(types_, cells);
  if (color_cells_) color_ = more(colors_, 4 * cells);
  if (color_points_) color_ = more(colors_, 4 * points);
}

// Means and differences in single precision, as the database gives coordinates; only the scaling is in double.
template <class PointArray, class IdArray>
void ShrunkGridBuilder<PointArray, IdArray>::add_points(const Node* nodes, const float* xyz, std::size_t node_count,
                                                        std::size_t point_count) {
  float center[3] = {0, 0, 0};
  for (std::size_t i = 0; i < 3 * node_count; ++i)
    center[i % 3] += xyz[i];
  for (float& value : center)
    value /= static_cast<float>(node_count);
  for (std::size_t point = 0; point < point_count; ++point) {
    double shrunk[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float difference = xyz[3 * point + axis] - center[axis];
      shrunk[axis] = static_cast<double>(center[axis]) + source_.factor * static_cast<double>(difference);
      *coordinate_++ = static_cast<Coordinate>(shrunk[axis]);
    }
    range_.add(shrunk[0], shrunk[1], shrunk[2]);
    if (!color_points_) continue;
    source_.colors.of_vertex(nodes[point]).to_rgba(color_);
    color_ += 4;
  }
  point_count_ += static_cast<Id>(point_count);
}

template <class PointArray, class IdArray>
void ShrunkGridBuilder<PointArray, IdArray>::add_cells(const CellPattern& pattern, TovanColor color) {
  for (const Indexes& cell : pattern.cells) {
    for (const std::size_t point : cell)
      *use_++ = point_count_ + static_cast<Id>(point);
    use_count_ += static_cast<Id>(cell.size());
    *offset_++ = use_count_;
    *type_++ = pattern.cell_type;
    if (!color_cells_) continue;
    color.to_rgba(color_);
    color_ += 4;
  }
}

template <class PointArray, class IdArray>
TovanColor ShrunkGridBuilder<PointArray, IdArray>::color_of(Tarn::ElementType kind, std::size_t i) const {
  if (!source_.element_positions) return source_.colors.of_element(kind, static_cast<int>(i));
  const std::vector<int>& positions = (*source_.element_positions)[kind];
  return source_.colors.of_element(kind, i < positions.size() ? positions[i] : -1);
}

template <class PointArray, class IdArray>
void ShrunkGridBuilder<PointArray, IdArray>::install(vtkUnstructuredGrid* grid) {
  vtkNew<vtkPoints> points;
  points->SetData(coordinates_);
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets_.Get(), connectivity_.Get());
  // Drops what the grid holds; resetting it would empty arrays that are shared.
  grid->Initialize();
  grid->SetPoints(points);
  grid->SetCells(types_, cells);
  if (color_cells_) grid->GetCellData()->SetScalars(colors_);
  if (color_points_) grid->GetPointData()->SetScalars(colors_);
  grid->Modified();
}

template <class PointArray, class IdArray> bool fill(const ShrunkGridSource& source, vtkUnstructuredGrid* grid) {
  constexpr bool is_double = std::is_same_v<typename PointArray::ValueType, double>;
  ShrunkGridBuilder<PointArray, IdArray> builder(source);
  for (unsigned kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind)
    builder.add(static_cast<Tarn::ElementType>(kind));
  if (!is_double && builder.needs_double()) return false;
  builder.install(grid);
  return true;
}

template <class IdArray> void fill(const ShrunkGridSource& source, vtkUnstructuredGrid* grid) {
  // Far away meshes are rare: they are made twice, so that all others never take up double the memory.
  if (!fill<vtkFloatArray, IdArray>(source, grid)) fill<vtkDoubleArray, IdArray>(source, grid);
}

} // namespace

void fill_shrunk_grid(const ShrunkGridSource& source, vtkUnstructuredGrid* grid, std::size_t narrow_uses) {
  std::size_t max_uses = 0;
  for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type) {
    const auto kind = static_cast<Tarn::ElementType>(type);
    max_uses += source.mesh.elements[kind].size() * pattern_of(kind, corner_count(kind)).use_count();
  }
  max_uses <= narrow_uses ? fill<vtkTypeInt32Array>(source, grid) : fill<vtkTypeInt64Array>(source, grid);
}
