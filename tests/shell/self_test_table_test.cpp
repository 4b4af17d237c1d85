// The self-test's table: fifty positions, each with the move, score and node
// count that a depth-13 search of this build gives (-test searches them all
// again; SelfTest in the search tests repeats the cheap rows).
#include "shell/self_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "../support/legal_moves.h"

namespace {

// A row whose stored move its position can't play could never pass -test,
// whatever the search does: the table itself is broken.
TEST(SelfTestTable, EveryRowStoresALegalMoveOfItsPosition) {
  for (int row = 0; row < 50; ++row) {
    char fen[160];
    testRowFen(row, fen);
    int move = 0;
    ASSERT_EQ(std::sscanf(testFens[row], "%*s %*s %*s %*s %d", &move), 1) << "row " << row;
    Position position;
    parseFen(position, fen);
    const std::vector<Move> legal = legalMoves(position);
    EXPECT_NE(std::find(legal.begin(), legal.end(), static_cast<Move>(move)), legal.end())
        << "row " << row << ": " << moveText(position, static_cast<Move>(move)) << " in " << fen;
  }
}

}  // namespace
