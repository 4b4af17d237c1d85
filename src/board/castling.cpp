#include "board/castling.h"

void setCastlingRook(CastlingHomes& homes, int colour, int side, Square kingHome, Square rookHome) {
  homes.rightFiles[colour][side] = static_cast<uint8_t>((1u << fileOfSquare(kingHome)) | (1u << fileOfSquare(rookHome)));
}
