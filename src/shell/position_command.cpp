#include "shell/position_command.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "base/log.h"
#include "board/castling.h"
#include "board/fen.h"
#include "board/keys.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "shell/game.h"

Game game;

const char* positionDefect(const Position& position) {
  for (int colour = White; colour <= Black; ++colour) {
    if (popCount(position.pieces[colour][King]) != 1) return "each side needs exactly one king";
    if (popCount(position.pieces[colour][0]) > 16) return "a side has more than 16 pieces";
    // The evaluation's tables end where legal play ends: eight pawns, and no
    // more pieces than the missing pawns could have promoted to.
    const int pawns = popCount(position.pieces[colour][Pawn]);
    int promoted = 0;
    for (int piece = Knight; piece <= Queen; ++piece) {
      const int extra = popCount(position.pieces[colour][piece]) - (piece == Queen ? 1 : 2);
      if (extra > 0) promoted += extra;
    }
    if (pawns > 8) return "a side has more than 8 pawns";
    if (promoted > 8 - pawns) return "a side has more pieces than promotions could give";
  }
  if ((position.pieces[White][Pawn] | position.pieces[Black][Pawn]) & backRanks) return "a pawn stands on the first or last rank";
  if (kingInAttackMap(position, sideToMove(position) ^ 1)) return "the side not to move is in check";
  return nullptr;
}

void dropUnfitRights(Position& position) {
  Position& p = position;
  // A right stays only while its king and its rook stand at home: making a
  // castling move moves them without looking.
  Bitboard moved = p.moved;
  for (int colour : {White, Black}) {
    for (int side : {ShortSide, LongSide}) {
      const Square rook = castlingRookHome(p.castling, colour, side);
      const Square king = castlingKingHome(p.castling, colour, side);
      if (!(p.pieces[colour][King] & squareBit(king))) moved |= squareBit(king);
      if (!(p.pieces[colour][Rook] & squareBit(rook))) moved |= squareBit(rook);
    }
  }
  p.hashKey ^= castlingKey(p.castling, p.moved) ^ castlingKey(p.castling, moved);
  p.moved = moved;

  if (!p.epBit) return;
  // The capture en passant takes a pawn that has just crossed the target
  // square: that pawn and the two empty squares behind it must be there.
  const int mover = sideToMove(p);
  const Square target = lowestSquare(p.epBit);
  const Square pawn = mover == White ? target - 8 : target + 8;
  const Square origin = mover == White ? target + 8 : target - 8;
  const Bitboard occupied = p.pieces[White][0] | p.pieces[Black][0];
  if (rankOfSquare(target) == (mover == White ? 5 : 2) && (p.pieces[mover ^ 1][Pawn] & squareBit(pawn)) &&
      !(occupied & (squareBit(target) | squareBit(origin))))
    return;
  p.hashKey ^= enPassantKey(target);
  p.epBit = 0;
  p.lastMove = 0;
}

void setUpStartPosition() {
  game.length = 0;
  parseFen(game.stack[0], startPositionFen);
  game.startPositionPending = 0;
}

namespace {

// Plays one move text on the current record. A text that matches no move, a
// move that leaves the mover's king attacked and a move beyond the stack's
// room all end the move list: the game stays at the last good position.
bool playMoveText(const char* text) {
  if (game.length + 1 >= gameStackSize) {
    logPrintf("position: no room for move %s, the game stops before it\n", text);
    return false;
  }
  const Position& current = game.stack[game.length];
  Move list[maxGeneratedMoves];
  const int count = generateLegalMoves(current, list);
  char moveText[8];
  for (int i = 0; i < count; ++i) {
    moveToText(current, list[i], moveText);
    if (strcasecmp(moveText, text) != 0) continue;
    Position& next = game.stack[game.length + 1];
    makeMove(current, next, list[i]);
    next.inCheck = kingInAttackMap(next, sideToMove(next));
    ++game.length;
    return true;
  }
  logPrintf("position: move %s refused, the game stops before it\n", text);
  return false;
}

}  // namespace

namespace {

// A position the engine can't set up is refused and the game is kept: the
// client hears why, and its next go searches the game it had.
void refusePosition(const char* why) {
  std::printf("info string position refused: %s\n", why);
  std::fflush(stdout);
  logPrintf("position refused: %s\n", why);
}

}  // namespace

void positionCommand(char** tokens, int count) {
  // A bare "position", or one with neither startpos nor fen, has nothing to
  // set up.
  if (count < 2 || (std::strcmp(tokens[1], "startpos") != 0 && std::strcmp(tokens[1], "fen") != 0)) {
    refusePosition("position needs startpos or fen");
    return;
  }
  // The side to move is w or b (or left out: white).
  if (std::strcmp(tokens[1], "fen") == 0 && count > 3 && tokens[3][0] != 'w' && tokens[3][0] != 'b') {
    refusePosition("the side to move must be w or b");
    return;
  }
  char fen[256];
  int scanFrom;
  if (std::strcmp(tokens[1], "startpos") == 0) {
    std::snprintf(fen, sizeof fen, "%s", startPositionFen);
    scanFrom = 2;
  } else {
    // Board, side, castling and en passant; a longer text is cut.
    size_t used = 0;
    fen[0] = 0;
    for (int i = 2; i <= 5 && i < count && used < sizeof fen; ++i)
      used += std::snprintf(fen + used, sizeof fen - used, i == 2 ? "%s" : " %s", tokens[i]);
    scanFrom = 5;
  }

  Position root;
  parseFen(root, fen);
  dropUnfitRights(root);
  if (const char* defect = positionDefect(root)) {
    refusePosition(defect);
    return;
  }
  game.length = 0;
  game.stack[0] = root;

  int i = scanFrom;
  while (i < count && std::strcmp(tokens[i], "moves") != 0) ++i;
  for (++i; i < count; ++i)
    if (!playMoveText(tokens[i])) break;
}
