// Pseudo-legal move generators. Each writes words from list onward and returns
// how many it wrote; capacity is the caller's duty. Order matters: the
// picker's sort is stable and leaves ties in generation order.
#pragma once

#include "base/types.h"

// Room for any list a generator can write in a position reached by legal play.
constexpr int maxGeneratedMoves = 320;

int generateAllMoves(const Position& position, Move* list);
// The legal moves, in the order generateAllMoves writes them: each of its
// moves is made and kept if the mover's king is not left attacked. Every
// make counts a node, as makeMove does.
int generateLegalMoves(const Position& position, Move* list);
// Whether move is one of the position's legal moves, by the same test; if
// so, child is the position after it (inCheck not set). One make, where
// generateLegalMoves makes them all.
bool playIfLegal(const Position& position, Move move, Position& child);
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
