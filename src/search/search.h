// The searches: quiescence, zero-window node search, open-window PV search,
// the root pass, and the iterative deepening driver around them.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "search/conventions.h"
#include "search/search_state.h"

// Deepest ply the per-ply tables hold; a search that gets there returns a
// static value instead of going deeper.
constexpr int maxSearchPly = 240;

// Each writes its best line into `line`: searchPv and searchRoot a whole line
// of lineLength words, searchQuiet and searchNode only their best move and a
// 0 after it (two words), so their callers' buffers can be that short.
int searchQuiet(SearchState& state, Position& position, int alpha, int beta, int depth, int ply, Move* line);
int searchNode(SearchState& state, Position& position, int beta, int depth, int ply, Move* line, Move excludedMove, int noNull);
int searchPv(SearchState& state, Position& position, int alpha, int beta, int depth, int ply, Move* line);

struct RootMoveList;

int searchRoot(SearchState& state, Position& position, int depth, int alpha, int beta, Move* line, const RootMoveList& allowed,
               uint64_t* firstMoveNodes, uint64_t* otherMoveNodes);

// Counts an entry of the main search and, every 256 entries once the first
// iteration is done, tests the limits. True if the search must end. A helper
// thread's search only reads the stop flag.
bool searchPollSaysStop(SearchState& state);

