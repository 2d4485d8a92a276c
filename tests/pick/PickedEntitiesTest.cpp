#include "pick/GMeshPicker.h"
#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "tests/pick/PickSystemDouble.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ records

TEST(PickedNodes, GivenANode_WhenAsked_ThenItAnswersFromItsDatabase) {
  test_support::NamedMesh mesh;
  mesh.add_node(0, 0, 0);
  const auto handle = mesh.add_node(1, 0, 0);
  test_support::RecordingMeshData db(*mesh.database);
  PickedNode* node = PickedNode::New(handle, &db);
  EXPECT_EQ(node->node(), handle);
  EXPECT_EQ(node->handle(), handle.value);
  EXPECT_EQ(node->database(), &db);
  EXPECT_EQ(node->type(), GMeshPicker::gNodeType);
  EXPECT_STREQ(node->type(), "Node");
  EXPECT_STREQ(node->name(), "");
  EXPECT_EQ(node->element_id(), -1) << "the base's answer";
  EXPECT_THAT(db.calls(), IsEmpty());
  EXPECT_EQ(node->id(), 2);
  ASSERT_THAT(db.operations(), ElementsAre("get_node_ids"));
  EXPECT_THAT(db.calls()[0].handles, ElementsAre(handle.value));
  db.fail("get_node_ids");
  EXPECT_EQ(node->id(), 0);
  node->Delete();
}

TEST(PickedElements, GivenAnElement_WhenAsked_ThenItAnswersFromItsDatabase) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  const auto handle = mesh.mesh.elements[Tarn::Quad][1];
  const int global = 4711;
  mesh.database->set_global_ids(1, &handle, &global);
  test_support::RecordingMeshData db(*mesh.database);
  PickedElement* element = PickedElement::New(handle, &db);
  EXPECT_EQ(element->element(), handle);
  EXPECT_EQ(element->handle(), handle.value);
  EXPECT_EQ(element->database(), &db);
  EXPECT_STREQ(element->name(), "");
  EXPECT_THAT(db.calls(), IsEmpty());
  EXPECT_STREQ(element->type(), "Quad") << "the database's name, not the filter's";
  EXPECT_EQ(element->id(), 2);
  EXPECT_EQ(element->element_id(), 4711);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_type", "get_element_ids", "get_global_element_ids"));
  for (const auto& call : db.calls())
    EXPECT_THAT(call.handles, ElementsAre(handle.value));
  db.fail("get_element_ids");
  db.fail("get_global_element_ids");
  EXPECT_EQ(element->id(), 0);
  EXPECT_EQ(element->element_id(), -1);
  element->Delete();
}

TEST(PickedElements, GivenAnElementWithoutAGlobalId_WhenAsked_ThenItIsMinusOneWhateverWasWritten) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  struct Writing : test_support::RecordingMeshData {
    using RecordingMeshData::RecordingMeshData;
    void get_global_element_ids(Count, const Elem*, int* ids, char* has_ids) override {
      ids[0] = 99;
      has_ids[0] = flag;
    }
    char flag = 0;
  };
  Writing db(*mesh.database);
  PickedElement* element = PickedElement::New(mesh.mesh.elements[Tarn::Quad][0], &db);
  EXPECT_EQ(element->element_id(), -1);
  db.flag = 2; // anything but 0
  EXPECT_EQ(element->element_id(), 99);
  db.flag = -1;
  EXPECT_EQ(element->element_id(), 99);
  element->Delete();
}

TEST(PickedElements, GivenUnknownElements_WhenAsked_ThenTheirKindIsNone) {
  test_support::NamedMesh mesh;
  PickedElement* element = PickedElement::New({}, mesh.database.get());
  EXPECT_STREQ(element->type(), "None");
  EXPECT_EQ(element->id(), 0);
  EXPECT_EQ(element->element_id(), -1);
  element->Delete();
}

// Counts how often it is destroyed.
class CountedNode : public PickedNode {
public:
  CountedNode(Tarn::MeshData* db, int& destroyed) : PickedNode({7}, db), destroyed_(destroyed) {}
  ~CountedNode() override { ++destroyed_; }

private:
  int& destroyed_;
};

TEST(PickedRecords, GivenARecord_WhenGivenUp_ThenItGoesWithItsLastReference) {
  test_support::NamedMesh mesh;
  int destroyed = 0;
  auto* once = new CountedNode(mesh.database.get(), destroyed);
  once->Delete();
  EXPECT_EQ(destroyed, 1);
  auto* twice = new CountedNode(mesh.database.get(), destroyed);
  twice->Register();
  twice->Delete();
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(twice->handle(), 7u);
  twice->Delete();
  EXPECT_EQ(destroyed, 2);
}

TEST(PickedRecords, GivenTheClasses_WhenUsed_ThenOnlyNewMakesThem) {
  EXPECT_FALSE((std::is_constructible_v<PickedNode, Tarn::Handle<0>, Tarn::MeshData*>));
  EXPECT_FALSE((std::is_constructible_v<PickedElement, Tarn::Handle<1>, Tarn::MeshData*>));
  EXPECT_FALSE(std::is_destructible_v<PickedNode>);
  EXPECT_FALSE(std::is_destructible_v<PickedElement>);
}

// ------------------------------------------------------------------------------------------ registering

const std::vector<std::string> kind_names = {"Hex",    "Tet", "Pyramid", "Wedge", "Knife",           "Superelement",
                                             "Face",   "Tri", "Edge",    "Node",  "ThreeDimElement", "TwoDimElement",
                                             "Element"};

TEST(PickerNames, GivenTheConstants_WhenRead_ThenTheyAreTheFiltersNames) {
  const std::vector<std::string> constants = {
      GMeshPicker::gHexType,    GMeshPicker::gTetType,       GMeshPicker::gPyramidType,   GMeshPicker::gWedgeType,
      GMeshPicker::gKnifeType,  GMeshPicker::gSuperElemType, GMeshPicker::gQuadType,      GMeshPicker::gTriType,
      GMeshPicker::gEdgeType,   GMeshPicker::gNodeType,      GMeshPicker::g3dElementType, GMeshPicker::g2dElementType,
      GMeshPicker::gElementType};
  EXPECT_EQ(constants, kind_names);
}

std::vector<std::string> names_of(const std::vector<std::pair<std::string, GPicker*>>& entries, GPicker* picker) {
  std::vector<std::string> names;
  for (const auto& [name, entry] : entries) {
    EXPECT_EQ(entry, picker);
    names.push_back(name);
  }
  return names;
}

TEST(PickerRegistration, GivenAPicker_WhenItLives_ThenItIsRegisteredUnderAllNamesInOrder) {
  for (const bool answer : {true, false}) { // which is ignored
    PickSystemDouble system;
    system.answer = answer;
    GPicker* address = nullptr;
    {
      GMeshPicker picker;
      address = &picker;
      EXPECT_EQ(names_of(system.registered, address), kind_names);
      EXPECT_THAT(system.unregistered, IsEmpty());
    }
    EXPECT_EQ(names_of(system.unregistered, address), kind_names);
    EXPECT_THAT(system.registered, SizeIs(13));
  }
}

TEST(PickerRegistration, GivenARegistryThatThrows_WhenAPickerIsMade_ThenTheExceptionPassesOn) {
  for (const std::size_t at : {0, 1, 7, 12}) {
    PickSystemDouble system;
    system.refuse_at = at;
    EXPECT_THROW(GMeshPicker(), std::runtime_error);
    EXPECT_THAT(system.registered, SizeIs(at));
    EXPECT_THAT(system.unregistered, IsEmpty()) << "no destructor runs but the base's";
  }
}

TEST(PickerRegistration, GivenADestructor_WhenDeclared_ThenItDoesNotThrow) {
  EXPECT_TRUE(std::is_nothrow_destructible_v<GMeshPicker>);
  EXPECT_TRUE((std::is_base_of_v<GPicker, GMeshPicker>));
}

} // namespace
