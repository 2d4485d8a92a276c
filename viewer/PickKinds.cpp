#include "viewer/PickKinds.h"

#include "pick/GMeshPicker.h"
#include "reference/tarn/MeshDatabase.h"

#include <algorithm>
#include <utility>

namespace viewer {
namespace {

using Names = std::vector<std::string>;

constexpr std::pair<Tarn::ElementType, const char* const*> kinds_of_element[] = {
    {Tarn::Hex, &GMeshPicker::gHexType},         {Tarn::Tet, &GMeshPicker::gTetType},
    {Tarn::Pyramid, &GMeshPicker::gPyramidType}, {Tarn::Wedge, &GMeshPicker::gWedgeType},
    {Tarn::Quad, &GMeshPicker::gQuadType},       {Tarn::Tri, &GMeshPicker::gTriType},
    {Tarn::Edge, &GMeshPicker::gEdgeType},       {Tarn::Superelement, &GMeshPicker::gSuperElemType}};

bool holds(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string joined(const Names& names) {
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : ", ") + name;
  return text;
}

} // namespace

const std::vector<PickKind>& pick_kinds() {
  static const std::vector<PickKind> kinds = {
      {'6', "nodes", {GMeshPicker::gNodeType}},
      {'7', "edges", {GMeshPicker::gEdgeType}},
      {'8', "faces", {GMeshPicker::gTriType, GMeshPicker::gQuadType, GMeshPicker::g2dElementType}},
      {'9',
       "solids",
       {GMeshPicker::gHexType, GMeshPicker::gTetType, GMeshPicker::gPyramidType, GMeshPicker::gWedgeType,
        GMeshPicker::gSuperElemType, GMeshPicker::g3dElementType}}};
  return kinds;
}

Names all_kinds_filter() {
  Names all;
  for (const PickKind& kind : pick_kinds())
    all.insert(all.end(), kind.filter.begin(), kind.filter.end());
  return all;
}

Names filter_of_mesh(const Tarn::MeshDatabase& database) {
  Names names;
  for (const auto& [type, name] : kinds_of_element)
    if (database.element_count(type) > 0) names.emplace_back(*name);
  return names;
}

std::string describe_filter(const Names& filter) {
  if (filter.empty()) return "nothing";
  std::size_t explained = 0;
  Names words;
  for (const PickKind& kind : pick_kinds()) {
    if (!admits(filter, kind)) continue;
    explained +=
        std::count_if(filter.begin(), filter.end(), [&](const auto& name) { return holds(kind.filter, name); });
    words.emplace_back(kind.name);
  }
  if (explained < filter.size()) return joined(filter);
  return words.size() == pick_kinds().size() ? "all" : joined(words);
}

bool admits(const Names& filter, const PickKind& kind) {
  return std::any_of(kind.filter.begin(), kind.filter.end(), [&](const auto& name) { return holds(filter, name); });
}

std::vector<Tarn::ElementType> admitted_types(const Names& filter) {
  std::vector<Tarn::ElementType> types;
  for (const auto& [type, name] : kinds_of_element) {
    const bool is_shell = type == Tarn::Tri || type == Tarn::Quad;
    const char* const group = is_shell ? GMeshPicker::g2dElementType : GMeshPicker::g3dElementType;
    const bool by_group = type != Tarn::Edge && holds(filter, group);
    if (by_group || holds(filter, *name) || holds(filter, GMeshPicker::gElementType)) types.push_back(type);
  }
  std::sort(types.begin(), types.end());
  return types;
}

Names toggled(const Names& filter, const PickKind& kind) {
  Names out;
  for (const std::string& name : filter)
    if (!holds(kind.filter, name)) out.push_back(name);
  if (!admits(filter, kind)) out.insert(out.end(), kind.filter.begin(), kind.filter.end());
  return out;
}

} // namespace viewer
