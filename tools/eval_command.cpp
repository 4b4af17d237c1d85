// tarvok-tool eval FEN...: the static evaluation of one position, with the
// blended parts that make it up.
#include <cstdio>
#include <cstring>

#include "base/score_pair.h"
#include "board/fen.h"
#include "board/piece_square.h"
#include "commands.h"
#include "eval/evaluate.h"
#include "eval/tables.h"
#include "shell/setoption.h"

int evalCommand(int argc, char** argv) {
  if (argc < 1) {
    std::fprintf(stderr, "usage: tarvok-tool eval FEN-FIELDS...\n");
    return 2;
  }
  char fen[512] = "";
  for (int i = 0; i < argc; ++i) {
    if (i > 0) std::strncat(fen, " ", sizeof fen - std::strlen(fen) - 1);
    std::strncat(fen, argv[i], sizeof fen - std::strlen(fen) - 1);
  }
  rebuildEvaluation();
  Position position;
  parseFen(position, fen);
  fillRootScores(position);
  std::printf("fen %s\n", fen);
  std::printf("pst open %d end %d phase %d\n", scorePairOpen(position.pstScore), scorePairEnd(position.pstScore),
              position.phase);
  std::printf("%d\n", evaluate(position, evalCaches));
  return 0;
}
