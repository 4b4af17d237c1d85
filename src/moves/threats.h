// Two small questions the searches ask about a position.
#pragma once

#include "base/types.h"
#include "moves/picker.h"

// 0 if the piece that just moved threatens nothing worth a look; 2 if it
// attacks something bigger than itself; 1 if it wins an exchange.
int moveThreat(const Position& position);
// Legal replies to check, counted up to 3. made receives the number of
// positions made on the way (legal or not), which the search counts as nodes.
int countEvasions(const Position& position, const MoveHistory& history, int& made);
