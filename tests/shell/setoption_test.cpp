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

TEST(OptionText, NameAndValueAreLowerCasedAndReadBehindTheirBlank) {
  ReadText text = read("setoption name Move Overhead Milliseconds value 250");
  EXPECT_EQ(text.name, "move overhead milliseconds");
  EXPECT_EQ(text.value, "250");
  EXPECT_EQ(text.bookFile, "250");
}

TEST(OptionText, EverySecondWordOfAValueIsCutAndCantBeAKeyword) {
  ReadText text = read("setoption name x value First SecondWord Third FourthWordToo name y");
  EXPECT_EQ(text.value, "first secondwo third fourthwo");
  EXPECT_EQ(text.name, "x y") << "the fifth value word is a keyword again";
  EXPECT_EQ(read("setoption name x value a name").value, "a name");
  EXPECT_EQ(read("setoption name x value a value b c").value, "a value b c");
}

TEST(OptionText, MissingPartsReadAsTwoBlanks) {
  ReadText text = read("setoption");
  EXPECT_EQ(text.name, "  ");
  EXPECT_EQ(text.value, "  ");
  EXPECT_EQ(text.bookFile, "");
  EXPECT_EQ(read("setoption name Hash value").value, "  ");
  EXPECT_EQ(read("setoption Hash value 3").name, "  ") << "words before name are ignored";
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

bool namesHash(const std::string& line) {
  std::vector<char> text(line.begin(), line.end());
  text.push_back('\0');
  std::vector<char*> tokens(text.size() / 2 + 1);
  int count = tokenise(text.data(), tokens.data());
  return namesHashOption(tokens.data(), count);
}

TEST(OptionText, HashIsRecognisedAsTheCommandReadsTheName) {
  EXPECT_TRUE(namesHash("setoption name Hash value 16"));
  EXPECT_TRUE(namesHash("setoption name HASH"));
  EXPECT_TRUE(namesHash("setoption now name hash value 1")) << "words before name are ignored";
  EXPECT_FALSE(namesHash("setoption name Hash Size value 16"));
  EXPECT_FALSE(namesHash("setoption name Book File value hash"));
  EXPECT_FALSE(namesHash("setoption value 16 hash"));
}

TEST_F(SetOption, CheckOptionIgnoresCaseOfNameAndValue) {
  send("setoption name USE LMR value FALSE");
  EXPECT_EQ(useLmr, 0);
  send("setoption name best line value false");
  EXPECT_EQ(bestLineOnly, 0);
  send("setoption name Deterministic value True");
  EXPECT_EQ(deterministic, 1);
  EXPECT_EQ(output, "");
}

TEST_F(SetOption, CheckOptionWithOtherValueKeepsItsValue) {
  send("setoption name null move pruning value maybe");
  EXPECT_EQ(output, "info string maybe not recognized as checkbox argument\n");
  EXPECT_EQ(nullMovePruning, 1);
  send("setoption name null move pruning");
  EXPECT_EQ(output, "info string    not recognized as checkbox argument\n");
  EXPECT_EQ(nullMovePruning, 1);
}

TEST_F(SetOption, SpinOptionTakesAnyNumberAndNothingAsZero) {
  send("setoption name Drawscore value 1000");
  EXPECT_EQ(drawScore, 1000) << "ranges are announced, not enforced";
  send("setoption name king safety aggressiveness value -3");
  EXPECT_EQ(kingSafetyAggressiveness, -3);
  send("setoption name Red depth threshold");
  EXPECT_EQ(redDepthThreshold, 0);
  send("setoption name Drawscore value 99999999999");
  EXPECT_EQ(drawScore, INT32_MAX) << "numbers beyond 32 bits saturate";
  send("setoption name Drawscore value -99999999999");
  EXPECT_EQ(drawScore, INT32_MIN);
  EXPECT_EQ(output, "");
}

TEST_F(SetOption, HashBelowOneTurnsTheTableOff) {
  send("setoption name Hash");
  EXPECT_EQ(hashSizeMb, 0);
  EXPECT_EQ(output, "info string Hash tables turned OFF\n");
  send("setoption name hash value -5");
  EXPECT_EQ(hashSizeMb, -5);
  EXPECT_EQ(output, "info string Hash tables turned OFF\n");
  EXPECT_EQ(logText(), "Hash tables turned off\nHash tables turned off\n");
}

TEST_F(SetOption, HashMessageRepeatsTheNumberGiven) {
  send("setoption name Hash value 100");
  EXPECT_EQ(hashSizeMb, 100);
  EXPECT_EQ(output, "info string Hash table size is now 100 meg\n");
  EXPECT_EQ(logText(), "");
}

TEST_F(SetOption, MultiPvIsHeldToItsRange) {
  send("setoption name MultiPV value 4");
  EXPECT_EQ(multiPv, 4);
  send("setoption name MultiPV value 0");
  EXPECT_EQ(multiPv, 1);
  send("setoption name multipv value 500");
  EXPECT_EQ(multiPv, 99);
}

TEST_F(SetOption, OwnBookAndPonderAreTrueOnlyForTrue) {
  send("setoption name OwnBook value TRUE");
  EXPECT_EQ(ownBook, 1);
  send("setoption name OwnBook value yes");
  EXPECT_EQ(ownBook, 0);
  send("setoption name Ponder value false");
  EXPECT_EQ(ponderOption, 0);
  send("setoption name Ponder value true");
  EXPECT_EQ(ponderOption, 1);
  EXPECT_EQ(output, "");
  EXPECT_EQ(logText(), "Ponder set to 0\nPonder set to 1\n");
}

TEST_F(SetOption, BookFileIsStoredAsSentAndAnnounced) {
  send("setoption name Book File value Openings/Main Line Repertoire.BIN");
  EXPECT_STREQ(bookFileName, "Openings/Main Line Repertoire.BIN");
  EXPECT_EQ(output, "info string book file is Openings/Main Line Repertoire.BIN\n");
}

TEST_F(SetOption, UnknownNameIsReportedAndLogged) {
  send("setoption name Style value Aggressive");
  EXPECT_EQ(output, "info string style not recognized\n");
  EXPECT_EQ(logText(), "option style (value aggressive) not understood.\n");
  send("setoption");
  EXPECT_EQ(output, "info string    not recognized\n");
}

}  // namespace
