// The position command: the game as the client set it.
#pragma once

#include <cstdint>

// 1 until the game has been set up for the first time.
extern int32_t startPositionPending;

// Makes the start position the game and clears startPositionPending; the
// first pass of uciPoll calls it, whether a line waits or not.
void setUpStartPosition();

// tokens[0] is "position"; count includes it.
void positionCommand(char** tokens, int count);
