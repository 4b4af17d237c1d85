// Boards for the tests: squares and moves by name, positions read by the
// engine's own FEN reader, and the evaluation's tables at a chosen setting.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "base/options.h"
#include "base/score_pair.h"
#include "base/types.h"
#include "board/fen.h"
#include "board/piece_square.h"
#include "eval/tables.h"
#include "search/limits.h"
#include "shell/setoption.h"

namespace testboard {

// Batch mode for the length of a scope, as the self-test searches: silent
// and from cleared tables. The limits and the options return to what they
// were.
struct BatchMode {
  const SearchLimits savedLimits = searchLimits;
  const EngineOptions savedOptions = options;
  BatchMode() { searchLimits.batchMode = 1; }
  ~BatchMode() {
    searchLimits = savedLimits;
    options = savedOptions;
  }
};

constexpr Square sq(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }

inline Move mv(const char* from, const char* to, uint32_t kind = KindNormal) {
  return makeMoveWord(sq(from), sq(to), kind);
}

// A row of the tables that ask a question about a move in a position.
struct MoveCase { const char* fen; Move move; int value; };

inline Position parsed(const char* fen) {
  Position p;
  parseFen(p, fen);
  return p;
}

// A record as a search root has it: parsed, with pstScore and phase filled in.
inline Position rootPosition(const char* fen) {
  Position p = parsed(fen);
  fillRootScores(p);
  return p;
}

inline void useEvaluationTables(int32_t aggressiveness = 6) {
  options.kingSafetyAggressiveness = aggressiveness;
  rebuildEvaluation();
}

// The same position with the colours exchanged: ranks turned over, pieces,
// side to move, castling rights and en-passant square swapped. Move counters
// are dropped.
inline std::string colourMirror(const std::string& fen) {
  std::istringstream fields(fen);
  std::string board, side, castling = "-", enPassant = "-";
  fields >> board >> side >> castling >> enPassant;
  auto swapCase = [](char c) {
    return static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
  };
  std::vector<std::string> ranks;
  std::istringstream rows(board);
  for (std::string rank; std::getline(rows, rank, '/');) ranks.insert(ranks.begin(), rank);
  std::string mirrored;
  for (std::string& rank : ranks) {
    std::transform(rank.begin(), rank.end(), rank.begin(), swapCase);
    mirrored += (mirrored.empty() ? "" : "/") + rank;
  }
  std::transform(castling.begin(), castling.end(), castling.begin(), swapCase);
  const std::string order = "KQkq-";
  std::sort(castling.begin(), castling.end(), [&](char a, char b) { return order.find(a) < order.find(b); });
  if (enPassant != "-") enPassant[1] = static_cast<char>('1' + '8' - enPassant[1]);
  return mirrored + (side == "w" ? " b " : " w ") + castling + " " + enPassant;
}

}  // namespace testboard
