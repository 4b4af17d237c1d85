// The position command: the game as the client set it.
#pragma once

#include <cstdint>

// Makes the start position the game and clears game.startPositionPending; the
// protocol loop calls it before the first command, whether a line waits or not.
void setUpStartPosition();

// tokens[0] is "position"; count includes it.
void positionCommand(char** tokens, int count);
