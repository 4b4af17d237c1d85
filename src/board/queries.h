// Attack and check questions about a position.
#pragma once

#include "base/types.h"

// All squares attacked by colour, defended own pieces included.
Bitboard attackMap(const Position& position, int colour);
// 1 if the king of colour stands on a square the other colour attacks.
int kingInAttackMap(const Position& position, int colour);
// Same answer without building the map; only the low bit of colour is used.
int kingAttacked(const Position& position, int colour);
// 1 if the move (of the side to move, not yet made) gives check by the moved
// piece in its old form or by a line it uncovers. 0 proves nothing.
int givesCheck(const Position& position, Move move);
