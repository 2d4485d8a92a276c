#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"
#include "tests/proof/Dice.h"
#include "tests/proof/PickSettings.h"
#include "tests/proof/Scene.h"

#include <gtest/gtest.h>

#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>

using namespace proof;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int rounds = 15;
#else
constexpr int rounds = 150;
#endif

const std::vector<std::string> thirteen_names = {
    "Hex", "Tet",  "Pyramid", "Wedge",           "Knife",         "Superelement", "Face",
    "Tri", "Edge", "Node",    "ThreeDimElement", "TwoDimElement", "Element"};

/// Every kind of entity in five owners: mixed solids in three, shells and beams on them in two more, one-node elements,
/// superelements and lone nodes among them.
Scene crowded_scene() {
  Scene scene;
  const Tarn::ElementType kinds[] = {Tarn::Hex, Tarn::Wedge, Tarn::Tet, Tarn::Pyramid};
  scene.mesh = block(
      4, 3, 3, [&kinds](int x, int y, int z) { return kinds[(x + 2 * y + z) % 4]; },
      [](int x, int y, int) { return (x + y) % 3; });
  add_shells(scene.mesh, 3, 3);
  scene.mesh.owner_count = 5;
  for (int i = 0; i < 12; ++i) {
    const double at = 0.3 * i;
    // Beams of their own, not on the solids' edges: an edge that both have is one entity.
    const int a = scene.mesh.add_point({at, -0.5, 0.2 * i});
    const int b = scene.mesh.add_point({at + 0.2, 3.5, 3 - 0.2 * i});
    scene.mesh.add(Tarn::Edge, {a, b}, i % 5);
    scene.mesh.add(Tarn::OneNode, {a}, (i + 1) % 5);
    scene.mesh.add(Tarn::Superelement, {b, scene.mesh.add_point({at, 1.5, 3.6})}, (i + 2) % 5);
    scene.mesh.lone_nodes.emplace_back(scene.mesh.add_point({4.4, at, 0.25 * i}), (i + 3) % 5);
  }
  return scene;
}

/// What may be reported: elements, their edges and their nodes.
struct Allowed {
  Allowed(const Mesh& mesh, const std::vector<int>& hidden, const Clip& clip) {
    const std::vector<char> shown = mesh.shown(hidden, clip);
    for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
      if (!shown[i]) continue;
      const Element& element = mesh.elements[i];
      elements.insert(element.handle.value);
      for (const int node : element.nodes)
        nodes.insert(mesh.handles[std::size_t(node)].value);
      for (const auto& edge : edges_of(element.type))
        edges.insert(key(mesh.handles[std::size_t(element.nodes[std::size_t(edge[0])])],
                         mesh.handles[std::size_t(element.nodes[std::size_t(edge[1])])]));
    }
    const std::vector<char> lone = mesh.shown_lone_nodes(hidden, clip);
    for (std::size_t i = 0; i < mesh.lone_nodes.size(); ++i)
      if (lone[i]) nodes.insert(mesh.handles[std::size_t(mesh.lone_nodes[i].first)].value);
  }

  bool holds(const Mesh& mesh, const GPicked::PickedEntity* entity) const {
    const std::string type = entity->type();
    if (type == "Node") return nodes.count(entity->handle()) != 0;
    // In element mode a node stands for the element on it, whatever is said of that element.
    if (type == "OneNode") return nodes.count(node_of(mesh, {entity->handle()})) != 0;
    if (type != "Edge") return elements.count(entity->handle()) != 0;
    Tarn::Handle<0> ends[2];
    Tarn::MeshData::Count count = 2;
    mesh.database->get_element_connectivity({entity->handle()}, &count, ends);
    return edges.count(key(ends[0], ends[1])) != 0;
  }

  static std::uint64_t node_of(const Mesh& mesh, Tarn::Handle<1> element) {
    Tarn::Handle<0> node;
    Tarn::MeshData::Count count = 1;
    mesh.database->get_element_connectivity(element, &count, &node);
    return node.value;
  }
  static std::pair<std::uint64_t, std::uint64_t> key(Tarn::Handle<0> a, Tarn::Handle<0> b) {
    return std::minmax(a.value, b.value);
  }

  std::set<std::uint64_t> nodes;
  std::set<std::uint64_t> elements;
  std::set<std::pair<std::uint64_t, std::uint64_t>> edges;
};

std::vector<std::string> some_names(Dice& dice) {
  std::vector<std::string> names;
  for (const std::string& name : thirteen_names)
    if (name == "Element" ? dice.below(6) == 0 : dice.toss()) names.push_back(name);
  return names;
}

TEST(HiddenAndClipped, GivenRandomOwnersHiddenAndPlanes_WhenPickedAnyhow_ThenNoRecordIsOfWhatIsNotShown) {
  const PickSettings settings;
  Dice dice(21);
  Scene scene = crowded_scene();
  Stage stage(scene);
  GView* view = stage.view(0);
  long records = 0;
  long with_element_mode = 0;
  std::set<std::string> types;
  for (int round = 0; round < rounds; ++round) {
    std::vector<int> hidden;
    for (int owner = 0; owner < 5; ++owner)
      if (dice.below(3) == 0) hidden.push_back(owner);
    Clip clip;
    clip.on = dice.toss();
    clip.origin = {dice.between(0.5, 3.5), dice.between(0.5, 2.5), dice.between(0.5, 2.5)};
    clip.normal = {dice.between(-1, 1), dice.between(-1, 1), dice.between(-1, 1)};
    // Also when no frame was drawn since.
    stage.show(hidden, clip, dice.toss());
    const Allowed allowed(scene.mesh, hidden, clip);
    Look look;
    look.direction = {dice.between(-1, 1), dice.between(-1, 1), dice.between(-1, 1)};
    look.parallel = dice.toss();
    set_camera(view->renderer()->GetActiveCamera(), scene.mesh, look);
    for (int i = 0; i < 12; ++i) {
      const std::vector<std::string> filter = some_names(dice);
      GPickerBase::set_filter(filter);
      MultiCellPicker::SetPickToleranceByWindowDiagonal(dice.between(0.001, 0.1));
      MultiCellPicker::mSelectVisibleOnly = dice.below(4) == 0;
      MultiCellPicker::mBoxPickAcceptPartialCells = dice.toss();
      const double low[2] = {dice.between(0, scene.width), dice.between(0, scene.height)};
      const double high[2] = {dice.between(0, scene.width), dice.between(0, scene.height)};
      PickRectangle box(low, high);
      if (i < 8)
        GPickerBase::pick(view, float(low[0]), float(low[1]));
      else
        GPickerBase::pick_by_bounds(view, box);
      GPickerBase::hover(view, float(high[0]), float(high[1]));
      for (const EntitySelection& each : GPickerBase::possible_selections()) {
        EXPECT_TRUE(allowed.holds(scene.mesh, each.entity()))
            << "round " << round << ": " << each.entity()->type() << " " << each.entity()->id();
        types.insert(each.entity()->type());
        ++records;
        with_element_mode += filter.back() == "Element";
      }
      if (const auto* hovered = GPickerBase::pre_selection().entity()) {
        EXPECT_TRUE(allowed.holds(scene.mesh, hovered)) << "round " << round << ", hovered: " << hovered->type();
      }
    }
  }
  std::printf("%ld records, %ld in element mode\n", records, with_element_mode);
  EXPECT_GT(records, 10 * rounds);
  EXPECT_EQ(types.size(), 10u) << "nodes and every kind";
}

// Flat props all over the window, as labels, legends and help are.
class Clutter {
public:
  explicit Clutter(vtkRenderer* renderer) : renderer_(renderer) {
    for (int i = 0; i < 12; ++i) {
      texts_[i]->SetInput("a label that is long enough to lie on many elements");
      texts_[i]->GetTextProperty()->SetFontSize(18);
      texts_[i]->GetTextProperty()->SetBackgroundColor(0.2, 0.2, 0.2);
      texts_[i]->GetTextProperty()->SetBackgroundOpacity(1);
      texts_[i]->SetDisplayPosition(0, 14 * i);
      renderer_->AddViewProp(texts_[i]);
    }
  }
  ~Clutter() {
    for (const auto& text : texts_)
      renderer_->RemoveViewProp(text);
  }

private:
  vtkRenderer* renderer_;
  vtkNew<vtkTextActor> texts_[12];
};

// Asks a mesh picker for everything, after drawing a picture over the depth.
class PictureFirst : public GPicker {
public:
  PictureFirst() { GPickerBase::register_picker("picture first", this); }
  ~PictureFirst() override { GPickerBase::unregister_picker("picture first", this); }
  void compute_pick(vtkRenderer*, float, float) override {}
  void compute_pre_select(vtkRenderer*, float, float) override {}
  void compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override {
    if (draws) renderer->GetRenderWindow()->Render();
    mesh_.compute_pick_by_bounds(renderer, bounds, false);
  }
  bool draws = true;

private:
  GMeshPicker mesh_;
};

std::vector<std::string> picked_names() {
  std::vector<std::string> names;
  for (const EntitySelection& each : GPickerBase::picked())
    names.push_back(std::string(each.entity()->type()) + " " + std::to_string(each.entity()->handle()));
  return names;
}

TEST(VisibleOnly, GivenLabelsAllOverTheWindow_WhenARegionIsPicked_ThenTheAnswerIsTheSameAsWithout) {
  const PickSettings settings;
  MultiCellPicker::mSelectVisibleOnly = true;
  Scene scene = crowded_scene();
  Stage stage(scene);
  PictureFirst picker;
  GPickerBase::set_filter({"picture first"}); // all kinds, of that picker alone
  const double low[2] = {20, 20};
  const double high[2] = {170, 140};
  PickRectangle box(low, high);
  picker.draws = false;
  ASSERT_TRUE(GPickerBase::pick_by_bounds(stage.view(0), box));
  const std::vector<std::string> alone = picked_names();

  const Clutter clutter(stage.view(0)->renderer());
  stage.view(0)->render();
  ASSERT_TRUE(GPickerBase::pick_by_bounds(stage.view(0), box));
  EXPECT_EQ(picked_names(), alone);
  picker.draws = true;
  GPickerBase::pick_by_bounds(stage.view(0), box);
  EXPECT_NE(picked_names(), alone) << "the labels were not in the way at all";
}

TEST(VisibleOnly, GivenTheModelsOwnLabels_WhenRegionsArePickedInAnyMode_ThenTheAnswersAreTheSameAsWithout) {
  const PickSettings settings;
  MultiCellPicker::mSelectVisibleOnly = true;
  Scene scene = crowded_scene();
  Stage stage(scene);
  PictureFirst picker;
  GPickerBase::set_filter({"picture first"});
  const int font_size = GModel::text_property()->GetFontSize();
  GModel::text_property()->SetFontSize(40); // as many pixels as a few labels can cover
  const auto show_labels = [&](OBUtil::LabelType flag) {
    stage.model().set_node_label_flag(flag);
    for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type)
      stage.model().set_element_label_flag(static_cast<Tarn::ElementType>(type), flag);
    stage.view(0)->render();
  };
  const double low[2] = {20, 20};
  const double high[2] = {170, 140};
  PickRectangle box(low, high);
  for (const OBUtil::RenderMode mode : {OBUtil::Wireframe, OBUtil::HiddenLine, OBUtil::DimmedHiddenLine, OBUtil::Shaded,
                                        OBUtil::Translucent, OBUtil::SmoothShaded}) {
    stage.model().set_render_mode(mode);
    show_labels(OBUtil::NoLabel);
    picker.draws = false;
    ASSERT_TRUE(GPickerBase::pick_by_bounds(stage.view(0), box)) << mode;
    const std::vector<std::string> alone = picked_names();
    show_labels(OBUtil::LocalId);
    ASSERT_TRUE(GPickerBase::pick_by_bounds(stage.view(0), box)) << mode;
    EXPECT_EQ(picked_names(), alone) << mode;
    picker.draws = true;
    GPickerBase::pick_by_bounds(stage.view(0), box);
    EXPECT_NE(picked_names(), alone) << "in mode " << mode << " the labels were not in the way at all";
  }
  GModel::text_property()->SetFontSize(font_size);
}

} // namespace
