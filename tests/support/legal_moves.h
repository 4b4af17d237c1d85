// Legal moves by their text, decided by the engine's own generator, which
// perft proves: the integration tests judge every bestmove with these.
#pragma once

#include <string>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "moves/generate.h"

inline std::vector<Move> legalMoves(const Position& position) {
  Move list[maxGeneratedMoves];
  return std::vector<Move>(list, list + generateLegalMoves(position, list));
}

// The text of a move of position's game.
inline std::string moveText(const Position& position, Move move) {
  char text[8];
  moveToText(position, move, text);
  return text;
}

// The legal move of position written as text, or 0.
inline Move findLegalMove(const Position& position, const std::string& text) {
  for (Move move : legalMoves(position))
    if (moveText(position, move) == text) return move;
  return 0;
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
