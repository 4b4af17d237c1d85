// tarvok-tool fingerprints and trace, run as a developer runs them.
#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "../shell/engine_process.h"
#include "../support/uci_lines.h"

namespace {

std::vector<std::vector<std::string>> rowsOf(const std::string& output) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::vector<std::string> fields;
    for (std::string word; words >> word;) fields.push_back(word);
    if (!fields.empty() && std::isdigit(static_cast<unsigned char>(fields[0][0]))) rows.push_back(fields);
  }
  return rows;
}

TEST(FingerprintsCommand, ShowsChosenRowsBesideTheReferenceAndCountsAgreement) {
  ProcessResult run = runProgram(TARVOK_TOOL_PATH, {"fingerprints", "48", "43"}, "", 60.0);
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  auto rows = rowsOf(run.standardOutput);
  ASSERT_EQ(rows.size(), 2u) << run.standardOutput;
  // Rows come in table order, whatever order they were asked in.
  EXPECT_EQ(rows[0][0], "43");
  EXPECT_EQ(rows[0][2], "c6b5");
  EXPECT_EQ(rows[0][4], "-25");
  EXPECT_EQ(rows[0][6], "113029");
  EXPECT_EQ(rows[1][0], "48");
  EXPECT_EQ(rows[1][2], "e1e2");
  EXPECT_EQ(rows[1][6], "166665");
  int moves = 0, scores = 0, nodes = 0, near = 0;
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 9u);
    moves += row[1] == row[2];
    scores += row[3] == row[4];
    nodes += row[5] == row[6];
    double percent = std::stod(row[7]);
    near += percent >= -1.0 && percent <= 1.0;
    EXPECT_EQ(row[8], std::string(row[1] == row[2] ? "M" : ".") + (row[3] == row[4] ? "S" : ".") +
                          (row[5] == row[6] ? "N" : "."));
  }
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "agree:"),
            "agree: move " + std::to_string(moves) + " score " + std::to_string(scores) + " nodes " +
                std::to_string(nodes) + " of 2; nodes within 1%: " + std::to_string(near));
}

}  // namespace
