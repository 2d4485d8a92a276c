#include "viewer/PickRecord.h"

#include "mesh/database/MDBDefines.h"
#include "platform/base/EntitySelection.h"
#include "platform/base/PickedEntity.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/IdSelection.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <map>

namespace viewer {
namespace {

// Keys in the order in which they are written, and numbers in the precision that picks have: the shortest text that is
// this number of single precision and no other.
using Json =
    nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t, std::uint64_t, float>;

// Only rays tell where they hit; a ray's hit at no distance and in the very origin does not happen.
std::optional<std::array<float, 3>> point_of(const EntitySelection& selection) {
  const std::array<float, 3> point = {selection.point()[0], selection.point()[1], selection.point()[2]};
  const bool is_of_ray = selection.distance() != 0 || point != std::array<float, 3>{0, 0, 0};
  return is_of_ray ? std::optional(point) : std::nullopt;
}

// All that a selection tells of itself; the rest is the database's to tell.
PickRecord begin_record(const EntitySelection& selection) {
  const GPicked::PickedEntity& entity = *selection.entity();
  PickRecord record;
  record.type = entity.type();
  record.is_node = record.type == "Node";
  record.id = entity.id();
  record.handle = entity.handle();
  record.distance = selection.distance();
  record.exact = selection.is_exact();
  record.point = point_of(selection);
  return record;
}

void add_global_ids(std::vector<PickRecord>& records, Tarn::MeshDatabase& database) {
  std::vector<Tarn::Handle<1>> elements;
  std::vector<PickRecord*> bearers;
  for (PickRecord& record : records) {
    if (record.is_node) continue;
    elements.push_back({record.handle});
    bearers.push_back(&record);
  }
  std::vector<int> ids(elements.size(), 0);
  std::vector<char> has_id(elements.size(), 0);
  database.get_global_element_ids(elements.size(), elements.data(), ids.data(), has_id.data());
  for (std::size_t i = 0; i < elements.size(); ++i)
    if (has_id[i] != 0) bearers[i]->global_id = ids[i];
}

void add_owners(std::vector<PickRecord>& records, const std::vector<Tarn::SMeshOwnerType*>& owners,
                Tarn::MeshDatabase& database) {
  std::map<Tarn::SMeshOwnerType*, std::string> names;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto [name, is_new] = names.emplace(owners[i], "");
    if (is_new) name->second = database.owner_name(owners[i]);
    records[i].owner = owners[i];
    records[i].owner_name = name->second;
  }
}

// What is no number has no text in JSON.
Json number(float value) { return std::isfinite(value) ? Json(value) : Json(nullptr); }

Json point_json(const std::optional<std::array<float, 3>>& point) {
  if (!point) return nullptr;
  return {number((*point)[0]), number((*point)[1]), number((*point)[2])};
}

std::string hexadecimal(std::uint64_t value) {
  char text[32];
  std::snprintf(text, sizeof(text), "0x%016llx", static_cast<unsigned long long>(value));
  return text;
}

Json record_json(const PickRecord& record) {
  return {{"kind", record.is_node ? "Node" : "Element"},
          {"type", record.type},
          {"id", record.id},
          {"global_id", record.global_id ? Json(*record.global_id) : Json(nullptr)},
          {"handle", hexadecimal(record.handle)},
          {"owner", record.owner == nullptr ? Json(nullptr) : Json(record.owner_name)},
          {"distance", number(record.distance)},
          {"exact", record.exact},
          {"point", point_json(record.point)}};
}

EntityKind kind_of_type(const std::string& name) {
  if (name == "Node") return EntityKind::Node;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    if (name == MDBDefines::TarnTypeName(static_cast<Tarn::ElementType>(type)))
      return kind_of(static_cast<Tarn::ElementType>(type));
  return EntityKind::Element;
}

} // namespace

bool holds_node(const EntitySelection& selection) {
  return selection.entity() != nullptr && std::strcmp(selection.entity()->type(), "Node") == 0;
}

std::vector<Tarn::SMeshOwnerType*> owners_of(const std::vector<EntitySelection>& selections,
                                             Tarn::MeshDatabase& database) {
  std::vector<Tarn::Handle<0>> nodes;
  std::vector<Tarn::Handle<1>> elements;
  std::vector<char> is_node;
  is_node.reserve(selections.size());
  for (const EntitySelection& selection : selections) {
    is_node.push_back(holds_node(selection) ? 1 : 0);
    const std::uint64_t handle = selection.entity()->handle();
    if (is_node.back() != 0)
      nodes.push_back({handle});
    else
      elements.push_back({handle});
  }
  std::vector<Tarn::SMeshOwnerType*> of_nodes(nodes.size(), nullptr), of_elements(elements.size(), nullptr);
  database.get_node_owners(nodes.size(), nodes.data(), of_nodes.data());
  database.get_element_owners(elements.size(), elements.data(), of_elements.data());
  std::vector<Tarn::SMeshOwnerType*> owners;
  owners.reserve(selections.size());
  auto node = of_nodes.begin(), element = of_elements.begin();
  for (const char each : is_node)
    owners.push_back(each != 0 ? *node++ : *element++);
  return owners;
}

PickRecord describe(const EntitySelection& selection, Tarn::MeshDatabase& database) {
  return describe(std::vector<EntitySelection>{selection}, database).front();
}

std::vector<PickRecord> describe(const std::vector<EntitySelection>& selections, Tarn::MeshDatabase& database) {
  std::vector<PickRecord> records;
  records.reserve(selections.size());
  std::transform(selections.begin(), selections.end(), std::back_inserter(records), begin_record);
  add_global_ids(records, database);
  add_owners(records, owners_of(selections, database), database);
  return records;
}

std::string to_json(const std::vector<PickRecord>& records) {
  std::string text;
  for (const PickRecord& record : records) {
    text += text.empty() ? "[\n  " : ",\n  ";
    // Names may hold any bytes; JSON may not.
    text += record_json(record).dump(-1, ' ', false, Json::error_handler_t::replace);
  }
  return text.empty() ? "[]\n" : text + "\n]\n";
}

std::string id_lists(const std::vector<PickRecord>& records) {
  std::map<std::string, std::vector<int>> ids_of_types;
  for (const PickRecord& record : records)
    ids_of_types[record.type].push_back(record.id);
  std::map<EntityKind, std::vector<int>> ids;
  for (const auto& [type, list] : ids_of_types) {
    std::vector<int>& all = ids[kind_of_type(type)];
    all.insert(all.end(), list.begin(), list.end());
  }
  std::string text;
  for (auto& [kind, list] : ids)
    text += (text.empty() ? "" : " ") + id_list(kind, std::move(list));
  return text;
}

} // namespace viewer
