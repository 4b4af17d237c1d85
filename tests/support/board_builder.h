// Test-only board builder: reads the piece placement and side-to-move fields
// of a FEN and fills the bitboards, the material key and the phase. Nothing
// else of the record is set; castling, en passant and the hash key stay 0.
#pragma once

#include <cstring>

#include "board/keys.h"
#include "board/types.h"

namespace testboard {

constexpr Square sq(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }

inline Move mv(const char* from, const char* to, uint32_t kind = KindNormal) {
  return makeMoveWord(sq(from), sq(to), kind);
}

inline Position fromFen(const char* fen) {
  Position p;
  std::memset(&p, 0, sizeof p);
  int index = 0;  // runs from a8, so square = index ^ 56
  const char* c = fen;
  for (; *c && *c != ' '; ++c) {
    if (*c == '/') continue;
    if (*c >= '1' && *c <= '8') {
      index += *c - '0';
      continue;
    }
    const char* letters = "pnbrqk";
    int colour = (*c >= 'a') ? Black : White;
    char lower = static_cast<char>(colour == Black ? *c : *c - 'A' + 'a');
    int piece = static_cast<int>(std::strchr(letters, lower) - letters) + 1;
    Bitboard bit = squareBit(index ^ 56);
    p.pieces[colour][piece] |= bit;
    p.pieces[colour][0] |= bit;
    p.materialKey += materialWeights[colour * 8 + piece];
    p.phase += phaseWeights[piece];
    ++index;
  }
  if (*c == ' ' && c[1] == 'b') p.ctm = 1;
  return p;
}

}  // namespace testboard
