// Exodus II files, by way of the library that VTK brings along: VTK's reader class forgets nodes that no element uses,
// gives side sets ids from memory that nobody wrote, and falls over when it is asked for unsqueezed points.

#include "readers/CellSorter.h"
#include "readers/Refusal.h"
#include "readers/ShapeTables.h"
#include "readers/formats/ExodusShapes.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/NetCdfHeader.h"

#include <vtk_exodusII.h>

#include <algorithm>

namespace readers {

namespace {

using Ids = std::vector<std::int64_t>;

constexpr std::int64_t node_limit = std::int64_t{1} << 29;

struct Block {
  std::int64_t first_element = 0; // in the file's order, from 0
  std::int64_t element_count = 0;
  ExodusShape shape;
  std::uint32_t owner = 0;
  std::vector<std::uint32_t> nodes; // canonical; `Unowned` for nodes that do not exist
};

class ExodusFile {
public:
  explicit ExodusFile(const std::string& path) {
    int memory_word = 8;
    int file_word = 0;
    float version = 0;
    ex_opts(0);
    id_ = ex_open(path.c_str(), EX_READ, &memory_word, &file_word, &version);
    if (id_ < 0) throw Refusal("is not an Exodus II file");
    ex_set_int64_status(id_, EX_ALL_INT64_API);
    const std::int64_t name_length = ex_inquire_int(id_, EX_INQ_DB_MAX_USED_NAME_LENGTH);
    ex_set_max_name_length(id_, static_cast<int>(std::clamp<std::int64_t>(name_length, 32, longest_name)));
  }
  ~ExodusFile() { ex_close(id_); }
  ExodusFile(const ExodusFile&) = delete;
  ExodusFile& operator=(const ExodusFile&) = delete;

  MeshDraft read() {
    if (ex_get_init_ext(id_, &sizes_) < 0) throw Refusal("has no mesh of Exodus II");
    read_nodes();
    read_blocks();
    read_side_sets();
    finish_owners();
    read_node_sets();
    count_the_rest();
    return std::move(draft_);
  }

private:
  static constexpr std::int64_t longest_name = 255;

  void read_nodes() {
    if (sizes_.num_nodes < 0 || sizes_.num_nodes > node_limit) throw Refusal("more than 2^29 nodes");
    if (sizes_.num_dim < 1 || sizes_.num_dim > 3)
      throw Refusal("has " + std::to_string(sizes_.num_dim) + " dimensions");
    const auto count = static_cast<std::size_t>(sizes_.num_nodes);
    std::vector<double> axes[3];
    for (std::vector<double>& axis : axes)
      axis.resize(count);
    if (count > 0 && ex_get_coord(id_, axes[0].data(), axes[1].data(), axes[2].data()) < 0)
      throw Refusal("its coordinates cannot be read");
    draft_.xyz.resize(3 * count);
    for (std::size_t i = 0; i < count; ++i)
      for (std::size_t axis = 0; axis < 3; ++axis)
        draft_.xyz[3 * i + axis] = axes[axis][i];
    draft_.node_owner.assign(count, unowned);
    draft_.node_numbers = id_map(EX_NODE_MAP, sizes_.num_nodes);
    element_numbers_ = id_map(EX_ELEM_MAP, sizes_.num_elem);
  }

  // The file's own numbers; empty when it has none that can be read.
  Ids id_map(ex_entity_type type, std::int64_t count) const {
    if (count <= 0) return {};
    Ids map(static_cast<std::size_t>(count));
    return ex_get_id_map(id_, type, map.data()) < 0 ? Ids() : map;
  }

  void read_blocks() {
    const Ids ids = entity_ids(EX_ELEM_BLOCK, sizes_.num_elem_blk, "element blocks");
    const std::vector<std::string> names = entity_names(EX_ELEM_BLOCK, ids, "block ");
    std::int64_t first = 0;
    for (std::size_t b = 0; b < ids.size(); ++b) {
      ex_block info{};
      info.id = ids[b];
      info.type = EX_ELEM_BLOCK;
      if (ex_get_block_param(id_, &info) < 0) throw Refusal(names[b] + " cannot be read");
      if (info.num_entry < 0 || info.num_entry > sizes_.num_elem - first)
        throw Refusal(names[b] + " declares more elements than the file");
      Block block;
      block.first_element = first;
      block.element_count = info.num_entry;
      block.owner = add_owner(names[b]);
      first += info.num_entry;
      if (info.num_entry > 0) read_block(info, names[b], block);
      blocks_.push_back(std::move(block));
    }
  }

  void read_block(const ex_block& info, const std::string& name, Block& block) {
    block.shape = exodus_shape(info.topology, info.num_nodes_per_entry, static_cast<int>(sizes_.num_dim));
    if (block.shape.type == Tarn::None)
      return draft_.leave_out(std::string("elements ") + info.topology + " with " +
                                  std::to_string(info.num_nodes_per_entry) + " nodes",
                              static_cast<std::uint64_t>(info.num_entry));
    const auto stride = static_cast<std::size_t>(info.num_nodes_per_entry);
    if (static_cast<std::size_t>(info.num_entry) > (std::size_t{1} << 36) / stride)
      throw Refusal(name + " is too large");
    Ids connectivity(static_cast<std::size_t>(info.num_entry) * stride);
    if (ex_get_conn(id_, EX_ELEM_BLOCK, info.id, connectivity.data(), nullptr, nullptr) < 0)
      throw Refusal("the connectivity of " + name + " cannot be read");
    permute(connectivity, stride, block);
    add_elements(block, name);
  }

  void permute(const Ids& connectivity, std::size_t stride, Block& block) const {
    block.nodes.resize(connectivity.size());
    for (std::size_t i = 0; i < connectivity.size(); i += stride)
      for (std::size_t k = 0; k < stride; ++k) {
        const std::int64_t node = connectivity[i + (block.shape.order ? block.shape.order[k] : k)];
        block.nodes[i + k] = node >= 1 && node <= sizes_.num_nodes ? static_cast<std::uint32_t>(node - 1) : unowned;
      }
  }

  void add_elements(const Block& block, const std::string& name) {
    ElementBatch batch;
    batch.type = block.shape.type;
    batch.nodes_per_element = block.shape.nodes_per_element;
    batch.owner = block.owner;
    batch.nodes.reserve(block.nodes.size());
    std::uint64_t strays = 0;
    for (std::int64_t e = 0; e < block.element_count; ++e) {
      if (!append(batch, &block.nodes[static_cast<std::size_t>(e) * batch.nodes_per_element])) {
        if (strays++ == 0)
          draft_.notices.push_back("element " + std::to_string(e + 1) + " of " + name +
                                   " is the first on a node that does not exist");
        continue;
      }
      if (!element_numbers_.empty())
        batch.numbers.push_back(element_numbers_[static_cast<std::size_t>(block.first_element + e)]);
    }
    draft_.leave_out("elements on nodes that do not exist", strays);
    draft_.batches.push_back(std::move(batch));
  }

  bool append(ElementBatch& batch, const std::uint32_t* nodes) {
    const std::uint32_t* end = nodes + batch.nodes_per_element;
    if (std::find(nodes, end, unowned) != end) return false;
    batch.nodes.insert(batch.nodes.end(), nodes, end);
    batch.position.push_back(++draft_.last_position);
    for (const std::uint32_t* node = nodes; node != end; ++node)
      if (draft_.node_owner[*node] == unowned) draft_.node_owner[*node] = batch.owner;
    return true;
  }

  void read_side_sets() {
    const Ids ids = entity_ids(EX_SIDE_SET, sizes_.num_side_sets, "side sets");
    const std::vector<std::string> names = entity_names(EX_SIDE_SET, ids, "side set ");
    for (std::size_t s = 0; s < ids.size(); ++s) {
      Ids sides;
      const Ids elements = set_entries(EX_SIDE_SET, ids[s], names[s], &sides);
      add_side_set(elements, sides, add_owner(names[s]));
    }
  }

  void add_side_set(const Ids& elements, const Ids& sides, std::uint32_t owner) {
    std::vector<ElementBatch> batches;
    std::uint64_t strays = 0;
    for (std::size_t i = 0; i < elements.size(); ++i)
      if (!add_side(elements[i] - 1, sides[i], owner, batches)) ++strays;
    draft_.leave_out("entries of side sets that are no side of an element here", strays);
    for (ElementBatch& batch : batches)
      draft_.batches.push_back(std::move(batch));
  }

  bool add_side(std::int64_t element, std::int64_t side, std::uint32_t owner, std::vector<ElementBatch>& batches) {
    const auto next = std::upper_bound(blocks_.begin(), blocks_.end(), element,
                                       [](std::int64_t e, const Block& b) { return e < b.first_element; });
    if (element < 0 || next == blocks_.begin()) return false;
    const Block& block = *(next - 1);
    const std::int64_t place = element - block.first_element;
    if (place >= block.element_count || block.nodes.empty()) return false;
    const std::vector<int>* corners = exodus_side(block.shape, side);
    if (!corners) return false;
    const std::uint32_t stride = block.shape.nodes_per_element;
    const std::uint32_t* nodes = &block.nodes[static_cast<std::size_t>(place) * stride];
    std::vector<std::uint32_t> face;
    for (int in_element : side_places(block.shape.type, stride, *corners))
      face.push_back(nodes[in_element]);
    static constexpr Tarn::ElementType kinds[] = {Tarn::None, Tarn::None, Tarn::Edge, Tarn::Tri, Tarn::Quad};
    return append(face_batch(kinds[corners->size()], static_cast<std::uint32_t>(face.size()), owner, batches),
                  face.data());
  }

  static ElementBatch& face_batch(Tarn::ElementType type, std::uint32_t nodes_per_element, std::uint32_t owner,
                                  std::vector<ElementBatch>& batches) {
    for (ElementBatch& batch : batches)
      if (batch.type == type && batch.nodes_per_element == nodes_per_element) return batch;
    ElementBatch batch;
    batch.type = type;
    batch.nodes_per_element = nodes_per_element;
    batch.owner = owner;
    batch.from_side_set = true;
    batches.push_back(std::move(batch));
    return batches.back();
  }

  void read_node_sets() {
    const Ids ids = entity_ids(EX_NODE_SET, sizes_.num_node_sets, "node sets");
    const std::vector<std::string> names = entity_names(EX_NODE_SET, ids, "node set ");
    for (std::size_t s = 0; s < ids.size(); ++s) {
      NodeSet set{names[s], {}};
      std::uint64_t strays = 0;
      for (std::int64_t node : set_entries(EX_NODE_SET, ids[s], names[s], nullptr))
        if (node >= 1 && node <= sizes_.num_nodes)
          set.nodes.push_back(static_cast<std::uint32_t>(node - 1));
        else
          ++strays;
      draft_.leave_out("entries of node sets that are no node", strays);
      draft_.node_sets.push_back(std::move(set));
    }
  }

  Ids set_entries(ex_entity_type type, std::int64_t id, const std::string& name, Ids* extra) const {
    std::int64_t count = 0;
    std::int64_t factors = 0;
    if (ex_get_set_param(id_, type, id, &count, &factors) < 0 || count < 0) throw Refusal(name + " cannot be read");
    Ids entries(static_cast<std::size_t>(count));
    if (extra) extra->resize(entries.size());
    if (count > 0 && ex_get_set(id_, type, id, entries.data(), extra ? extra->data() : nullptr) < 0)
      throw Refusal(name + " cannot be read");
    return entries;
  }

  // Nodes that no element uses go to the first block, so that they can be shown.
  void finish_owners() {
    if (draft_.owners.empty()) add_owner("nodes");
    own_the_rest(draft_, 0, 0);
  }

  void count_the_rest() {
    const auto leave_out = [this](const char* what, std::int64_t count) {
      draft_.leave_out(what, static_cast<std::uint64_t>(std::max<std::int64_t>(0, count)));
    };
    leave_out("edge blocks", sizes_.num_edge_blk);
    leave_out("face blocks", sizes_.num_face_blk);
    leave_out("edge sets", sizes_.num_edge_sets);
    leave_out("face sets", sizes_.num_face_sets);
    leave_out("element sets", sizes_.num_elem_sets);
  }

  std::uint32_t add_owner(const std::string& name) {
    draft_.owners.push_back(name);
    return static_cast<std::uint32_t>(draft_.owners.size() - 1);
  }

  Ids entity_ids(ex_entity_type type, std::int64_t count, const char* what) const {
    if (count <= 0) return {};
    Ids ids(static_cast<std::size_t>(count));
    if (ex_get_ids(id_, type, ids.data()) < 0) throw Refusal(std::string("the ids of its ") + what + " cannot be read");
    return ids;
  }

  // Unnamed ones are called by their id.
  std::vector<std::string> entity_names(ex_entity_type type, const Ids& ids, const char* prefix) const {
    std::vector<std::vector<char>> buffers(ids.size(), std::vector<char>(longest_name + 2, '\0'));
    std::vector<char*> pointers;
    for (std::vector<char>& buffer : buffers)
      pointers.push_back(buffer.data());
    const bool named = !ids.empty() && ex_get_names(id_, type, pointers.data()) >= 0;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < ids.size(); ++i) {
      const std::string name = named ? buffers[i].data() : "";
      names.push_back(name.empty() ? prefix + std::to_string(ids[i]) : name);
    }
    return names;
  }

  int id_ = -1;
  ex_init_params sizes_{};
  Ids element_numbers_;
  std::vector<Block> blocks_;
  MeshDraft draft_;
};

} // namespace

FormatReader exodus_format() {
  return {{"Exodus II", {".e", ".ex2", ".exo", ".g"}},
          [](const Source& source) { check_netcdf(source.bytes.view()); },
          [](const Source& source) { return ExodusFile(source.path).read(); },
          true};
}

} // namespace readers
