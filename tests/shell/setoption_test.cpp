#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "option_state.h"
#include "shell/setoption.h"
#include "shell/tokenise.h"

namespace {

struct SetOption : OptionState {
  std::string output;

  // Runs one line through the command, as the dispatcher would hand it over.
  void send(const std::string& line) {
    std::vector<char> text(line.begin(), line.end());
    text.push_back('\0');
    std::vector<char*> tokens(text.size() / 2 + 1);
    int count = tokenise(text.data(), tokens.data());
    testing::internal::CaptureStdout();
    setoptionCommand(tokens.data(), count);
    output = testing::internal::GetCapturedStdout();
  }
};

struct ReadText {
  std::string name, value, bookFile;
};

ReadText read(const std::string& line) {
  std::vector<char> text(line.begin(), line.end());
  text.push_back('\0');
  std::vector<char*> tokens(text.size() / 2 + 1);
  int count = tokenise(text.data(), tokens.data());
  static OptionText read;
  readOptionText(tokens.data(), count, read);
  return {read.optionName + 1, read.optionValue + 1, read.bookFileValue};
}

TEST(OptionText, BookFileValueKeepsCaseAndWholeWords) {
  ReadText text = read("setoption name Book File value /Books/Grand Master Openings.bin");
  EXPECT_EQ(text.name, "book file");
  EXPECT_EQ(text.value, "/books/grand master openings.bin");
  EXPECT_EQ(text.bookFile, "/Books/Grand Master Openings.bin");
}

TEST(OptionText, OverlongTextsAreCutToTheirBuffers) {
  std::string line = "setoption name";
  for (int i = 0; i < 300; ++i) line += " abcdefgh";
  line += " value";
  for (int i = 0; i < 300; ++i) line += " ABCDEFGHIJK";
  ReadText text = read(line);
  EXPECT_EQ(text.name.size(), optionTextSize - 2u);
  EXPECT_EQ(text.value.size(), optionTextSize - 2u);
  EXPECT_EQ(text.bookFile.size(), 511u);
  EXPECT_EQ(text.bookFile.substr(0, 23), "ABCDEFGHIJK ABCDEFGHIJK");
}

TEST_F(SetOption, CheckOptionWithOtherValueKeepsItsValue) {
  send("setoption name null move pruning value maybe");
  EXPECT_EQ(output, "info string maybe not recognized as checkbox argument\n");
  EXPECT_EQ(nullMovePruning, 1);
  send("setoption name null move pruning");
  EXPECT_EQ(output, "info string    not recognized as checkbox argument\n");
  EXPECT_EQ(nullMovePruning, 1);
}

TEST_F(SetOption, HashBelowOneTurnsTheTableOff) {
  send("setoption name Hash");
  EXPECT_EQ(hashSizeMb, 0);
  EXPECT_EQ(output, "info string Hash tables turned OFF\n");
  send("setoption name hash value -5");
  EXPECT_EQ(hashSizeMb, 0);
  EXPECT_EQ(output, "info string Hash tables turned OFF\n");
  EXPECT_EQ(logText(), "Hash tables turned off\nHash tables turned off\n");
}

TEST_F(SetOption, MultiPvIsHeldToItsRange) {
  send("setoption name MultiPV value 4");
  EXPECT_EQ(multiPv, 4);
  send("setoption name MultiPV value 0");
  EXPECT_EQ(multiPv, 1);
  send("setoption name multipv value 500");
  EXPECT_EQ(multiPv, 99);
}

}  // namespace
