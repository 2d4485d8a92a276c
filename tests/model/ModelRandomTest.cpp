// Operations on a model in any order: every mesh in view is drawn once, in every view, and nothing else is.

#include "ModelScene.h"
#include "Screen.h"
#include "group/GMeshGroup.h"

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// A model that knows its parts.
class CountedModel : public GMeshModel {
public:
  using GMeshModel::GMeshModel;
  void add_part(vtkDataObject* data, PropFactory factory) override {
    parts.insert(data);
    GMeshModel::add_part(data, std::move(factory));
  }
  void remove_part(vtkDataObject* data) override {
    parts.erase(data);
    GMeshModel::remove_part(data);
  }
  void clear() override {
    GMeshModel::clear();
    parts.clear();
  }
  std::set<vtkDataObject*> parts;
};

/// What a model is expected to hold, beside the model.
class Walk {
public:
  explicit Walk(unsigned seed) : random_(seed) {
    owners_.push_back(nullptr);
    for (int i = 0; i < 4; ++i) {
      quads_.push_back(add_quads(db_, db_.add_owner("q", 2), {3, 1}, {0, 2.0 * i, 0}));
      Owner owner = nullptr;
      db_.get_element_owners(1, &quads_.back().elements[0], &owner);
      owners_.push_back(owner);
    }
    plane_->SetOrigin(1.5, 0, 0);
    plane_->SetNormal(1, 0, 0);
  }

  void step();
  void check();
  std::string last;
  std::size_t shown_once = 0;

private:
  struct Record {
    Owner owner;
    GMeshGroup* group;
    bool in_view;
  };

  int pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool flip() { return pick(2) == 0; }
  Owner any_owner() { return owners_[static_cast<std::size_t>(pick(5))]; }
  MeshVector any_mesh() {
    MeshVector mesh;
    const Block& block = quads_[static_cast<std::size_t>(pick(4))];
    for (Elem element : block.elements)
      if (flip()) mesh.elements[Tarn::Quad].push_back(element);
    for (Node node : block.nodes)
      if (pick(8) == 0) mesh.nodes.push_back(node);
    mesh.sort_unique();
    return mesh;
  }
  Record* first(Owner owner) {
    const auto found =
        std::find_if(records_.begin(), records_.end(), [owner](const Record& each) { return each.owner == owner; });
    return found == records_.end() ? nullptr : &*found;
  }
  void take_out(Record* record) { records_.erase(records_.begin() + (record - records_.data())); }

  void add(Owner owner, const MeshVector& mesh);
  void remove(Owner owner, const MeshVector& mesh);
  void change_looks(Owner owner);
  void change_views();
  std::multiset<GMeshGroup*> drawn();

  std::mt19937 random_;
  Tarn::MeshDatabase db_;
  std::vector<Owner> owners_;
  std::vector<Block> quads_;
  vtkNew<vtkPlane> plane_;
  CountedModel model_{&db_};
  std::vector<Record> records_; ///< of one owner in order of adding
  std::vector<std::unique_ptr<Screen>> screens_;
  bool hooked_ = true;
};

// By their surfaces.
std::multiset<GMeshGroup*> Walk::drawn() {
  std::multiset<GMeshGroup*> groups;
  for (vtkDataObject* data : model_.parts) {
    if (!vtkMultiBlockDataSet::SafeDownCast(data)) continue; // labels
    for (unsigned i = 0; i < block_count(data); ++i) {
      GMeshGroup* group = GMeshGroup::get_group(vtkDataSet::SafeDownCast(block_of(data, i)));
      if (group && group->get_tri_data() == block_of(data, i)) groups.insert(group);
    }
  }
  return groups;
}

void Walk::add(Owner owner, const MeshVector& mesh) {
  const auto before = drawn();
  const bool unique = pick(3) == 0;
  Record* const known = first(owner);
  if (unique)
    model_.add_mesh_unique(mesh, owner);
  else if (flip())
    model_.add_mesh(owner, mesh, red, flip() ? 1.0f : 0.5f, flip());
  else
    model_.add_mesh(owner, mesh, red, {}, {}, {{quads_[0].nodes[0], blue}}, 1.0f);
  if (mesh.empty()) return;
  if (unique && known) {
    known->in_view = true;
    return;
  }
  model_.update_parts();
  GMeshGroup* added = nullptr;
  for (GMeshGroup* group : drawn())
    if (std::none_of(records_.begin(), records_.end(), [&](const Record& each) { return each.group == group; }))
      added = group;
  ASSERT_NE(added, nullptr);
  records_.push_back({owner, added, true});
}

void Walk::remove(Owner owner, const MeshVector& mesh) {
  if (flip()) {
    model_.remove_mesh(owner);
    if (Record* record = first(owner)) take_out(record);
    return;
  }
  bool expected = false;
  std::vector<Record> left;
  for (const Record& record : records_) {
    bool stays = true;
    if (record.owner == owner) {
      MeshVector rest = record.group->get_mesh();
      const bool removed = rest.remove(mesh);
      expected = expected || removed;
      stays = !removed || !rest.empty();
    }
    if (stays) left.push_back(record);
  }
  EXPECT_EQ(model_.remove_mesh(owner, mesh), expected);
  records_ = left;
}

void Walk::change_looks(Owner owner) {
  switch (pick(11)) {
  case 0: {
    const bool on = flip();
    Record* record = first(owner);
    if (record && model_.get_visibility(owner) != on) record->in_view = on;
    return model_.set_visibility(owner, on);
  }
  case 1:
    return model_.set_node_vis(owner, flip());
  case 2:
    return model_.reset_entity_visibility();
  case 3:
    return model_.set_color(owner, green);
  case 4:
    return model_.set_render_mode(static_cast<OBUtil::RenderMode>(pick(7)));
  case 5:
    return model_.set_edge_vis(flip());
  case 6:
    return model_.set_node_vis(flip());
  case 7:
    return model_.set_line_color(flip() ? none : green);
  case 8:
    return model_.set_clipping_plane(flip() ? plane_.Get() : nullptr);
  case 9:
    return model_.set_node_label_flag(flip() ? OBUtil::LocalId : OBUtil::NoLabel);
  default:
    return model_.set_element_label_flag(Tarn::Quad, flip() ? OBUtil::LocalId : OBUtil::NoLabel);
  }
}

void Walk::change_views() {
  switch (pick(4)) {
  case 0:
    if (screens_.size() < 3) screens_.push_back(std::make_unique<Screen>());
    return;
  case 1:
    if (!screens_.empty()) screens_.erase(screens_.begin() + pick(static_cast<int>(screens_.size())));
    return;
  case 2:
    hooked_ = flip();
    return hooked_ ? model_.hook_to_views() : model_.unhook_from_views();
  default:
    if (!screens_.empty()) screens_.back()->view().render();
  }
}

void Walk::step() {
  const Owner owner = any_owner();
  const MeshVector mesh = any_mesh();
  switch (pick(10)) {
  case 0:
  case 1:
    last = "add";
    return add(owner, mesh);
  case 2:
    last = "remove";
    return remove(owner, mesh);
  case 3:
    last = "modified";
    return model_.update_mesh_modified(owner);
  case 4:
    last = "transformed";
    return model_.update_mesh_transformed(owner);
  case 5:
    last = "views";
    return change_views();
  case 6:
    if (pick(20) != 0) return;
    last = "clear";
    records_.clear();
    return model_.clear();
  default:
    last = "looks";
    return change_looks(owner);
  }
}

void Walk::check() {
  model_.update_parts();
  std::multiset<GMeshGroup*> expected;
  for (const Record& record : records_)
    if (record.in_view) expected.insert(record.group);
  ASSERT_EQ(drawn(), expected);
  shown_once += expected.size();
  for (const Owner owner : owners_)
    ASSERT_EQ(model_.get_mesh(owner), first(owner) ? first(owner)->group : nullptr);
  for (const auto& screen : screens_) {
    const auto props = screen->view().renderer()->GetViewProps()->GetNumberOfItems();
    ASSERT_EQ(static_cast<std::size_t>(props), hooked_ ? model_.parts.size() : 0u);
  }
}

TEST(ModelRandom, GivenOperationsInAnyOrder_WhenUpdated_ThenEveryMeshInViewIsDrawnOnceInEveryView) {
  for (unsigned seed = 1; seed <= 3; ++seed) {
    Walk walk(seed);
    for (int i = 0; i < 400; ++i) {
      walk.step();
      ASSERT_NO_FATAL_FAILURE(walk.check()) << "seed " << seed << " step " << i << " after " << walk.last;
    }
    EXPECT_GT(walk.shown_once, 300u);
  }
}

} // namespace
