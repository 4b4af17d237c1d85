// The options as a client meets them, row by row of their declarations: each
// announced once with its type, default and range, a spin held to its range,
// a check value other than true or false refused, Hash answered with the
// size it really got; and the README's table of options beside the rows.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/uci_lines.h"
#include "shell/option_table.h"

namespace {

// What the engine prints for lines followed by a uci.
std::string answerTo(const std::string& lines) {
  ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {}, lines + "uci\n", 30.0);
  EXPECT_EQ(run.exitCode, 0) << run.standardError;
  return run.standardOutput;
}

std::string defaultText(const OptionDeclaration& option) {
  const EngineOptions start;
  switch (option.type) {
    case OptionType::Check: return start.*option.number ? "true" : "false";
    case OptionType::Spin: return std::to_string(start.*option.number);
    case OptionType::String: return start.*option.text;
    case OptionType::Button: break;
  }
  return "";
}

std::string rangeText(const OptionDeclaration& option) {
  if (option.type != OptionType::Spin) return "";
  return std::to_string(option.minimum) + " to " + std::to_string(option.maximum);
}

// The option's line in the uci answer, as the UCI protocol lays it out,
// showing value as its default.
std::string uciLine(const OptionDeclaration& option, const std::string& value) {
  std::string line = std::string("option name ") + option.name + " type " + optionTypeWord(option.type);
  if (option.type != OptionType::Button) line += " default " + value;
  if (option.type == OptionType::Spin)
    line += " min " + std::to_string(option.minimum) + " max " + std::to_string(option.maximum);
  return line;
}

std::vector<const OptionDeclaration*> optionsOfType(OptionType type) {
  std::vector<const OptionDeclaration*> found;
  for (const OptionDeclaration& option : declaredOptions)
    if (option.type == type) found.push_back(&option);
  return found;
}

TEST(Options, EveryDeclaredOptionIsAnnouncedOnceWithItsTypeDefaultAndRange) {
  const std::vector<std::string> lines = linesStartingWith(answerTo(""), "option name");
  EXPECT_EQ(lines.size(), declaredOptions.size());
  for (const OptionDeclaration& option : declaredOptions)
    EXPECT_EQ(std::count(lines.begin(), lines.end(), uciLine(option, defaultText(option))), 1) << option.name;
  // The first answer shows the default as the table in use only if the
  // table takes that size as it stands.
  const int32_t hashDefault = EngineOptions{}.hashSizeMb;
  EXPECT_EQ(hashMegabytesFor(hashDefault), hashDefault);
}

// Hash and Threads aren't taken above their ranges here: 4096 MB and 255
// helper threads are more than a test should ask of the machine.
TEST(Options, EverySpinValueOutsideItsRangeIsHeldToTheNearerEnd) {
  struct Case { const char* label; bool above; int32_t offset; const char* far; };
  const Case cases[] = {{"just below", false, -1, nullptr}, {"below 32 bits", false, 0, "-99999999999"},
                        {"just above", true, 1, nullptr}, {"above 32 bits", true, 0, "99999999999"}};
  for (const Case& c : cases) {
    std::string lines;
    std::vector<std::string> expected;
    for (const OptionDeclaration* option : optionsOfType(OptionType::Spin)) {
      if (c.above && (option->number == &EngineOptions::hashSizeMb || option->number == &EngineOptions::threads))
        continue;
      const int32_t end = c.above ? option->maximum : option->minimum;
      const std::string value = c.far ? c.far : std::to_string(end + c.offset);
      lines += std::string("setoption name ") + option->name + " value " + value + "\n";
      expected.push_back(uciLine(*option, std::to_string(end)));
    }
    const std::vector<std::string> announced = linesStartingWith(answerTo(lines), "option name");
    for (const std::string& line : expected)
      EXPECT_EQ(std::count(announced.begin(), announced.end(), line), 1) << c.label << ": " << line;
  }
}

// Before, OwnBook and Ponder took any such value as false, and the
// evaluation options rebuilt the evaluation after saying they refused it.
TEST(Options, ACheckValueOtherThanTrueOrFalseIsRefusedAndTheOptionKeepsItsValue) {
  std::string lines;
  std::vector<std::string> expected, refusals;
  for (const OptionDeclaration* option : optionsOfType(OptionType::Check)) {
    const bool flipped = EngineOptions{}.*option->number == 0;
    const std::string set = std::string("setoption name ") + option->name + " value ";
    lines += set + (flipped ? "TRUE\n" : "False\n") + set + "maybe\n" + set + "1\n";
    expected.push_back(uciLine(*option, flipped ? "true" : "false"));
    refusals.insert(refusals.end(), {"info string maybe not recognized as checkbox argument",
                                     "info string 1 not recognized as checkbox argument"});
  }
  const std::string output = answerTo(lines);
  EXPECT_EQ(linesStartingWith(output, "info string"), refusals);
  const std::vector<std::string> announced = linesStartingWith(output, "option name");
  for (const std::string& line : expected) EXPECT_EQ(std::count(announced.begin(), announced.end(), line), 1) << line;
}

// The nodes of the last depth-6 iteration. A second search of a position
// finds the first one's entries in the hash table, unless something emptied
// it in between.
std::string secondSearchNodes(const std::string& between) {
  const std::string search = "go depth 6\n";
  const std::string output =
      answerTo("position fen r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -\n" + search + between + search);
  return wordAfter(lastLineStartingWith(output, "info depth 6 seldepth"), "nodes");
}

TEST(Options, ARefusedCheckValueSetsNothingOff) {
  const std::string untouched = secondSearchNodes("");
  ASSERT_NE(untouched, "");
  // A real setting, even to the value in force, rebuilds the evaluation and
  // empties the table: the test sees it.
  EXPECT_NE(secondSearchNodes("setoption name use lmr value true\n"), untouched);
  for (const OptionDeclaration* option : optionsOfType(OptionType::Check))
    EXPECT_EQ(secondSearchNodes(std::string("setoption name ") + option->name + " value maybe\n"), untouched)
        << option->name;
}

// The table takes a power of two of buckets, at or above 0.51 times the
// memory asked for.
TEST(Options, HashAnswersWithTheSizeTheTableReallyTakes) {
  struct Case { const char* asked; const char* answer; int32_t inUse; };
  const Case cases[] = {
      {"100", "info string Hash table size is now 64 meg", 64},
      {"127", "info string Hash table size is now 128 meg", 128},
      {"3", "info string Hash table size is now 2 meg", 2},
      {"1", "info string Hash table size is now 1 meg", 1},
      {"0", "info string Hash tables turned OFF", 0},
      {"64", "info string Hash table size is now 64 meg", 64},
  };
  const OptionDeclaration& hash = *findOption("Hash");
  std::string lines;
  std::vector<std::string> answers, announced;
  for (const Case& c : cases) {
    lines += std::string("setoption name Hash value ") + c.asked + "\nuci\n";
    answers.push_back(c.answer);
    announced.push_back(uciLine(hash, std::to_string(c.inUse)));
    EXPECT_EQ(hashMegabytesFor(std::atoi(c.asked)), c.inUse) << c.asked;
  }
  const std::string output = answerTo(lines);
  EXPECT_EQ(linesStartingWith(output, "info string"), answers);
  std::vector<std::string> hashLines = linesStartingWith(output, "option name Hash ");
  ASSERT_EQ(hashLines.size(), announced.size() + 1);
  hashLines.pop_back();  // the answer to the last uci, after the last setting
  EXPECT_EQ(hashLines, announced);
}

// GUIs and bots set the move overhead as "Move Overhead"; clients of earlier
// versions of this engine set "move overhead milliseconds".
TEST(Options, MoveOverheadIsSetUnderItsNameAndItsFormerName) {
  const std::pair<const char*, int> cases[] = {
      {"Move Overhead", 150}, {"move overhead milliseconds", 90}, {"MOVE OVERHEAD", 250}, {"Move Overhead Milliseconds", 40}};
  for (const auto& [name, value] : cases) {
    const std::string output = answerTo(std::string("setoption name ") + name + " value " + std::to_string(value) + "\n");
    EXPECT_EQ(linesStartingWith(output, "info string"), std::vector<std::string>{}) << name;
    EXPECT_EQ(linesStartingWith(output, "option name Move Overhead "),
              std::vector<std::string>{uciLine(*findOption("Move Overhead"), std::to_string(value))})
        << name;
  }
}

// The README's options table: its rows after the heading "Options", split
// into their cells.
std::vector<std::vector<std::string>> readmeOptionRows() {
  std::ifstream readme(TARVOK_SOURCE_DIR "/README.md");
  std::vector<std::vector<std::string>> rows;
  bool inSection = false;
  for (std::string line; std::getline(readme, line);) {
    const size_t hashes = line.find_first_not_of('#');
    if (hashes > 0 && hashes != std::string::npos) inSection = line.substr(hashes) == " Options";
    if (!inSection || line.rfind("|", 0) != 0) {
      if (!rows.empty()) break;
      continue;
    }
    std::vector<std::string> cells;
    for (size_t start = 1, bar; (bar = line.find('|', start)) != std::string::npos; start = bar + 1) {
      std::string cell = line.substr(start, bar - start);
      cell.erase(0, cell.find_first_not_of(' '));
      cell.erase(cell.find_last_not_of(' ') + 1);
      cells.push_back(cell);
    }
    rows.push_back(cells);
  }
  return rows;
}

TEST(Options, TheReadmeTableHasOneRowPerDeclaredOptionWithItsTypeDefaultAndRange) {
  std::vector<std::vector<std::string>> rows = readmeOptionRows();
  ASSERT_GE(rows.size(), 2u) << "a header and its rule";
  EXPECT_EQ(std::vector<std::string>(rows[0].begin(), rows[0].begin() + std::min<size_t>(rows[0].size(), 4)),
            (std::vector<std::string>{"Option", "Type", "Default", "Range"}));
  rows.erase(rows.begin(), rows.begin() + 2);
  EXPECT_EQ(rows.size(), declaredOptions.size());
  for (const OptionDeclaration& option : declaredOptions) {
    const std::vector<std::string> declared = {option.name, optionTypeWord(option.type), defaultText(option),
                                               rangeText(option)};
    const auto matches = [&](const std::vector<std::string>& row) {
      return row.size() >= 4 && std::vector<std::string>(row.begin(), row.begin() + 4) == declared;
    };
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), matches), 1)
        << "| " << declared[0] << " | " << declared[1] << " | " << declared[2] << " | " << declared[3] << " |";
  }
}

}  // namespace
