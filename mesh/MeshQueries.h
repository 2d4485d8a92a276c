#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "mesh/orbel_mesh_api.h"

#include <cstddef>
#include <vector>

namespace Tarn {
class MeshData;
}

/// Queries about many entities at once. Each makes one bulk request to the database `db` (borrowed for the call),
/// except where it says otherwise, and checks no answer. Resizing an output keeps what it held at the front until the
/// database writes over it, and appends zeros.
namespace OB {

/// The display name of the element's kind, owned by the database library.
ORBEL_MESH_API const char* get_element_type(Tarn::Handle<1> element, Tarn::MeshData* db);

/// One kind per element; `types` is resized to `count`. No request for a count of 0.
ORBEL_MESH_API void get_element_types(int count, Tarn::Handle<1>* elements, std::vector<Tarn::ElementType>& types,
                                      Tarn::MeshData* db);

/// The nodes of elements of one kind, `nodes_per_element` each: element i has entries i * n to i * n + n - 1, null
/// where it has fewer. `connectivity` is resized to elements * n. An empty list is asked about too.
ORBEL_MESH_API void get_element_type_connectivity(const std::vector<Tarn::Handle<1>>& elements, int nodes_per_element,
                                                  std::vector<Tarn::Handle<0>>& connectivity, Tarn::MeshData* db);

/// x y z of each node, interleaved; `xyz` has room for three floats per node.
ORBEL_MESH_API void get_coordinates(const std::vector<Tarn::Handle<0>>& nodes, float* xyz, Tarn::MeshData* db);

/// Sorts elements into the lists of `mesh` by kind, in input order, and, unless `ids` is null, appends the position
/// that each had in the input to `(*ids)[kind]`. Appends: nothing is cleared or made unique. Elements of kind 0 are
/// left out. A negative count throws std::length_error. No request for a count of 0.
ORBEL_MESH_API void breakout_mesh_ents(int count, const Tarn::Handle<1>* elements, MeshVector& mesh, Tarn::MeshData* db,
                                       std::vector<int> (*ids)[10]);
/// The same for a list.
ORBEL_MESH_API void breakout_mesh_ents(const std::vector<Tarn::Handle<1>>& elements, MeshVector& mesh,
                                       Tarn::MeshData* db, std::vector<int> (*ids)[10]);

/// One local id per node; `ids` is resized to `count`. No request for a count of 0.
ORBEL_MESH_API void get_node_ids(std::size_t count, const Tarn::Handle<0>* nodes, std::vector<int>& ids,
                                 Tarn::MeshData* db);

/// One local id per element; `ids` is resized to `count`. No request for a count of 0.
ORBEL_MESH_API void get_element_ids(std::size_t count, const Tarn::Handle<1>* elements, std::vector<int>& ids,
                                    Tarn::MeshData* db);

/// One global id per element and one flag: an id whose flag is 0 means nothing. Both lists are resized to `count`. No
/// request for a count of 0.
ORBEL_MESH_API void get_global_element_ids(std::size_t count, const Tarn::Handle<1>* elements, std::vector<int>& ids,
                                           std::vector<char>& has_id, Tarn::MeshData* db);

/// Appends the edges adjacent to each element, at most 24 each, in element order; an edge that two elements share comes
/// twice. One request per element; one that fails adds nothing.
ORBEL_MESH_API void get_edges_adjacent_to_elements(const std::vector<Tarn::Handle<1>>& elements,
                                                   std::vector<Tarn::Handle<1>>& edges, Tarn::MeshData* db);

} // namespace OB
