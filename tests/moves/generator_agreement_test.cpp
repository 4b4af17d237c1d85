// The stage generators against the full generator, over random games from
// the self-test positions: every legal reply to check is an evasion, captures
// and quiet moves split the move list, every quiet check is found and is a
// check, and givesCheck agrees with the position after the move.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "shell/self_test.h"

namespace {

bool isLegal(const Position& position, Move move) {
  Position child;
  makeMove(position, child, move);
  return !kingAttacked(child, sideToMove(position));
}

bool checksAfter(const Position& position, Move move) {
  Position child;
  makeMove(position, child, move);
  return kingAttacked(child, sideToMove(position) ^ 1) != 0;
}

std::string describe(const Position& position, Move move, const char* what) {
  char text[8];
  moveToText(move, text);
  return std::string(what) + " " + text + " at ctm " + std::to_string(position.ctm);
}

// Collects the faults of one position.
void checkPosition(const Position& position, std::vector<std::string>& faults) {
  Move all[maxGeneratedMoves];
  int allCount = generateAllMoves(position, all);
  std::set<Move> legal;
  for (int i = 0; i < allCount; ++i)
    if (isLegal(position, all[i])) legal.insert(all[i]);

  if (position.inCheck) {
    Move evasions[maxGeneratedMoves];
    int count = generateEvasions(position, evasions);
    std::set<Move> found;
    for (int i = 0; i < count; ++i)
      if (isLegal(position, evasions[i])) found.insert(evasions[i]);
    // Rook and bishop promotions are never evasions.
    for (Move move : legal)
      if (!found.count(move) && moveKindIndex(move) < 6) faults.push_back(describe(position, move, "evasion missing"));
    for (Move move : found)
      if (!legal.count(move)) faults.push_back(describe(position, move, "evasion not in the full list"));
  } else {
    Move captures[maxGeneratedMoves];
    Move quiets[maxGeneratedMoves];
    int captureCount = generateCaptures(position, captures);
    int quietCount = generateQuiets(position, quiets);
    std::multiset<Move> staged(captures, captures + captureCount);
    staged.insert(quiets, quiets + quietCount);
    for (int i = 0; i < allCount; ++i)
      if (moveKindIndex(all[i]) < 6 && staged.count(all[i]) != 1)
        faults.push_back(describe(position, all[i], "not once in captures and quiets"));

    Move checks[maxGeneratedMoves];
    int checkCount = generateQuietChecks(position, checks);
    std::set<Move> checkSet(checks, checks + checkCount);
    for (int i = 0; i < quietCount; ++i) {
      Move move = quiets[i];
      if (moveKindIndex(move) == 3 || !isLegal(position, move)) continue;
      if (checksAfter(position, move) && !checkSet.count(move))
        faults.push_back(describe(position, move, "quiet check missing"));
    }
    for (Move move : checkSet)
      if (isLegal(position, move) && !checksAfter(position, move))
        faults.push_back(describe(position, move, "quiet check that gives no check"));
  }

  // givesCheck is blind only to promotions, castling and en passant.
  for (int i = 0; i < allCount; ++i) {
    Move move = all[i];
    if (moveKindIndex(move) > 1) continue;
    if ((givesCheck(position, move) != 0) != checksAfter(position, move))
      faults.push_back(describe(position, move, "givesCheck differs"));
  }
}

TEST(GeneratorAgreement, StageGeneratorsMatchTheFullListOnRandomGames) {
  std::mt19937 random(11);
  std::vector<std::string> faults;
  static Position line[120];
  int positions = 0;
  for (int row = 0; row < 50; ++row) {
    char copy[160];
    std::memcpy(copy, testFens[row], sizeof copy);
    copy[sizeof copy - 1] = 0;
    char* fields[4];
    int count = 0;
    for (char* token = std::strtok(copy, " "); token && count < 4; token = std::strtok(nullptr, " ")) fields[count++] = token;
    char fen[200];
    std::snprintf(fen, sizeof fen, "%s %s %s %s", fields[0], fields[1], fields[2], fields[3]);
    for (int game = 0; game < 2; ++game) {
      parseFen(line[0], fen);
      for (int ply = 0; ply + 1 < 120; ++ply) {
        const Position& position = line[ply];
        checkPosition(position, faults);
        ++positions;
        Move all[maxGeneratedMoves];
        int allCount = generateAllMoves(position, all);
        std::vector<Move> legal;
        for (int i = 0; i < allCount; ++i)
          if (isLegal(position, all[i])) legal.push_back(all[i]);
        if (legal.empty()) break;
        makeMove(position, line[ply + 1], legal[random() % legal.size()]);
        line[ply + 1].inCheck = kingAttacked(line[ply + 1], sideToMove(line[ply + 1]));
      }
    }
  }
  EXPECT_GT(positions, 5000);
  for (size_t i = 0; i < faults.size() && i < 10; ++i) ADD_FAILURE() << faults[i];
  EXPECT_TRUE(faults.empty()) << faults.size() << " faults";
}

}  // namespace
