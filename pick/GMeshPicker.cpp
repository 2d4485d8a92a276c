#include "pick/GMeshPicker.h"

#include "group/GMeshGroup.h"
#include "mesh/database/MeshData.h"
#include "model/GMeshModel.h"
#include "pick/DepthBuffer.h"
#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "pick/index/GroupPickIndex.h"
#include "pick/index/PickAdmission.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/OBPickUtil.h"
#include "platform/base/PickBounds.h"
#include "platform/util/TovanBox.h"
#include "platform/util/TovanVector.h"

#include <vtkActor.h>
#include <vtkActorCollection.h>
#include <vtkAlgorithm.h>
#include <vtkAlgorithmOutput.h>
#include <vtkCamera.h>
#include <vtkDataSet.h>
#include <vtkMapper.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <unordered_map>

// One pick, end to end; which entities of a mesh are candidates is in GMeshPickerCandidates.cpp.

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using NodeHits = std::vector<PickInterface::PickResult<Node>>;
using ElementHits = std::vector<PickInterface::PickResult<Elem>>;

// What pushes an element's hit behind a node's at the same depth. Single precision, widened where it is added.
constexpr float edge_bias = 0.1f;
constexpr float tri_bias = 0.2f;
constexpr float quad_bias = 0.15f; // less than a triangle's: quadrilaterals are favoured
constexpr float solid_bias = 0.3f;

double depth_bias(Tarn::ElementType type) {
  switch (type) {
  case Tarn::Edge:
    return edge_bias;
  case Tarn::Tri:
    return tri_bias;
  case Tarn::Quad:
    return quad_bias;
  default:
    return solid_bias;
  }
}

// A copy: the camera hands out one matrix and fills it anew at every call. So does the renderer with its collection of
// actors, which is why walks go over a copy of that too.
void get_projection(vtkRenderer* renderer, vtkMatrix4x4* matrix) {
  matrix->DeepCopy(
      renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(renderer->GetTiledAspectRatio(), 0.0, 1.0));
}

std::vector<vtkActor*> pickable_actors(vtkRenderer* renderer) {
  std::vector<vtkActor*> actors;
  vtkActorCollection* all = renderer->GetActors();
  vtkCollectionSimpleIterator at;
  all->InitTraversal(at);
  while (vtkActor* actor = all->GetNextActor(at))
    if (actor->GetPickable()) actors.push_back(actor);
  return actors;
}

vtkMultiBlockDataSet* mesh_data(vtkActor* actor) {
  vtkMapper* mapper = actor->GetMapper();
  if (!mapper || mapper->GetNumberOfInputPorts() == 0 || mapper->GetNumberOfInputConnections(0) == 0) return nullptr;
  vtkAlgorithmOutput* connection = mapper->GetInputConnection(0, 0);
  vtkAlgorithm* producer = connection ? connection->GetProducer() : nullptr;
  if (!producer) return nullptr;
  return vtkMultiBlockDataSet::SafeDownCast(producer->GetOutputDataObject(0));
}

std::vector<vtkDataSet*> data_sets(vtkMultiBlockDataSet* blocks) {
  std::vector<vtkDataSet*> found;
  for (unsigned int i = 0; i < blocks->GetNumberOfBlocks(); ++i)
    if (auto* data = vtkDataSet::SafeDownCast(blocks->GetBlock(i))) found.push_back(data);
  return found;
}

// The group behind a block, if it is shown. One that was hidden or clipped since the last frame still has its block as
// it was: hiding counts at once, and asking for the grid makes clipping count too.
GMeshGroup* group_behind(vtkDataSet* data) {
  GMeshGroup* group = GMeshGroup::get_group(data);
  if (!group || !group->get_visibility()) return nullptr;
  group->get_2d_data();
  return group;
}

bool ray_meets(vtkDataSet* data, const double* ray, double tolerance) {
  double bounds[6];
  data->GetBounds(bounds);
  const double low[3] = {bounds[0] - tolerance, bounds[2] - tolerance, bounds[4] - tolerance};
  const double high[3] = {bounds[1] + tolerance, bounds[3] + tolerance, bounds[5] + tolerance};
  const TovanVector direction(ray[3] - ray[0], ray[4] - ray[1], ray[5] - ray[2]);
  return TovanBox(low, high).intersect(TovanVector(ray), direction);
}

void get_focal_display(vtkRenderer* renderer, double* display) {
  double focal[3];
  renderer->GetActiveCamera()->GetFocalPoint(focal);
  renderer->SetWorldPoint(focal[0], focal[1], focal[2], 1.0);
  renderer->WorldToDisplay();
  renderer->GetDisplayPoint(display);
}

void get_world(vtkRenderer* renderer, double x, double y, double z, double* world) {
  renderer->SetDisplayPoint(x, y, z);
  renderer->DisplayToWorld();
  renderer->GetWorldPoint(world);
}

double depth_of(vtkMatrix4x4* matrix, const double* point) {
  const double world[4] = {point[0], point[1], point[2], 1.0};
  double view[4];
  matrix->MultiplyPoint(world, view);
  return view[2] / view[3];
}

void report(GPicker* picker, GPicked::PickedEntity* entity, const double* point, double distance, bool is_exact) {
  const float hit[3] = {static_cast<float>(point[0]), static_cast<float>(point[1]), static_cast<float>(point[2])};
  picker->add_to_selection_buffer(entity, hit, static_cast<float>(distance), is_exact);
  entity->Delete();
}

// Regions tell neither place nor depth.
void report(GPicker* picker, GPicked::PickedEntity* entity) {
  constexpr double origin[3] = {0.0, 0.0, 0.0};
  report(picker, entity, origin, 0.0, true);
}

Elem element_on(Tarn::MeshData* db, Node node) {
  Elem element;
  db->get_elements_on_nodes(1, 1, &node, &element);
  return element;
}

bool has_global_id(Tarn::MeshData* db, Elem element) {
  int id = 0;
  bool has_id = false;
  db->get_element_global_id(element, &id, &has_id);
  return has_id;
}

// The records of a growing list of region hits. A region pick hands all hits so far over with each group: what was
// found of an entity, its record and the depth buffer hold for the rest of the call, so that a hit handed over again
// costs the buffer's look-up and no more. Every report is the one that `process_picks` would make.
class RegionRecords {
public:
  RegionRecords(vtkRenderer* renderer, vtkMatrix4x4* matrix, bool visible_only)
      : renderer_(renderer), matrix_(matrix), visible_only_(visible_only) {}
  ~RegionRecords() {
    for (const auto* lists : {&nodes_, &elements_})
      for (const auto& [db, known] : *lists)
        for (const auto& [handle, record] : known.records)
          if (record) record->Delete();
  }
  RegionRecords(const RegionRecords&) = delete;
  RegionRecords& operator=(const RegionRecords&) = delete;

  void report(Tarn::MeshData* db, const std::vector<Node>& nodes, const std::vector<Elem>& elements, GPicker* picker) {
    // A region that touches no group needs no depth.
    if (visible_only_ && !depth_) depth_.emplace(renderer_, matrix_);
    report_list<PickedNode>(db, nodes, nodes_[db], picker);
    report_list<PickedElement>(db, elements, elements_[db], picker);
  }

private:
  struct Known {
    std::unordered_map<std::uint64_t, GPicked::PickedEntity*> records; // by handle; null for entities that do not show
    std::vector<GPicked::PickedEntity*> of_hits;                       // groups share nodes and edges
  };

  template <class Record, class H>
  void report_list(Tarn::MeshData* db, const std::vector<H>& entities, Known& known, GPicker* picker) {
    constexpr float origin[3] = {0.0F, 0.0F, 0.0F};
    for (std::size_t i = known.of_hits.size(); i < entities.size(); ++i) {
      const auto [found, is_new] = known.records.emplace(entities[i].value, nullptr);
      if (is_new && (!depth_ || depth_->is_visible(db, entities[i]))) found->second = Record::New(entities[i], db);
      known.of_hits.push_back(found->second);
    }
    for (GPicked::PickedEntity* record : known.of_hits)
      if (record) picker->add_to_selection_buffer(record, origin, 0.0F, true);
  }

  vtkRenderer* renderer_;
  vtkMatrix4x4* matrix_;
  bool visible_only_;
  std::optional<DepthBuffer> depth_;
  std::map<Tarn::MeshData*, Known> nodes_;
  std::map<Tarn::MeshData*, Known> elements_;
};

} // namespace

const char* const GMeshPicker::gHexType = "Hex";
const char* const GMeshPicker::gTetType = "Tet";
const char* const GMeshPicker::gPyramidType = "Pyramid";
const char* const GMeshPicker::gWedgeType = "Wedge";
const char* const GMeshPicker::gKnifeType = "Knife";
const char* const GMeshPicker::gSuperElemType = "Superelement";
const char* const GMeshPicker::gQuadType = "Face";
const char* const GMeshPicker::gTriType = "Tri";
const char* const GMeshPicker::gEdgeType = "Edge";
const char* const GMeshPicker::gNodeType = "Node";
const char* const GMeshPicker::g3dElementType = "ThreeDimElement";
const char* const GMeshPicker::g2dElementType = "TwoDimElement";
const char* const GMeshPicker::gElementType = "Element";

namespace {

// The order of registering and unregistering.
constexpr const char* const* type_names[] = {
    &GMeshPicker::gHexType,    &GMeshPicker::gTetType,       &GMeshPicker::gPyramidType,   &GMeshPicker::gWedgeType,
    &GMeshPicker::gKnifeType,  &GMeshPicker::gSuperElemType, &GMeshPicker::gQuadType,      &GMeshPicker::gTriType,
    &GMeshPicker::gEdgeType,   &GMeshPicker::gNodeType,      &GMeshPicker::g3dElementType, &GMeshPicker::g2dElementType,
    &GMeshPicker::gElementType};

} // namespace

GMeshPicker::GMeshPicker() {
  for (const char* const* name : type_names)
    GPickerBase::register_picker(*name, this);
}

GMeshPicker::~GMeshPicker() {
  for (const char* const* name : type_names)
    GPickerBase::unregister_picker(*name, this);
}

void GMeshPicker::compute_pick(vtkRenderer* renderer, float x, float y) { compute_pick(renderer, x, y, true); }

void GMeshPicker::compute_pre_select(vtkRenderer* renderer, float x, float y) { compute_pick(renderer, x, y, true); }

void GMeshPicker::compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) {
  compute_pick_by_bounds(renderer, bounds, true);
}

void GMeshPicker::compute_pick(vtkRenderer* renderer, float x, float y, bool use_filter) {
  // A degenerate camera leaves the ray as it is: one that meets nothing.
  double ray[6];
  std::fill_n(ray, 6, std::numeric_limits<double>::quiet_NaN());
  compute_pick_ray(renderer, x, y, ray);
  double tolerance = 0.0;
  compute_pick_tolerance(renderer, tolerance);
  const LineAdmission near_ray(ray, tolerance);
  MeshVector reduced;

  for (vtkActor* actor : pickable_actors(renderer)) {
    vtkMultiBlockDataSet* blocks = mesh_data(actor);
    if (!blocks) continue;
    for (vtkDataSet* data : data_sets(blocks)) {
      if (!ray_meets(data, ray, tolerance)) continue;
      GMeshGroup* group = group_behind(data);
      if (!group) continue;
      Tarn::MeshData* db = group->get_model()->database();
      PickInterface picker(db);
      picker.setTolerance(tolerance);
      NodeHits node_hits;
      ElementHits element_hits;
      pick_mesh_by_ray(picker, GroupPickIndex::reduce(*group, near_ray, reduced), ray, node_hits, element_hits,
                       use_filter);
      const bool element_filter = GPickerBase::is_filtered(gElementType);
      process_picks(db, node_hits, element_hits, renderer, element_filter, this);
    }
  }
}

void GMeshPicker::compute_pre_select(vtkRenderer* renderer, float x, float y, bool use_filter) {
  compute_pick(renderer, x, y, use_filter);
}

void GMeshPicker::compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds, bool use_filter) {
  if (!renderer->GetRenderWindow()) return; // nothing is on a screen
  vtkNew<vtkMatrix4x4> matrix;
  get_projection(renderer, matrix);
  RegionRecords records(renderer, matrix, MultiCellPicker::mSelectVisibleOnly);

  // Never emptied between groups: each hands over what was found so far.
  std::vector<Node> nodes;
  std::vector<Elem> elements;
  int* const size = renderer->GetRenderWindow()->GetSize();
  const RegionAdmission in_region(matrix, size, renderer->GetViewport(), *bounds);
  MeshVector reduced;
  for (vtkActor* actor : pickable_actors(renderer)) {
    const double* box = actor->GetBounds();
    if (!box || !bounds->test(OBPickUtil::convert_world_bbox_to_display_bbox(box, matrix, renderer))) continue;
    vtkMultiBlockDataSet* blocks = mesh_data(actor);
    if (!blocks) continue;
    for (vtkDataSet* data : data_sets(blocks)) {
      GMeshGroup* group = group_behind(data);
      if (!group) continue;
      Tarn::MeshData* db = group->get_model()->database();
      PickInterface picker(db);
      picker.setPartialAccept(MultiCellPicker::mBoxPickAcceptPartialCells);
      picker.setTransform(matrix, size, renderer->GetViewport());
      pick_mesh_by_bounds(picker, GroupPickIndex::reduce(*group, in_region, reduced), bounds, nodes, elements,
                          use_filter);
      records.report(db, nodes, elements, this);
    }
  }
}

void GMeshPicker::use_index(bool on) { GroupPickIndex::is_used = on; }

void GMeshPicker::compute_pick_ray(vtkRenderer* renderer, float x, float y, double* const ray) {
  vtkCamera* camera = renderer->GetActiveCamera();
  double eye[3];
  double focal[3];
  camera->GetPosition(eye);
  camera->GetFocalPoint(focal);
  double display[3];
  get_focal_display(renderer, display);
  double world[4];
  get_world(renderer, x, y, display[2], world);
  if (world[3] == 0.0) return;

  double picked[3];
  double along[3];
  double view[3];
  for (int axis = 0; axis < 3; ++axis) {
    picked[axis] = world[axis] / world[3];
    along[axis] = picked[axis] - eye[axis];
    view[axis] = focal[axis] - eye[axis];
  }
  vtkMath::Normalize(view);
  const double ray_length = vtkMath::Dot(view, along);
  if (ray_length == 0.0) return;

  const double* range = camera->GetClippingRange();
  for (int axis = 0; axis < 3; ++axis) {
    for (int end = 0; end < 2; ++end) {
      ray[3 * end + axis] = camera->GetParallelProjection() ? picked[axis] + (range[end] - ray_length) * view[axis]
                                                            : eye[axis] + range[end] / ray_length * along[axis];
    }
  }
}

void GMeshPicker::compute_pick_tolerance(vtkRenderer* renderer, double& tolerance) {
  const int* size = renderer->GetSize();
  const double width = size[0];
  const double height = size[1];
  // In 32 bits, as one integer: the sum of a window of more than 2^31 square pixels wraps.
  const auto square = [](int side) { return static_cast<std::uint32_t>(side) * static_cast<std::uint32_t>(side); };
  const auto diagonal2 = static_cast<std::int32_t>(square(size[0]) + square(size[1]));
  const double pixels = MultiCellPicker::PickToleranceByWindowDiagonal() * 0.5 * std::sqrt(double(diagonal2));
  tolerance = 0.0;
  double display[3];
  get_focal_display(renderer, display);
  double centre[4];
  double beside[4];
  get_world(renderer, width * 0.5, height * 0.5, display[2], centre);
  get_world(renderer, width * 0.5 + pixels, height * 0.5, display[2], beside);
  for (int axis = 0; axis < 3; ++axis) {
    centre[axis] /= centre[3];
    beside[axis] /= beside[3];
  }
  tolerance = TovanVector(centre).distance_between(TovanVector(beside));
}

void GMeshPicker::process_picks(Tarn::MeshData* db, const NodeHits& node_hits, const ElementHits& element_hits,
                                vtkRenderer* renderer, bool element_filter, GPicker* picker) {
  vtkNew<vtkMatrix4x4> matrix;
  get_projection(renderer, matrix);
  for (const auto& hit : node_hits) {
    const double distance = depth_of(matrix, hit.point) + 0.0;
    if (!element_filter) {
      report(picker, PickedNode::New(hit.handle, db), hit.point, distance, hit.is_exact);
      continue;
    }
    const Elem element = element_on(db, hit.handle);
    if (element == Elem{}) continue;
    report(picker, PickedElement::New(element, db), hit.point, distance, hit.is_exact);
  }
  for (const auto& hit : element_hits) {
    if (element_filter && !has_global_id(db, hit.handle)) continue;
    Tarn::ElementType type = Tarn::None;
    db->get_element_type(hit.handle, &type);
    const double distance = depth_of(matrix, hit.point) + depth_bias(type);
    report(picker, PickedElement::New(hit.handle, db), hit.point, distance, hit.is_exact);
  }
}

void GMeshPicker::process_picks(Tarn::MeshData* db, const std::vector<Node>& nodes, const std::vector<Elem>& elements,
                                vtkRenderer* renderer, vtkMatrix4x4* matrix, bool select_visible_only,
                                GPicker* picker) {
  std::optional<DepthBuffer> depth;
  if (select_visible_only) depth.emplace(renderer, matrix);
  for (const Node node : nodes)
    if (!depth || depth->is_visible(db, node)) report(picker, PickedNode::New(node, db));
  for (const Elem element : elements)
    if (!depth || depth->is_visible(db, element)) report(picker, PickedElement::New(element, db));
}
