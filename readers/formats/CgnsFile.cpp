// CGNS files, by way of the library that VTK brings along: VTK's reader class gives boundary sections only where the
// boundary conditions of the zone have types that it knows.

#include "readers/CellSorter.h"
#include "readers/Refusal.h"
#include "readers/formats/CgnsShapes.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/NetCdfHeader.h"

#include <algorithm>

namespace readers {

namespace {

constexpr cgsize_t node_limit = cgsize_t{1} << 29;
constexpr std::size_t name_size = 33;

struct Section {
  int index = 0;
  std::string name;
  CGNS_ENUMT(ElementType_t) type{};
  cgsize_t first = 0; // number of the first element
  cgsize_t count = 0;
  std::vector<cgsize_t> values; // connectivity, after its type for each element of a mixed section
  int dimension = 0;            // of the elements of the highest dimension
};

struct Zone {
  int base = 0;
  int index = 0;
  std::string name;
  cgsize_t node_count = 0;
  std::uint32_t first_node = 0;
  std::uint32_t owner = 0;
};

class CgnsFile {
public:
  explicit CgnsFile(const std::string& path) {
    if (cg_open(path.c_str(), CG_MODE_READ, &file_) != CG_OK) throw Refusal("is not a CGNS file that can be read");
  }
  ~CgnsFile() { cg_close(file_); }
  CgnsFile(const CgnsFile&) = delete;
  CgnsFile& operator=(const CgnsFile&) = delete;

  MeshDraft read() {
    int bases = 0;
    check(cg_nbases(file_, &bases), "its bases");
    count_zones(bases);
    for (int base = 1; base <= bases; ++base)
      read_base(base);
    draft_.leave_out("zones without cartesian coordinates", zones_without_coordinates_);
    draft_.leave_out("elements on nodes that do not exist", strays_);
    return std::move(draft_);
  }

private:
  static void check(int status, const std::string& what) {
    if (status != CG_OK) throw Refusal(what + " cannot be read");
  }

  void count_zones(int bases) {
    for (int base = 1; base <= bases; ++base) {
      int zones = 0;
      check(cg_nzones(file_, base, &zones), "its zones");
      zone_count_ += zones;
    }
  }

  void read_base(int base) {
    char name[name_size] = {};
    int cell_dimension = 0;
    int dimension = 0;
    check(cg_base_read(file_, base, name, &cell_dimension, &dimension), "base " + std::to_string(base));
    int zones = 0;
    check(cg_nzones(file_, base, &zones), "its zones");
    for (int zone = 1; zone <= zones; ++zone)
      read_zone(base, zone, cell_dimension);
  }

  void read_zone(int base, int index, int cell_dimension) {
    Zone zone;
    zone.base = base;
    zone.index = index;
    char name[name_size] = {};
    cgsize_t size[9] = {};
    check(cg_zone_read(file_, base, index, name, size), "zone " + std::to_string(index));
    zone.name = name;
    CGNS_ENUMT(ZoneType_t) type{};
    check(cg_zone_type(file_, base, index, &type), "the type of zone " + zone.name);
    const bool structured = type == CGNS_ENUMV(Structured);
    if (!structured && type != CGNS_ENUMV(Unstructured)) throw Refusal("zone " + zone.name + " has no known type");
    const int axes = structured ? std::clamp(cell_dimension, 1, 3) : 1;
    zone.node_count = product(size, axes, zone.name);
    if (!add_nodes(zone, size, axes)) {
      ++zones_without_coordinates_;
      return;
    }
    zone.owner = add_owner(zone.name);
    if (structured)
      add_structured_elements(zone, size, axes);
    else
      add_sections(zone);
    own_the_rest(draft_, zone.first_node, zone.owner);
  }

  cgsize_t product(const cgsize_t* size, int axes, const std::string& name) const {
    cgsize_t nodes = 1;
    for (int axis = 0; axis < axes; ++axis) {
      if (size[axis] < 0) throw Refusal("zone " + name + " declares " + std::to_string(size[axis]) + " nodes");
      if (size[axis] > node_limit || (nodes *= size[axis]) > node_limit) throw Refusal("more than 2^29 nodes");
    }
    if (static_cast<cgsize_t>(draft_.node_count()) + nodes > node_limit) throw Refusal("more than 2^29 nodes");
    return nodes;
  }

  bool add_nodes(Zone& zone, const cgsize_t* size, int axes) {
    zone.first_node = static_cast<std::uint32_t>(draft_.node_count());
    if (zone.node_count == 0) return true;
    static constexpr const char* names[] = {"CoordinateX", "CoordinateY", "CoordinateZ"};
    const std::vector<std::string> present = coordinate_names(zone);
    if (std::find(present.begin(), present.end(), names[0]) == present.end()) return false;
    const std::size_t before = draft_.xyz.size();
    const auto count = static_cast<std::size_t>(zone.node_count);
    std::vector<double> values(count);
    draft_.xyz.resize(before + 3 * count);
    draft_.node_owner.resize(draft_.node_count(), unowned);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (std::find(present.begin(), present.end(), names[axis]) == present.end()) continue;
      read_coordinate(zone, names[axis], size, axes, values);
      for (std::size_t node = 0; node < count; ++node)
        draft_.xyz[before + 3 * node + axis] = values[node];
    }
    return true;
  }

  std::vector<std::string> coordinate_names(const Zone& zone) const {
    int count = 0;
    check(cg_ncoords(file_, zone.base, zone.index, &count), "the coordinates of zone " + zone.name);
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) {
      char name[name_size] = {};
      CGNS_ENUMT(DataType_t) type{};
      check(cg_coord_info(file_, zone.base, zone.index, i, &type, name), "the coordinates of zone " + zone.name);
      names.emplace_back(name);
    }
    return names;
  }

  void read_coordinate(const Zone& zone, const char* name, const cgsize_t* size, int axes,
                       std::vector<double>& values) const {
    const cgsize_t low[3] = {1, 1, 1};
    cgsize_t high[3] = {1, 1, 1};
    std::copy_n(size, axes, high);
    check(cg_coord_read(file_, zone.base, zone.index, name, CGNS_ENUMV(RealDouble), low, high, values.data()),
          std::string(name) + " of zone " + zone.name);
  }

  // Hexahedra between the nodes of a block, quadrilaterals of a sheet, edges of a line. A block one node thick is a
  // sheet, whatever number of axes it declares.
  void add_structured_elements(const Zone& zone, const cgsize_t* size, int axes) {
    static constexpr Tarn::ElementType kinds[] = {Tarn::None, Tarn::Edge, Tarn::Quad, Tarn::Hex};
    static constexpr int corners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                          {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    if (zone.node_count == 0) return;
    unsigned rank = 0;
    cgsize_t cells[3] = {1, 1, 1};
    cgsize_t strides[3] = {0, 0, 0};
    cgsize_t stride = 1;
    for (int axis = 0; axis < axes; stride *= size[axis++]) {
      if (size[axis] == 1) continue;
      cells[rank] = size[axis] - 1;
      strides[rank++] = stride;
    }
    if (rank > 0) {
      ElementBatch batch = make_batch(kinds[rank], 1u << rank, zone.owner, false);
      std::vector<std::uint32_t> nodes(batch.nodes_per_element);
      for (cgsize_t k = 0; k < cells[2]; ++k)
        for (cgsize_t j = 0; j < cells[1]; ++j)
          for (cgsize_t i = 0; i < cells[0]; ++i) {
            for (std::size_t c = 0; c < nodes.size(); ++c)
              nodes[c] = zone.first_node + static_cast<std::uint32_t>((i + corners[c][0]) * strides[0] +
                                                                      (j + corners[c][1]) * strides[1] +
                                                                      (k + corners[c][2]) * strides[2]);
            append(batch, nodes.data());
          }
      draft_.batches.push_back(std::move(batch));
    }
    int conditions = 0;
    if (cg_nbocos(file_, zone.base, zone.index, &conditions) == CG_OK && conditions > 0)
      draft_.leave_out("boundary conditions of structured zones", static_cast<std::uint64_t>(conditions));
  }

  // The sections of the highest dimension make up the zone, the others are its boundaries.
  void add_sections(const Zone& zone) {
    std::vector<Section> sections = read_sections(zone);
    int highest = 0;
    for (const Section& section : sections)
      highest = std::max(highest, section.dimension);
    for (const Section& section : sections)
      if (section.dimension == highest) add_section(zone, section, zone.owner, false);
    for (const Section& section : sections)
      if (section.dimension < highest && section.count > 0)
        add_section(zone, section, add_owner(zone_count_ > 1 ? zone.name + "/" + section.name : section.name), true);
  }

  std::vector<Section> read_sections(const Zone& zone) {
    int count = 0;
    check(cg_nsections(file_, zone.base, zone.index, &count), "the sections of zone " + zone.name);
    std::vector<Section> sections;
    for (int index = 1; index <= count; ++index) {
      Section section = read_section(zone, index);
      if (section.type == CGNS_ENUMV(NGON_n) || section.type == CGNS_ENUMV(NFACE_n))
        draft_.leave_out(section.type == CGNS_ENUMV(NGON_n) ? "polygons of NGON_n sections"
                                                            : "polyhedra of NFACE_n sections",
                         static_cast<std::uint64_t>(section.count));
      else
        sections.push_back(std::move(section));
    }
    return sections;
  }

  Section read_section(const Zone& zone, int index) {
    Section section;
    section.index = index;
    char name[name_size] = {};
    cgsize_t last = 0;
    int boundary_count = 0;
    int has_parents = 0;
    check(cg_section_read(file_, zone.base, zone.index, index, name, &section.type, &section.first, &last,
                          &boundary_count, &has_parents),
          "section " + std::to_string(index) + " of zone " + zone.name);
    section.name = name;
    section.count = last - section.first + 1;
    if (section.count < 0 || last > (cgsize_t{1} << 40))
      throw Refusal("section " + section.name + " declares elements " + std::to_string(section.first) + " to " +
                    std::to_string(last));
    if (section.type == CGNS_ENUMV(NGON_n) || section.type == CGNS_ENUMV(NFACE_n)) return section;
    read_values(zone, section);
    section.dimension = highest_dimension(section);
    return section;
  }

  void read_values(const Zone& zone, Section& section) const {
    cgsize_t size = 0;
    check(cg_ElementDataSize(file_, zone.base, zone.index, section.index, &size), "section " + section.name);
    if (size < 0) throw Refusal("section " + section.name + " declares " + std::to_string(size) + " values");
    section.values.resize(static_cast<std::size_t>(size));
    const bool mixed = section.type == CGNS_ENUMV(MIXED);
    std::vector<cgsize_t> offsets(mixed ? static_cast<std::size_t>(section.count) + 1 : 0);
    const int status =
        mixed ? cg_poly_elements_read(file_, zone.base, zone.index, section.index, section.values.data(),
                                      offsets.data(), nullptr)
              : cg_elements_read(file_, zone.base, zone.index, section.index, section.values.data(), nullptr);
    check(status, "section " + section.name);
  }

  template <typename F> static void for_each_element(const Section& section, F&& f) {
    const bool mixed = section.type == CGNS_ENUMV(MIXED);
    std::size_t at = 0;
    for (cgsize_t e = 0; e < section.count; ++e) {
      if (mixed && at >= section.values.size()) throw Refusal("section " + section.name + " ends early");
      const int type = mixed ? static_cast<int>(section.values[at++]) : static_cast<int>(section.type);
      const CgnsShape& shape = cgns_shape(type);
      if (shape.node_count == 0) throw Refusal("section " + section.name + " holds elements of unknown type");
      if (shape.node_count > section.values.size() - at) throw Refusal("section " + section.name + " ends early");
      f(shape, section.values.data() + at, section.first + e);
      at += shape.node_count;
    }
  }

  static int highest_dimension(const Section& section) {
    int highest = 0;
    for_each_element(section, [&highest](const CgnsShape& shape, const cgsize_t*, cgsize_t) {
      highest = std::max(highest, shape.dimension);
    });
    return highest;
  }

  void add_section(const Zone& zone, const Section& section, std::uint32_t owner, bool is_boundary) {
    std::vector<ElementBatch> batches;
    std::vector<std::uint32_t> nodes;
    for_each_element(section, [&](const CgnsShape& shape, const cgsize_t* values, cgsize_t number) {
      if (shape.type == Tarn::None) return draft_.leave_out("elements of order 3 and higher");
      nodes.clear();
      for (std::uint32_t k = 0; k < shape.node_count; ++k) {
        const cgsize_t node = values[shape.order ? shape.order[k] : k];
        if (node < 1 || node > zone.node_count) return report_stray(section.name, number, node, zone);
        nodes.push_back(zone.first_node + static_cast<std::uint32_t>(node - 1));
      }
      ElementBatch& batch = find_batch(batches, shape, owner, is_boundary);
      append(batch, nodes.data());
      if (!is_boundary && zone_count_ == 1) batch.numbers.push_back(number);
    });
    for (ElementBatch& batch : batches)
      draft_.batches.push_back(std::move(batch));
  }

  void report_stray(const std::string& section, cgsize_t number, cgsize_t node, const Zone& zone) {
    if (strays_++ == 0)
      draft_.notices.push_back("element " + std::to_string(number) + " of section " + section +
                               " is the first on a node that does not exist: " + std::to_string(node) + " of " +
                               std::to_string(zone.node_count));
  }

  static ElementBatch make_batch(Tarn::ElementType type, std::uint32_t nodes_per_element, std::uint32_t owner,
                                 bool is_boundary) {
    ElementBatch batch;
    batch.type = type;
    batch.nodes_per_element = nodes_per_element;
    batch.owner = owner;
    batch.from_side_set = is_boundary;
    return batch;
  }

  static ElementBatch& find_batch(std::vector<ElementBatch>& batches, const CgnsShape& shape, std::uint32_t owner,
                                  bool is_boundary) {
    for (ElementBatch& batch : batches)
      if (batch.type == shape.type && batch.nodes_per_element == shape.node_count) return batch;
    batches.push_back(make_batch(shape.type, shape.node_count, owner, is_boundary));
    return batches.back();
  }

  void append(ElementBatch& batch, const std::uint32_t* nodes) {
    batch.nodes.insert(batch.nodes.end(), nodes, nodes + batch.nodes_per_element);
    batch.position.push_back(++draft_.last_position);
    for (std::uint32_t k = 0; k < batch.nodes_per_element; ++k)
      if (draft_.node_owner[nodes[k]] == unowned) draft_.node_owner[nodes[k]] = batch.owner;
  }

  std::uint32_t add_owner(const std::string& name) {
    draft_.owners.push_back(name);
    return static_cast<std::uint32_t>(draft_.owners.size() - 1);
  }

  int file_ = 0;
  int zone_count_ = 0;
  std::uint64_t zones_without_coordinates_ = 0;
  std::uint64_t strays_ = 0;
  MeshDraft draft_;
};

// The head of an ADF file tells where it ends, as a block of 4096 bytes and a place in it, in hexadecimal digits.
void check_adf(std::string_view bytes) {
  constexpr std::size_t end_block = 146;
  constexpr std::size_t end_place = 154;
  constexpr std::size_t head = 186;
  if (bytes.size() < head) throw Refusal("ends within its header");
  const std::uint64_t block = std::stoull("0" + std::string(bytes.substr(end_block, 8)), nullptr, 16);
  const std::uint64_t place = std::stoull("0" + std::string(bytes.substr(end_place, 4)), nullptr, 16);
  const std::uint64_t length = block * 4096 + place;
  if (length > bytes.size())
    throw Refusal("ends early: has " + std::to_string(bytes.size()) + " of " + std::to_string(length) + " bytes");
}

void check_cgns(const Source& source) {
  const std::string_view bytes = source.bytes.view();
  if (is_hdf5(bytes)) return check_hdf5(bytes);
  constexpr std::size_t name = 4; // after four signs
  if (bytes.size() < name || bytes.substr(name, 20) != "ADF Database Version") throw Refusal("is neither ADF nor HDF5");
  check_adf(bytes);
}

} // namespace

FormatReader cgns_format() {
  return {{"CGNS", {".cgns"}}, check_cgns, [](const Source& source) { return CgnsFile(source.path).read(); }, true};
}

} // namespace readers
