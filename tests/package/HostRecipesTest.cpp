// The recipes of docs/host-guide.md, each with what goes wrong without it.
#include <orbel_mesh/group/GMeshGroup.h>
#include <orbel_mesh/highlight/GMeshHighlight.h>
#include <orbel_mesh/highlight/GMeshHighlightProperties.h>
#include <orbel_mesh/model/GMeshModel.h>
#include <orbel_mesh/pick/GMeshPicker.h>
#include <orbel_mesh/platform/base/GPickerBase.h>
#include <orbel_mesh/platform/base/GView.h>
#include <orbel_mesh/platform/base/PickedEntity.h>
#include <orbel_mesh/platform/util/TovanColorTable.h>
#include <orbel_mesh/reference/tarn/MeshDatabase.h>

#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <map>

namespace {

using Rgb = std::array<unsigned char, 3>;

const TovanColor red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255);

// What a view would draw: the surfaces that the model handed out as parts, by the number of cells in all blocks.
class SeenModel : public GMeshModel {
public:
  using GMeshModel::GMeshModel;

  void add_part(vtkDataObject* data, PropFactory factory) override {
    parts_[data] = data;
    GMeshModel::add_part(data, factory);
  }

  void remove_part(vtkDataObject* data) override {
    parts_.erase(data);
    GMeshModel::remove_part(data);
  }

  // All polygons that a frame would show now.
  vtkIdType shown_faces() {
    update_parts();
    vtkIdType faces = 0;
    for (const auto& [key, part] : parts_) {
      auto* blocks = vtkMultiBlockDataSet::SafeDownCast(part);
      for (unsigned b = 0; blocks && b < blocks->GetNumberOfBlocks(); ++b)
        if (auto* surface = vtkPolyData::SafeDownCast(blocks->GetBlock(b))) faces += surface->GetNumberOfPolys();
    }
    return faces;
  }

  // Whether a frame would show the labels of the owner's mesh.
  bool shows_labels_of(Tarn::SMeshOwnerType* owner) { return parts_.count(get_mesh(owner)->get_2d_data()) == 1; }

private:
  std::map<vtkDataObject*, vtkSmartPointer<vtkDataObject>> parts_;
};

// Three unit cubes in a row along x, ten apart, shown in red for one owner.
class HostRecipes : public ::testing::Test {
protected:
  HostRecipes() {
    owner_ = database_.add_owner("row", 3);
    for (int cube = 0; cube < 3; ++cube) {
      const double x = 10 * cube;
      const double xyz[] = {x, 0, 0, x + 1, 0, 0, x + 1, 1, 0, x, 1, 0, x, 0, 1, x + 1, 0, 1, x + 1, 1, 1, x, 1, 1};
      Tarn::Handle<0> corners[8];
      corners[0] = database_.add_nodes(8, xyz);
      for (int i = 1; i < 8; ++i)
        corners[i] = Tarn::Handle<0>{corners[0].value + i};
      database_.add_elements(Tarn::Hex, 8, 1, corners, nullptr, owner_);
    }
    MeshVector mesh;
    model_.get_mesh_to_draw(owner_, mesh);
    model_.add_mesh(owner_, mesh, red, 1, false);
    EXPECT_EQ(model_.shown_faces(), 18);
  }

  GMeshGroup& group() { return *model_.get_mesh(owner_); }

  Rgb color_of_face(vtkIdType face) {
    auto* colors = vtkUnsignedCharArray::SafeDownCast(group().get_2d_data()->GetCellData()->GetArray("Color"));
    const unsigned char* at = colors->GetPointer(4 * face);
    return {at[0], at[1], at[2]};
  }

  std::array<std::vector<TovanColor>, 10> three_colors() const {
    std::array<std::vector<TovanColor>, 10> colors;
    colors[Tarn::Hex] = {red, green, blue};
    return colors;
  }

  Tarn::MeshDatabase database_;
  Tarn::SMeshOwnerType* owner_;
  SeenModel model_{&database_};
};

TEST_F(HostRecipes, GivenAClippingPlane_WhenMovedAndSetAgain_ThenTheFrameShowsIt) {
  vtkNew<vtkPlane> plane;
  plane->SetNormal(1, 0, 0);
  plane->SetOrigin(5, 0, 0);
  model_.set_clipping_plane(plane);
  EXPECT_EQ(model_.shown_faces(), 12);

  plane->SetOrigin(15, 0, 0);
  EXPECT_EQ(model_.shown_faces(), 12) << "moving it in place tells nobody";
  model_.set_clipping_plane(plane);
  EXPECT_EQ(model_.shown_faces(), 6);

  model_.set_clipping_plane(nullptr);
  EXPECT_EQ(model_.shown_faces(), 18);
}

TEST_F(HostRecipes, GivenAShownMesh_WhenShrunkAndReported_ThenItIsDrawnShrunk) {
  group().set_shrink_factor(0.5f);
  EXPECT_DOUBLE_EQ(group().get_2d_data()->GetBounds()[0], 0) << "the factor alone changes nothing";
  model_.update_mesh_transformed(owner_);
  EXPECT_DOUBLE_EQ(group().get_2d_data()->GetBounds()[0], 0.25);
}

TEST_F(HostRecipes, GivenAShownMesh_WhenColoredAndReported_ThenEachElementHasItsColor) {
  ASSERT_EQ(color_of_face(0), (Rgb{255, 0, 0}));
  group().set_cell_color_array({}, three_colors());
  model_.update_mesh_transformed(owner_);

  std::map<Rgb, int> faces;
  for (vtkIdType face = 0; face < 18; ++face)
    ++faces[color_of_face(face)];
  EXPECT_EQ(faces, (std::map<Rgb, int>{{{255, 0, 0}, 6}, {{0, 255, 0}, 6}, {{0, 0, 255}, 6}}));
}

TEST_F(HostRecipes, GivenColorLists_WhenRemovedAndAdded_ThenTheMeshHasASingleColor) {
  group().set_cell_color_array({}, three_colors());
  model_.set_color(owner_, green);
  EXPECT_EQ(group().get_color_type(), GMeshGroup::CellColors) << "setting a color is no way back";

  const MeshVector mesh = group().get_mesh();
  model_.remove_mesh(owner_);
  model_.add_mesh(owner_, mesh, green, 1, false);
  EXPECT_EQ(group().get_color_type(), GMeshGroup::SingleColor);
  EXPECT_EQ(model_.shown_faces(), 18);
  for (vtkIdType face = 0; face < 18; ++face)
    EXPECT_EQ(color_of_face(face), (Rgb{0, 255, 0}));
}

TEST_F(HostRecipes, GivenAHiddenMesh_WhenSetVisible_ThenItIsDrawnAgain) {
  model_.set_visibility(owner_, false);
  EXPECT_EQ(model_.shown_faces(), 0);
  model_.set_visibility(owner_, true);
  EXPECT_EQ(model_.shown_faces(), 18);
}

TEST_F(HostRecipes, GivenAHiddenMesh_WhenVisibilityIsReset_ThenOnlyHidingAndShowingBringsItBack) {
  model_.set_visibility(owner_, false);
  model_.reset_entity_visibility();
  EXPECT_TRUE(model_.get_visibility(owner_));
  EXPECT_EQ(model_.shown_faces(), 0) << "marked as visible, and still not in the views";
  model_.set_visibility(owner_, true);
  EXPECT_EQ(model_.shown_faces(), 0) << "it is marked already";
  model_.set_visibility(owner_, false);
  model_.set_visibility(owner_, true);
  EXPECT_EQ(model_.shown_faces(), 18);
}

TEST_F(HostRecipes, GivenLabelsOn_WhenAMeshIsHiddenAndShown_ThenItsLabelsComeBackWithTheFlagsAlone) {
  const auto other = database_.add_owner("other", 3);
  model_.add_mesh(other, group().get_mesh(), green, 1, false);
  model_.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
  model_.set_visibility(owner_, false);
  EXPECT_FALSE(model_.shows_labels_of(owner_));
  model_.set_visibility(owner_, true);
  EXPECT_FALSE(model_.shows_labels_of(owner_)) << "they stay away";
  model_.set_visibility(other, false);

  // Flags off, all shown, flags on, the hidden ones hidden again: visible meshes have labels, and no others.
  model_.set_element_label_flag(Tarn::Hex, OBUtil::NoLabel);
  model_.set_visibility(other, true);
  model_.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
  model_.set_visibility(other, false);
  EXPECT_TRUE(model_.shows_labels_of(owner_));
  EXPECT_FALSE(model_.shows_labels_of(other));
}

TEST_F(HostRecipes, GivenAHiddenMesh_WhenFlagsGoOn_ThenItIsLabelledThoughHidden) {
  model_.set_visibility(owner_, false);
  model_.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
  EXPECT_TRUE(model_.shows_labels_of(owner_)) << "which is why the recipe shows and hides";
}

TEST_F(HostRecipes, GivenMovedNodes_WhenReported_ThenTheMeshIsDrawnWhereTheyAre) {
  const Tarn::Handle<0> node = database_.nodes().front();
  const double away[] = {-5, 0, 0};
  database_.move_nodes(1, &node, away);
  EXPECT_DOUBLE_EQ(group().get_2d_data()->GetBounds()[0], 0) << "the library keeps no watch on the database";
  model_.update_mesh_transformed(owner_);
  EXPECT_DOUBLE_EQ(group().get_2d_data()->GetBounds()[0], -5);
}

TEST_F(HostRecipes, GivenDeletedElements_WhenReported_ThenTheRestIsDrawn) {
  const Tarn::Handle<1> element = database_.elements(Tarn::Hex)[1];
  database_.delete_elements(1, &element);
  EXPECT_EQ(model_.shown_faces(), 18);
  model_.update_mesh_modified(owner_);
  EXPECT_EQ(model_.shown_faces(), 12);
}

TEST_F(HostRecipes, GivenADeletedOwner_WhenRemoved_ThenNothingIsDrawn) {
  database_.delete_owner(owner_);
  model_.remove_mesh(owner_);
  EXPECT_EQ(model_.get_mesh(owner_), nullptr);
  EXPECT_EQ(model_.shown_faces(), 0);
}

// The three cubes seen from the front, and highlights in the colour table's colour.
class HighlightRecipes : public HostRecipes {
protected:
  HighlightRecipes() : highlight_(&model_, &look_) {
    window_->OffScreenRenderingOn();
    window_->SetSize(300, 300);
    view_ = std::make_unique<GView>(window_);
    view_->render();
    view_->renderer()->ResetCamera();
    view_->render();
    EXPECT_EQ(highlighted_pixels(), 0);
  }

  int highlighted_pixels() {
    const TovanColor color = TovanColorTable::get_highlight_color();
    vtkNew<vtkUnsignedCharArray> pixels;
    window_->GetPixelData(0, 0, 299, 299, 1, pixels);
    int count = 0;
    for (vtkIdType p = 0; p < pixels->GetNumberOfTuples(); ++p) {
      const unsigned char* at = pixels->GetPointer(3 * p);
      count += Rgb{at[0], at[1], at[2]} == Rgb{color.r, color.g, color.b};
    }
    return count;
  }

  vtkNew<vtkRenderWindow> window_;
  std::unique_ptr<GView> view_;
  GMeshHighlightProperties look_;
  GMeshHighlight highlight_;
};

TEST_F(HighlightRecipes, GivenAPickerAndAnObservingHighlight_WhenPicked_ThenTheElementIsToldAndDrawn) {
  GMeshPicker picker;
  highlight_.observe_selections(true);
  GPickerBase::set_filter({GMeshPicker::gHexType});
  EXPECT_TRUE(GPickerBase::pick(view_.get(), 150, 150));
  ASSERT_EQ(GPickerBase::picked().size(), 1U);
  EXPECT_STREQ(GPickerBase::picked()[0].entity()->type(), "Hex");
  EXPECT_EQ(GPickerBase::picked()[0].entity()->id(), 2);
  view_->render();
  EXPECT_GT(highlighted_pixels(), 20);
  EXPECT_FALSE(GPickerBase::pick(view_.get(), 150, 290));
  EXPECT_TRUE(GPickerBase::picked().empty());
  view_->render();
  EXPECT_EQ(highlighted_pixels(), 0);
}

TEST_F(HighlightRecipes, GivenEntities_WhenHighlightedAndTakenOut_ThenTheyAreDrawnInBetween) {
  MeshVector mesh;
  mesh.elements[Tarn::Hex] = {database_.elements(Tarn::Hex)[1]};
  highlight_.highlight_mesh(mesh);
  view_->render();
  EXPECT_GT(highlighted_pixels(), 20);
  highlight_.unhighlight_mesh(mesh);
  view_->render();
  EXPECT_EQ(highlighted_pixels(), 0);
}

} // namespace
