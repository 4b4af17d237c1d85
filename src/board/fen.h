// FEN text into a position, moves into coordinate text, and the board block of the log.
#pragma once

#include "base/types.h"

constexpr const char* startPositionFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Fills the record from FEN text; an empty text is the start position.
// pstScore and phase stay 0 until a search fills them in.
void parseFen(Position& position, const char* text);
// Writes "e2e4", "e7e8q", or "null" for 0; buffer holds at least 6 bytes.
// With Chess960 on, castling is written as the king taking its own rook,
// whose home square position (any position of the move's game) knows.
void moveToText(const Position& position, Move move, char* buffer);
// Writes the position to the log, if one is open.
void logBoard(const Position& position);
