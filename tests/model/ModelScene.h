#pragma once

#include "mesh/MeshVector.h"
#include "model/GMeshModel.h"
#include "reference/tarn/MeshDatabase.h"

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkObject.h>
#include <vtkSmartPointer.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

using Owner = Tarn::SMeshOwnerType*;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Point = std::array<double, 3>;

const TovanColor red(220, 40, 40);
const TovanColor green(40, 180, 60);
const TovanColor blue(50, 80, 220);
const TovanColor white(255, 255, 255);
const TovanColor none;

/// What one call added to the database.
struct Block {
  std::vector<Node> nodes;
  std::vector<Elem> elements;
};

/// Hexahedra of edge length `size`, counts along x, y and z, lowest corner at `origin`; x runs fastest.
Block add_hexes(Tarn::MeshDatabase& db, Owner owner, std::array<int, 3> counts, Point origin, double size = 1.0);
/// Quadrilaterals facing +z, otherwise likewise.
Block add_quads(Tarn::MeshDatabase& db, Owner owner, std::array<int, 2> counts, Point origin, double size = 1.0);
/// Elements of one kind on new nodes, canonical order.
Block add_element(Tarn::MeshDatabase& db, Owner owner, Tarn::ElementType type, const std::vector<Point>& corners);

/// An owner of dimension 2 with one unit quadrilateral, lowest corner at x, y.
struct QuadOwner {
  Owner owner;
  Block block;
  MeshVector mesh;
};
QuadOwner add_quad_owner(Tarn::MeshDatabase& db, double x, double y);

/// Corners and further nodes of one element that fills the unit cube at `at`.
std::vector<Point> element_points(Tarn::ElementType type, int node_count, Point at);

MeshVector mesh_of(Tarn::ElementType type, const std::vector<Elem>& elements);

/// A model that keeps a list of the parts added and removed.
class RecordingModel : public GMeshModel {
public:
  using GMeshModel::GMeshModel;

  struct Added {
    vtkDataObject* data;
    PropFactory factory;
  };

  void add_part(vtkDataObject* data, PropFactory factory) override;
  void remove_part(vtkDataObject* data) override;
  void forget_calls();

  /// The data objects of the k-th data group that added its parts: surface, edges, nodes.
  std::array<vtkDataObject*, 3> parts_of_add(std::size_t k) const;
  std::vector<vtkDataObject*> added_data() const;
  /// The one actor that the view has for the data object.
  vtkActor* actor(GView& view, vtkDataObject* data);

  using GModel::view_props_;
  std::vector<Added> added;
  std::vector<vtkDataObject*> removed;
};

/// Block `i` of a part, null when there is none.
vtkDataObject* block_of(vtkDataObject* part, unsigned int i);
unsigned int block_count(vtkDataObject* part);

/// Writes down the names of objects in the order in which they tell that they were modified.
class ModificationLog {
public:
  ModificationLog();
  ~ModificationLog();
  ModificationLog(const ModificationLog&) = delete;
  ModificationLog& operator=(const ModificationLog&) = delete;

  void watch(vtkObject* object, std::string name);
  std::vector<std::string> names;

private:
  vtkNew<vtkCallbackCommand> command_;
  std::vector<std::pair<vtkSmartPointer<vtkObject>, std::string>> watched_;
};
