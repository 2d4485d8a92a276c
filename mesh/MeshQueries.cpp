#include "mesh/MeshQueries.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace OB {

const char* get_element_type(Tarn::Handle<1> element, Tarn::MeshData* db) {
  Tarn::ElementType type = Tarn::None;
  db->get_element_type(element, &type);
  return MDBDefines::TarnTypeName(type);
}

void get_element_types(int count, Tarn::Handle<1>* elements, std::vector<Tarn::ElementType>& types,
                       Tarn::MeshData* db) {
  types.resize(static_cast<std::size_t>(count));
  if (count != 0) db->get_element_types(types.size(), elements, types.data());
}

void get_element_type_connectivity(const std::vector<Tarn::Handle<1>>& elements, int nodes_per_element,
                                   std::vector<Tarn::Handle<0>>& connectivity, Tarn::MeshData* db) {
  connectivity.resize(elements.size() * static_cast<std::size_t>(nodes_per_element));
  Tarn::MeshData::Count length = connectivity.size();
  db->get_connectivity(elements.size(), elements.data(), &length, connectivity.data());
}

void get_coordinates(const std::vector<Tarn::Handle<0>>& nodes, float* xyz, Tarn::MeshData* db) {
  db->get_float_coordinates(nodes.size(), nodes.data(), xyz);
}

void breakout_mesh_ents(int count, const Tarn::Handle<1>* elements, MeshVector& mesh, Tarn::MeshData* db,
                        std::vector<int> (*ids)[10]) {
  if (count == 0) return;
  std::vector<Tarn::ElementType> types(static_cast<std::size_t>(count));
  db->get_element_types(types.size(), elements, types.data());
  for (int position = 0; position < count; ++position) {
    const std::uint32_t type = types[static_cast<std::size_t>(position)];
    if (type == Tarn::None || type >= mesh.elements.size()) continue;
    mesh.elements[type].push_back(elements[position]);
    if (ids) (*ids)[type].push_back(position);
  }
}

void breakout_mesh_ents(const std::vector<Tarn::Handle<1>>& elements, MeshVector& mesh, Tarn::MeshData* db,
                        std::vector<int> (*ids)[10]) {
  if (elements.empty()) return;
  breakout_mesh_ents(static_cast<int>(elements.size()), elements.data(), mesh, db, ids);
}

void get_node_ids(std::size_t count, const Tarn::Handle<0>* nodes, std::vector<int>& ids, Tarn::MeshData* db) {
  ids.resize(count);
  if (count != 0) db->get_node_ids(count, nodes, ids.data());
}

void get_element_ids(std::size_t count, const Tarn::Handle<1>* elements, std::vector<int>& ids, Tarn::MeshData* db) {
  ids.resize(count);
  if (count != 0) db->get_element_ids(count, elements, ids.data());
}

void get_global_element_ids(std::size_t count, const Tarn::Handle<1>* elements, std::vector<int>& ids,
                            std::vector<char>& has_id, Tarn::MeshData* db) {
  ids.resize(count);
  has_id.resize(count);
  if (count != 0) db->get_global_element_ids(count, elements, ids.data(), has_id.data());
}

void get_edges_adjacent_to_elements(const std::vector<Tarn::Handle<1>>& elements, std::vector<Tarn::Handle<1>>& edges,
                                    Tarn::MeshData* db) {
  std::array<Tarn::Handle<1>, 24> adjacent;
  for (const Tarn::Handle<1> element : elements) {
    Tarn::MeshData::Count count = adjacent.size();
    if (db->get_adjacencies(element, 1, 2, &count, adjacent.data()) != 0) continue;
    // A database that has more than there is room for may say so.
    const auto written = std::min<Tarn::MeshData::Count>(count, adjacent.size());
    edges.insert(edges.end(), adjacent.begin(), adjacent.begin() + static_cast<std::ptrdiff_t>(written));
  }
}

} // namespace OB
