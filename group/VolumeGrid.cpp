#include "group/VolumeGrid.h"

#include "group/EntityColors.h"
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

FaceShape shape_of(const Side& side) {
  const FaceShape shape = shape_of(side.kind, side.node_count);
  const bool whole = std::none_of(side.nodes, side.nodes + shape.node_count, is_null);
  return whole ? shape : FaceShape{VTK_EMPTY_CELL, 0};
}

/// The nodes of consecutive cells, concatenated: somebody else's array, or a copy.
struct NodeList {
  std::vector<Node> copy;
  const Node* nodes = nullptr;
  std::size_t count = 0;
};

NodeList own(std::vector<Node> nodes) {
  NodeList list;
  list.copy = std::move(nodes);
  list.nodes = list.copy.data();
  list.count = list.copy.size();
  return list;
}

// The nodes of all faces that are drawn, `count` in all.
std::vector<Node> nodes_of(const std::vector<Side*>& skin, std::size_t count) {
  std::vector<Node> nodes;
  nodes.reserve(count);
  for (const Side* side : skin)
    nodes.insert(nodes.end(), side->nodes, side->nodes + shape_of(*side).node_count);
  return nodes;
}

int position_of(std::size_t i, const std::vector<int>* positions) {
  if (!positions) return static_cast<int>(i);
  return i < positions->size() ? (*positions)[i] : -1;
}

/// Writes the grid's arrays front to back. `IdArray` holds offsets and point ids: 32 bits where these suffice, since
/// fresh memory costs more than the work on it.
template <class IdArray> class VolumeGridBuilder {
public:
  VolumeGridBuilder(const VolumeGridSource& source, std::size_t max_cells);

  void add_nodes();
  void add_elements(Tarn::ElementType kind, unsigned char cell_type, int stride, int least_nodes);
  void add_faces(const std::vector<Side*>& skin);
  vtkSmartPointer<vtkUnstructuredGrid> finish();

private:
  using Id = typename IdArray::ValueType;

  void add_cell(unsigned char type, int node_count, Tarn::Handle<1> element);
  void color_cell(TovanColor color);
  const std::vector<int>* positions_of(Tarn::ElementType kind) const;
  bool has_element(Tarn::ElementType kind, const Side& side) const;
  TovanColor color_of(const Side& side);
  void number_points();
  void number_points(const NodeList& list, Id* point_ids, vtkTypeUInt64*& next_node);
  void trim();
  vtkSmartPointer<vtkUnsignedCharArray> vertex_colors() const;

  const VolumeGridSource& source_;
  const bool color_cells_;
  std::vector<NodeList> lists_;
  vtkIdType cell_count_ = 0;
  Id connectivity_size_ = 0;
  vtkNew<vtkUnsignedCharArray> types_;
  vtkNew<IdArray> offsets_;
  vtkNew<IdArray> connectivity_;
  vtkNew<vtkTypeUInt64Array> elem_ids_;
  vtkNew<vtkTypeUInt64Array> node_ids_;
  vtkSmartPointer<vtkUnsignedCharArray> cell_colors_;
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
VolumeGridBuilder<IdArray>::VolumeGridBuilder(const VolumeGridSource& source, std::size_t max_cells)
    : source_(source), color_cells_(source.colors.type == GMeshGroup::CellColors) {
  const auto size = static_cast<vtkIdType>(max_cells);
  elem_ids_->SetName("ElemIds");
  node_ids_->SetName("NodeIds");
  type_ = types_->WritePointer(0, size);
  offset_ = offsets_->WritePointer(0, size + 1);
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
  const bool whole = std::none_of(nodes.begin(), nodes.end(), is_null);
  NodeList list;
  list.nodes = nodes.data();
  list.count = nodes.size();
  if (!whole) {
    std::vector<Node> known;
    std::remove_copy_if(nodes.begin(), nodes.end(), std::back_inserter(known), is_null);
    list = own(std::move(known));
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (is_null(nodes[i])) continue;
    add_cell(VTK_VERTEX, 1, {});
    if (color_cells_) color_cell(source_.colors.of_node(position_of(i, source_.node_positions)));
  }
  lists_.push_back(std::move(list));
}

template <class IdArray>
void VolumeGridBuilder<IdArray>::add_elements(Tarn::ElementType kind, unsigned char cell_type, int stride,
                                              int least_nodes) {
  const std::vector<Tarn::Handle<1>>& elements = source_.mesh.elements[kind];
  if (elements.empty() || stride <= 0) return;
  std::vector<Node> nodes;
  OB::get_element_type_connectivity(elements, stride, nodes, source_.database);
  auto end = nodes.begin();
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const auto first = nodes.begin() + static_cast<std::ptrdiff_t>(i) * stride;
    // Elements with fewer nodes than the stride are filled up with null handles.
    const auto last = std::remove_copy_if(first, first + stride, end, is_null);
    const auto count = static_cast<int>(last - end);
    if (count < least_nodes) continue;
    end = last;
    add_cell(cell_type, count, elements[i]);
    if (color_cells_) color_cell(source_.colors.of_element(kind, position_of(i, positions_of(kind))));
  }
  nodes.erase(end, nodes.end());
  lists_.push_back(own(std::move(nodes)));
}

template <class IdArray> void VolumeGridBuilder<IdArray>::add_faces(const std::vector<Side*>& skin) {
  const Id first_node = connectivity_size_;
  NodeList list;
  // Where the skinner keeps the nodes of all sides in one block, in order, that block is the list.
  const Node* next = nullptr;
  bool one_block = true;
  for (std::size_t i = 0; i < skin.size(); ++i) {
    const Side& side = *skin[i];
    const FaceShape shape = shape_of(side);
    if (shape.node_count == 0) continue;
    if (!list.nodes) list.nodes = next = side.nodes;
    one_block = one_block && side.nodes == next;
    next = side.nodes + shape.node_count;
    add_cell(shape.cell_type, shape.node_count, side.element);
    if (color_cells_) color_cell(color_of(side));
  }
  list.count = static_cast<std::size_t>(connectivity_size_ - first_node);
  lists_.push_back(one_block ? std::move(list) : own(nodes_of(skin, list.count)));
}

template <class IdArray>
void VolumeGridBuilder<IdArray>::add_cell(unsigned char type, int node_count, Tarn::Handle<1> element) {
  connectivity_size_ += node_count;
  ++cell_count_;
  *type_++ = type;
  *offset_++ = connectivity_size_;
  *elem_id_++ = element.value;
}

template <class IdArray> void VolumeGridBuilder<IdArray>::color_cell(TovanColor color) {
  color.to_rgba(cell_color_);
  cell_color_ += 4;
}

template <class IdArray>
const std::vector<int>* VolumeGridBuilder<IdArray>::positions_of(Tarn::ElementType kind) const {
  return source_.element_positions ? &(*source_.element_positions)[kind] : nullptr;
}

// Colours are listed by kind of element, which a side does not tell.
// The kind of a side's element follows from the list that has it at the side's position: the database need not be
// asked.
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
  types_->SetNumberOfTuples(cell_count_);
  offsets_->SetNumberOfTuples(cell_count_ + 1);
  elem_ids_->SetNumberOfTuples(cell_count_);
  if (color_cells_) cell_colors_->SetNumberOfTuples(cell_count_);
}

template <class IdArray> void VolumeGridBuilder<IdArray>::number_points() {
  Id* point_ids = connectivity_->WritePointer(0, connectivity_size_);
  // At most one point per use; memory that is not written to costs nothing and goes with the resize.
  vtkTypeUInt64* const nodes = node_ids_->WritePointer(0, connectivity_size_);
  vtkTypeUInt64* next_node = nodes;
  NodePointTable& table = NodePointTable::shared();
  table.start(static_cast<std::uint32_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(connectivity_size_),
                                                                 std::numeric_limits<std::uint32_t>::max())));
  for (const NodeList& list : lists_) {
    number_points(list, point_ids, next_node);
    point_ids += list.count;
  }
  table.finish();
  node_ids_->Resize(next_node - nodes);
}

template <class IdArray>
void VolumeGridBuilder<IdArray>::number_points(const NodeList& list, Id* point_ids, vtkTypeUInt64*& next_node) {
  if (list.count == 0) return;
  // Ids are as wide as 32-bit point ids, which then take their place.
  std::vector<int> wide_ids;
  int* ids;
  if constexpr (std::is_same_v<Id, int>) {
    ids = point_ids;
    std::fill_n(ids, list.count, 0);
  } else {
    wide_ids.resize(list.count);
    ids = wide_ids.data();
  }
  source_.database->get_node_ids(list.count, list.nodes, ids);
  NodePointTable& table = NodePointTable::shared();
  constexpr std::size_t ahead = 32; // uses, by which a fetch has arrived
  for (std::size_t i = 0; i < list.count; ++i) {
    if (i + ahead < list.count) table.prefetch(static_cast<std::uint32_t>(ids[i + ahead]));
    bool is_new;
    point_ids[i] = static_cast<Id>(table.point(static_cast<std::uint32_t>(ids[i]), is_new));
    if (is_new) *next_node++ = list.nodes[i].value;
  }
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
                                           std::size_t max_cells) {
  VolumeGridBuilder<IdArray> builder(source, max_cells);
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
  constexpr std::size_t most_nodes_of_a_face = 8;
  std::size_t max_cells = source.mesh.nodes.size() + skin.size();
  std::size_t max_uses = source.mesh.nodes.size() + most_nodes_of_a_face * skin.size();
  for (const Tarn::ElementType kind : {Tarn::Edge, Tarn::OneNode, Tarn::Superelement}) {
    max_cells += source.mesh.elements[kind].size();
    max_uses += source.mesh.elements[kind].size() * static_cast<std::size_t>(std::max(0, stride_of(kind)));
  }
  return max_uses <= narrow_uses ? build<vtkTypeInt32Array>(source, skin, max_cells)
                                 : build<vtkTypeInt64Array>(source, skin, max_cells);
}
