#include <gtest/gtest.h>

#include <string>

#include "board/fen.h"
#include "moves/generate.h"

namespace {

// The list as coordinate text, blank-separated, in generation order.
std::string listText(const Move* list, int count) {
  std::string text;
  char buffer[8];
  for (int i = 0; i < count; ++i) {
    moveToText(list[i], buffer);
    if (i) text += ' ';
    text += buffer;
  }
  return text;
}

std::string evasionsText(const Position& p) {
  Move list[maxGeneratedMoves];
  return listText(list, generateEvasions(p, list));
}

TEST(Evasions, KnightCheckFromFenIsFoundByItsPattern) {
  // No move led here, and the en-passant field names a pawn's double step
  // that has nothing to do with the knight on d3.
  for (const char* fen : {"4k3/8/8/8/8/3n4/8/4KB2 w - -", "4k3/8/8/2p5/8/3n4/8/4KB2 w - c6"}) {
    Position p;
    parseFen(p, fen);
    ASSERT_EQ(p.inCheck, 1) << fen;
    EXPECT_EQ(evasionsText(p), "e1d1 e1d2 e1e2 e1f2 f1d3") << fen;
  }
}

}  // namespace
