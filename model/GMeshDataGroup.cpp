#include "model/GMeshDataGroup.h"

#include "group/GMeshGroup.h"

#include <vtkPolyData.h>

namespace {

vtkPolyData* edge_data(GMeshGroup& group, bool wire) { return wire ? group.get_wire_data() : group.get_edge_data(); }

vtkPolyData* node_data(GMeshGroup& group, bool wire) {
  return wire ? group.get_wire_node_data() : group.get_node_data();
}

} // namespace

GMeshDataGroup::GMeshDataGroup(bool wire) : wire_(wire) {
  for (int part = 0; part < 3; ++part)
    data_objects_.push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
}

GMeshDataGroup::~GMeshDataGroup() = default;

GDataGroup* GMeshDataGroup::new_instance() { return new GMeshDataGroup(wire_); }

void GMeshDataGroup::set_wire(bool on) {
  wire_ = on;
  modified();
}

void GMeshDataGroup::do_update() {
  const auto& groups = members();
  vtkMultiBlockDataSet* surfaces = data_objects_[0];
  vtkMultiBlockDataSet* edges = data_objects_[1];
  vtkMultiBlockDataSet* nodes = data_objects_[2];
  const auto count = static_cast<unsigned int>(groups.size());
  // Also with an equal count: it moves the data objects' stamps, without which actors keep their old bounds when only
  // the contents of a block changed.
  for (vtkMultiBlockDataSet* blocks : {surfaces, edges, nodes})
    blocks->SetNumberOfBlocks(count);
  for (unsigned int i = 0; i < count; ++i) {
    auto* group = dynamic_cast<GMeshGroup*>(groups[i]);
    surfaces->SetBlock(i, group ? group->get_tri_data() : nullptr);
    edges->SetBlock(i, group ? edge_data(*group, wire_) : nullptr);
    nodes->SetBlock(i, group ? node_data(*group, wire_) : nullptr);
  }
}
