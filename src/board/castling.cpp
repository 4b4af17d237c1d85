#include "board/castling.h"

CastlingSetup castlingSetup = {{{7, 0}, {63, 56}},
                               {{whiteShortMask, whiteLongMask}, {blackShortMask, blackLongMask}},
                               castlingSquares,
                               true};

void setStandardCastling() {
  setCastlingRook(White, ShortSide, 4, 7);
  setCastlingRook(White, LongSide, 4, 0);
  setCastlingRook(Black, ShortSide, 60, 63);
  setCastlingRook(Black, LongSide, 60, 56);
}

void setCastlingRook(int colour, int side, Square kingHome, Square rookHome) {
  CastlingSetup& s = castlingSetup;
  s.rookHome[colour][side] = rookHome;
  s.rightMask[colour][side] = squareBit(kingHome) | squareBit(rookHome);
  s.squares = s.rightMask[White][ShortSide] | s.rightMask[White][LongSide] | s.rightMask[Black][ShortSide] |
              s.rightMask[Black][LongSide];
  s.standard = s.rightMask[White][ShortSide] == whiteShortMask && s.rightMask[White][LongSide] == whiteLongMask &&
               s.rightMask[Black][ShortSide] == blackShortMask && s.rightMask[Black][LongSide] == blackLongMask;
}
