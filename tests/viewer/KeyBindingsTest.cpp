#include "viewer/KeyBindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkRenderWindowInteractor.h>

namespace {

using namespace viewer;

struct KeyRow {
  const char* symbol;
  bool shift, control;
  const char* key;
};

TEST(KeyBindings, GivenKeysAsTheDisplayNamesThem_WhenPressed_ThenOneNameEach) {
  const KeyRow rows[] = {{"e", false, false, "e"},
                         {"E", false, false, "e"},
                         {"X", true, false, "Shift+x"},
                         {"q", false, true, "Ctrl+q"},
                         {"Z", true, true, "Ctrl+Shift+z"},
                         {"Tab", false, false, "Tab"},
                         {"ISO_Left_Tab", true, false, "Shift+Tab"},
                         {"Tab", true, false, "Shift+Tab"},
                         {"Prior", false, false, "PageUp"},
                         {"Next", false, false, "PageDown"},
                         {"space", false, false, "Space"},
                         {"plus", true, false, "+"},
                         {"KP_Add", false, false, "+"},
                         {"minus", false, false, "-"},
                         {"Return", false, false, "Return"},
                         {"3", false, false, "3"},
                         {"6", false, true, "Ctrl+6"},
                         {"slash", false, false, "/"},
                         {nullptr, false, false, ""}};
  for (const KeyRow& row : rows) {
    vtkNew<vtkRenderWindowInteractor> interactor;
    interactor->SetKeySym(row.symbol);
    interactor->SetShiftKey(row.shift);
    interactor->SetControlKey(row.control);
    EXPECT_EQ(pressed_key(interactor), row.key) << (row.symbol ? row.symbol : "none");
  }
}

TEST(KeyBindings, GivenATable_WhenAKeyIsLookedUp_ThenTheBindingThatListsIt) {
  const std::vector<KeyBinding> table = {{{"a", "b"}, "A B", "first", nullptr}, {{"c"}, "C", "second", nullptr}};
  ASSERT_NE(find_binding(table, "b"), nullptr);
  EXPECT_EQ(find_binding(table, "b")->text, "first");
  EXPECT_EQ(find_binding(table, "c")->text, "second");
  EXPECT_EQ(find_binding(table, "A B"), nullptr);
  EXPECT_EQ(find_binding(table, ""), nullptr);
}

TEST(KeyBindings, GivenATable_WhenWrittenAsHelp_ThenOneLineEachInTwoColumns) {
  const std::vector<KeyBinding> table = {{{"a"}, "A", "first", nullptr}, {{"PageUp"}, "PageUp", "second", nullptr}};
  EXPECT_THAT(help_lines(table), testing::ElementsAre("  A       first  ", "  PageUp  second  "));
}

} // namespace
