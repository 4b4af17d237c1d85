// Builds bare Position records for evaluation tests from a list such as
// "Ke6 Pe5 ke8": capitals are white, small letters black. Only the piece
// bitboards, the material key and the turn are filled in.
#pragma once

#include <cctype>
#include <cstring>
#include <sstream>
#include <string>

#include "../support/board_builder.h"
#include "board/keys.h"
#include "board/types.h"

inline Position boardOf(const std::string& pieces, int toMove) {
  Position p{};
  p.ctm = toMove;
  std::istringstream words(pieces);
  std::string word;
  while (words >> word) {
    const int colour = std::isupper(static_cast<unsigned char>(word[0])) ? White : Black;
    const int piece = static_cast<int>(std::strchr(" pnbrqk", std::tolower(word[0])) - " pnbrqk");
    const Bitboard bit = squareBit(testboard::sq(word.c_str() + 1));
    p.pieces[colour][piece] |= bit;
    p.pieces[colour][0] |= bit;
    p.materialKey += materialWeights[colour * 8 + piece];
  }
  return p;
}
