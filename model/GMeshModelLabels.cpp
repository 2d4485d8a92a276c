// Which ids are shown, and the label part of each mesh. What the labels say is in GMeshLabels.cpp.

#include "model/GMeshModel.h"

#include "group/GMeshGroup.h"
#include "model/GMeshLabels.h"

#include <vtkActor2D.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

// ------------------------------------------------------------------------------------------ flags

void GMeshModel::set_element_label_flag(Tarn::ElementType type, OBUtil::LabelType flag) {
  if (type >= element_label_flags_.size() || flag == element_label_flags_[type]) return;
  element_label_flags_[type] = flag;
  label_flag_changed();
}

OBUtil::LabelType GMeshModel::get_element_label_flag(Tarn::ElementType type) {
  return type < element_label_flags_.size() ? element_label_flags_[type] : OBUtil::NoLabel;
}

void GMeshModel::set_node_label_flag(OBUtil::LabelType flag) {
  if (flag == node_label_flag_) return;
  node_label_flag_ = flag;
  label_flag_changed();
}

OBUtil::LabelType GMeshModel::get_node_label_flag() { return node_label_flag_; }

bool GMeshModel::any_label_flag_on() {
  return node_label_flag_ != OBUtil::NoLabel ||
         std::any_of(element_label_flags_.begin() + Tarn::OneNode, element_label_flags_.end(),
                     [](OBUtil::LabelType flag) { return flag != OBUtil::NoLabel; });
}

vtkTimeStamp* GMeshModel::label_flag_time() { return &label_time_; }

void GMeshModel::label_flag_changed() {
  label_time_.Modified();
  if (any_label_flag_on())
    create_label_objects();
  else
    destroy_label_objects();
}

// ------------------------------------------------------------------------------------------ label parts

void GMeshModel::create_label_objects() {
  for (auto& record : groups_)
    create_label_object(record.second);
}

void GMeshModel::destroy_label_objects() {
  for (auto& record : groups_)
    destroy_label_object(record.second);
}

void GMeshModel::create_label_object(GMeshGraphics& record) {
  if (record.label_data || !record.group) return;
  record.label_data = record.group->get_2d_data();
  add_label_part(record.label_data);
}

void GMeshModel::destroy_label_object(GMeshGraphics& record) {
  if (!record.label_data) return;
  remove_part(record.label_data);
  record.label_data = nullptr;
}

void GMeshModel::add_label_part(vtkDataObject* data) {
  add_part(data, [this](vtkDataObject* labelled, GView* view) { return create_mesh_label_view(labelled, view, this); });
}

// The record's entry is left as it was either way: hosts rely on labels that went with their mesh to stay away.
void GMeshModel::change_label_visibility(GMeshGraphics& record, bool vis) {
  if (record.label_data)
    remove_part(record.label_data);
  else if (vis)
    add_label_part(record.group->get_2d_data());
}

PropList GMeshModel::create_mesh_label_view(vtkDataObject* data, GView*, GMeshModel* model) {
  vtkNew<vtkActor2D> actor;
  vtkNew<GMeshLabels> labels;
  labels->set_model(model);
  labels->SetTextProperty(text_property());
  labels->SetInputDataObject(data);
  actor->SetMapper(labels);
  return {actor};
}
