#include "viewer/Info.h"

#include "group/GMeshGroup.h"
#include "mesh/database/MDBDefines.h"
#include "model/GMeshModel.h"
#include "viewer/MeshBounds.h"
#include "viewer/MeshFiles.h"
#include "viewer/Scene.h"

#include <nlohmann/json.hpp>
#include <vtkCellType.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <map>

namespace viewer {
namespace {

// Keys in the order in which they are written, which is the order of their meaning.
using Json = nlohmann::ordered_json;
using CellCounts = std::map<int, std::uint64_t>;

std::string cell_name(int type) {
  switch (type) {
  case VTK_VERTEX:
    return "VTK_VERTEX";
  case VTK_POLY_VERTEX:
    return "VTK_POLY_VERTEX";
  case VTK_LINE:
    return "VTK_LINE";
  case VTK_POLY_LINE:
    return "VTK_POLY_LINE";
  case VTK_TRIANGLE:
    return "VTK_TRIANGLE";
  case VTK_QUAD:
    return "VTK_QUAD";
  case VTK_POLYGON:
    return "VTK_POLYGON";
  case VTK_QUADRATIC_TRIANGLE:
    return "VTK_QUADRATIC_TRIANGLE";
  case VTK_QUADRATIC_QUAD:
    return "VTK_QUADRATIC_QUAD";
  default:
    return "VTK_CELL_TYPE_" + std::to_string(type);
  }
}

template <class Count> Json by_kind(Count count) {
  Json counts = Json::object();
  for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind) {
    const auto type = static_cast<Tarn::ElementType>(kind);
    counts[MDBDefines::TarnTypeName(type)] = count(type);
  }
  return counts;
}

std::uint64_t sum(const MeshFiles& files, std::array<std::uint64_t, 10> readers::Report::*counts,
                  Tarn::ElementType type) {
  std::uint64_t total = 0;
  for (const auto& report : files.reports)
    total += (report.*counts)[type];
  return total;
}

std::uint64_t node_count(const MeshFiles& files) {
  std::uint64_t total = 0;
  for (const auto& report : files.reports)
    total += report.nodes;
  return total;
}

Json bounds_of(Tarn::MeshDatabase& database) {
  std::array<double, 6> bounds;
  return mesh_bounds(database, bounds) ? Json(bounds) : Json(nullptr);
}

CellCounts count_cells(GMeshGroup* group) {
  CellCounts counts;
  if (group == nullptr) return counts;
  vtkUnstructuredGrid* const grid = group->get_2d_data();
  for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell)
    ++counts[grid->GetCellType(cell)];
  return counts;
}

Json by_cell_name(const CellCounts& counts) {
  Json named = Json::object();
  for (const auto& [type, count] : counts)
    named[cell_name(type)] = count;
  return named;
}

Json dimension_of(Tarn::MeshDatabase& database, Tarn::SMeshOwnerType* owner) {
  std::uint32_t dimension = Tarn::MeshDatabase::AnyDimension;
  database.get_owner_dimension(owner, &dimension);
  return dimension == Tarn::MeshDatabase::AnyDimension ? Json(nullptr) : Json(dimension);
}

Json describe_owner(Scene& scene, std::size_t index, const CellCounts& drawn) {
  const SceneOwner& owner = scene.owners()[index];
  Tarn::MeshDatabase& database = scene.database();
  Tarn::MeshData::Count nodes = 0;
  database.get_owner_node_count(owner.handle, &nodes);
  const auto elements = by_kind([&](Tarn::ElementType type) {
    Tarn::MeshData::Count count = 0;
    database.get_owner_element_count(owner.handle, type, &count);
    return count;
  });
  return {{"name", owner.name},
          {"dimension", dimension_of(database, owner.handle)},
          {"visible", scene.is_visible(index)},
          {"nodes", nodes},
          {"elements", elements},
          {"drawn", by_cell_name(drawn)}};
}

Json describe_left_out(const MeshFiles& files) {
  Json list = Json::array();
  for (std::size_t i = 0; i < files.paths.size(); ++i)
    for (const auto& left_out : files.reports[i].left_out) {
      Json entry = {{"reason", left_out.reason}, {"count", left_out.count}};
      if (files.paths.size() > 1) entry["file"] = files.paths[i];
      list.push_back(entry);
    }
  return list;
}

} // namespace

std::string describe(const MeshFiles& files, Scene& scene) {
  Json owners = Json::array();
  CellCounts total;
  for (std::size_t i = 0; i < scene.owners().size(); ++i) {
    CellCounts drawn;
    if (scene.is_visible(i)) drawn = count_cells(scene.model().get_mesh(scene.owners()[i].handle));
    for (const auto& [type, count] : drawn)
      total[type] += count;
    owners.push_back(describe_owner(scene, i, drawn));
  }

  Json info;
  info["file"] = files.paths.size() == 1 ? Json(files.paths[0]) : Json(files.paths);
  info["nodes"] = node_count(files);
  info["elements"] = by_kind([&](auto type) { return sum(files, &readers::Report::elements, type); });
  info["set_faces"] = by_kind([&](auto type) { return sum(files, &readers::Report::set_faces, type); });
  info["bounds"] = bounds_of(scene.database());
  info["owners"] = owners;
  info["drawn"] = by_cell_name(total);
  info["left_out"] = describe_left_out(files);
  // Names and paths may hold any bytes; JSON may not.
  return info.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace viewer
