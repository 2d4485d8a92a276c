// One view, props made when a part is added, no render modes.
#include "platform/base/GDataGroup.h"
#include "platform/base/GDataGroupEntity.h"
#include "platform/base/GExtractEdges.h"
#include "platform/base/GLabelMapper.h"
#include "platform/base/GModel.h"
#include "platform/base/GView.h"
#include "platform/util/TovanColor.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"

#include <vtkActor2D.h>
#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkDataObject.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkInformationVector.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <set>

// ------------------------------------------------------------------------------------------------ views

struct GView::Private {
  vtkSmartPointer<vtkRenderWindow> window;
  vtkSmartPointer<vtkRenderer> renderer = vtkSmartPointer<vtkRenderer>::New();
};

namespace {

std::vector<GView*>& open_views() {
  static std::vector<GView*> views;
  return views;
}

std::vector<GModel*>& models() {
  static std::vector<GModel*> all;
  return all;
}

} // namespace

GView::GView(vtkRenderWindow* window) : d(new Private) {
  d->window = window ? vtkSmartPointer<vtkRenderWindow>(window) : vtkSmartPointer<vtkRenderWindow>::New();
  d->window->AddRenderer(d->renderer);
  open_views().push_back(this);
}

GView::~GView() { open_views().clear(); }
vtkRenderer* GView::renderer() const { return d->renderer; }
vtkRenderWindow* GView::window() const { return d->window; }
const std::vector<GView*>& GView::views() { return open_views(); }

void GView::render() {
  for (GModel* model : models()) {
    model->update_parts();
    model->Render(this);
  }
  d->window->Render();
}

// ------------------------------------------------------------------------------------------------ data groups

struct GDataGroup::Private {
  std::vector<GDataGroupEntity*> members;
  bool is_modified = false;
};

struct GDataGroupEntity::Private {
  std::set<GDataGroup*> groups;
  std::set<vtkDataObject*> data;
};

namespace {

std::map<vtkDataObject*, GDataGroupEntity*>& back_pointers() {
  static std::map<vtkDataObject*, GDataGroupEntity*> all;
  return all;
}

} // namespace

GDataGroupEntity::GDataGroupEntity() : d(new Private) {}

GDataGroupEntity::~GDataGroupEntity() {
  const auto groups = d->groups;
  for (GDataGroup* group : groups)
    group->remove_entity(this);
  for (vtkDataObject* data : d->data)
    back_pointers().erase(data);
}

void GDataGroupEntity::modify_owning_groups() {
  for (GDataGroup* group : d->groups)
    group->modified();
}

GDataGroup::GDataGroup() : d(new Private) {}

GDataGroup::~GDataGroup() {
  for (GDataGroupEntity* member : d->members)
    member->d->groups.erase(this);
}

BlockList GDataGroup::add_entity(GDataGroupEntity* entity) {
  if (!entity || !entity->d->groups.insert(this).second) return {};
  d->members.push_back(entity);
  modified();
  return d->members.size() == 1 ? data_objects_ : BlockList();
}

BlockList GDataGroup::remove_entity(GDataGroupEntity* entity) {
  if (!entity || entity->d->groups.erase(this) == 0) return {};
  d->members.erase(std::find(d->members.begin(), d->members.end(), entity));
  modified();
  return d->members.empty() ? data_objects_ : BlockList();
}

BlockList GDataGroup::all_blocks() { return data_objects_; }
std::vector<GDataGroup*> GDataGroup::all_groups() { return {this}; }
void GDataGroup::modified() { d->is_modified = true; }
const std::vector<GDataGroupEntity*>& GDataGroup::members() const { return d->members; }

void GDataGroup::update_all(std::vector<GDataGroup*>* updated) {
  if (!d->is_modified) return;
  d->is_modified = false;
  do_update();
  if (updated) updated->push_back(this);
}

// ------------------------------------------------------------------------------------------------ models

struct GModel::Private {
  OBUtil::RenderMode mode = OBUtil::Shaded;
  std::vector<vtkSmartPointer<vtkDataObject>> parts;
};

bool GModel::mNormalDirectedLighting = false;

GModel::GModel() : d(new Private) { models().push_back(this); }

GModel::~GModel() {
  GModel::clear();
  models().erase(std::find(models().begin(), models().end(), this));
}

void GModel::set_render_mode(OBUtil::RenderMode mode) { d->mode = mode; }
OBUtil::RenderMode GModel::get_render_mode() { return d->mode; }

void GModel::add_part(vtkDataObject* data, PropFactory factory) {
  if (std::find(d->parts.begin(), d->parts.end(), data) != d->parts.end()) return;
  d->parts.emplace_back(data);
  for (GView* view : GView::views()) {
    view_props_[view][data] = factory(data, view);
    for (const auto& prop : view_props_[view][data])
      view->renderer()->AddViewProp(prop);
  }
}

void GModel::remove_part(vtkDataObject* data) {
  for (auto& [view, props] : view_props_) {
    for (const auto& prop : props[data])
      view->renderer()->RemoveViewProp(prop);
    props.erase(data);
  }
  d->parts.erase(std::remove(d->parts.begin(), d->parts.end(), data), d->parts.end());
}

void GModel::add_widget(vtkProp* widget) {
  for (GView* view : GView::views())
    view->renderer()->AddViewProp(widget);
}

void GModel::remove_widget(vtkProp* widget) {
  for (GView* view : GView::views())
    view->renderer()->RemoveViewProp(widget);
}

void GModel::update_parts() {}
void GModel::Render(GView*) {}
void GModel::unhook_from_views() {}
void GModel::hook_to_views() {}

void GModel::clear() {
  const auto parts = d->parts;
  for (const auto& part : parts)
    GModel::remove_part(part);
}

void GModel::set_back_pointer(vtkDataObject* data, GDataGroupEntity* entity) {
  if (entity) {
    back_pointers()[data] = entity;
    entity->d->data.insert(data);
  } else {
    back_pointers().erase(data);
  }
}

GDataGroupEntity* GModel::get_back_pointer(vtkDataObject* data) {
  const auto found = back_pointers().find(data);
  return found == back_pointers().end() ? nullptr : found->second;
}

vtkSmartPointer<vtkMapper> GModel::create_mapper(vtkDataObject* data, GView*) {
  const auto mapper = data->IsA("vtkPolyData")
                          ? vtkSmartPointer<vtkPolyDataMapper>::New()
                          : vtkSmartPointer<vtkPolyDataMapper>(vtkSmartPointer<vtkCompositePolyDataMapper2>::New());
  mapper->SetInputDataObject(data);
  return mapper;
}

void GModel::set_polygon_offset(vtkMapper* mapper, double factor, double units) {
  mapper->SetRelativeCoincidentTopologyPolygonOffsetParameters(factor, units);
}

void GModel::set_datagroup_attributes(GDataGroup* group, int part, ViewProps& props,
                                      std::function<void(GView*, PropList&)> change) {
  for (auto& [view, by_data] : props) {
    const auto found = by_data.find(group->all_blocks().at(part));
    if (found != by_data.end()) change(view, found->second);
  }
}

vtkInformationIntegerKey* GModel::RENDER_MODE() {
  static vtkInformationIntegerKey* key = new vtkInformationIntegerKey("RENDER_MODE", "GModel");
  return key;
}

namespace {

vtkProperty* one_property() {
  static const auto property = vtkSmartPointer<vtkProperty>::New();
  return property;
}

} // namespace

vtkProperty* GModel::surface_normal_front_property() { return one_property(); }
vtkProperty* GModel::surface_normal_back_property() { return one_property(); }
vtkProperty* GModel::curve_normal_property() { return one_property(); }

vtkTextProperty* GModel::text_property() {
  static const auto property = vtkSmartPointer<vtkTextProperty>::New();
  return property;
}

// ------------------------------------------------------------------------------------------------ labels

struct GLabelMapper::Private {
  struct Label {
    TovanVector position;
    vtkSmartPointer<vtkTextMapper> text;
  };
  std::vector<Label> labels;
  vtkSmartPointer<vtkTextProperty> style;
};

vtkStandardNewMacro(GLabelMapper)

GLabelMapper::GLabelMapper() : d(new Private) {}
GLabelMapper::~GLabelMapper() = default;
void GLabelMapper::set_model(GModel*) {}
void GLabelMapper::SetTextProperty(vtkTextProperty* property) { d->style = property; }
vtkTextProperty* GLabelMapper::GetTextProperty() { return d->style; }
void GLabelMapper::clear() { d->labels.clear(); }

void GLabelMapper::add_point(const TovanVector& position, const TovanString& text, const TovanColor& color, int) {
  d->labels.push_back({position, vtkSmartPointer<vtkTextMapper>::New()});
  d->labels.back().text->SetInput(text.c_str());
  double rgb[3];
  color.to_rgb(rgb);
  d->labels.back().text->GetTextProperty()->SetColor(rgb);
}

void GLabelMapper::RenderOverlay(vtkViewport* viewport, vtkActor2D*) {
  for (const Private::Label& label : d->labels) {
    vtkNew<vtkActor2D> actor;
    actor->SetMapper(label.text);
    actor->GetPositionCoordinate()->SetCoordinateSystemToWorld();
    actor->GetPositionCoordinate()->SetValue(label.position.x, label.position.y, label.position.z);
    actor->RenderOverlay(viewport);
  }
}

void GLabelMapper::ReleaseGraphicsResources(vtkWindow* window) {
  for (const Private::Label& label : d->labels)
    label.text->ReleaseGraphicsResources(window);
}

int GLabelMapper::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
  return 1;
}

// ------------------------------------------------------------------------------------------------ edges

vtkStandardNewMacro(GExtractEdges)

GExtractEdges::GExtractEdges() = default;
GExtractEdges::~GExtractEdges() = default;
void GExtractEdges::pass_lines(bool on) { pass_lines_ = on; }
void GExtractEdges::pass_vertices(bool on) { pass_vertices_ = on; }

int GExtractEdges::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataSet");
  return 1;
}

int GExtractEdges::RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* output) {
  vtkDataSet* in = vtkDataSet::GetData(inputs[0]);
  vtkPolyData* out = vtkPolyData::GetData(output);
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> lines;
  vtkNew<vtkIdList> cell;
  std::set<std::pair<vtkIdType, vtkIdType>> seen;
  for (vtkIdType p = 0; p < in->GetNumberOfPoints(); ++p)
    points->InsertNextPoint(in->GetPoint(p));
  out->GetPointData()->ShallowCopy(in->GetPointData());
  out->GetCellData()->CopyAllocate(in->GetCellData());
  for (vtkIdType c = 0; c < in->GetNumberOfCells(); ++c) {
    in->GetCellPoints(c, cell);
    const vtkIdType size = in->GetCell(c)->GetCellDimension() == 2 ? cell->GetNumberOfIds() : 0;
    for (vtkIdType i = 0; i < size; ++i) {
      const vtkIdType ends[] = {cell->GetId(i), cell->GetId((i + 1) % size)};
      if (!seen.insert(std::minmax(ends[0], ends[1])).second) continue;
      out->GetCellData()->CopyData(in->GetCellData(), c, lines->InsertNextCell(2, ends));
    }
  }
  out->SetPoints(points);
  out->SetLines(lines);
  return 1;
}
