// tarvok-tool fingerprints and trace, run as a developer runs them.
#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "../shell/engine_process.h"

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

std::string lineStartingWith(const std::string& output, const std::string& prefix) {
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);)
    if (line.compare(0, prefix.size(), prefix) == 0) return line;
  return "";
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
  EXPECT_EQ(lineStartingWith(run.standardOutput, "agree:"),
            "agree: move " + std::to_string(moves) + " score " + std::to_string(scores) + " nodes " +
                std::to_string(nodes) + " of 2; nodes within 1%: " + std::to_string(near));
}

TEST(TraceCommand, ARowEndsOnTheNodesOfItsFingerprint) {
  ProcessResult trace = runProgram(TARVOK_TOOL_PATH, {"trace", "43"}, "", 60.0);
  ProcessResult print = runProgram(TARVOK_TOOL_PATH, {"fingerprints", "43"}, "", 60.0);
  ASSERT_EQ(trace.exitCode, 0);
  EXPECT_EQ(lineStartingWith(trace.standardOutput, "reference "), "reference c6b5 -25 113029");
  auto iterations = rowsOf(trace.standardOutput);
  ASSERT_EQ(iterations.size(), 13u) << trace.standardOutput;
  auto fingerprint = rowsOf(print.standardOutput);
  ASSERT_EQ(fingerprint.size(), 1u);
  EXPECT_EQ(iterations[12][0], "13");
  EXPECT_EQ(iterations[12][1], fingerprint[0][1]);  // move
  EXPECT_EQ(iterations[12][2], fingerprint[0][3]);  // score
  EXPECT_EQ(iterations[12][3], fingerprint[0][5]);  // nodes
  EXPECT_NE(lineStartingWith(trace.standardOutput, "nullMoveCutoffs "), "");
}

}  // namespace
