#include "readers/CellSorter.h"

#include "readers/CellKinds.h"
#include "readers/Refusal.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDataSetAttributes.h>

#include <algorithm>

namespace readers {

namespace {

// Batches of one data set by label and kind.
class BatchTable {
public:
  BatchTable(MeshDraft& draft, const CellFacts& facts)
      : draft_(draft), facts_(facts), index_(facts.owner_of_label.size() * slots, none) {}

  ElementBatch& batch(std::uint32_t label, Tarn::ElementType type, std::uint32_t nodes_per_element) {
    std::uint32_t& index = index_[label * slots + slot(type, nodes_per_element)];
    if (index == none) index = add(label, type, nodes_per_element);
    return draft_.batches[index];
  }

private:
  static constexpr std::size_t slots = 32;
  static constexpr std::uint32_t none = 0xffffffffu;

  // Three numbers of nodes for each kind at most: linear, without and with centres.
  static std::size_t slot(Tarn::ElementType type, std::uint32_t n) {
    constexpr std::uint32_t quadratic[9] = {0, 0, 3, 6, 8, 10, 20, 15, 13};
    return 3 * type + (n > quadratic[type] ? 2 : n == quadratic[type] ? 1 : 0);
  }

  std::uint32_t add(std::uint32_t label, Tarn::ElementType type, std::uint32_t nodes_per_element) {
    ElementBatch batch;
    batch.type = type;
    batch.nodes_per_element = nodes_per_element;
    batch.owner = facts_.owner_of_label[label];
    batch.from_side_set = facts_.from_side_set;
    draft_.batches.push_back(std::move(batch));
    return static_cast<std::uint32_t>(draft_.batches.size() - 1);
  }

  MeshDraft& draft_;
  const CellFacts& facts_;
  std::vector<std::uint32_t> index_;
};

bool is_ghost(unsigned char flags) {
  return (flags & (vtkDataSetAttributes::DUPLICATECELL | vtkDataSetAttributes::REFINEDCELL |
                   vtkDataSetAttributes::HIDDENCELL)) != 0;
}

int type_of(const CellList& list, std::size_t cell, std::size_t point_count) {
  if (list.types) return list.types[cell];
  return point_count < 5 ? list.short_types[point_count] : list.long_type;
}

class Sorter {
public:
  Sorter(MeshDraft& draft, const CellFacts& facts, const PointPlaces& places)
      : draft_(draft), facts_(facts), places_(places), table_(draft, facts) {}

  void add(const CellList& list) {
    if (list.cells->IsStorage64Bit())
      add(list, *list.cells->GetOffsetsArray64(), *list.cells->GetConnectivityArray64());
    else
      add(list, *list.cells->GetOffsetsArray32(), *list.cells->GetConnectivityArray32());
  }

  void report_strays() {
    if (strays_ == 0) return;
    draft_.leave_out("cells on points that do not exist", strays_);
    draft_.notices.push_back(first_stray_);
  }

private:
  template <typename Array> void add(const CellList& list, Array& offset_array, Array& connectivity_array) {
    const auto* offsets = offset_array.GetPointer(0);
    const auto* connectivity = connectivity_array.GetPointer(0);
    const auto cell_count = static_cast<std::size_t>(std::max<vtkIdType>(0, offset_array.GetNumberOfValues() - 1));
    check_offsets(offsets, cell_count, connectivity_array.GetNumberOfValues());
    reserve(list, offsets, cell_count);
    for (std::size_t cell = 0; cell < cell_count; ++cell, ++cell_id_)
      add_cell(list, cell, connectivity + offsets[cell], static_cast<std::size_t>(offsets[cell + 1] - offsets[cell]));
  }

  template <typename Int> static void check_offsets(const Int* offsets, std::size_t cell_count, vtkIdType length) {
    if (cell_count == 0) return;
    if (offsets[0] < 0) throw Refusal("cell offset 0 is negative");
    for (std::size_t cell = 0; cell < cell_count; ++cell)
      if (offsets[cell + 1] < offsets[cell])
        throw Refusal("cell offsets fall at cell " + std::to_string(cell));
      else if (offsets[cell + 1] > length)
        throw Refusal("cell offsets lie beyond the connectivity at cell " + std::to_string(cell));
  }

  // Room for the elements of fixed kinds, so that the arrays do not grow while they are filled.
  template <typename Int> void reserve(const CellList& list, const Int* offsets, std::size_t cell_count) {
    if (!facts_.label_of_cell.empty()) return;
    std::size_t counts[256] = {};
    for (std::size_t cell = 0; cell < cell_count; ++cell) {
      const int type = type_of(list, cell, static_cast<std::size_t>(offsets[cell + 1] - offsets[cell]));
      ++counts[type & 255];
    }
    for (int type = 0; type < 256; ++type) {
      const CellKind& kind = cell_kind(type);
      if (counts[type] == 0 || kind.rule != CellRule::OneElement) continue;
      ElementBatch& batch = table_.batch(0, kind.type, kind.node_count);
      batch.nodes.reserve(batch.nodes.size() + counts[type] * kind.node_count);
      batch.position.reserve(batch.size() + counts[type]);
    }
  }

  template <typename Int> void add_cell(const CellList& list, std::size_t cell, const Int* points, std::size_t count) {
    if (facts_.ghosts && is_ghost(facts_.ghosts[cell_id_])) return draft_.leave_out("ghost and blanked cells");
    const int type = type_of(list, cell, count);
    const CellKind& kind = cell_kind(type);
    if (kind.rule == CellRule::Unknown) return draft_.leave_out(name_of_left_out(type));
    if (!has_only_points(points, count)) return;
    switch (kind.rule) {
    case CellRule::OneElement:
      return add_one(kind, points, count);
    case CellRule::Points:
      return add_points(points, count);
    case CellRule::Polyline:
      return add_polyline(points, count);
    case CellRule::Strip:
      return add_strip(points, count);
    case CellRule::Polygon:
      return add_polygon(points, count);
    case CellRule::Unknown:
      break;
    }
  }

  template <typename Int> bool has_only_points(const Int* points, std::size_t count) {
    const auto limit = places_.point_count;
    const auto* stray =
        std::find_if(points, points + count, [limit](Int point) { return static_cast<std::uint64_t>(point) >= limit; });
    if (stray == points + count) return true;
    if (strays_++ == 0)
      first_stray_ = "cell " + std::to_string(cell_id_) +
                     " is the first on a point that does not exist: " + std::to_string(*stray) + " of " +
                     std::to_string(limit);
    return false;
  }

  template <typename Int> void add_one(const CellKind& kind, const Int* points, std::size_t count) {
    if (count != kind.node_count) return leave_out_miscounted();
    emit(kind.type, points, kind.node_count, kind.order);
  }

  template <typename Int> void add_points(const Int* points, std::size_t count) {
    if (count < 1) return leave_out_miscounted();
    for (std::size_t i = 0; i < count; ++i)
      emit(Tarn::OneNode, points + i, 1, nullptr);
  }

  template <typename Int> void add_polyline(const Int* points, std::size_t count) {
    if (count < 2) return leave_out_miscounted();
    for (std::size_t i = 0; i + 1 < count; ++i)
      emit(Tarn::Edge, points + i, 2, nullptr);
  }

  template <typename Int> void add_strip(const Int* points, std::size_t count) {
    static constexpr std::uint8_t turned[] = {1, 0, 2};
    if (count < 3) return leave_out_miscounted();
    for (std::size_t i = 0; i + 2 < count; ++i)
      emit(Tarn::Tri, points + i, 3, i % 2 == 0 ? nullptr : turned);
  }

  template <typename Int> void add_polygon(const Int* points, std::size_t count) {
    if (count < 3) return leave_out_miscounted();
    if (count > 4) return draft_.leave_out(name_of_left_out(VTK_POLYGON));
    emit(count == 3 ? Tarn::Tri : Tarn::Quad, points, static_cast<std::uint32_t>(count), nullptr);
  }

  void leave_out_miscounted() { draft_.leave_out("cells with a wrong number of points for their type"); }

  template <typename Int>
  void emit(Tarn::ElementType type, const Int* points, std::uint32_t count, const std::uint8_t* order) {
    const std::uint32_t label = facts_.label_of_cell.empty() ? 0 : facts_.label_of_cell[cell_id_];
    ElementBatch& batch = table_.batch(label, type, count);
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint32_t node = node_at(static_cast<std::size_t>(points[order ? order[i] : i]));
      batch.nodes.push_back(node);
      if (draft_.node_owner[node] == unowned) draft_.node_owner[node] = batch.owner;
    }
    batch.position.push_back(++draft_.last_position);
    if (!facts_.numbers.empty()) batch.numbers.push_back(facts_.numbers[cell_id_]);
  }

  std::uint32_t node_at(std::size_t point) const {
    return places_.nodes ? (*places_.nodes)[point] : places_.first_node + static_cast<std::uint32_t>(point);
  }

  MeshDraft& draft_;
  const CellFacts& facts_;
  const PointPlaces& places_;
  BatchTable table_;
  std::size_t cell_id_ = 0;
  std::uint64_t strays_ = 0;
  std::string first_stray_;
};

} // namespace

void add_cells(MeshDraft& draft, const std::vector<CellList>& lists, const CellFacts& facts,
               const PointPlaces& places) {
  Sorter sorter(draft, facts, places);
  for (const CellList& list : lists)
    sorter.add(list);
  sorter.report_strays();
}

void own_the_rest(MeshDraft& draft, std::uint32_t first_node, std::uint32_t owner) {
  std::replace(draft.node_owner.begin() + first_node, draft.node_owner.end(), unowned, owner);
}

} // namespace readers
