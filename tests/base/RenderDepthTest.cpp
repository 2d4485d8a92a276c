// The depth that a view renders for region picks.

#include "tests/base/BodyScene.h"

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkPlaneSource.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(RenderDepth, GivenTheBodyBehindLabelsAndHighlights_WhenTheDepthIsRendered_ThenItIsTheBodysAlone) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::Shaded);
  look_at_a_corner(view.renderer());
  view.get()->render_depth();
  const float body = depth_at(view.window(), 150, 100);
  const float nothing = depth_at(view.window(), 2, 2);
  ASSERT_LT(body, 1.0F);
  ASSERT_EQ(nothing, 1.0F);

  vtkNew<vtkPolyData> flat;
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> polys;
  for (const auto& corner : {std::pair{0, 0}, std::pair{300, 0}, std::pair{300, 200}, std::pair{0, 200}})
    points->InsertNextPoint(corner.first, corner.second, 0);
  polys->InsertNextCell({0, 1, 2, 3});
  flat->SetPoints(points);
  flat->SetPolys(polys);
  vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(flat);
  vtkNew<vtkActor2D> label;
  label->SetMapper(mapper);
  model.add_widget(label);
  vtkNew<vtkActor> highlight;
  highlight->SetMapper(GModel::create_mapper(make_cube(), view.get()));
  highlight->SetScale(1.2);
  highlight->PickableOff();
  model.add_widget(highlight);

  view.render();
  EXPECT_NE(depth_at(view.window(), 150, 100), body) << "the label and the highlight are in the way";
  view.get()->render_depth();
  EXPECT_EQ(depth_at(view.window(), 150, 100), body);
  EXPECT_EQ(depth_at(view.window(), 2, 2), 1.0F);
  EXPECT_TRUE(label->GetVisibility());
  EXPECT_TRUE(highlight->GetVisibility());

  // Translucent surfaces write their depth in this pass, those of a wireframe have none.
  model.surface->SetOpacity(0.3);
  model.set_mode(OBUtil::Translucent);
  view.get()->render_depth();
  EXPECT_EQ(depth_at(view.window(), 150, 100), body);
  model.set_mode(OBUtil::Wireframe);
  view.get()->render_depth();
  EXPECT_EQ(depth_at(view.window(), 150, 100), 1.0F);
}

TEST(RenderDepth, GivenAnotherLayerInTheWindow_WhenTheDepthIsRendered_ThenItDoesNotReachIt) {
  OffscreenView view;
  BodyModel model(make_cube(), OBUtil::Shaded);
  look_at_a_corner(view.renderer());
  view.get()->render_depth();
  const float body = depth_at(view.window(), 150, 100);
  ASSERT_LT(body, 1.0F);

  vtkNew<vtkRenderer> overlay;
  overlay->SetLayer(1);
  view.window()->SetNumberOfLayers(2);
  view.window()->AddRenderer(overlay);
  view.render();
  EXPECT_EQ(depth_at(view.window(), 150, 100), 1.0F) << "the layer has a depth of its own";
  view.get()->render_depth();
  EXPECT_EQ(depth_at(view.window(), 150, 100), body);
  EXPECT_TRUE(overlay->GetDraw());
}

TEST(RenderDepth, GivenASlantingSurface_WhenTheDepthIsRendered_ThenItIsThatOfTheSurfaceItself) {
  OffscreenView view;
  vtkNew<vtkPlaneSource> source;
  source->Update();
  BodyModel model(source->GetOutput(), OBUtil::Shaded);
  model.edge->SetLineWidth(5);
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetPosition(0, -3, 1);
  camera->SetViewUp(0, 0, 1);
  view.renderer()->ResetCamera();
  view.get()->render_depth();
  view.renderer()->SetWorldPoint(0, 0, 0, 1);
  view.renderer()->WorldToDisplay();
  const double* centre = view.renderer()->GetDisplayPoint();
  // A pixel's middle lies up to half a pixel beside the point; VTK's own constant offset is below 1e-4.
  const float below = depth_at(view.window(), int(centre[0]), int(centre[1]) - 1);
  const float above = depth_at(view.window(), int(centre[0]), int(centre[1]) + 1);
  const float slope = std::abs(above - below) / 2;
  ASSERT_GT(slope, 1e-3F);
  EXPECT_NEAR(depth_at(view.window(), int(centre[0]), int(centre[1])), centre[2], 0.6 * slope + 1e-4);
  view.render();
  EXPECT_GT(depth_at(view.window(), int(centre[0]), int(centre[1])), centre[2] + 1.5 * slope);
}

} // namespace
