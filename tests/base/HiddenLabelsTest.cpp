// Which labels are hidden by what is drawn, several mappers in one frame, and several frames.

#include "platform/base/OBUtil.h"
#include "tests/base/LabelScene.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCubeSource.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkPlaneSource.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <vector>

namespace {

/// A red unit cube about the origin, and labels, all as parts of a model.
class LabelledCube : public GModel {
public:
  LabelledCube() {
    vtkNew<vtkCubeSource> source;
    source->Update();
    cube_->ShallowCopy(source->GetOutput());
    add_part(cube_, [this](vtkDataObject* data, GView* view) {
      vtkNew<vtkActor> actor;
      actor->SetProperty(red_);
      vtkNew<vtkInformation> keys;
      keys->Set(RENDER_MODE(), get_render_mode());
      actor->SetPropertyKeys(keys);
      actor->SetMapper(create_mapper(data, view));
      cubes_.emplace_back(actor);
      return PropList{actor};
    });
    red_->SetColor(0.9, 0.1, 0.1);
  }
  Labels& add_labels() {
    labels_.push_back(std::make_unique<Labels>());
    Labels& added = *labels_.back();
    added.mapper->set_model(this);
    keys_.emplace_back(vtkSmartPointer<vtkPolyData>::New());
    add_part(keys_.back(), [&added](vtkDataObject*, GView*) { return PropList{added.actor}; });
    return added;
  }
  void remove_labels(std::size_t i) { remove_part(keys_[i]); }
  void set_render_mode(OBUtil::RenderMode mode) override {
    GModel::set_render_mode(mode);
    red_->SetOpacity(mode == OBUtil::Translucent ? 0.4 : 1.0);
    for (const auto& cube : cubes_)
      cube->GetPropertyKeys()->Set(RENDER_MODE(), mode);
  }

private:
  vtkNew<vtkProperty> red_;
  vtkNew<vtkPolyData> cube_;
  std::vector<vtkSmartPointer<vtkActor>> cubes_;
  std::vector<std::unique_ptr<Labels>> labels_;
  std::vector<vtkSmartPointer<vtkPolyData>> keys_;
};

class HiddenLabels : public testing::Test {
protected:
  HiddenLabels() { look_along_z(view.renderer()); }

  OffscreenView view;
  LabelledCube model;
};

int green(const Frame& frame) { return frame.count(is_green); }
int magenta(const Frame& frame) { return frame.count(is_magenta); }

TEST_F(HiddenLabels, GivenEachRenderMode_WhenDrawn_ThenLabelsBehindTheSurfaceShowOnlyWhereNothingHidesThem) {
  struct Row {
    OBUtil::RenderMode mode;
    bool hides;
  };
  Labels& labels = model.add_labels();
  labels.add({0, 0, -0.5}, "888");                // on the back
  labels.add({0, 0.3, 0.5}, "888", magenta_text); // on the front
  for (const bool parallel : {true, false}) {
    look_along_z(view.renderer(), parallel);
    for (const Row& row : {Row{OBUtil::Wireframe, false}, Row{OBUtil::HiddenLine, true},
                           Row{OBUtil::DimmedHiddenLine, true}, Row{OBUtil::Shaded, true},
                           Row{OBUtil::Translucent, true}, Row{OBUtil::SmoothShaded, true}, Row{OBUtil::AsIs, false}}) {
      SCOPED_TRACE(row.mode);
      model.set_render_mode(row.mode);
      const Frame frame = view.render();
      EXPECT_EQ(green(frame) > 0, !row.hides);
      EXPECT_GT(magenta(frame), 5);
    }
  }
  labels.mapper->set_model(nullptr);
  model.set_render_mode(OBUtil::Shaded);
  EXPECT_GT(green(view.render()), 10) << "without a model nothing is hidden";
}

TEST_F(HiddenLabels, GivenLabelsOnEachSideOfTheCube_WhenSeenFromAllSides_ThenThoseOnSidesThatFaceTheEyeShow) {
  const std::array<double, 3> centres[] = {{0.5, 0, 0},  {-0.5, 0, 0}, {0, 0.5, 0},
                                           {0, -0.5, 0}, {0, 0, 0.5},  {0, 0, -0.5}};
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  Labels& labels = model.add_labels();
  for (const std::array<double, 3>& eye : {std::array<double, 3>{3, 4, 5}, {-4, 3, 5}, {4, -5, 3}, {-5, -3, -4}}) {
    camera->SetParallelProjection(false);
    camera->SetPosition(eye.data());
    for (const auto& centre : centres) {
      labels.mapper->clear();
      labels.add(centre, "8");
      view.renderer()->ResetCameraClippingRange();
      const bool faces = (centre[0] * eye[0] + centre[1] * eye[1] + centre[2] * eye[2]) > 0.25;
      EXPECT_EQ(green(view.render()) > 0, faces);
    }
  }
}

TEST_F(HiddenLabels, GivenAPointJustUnderACurvedOrSlantingSurface_WhenDrawn_ThenItStillShows) {
  Labels& labels = model.add_labels();
  // At 100 pixels a unit, 0.02 is two of them.
  labels.add({0, 0, 0.48}, "888");
  EXPECT_GT(green(view.render()), 10);
  labels.mapper->clear();
  labels.add({0, 0, 0.4}, "888");
  EXPECT_EQ(green(view.render()), 0);
}

TEST_F(HiddenLabels, GivenOneLabelOnTheTextOfAnother_WhenDrawn_ThenNeitherHidesTheOther) {
  Labels& large = model.add_labels();
  large.style->SetFontSize(60);
  large.add({0, 0, 0.5}, "8888");
  const Frame alone = view.render();
  ASSERT_GT(green(alone), 100);
  Labels& small = model.add_labels();
  small.add({0.05, 0, 0.5}, "888", magenta_text);
  const Frame both = view.render();
  EXPECT_GT(magenta(both), 5);
  EXPECT_GT(green(both), green(alone) / 2);
}

TEST_F(HiddenLabels, GivenManyMappers_WhenDrawn_ThenAllAreAndThoseHiddenOrRemovedAreNot) {
  for (int i = 0; i < 3; ++i)
    model.add_labels().add({-0.8 + 0.8 * i, 0.9, 0}, "888", i == 1 ? magenta_text : green_text);
  const Frame all = view.render();
  EXPECT_GT(green(all), 20);
  EXPECT_GT(magenta(all), 5);
  EXPECT_EQ(view.render().pixels, all.pixels) << "nothing moved";
  model.remove_labels(1);
  const Frame without = view.render();
  EXPECT_EQ(magenta(without), 0);
  EXPECT_EQ(green(without), green(all));
  model.remove_labels(2);
  EXPECT_EQ(green(view.render()), green(all) / 2);
}

TEST_F(HiddenLabels, GivenAnActorThatIsInvisible_WhenOthersAreDrawn_ThenItsLabelsAreNot) {
  Labels& first = model.add_labels();
  Labels& second = model.add_labels();
  first.add({0, 0.9, 0}, "888");
  second.add({0.8, 0.9, 0}, "888", magenta_text);
  second.actor->VisibilityOff();
  const Frame frame = view.render();
  EXPECT_GT(green(frame), 10);
  EXPECT_EQ(magenta(frame), 0);
  first.actor->VisibilityOff();
  second.actor->VisibilityOn();
  const Frame other = view.render();
  EXPECT_EQ(green(other), 0);
  EXPECT_GT(magenta(other), 5);
}

TEST_F(HiddenLabels, GivenTwoViews_WhenDrawnInTurn_ThenEachHasTheLabelsWhereItsCameraSeesThem) {
  Labels& labels = model.add_labels();
  const std::array<double, 3> place = {0.4, 0.3, 0.5};
  labels.add(place, "888");
  OffscreenView other; // both views show the same actor
  other.window()->SetSize(240, 260);
  look_along_z(other.renderer());
  other.renderer()->GetActiveCamera()->SetParallelScale(2);
  for (int round = 0; round < 2; ++round)
    for (OffscreenView* each : {&view, &other}) {
      const PixelBox box(each->render(), is_green);
      ASSERT_FALSE(box.empty());
      const auto pixel = pixel_of(each->renderer(), place);
      EXPECT_NEAR(box.x(), pixel[0], 2.0);
      EXPECT_NEAR(box.y(), pixel[1], 2.5);
    }
  other.close();
  EXPECT_GT(green(view.render()), 10);
}

TEST_F(HiddenLabels, GivenTwoViewsInOneWindow_WhenDrawn_ThenEachHasItsLabels) {
  Labels& labels = model.add_labels();
  const std::array<double, 3> place = {0.2, 0.3, 0.5};
  labels.add(place, "888");
  GView right(view.window());
  view.renderer()->SetViewport(0, 0, 0.5, 1);
  right.renderer()->SetViewport(0.5, 0, 1, 1);
  right.renderer()->SetBackground(1, 1, 1);
  look_along_z(right.renderer());
  for (const auto mode : {OBUtil::Shaded, OBUtil::DimmedHiddenLine}) {
    model.set_render_mode(mode);
    const Frame frame = view.render();
    for (vtkRenderer* renderer : {view.renderer(), right.renderer()}) {
      const auto pixel = pixel_of(renderer, place);
      int found = 0;
      for (int dy = -6; dy <= 6; ++dy)
        for (int dx = -12; dx <= 12; ++dx)
          found += is_green(frame.at(int(pixel[0]) + dx, int(pixel[1]) + dy));
      EXPECT_GT(found, 10);
    }
  }
}

TEST_F(HiddenLabels, GivenGraphicsResourcesReleased_WhenDrawnAgain_ThenTheFrameIsTheSame) {
  Labels& labels = model.add_labels();
  labels.add({0.4, 0.3, 0.5}, "888");
  const Frame before = view.render();
  ASSERT_GT(green(before), 10);
  labels.actor->ReleaseGraphicsResources(view.window());
  EXPECT_EQ(view.render().pixels, before.pixels);
  view.window()->Finalize();
  EXPECT_EQ(view.render().pixels, before.pixels);
}

TEST_F(HiddenLabels, GivenLabels_WhenDrawn_ThenDepthIsUntouchedBesideThem) {
  model.add_labels().add({0, 0.9, 0}, "888");
  view.render();
  const auto depth_at = [&](int x, int y) { return view.window()->GetZbufferDataAtPoint(x, y); };
  const float body = depth_at(150, 100);
  EXPECT_GT(body, 0.0f);
  EXPECT_LT(body, 1.0f);
  EXPECT_EQ(depth_at(20, 20), 1.0f);
  EXPECT_EQ(depth_at(150, 160), 1.0f) << "30 pixels below the label";
}

TEST_F(HiddenLabels, GivenAMapperThatOutlivesItsView_WhenDrawnInAnother_ThenItIsThere) {
  Labels labels;
  labels.add({0, 0.9, 0}, "888");
  {
    OffscreenView first;
    look_along_z(first.renderer());
    first.renderer()->AddViewProp(labels.actor);
    EXPECT_GT(green(first.render()), 10);
  }
  view.renderer()->AddViewProp(labels.actor);
  EXPECT_GT(green(view.render()), 10);
}

} // namespace
