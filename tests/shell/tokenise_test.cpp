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

TEST(Tokenise, EmptyAndBlankTextsHaveNoWords) {
  char empty[] = "";
  char blanks[] = " \t \r\n ";
  char* tokens[8];
  EXPECT_EQ(tokenise(empty, tokens), 0);
  EXPECT_EQ(tokenise(blanks, tokens), 0);
}

TEST(Tokenise, OtherCharactersBelongToWords) {
  char text[] = "a,b\fc x";
  char* tokens[8];
  ASSERT_EQ(tokenise(text, tokens), 2);
  EXPECT_STREQ(tokens[0], "a,b\fc");
  EXPECT_STREQ(tokens[1], "x");
}

TEST(Tokenise, WorstCaseFillsOnePointerForEveryTwoCharacters) {
  char text[] = "a b c d e f g h";
  char* tokens[sizeof text / 2 + 1];
  ASSERT_EQ(tokenise(text, tokens), 8);
  EXPECT_STREQ(tokens[7], "h");
}

}  // namespace
