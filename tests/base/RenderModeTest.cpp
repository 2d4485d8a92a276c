// How bodies are drawn in each render mode.

#include "tests/base/BodyScene.h"

#include <vtkActor.h>
#include <vtkCubeSource.h>
#include <vtkMapper.h>
#include <vtkPlaneSource.h>
#include <vtkPointData.h>
#include <vtkProperty.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(RenderMode, GivenABodyInEachMode_WhenRendered_ThenSurfacesAndEdgesShowAsTheModeSays) {
  OffscreenView view;
  const Frame empty = view.render();
  ASSERT_EQ(empty.count(is_white), 300 * 200);

  BodyModel model(make_cube(), OBUtil::Shaded);
  look_at_a_corner(view.renderer());
  const auto frame_in = [&](OBUtil::RenderMode mode) {
    model.set_mode(mode);
    const Frame frame = view.render();
    keep_picture(view.window(), "mode_" + std::to_string(mode));
    return frame;
  };

  const Frame shaded = frame_in(OBUtil::Shaded);
  EXPECT_GT(shaded.count(is_red), 8000);
  const int front_edges = shaded.count(is_black);
  EXPECT_GT(front_edges, 800);

  const Frame wireframe = frame_in(OBUtil::Wireframe);
  EXPECT_EQ(wireframe.count(is_red), 0);
  EXPECT_GT(wireframe.count(is_black), front_edges * 5 / 4) << "the edges at the back show too";

  const Frame hidden = frame_in(OBUtil::HiddenLine);
  EXPECT_EQ(hidden.count(is_red), 0);
  EXPECT_NEAR(hidden.count(is_black), front_edges, front_edges / 20) << "as shaded, the edges at the back are hidden";

  const Frame dimmed = frame_in(OBUtil::DimmedHiddenLine);
  const auto is_dim = [](const Frame::Color& c) { return c[0] > 180 && c[0] < 225 && c[0] == c[1] && c[1] == c[2]; };
  EXPECT_EQ(dimmed.count(is_red), 0);
  EXPECT_NEAR(dimmed.count(is_black), front_edges, front_edges / 10);
  EXPECT_GT(dimmed.count(is_dim), front_edges / 6) << "hidden edges at a fifth of their strength";
  EXPECT_EQ(hidden.count(is_dim), 0);

  model.surface->SetOpacity(0.5);
  const Frame translucent = frame_in(OBUtil::Translucent);
  EXPECT_GT(translucent.count(is_red), 8000);
  EXPECT_GT(translucent.at(150, 90)[1], shaded.at(150, 90)[1] + 20) << "the background shines through";
  model.surface->SetOpacity(1.0);

  EXPECT_EQ(frame_in(OBUtil::SmoothShaded).pixels, shaded.pixels);
  EXPECT_EQ(frame_in(OBUtil::AsIs).pixels, shaded.pixels);
}

TEST(RenderMode, GivenAnyMode_WhenAFrameIsOver_ThenActorAndPropertyAreWhatTheyWere) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::Shaded);
  look_at_a_corner(view.renderer());
  view.renderer()->SetMaximumNumberOfPeels(7);
  view.renderer()->SetOcclusionRatio(0.25);
  for (int mode = OBUtil::Wireframe; mode <= OBUtil::AsIs; ++mode) {
    SCOPED_TRACE(mode);
    model.set_mode(static_cast<OBUtil::RenderMode>(mode));
    const vtkMTimeType before = model.surface->GetMTime();
    view.render();
    view.get()->render_depth();
    EXPECT_EQ(model.surface_actor->GetProperty(), model.surface.Get());
    EXPECT_EQ(model.surface->GetMTime(), before);
    EXPECT_TRUE(model.surface_actor->GetVisibility());
    EXPECT_TRUE(model.edge_actor->GetVisibility());
    EXPECT_TRUE(model.surface_actor->GetPickable());
    EXPECT_FALSE(model.edge_actor->GetPickable());
    EXPECT_TRUE(model.surface_actor->GetMapper()->GetScalarVisibility());
    EXPECT_FALSE(view.renderer()->GetUseDepthPeeling());
    EXPECT_EQ(view.renderer()->GetMaximumNumberOfPeels(), 7);
    EXPECT_EQ(view.renderer()->GetOcclusionRatio(), 0.25);
    EXPECT_TRUE(view.renderer()->GetUseFXAA());
  }
}

TEST(RenderMode, GivenAPropertyThatAnActorNoLongerHas_WhenRendered_ThenTheViewLetsGoOfIt) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::HiddenLine);
  vtkNew<vtkProperty> passing;
  model.surface_actor->SetProperty(passing);
  view.render();
  EXPECT_GT(passing->GetReferenceCount(), 1);
  model.surface_actor->SetProperty(model.surface);
  view.render();
  EXPECT_EQ(passing->GetReferenceCount(), 1);
}

TEST(RenderMode, GivenOneActorForTwoParts_WhenAFrameIsOver_ThenItLooksAsItDid) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::HiddenLine);
  model.surface_actor->GetMapper()->ScalarVisibilityOn();
  vtkNew<vtkPolyData> alias;
  model.add_part(alias, [&](vtkDataObject*, GView*) { return PropList{model.surface_actor}; });
  look_at_a_corner(view.renderer());
  const Frame first = view.render();
  EXPECT_EQ(model.surface_actor->GetProperty(), model.surface.Get());
  EXPECT_TRUE(model.surface_actor->GetMapper()->GetScalarVisibility());
  EXPECT_EQ(first.count(is_red), 0);
}

TEST(RenderMode, GivenABodyWithALookOfItsOwnForBacks_WhenLinesAreHidden_ThenBacksHideThemToo) {
  OffscreenView view;
  vtkNew<vtkPlaneSource> sheet;
  sheet->Update();
  BodyModel model(sheet->GetOutput(), OBUtil::HiddenLine);
  vtkNew<vtkProperty> back;
  back->SetColor(0.9, 0.1, 0.1);
  model.surface_actor->SetBackfaceProperty(back);
  view.renderer()->GetActiveCamera()->SetPosition(0, 0, -3);
  view.renderer()->ResetCamera();
  EXPECT_EQ(view.render().count(is_red), 0);
  EXPECT_EQ(model.surface_actor->GetBackfaceProperty(), back.Get());
  model.set_mode(OBUtil::Shaded);
  EXPECT_GT(view.render().count(is_red), 5000);
}

TEST(RenderMode, GivenTwoModelsInTwoViews_WhenInDifferentModes_ThenEachIsDrawnInItsOwn) {
  OffscreenView one, other;
  BodyModel model(make_cube(), OBUtil::HiddenLine);
  look_at_a_corner(one.renderer());
  look_at_a_corner(other.renderer());
  one.renderer()->SetBackground(0, 0, 1);
  const Frame first = one.render();
  const Frame second = other.render();
  const auto is_blue = [](const Frame::Color& c) { return is_near(c, {0, 0, 255}, 2); };
  EXPECT_GT(first.count(is_blue), 50000) << "surfaces take the background of their own view";
  EXPECT_EQ(first.count(is_white), 0);
  EXPECT_GT(second.count(is_white), 50000);

  BodyModel shaded(make_cube(), OBUtil::Shaded);
  EXPECT_GT(other.render().count(is_red), 1000);
}

TEST(RenderMode, GivenTwoViewsInOneWindow_WhenOneRenders_ThenBothHaveTheirModes) {
  OffscreenView left;
  BodyModel model(make_cube(), OBUtil::HiddenLine);
  GView right(left.window());
  left.renderer()->SetViewport(0, 0, 0.5, 1);
  right.renderer()->SetViewport(0.5, 0, 1, 1);
  right.renderer()->SetBackground(0, 0, 1);
  look_at_a_corner(left.renderer());
  look_at_a_corner(right.renderer());
  const Frame frame = left.render();
  keep_picture(left.window(), "two_views");
  EXPECT_EQ(frame.count(is_red), 0);
  EXPECT_TRUE(is_white(frame.at(70, 90)));
  EXPECT_TRUE(is_near(frame.at(220, 90), {0, 0, 255}, 2));
  EXPECT_GT(frame.count(is_black), 400);
}

TEST(RenderMode, GivenADenseDisplay_WhenRendered_ThenLinesAndPointsKeepTheirSizeOnPaper) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::Wireframe);
  look_at_a_corner(view.renderer());
  view.window()->SetDPI(96);
  const int plain = view.render().count(is_black);
  view.window()->SetDPI(192);
  const int dense = view.render().count(is_black);
  EXPECT_GT(dense, plain * 3 / 2);
  EXPECT_EQ(model.edge->GetLineWidth(), 2.0F);
}

TEST(RenderMode, GivenAWindow_WhenAViewOpensInIt_ThenAKnownResolutionStays) {
  for (const auto& [before, after] : {std::pair{72, 96}, {144, 144}, {71, 71}}) {
    vtkNew<vtkRenderWindow> window;
    window->SetOffScreenRendering(1);
    window->SetDPI(before);
    const GView view(window);
    EXPECT_EQ(window->GetDPI(), after);
  }
}

TEST(RenderMode, GivenBodiesOfAnySize_WhenRendered_ThenTheirSidesAreLitAlike) {
  const auto picture_of = [](double size) {
    vtkNew<vtkCubeSource> source;
    source->SetXLength(size);
    source->SetYLength(size);
    source->SetZLength(size);
    source->Update();
    source->GetOutput()->GetPointData()->SetNormals(nullptr); // as meshes: the shader finds out how sides are turned
    OffscreenView view;
    BodyModel model(source->GetOutput(), OBUtil::Shaded);
    look_at_a_corner(view.renderer());
    return view.render();
  };
  const Frame usual = picture_of(1);
  ASSERT_GT(usual.count(is_red), 5000);
  for (const double size : {1e-15, 1e-9, 1e-7, 1e12}) {
    const Frame other = picture_of(size);
    int differing = 0;
    for (int y = 0; y < usual.height; ++y)
      for (int x = 0; x < usual.width; ++x)
        differing += !is_near(usual.at(x, y), other.at(x, y), 8);
    EXPECT_LT(differing, 50) << size;
  }
}

TEST(RenderMode, GivenTheBackEnd_WhenAWindowIsMade_ThenItIsOneThatDraws) {
  OffscreenView view;
  EXPECT_STREQ(view.window()->GetClassName(), "vtkXOpenGLRenderWindow");
  EXPECT_EQ(view.window()->GetMultiSamples(), 0);
}

} // namespace
