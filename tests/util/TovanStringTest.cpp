#include "platform/util/TovanString.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(TovanString, GivenATextThatChangesLater_WhenMadeFromIt_ThenItKeepsACopy) {
  char text[] = "node 17";
  const TovanString string(text);

  std::strcpy(text, "gone");

  EXPECT_STREQ(string.c_str(), "node 17");
}

TEST(TovanString, GivenNoText_WhenMade_ThenItIsEmpty) {
  EXPECT_STREQ(TovanString().c_str(), "");
  EXPECT_STREQ(TovanString(nullptr).c_str(), "");
  EXPECT_STREQ(TovanString("").c_str(), "");
}

TEST(TovanString, GivenACopy_WhenTheOriginalIsReplaced_ThenTheCopyStays) {
  TovanString original("first");
  const TovanString copy = original;

  original = TovanString("second");

  EXPECT_STREQ(copy.c_str(), "first");
  EXPECT_STREQ(original.c_str(), "second");
}

} // namespace
