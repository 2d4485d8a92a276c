#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"
#include "tests/proof/Dice.h"
#include "tests/proof/PickSettings.h"
#include "tests/proof/RegionOracle.h"

#include <gtest/gtest.h>

#include <vtkFloatArray.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unordered_map>

using namespace proof;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int rounds = 1;
#else
constexpr int rounds = 12;
#endif

Look random_look(Dice& dice, const Look& in) {
  Look look = in;
  look.direction = {dice.between(-1, 1), dice.between(-1, 1), dice.between(-1, 1)};
  look.parallel = dice.toss();
  look.angle = dice.between(15, 80);
  // Now and then from inside the mesh.
  look.zoom = dice.below(5) == 0 ? 6 : dice.between(0.6, 2);
  look.shift = {dice.between(-0.2, 0.2), dice.between(-0.2, 0.2), dice.between(-0.2, 0.2)};
  return look;
}

/// A region in the middle of the view, so that the mesh is not all in it or out of it.
Region random_region(Dice& dice, const Scene& scene, const Look& look) {
  const auto place = [&] {
    const double x = look.viewport[0] + dice.between(0.05, 0.95) * (look.viewport[2] - look.viewport[0]);
    const double y = look.viewport[1] + dice.between(0.05, 0.95) * (look.viewport[3] - look.viewport[1]);
    return std::array<double, 2>{x * scene.width, y * scene.height};
  };
  Region region;
  region.kind = static_cast<Region::Kind>(dice.below(3));
  region.radius = dice.between(2, 60);
  const int corners = region.kind == Region::Box ? 2 : region.kind == Region::Circle ? 1 : 3 + dice.below(5);
  for (int i = 0; i < corners; ++i)
    region.corners.push_back(place());
  return region;
}

std::unique_ptr<PickBounds> bounds_of(const Region& region) {
  switch (region.kind) {
  case Region::Box:
    return std::make_unique<PickRectangle>(region.corners[0].data(), region.corners[1].data());
  case Region::Circle:
    return std::make_unique<PickCircle>(region.corners[0].data(), region.radius);
  default:
    return std::make_unique<PickPolygon>(region.corners);
  }
}

/// A filter of some of the names, and what it admits.
std::vector<std::string> random_filter(Dice& dice, Admitted& admitted) {
  static const std::pair<const char*, Tarn::ElementType> kinds[] = {{"Hex", Tarn::Hex},         {"Tet", Tarn::Tet},
                                                                    {"Pyramid", Tarn::Pyramid}, {"Wedge", Tarn::Wedge},
                                                                    {"Tri", Tarn::Tri},         {"Face", Tarn::Quad}};
  std::vector<std::string> filter;
  admitted = {false, false, {}};
  const auto with = [&](const char* name) {
    const bool is_in = dice.toss();
    if (is_in) filter.emplace_back(name);
    return is_in;
  };
  for (const auto& [name, type] : kinds)
    if (with(name)) admitted.kinds.insert(type);
  admitted.nodes = with("Node");
  admitted.edges = with("Edge");
  with("Knife");
  with("Superelement");
  if (dice.below(4) == 0) {
    filter.emplace_back("ThreeDimElement");
    admitted.kinds.insert({Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge});
  }
  if (dice.below(4) == 0) {
    filter.emplace_back("TwoDimElement");
    admitted.kinds.insert({Tarn::Tri, Tarn::Quad});
  }
  if (dice.below(8) == 0) {
    filter.emplace_back("Element");
    admitted = {true, true, {Tarn::Tri, Tarn::Quad, Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid}};
  }
  return filter;
}

/// Tells records by their places in the mesh.
class Reader {
public:
  explicit Reader(const Mesh& mesh) : mesh_(mesh) {
    for (std::size_t i = 0; i < mesh.handles.size(); ++i)
      nodes_[mesh.handles[i].value] = static_cast<int>(i);
    for (std::size_t i = 0; i < mesh.elements.size(); ++i)
      elements_[mesh.elements[i].handle.value] = static_cast<int>(i);
  }

  Entities read(const std::vector<EntitySelection>& selections) const {
    Entities found;
    for (const EntitySelection& each : selections) {
      const std::string type = each.entity()->type();
      const auto handle = each.entity()->handle();
      if (type == "Node")
        found.nodes.insert(nodes_.at(handle));
      else if (type == "Edge")
        found.edges.insert(corners_of({handle}));
      else
        found.elements.insert(elements_.at(handle));
    }
    return found;
  }

private:
  std::pair<int, int> corners_of(Tarn::Handle<1> edge) const {
    Tarn::Handle<0> nodes[2];
    Tarn::MeshData::Count count = 2;
    mesh_.database->get_element_connectivity(edge, &count, nodes);
    return std::minmax(nodes_.at(nodes[0].value), nodes_.at(nodes[1].value));
  }

  const Mesh& mesh_;
  std::unordered_map<unsigned long long, int> nodes_;
  std::unordered_map<unsigned long long, int> elements_;
};

Depths read_depths(vtkRenderWindow* window) {
  const int width = window->GetSize()[0];
  const int height = window->GetSize()[1];
  vtkNew<vtkFloatArray> values;
  window->GetZbufferData(0, 0, width - 1, height - 1, values);
  return {width, height, {values->GetPointer(0), values->GetPointer(0) + values->GetNumberOfValues()}};
}

std::string describe(const Entities& is, const Entities& should) {
  const auto line = [](const char* name, std::size_t count, std::size_t wanted) {
    return std::string(name) + std::to_string(count) + " instead of " + std::to_string(wanted) + "; ";
  };
  return line("nodes ", is.nodes.size(), should.nodes.size()) + line("edges ", is.edges.size(), should.edges.size()) +
         line("elements ", is.elements.size(), should.elements.size());
}

std::size_t size(const Entities& entities) {
  return entities.nodes.size() + entities.edges.size() + entities.elements.size();
}

TEST(RegionPick, GivenRandomRegions_WhenPickedThrough_ThenEveryEntityIsJudgedAsByBruteForce) {
  const PickSettings settings;
  Dice dice(11);
  std::size_t picked = 0;
  int regions = 0;
  int empty = 0;
  for (Scene& scene : all_scenes()) {
    Stage stage(scene);
    const Reader reader(scene.mesh);
    for (int round = 0; round < rounds; ++round) {
      const std::size_t index = std::size_t(dice.below(int(stage.view_count())));
      const Look look = random_look(dice, scene.views[index]);
      vtkCamera* camera = stage.view(index)->renderer()->GetActiveCamera();
      set_camera(camera, scene.mesh, look);
      const Projection project(camera, scene, look);
      for (int i = 0; i < 6; ++i) {
        Admitted admitted;
        GPickerBase::set_filter(random_filter(dice, admitted));
        const bool whole = dice.toss();
        MultiCellPicker::mBoxPickAcceptPartialCells = !whole;
        const Region region = random_region(dice, scene, look);
        GPickerBase::pick_by_bounds(stage.view(index), *bounds_of(region));
        const Entities is = reader.read(GPickerBase::picked());
        const Entities should = pick_through(scene.mesh, stage.shown(), project, region, admitted, whole);
        EXPECT_TRUE(is == should) << scene.name << ", round " << round << ", region " << i << ": "
                                  << describe(is, should);
        picked += size(is);
        ++regions;
        empty += size(is) == 0;
      }
    }
  }
  std::printf("%d regions, %d of them empty, %zu entities picked through\n", regions, empty, picked);
  EXPECT_LT(empty, regions / 2);
}

/// How often a pick of what is visible and the picture of ids agree.
struct Rates {
  long drawn = 0;
  long drawn_not_picked = 0;
  long picked = 0;
  long picked_not_drawn = 0;

  void add(const std::set<int>& drawn_ids, const std::set<int>& picked_ids) {
    drawn += long(drawn_ids.size());
    picked += long(picked_ids.size());
    for (const int id : drawn_ids)
      drawn_not_picked += long(picked_ids.count(id) == 0);
    for (const int id : picked_ids)
      picked_not_drawn += long(drawn_ids.count(id) == 0);
  }
  void print(const char* title) const {
    std::printf("%s: %ld of %ld drawn elements not picked (%.2f %%), %ld of %ld picked ones not drawn (%.2f %%)\n",
                title, drawn_not_picked, drawn, 100.0 * double(drawn_not_picked) / double(drawn), picked_not_drawn,
                picked, 100.0 * double(picked_not_drawn) / double(picked));
  }
};

std::set<int> drawn_in(const std::vector<int>& ids, const Scene& scene, const Region& region) {
  std::set<int> found;
  for (int y = 0; y < scene.height; ++y) {
    for (int x = 0; x < scene.width; ++x) {
      const int id = ids[std::size_t(y) * std::size_t(scene.width) + std::size_t(x)];
      // Superelements are not picked by regions.
      if (id >= 0 && scene.mesh.elements[std::size_t(id)].type != Tarn::Superelement &&
          region.touches(Pixel{Real(x) + 0.5L, Real(y) + 0.5L, 0}))
        found.insert(id);
    }
  }
  return found;
}

Region whole_view(const Scene& scene, const Look& look) {
  Region region;
  region.corners = {{look.viewport[0] * scene.width, look.viewport[1] * scene.height},
                    {look.viewport[2] * scene.width, look.viewport[3] * scene.height}};
  return region;
}

TEST(RegionPick, GivenRandomRegions_WhenOnlyTheVisibleIsPicked_ThenEveryEntityIsJudgedByTheRule) {
  const PickSettings settings;
  Dice dice(12);
  Rates in_regions;
  Rates in_views;
  std::size_t hidden = 0;
  std::size_t visible = 0;
  for (Scene& scene : all_scenes()) {
    Stage stage(scene);
    const Reader reader(scene.mesh);
    for (int round = 0; round < (rounds + 1) / 2; ++round) {
      const std::size_t index = std::size_t(dice.below(int(stage.view_count())));
      const Look look = random_look(dice, scene.views[index]);
      vtkCamera* camera = stage.view(index)->renderer()->GetActiveCamera();
      set_camera(camera, scene.mesh, look);
      const Projection project(camera, scene, look);
      const std::vector<int> ids = draw_ids(scene, stage.shown(), look, 1);
      for (int i = 0; i < 5; ++i) {
        const bool in_view = i == 4;
        Admitted admitted;
        std::vector<std::string> filter = random_filter(dice, admitted);
        if (in_view) {
          filter = {"ThreeDimElement", "TwoDimElement"};
          admitted = Admitted{false, false, Admitted().kinds};
        }
        GPickerBase::set_filter(filter);
        const bool whole = !in_view && dice.toss();
        MultiCellPicker::mBoxPickAcceptPartialCells = !whole;
        const Region region = in_view ? whole_view(scene, look) : random_region(dice, scene, look);
        MultiCellPicker::mSelectVisibleOnly = true;
        GPickerBase::pick_by_bounds(stage.view(index), *bounds_of(region));
        const Entities is = reader.read(GPickerBase::picked());
        const Entities through = pick_through(scene.mesh, stage.shown(), project, region, admitted, whole);
        const Entities should = visible_of(through, scene.mesh, project, read_depths(stage.window()));
        EXPECT_TRUE(is == should) << scene.name << ", round " << round << ", region " << i << ": "
                                  << describe(is, should);
        hidden += size(through) - size(should);
        visible += size(should);
        if (in_view) in_views.add(drawn_in(ids, scene, region), is.elements);
        if (!in_view && !whole && admitted.kinds.size() == Admitted().kinds.size())
          in_regions.add(drawn_in(ids, scene, region), is.elements);
      }
    }
  }
  std::printf("%zu visible, %zu hidden\n", visible, hidden);
  in_regions.print("regions");
  in_views.print("whole views");
  EXPECT_GT(visible, 100u);
  EXPECT_GT(hidden, visible / 10) << "nothing much was hidden";
}

} // namespace
