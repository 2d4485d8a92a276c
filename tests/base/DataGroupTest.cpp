#include "platform/base/GDataGroup.h"
#include "platform/base/GDataGroupEntity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Entity : public GDataGroupEntity {
public:
  using GDataGroupEntity::modify_owning_groups;
};

class Group : public GDataGroup {
public:
  Group() {
    for (int i = 0; i < 3; ++i)
      data_objects_.push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
  }
  GDataGroup* new_instance() override { return new Group; }
  void do_update() override {
    ++updates;
    if (during_update) during_update();
  }
  using GDataGroup::members;

  int updates = 0;
  std::function<void()> during_update;
};

TEST(DataGroup, GivenMembers_WhenTheyJoinAndLeave_ThenBlocksComeWithTheFirstAndTheLastOnly) {
  Group group;
  Entity first, second;

  const BlockList on_first = group.add_entity(&first);
  ASSERT_EQ(on_first.size(), 3u);
  EXPECT_EQ(on_first, group.all_blocks());
  EXPECT_THAT(group.add_entity(&second), IsEmpty());
  EXPECT_THAT(group.add_entity(&first), IsEmpty()) << "a member that is added again";
  EXPECT_THAT(group.members(), ElementsAre(&first, &second));

  EXPECT_THAT(group.remove_entity(&first), IsEmpty());
  EXPECT_THAT(group.remove_entity(&first), IsEmpty()) << "a stranger";
  EXPECT_EQ(group.remove_entity(&second), on_first);
  EXPECT_THAT(group.remove_entity(&second), IsEmpty());
  EXPECT_EQ(group.add_entity(&second), on_first);
  EXPECT_THAT(group.add_entity(nullptr), IsEmpty());
  EXPECT_THAT(group.remove_entity(nullptr), IsEmpty());
}

TEST(DataGroup, GivenMembersThatLeaveAndComeBack_WhenListed_ThenTheOrderIsThatOfJoining) {
  Group group;
  Entity a, b, c, d;
  for (Entity* each : {&a, &b, &c, &d})
    group.add_entity(each);
  group.remove_entity(&b);
  EXPECT_THAT(group.members(), ElementsAre(&a, &c, &d));
  group.add_entity(&b);
  group.remove_entity(&a);
  EXPECT_THAT(group.members(), ElementsAre(&c, &d, &b));
}

TEST(DataGroup, GivenChanges_WhenUpdatedAll_ThenOnlyMarkedGroupsAreUpdatedOnce) {
  Group group;
  Entity member;
  std::vector<GDataGroup*> updated;
  group.update_all(&updated);
  EXPECT_EQ(group.updates, 0) << "a new group is not marked";

  group.add_entity(&member);
  EXPECT_EQ(group.updates, 0) << "never at once";
  group.update_all(&updated);
  EXPECT_EQ(group.updates, 1);
  EXPECT_THAT(updated, ElementsAre(&group));
  group.update_all(nullptr);
  EXPECT_EQ(group.updates, 1);

  member.modify_owning_groups();
  group.update_all(nullptr);
  EXPECT_EQ(group.updates, 2);
  group.add_entity(&member);
  group.update_all(nullptr);
  EXPECT_EQ(group.updates, 2) << "adding a member again changes nothing";
  group.remove_entity(&member);
  group.update_all(nullptr);
  EXPECT_EQ(group.updates, 3);
}

TEST(DataGroup, GivenAChangeDuringTheUpdate_WhenUpdatedAgain_ThenItIsNotLost) {
  Group group;
  group.modified();
  group.during_update = [&group] { group.modified(); };
  group.update_all(nullptr);
  group.during_update = nullptr;
  group.update_all(nullptr);
  EXPECT_EQ(group.updates, 2);
}

TEST(DataGroup, GivenAnEntityInSeveralGroups_WhenItDies_ThenItLeavesAll) {
  Group one, other;
  Entity stays;
  {
    Entity member;
    one.add_entity(&member);
    other.add_entity(&stays);
    other.add_entity(&member);
    member.modify_owning_groups();
    EXPECT_EQ(one.members().size(), 1u);
    EXPECT_EQ(other.members().size(), 2u);
  }
  EXPECT_THAT(one.members(), IsEmpty());
  EXPECT_THAT(other.members(), ElementsAre(&stays));
  one.update_all(nullptr);
  EXPECT_EQ(one.updates, 1);
}

TEST(DataGroup, GivenAGroupThatDies_WhenItsMembersGoOn_ThenTheyNoLongerKnowIt) {
  Entity member;
  Group stays;
  {
    Group group;
    group.add_entity(&member);
    stays.add_entity(&member);
  }
  stays.update_all(nullptr);
  member.modify_owning_groups();
  stays.update_all(nullptr);
  EXPECT_EQ(stays.updates, 2);
}

TEST(DataGroup, GivenGroupsBelow_WhenListedAndUpdated_ThenItComesFirst) {
  Group top;
  auto* left = static_cast<Group*>(top.add_group());
  auto* right = static_cast<Group*>(top.add_group());
  auto* under_left = static_cast<Group*>(left->add_group());
  EXPECT_THAT(top.all_groups(), ElementsAre(&top, left, under_left, right));
  under_left->modified();
  top.modified();
  std::vector<GDataGroup*> updated;
  top.update_all(&updated);
  EXPECT_THAT(updated, ElementsAre(&top, under_left));
  EXPECT_TRUE(top.remove_group(left));
  EXPECT_FALSE(top.remove_group(left));
  EXPECT_THAT(top.all_groups(), ElementsAre(&top, right));
}

TEST(DataGroup, GivenTenThousandMembers_WhenEachLeavesAndJoins_ThenAllAreThere) {
  Group group;
  std::vector<std::unique_ptr<Entity>> entities;
  for (int i = 0; i < 10000; ++i) {
    entities.push_back(std::make_unique<Entity>());
    group.add_entity(entities.back().get());
  }
  for (const auto& entity : entities) {
    group.remove_entity(entity.get());
    group.add_entity(entity.get());
  }
  EXPECT_EQ(group.members().size(), entities.size());
  EXPECT_EQ(group.members().front(), entities.front().get());
}

} // namespace
