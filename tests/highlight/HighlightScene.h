#pragma once

#include "group/GMeshGroup.h"
#include "highlight/GMeshHighlight.h"
#include "highlight/GMeshHighlightProperties.h"
#include "model/GMeshModel.h"
#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "tests/base/Frame.h"
#include "tests/highlight/PickSystemLog.h"
#include "tests/support/NamedMeshes.h"

#include <vtkActor.h>
#include <vtkDataSet.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkProperty.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Nodes = std::vector<Node>;
using Elems = std::vector<Elem>;

/// A highlight that writes down the parts given to it and taken from it, and keeps those that it has.
class RecordingHighlight : public GMeshHighlight {
public:
  using GMeshHighlight::GMeshHighlight;
  using GModel::view_props_;

  struct Change {
    bool added;
    vtkSmartPointer<vtkDataObject> data;
  };

  void add_part(vtkDataObject* data, PropFactory factory) override {
    changes.push_back({true, data});
    if (std::find(parts.begin(), parts.end(), data) == parts.end()) parts.emplace_back(data);
    GMeshHighlight::add_part(data, factory);
  }
  void remove_part(vtkDataObject* data) override {
    changes.push_back({false, data});
    parts.erase(std::remove(parts.begin(), parts.end(), data), parts.end());
    GMeshHighlight::remove_part(data);
  }

  /// "+" for each part added and "-" for each taken away since the last call.
  std::string take_changes() {
    std::string taken;
    for (const Change& each : changes)
      taken += each.added ? '+' : '-';
    changes.clear();
    return taken;
  }

  /// The groups drawn in part `i`, once its data are brought up to date.
  std::vector<GMeshGroup*> groups(std::size_t i) {
    update_parts();
    std::vector<GMeshGroup*> found;
    auto* blocks = vtkMultiBlockDataSet::SafeDownCast(parts.at(i));
    for (unsigned int block = 0; block < blocks->GetNumberOfBlocks(); ++block)
      found.push_back(GMeshGroup::get_group(vtkDataSet::SafeDownCast(blocks->GetBlock(block))));
    return found;
  }

  /// The entities drawn in part `i` by its only group.
  MeshVector set(std::size_t i) {
    const auto found = groups(i);
    EXPECT_EQ(found.size(), 1u);
    return found.empty() || !found[0] ? MeshVector() : found[0]->get_mesh();
  }

  /// The actor of part `i` in a view.
  vtkActor* actor(std::size_t i, GView* view) {
    const PropList& props = view_props_.at(view).at(parts.at(i));
    EXPECT_EQ(props.size(), 1u);
    return props.empty() ? nullptr : vtkActor::SafeDownCast(props[0]);
  }

  std::vector<Change> changes;
  std::vector<vtkSmartPointer<vtkDataObject>> parts; ///< in the order added: edges and nodes of each set
};

/// Records of entities, given up at the end.
class Records {
public:
  Records(const Nodes& nodes, const Elems& elements, Tarn::MeshData* db) {
    for (const Node node : nodes)
      records_.push_back(PickedNode::New(node, db));
    for (const Elem element : elements)
      records_.push_back(PickedElement::New(element, db));
  }
  ~Records() {
    for (auto* each : records_)
      each->Delete();
  }
  Records(const Records&) = delete;
  Records& operator=(const Records&) = delete;

  int count() const { return static_cast<int>(records_.size()); }
  const GPicked::PickedEntity* const* data() const { return records_.data(); }

private:
  std::vector<GPicked::PickedEntity*> records_;
};

/// A row of four quadrilaterals that a model shows in a view, and a highlight over it.
class HighlightScene : public testing::Test {
protected:
  HighlightScene() {
    model.add_mesh(sheet.owner, sheet.mesh, TovanColor(200, 200, 200), 1.0F, false);
    model.update_parts();
  }

  const Elems& quads() const { return sheet.mesh.elements[Tarn::Quad]; }
  MeshVector of_quads(const std::vector<std::size_t>& positions) const {
    MeshVector mesh;
    for (const std::size_t i : positions)
      mesh.elements[Tarn::Quad].push_back(quads()[i]);
    return mesh;
  }
  void notify_picked(const Nodes& nodes, const Elems& elements, bool add) {
    const Records records(nodes, elements, sheet.database.get());
    highlight.notify_picked(records.count(), records.data(), nullptr, add);
  }
  void notify_hovered(Elem element, bool add) {
    const Records records({}, {element}, sheet.database.get());
    highlight.notify_pre_select(records.data()[0], nullptr, add);
  }

  PickSystemLog log;
  OffscreenView view;
  test_support::NamedMesh sheet = test_support::quad_sheet(4, 1);
  GMeshModel model{sheet.database.get()};
  GMeshHighlightProperties looks;
  RecordingHighlight highlight{&model, &looks};
};
