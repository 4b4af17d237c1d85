#include "shell/position_command.h"

#include "shell/log.h"

int32_t startPositionPending = 1;

void setUpStartPosition() {
  // Not built yet: the game record (gameStack, parseFen of the start
  // position) lands with the position command.
  startPositionPending = 0;
}

void positionCommand(char** tokens, int count) {
  // Not built yet: parsing the FEN or startpos and making the moves lands
  // with the position command.
  (void)tokens;
  logPrintf("position: %d words, not handled yet\n", count);
}
