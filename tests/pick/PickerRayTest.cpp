#include "platform/base/MultiCellPicker.h"
#include "tests/pick/PickerScene.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkObjectFactory.h>
#include <vtkRenderer.h>

#include <cmath>
#include <limits>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double close = 1e-9;
const Ray untouched = {1, 2, 3, 4, 5, 6};

Ray ray_at(vtkRenderer* renderer, float x, float y) {
  Ray ray = untouched;
  GMeshPicker::compute_pick_ray(renderer, x, y, ray.data());
  return ray;
}

void expect_ray(const Ray& ray, const Ray& expected, double slack = close) {
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(ray[i], expected[i], slack) << "value " << i;
}

TEST(PickRay, GivenAParallelView_WhenComputed_ThenItRunsAlongTheViewFromPlaneToPlane) {
  PlanView view;
  expect_ray(ray_at(view.renderer(), 150, 100), {3, 2, 5, 3, 2, -5});
  expect_ray(ray_at(view.renderer(), 0, 0), {0, 0, 5, 0, 0, -5});
  expect_ray(ray_at(view.renderer(), 62.5F, 175), {1.25, 3.5, 5, 1.25, 3.5, -5});
}

TEST(PickRay, GivenAPerspectiveView_WhenComputed_ThenItFansOutFromTheEye) {
  PlanView view;
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetViewAngle(90); // 10 units up at the focal point, 100 pixels
  expect_ray(ray_at(view.renderer(), 150, 100), {3, 2, 5, 3, 2, -5});
  // 50 pixels to the right are 5 units at the focal point, so half of that at 5 and 7.5 at 15 in front of the eye.
  expect_ray(ray_at(view.renderer(), 200, 100), {5.5, 2, 5, 10.5, 2, -5});
  expect_ray(ray_at(view.renderer(), 150, 40), {3, -1, 5, 3, -7, -5});
}

TEST(PickRay, GivenAHalfViewport_WhenComputed_ThenPixelsAreTheWindows) {
  PlanView view;
  view.renderer()->SetViewport(0.5, 0, 1, 1);
  expect_ray(ray_at(view.renderer(), 225, 100), {3, 2, 5, 3, 2, -5});
  expect_ray(ray_at(view.renderer(), 275, 100), {4, 2, 5, 4, 2, -5});
}

TEST(PickRay, GivenASlantedView_WhenComputed_ThenTheEndsLieOnThePlanes) {
  PlanView view;
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(10, 2, 0);
  camera->SetFocalPoint(0, 2, 0);
  camera->SetClippingRange(1, 21);
  expect_ray(ray_at(view.renderer(), 150, 100), {9, 2, 0, -11, 2, 0});
  camera->ParallelProjectionOff();
  camera->SetViewAngle(90);
  expect_ray(ray_at(view.renderer(), 150, 150), {9, 2.5, 0, -11, 12.5, 0});
}

// What unprojecting gives is set from outside.
class ScriptedRenderer : public vtkRenderer {
public:
  static ScriptedRenderer* New() {
    auto* made = new ScriptedRenderer;
    made->InitializeObjectBase();
    return made;
  }
  vtkTypeMacro(ScriptedRenderer, vtkRenderer)
  void DeviceRender() override {}
  using vtkRenderer::ViewToWorld;
  void ViewToWorld() override { SetWorldPoint(world.data()); }
  std::array<double, 4> world = {0, 0, 0, 1};
};

TEST(PickRay, GivenADegenerateView_WhenComputed_ThenTheRayIsLeftAsItWas) {
  vtkNew<ScriptedRenderer> renderer;
  PlanView::look_down(*renderer);
  renderer->world = {6, 4, 0, 2};
  expect_ray(ray_at(renderer, 1, 1), {3, 2, 5, 3, 2, -5});
  renderer->world = {6, 4, 0, 0};
  EXPECT_EQ(ray_at(renderer, 1, 1), untouched) << "a point at infinity";
  renderer->world = {7, 1, 10, 1};
  EXPECT_EQ(ray_at(renderer, 1, 1), untouched) << "beside the eye, at right angles to the view";
}

// ------------------------------------------------------------------------------------------ tolerance

double tolerance_of(vtkRenderer* renderer) {
  double tolerance = -1;
  GMeshPicker::compute_pick_tolerance(renderer, tolerance);
  return tolerance;
}

TEST(PickTolerance, GivenViews_WhenComputed_ThenItIsHalfTheDiagonalsFractionAtTheFocalPoint) {
  const double fraction = MultiCellPicker::PickToleranceByWindowDiagonal();
  ASSERT_EQ(fraction, 0.005);
  PlanView view;
  const double pixels = 0.0025 * std::sqrt(300.0 * 300 + 200 * 200);
  EXPECT_NEAR(tolerance_of(view.renderer()), pixels / 50, close);
  MultiCellPicker::SetPickToleranceByWindowDiagonal(0.1);
  EXPECT_NEAR(tolerance_of(view.renderer()), 20 * pixels / 50, close);
  MultiCellPicker::SetPickToleranceByWindowDiagonal(0);
  EXPECT_EQ(tolerance_of(view.renderer()), 0);
  MultiCellPicker::SetPickToleranceByWindowDiagonal(fraction);

  view.renderer()->SetViewport(0.5, 0, 1, 1); // 150 by 200
  EXPECT_NEAR(tolerance_of(view.renderer()), 0.0025 * 250 / 50, close) << "of the renderer's own size";
  view.renderer()->SetViewport(0, 0, 1, 1);

  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetViewAngle(90);
  EXPECT_NEAR(tolerance_of(view.renderer()), pixels / 10, close);
  camera->SetFocalPoint(3, 2, 5); // half as far
  EXPECT_NEAR(tolerance_of(view.renderer()), pixels / 20, close);
}

TEST(PickTolerance, GivenPointsAtDifferentDepths_WhenComputed_ThenEachIsDividedByItsOwnFourthCoordinate) {
  // Two answers in turn.
  class Alternating : public ScriptedRenderer {
  public:
    static Alternating* New() {
      auto* made = new Alternating;
      made->InitializeObjectBase();
      return made;
    }
    void ViewToWorld() override {
      world = first ? std::array<double, 4>{2, 4, 6, 2} : std::array<double, 4>{16, 24, 12, 4};
      first = false;
      ScriptedRenderer::ViewToWorld();
    }
    bool first = true;
  };
  vtkNew<Alternating> renderer;
  PlanView::look_down(*renderer);
  EXPECT_DOUBLE_EQ(tolerance_of(renderer), 5) << "from (1, 2, 3) to (4, 6, 3)";
}

TEST(PickTolerance, GivenAWindowOfMoreThan2To31SquarePixels_WhenComputed_ThenTheSumWraps) {
  PlanView view;
  view.window()->SetSize(40000, 40000); // 3.2e9 wraps to a negative number
  EXPECT_TRUE(std::isnan(tolerance_of(view.renderer())));
  view.window()->SetSize(60000, 60000); // 7.2e9 - 2^32 is still too large, and negative
  EXPECT_TRUE(std::isnan(tolerance_of(view.renderer())));
  view.window()->SetSize(46000, 1000);
  EXPECT_GT(tolerance_of(view.renderer()), 0);
}

// ------------------------------------------------------------------------------------------ poor cameras

struct Camera {
  const char* name;
  void (*spoil)(PlanView&, vtkCamera*);
  enum { Hits, Misses, Either } expected; ///< Either: VTK's conversions decide, which leave points alone without pixels
};

class PoorCameras : public testing::TestWithParam<Camera> {};

TEST_P(PoorCameras, GivenACamera_WhenPicked_ThenNothingBreaks) {
  PickSystemDouble system;
  PlanView view;
  ShownSheet sheet(6);
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetFocalPoint(3, 0.5, 0);
  camera->SetPosition(3, 0.5, 10);
  GMeshPicker picker;
  GetParam().spoil(view, camera);
  picker.compute_pick(view.renderer(), 150, 100, false);
  if (GetParam().expected != Camera::Either) {
    EXPECT_EQ(system.reports.empty(), GetParam().expected == Camera::Misses);
  }
  ScriptedRegion region;
  region.point = [](const double* p) { return std::isfinite(p[0]); };
  picker.compute_pick_by_bounds(view.renderer(), &region, false);
  MultiCellPicker::mSelectVisibleOnly = true;
  picker.compute_pick_by_bounds(view.renderer(), &region, false);
  MultiCellPicker::mSelectVisibleOnly = false;
}

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    All, PoorCameras,
    testing::Values(
        Camera{"sound", [](PlanView&, vtkCamera*) {}, Camera::Hits},
        Camera{"on_the_mesh", [](PlanView&, vtkCamera* camera) { camera->SetPosition(3, 0.5, 0); }, Camera::Either},
        Camera{"behind_it_looking_away", [](PlanView&, vtkCamera* camera) { camera->SetFocalPoint(3, 0.5, 20); },
               Camera::Misses},
        Camera{"close_to_it",
               [](PlanView&, vtkCamera* camera) {
                 camera->SetPosition(3, 0.5, 1e-3);
                 camera->ParallelProjectionOff();
                 camera->SetClippingRange(1e-4, 1);
               },
               Camera::Hits},
        Camera{"in_its_plane",
               [](PlanView&, vtkCamera* camera) {
                 camera->SetPosition(-10, 0.5, 0);
                 camera->SetClippingRange(1, 100);
               },
               Camera::Hits},
        Camera{"clipping_range_of_nothing", [](PlanView&, vtkCamera* camera) { camera->SetClippingRange(10, 10); },
               Camera::Misses},
        Camera{"clipping_range_beyond", [](PlanView&, vtkCamera* camera) { camera->SetClippingRange(11, 12); },
               Camera::Misses},
        Camera{"eye_at_the_focal_point",
               [](PlanView&, vtkCamera* camera) { camera->SetPosition(camera->GetFocalPoint()); }, Camera::Either},
        Camera{"nowhere", [](PlanView&, vtkCamera* camera) { camera->SetPosition(not_a_number, 0, 0); },
               Camera::Misses},
        Camera{"no_scale", [](PlanView&, vtkCamera* camera) { camera->SetParallelScale(0); }, Camera::Misses},
        Camera{"window_of_no_size", [](PlanView& view, vtkCamera*) { view.window()->SetSize(0, 0); }, Camera::Either},
        Camera{"window_of_no_height", [](PlanView& view, vtkCamera*) { view.window()->SetSize(300, 0); },
               Camera::Either},
        Camera{"viewport_of_no_size",
               [](PlanView& view, vtkCamera*) { view.renderer()->SetViewport(0.5, 0.5, 0.5, 0.5); }, Camera::Misses}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PoorViews, GivenARendererWithoutAWindow_WhenPicked_ThenNothingIsReported) {
  PickSystemDouble system;
  PlanView view;
  ShownSheet sheet(6);
  GMeshPicker picker;
  view.window()->RemoveRenderer(view.renderer());
  ASSERT_EQ(view.renderer()->GetRenderWindow(), nullptr);
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  picker.compute_pick_by_bounds(view.renderer(), &region, false);
  EXPECT_THAT(region.asked, IsEmpty());
  picker.compute_pick(view.renderer(), 150, 100, false);
  EXPECT_THAT(system.reports, IsEmpty());
  view.window()->AddRenderer(view.renderer());
}

} // namespace
