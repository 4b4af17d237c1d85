// Legal moves by their text, decided by the engine's own generator: the
// integration tests judge every bestmove with these.
#pragma once

#include <string>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"

// The legal move of position written as text, or 0.
inline Move findLegalMove(const Position& position, const std::string& text) {
  Move list[maxGeneratedMoves];
  int count = generateAllMoves(position, list);
  char moveText[8];
  Position child;
  for (int i = 0; i < count; ++i) {
    moveToText(list[i], moveText);
    if (text != moveText) continue;
    makeMove(position, child, list[i]);
    return kingAttacked(child, sideToMove(position)) ? 0 : list[i];
  }
  return 0;
}

inline int legalMoveCount(const Position& position) {
  Move list[maxGeneratedMoves];
  int count = generateAllMoves(position, list);
  int legal = 0;
  Position child;
  for (int i = 0; i < count; ++i) {
    makeMove(position, child, list[i]);
    legal += !kingAttacked(child, sideToMove(position));
  }
  return legal;
}

// Whether text is a legal move after the moves played from the FEN.
inline bool isLegalMove(const char* fen, const std::string& text, const std::vector<std::string>& played = {}) {
  std::vector<Position> game(played.size() + 1);
  parseFen(game[0], fen);
  for (size_t i = 0; i < played.size(); ++i) {
    Move move = findLegalMove(game[i], played[i]);
    if (!move) return false;
    makeMove(game[i], game[i + 1], move);
  }
  return findLegalMove(game.back(), text) != 0;
}
