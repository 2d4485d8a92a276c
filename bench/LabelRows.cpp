#include "Rows.h"

#include "Contest.h"

#include "platform/base/GLabelMapper.h"
#include "platform/base/GModel.h"
#include "platform/base/GView.h"
#include "platform/util/TovanColor.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"

#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkIntArray.h>
#include <vtkLabeledDataMapper.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>
#include <vtkUnsignedCharArray.h>

#include <random>
#include <stdexcept>
#include <vector>

namespace bench {
namespace {

constexpr int width = 1280;
constexpr int height = 720;
constexpr unsigned seed = 20240611;
constexpr double step = 0.5; // degrees

/// Points all over a view, all within it however little it turns.
std::vector<TovanVector> scattered_points(int count) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> across(-1.5, 1.5), up(-0.9, 0.9), deep(-0.1, 0.1);
  std::vector<TovanVector> points;
  for (int i = 0; i < count; ++i) {
    const double x = across(random), y = up(random);
    points.emplace_back(x, y, deep(random));
  }
  return points;
}

/// A view of the usual size in a window that is never shown, with labels alone in it.
class LabelStage {
public:
  LabelStage() {
    window_->SetOffScreenRendering(1);
    window_->SetSize(width, height);
    view_ = std::make_unique<GView>(window_);
    vtkCamera* camera = view_->renderer()->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetPosition(0, 0, 10);
    camera->SetParallelScale(1);
    camera->SetClippingRange(1, 20);
    view_->renderer()->AddViewProp(actor_);
    style_->SetFontFamilyToArial();
    style_->SetFontSize(10);
    style_->SetJustificationToCentered();
    style_->SetVerticalJustificationToCentered();
    style_->SetColor(0, 0, 0);
  }

  void show(vtkMapper2D* labels) { actor_->SetMapper(labels); }
  vtkTextProperty* style() { return style_; }
  /// To and fro.
  void turn() {
    step_ = -step_;
    view_->renderer()->GetActiveCamera()->Azimuth(step_);
  }
  void draw() {
    view_->render();
    window_->WaitForCompletion();
  }
  /// How many of the points have something drawn within six pixels of them.
  std::size_t labelled(const std::vector<TovanVector>& points) {
    draw();
    vtkNew<vtkUnsignedCharArray> pixels;
    window_->GetRGBACharPixelData(0, 0, width - 1, height - 1, 0, pixels);
    const auto differs = [&](int x, int y) {
      for (int channel = 0; channel < 3; ++channel)
        if (pixels->GetTypedComponent(y * width + x, channel) != pixels->GetTypedComponent(0, channel)) return true;
      return false;
    };
    std::size_t found = 0;
    for (const TovanVector& point : points) {
      view_->renderer()->SetWorldPoint(point.x, point.y, point.z, 1);
      view_->renderer()->WorldToDisplay();
      const double* place = view_->renderer()->GetDisplayPoint();
      bool here = false;
      for (int dy = -6; dy <= 6; ++dy)
        for (int dx = -6; dx <= 6; ++dx)
          here = here || differs(static_cast<int>(place[0]) + dx, static_cast<int>(place[1]) + dy);
      found += here;
    }
    return found;
  }

private:
  vtkNew<vtkRenderWindow> window_;
  std::unique_ptr<GView> view_;
  vtkNew<vtkActor2D> actor_;
  vtkNew<vtkTextProperty> style_;
  double step_ = step;
};

/// Ours, hidden by what is drawn before, of which there is nothing here.
class OurLabels {
public:
  OurLabels(LabelStage& stage, const std::vector<TovanVector>& points) {
    int id = 0;
    for (const TovanVector& point : points)
      mapper_->add_point(point, TovanString(std::to_string(++id).c_str()), TovanColor(230, 160, 60), 0);
    mapper_->set_model(&model_);
    mapper_->SetTextProperty(stage.style());
    stage.show(mapper_);
  }

private:
  GModel model_;
  vtkNew<GLabelMapper> mapper_;
};

class StockLabels {
public:
  StockLabels(LabelStage& stage, const std::vector<TovanVector>& points) {
    vtkNew<vtkPoints> places;
    vtkNew<vtkIntArray> ids;
    ids->SetName("ids");
    for (const TovanVector& point : points)
      ids->InsertNextValue(static_cast<int>(places->InsertNextPoint(point.x, point.y, point.z)) + 1);
    vtkNew<vtkPolyData> data;
    data->SetPoints(places);
    data->GetPointData()->AddArray(ids);
    mapper_->SetInputData(data);
    mapper_->SetLabelModeToLabelFieldData();
    mapper_->SetFieldDataName("ids");
    mapper_->SetLabelTextProperty(stage.style());
    stage.show(mapper_);
  }

private:
  vtkNew<vtkLabeledDataMapper> mapper_;
};

void require_all(const std::string& name, LabelStage& stage, const std::vector<TovanVector>& points) {
  if (stage.labelled(points) != points.size()) throw std::runtime_error(name + ": labels are missing");
}

std::string count_of(int count) { return std::to_string(count / 1000) + "k"; }

/// Frames after the first: with the camera turned each time, and with nothing changed.
void time_labels(int count, const Settings& settings, Report& report) {
  const auto points = scattered_points(settings.tiny ? 50 : count);
  LabelStage stage;
  const OurLabels labels(stage, points);
  require_all("labels_" + count_of(count), stage, points);
  const std::vector<double> medians = hold_contest({
      {[&] { stage.draw(); }, [] {}, [&] { stage.turn(); }},
      {[&] { stage.draw(); }},
  });
  report.add_time("labels_" + count_of(count), medians[0]);
  report.add_time("labels_" + count_of(count) + "_unmoved", medians[1]);
}

void compare_labels(const std::string& name, int count, const Settings& settings, Report& report) {
  const auto points = scattered_points(settings.tiny ? 50 : count);
  LabelStage our_stage;
  LabelStage stock_stage;
  const OurLabels ours(our_stage, points);
  const StockLabels stock(stock_stage, points);
  require_all(name, our_stage, points);
  require_all(name + ", the peer's", stock_stage, points);
  const std::vector<double> medians = hold_contest({
      {[&] { our_stage.draw(); }, [] {}, [&] { our_stage.turn(); }},
      {[&] { stock_stage.draw(); }, [] {}, [&] { stock_stage.turn(); }},
  });
  report.add_result(name, medians[0], medians[1]);
}

} // namespace

std::vector<Row> label_rows(const Settings& settings) {
  std::vector<Row> rows = {
      {"labels_10k", [settings](Report& report) { compare_labels("labels_10k", 10000, settings, report); }}};
  for (const int count : {1000, 10000, 100000})
    rows.push_back(
        {"labels_" + count_of(count), [count, settings](Report& report) { time_labels(count, settings, report); }});
  return rows;
}

} // namespace bench
