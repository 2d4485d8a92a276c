#include "viewer/PickRecord.h"

#include "mesh/database/MDBDefines.h"
#include "platform/base/EntitySelection.h"
#include "platform/base/PickedEntity.h"
#include "reference/tarn/MeshDatabase.h"
#include "viewer/IdSelection.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
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

Tarn::SMeshOwnerType* owner_of(const PickRecord& record, Tarn::MeshDatabase& database) {
  Tarn::SMeshOwnerType* owner = nullptr;
  const Tarn::Handle<0> node = {record.handle};
  const Tarn::Handle<1> element = {record.handle};
  if (record.is_node)
    database.get_node_owners(1, &node, &owner);
  else
    database.get_element_owners(1, &element, &owner);
  return owner;
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

EntityKind kind_of_record(const PickRecord& record) {
  if (record.is_node) return EntityKind::Node;
  for (std::uint32_t type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
    if (record.type == MDBDefines::TarnTypeName(static_cast<Tarn::ElementType>(type)))
      return kind_of(static_cast<Tarn::ElementType>(type));
  return EntityKind::Element;
}

} // namespace

PickRecord describe(const EntitySelection& selection, Tarn::MeshDatabase& database) {
  const GPicked::PickedEntity& entity = *selection.entity();
  PickRecord record;
  record.type = entity.type();
  record.is_node = record.type == "Node";
  record.id = entity.id();
  record.handle = entity.handle();
  if (!record.is_node) {
    int id = 0;
    bool has_id = false;
    database.get_element_global_id({record.handle}, &id, &has_id);
    if (has_id) record.global_id = id;
  }
  record.owner = owner_of(record, database);
  record.owner_name = database.owner_name(record.owner);
  record.distance = selection.distance();
  record.exact = selection.is_exact();
  record.point = point_of(selection);
  return record;
}

std::vector<PickRecord> describe(const std::vector<EntitySelection>& selections, Tarn::MeshDatabase& database) {
  std::vector<PickRecord> records;
  records.reserve(selections.size());
  for (const EntitySelection& selection : selections)
    records.push_back(describe(selection, database));
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
  std::map<EntityKind, std::vector<int>> ids;
  for (const PickRecord& record : records)
    ids[kind_of_record(record)].push_back(record.id);
  std::string text;
  for (auto& [kind, list] : ids)
    text += (text.empty() ? "" : " ") + id_list(kind, std::move(list));
  return text;
}

} // namespace viewer
