#pragma once

#include "tests/group/GroupFixture.h"

class vtkPolyData;

namespace group_test {

/// One of the five poly data of a group.
struct Derived {
  const char* name;
  vtkPolyData* (GMeshGroup::*get)();
};
constexpr Derived derived[] = {{"tri", &GMeshGroup::get_tri_data},
                               {"wire", &GMeshGroup::get_wire_data},
                               {"edge", &GMeshGroup::get_edge_data},
                               {"node", &GMeshGroup::get_node_data},
                               {"wire node", &GMeshGroup::get_wire_node_data}};

class DerivedData : public GroupFixture {
protected:
  vtkPolyData* get(const Derived& which) { return (group.get()->*which.get)(); }
  /// A mesh with something for each data set to show: nodes, edges, a superelement and a solid.
  void show_everything() {
    test_support::NamedMesh all = test_support::one_hex();
    all.add_element(Tarn::Edge, {0, 6});
    all.add_element(Tarn::OneNode, {3});
    all.add_element(Tarn::Superelement, {0, 1, 2});
    all.mesh.nodes = {all.nodes[5], all.nodes[6]};
    show(std::move(all));
  }
};

} // namespace group_test
