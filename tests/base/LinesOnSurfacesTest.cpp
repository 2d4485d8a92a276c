// That surfaces cut nothing off the lines and points on them, and hide what lies behind.

#include "tests/base/BodyScene.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkPlaneSource.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <gtest/gtest.h>

namespace {

TEST(LinesOnSurfaces, GivenASurfaceAtAGrazingAngle_WhenRendered_ThenItsEdgesHaveNoGaps) {
  OffscreenView view;
  vtkNew<vtkPlaneSource> source;
  source->SetXResolution(4);
  source->SetYResolution(4);
  source->SetOrigin(-1, -1, 0);
  source->SetPoint1(1, -1, 0);
  source->SetPoint2(-1, 1, 0);
  source->Update();
  BodyModel model(source->GetOutput(), OBUtil::Shaded);
  model.surface->LightingOff(); // seen so flat, the light of the eye leaves it black
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(0, -6, 0.45);
  camera->SetFocalPoint(0, 0, 0);
  camera->SetViewUp(0, 0, 1);
  camera->SetViewAngle(22);
  view.renderer()->ResetCameraClippingRange();
  const Frame frame = view.render();
  keep_picture(view.window(), "grazing");
  ASSERT_GT(frame.count(is_red), 500);
  // Along each edge that runs across the picture, every column between its ends must have a black pixel near it.
  int edges = 0;
  for (int row = 0; row <= 4; ++row) {
    double from[3] = {-0.98, -1 + 0.5 * row, 0}, to[3] = {0.98, -1 + 0.5 * row, 0};
    const auto to_display = [&](double* point) {
      view.renderer()->SetWorldPoint(point[0], point[1], point[2], 1);
      view.renderer()->WorldToDisplay();
      std::copy_n(view.renderer()->GetDisplayPoint(), 3, point);
    };
    to_display(from);
    to_display(to);
    for (int x = int(from[0]) + 1; x < int(to[0]); ++x) {
      bool black = false;
      for (int y = int(from[1]) - 2; y <= int(from[1]) + 2; ++y)
        black = black || is_black(frame.at(x, y));
      ASSERT_TRUE(black) << "row " << row << " column " << x;
    }
    ++edges;
  }
  EXPECT_EQ(edges, 5);
}

TEST(LinesOnSurfaces, GivenASlantedSurface_WhenRendered_ThenItHidesNoPixelOfItsEdges) {
  vtkNew<vtkPlaneSource> source;
  source->SetResolution(3, 3);
  source->Update();
  OffscreenView view;
  BodyModel model(source->GetOutput(), OBUtil::Shaded);
  model.surface->LightingOff(); // seen flat, the light of the eye leaves it black
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetViewUp(0, 0, 1);
  const double positions[][3] = {{3, 2, 4}, {3, 2, 1.5}, {1, -6, 1.3}};
  for (const auto& position : positions) {
    for (const float width : {1.0F, 2.0F, 3.0F}) {
      for (const bool parallel : {false, true}) {
        for (const int dpi : {96, 192}) {
          SCOPED_TRACE(testing::Message()
                       << position[2] << " width " << width << " parallel " << parallel << " dpi " << dpi);
          view.window()->SetDPI(dpi);
          model.edge->SetLineWidth(width);
          camera->SetParallelProjection(parallel);
          camera->SetPosition(position);
          view.renderer()->ResetCamera();
          model.set_mode(OBUtil::Shaded);
          const Frame shaded = view.render();
          keep_picture(view.window(), "slanted");
          model.set_mode(OBUtil::Wireframe);
          const Frame edges_alone = view.render();
          ASSERT_GT(shaded.count(is_red), 100);
          ASSERT_GT(edges_alone.count(is_black), 300);
          EXPECT_EQ(shaded.count(is_black), edges_alone.count(is_black));
        }
      }
    }
  }
}

// Black squares of eight pixels at the points of a body, as nodes are drawn.
class PointsModel : public GModel {
public:
  explicit PointsModel(vtkPolyData* body) {
    vtkNew<vtkCellArray> verts;
    for (vtkIdType i = 0; i < body->GetNumberOfPoints(); ++i)
      verts->InsertNextCell(1, &i);
    points_->SetPoints(body->GetPoints());
    points_->SetVerts(verts);
    property_->SetColor(0, 0, 0);
    property_->LightingOff();
    property_->SetPointSize(8);
    add_part(points_, [this](vtkDataObject* data, GView* view) {
      auto actor = vtkSmartPointer<vtkActor>::New();
      actor->SetProperty(property_);
      actor->SetMapper(GModel::create_mapper(data, view));
      return PropList{actor};
    });
  }

private:
  vtkNew<vtkPolyData> points_;
  vtkNew<vtkProperty> property_;
};

TEST(LinesOnSurfaces, GivenPointsOnASlantedSurface_WhenRendered_ThenItCutsNothingOffTheirSquares) {
  vtkNew<vtkPlaneSource> source;
  source->SetResolution(3, 3);
  source->Update();
  OffscreenView view;
  BodyModel model(source->GetOutput(), OBUtil::Shaded);
  model.surface->LightingOff(); // seen flat, the light of the eye leaves it black
  model.edge_actor->VisibilityOff();
  PointsModel points(source->GetOutput());
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetViewUp(0, 0, 1);
  const double positions[][3] = {{3, 2, 4}, {3, 2, 2.5}, {0, -4, 3.4}};
  for (const auto& position : positions) {
    for (const bool parallel : {false, true}) {
      for (const int dpi : {96, 192}) {
        SCOPED_TRACE(testing::Message() << position[2] << " parallel " << parallel << " dpi " << dpi);
        view.window()->SetDPI(dpi);
        camera->SetParallelProjection(parallel);
        camera->SetPosition(position);
        view.renderer()->ResetCamera();
        model.set_mode(OBUtil::Shaded);
        const Frame shaded = view.render();
        keep_picture(view.window(), "points");
        model.set_mode(OBUtil::Wireframe);
        const Frame points_alone = view.render();
        ASSERT_GT(shaded.count(is_red), 100);
        EXPECT_EQ(points_alone.count(is_black), 16 * (dpi == 96 ? 64 : 256));
        EXPECT_EQ(shaded.count(is_black), points_alone.count(is_black));
      }
    }
  }
}

TEST(LinesOnSurfaces, GivenPointsAtTheBackOfABody_WhenRendered_ThenTheyStayHidden) {
  const auto cube = make_cube();
  OffscreenView view;
  BodyModel model(cube, OBUtil::Shaded);
  model.surface->LightingOff(); // a side may lie in the dark
  model.edge_actor->VisibilityOff();
  PointsModel points(cube);
  look_at_a_corner(view.renderer());
  view.renderer()->GetActiveCamera()->SetPosition(2, 4, 7); // no corner right behind another
  for (const bool parallel : {false, true}) {
    view.renderer()->GetActiveCamera()->SetParallelProjection(parallel);
    view.renderer()->ResetCamera();
    model.set_mode(OBUtil::Shaded);
    const Frame frame = view.render();
    keep_picture(view.window(), "points_of_a_cube");
    for (const double side : {-0.5, 0.5}) {
      view.renderer()->SetWorldPoint(side, side, side, 1);
      view.renderer()->WorldToDisplay();
      const double* const at = view.renderer()->GetDisplayPoint();
      EXPECT_EQ(is_black(frame.at(int(at[0]), int(at[1]))), side > 0) << "parallel " << parallel;
      EXPECT_EQ(is_red(frame.at(int(at[0]), int(at[1]))), side < 0) << "parallel " << parallel;
    }
    EXPECT_GT(frame.count(is_black), 6 * 64);
    EXPECT_LE(frame.count(is_black), 7 * 64);
    model.set_mode(OBUtil::Wireframe);
    ASSERT_EQ(view.render().count(is_black), 8 * 64);
  }
}

TEST(LinesOnSurfaces, GivenAThinWall_WhenRendered_ThenTheEdgesBehindItStayHidden) {
  OffscreenView view;
  const auto make_plane = [](double z, int cells) {
    vtkNew<vtkPlaneSource> source;
    source->SetResolution(cells, cells);
    source->SetCenter(0, 0, z);
    source->Update();
    return vtkSmartPointer<vtkPolyData>(source->GetOutput());
  };
  BodyModel front(make_plane(0, 1), OBUtil::Shaded);
  BodyModel back(make_plane(-0.0005, 4), OBUtil::Shaded);
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(0, 0, 3);
  view.renderer()->ResetCamera();
  const Frame frame = view.render();
  ASSERT_GT(frame.count(is_red), 1000);
  back.unhook_from_views();
  EXPECT_EQ(frame.count(is_black), view.render().count(is_black));
  front.unhook_from_views();
  back.hook_to_views();
  EXPECT_GT(view.render().count(is_black), frame.count(is_black));
}

} // namespace
