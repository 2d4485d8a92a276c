#include "platform/base/GExtractEdges.h"
#include "platform/base/GModel.h"
#include "tests/base/Frame.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCubeSource.h>
#include <vtkFloatArray.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkPNGWriter.h>
#include <vtkPlaneSource.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty.h>
#include <vtkRendererCollection.h>
#include <vtkWindowToImageFilter.h>

#include <cstdlib>

namespace {

constexpr Frame::Color white = {255, 255, 255};

bool is_black(const Frame::Color& color) { return color[0] < 60 && color[1] < 60 && color[2] < 60; }
bool is_white(const Frame::Color& color) { return is_near(color, white, 2); }
bool is_red(const Frame::Color& color) { return color[0] > color[1] + 40 && color[0] > color[2] + 40; }

// A red body with black edges, as models make them: the surface follows the render mode, the edges never do.
class BodyModel : public GModel {
public:
  explicit BodyModel(vtkPolyData* body, OBUtil::RenderMode mode) : mode_(mode) {
    surface->SetColor(0.9, 0.1, 0.1);
    edge->SetColor(0, 0, 0);
    edge->LightingOff();
    edge->SetLineWidth(2);
    vtkNew<GExtractEdges> extract;
    extract->SetInputData(body);
    extract->Update();
    lines_->ShallowCopy(extract->GetOutput());
    add_part(body, [this](vtkDataObject* data, GView* view) {
      surface_actor = make_actor(data, view, surface, mode_);
      GModel::set_polygon_offset(surface_actor->GetMapper(), 1, 1);
      return PropList{surface_actor};
    });
    add_part(lines_, [this](vtkDataObject* data, GView* view) {
      edge_actor = make_actor(data, view, edge, OBUtil::AsIs);
      edge_actor->PickableOff();
      return PropList{edge_actor};
    });
  }

  void set_mode(OBUtil::RenderMode mode) { surface_actor->GetPropertyKeys()->Set(GModel::RENDER_MODE(), mode); }

  vtkNew<vtkProperty> surface;
  vtkNew<vtkProperty> edge;
  vtkSmartPointer<vtkActor> surface_actor;
  vtkSmartPointer<vtkActor> edge_actor;

private:
  static vtkSmartPointer<vtkActor> make_actor(vtkDataObject* data, GView* view, vtkProperty* property,
                                              OBUtil::RenderMode mode) {
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetProperty(property);
    vtkNew<vtkInformation> keys;
    keys->Set(GModel::RENDER_MODE(), mode);
    actor->SetPropertyKeys(keys);
    actor->SetMapper(GModel::create_mapper(data, view));
    return actor;
  }

  OBUtil::RenderMode mode_;
  vtkNew<vtkPolyData> lines_;
};

vtkSmartPointer<vtkPolyData> make_cube() {
  vtkNew<vtkCubeSource> source;
  source->Update();
  return source->GetOutput();
}

void look_at_a_corner(vtkRenderer* renderer) {
  renderer->GetActiveCamera()->SetPosition(3, 4, 5);
  renderer->GetActiveCamera()->SetFocalPoint(0, 0, 0);
  renderer->ResetCamera();
}

// For looking at: set ORBEL_MESH_PICTURES to a folder.
void keep_picture(vtkRenderWindow* window, const std::string& name) {
  const char* folder = std::getenv("ORBEL_MESH_PICTURES");
  if (!folder) return;
  vtkNew<vtkWindowToImageFilter> grab;
  grab->SetInput(window);
  grab->SetShouldRerender(false);
  grab->ReadFrontBufferOff();
  vtkNew<vtkPNGWriter> writer;
  writer->SetFileName((std::string(folder) + "/" + name + ".png").c_str());
  writer->SetInputConnection(grab->GetOutputPort());
  writer->Write();
}

float depth_at(vtkRenderWindow* window, int x, int y) { return window->GetRenderers()->GetFirstRenderer()->GetZ(x, y); }

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
  }
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

TEST(RenderMode, GivenASurfaceAtAGrazingAngle_WhenRendered_ThenItsEdgesHaveNoGaps) {
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

TEST(RenderMode, GivenASlantedSurface_WhenRendered_ThenItHidesNoPixelOfItsEdges) {
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

TEST(RenderMode, GivenPointsOnASlantedSurface_WhenRendered_ThenItCutsNothingOffTheirSquares) {
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

TEST(RenderMode, GivenPointsAtTheBackOfABody_WhenRendered_ThenTheyStayHidden) {
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

TEST(RenderMode, GivenAThinWall_WhenRendered_ThenTheEdgesBehindItStayHidden) {
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

TEST(RenderMode, GivenTheBodyBehindLabelsAndHighlights_WhenTheDepthIsRendered_ThenItIsTheBodysAlone) {
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

TEST(RenderMode, GivenAnotherLayerInTheWindow_WhenTheDepthIsRendered_ThenItDoesNotReachIt) {
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

TEST(RenderMode, GivenASlantingSurface_WhenTheDepthIsRendered_ThenItIsThatOfTheSurfaceItself) {
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
