#include "highlight/GMeshHighlightProperties.h"
#include "platform/util/TovanColorTable.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkProperty.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

using testing::ElementsAre;

namespace {

std::vector<int> color_of(vtkProperty* property) {
  double rgb[3];
  property->GetColor(rgb);
  std::vector<int> bytes;
  for (const double channel : rgb) {
    bytes.push_back(static_cast<int>(channel * 255 + 0.5));
    EXPECT_EQ(channel, bytes.back() / 255.0);
  }
  return bytes;
}

class HighlightProperties : public testing::Test {
protected:
  HighlightProperties() { TovanColorTable::set_highlight_color(TovanColor(10, 20, 30, 40)); }
  ~HighlightProperties() override { TovanColorTable::set_highlight_color(before_); }

private:
  TovanColor before_ = TovanColorTable::get_highlight_color();
};

TEST_F(HighlightProperties, GivenNewOnes_WhenLookedAt_ThenTheyHaveTheirDefaults) {
  GMeshHighlightProperties looks;
  vtkNew<vtkProperty> plain;
  vtkProperty* lit = looks.highlight_property();
  EXPECT_THAT(color_of(lit), ElementsAre(10, 20, 30));
  EXPECT_EQ(lit->GetRepresentation(), VTK_SURFACE);
  EXPECT_EQ(lit->GetAmbient(), plain->GetAmbient());
  EXPECT_EQ(lit->GetDiffuse(), plain->GetDiffuse());
  EXPECT_EQ(lit->GetSpecular(), plain->GetSpecular());
  EXPECT_THAT(color_of(looks.edge_highlight_property()), ElementsAre(10, 20, 30));
  EXPECT_THAT(color_of(looks.pre_select_property()), ElementsAre(255, 0, 0));
  for (vtkProperty* unlit : {looks.edge_highlight_property(), looks.pre_select_property()}) {
    EXPECT_EQ(unlit->GetRepresentation(), VTK_WIREFRAME);
    EXPECT_EQ(unlit->GetAmbient(), 1);
    EXPECT_EQ(unlit->GetDiffuse(), 0);
    EXPECT_EQ(unlit->GetSpecular(), 0);
  }
  for (vtkProperty* each : {lit, looks.edge_highlight_property(), looks.pre_select_property()}) {
    EXPECT_EQ(each->GetLineWidth(), 3.0F);
    EXPECT_EQ(each->GetPointSize(), 6.0F);
    EXPECT_EQ(each->GetOpacity(), 1.0) << "alpha goes nowhere";
    EXPECT_EQ(each->GetReferenceCount(), 1);
  }
}

TEST_F(HighlightProperties, GivenAColor_WhenSetForHighlights_ThenBothHighlightPropertiesTakeIt) {
  GMeshHighlightProperties looks;
  looks.set_highlight_color(TovanColor(1, 2, 3, 0));
  EXPECT_THAT(color_of(looks.highlight_property()), ElementsAre(1, 2, 3));
  EXPECT_THAT(color_of(looks.edge_highlight_property()), ElementsAre(1, 2, 3));
  EXPECT_THAT(color_of(looks.pre_select_property()), ElementsAre(255, 0, 0));
  looks.set_highlight_color(TovanColor(1, 2, 3, 255));
  EXPECT_THAT(color_of(looks.highlight_property()), ElementsAre(1, 2, 3));
  EXPECT_EQ(looks.highlight_property()->GetOpacity(), 1.0);
  looks.set_highlight_color(TovanColor(0, 0, 0, 1));
  EXPECT_THAT(color_of(looks.edge_highlight_property()), ElementsAre(0, 0, 0)) << "black, for it is not all zero";
}

TEST_F(HighlightProperties, GivenNoColor_WhenSetForHighlights_ThenTheTablesColorOfTheMomentIsTaken) {
  GMeshHighlightProperties looks;
  looks.set_highlight_color(TovanColor(1, 2, 3));
  TovanColorTable::set_highlight_color(TovanColor(70, 80, 90));
  EXPECT_THAT(color_of(looks.highlight_property()), ElementsAre(1, 2, 3));
  looks.set_highlight_color(TovanColor());
  EXPECT_THAT(color_of(looks.highlight_property()), ElementsAre(70, 80, 90));
  EXPECT_THAT(color_of(looks.edge_highlight_property()), ElementsAre(70, 80, 90));
}

TEST_F(HighlightProperties, GivenColors_WhenSetForThePreSelection_ThenItAloneTakesThem) {
  GMeshHighlightProperties looks;
  looks.set_preselect_color(TovanColor(4, 5, 6, 7));
  EXPECT_THAT(color_of(looks.pre_select_property()), ElementsAre(4, 5, 6));
  EXPECT_EQ(looks.pre_select_property()->GetOpacity(), 1.0);
  EXPECT_THAT(color_of(looks.highlight_property()), ElementsAre(10, 20, 30));
  EXPECT_THAT(color_of(looks.edge_highlight_property()), ElementsAre(10, 20, 30));
  looks.set_preselect_color(TovanColor());
  EXPECT_THAT(color_of(looks.pre_select_property()), ElementsAre(255, 0, 0)) << "red, not the table's";
}

TEST_F(HighlightProperties, GivenSizes_WhenSet_ThenThePreSelectionKeepsItsOwn) {
  GMeshHighlightProperties looks;
  looks.set_highlight_line_width(5);
  looks.set_highlight_point_size(9);
  for (vtkProperty* each : {looks.highlight_property(), looks.edge_highlight_property()}) {
    EXPECT_EQ(each->GetLineWidth(), 5.0F);
    EXPECT_EQ(each->GetPointSize(), 9.0F);
  }
  EXPECT_EQ(looks.pre_select_property()->GetLineWidth(), 3.0F);
  EXPECT_EQ(looks.pre_select_property()->GetPointSize(), 6.0F);
}

TEST_F(HighlightProperties, GivenSetters_WhenCalled_ThenThePropertiesStayTheSameObjects) {
  GMeshHighlightProperties looks;
  vtkProperty* const before[] = {looks.highlight_property(), looks.edge_highlight_property(),
                                 looks.pre_select_property()};
  EXPECT_NE(before[0], before[1]);
  EXPECT_NE(before[1], before[2]);
  EXPECT_NE(before[0], before[2]);
  looks.set_highlight_color(TovanColor(1, 2, 3));
  looks.set_preselect_color(TovanColor(1, 2, 3));
  looks.set_highlight_line_width(1);
  looks.set_highlight_point_size(1);
  EXPECT_EQ(looks.highlight_property(), before[0]);
  EXPECT_EQ(looks.edge_highlight_property(), before[1]);
  EXPECT_EQ(looks.pre_select_property(), before[2]);
}

TEST_F(HighlightProperties, GivenAPropInUse_WhenTheyAreDestroyed_ThenItKeepsItsProperty) {
  vtkNew<vtkActor> actor;
  {
    GMeshHighlightProperties looks;
    actor->SetProperty(looks.pre_select_property());
    EXPECT_EQ(looks.pre_select_property()->GetReferenceCount(), 2);
  }
  EXPECT_EQ(actor->GetProperty()->GetReferenceCount(), 1);
  EXPECT_THAT(color_of(actor->GetProperty()), ElementsAre(255, 0, 0));
}

// Both then release the same properties; so one of them is never destroyed here, and the other's own are given up by
// hand.
TEST_F(HighlightProperties, GivenTwo_WhenOneIsAssignedToTheOther_ThenTheyShareWithoutTakingReferences) {
  auto first = std::make_unique<GMeshHighlightProperties>();
  alignas(GMeshHighlightProperties) unsigned char room[sizeof(GMeshHighlightProperties)];
  auto* second = new (room) GMeshHighlightProperties;
  vtkProperty* const own[] = {second->highlight_property(), second->edge_highlight_property(),
                              second->pre_select_property()};
  first->set_highlight_color(TovanColor(9, 9, 9));
  EXPECT_EQ(&(*second = *first), second);
  EXPECT_EQ(second->highlight_property(), first->highlight_property());
  EXPECT_EQ(second->edge_highlight_property(), first->edge_highlight_property());
  EXPECT_EQ(second->pre_select_property(), first->pre_select_property());
  EXPECT_EQ(first->highlight_property()->GetReferenceCount(), 1);
  second->set_highlight_line_width(8);
  EXPECT_EQ(first->edge_highlight_property()->GetLineWidth(), 8.0F);
  for (vtkProperty* each : own) {
    EXPECT_EQ(each->GetReferenceCount(), 1) << "left alone";
    each->Delete();
  }
}

TEST_F(HighlightProperties, GivenTheClass_WhenLookedAt_ThenItHasNoVirtualOperations) {
  EXPECT_FALSE(std::is_polymorphic_v<GMeshHighlightProperties>);
}

} // namespace
