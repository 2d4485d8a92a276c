#pragma once

#include "tests/group/GridInspection.h"

#include <gtest/gtest.h>

#include <memory>

namespace group_test {

/// A group of its own on a mesh whose database calls are recorded, in a data group that notices changes.
class GroupFixture : public ::testing::Test {
protected:
  /// Starts anew on this mesh.
  void use(test_support::NamedMesh with) {
    data_group.reset();
    group.reset();
    model.reset();
    mesh = std::move(with);
    db = std::make_unique<test_support::RecordingMeshData>(*mesh.database);
    model = std::make_unique<GMeshModel>(db.get());
    group = std::make_unique<OpenGroup>();
    data_group = std::make_unique<CountingDataGroup>();
    data_group->add_entity(group.get());
    data_group->told();
  }
  /// The same, and the group shows the whole mesh.
  void show(test_support::NamedMesh with) {
    use(std::move(with));
    group->set_mesh(mesh.owner, mesh.mesh, model.get());
    data_group->told();
    db->forget_calls();
  }

  test_support::NamedMesh mesh;
  std::unique_ptr<test_support::RecordingMeshData> db;
  std::unique_ptr<GMeshModel> model;
  std::unique_ptr<OpenGroup> group;
  std::unique_ptr<CountingDataGroup> data_group;
};

/// What one operation does to a group's stamps and data groups.
struct Effect {
  bool mesh_time = false;
  bool color_time = false;
  bool told = false;
};

/// Runs the operation and compares what it did.
template <class Operation>
void expect_effect(OpenGroup& group, CountingDataGroup& data_group, Effect expected, Operation operation) {
  data_group.told();
  const vtkMTimeType mesh_time = group.MeshTime().GetMTime();
  const vtkMTimeType color_time = group.ColorTime().GetMTime();
  operation();
  EXPECT_EQ(group.MeshTime().GetMTime() > mesh_time, expected.mesh_time) << "mesh time";
  EXPECT_EQ(group.ColorTime().GetMTime() > color_time, expected.color_time) << "colour time";
  EXPECT_EQ(data_group.told(), expected.told) << "data groups told";
}

} // namespace group_test
