// What a client may be shown of a principal variation.
#pragma once

#include "base/types.h"

// Copies the part of line that can be replayed from root into playable and
// returns its length (playable is ended by a 0 and holds lineLength words).
// It ends before the first move that is not legal where it stands, and right
// after the move that repeats a position of the game or the line, that
// completes 100 moves without a capture or a pawn move, or that leaves
// material with which neither side can mate. A node that returns a draw, or a stored bound, hands
// up no line of its own, so the moves a deeper node left behind in an older
// line can follow a perfectly good start: the searches may keep them, since
// only a line's first move feeds them, but a GUI replays every move it is
// shown. Counts no nodes.
int playableLine(const Position& root, const Move* line, Move* playable);
