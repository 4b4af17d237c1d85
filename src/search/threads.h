// The search threads. The main search runs on a thread of its own, so that
// the shell's input thread stays free to read the client while it searches;
// with Threads above 1 it gets company: each helper searches the same root
// with the same iterative deepening, on its own search state and evaluation
// caches, and the threads meet in the shared hash table, where what one finds
// cuts the others' trees short. The main search alone keeps the clock and
// reports; the helpers only look at the stop flag.
//
// Every search thread is a SearchWorker: it sleeps until it is handed a job,
// runs it, and is idle again; the main search and the helpers start and are
// waited for the same way.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "base/types.h"
#include "eval/evaluate.h"
#include "search/search_state.h"

struct SearchWorker;
using SearchJob = void (*)(SearchWorker& worker);

struct SearchWorker {
  SearchState* state = nullptr;  // mainSearch, or the helper's own
  std::unique_ptr<SearchState> ownState;  // a helper's records
  std::unique_ptr<EvalCaches> ownCaches;
  SearchJob job = nullptr;
  void (*whenIdle)() = nullptr;  // called once the worker is idle again
  uint64_t jobsGiven = 0;  // counts the jobs handed to the worker
  bool busy = false;
  bool ending = false;  // the thread must return
  std::thread thread;
};

struct SearchThreads {
  std::unique_ptr<SearchWorker> main;  // started by the first search handed to it
  std::vector<std::unique_ptr<SearchWorker>> helpers;
  std::mutex mutex;
  std::condition_variable wake;  // a job is handed out, or the workers must end
  std::condition_variable idle;  // a worker has finished its job
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

// Hands job to the main search's thread, which runs it on mainSearch; returns
// at once. Only while that thread is idle. Once the job is done and the
// thread idle again, it calls whenIdle (unless null).
void startMainSearch(SearchJob job, void (*whenIdle)() = nullptr);

// Waits until the main search's thread has finished its job.
void waitForMainSearch();

// True while the main search's thread runs a job.
bool mainSearchBusy();

// The helpers start on root, each with its own depths. No-op without helpers.
void startHelpers(const Position& root, const RootMoveList& allowed, int maxDepth);

// Stops the helpers and waits until every one is idle. The stop flag stays
// set: the main search has finished its deepening when it calls this, and
// what it waits for afterwards is the client's stop, which stopTheSearch
// records apart.
void stopHelpers();

// Forgets the helpers' history, killers and evaluation caches (a new game).
void forgetHelpersGames();

// The nodes of the search under way: the main search's and every helper's.
uint64_t nodesOfAllThreads();

// Whether helper helperIndex leaves out iteration depth. Helpers skip depths
// in different patterns, so that they don't all search the same tree at the
// same time and some run ahead of the main search.
bool helperSkipsDepth(int helperIndex, int depth);
