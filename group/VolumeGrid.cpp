#include "group/VolumeGrid.h"

#include "group/EntityColors.h"
#include "group/MetNodes.h"
#include "group/NodeCoordinates.h"
#include "group/NodePointTable.h"
#include "mesh/MeshQueries.h"
#include "mesh/database/ElementType.h"
#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"
#include "mesh/database/Side.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <type_traits>

namespace {

using Node = Tarn::Handle<0>;

constexpr Tarn::ElementType skinned_kinds[] = {Tarn::Tri, Tarn::Quad, Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid};

bool is_null(Node node) { return node.value == 0; }

/// The places of the values in ascending order; none when they ascend already.
std::vector<std::size_t> order_of(const std::vector<int>& values) {
  std::vector<std::size_t> order;
  if (std::is_sorted(values.begin(), values.end())) return order;
  order.resize(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
  return order;
}

/// The first place that has the position; the largest number when none has. `order` is that of `order_of`.
std::size_t find_position(const std::vector<int>& positions, const std::vector<std::size_t>& order, int position) {
  if (order.empty()) {
    const auto found = std::lower_bound(positions.begin(), positions.end(), position);
    const bool is_there = found != positions.end() && *found == position;
    return is_there ? static_cast<std::size_t>(found - positions.begin()) : std::numeric_limits<std::size_t>::max();
  }
  const auto found = std::lower_bound(order.begin(), order.end(), position,
                                      [&](std::size_t place, int wanted) { return positions[place] < wanted; });
  return found != order.end() && positions[*found] == position ? *found : std::numeric_limits<std::size_t>::max();
}

/// How a face is drawn. No nodes: not at all.
struct FaceShape {
  unsigned char cell_type;
  int node_count;
};

// Centre nodes, the last of an odd number (the fourth of a triangle), are left out: VTK would draw them otherwise than
// the neighbouring solids' sides.
FaceShape shape_of(int kind, int node_count) {
  if (kind == 3 && (node_count == 3 || node_count == 4)) return {VTK_TRIANGLE, 3};
  if (kind == 3 && (node_count == 6 || node_count == 7)) return {VTK_QUADRATIC_TRIANGLE, 6};
  if (kind == 4 && (node_count == 4 || node_count == 5)) return {VTK_QUAD, 4};
  if (kind == 4 && (node_count == 8 || node_count == 9)) return {VTK_QUADRATIC_QUAD, 8};
  return {VTK_EMPTY_CELL, 0};
}

/// Calls `work` with the number of nodes, as a constant for linear faces: its loops are unrolled.
template <class Work> void with_constant(int node_count, Work work) {
  switch (node_count) {
  case 3:
    return work(std::integral_constant<int, 3>());
  case 4:
    return work(std::integral_constant<int, 4>());
  default:
    return work(node_count);
  }
}

// Looks at all of them: hardly any is null.
template <class Count> bool has_null(const Node* nodes, Count count) {
  bool found = false;
  for (int i = 0; i < count; ++i)
    found = found | is_null(nodes[i]);
  return found;
}

constexpr std::size_t most_nodes_of_a_face = 8; // of those that are drawn

int position_of(std::size_t i, const std::vector<int>* positions) {
  if (!positions) return static_cast<int>(i);
  return i < positions->size() ? (*positions)[i] : -1;
}

/// How much room is made for a grid. There are at most so many cells, but there can be more uses of points.
struct Size {
  std::size_t cells;
  std::size_t uses;
};

/// Writes the grid's arrays front to back. `IdArray` holds offsets and point ids: 32 bits where these suffice, since
/// fresh memory costs more than the work on it.
template <class IdArray> class VolumeGridBuilder {
public:
  VolumeGridBuilder(const VolumeGridSource& source, const Size& room);

  void add_nodes();
  void add_elements(Tarn::ElementType kind, unsigned char cell_type, int stride, int least_nodes);
  void add_faces(const std::vector<Side*>& skin);
  vtkSmartPointer<vtkUnstructuredGrid> finish();

private:
  using Id = typename IdArray::ValueType;

  template <class Count>
  void add_cell(unsigned char type, const Node* nodes, Count node_count, Tarn::Handle<1> element);
  void make_room_for_uses(vtkIdType count);
  void color_cell(TovanColor color);
  const std::vector<int>* positions_of(Tarn::ElementType kind) const;
  bool has_element(Tarn::ElementType kind, const Side& side) const;
  TovanColor color_of(const Side& side);
  void trim();
  void number_points();
  vtkSmartPointer<vtkUnsignedCharArray> vertex_colors() const;

  const VolumeGridSource& source_;
  const bool color_cells_;
  vtkNew<vtkUnsignedCharArray> types_;
  vtkNew<IdArray> offsets_;
  vtkNew<IdArray> connectivity_;
  vtkNew<vtkTypeUInt64Array> elem_ids_;
  vtkNew<vtkTypeUInt64Array> node_ids_;
  MetNodes met_nodes_;
  vtkSmartPointer<vtkUnsignedCharArray> cell_colors_;
  Id* uses_ = nullptr; // where the node stands among those met, until points are numbered
  Id use_room_ = 0;
  Id use_count_ = 0;
  unsigned char* type_;
  Id* offset_;
  vtkTypeUInt64* elem_id_;
  unsigned char* cell_color_ = nullptr;
  Tarn::ElementType side_kind_ = Tarn::Hex; // of the last side's element
  // By kind, the places of the list's entries in the order of their positions; empty where the list is in that order
  // itself, as those are that a clipping plane leaves.
  std::vector<std::size_t> by_position_[10];
};

template <class IdArray>
VolumeGridBuilder<IdArray>::VolumeGridBuilder(const VolumeGridSource& source, const Size& room)
    : source_(source), color_cells_(source.colors.type == GMeshGroup::CellColors), met_nodes_(*node_ids_, room.cells) {
  const auto size = static_cast<vtkIdType>(room.cells);
  elem_ids_->SetName("ElemIds");
  node_ids_->SetName("NodeIds");
  type_ = types_->WritePointer(0, size);
  offset_ = offsets_->WritePointer(0, size + 1);
  make_room_for_uses(static_cast<vtkIdType>(room.uses));
  elem_id_ = elem_ids_->WritePointer(0, size);
  *offset_++ = 0;
  if (!color_cells_) return;
  cell_colors_ = make_color_array(size);
  cell_color_ = cell_colors_->GetPointer(0);
  for (const Tarn::ElementType kind : skinned_kinds)
    if (const std::vector<int>* const positions = positions_of(kind)) by_position_[kind] = order_of(*positions);
}

template <class IdArray> void VolumeGridBuilder<IdArray>::add_nodes() {
  const std::vector<Node>& nodes = source_.mesh.nodes;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (is_null(nodes[i])) continue;
    add_cell(VTK_VERTEX, &nodes[i], 1, {});
    if (color_cells_) color_cell(source_.colors.of_node(position_of(i, source_.node_positions)));
  }
}

template <class IdArray>
void VolumeGridBuilder<IdArray>::add_elements(Tarn::ElementType kind, unsigned char cell_type, int stride,
                                              int least_nodes) {
  const std::vector<Tarn::Handle<1>>& elements = source_.mesh.elements[kind];
  if (elements.empty() || stride <= 0) return;
  std::vector<Node> nodes;
  OB::get_element_type_connectivity(elements, stride, nodes, source_.database);
  Node* first = nodes.data();
  for (std::size_t i = 0; i < elements.size(); ++i, first += stride) {
    // Elements with fewer nodes than the stride are filled up with null handles.
    const auto count = static_cast<int>(std::remove_if(first, first + stride, is_null) - first);
    if (count < least_nodes) continue;
    add_cell(cell_type, first, count, elements[i]);
    if (color_cells_) color_cell(source_.colors.of_element(kind, position_of(i, positions_of(kind))));
  }
}

template <class IdArray> void VolumeGridBuilder<IdArray>::add_faces(const std::vector<Side*>& skin) {
  int kind = 0;
  int node_count = 0;
  FaceShape shape = {VTK_EMPTY_CELL, 0};
  for (const Side* side : skin) {
    if (side->kind != kind || side->node_count != node_count) {
      kind = side->kind;
      node_count = side->node_count;
      shape = shape_of(kind, node_count);
    }
    with_constant(shape.node_count, [&](auto count) {
      if (count == 0 || has_null(side->nodes, count)) return;
      add_cell(shape.cell_type, side->nodes, count, side->element);
      if (color_cells_) color_cell(color_of(*side));
    });
  }
}

template <class IdArray>
template <class Count>
void VolumeGridBuilder<IdArray>::add_cell(unsigned char type, const Node* nodes, Count node_count,
                                          Tarn::Handle<1> element) {
  const Id first_use = use_count_;
  use_count_ += node_count;
  if (use_count_ > use_room_) make_room_for_uses(use_count_);
  met_nodes_.meet(nodes, node_count, uses_ + first_use);
  *offset_++ = use_count_;
  *elem_id_++ = element.value;
  *type_++ = type;
}

template <class IdArray> void VolumeGridBuilder<IdArray>::make_room_for_uses(vtkIdType count) {
  uses_ = connectivity_->WritePointer(0, count);
  use_room_ = static_cast<Id>(connectivity_->GetSize());
}

template <class IdArray> void VolumeGridBuilder<IdArray>::color_cell(TovanColor color) {
  color.to_rgba(cell_color_);
  cell_color_ += 4;
}

template <class IdArray>
const std::vector<int>* VolumeGridBuilder<IdArray>::positions_of(Tarn::ElementType kind) const {
  return source_.element_positions ? &(*source_.element_positions)[kind] : nullptr;
}

// Colours are listed by kind of element, which a side does not tell: it follows from the list that has the element at
// the side's position, so that the database need not be asked.
template <class IdArray> TovanColor VolumeGridBuilder<IdArray>::color_of(const Side& side) {
  if (!has_element(side_kind_, side)) {
    const auto found = std::find_if(std::begin(skinned_kinds), std::end(skinned_kinds),
                                    [this, &side](Tarn::ElementType kind) { return has_element(kind, side); });
    if (found == std::end(skinned_kinds)) return TovanColor(255, 255, 255, 255);
    side_kind_ = *found;
  }
  return source_.colors.of_element(side_kind_, side.position);
}

template <class IdArray> bool VolumeGridBuilder<IdArray>::has_element(Tarn::ElementType kind, const Side& side) const {
  const std::vector<Tarn::Handle<1>>& elements = source_.mesh.elements[kind];
  const std::vector<int>* const positions = positions_of(kind);
  const std::size_t place = positions ? find_position(*positions, by_position_[kind], side.position)
                                      : static_cast<std::size_t>(side.position);
  return place < elements.size() && elements[place] == side.element;
}

template <class IdArray> vtkSmartPointer<vtkUnstructuredGrid> VolumeGridBuilder<IdArray>::finish() {
  trim();
  number_points();
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets_.Get(), connectivity_.Get());
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(read_points(source_.database, node_ids_));
  grid->SetCells(types_, cells);
  grid->GetPointData()->AddArray(node_ids_);
  grid->GetCellData()->AddArray(elem_ids_);
  if (color_cells_) grid->GetCellData()->SetScalars(cell_colors_);
  if (source_.colors.type == GMeshGroup::VertexColors) grid->GetPointData()->SetScalars(vertex_colors());
  return grid;
}

// What was left out took no cell.
template <class IdArray> void VolumeGridBuilder<IdArray>::trim() {
  const vtkIdType cell_count = type_ - types_->GetPointer(0);
  types_->SetNumberOfTuples(cell_count);
  offsets_->SetNumberOfTuples(cell_count + 1);
  connectivity_->SetNumberOfTuples(use_count_);
  connectivity_->Squeeze();
  elem_ids_->SetNumberOfTuples(cell_count);
  if (color_cells_) cell_colors_->SetNumberOfTuples(cell_count);
}

template <class IdArray> void VolumeGridBuilder<IdArray>::number_points() {
  const std::size_t count = met_nodes_.size();
  std::vector<int> points(count); // first the nodes' ids
  if (count > 0) source_.database->get_node_ids(count, met_nodes_.nodes(), points.data());
  const std::size_t point_count = NodePointTable::shared().number(count, points.data(), node_ids_->GetPointer(0));
  node_ids_->SetNumberOfTuples(static_cast<vtkIdType>(point_count));
  node_ids_->Squeeze();

  Id* const uses = connectivity_->GetPointer(0);
  std::transform(uses, uses + use_count_, uses, [&points](Id place) {
    return static_cast<Id>(static_cast<std::uint32_t>(points[static_cast<std::size_t>(place)]));
  });
}

template <class IdArray> vtkSmartPointer<vtkUnsignedCharArray> VolumeGridBuilder<IdArray>::vertex_colors() const {
  const vtkIdType count = node_ids_->GetNumberOfTuples();
  auto colors = make_color_array(count);
  const vtkTypeUInt64* node = node_ids_->GetPointer(0);
  unsigned char* rgba = colors->GetPointer(0);
  for (vtkIdType i = 0; i < count; ++i)
    source_.colors.of_vertex({node[i]}).to_rgba(rgba + 4 * i);
  return colors;
}

/// How many nodes to ask for per element. Edges may have a mid-side node besides their corners.
int stride_of(Tarn::ElementType kind) { return MDBDefines::NodesPerElement(kind) + (kind == Tarn::Edge ? 1 : 0); }

template <class IdArray>
vtkSmartPointer<vtkUnstructuredGrid> build(const VolumeGridSource& source, const std::vector<Side*>& skin,
                                           const Size& room) {
  VolumeGridBuilder<IdArray> builder(source, room);
  builder.add_nodes();
  builder.add_elements(Tarn::Edge, VTK_POLY_LINE, stride_of(Tarn::Edge), 2);
  builder.add_elements(Tarn::OneNode, VTK_VERTEX, stride_of(Tarn::OneNode), 1);
  builder.add_elements(Tarn::Superelement, VTK_POLY_VERTEX, stride_of(Tarn::Superelement), 1);
  builder.add_faces(skin);
  return builder.finish();
}

} // namespace

vtkSmartPointer<vtkUnstructuredGrid> make_volume_grid(const VolumeGridSource& source, const std::vector<Side*>& skin,
                                                      std::size_t narrow_uses) {
  // Most faces are like the first: room for more than that would be memory touched for nothing.
  const int nodes_of_a_face = skin.empty() ? 0 : shape_of(skin.front()->kind, skin.front()->node_count).node_count;
  Size room = {source.mesh.nodes.size(), source.mesh.nodes.size()};
  for (const Tarn::ElementType kind : {Tarn::Edge, Tarn::OneNode, Tarn::Superelement}) {
    const std::size_t count = source.mesh.elements[kind].size();
    room.cells += count;
    room.uses += count * static_cast<std::size_t>(std::max(0, stride_of(kind)));
  }
  const std::size_t most_uses = room.uses + skin.size() * most_nodes_of_a_face;
  room.cells += skin.size();
  room.uses += skin.size() * static_cast<std::size_t>(nodes_of_a_face);
  return most_uses <= narrow_uses ? build<vtkTypeInt32Array>(source, skin, room)
                                  : build<vtkTypeInt64Array>(source, skin, room);
}
