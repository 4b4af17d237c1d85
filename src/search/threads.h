// Helper threads: with Threads above 1 the main search gets company. Each
// helper searches the same root with the same iterative deepening, on its own
// search state and evaluation caches, and the threads meet in the shared hash
// table, where what one finds cuts the others' trees short. The main thread
// alone serves the input, keeps the clock, prints and answers; the helpers
// only look at the stop flag.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "base/types.h"
#include "board/make_move.h"
#include "eval/evaluate.h"
#include "search/search_state.h"

struct HelperThread {
  SearchState state;
  EvalCaches caches;
  // The helper's own node counter, which the main thread adds up; set by the
  // helper before it first waits.
  NodeCounter* counter = nullptr;
  std::thread thread;
};

// The helper threads start when Threads is set and wait between searches.
struct SearchThreads {
  std::vector<std::unique_ptr<HelperThread>> helpers;
  std::mutex mutex;
  std::condition_variable wake;  // a search starts, or the helpers must end
  std::condition_variable idle;  // the last busy helper has finished
  uint64_t searchNumber = 0;     // counts the searches handed to the helpers
  int busy = 0;                  // helpers still searching the current root
  int ready = 0;                 // helpers that have set their counter
  bool ending = false;
  // What the helpers search: copied by each at its start.
  Position root;
  RootMoveList allowed;
  int maxDepth = 1;

  ~SearchThreads();
};

extern SearchThreads searchThreads;

// Ends the helpers there are and starts count - 1 new ones, each with empty
// tables: Threads = count. Only between searches.
void setThreadCount(int count);

// The helpers start on root, each with its own depths. No-op without helpers.
void startHelpers(const Position& root, const RootMoveList& allowed, int maxDepth);

// Stops the helpers and waits until every one is idle; the stop flag is left
// as it was, for the main search to wait on as before.
void stopHelpers();

// Forgets the helpers' history, killers and evaluation caches (a new game).
void forgetHelpersGames();

// The nodes of the search under way: the main thread's and every helper's.
uint64_t nodesOfAllThreads();

// Whether helper helperIndex leaves out iteration depth. Helpers skip depths
// in different patterns, so that they don't all search the same tree at the
// same time and some run ahead of the main search.
bool helperSkipsDepth(int helperIndex, int depth);
