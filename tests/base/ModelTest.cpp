#include "platform/base/GDataGroup.h"
#include "platform/base/GDataGroupEntity.h"
#include "platform/base/GModel.h"
#include "tests/base/Frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkAlgorithmOutput.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRendererCollection.h>

#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A model that shows what it holds and notes what it is called for.
class Model : public GModel {
public:
  using GModel::view_props_;

  void update_parts() override { calls.push_back("update"); }
  void Render(GView*) override { calls.push_back("render"); }

  std::size_t props_in(GView* view, vtkDataObject* data) {
    const auto in_view = view_props_.find(view);
    if (in_view == view_props_.end()) return 0;
    const auto made = in_view->second.find(data);
    return made == in_view->second.end() ? 0 : made->second.size();
  }

  std::vector<std::string> calls;
};

GModel::PropFactory factory(std::vector<GView*>* asked = nullptr, std::vector<vtkDataObject*>* for_data = nullptr) {
  return [asked, for_data](vtkDataObject* data, GView* view) {
    if (asked) asked->push_back(view);
    if (for_data) for_data->push_back(data);
    return PropList{vtkSmartPointer<vtkActor>::New()};
  };
}

int shown(OffscreenView& view) { return view.renderer()->GetViewProps()->GetNumberOfItems(); }

TEST(Model, GivenOpenViews_WhenAPartIsAdded_ThenItsFactoryIsCalledOncePerView) {
  OffscreenView one, other;
  Model model;
  vtkNew<vtkPolyData> data;
  std::vector<GView*> asked;
  model.add_part(data, factory(&asked));
  EXPECT_THAT(asked, ElementsAre(one.get(), other.get()));
  EXPECT_EQ(shown(one), 1);
  EXPECT_EQ(shown(other), 1);
  EXPECT_EQ(model.props_in(one.get(), data), 1u);
}

TEST(Model, GivenParts_WhenAViewOpensLater_ThenItGetsTheirPropsInOrderOfAdding) {
  Model model;
  std::vector<vtkSmartPointer<vtkPolyData>> parts;
  std::vector<vtkDataObject*> order, expected;
  for (int i = 0; i < 20; ++i) {
    parts.push_back(vtkSmartPointer<vtkPolyData>::New());
    expected.push_back(parts.back());
    model.add_part(parts.back(), factory(nullptr, &order));
  }
  EXPECT_THAT(order, IsEmpty()) << "no view is open";
  OffscreenView view;
  EXPECT_EQ(order, expected);
  EXPECT_EQ(shown(view), 20);
}

TEST(Model, GivenAPart_WhenItsDataAreAddedAgain_ThenTheFirstFactoryStays) {
  OffscreenView view;
  Model model;
  vtkNew<vtkPolyData> data;
  std::vector<GView*> first, second;
  model.add_part(data, factory(&first));
  model.add_part(data, factory(&second));
  EXPECT_EQ(first.size(), 1u);
  EXPECT_THAT(second, IsEmpty());
  OffscreenView later;
  EXPECT_EQ(first.size(), 2u);
  EXPECT_THAT(second, IsEmpty());
}

TEST(Model, GivenAPart_WhenItIsRemoved_ThenItsPropsGoAndUnknownPointersAreIgnored) {
  OffscreenView view;
  Model model;
  vtkNew<vtkPolyData> stays;
  model.add_part(stays, factory());
  vtkDataObject* gone = nullptr;
  {
    vtkNew<vtkPolyData> data;
    gone = data;
    model.add_part(data, factory());
    EXPECT_EQ(data->GetReferenceCount(), 2);
    EXPECT_EQ(shown(view), 2);
    model.remove_part(data);
    EXPECT_EQ(data->GetReferenceCount(), 1);
  }
  EXPECT_EQ(shown(view), 1);
  model.remove_part(gone); // stale: a key, never read
  model.remove_part(nullptr);
  EXPECT_EQ(shown(view), 1);
  EXPECT_EQ(model.props_in(view.get(), stays), 1u);
  model.remove_part(stays);
  EXPECT_THAT(model.view_props_, IsEmpty());
}

TEST(Model, GivenAModel_WhenUnhookedAndHooked_ThenPropsGoAndComeBackAndViewsMeanwhileAreLeftAlone) {
  OffscreenView view;
  Model model;
  vtkNew<vtkPolyData> data;
  vtkNew<vtkActor> widget;
  model.add_part(data, factory());
  model.add_widget(widget);
  EXPECT_EQ(shown(view), 2);
  model.unhook_from_views();
  model.unhook_from_views();
  EXPECT_EQ(shown(view), 0);
  OffscreenView meanwhile;
  EXPECT_EQ(shown(meanwhile), 0);
  view.render();
  EXPECT_THAT(model.calls, IsEmpty());
  model.hook_to_views();
  model.hook_to_views();
  EXPECT_EQ(shown(view), 2);
  EXPECT_EQ(shown(meanwhile), 2);
}

TEST(Model, GivenWidgets_WhenAddedAndRemoved_ThenTheyAreInEveryViewOnce) {
  OffscreenView view;
  Model model;
  vtkNew<vtkActor> widget;
  model.add_widget(widget);
  model.add_widget(widget);
  model.add_widget(nullptr);
  OffscreenView later;
  EXPECT_EQ(shown(view), 1);
  EXPECT_EQ(shown(later), 1);
  model.remove_widget(widget);
  model.remove_widget(widget);
  EXPECT_EQ(shown(view), 0);
  EXPECT_EQ(shown(later), 0);
}

TEST(Model, GivenPartsAndWidgets_WhenCleared_ThenNothingIsLeftForLaterViewsEither) {
  OffscreenView view;
  Model model;
  vtkNew<vtkPolyData> data;
  vtkNew<vtkActor> widget;
  model.add_part(data, factory());
  model.add_widget(widget);
  model.clear();
  OffscreenView later;
  EXPECT_EQ(shown(view), 0);
  EXPECT_EQ(shown(later), 0);
  EXPECT_EQ(data->GetReferenceCount(), 1);
}

TEST(Model, GivenAFrame_WhenRendered_ThenEachHookedModelIsUpdatedAndThenTold) {
  OffscreenView view;
  Model model;
  view.render();
  EXPECT_THAT(model.calls, ElementsAre("update", "render"));
}

TEST(Model, GivenViewsAndModels_WhenTheyDieInAnyOrder_ThenTheOthersForgetThem) {
  auto first = std::make_unique<OffscreenView>();
  OffscreenView second;
  EXPECT_THAT(GView::views(), ElementsAre(first->get(), second.get()));
  auto model = std::make_unique<Model>();
  vtkNew<vtkPolyData> data;
  model->add_part(data, factory());
  GView* gone = first->get();
  first.reset();
  EXPECT_THAT(GView::views(), ElementsAre(second.get()));
  EXPECT_EQ(model->view_props_.count(gone), 0u);
  EXPECT_EQ(shown(second), 1);
  model.reset();
  EXPECT_EQ(shown(second), 0);
  second.render();
}

TEST(Model, GivenAFactoryThatRemovesItsOwnPart_WhenAdded_ThenNoPropIsShown) {
  OffscreenView view;
  Model model;
  vtkNew<vtkPolyData> data;
  model.add_part(data, [&](vtkDataObject* part, GView*) {
    model.remove_part(part);
    return PropList{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_EQ(shown(view), 0);
  EXPECT_EQ(model.props_in(view.get(), data), 0u);
}

TEST(Model, GivenAModelThatDiesDuringTheFrame_WhenRendered_ThenTheFrameGoesOn) {
  OffscreenView view;
  class Mortal : public GModel {
  public:
    void update_parts() override {
      if (victim) victim->reset();
    }
    std::unique_ptr<Model>* victim = nullptr;
  } killer;
  auto victim = std::make_unique<Model>();
  killer.victim = &victim;
  view.render();
  EXPECT_EQ(victim, nullptr);
  view.render();
}

TEST(Model, GivenAViewThatClosesDuringItsOwnFrame_WhenRendered_ThenNothingIsToldOfItAfterwards) {
  auto view = std::make_unique<OffscreenView>();
  const vtkSmartPointer<vtkRenderWindow> window = view->window();
  class Closer : public GModel {
  public:
    void update_parts() override { view->close(); }
    OffscreenView* view = nullptr;
  } closer;
  closer.view = view.get();
  Model later;
  view->get()->render();
  EXPECT_THAT(GView::views(), IsEmpty());
  EXPECT_THAT(later.calls, IsEmpty());
  EXPECT_EQ(window->GetRenderers()->GetNumberOfItems(), 0);
}

TEST(Model, GivenAFactoryThatDestroysItsModel_WhenAPartIsAdded_ThenNothingIsShown) {
  OffscreenView first, second;
  auto model = std::make_unique<Model>();
  vtkNew<vtkPolyData> data;
  int calls = 0;
  model->add_part(data, [&](vtkDataObject*, GView*) {
    ++calls;
    model.reset();
    return PropList{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(model, nullptr);
  EXPECT_EQ(shown(first) + shown(second), 0);
  EXPECT_EQ(data->GetReferenceCount(), 1);
}

TEST(Model, GivenAFactoryThatClosesAnotherView_WhenAPartIsAdded_ThenThatViewIsPassedOver) {
  OffscreenView first, second;
  Model model;
  vtkNew<vtkPolyData> data;
  std::vector<GView*> asked;
  model.add_part(data, [&](vtkDataObject*, GView* view) {
    asked.push_back(view);
    second.close();
    return PropList{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_THAT(asked, ElementsAre(first.get()));
  EXPECT_EQ(model.view_props_.size(), 1u);
  EXPECT_EQ(shown(first), 1);
}

TEST(Model, GivenAFactoryThatAddsAPart_WhenAViewOpens_ThenBothPartsAreShownOnce) {
  Model model;
  vtkNew<vtkPolyData> data, more;
  std::vector<GView*> asked;
  model.add_part(data, [&](vtkDataObject*, GView*) {
    model.add_part(more, factory(&asked));
    return PropList{vtkSmartPointer<vtkActor>::New()};
  });
  OffscreenView view;
  EXPECT_THAT(asked, ElementsAre(view.get()));
  EXPECT_EQ(shown(view), 2);
  EXPECT_EQ(model.props_in(view.get(), data), 1u);
  EXPECT_EQ(model.props_in(view.get(), more), 1u);
}

TEST(Model, GivenAWindowThatTheHostDraws_WhenItRenders_ThenModelsAreUpdatedAsInAnyFrame) {
  OffscreenView view;
  Model model;
  view.window()->Render();
  EXPECT_THAT(model.calls, ElementsAre("update", "render"));
}

TEST(Model, GivenARenderMode_WhenSet_ThenItIsStored) {
  Model model;
  EXPECT_EQ(model.get_render_mode(), OBUtil::Shaded);
  model.set_render_mode(OBUtil::Translucent);
  EXPECT_EQ(model.get_render_mode(), OBUtil::Translucent);
}

class Group : public GDataGroup {
public:
  Group() {
    for (int i = 0; i < 3; ++i)
      data_objects_.push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
  }
  GDataGroup* new_instance() override { return new Group; }
  void do_update() override {}
};

TEST(Model, GivenDataGroups_WhenAttributesAreSet_ThenTheChangeReachesThePropsOfThatPartInEachView) {
  OffscreenView one, other;
  Model model;
  Group group;
  GDataGroup* below = group.add_group();
  const BlockList blocks = group.all_blocks();
  model.add_part(blocks[1], factory());
  model.add_part(blocks[2], factory());
  model.add_part(below->all_blocks()[1], factory());
  std::vector<GView*> reached;
  const auto note = [&reached](GView* view, PropList& props) {
    reached.push_back(view);
    ASSERT_EQ(props.size(), 1u);
    props[0]->VisibilityOff();
  };
  GModel::set_datagroup_attributes(&group, 1, model.view_props_, note);
  EXPECT_THAT(reached, testing::UnorderedElementsAre(one.get(), one.get(), other.get(), other.get()));
  EXPECT_FALSE(model.view_props_[one.get()][blocks[1]][0]->GetVisibility());
  EXPECT_TRUE(model.view_props_[one.get()][blocks[2]][0]->GetVisibility());
  reached.clear();
  GModel::set_datagroup_attributes(&group, 0, model.view_props_, note);
  GModel::set_datagroup_attributes(&group, 7, model.view_props_, note);
  GModel::set_datagroup_attributes(&group, -1, model.view_props_, note);
  EXPECT_THAT(reached, IsEmpty());
}

TEST(Model, GivenMultiBlockData_WhenAMapperIsMade_ThenItsProducerGivesTheDataThemselves) {
  OffscreenView view;
  vtkNew<vtkMultiBlockDataSet> data;
  const auto mapper = GModel::create_mapper(data, view.get());
  ASSERT_NE(mapper, nullptr);
  EXPECT_EQ(mapper->GetInputConnection(0, 0)->GetProducer()->GetOutputDataObject(0), data.Get());
  vtkNew<vtkPolyData> poly;
  EXPECT_EQ(GModel::create_mapper(poly, view.get())->GetInputConnection(0, 0)->GetProducer()->GetOutputDataObject(0),
            poly.Get());
}

TEST(Model, GivenAMapper_WhenItsOffsetIsSet_ThenItIsRelativeAndViewsResolveByIt) {
  OffscreenView view;
  vtkNew<vtkPolyData> data;
  const auto mapper = GModel::create_mapper(data, view.get());
  GModel::set_polygon_offset(mapper, 1.5, 2.5);
  double factor = 0, units = 0;
  mapper->GetRelativeCoincidentTopologyPolygonOffsetParameters(factor, units);
  EXPECT_EQ(factor, 1.5);
  EXPECT_EQ(units, 2.5);
  EXPECT_EQ(vtkMapper::GetResolveCoincidentTopology(), VTK_RESOLVE_POLYGON_OFFSET);
}

TEST(Model, GivenTheSharedProperties_WhenAsked_ThenTheyAreTheSameEachTimeAndTellTheSidesApart) {
  EXPECT_EQ(GModel::surface_normal_front_property(), GModel::surface_normal_front_property());
  EXPECT_EQ(GModel::curve_normal_property(), GModel::curve_normal_property());
  EXPECT_EQ(GModel::RENDER_MODE(), GModel::RENDER_MODE());
  EXPECT_NE(GModel::text_property(), nullptr);
  double front[3], back[3];
  GModel::surface_normal_front_property()->GetColor(front);
  GModel::surface_normal_back_property()->GetColor(back);
  EXPECT_GT(std::abs(front[0] - back[0]) + std::abs(front[2] - back[2]), 0.5);
  EXPECT_FALSE(GModel::mNormalDirectedLighting);
}

} // namespace
