// Three whole adjacent files around each square: the zone the king-safety
// terms look at. An edge file borrows the next file inward, so every zone is
// three files wide.
#pragma once

#include "base/types.h"

extern Bitboard threeFileMask[64];

void fillThreeFileMask();
