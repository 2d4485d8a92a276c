// What models have in common: keys, mappers, properties.

#include "platform/base/GModel.h"

#include "platform/base/GDataGroupEntity.h"
#include "reference/base/GroupLinks.h"
#include "reference/base/view/CompositeMapper.h"

#include <vtkCompositeDataSet.h>
#include <vtkDataObject.h>
#include <vtkDataSetMapper.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkInformationKeyLookup.h>
#include <vtkInformationObjectBaseKey.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkTextProperty.h>

namespace {

// Keys belong to VTK, which deletes them at exit: they are of VTK's own classes, made when first asked for, and found
// again when this library was unloaded and comes back.
template <class Key> Key* find_or_make_key(const char* name) {
  constexpr const char* location = "GModel";
  if (auto* key = dynamic_cast<Key*>(vtkInformationKeyLookup::Find(name, location))) return key;
  return Key::MakeKey(name, location);
}

vtkInformationObjectBaseKey* back_pointer_key() {
  static auto* const key = find_or_make_key<vtkInformationObjectBaseKey>("BACK_POINTER");
  return key;
}

vtkSmartPointer<vtkProperty> make_side_property(double red, double green, double blue) {
  auto property = vtkSmartPointer<vtkProperty>::New();
  property->SetColor(red, green, blue);
  property->SetInterpolationToFlat();
  return property;
}

vtkSmartPointer<vtkProperty> make_curve_property() {
  auto property = vtkSmartPointer<vtkProperty>::New();
  property->SetColor(0.1, 0.1, 0.1);
  property->LightingOff();
  property->SetAmbient(1.0);
  property->SetDiffuse(0.0);
  property->SetSpecular(0.0);
  property->SetPointSize(6.0F);
  return property;
}

vtkSmartPointer<vtkTextProperty> make_text_property() {
  auto property = vtkSmartPointer<vtkTextProperty>::New();
  property->SetFontFamilyToArial();
  property->SetFontSize(10);
  property->SetColor(0.0, 0.0, 0.0);
  property->SetJustificationToCentered();
  property->SetVerticalJustificationToCentered();
  return property;
}

} // namespace

bool GModel::mNormalDirectedLighting = false;

void GModel::set_back_pointer(vtkDataObject* data, GDataGroupEntity* entity) {
  if (!data) return;
  if (!entity) {
    data->GetInformation()->Remove(back_pointer_key());
    return;
  }
  auto& mark = entity->d->mark;
  if (!mark) {
    mark = vtkSmartPointer<vtkVoidArray>::New();
    mark->SetNumberOfPointers(1);
    *mark->GetPointer(0) = entity;
  }
  back_pointer_key()->Set(data->GetInformation(), mark);
}

GDataGroupEntity* GModel::get_back_pointer(vtkDataObject* data) {
  if (!data) return nullptr;
  auto* mark = vtkVoidArray::SafeDownCast(back_pointer_key()->Get(data->GetInformation()));
  return mark ? static_cast<GDataGroupEntity*>(*mark->GetPointer(0)) : nullptr;
}

vtkSmartPointer<vtkMapper> GModel::create_mapper(vtkDataObject* data, GView*) {
  vtkSmartPointer<vtkMapper> mapper;
  if (vtkCompositeDataSet::SafeDownCast(data))
    mapper = make_composite_mapper();
  else if (vtkPolyData::SafeDownCast(data) || !data)
    mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
  else
    mapper = vtkSmartPointer<vtkDataSetMapper>::New();
  if (data) mapper->SetInputDataObject(data);
  return mapper;
}

void GModel::set_polygon_offset(vtkMapper* mapper, double factor, double units) {
  if (mapper) mapper->SetRelativeCoincidentTopologyPolygonOffsetParameters(factor, units);
}

vtkInformationIntegerKey* GModel::RENDER_MODE() {
  static auto* const key = find_or_make_key<vtkInformationIntegerKey>("RENDER_MODE");
  return key;
}

vtkProperty* GModel::surface_normal_front_property() {
  static const auto property = make_side_property(0.40, 0.60, 0.82);
  return property;
}

vtkProperty* GModel::surface_normal_back_property() {
  static const auto property = make_side_property(0.88, 0.50, 0.22);
  return property;
}

vtkProperty* GModel::curve_normal_property() {
  static const auto property = make_curve_property();
  return property;
}

vtkTextProperty* GModel::text_property() {
  static const auto property = make_text_property();
  return property;
}
