// Pseudo-legal move generators. Each writes words from list onward and returns
// how many it wrote; capacity is the caller's duty. Order matters: the
// picker's sort is stable and leaves ties in generation order.
#pragma once

#include "base/types.h"

// Room for any list a generator can write in a position reached by legal play.
constexpr int maxGeneratedMoves = 320;

int generateAllMoves(const Position& position, Move* list);
int generateCaptures(const Position& position, Move* list);
int generateQuiets(const Position& position, Move* list);
int generateEvasions(const Position& position, Move* list);
int generateQuietChecks(const Position& position, Move* list);
int generateCapturesOn(const Position& position, Move* list, Square square);
int generateMovesTo(const Position& position, Move* list, Bitboard targets);
int generateCastling(const Position& position, int colour, Move* list);
int generateEnPassant(const Position& position, Move* list);
// flags: 1 single step, 2 double step, 3 both.
int generatePawnPushes(Square square, int colour, Bitboard occupied, Move* list, int flags);
// 1 if a stored move (low 16 bits read) can be played here; en passant never.
int isPseudoLegal(const Position& position, Move move);
