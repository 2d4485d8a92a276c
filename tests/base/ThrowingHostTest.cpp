// What hosts throw during a frame: models whose database throws, factories, labels.

#include "platform/base/GLabelMapper.h"
#include "platform/util/TovanColor.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"
#include "tests/base/BodyScene.h"
#include "tests/support/VtkLosses.h"

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCallbackCommand.h>
#include <vtkObjectFactory.h>

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace {

struct HostError : std::runtime_error {
  HostError() : std::runtime_error("database") {}
};

/// A model whose host throws while it is brought up to date.
class BrokenModel : public GModel {
public:
  void update_parts() override {
    ++updates;
    if (is_broken) throw HostError();
  }
  bool is_broken = true;
  int updates = 0;
};

int pixels_of_the_body(const Frame& frame) {
  return frame.count([](const Frame::Color& color) { return !is_near(color, {255, 255, 255}); });
}

TEST(ThrowingHost, GivenAModelThatThrows_WhenAViewIsRendered_ThenItPassesOnAndTheNextFrameIsWhole) {
  OffscreenView view;
  BodyModel body(make_cube(), OBUtil::Shaded);
  look_at_a_corner(view.renderer());
  const Frame whole = view.render();
  ASSERT_GT(pixels_of_the_body(whole), 1000);

  BrokenModel broken;
  body.surface->SetColor(0.1, 0.1, 0.9);
  EXPECT_THROW(view.get()->render(), HostError);
  EXPECT_THROW(view.get()->render(), HostError) << "each frame asks again";
  EXPECT_EQ(broken.updates, 2);
  broken.is_broken = false;
  const Frame blue = view.render();
  EXPECT_EQ(broken.updates, 3);
  EXPECT_NE(blue.pixels, whole.pixels) << "a frame was drawn";
}

TEST(ThrowingHost, GivenAModelThatThrows_WhenTheHostRendersTheWindow_ThenItPassesOnAndTheWindowIsFreeAgain) {
  auto losses = std::make_optional<test_support::VtkLosses>();
  OffscreenView view;
  BrokenModel broken;
  EXPECT_THROW(view.window()->Render(), HostError);
  losses.reset();
  EXPECT_FALSE(view.window()->CheckInRenderStatus());
  broken.is_broken = false;
  view.window()->Render();
  EXPECT_EQ(broken.updates, 2);
}

TEST(ThrowingHost, GivenAModelThatThrows_WhenTheDepthIsRendered_ThenTheViewIsAsBefore) {
  OffscreenView view;
  BodyModel body(make_cube(), OBUtil::Translucent);
  body.surface->SetOpacity(0.5);
  look_at_a_corner(view.renderer());
  vtkNew<vtkRenderer> overlay;
  overlay->SetLayer(1);
  view.window()->SetNumberOfLayers(2);
  view.window()->AddRenderer(overlay);
  view.window()->SetSwapBuffers(true);
  const Frame before = view.render();
  ASSERT_GT(pixels_of_the_body(before), 1000);

  BrokenModel broken;
  EXPECT_THROW(view.get()->render_depth(), HostError);
  EXPECT_TRUE(view.window()->GetSwapBuffers());
  EXPECT_TRUE(overlay->GetDraw());
  broken.is_broken = false;
  EXPECT_EQ(view.render().pixels, before.pixels) << "a picture, not a depth";
}

TEST(ThrowingHost, GivenAModelThatThrowsWhileAnotherViewSharesTheWindow_WhenRendered_ThenBothGoOnAfterwards) {
  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  window->SetSize(300, 200);
  GView left(window), right(window);
  BrokenModel broken;
  EXPECT_THROW(left.render(), HostError);
  EXPECT_FALSE(window->CheckInRenderStatus());
  broken.is_broken = false;
  const int before = broken.updates;
  right.render();
  EXPECT_EQ(broken.updates, before + 2) << "once for each view of the window";
}

TEST(ThrowingHost, GivenAFactoryThatThrows_WhenAPartIsAdded_ThenItIsNotAPartAndMayBeAddedAgain) {
  OffscreenView first, second;
  GModel model;
  vtkNew<vtkPolyData> data;
  const auto make = [](vtkDataObject*, GView*) { return PropList{vtkSmartPointer<vtkActor>::New()}; };
  EXPECT_THROW(model.add_part(data,
                              [&](vtkDataObject* part, GView* view) {
                                if (view == second.get()) throw HostError();
                                return make(part, view);
                              }),
               HostError);
  EXPECT_EQ(first.renderer()->GetViewProps()->GetNumberOfItems(), 0);
  EXPECT_EQ(data->GetReferenceCount(), 1);
  model.add_part(data, make);
  for (OffscreenView* view : {&first, &second})
    EXPECT_EQ(view->renderer()->GetViewProps()->GetNumberOfItems(), 1);
}

TEST(ThrowingHost, GivenAFactoryThatThrows_WhenAViewOpens_ThenThereIsNoSuchView) {
  GModel model;
  vtkNew<vtkPolyData> data, more;
  bool is_broken = true;
  model.add_part(data, [](vtkDataObject*, GView*) { return PropList{vtkSmartPointer<vtkActor>::New()}; });
  model.add_part(more, [&](vtkDataObject*, GView*) -> PropList {
    if (is_broken) throw HostError();
    return {vtkSmartPointer<vtkActor>::New()};
  });
  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  EXPECT_THROW(GView{window}, HostError);
  EXPECT_TRUE(GView::views().empty());
  EXPECT_EQ(window->GetRenderers()->GetNumberOfItems(), 0);
  EXPECT_FALSE(window->HasObserver(vtkCommand::StartEvent));
  is_broken = false;
  GView view(window);
  view.render();
  EXPECT_EQ(view.renderer()->GetViewProps()->GetNumberOfItems(), 2);
}

TEST(ThrowingHost, GivenAFactoryThatThrows_WhenTheModelIsHooked_ThenItIsInNoViewAndMayBeHookedAgain) {
  OffscreenView first, second;
  GModel model;
  model.unhook_from_views();
  vtkNew<vtkPolyData> data;
  bool is_broken = true;
  model.add_part(data, [&](vtkDataObject*, GView* view) -> PropList {
    if (is_broken && view == second.get()) throw HostError();
    return {vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_THROW(model.hook_to_views(), HostError);
  EXPECT_EQ(first.renderer()->GetViewProps()->GetNumberOfItems(), 0);
  is_broken = false;
  model.hook_to_views();
  for (OffscreenView* view : {&first, &second})
    EXPECT_EQ(view->renderer()->GetViewProps()->GetNumberOfItems(), 1);
}

/// Labels whose host throws while they are drawn.
class BrokenLabels : public GLabelMapper {
public:
  static BrokenLabels* New();
  vtkTypeMacro(BrokenLabels, GLabelMapper)
  void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override {
    if (is_broken) throw HostError();
    GLabelMapper::RenderOverlay(viewport, actor);
  }
  bool is_broken = false;
};
vtkStandardNewMacro(BrokenLabels)

TEST(ThrowingHost, GivenLabelsThatThrow_WhenRenderedAgain_ThenTheFrameIsAsIfNothingHadHappened) {
  OffscreenView view;
  BodyModel body(make_cube(), OBUtil::Shaded);
  body.surface->SetColor(0.5, 0.5, 0.5);
  look_at_a_corner(view.renderer());
  vtkNew<GLabelMapper> sound;
  vtkNew<BrokenLabels> broken;
  for (GLabelMapper* labels : {sound.Get(), static_cast<GLabelMapper*>(broken.Get())}) {
    vtkNew<vtkActor2D> actor;
    actor->SetMapper(labels);
    body.add_widget(actor);
  }
  sound->add_point(TovanVector(0.5, -0.5, 0.5), TovanString("77"), TovanColor(255, 0, 0), 0);
  broken->add_point(TovanVector(-0.5, 0.5, 0.5), TovanString("88"), TovanColor(0, 0, 255), 0);
  view.render();
  const auto reddish = [](const Frame::Color& color) { return color[0] > 150 && color[1] < 80 && color[2] < 80; };
  const auto bluish = [](const Frame::Color& color) { return color[2] > 150 && color[0] < 80 && color[1] < 80; };
  const auto greenish = [](const Frame::Color& color) { return color[1] > 150 && color[0] < 80 && color[2] < 80; };
  const Frame before = view.render();
  ASSERT_GT(before.count(reddish), 0);
  ASSERT_GT(before.count(bluish), 0);

  // In the broken frame the sound labels are placed already when the others throw.
  sound->clear();
  sound->add_point(TovanVector(0.5, -0.5, 0.5), TovanString("77"), TovanColor(0, 255, 0), 0);
  broken->is_broken = true;
  {
    const test_support::VtkLosses losses;
    EXPECT_THROW(view.get()->render(), HostError);
  }
  EXPECT_FALSE(view.window()->CheckInRenderStatus());
  broken->is_broken = false;
  const Frame after = view.render();
  EXPECT_EQ(after.count(reddish), 0);
  EXPECT_EQ(after.count(bluish), before.count(bluish));
  EXPECT_GT(after.count(greenish), 0);
  EXPECT_EQ(view.render().pixels, after.pixels);
}

/// A prop of a host's own that throws while it is drawn.
class BrokenProp : public vtkActor {
public:
  static BrokenProp* New();
  vtkTypeMacro(BrokenProp, vtkActor)
  double* GetBounds() override { return bounds_; }
  vtkTypeBool HasTranslucentPolygonalGeometry() override { return 0; }
  int RenderOpaqueGeometry(vtkViewport*) override {
    if (is_broken) throw HostError();
    return 0;
  }
  bool is_broken = false;

private:
  double bounds_[6] = {-0.1, 0.1, -0.1, 0.1, -0.1, 0.1};
};
vtkStandardNewMacro(BrokenProp)

TEST(ThrowingHost, GivenAPropThatThrowsWhileTheDepthForLabelsIsDrawn_WhenRenderedAgain_ThenItIsAPictureAgain) {
  auto losses = std::make_optional<test_support::VtkLosses>(); // the view's callback was under way
  OffscreenView view;
  BodyModel body(make_cube(), OBUtil::Translucent);
  body.set_render_mode(OBUtil::Translucent);
  body.surface->SetOpacity(0.5);
  vtkNew<GLabelMapper> labels;
  labels->add_point(TovanVector(0.5, -0.5, 0.5), TovanString("77"), TovanColor(0, 0, 0), 0);
  vtkNew<vtkPolyData> labelled;
  body.add_part(labelled, [&](vtkDataObject*, GView*) {
    auto actor = vtkSmartPointer<vtkActor2D>::New();
    actor->SetMapper(labels);
    return PropList{actor};
  });
  vtkNew<BrokenProp> broken;
  body.add_widget(broken);
  look_at_a_corner(view.renderer());
  const Frame before = view.render();

  broken->is_broken = true;
  EXPECT_THROW(view.get()->render(), HostError);
  losses.reset();
  EXPECT_EQ(body.surface_actor->GetProperty(), body.surface.Get());
  EXPECT_FALSE(body.surface_actor->GetForceOpaque());
  broken->is_broken = false;
  EXPECT_EQ(view.render().pixels, before.pixels);
}

} // namespace
