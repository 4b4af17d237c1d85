// The game as the client set it: every record from the root position to the
// current one, linked so that the search sees repetitions across the game.
#pragma once

#include <cstdint>

#include "base/types.h"

constexpr int gameStackSize = 2048;

struct Game {
  Position stack[gameStackSize];
  int32_t length = 0;  // index of the current record
  // 1 until the game has been set up for the first time.
  int32_t startPositionPending = 1;
};

extern Game game;

// Why a position can't be a game's root, or null if it can: each side needs
// exactly one king, no pawn on the first or last rank, at most 16 pieces and
// 8 pawns a side and no more pieces than promotions could give, and the side
// not to move must not be in check.
const char* positionDefect(const Position& position);

// Takes away the castling rights whose king or rook isn't at home, and an
// en-passant square that follows no double step the board shows, keys
// included: a FEN that names them gets the position without them.
void dropUnfitRights(Position& position);
