#include "Rows.h"

#include "Contest.h"
#include "MeshInputs.h"
#include "PickScene.h"

#include "pick/GMeshPicker.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"

#include <vtkActor.h>
#include <vtkCellPicker.h>
#include <vtkDataSetMapper.h>
#include <vtkHardwareSelector.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>
#include <vtkStaticCellLocator.h>
#include <vtkUnstructuredGrid.h>

#include <stdexcept>
#include <utility>

namespace bench {
namespace {

constexpr std::uint64_t seed = 20240611;
// Off the middle, where the ray would run along faces.
constexpr double aside = 0.37;

/// VTK's pickers on the same mesh, as a plain unstructured grid from the same camera.
class StockPickers {
public:
  StockPickers(const RawMesh& raw, vtkCamera* camera) : grid_(as_grid(raw)) {
    vtkNew<vtkDataSetMapper> mapper;
    mapper->SetInputData(grid_);
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    window_->SetOffScreenRendering(1);
    window_->SetSize(width, height);
    window_->AddRenderer(renderer_);
    renderer_->AddActor(actor);
    renderer_->SetActiveCamera(camera);
    window_->Render();
    locator_->SetDataSet(grid_);
    locator_->BuildLocator();
    located_->AddLocator(locator_);
    selector_->SetRenderer(renderer_);
    selector_->SetFieldAssociation(vtkDataObject::FIELD_ASSOCIATION_CELLS);
  }

  vtkIdType pick_plainly(double x, double y) { return pick(plain_, x, y); }
  vtkIdType pick_with_locator(double x, double y) { return pick(located_, x, y); }
  /// Whether there is something in the pixel.
  bool select_pixel(unsigned x, unsigned y) {
    selector_->SetArea(x, y, x, y);
    const auto selection = vtk::TakeSmartPointer(selector_->Select());
    return selection && selection->GetNumberOfNodes() > 0;
  }

private:
  vtkIdType pick(vtkCellPicker* picker, double x, double y) {
    picker->Pick(x, y, 0, renderer_);
    return picker->GetCellId();
  }

  vtkSmartPointer<vtkUnstructuredGrid> grid_;
  vtkNew<vtkRenderWindow> window_;
  vtkNew<vtkRenderer> renderer_;
  vtkNew<vtkStaticCellLocator> locator_;
  vtkNew<vtkCellPicker> plain_;
  vtkNew<vtkCellPicker> located_;
  vtkNew<vtkHardwareSelector> selector_;
};

const std::vector<std::string> solids = {"ThreeDimElement"};
const std::vector<std::string> faces = {"Face"};

/// The pick filter for the length of a row.
class Filter {
public:
  explicit Filter(std::vector<std::string> names) { GPickerBase::set_filter(std::move(names)); }
  ~Filter() { GPickerBase::set_filter(before_); }

private:
  std::vector<std::string> before_ = GPickerBase::filter();
};

/// Throws where ours and the stock pickers do not find the same element under the cursor.
void require_same_pick(const std::string& name, PickStage& stage, const PickedMesh& mesh, StockPickers& stock, float x,
                       float y) {
  const Filter filter(solids);
  if (!GPickerBase::pick(stage.view(), x, y)) throw std::runtime_error(name + ": nothing is picked");
  const auto winner = static_cast<vtkIdType>(mesh.position_of({GPickerBase::picked().front().entity()->handle()}));
  if (stock.pick_plainly(x, y) != winner || stock.pick_with_locator(x, y) != winner ||
      !stock.select_pixel(static_cast<unsigned>(x), static_cast<unsigned>(y)))
    throw std::runtime_error(name + ": the pickers do not agree on what lies under the cursor");
}

/// A picker's walk through nodes, edges and elements; the same without an index, and when the index is yet to be made;
/// and a click, for which the pick system walks twice.
void compare_picks(const std::string& name, const std::string& mesh_name, const RawMesh& raw, Report& report) {
  PickStage stage;
  PickedMesh mesh(raw);
  mesh.show(stage);
  stage.look_at_all(0.5, 0.6, 1);
  StockPickers stock(raw, stage.view()->renderer()->GetActiveCamera());
  const float x = width / 2 + aside;
  const float y = height / 2 + aside;
  require_same_pick(name, stage, mesh, stock, x, y);
  const auto pick = [&] { stage.picker().compute_pick(stage.view()->renderer(), x, y, false); };
  const std::vector<double> medians = hold_contest({
      {pick},
      {[&] { stock.pick_plainly(x, y); }},
      {[&] { stock.pick_with_locator(x, y); }},
      {[&] { stock.select_pixel(width / 2, height / 2); }},
      {[&] { GPickerBase::pick(stage.view(), x, y); }},
      {pick, [] { GMeshPicker::use_index(true); }, [] { GMeshPicker::use_index(false); }},
      {pick, [] {}, [&] { mesh.touch(stage); }},
  });
  report.add_result(name, medians[0], medians[1]);
  report.add_result(name + "_static_locator", medians[0], medians[2]);
  report.add_result(name + "_hardware_selector", medians[0], medians[3]);
  report.add_result(name + "_plain", medians[0], medians[5]);
  report.add_result("first_" + name + "_plain", medians[6], medians[5]);
  report.add_time("click_" + mesh_name, medians[4]);
}

/// All faces of a sheet by one region, in many owners against in one: what was found is handed over again with each.
void compare_owners(const std::string& name, const RawMesh& raw, int owners, Report& report) {
  const Filter filter(faces);
  PickStage stage;
  PickedMesh one(raw);
  PickedMesh many(raw, owners);
  one.show(stage);
  stage.look_at_all(0, 0, 1);
  one.hide();
  const double low[2] = {0, 0};
  const double high[2] = {width, height};
  PickRectangle everything(low, high);
  const auto pick = [&] {
    GPickerBase::pick_by_bounds(stage.view(), everything);
    if (GPickerBase::picked().size() != raw.element_count())
      throw std::runtime_error(name + ": not all quadrilaterals are picked");
  };
  const auto contender = [&](PickedMesh& mesh) {
    return Contender{pick, [&mesh] { mesh.hide(); }, [&mesh, &stage] { mesh.show(stage); }};
  };
  const std::vector<double> medians = hold_contest({contender(many), contender(one)});
  report.add_result(name, medians[0], medians[1]);
}

} // namespace

std::vector<Row> pick_rows(const Settings& settings) {
  const auto pick = [](const std::string& mesh_name, const std::function<RawMesh()>& make_mesh) {
    const std::string name = "pick_" + mesh_name;
    return Row{name, [=](Report& report) { compare_picks(name, mesh_name, make_mesh(), report); }};
  };
  const auto region = [settings](int owners) {
    const int count = settings.tiny ? owners / 1000 + 1 : owners;
    const std::string name = "region_" + std::to_string(owners) + "_owners";
    const int nx = settings.edge(300);
    const int ny = settings.edge(200);
    return Row{name, [=](Report& report) { compare_owners(name, rectangle_of_quadrilaterals(nx, ny), count, report); }};
  };
  const auto hexes = [settings] {
    return box_of_hexahedra(settings.edge(100), settings.edge(100), settings.edge(100));
  };
  return {pick("hex1m", hexes), pick("hex1m_shuffled", [hexes] { return shuffled(hexes(), seed); }),
          pick("tet1m", [settings] { return box_of_tetrahedra(settings.edge(55)); }), region(1000), region(10000)};
}

} // namespace bench
