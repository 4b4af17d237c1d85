#include <gtest/gtest.h>

#include <cstring>

#include "shell/tokenise.h"

namespace {

TEST(Tokenise, SplitsAtBlanksTabsAndLineEndsInPlace) {
  char text[] = "  position\tstartpos  moves e2e4\r\n";
  char* tokens[sizeof text / 2 + 1];
  ASSERT_EQ(tokenise(text, tokens), 4);
  EXPECT_STREQ(tokens[0], "position");
  EXPECT_STREQ(tokens[1], "startpos");
  EXPECT_STREQ(tokens[2], "moves");
  EXPECT_STREQ(tokens[3], "e2e4");
  // The words point into the text itself, and every separator became a terminator.
  EXPECT_EQ(tokens[0], text + 2);
  EXPECT_EQ(text[0], '\0');
  EXPECT_EQ(text[10], '\0');
  EXPECT_EQ(text[sizeof text - 2], '\0');
}

}  // namespace
