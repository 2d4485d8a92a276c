#pragma once

#include "group/EntityColors.h"
#include "group/VolumeGrid.h"
#include "mesh/database/Side.h"
#include "tests/group/GridInspection.h"

#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>

namespace group_test {

/// Side records as a skinner hands them out, each with its nodes somewhere else or all in one block.
class SideList {
public:
  void add(int kind, std::vector<Tarn::Handle<0>> nodes, Tarn::Handle<1> element, int position = 0) {
    nodes_.push_back(std::move(nodes));
    sides_.push_back({kind, static_cast<int>(nodes_.back().size()), nodes_.back().data(), element, position});
  }
  std::vector<Side*> scattered() {
    std::vector<Side*> result;
    for (Side& side : sides_)
      result.push_back(&side);
    return result;
  }
  std::vector<Side*> in_one_block() {
    block_.clear();
    for (const auto& nodes : nodes_)
      block_.insert(block_.end(), nodes.begin(), nodes.end());
    const Tarn::Handle<0>* next = block_.data();
    for (Side& side : sides_) {
      side.nodes = next;
      next += side.node_count;
    }
    return scattered();
  }

private:
  std::deque<std::vector<Tarn::Handle<0>>> nodes_;
  std::deque<Side> sides_;
  std::vector<Tarn::Handle<0>> block_;
};

/// Builds grids of meshes whose database calls are recorded.
class VolumeGrid : public ::testing::Test {
protected:
  vtkSmartPointer<vtkUnstructuredGrid> build(const test_support::NamedMesh& from, const MeshVector& mesh,
                                             const std::vector<Side*>& skin = {}) {
    recorder = std::make_unique<test_support::RecordingMeshData>(*from.database);
    if (spoil) spoil(*recorder);
    return build(mesh, skin);
  }
  vtkSmartPointer<vtkUnstructuredGrid> build(const MeshVector& mesh, const std::vector<Side*>& skin = {}) {
    const EntityColors colors{color_type, single, node_colors, element_colors, vertex_colors};
    return make_volume_grid({recorder.get(), mesh, node_positions, element_positions, colors}, skin, narrow_uses);
  }

  std::unique_ptr<test_support::RecordingMeshData> recorder;
  std::function<void(test_support::RecordingMeshData&)> spoil;
  GMeshGroup::ColorType color_type = GMeshGroup::SingleColor;
  TovanColor single{1, 2, 3, 4};
  std::vector<TovanColor> node_colors;
  std::array<std::vector<TovanColor>, 10> element_colors;
  std::map<Tarn::Handle<0>, TovanColor> vertex_colors;
  const std::vector<int>* node_positions = nullptr;
  const std::vector<int> (*element_positions)[10] = nullptr;
  std::size_t narrow_uses = std::numeric_limits<std::int32_t>::max();
};

/// Two nodes, two edges, one of each point-like kind, and a triangle of the skin, all on the nodes of one chain.
struct Everything {
  Everything() {
    for (int i = 0; i < 7; ++i)
      mesh.add_node(i, 10 * i, 100 * i);
    mesh.add_element(Tarn::Edge, {2, 3});
    mesh.add_element(Tarn::Edge, {3, 1, 5});
    mesh.add_element(Tarn::OneNode, {6});
    mesh.add_element(Tarn::Superelement, {6, 4, 0});
    tri = mesh.add_element(Tarn::Tri, {0, 1, 4});
    drawn = mesh.mesh;
    drawn.elements[Tarn::Tri].clear();
    drawn.nodes = {mesh.nodes[5], mesh.nodes[2]};
    skin.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[4]}, tri);
  }
  test_support::NamedMesh mesh;
  Tarn::Handle<1> tri;
  MeshVector drawn;
  SideList skin;
};

} // namespace group_test
