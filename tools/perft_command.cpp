// perft DEPTH [FEN...]: the leaf count below each legal root move, in
// generation order, then the total. Without a FEN, the start position.
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/options.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/piece_square.h"
#include "commands.h"
#include "moves/generate.h"
#include "moves/perft.h"

int perftCommand(int argc, char** argv) {
  if (argc < 1 || std::atoi(argv[0]) < 1) {
    std::fprintf(stderr, "usage: tarvok-tool perft DEPTH [FEN...]\n");
    return 2;
  }
  int depth = std::atoi(argv[0]);
  // The shell splits the FEN at its blanks; put them back.
  std::string fen;
  for (int i = 1; i < argc; ++i) {
    if (i > 1) fen += ' ';
    fen += argv[i];
  }
  // makeMove keeps the piece-square sum up to date, so the table must be there.
  initPieceSquare();
  // Castling rights named by rook files (Shredder-FEN) are Chess960's. The
  // FEN may come as one argument or as several: look at its third field.
  std::string castling;
  size_t field = fen.find(' ');
  if (field != std::string::npos) field = fen.find(' ', field + 1);
  if (field != std::string::npos) castling = fen.substr(field + 1, fen.find(' ', field + 1) - field - 1);
  if (castling.find_first_not_of("KQkq-") != std::string::npos) options.chess960 = 1;
  Position root;
  parseFen(root, fen.c_str());

  auto start = std::chrono::steady_clock::now();
  Move list[maxGeneratedMoves];
  const int count = generateLegalMoves(root, list);
  uint64_t total = 0;
  for (int i = 0; i < count; ++i) {
    Position child;
    makeMove(root, child, list[i]);
    uint64_t nodes = perft(child, depth - 1);
    char text[8];
    moveToText(root, list[i], text);
    std::printf("%s: %" PRIu64 "\n", text, nodes);
    total += nodes;
  }
  std::printf("%" PRIu64 "\n", total);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::fprintf(stderr, "%.3f s\n", seconds);
  return 0;
}
