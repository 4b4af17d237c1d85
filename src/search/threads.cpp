#include "search/threads.h"

#include <bit>
#include <cstring>

#include "base/platform.h"
#include "search/aspiration.h"
#include "search/limits.h"
#include "search/search.h"

SearchThreads searchThreads;

namespace {

void workerMain(SearchWorker& worker) {
  std::unique_lock<std::mutex> lock(searchThreads.mutex);
  uint64_t taken = 0;
  for (;;) {
    searchThreads.wake.wait(lock, [&] { return worker.ending || worker.jobsGiven != taken; });
    if (worker.ending) return;
    taken = worker.jobsGiven;
    lock.unlock();
    worker.job(worker);
    lock.lock();
    worker.busy = false;
    searchThreads.idle.notify_all();
    if (worker.whenIdle) {
      lock.unlock();
      worker.whenIdle();
      lock.lock();
    }
  }
}

void startWorker(SearchWorker& worker, SearchJob job, void (*whenIdle)() = nullptr) {
  {
    std::lock_guard<std::mutex> lock(searchThreads.mutex);
    worker.job = job;
    worker.whenIdle = whenIdle;
    worker.busy = true;
    ++worker.jobsGiven;
  }
  searchThreads.wake.notify_all();
}

void waitForWorker(SearchWorker& worker) {
  std::unique_lock<std::mutex> lock(searchThreads.mutex);
  searchThreads.idle.wait(lock, [&] { return !worker.busy; });
}

// One helper's search of the root: iterative deepening with aspiration
// windows, one line, until the stop flag or the last depth. What it finds
// reaches the main search through the hash table only.
void helperDeepening(SearchWorker& helper) {
  SearchState& state = *helper.state;
  Position root = searchThreads.root;
  const RootMoveList allowed = searchThreads.allowed;
  const int maxDepth = searchThreads.maxDepth;
  std::memset(state.killer1, 0, sizeof state.killer1);
  std::memset(state.killer2, 0, sizeof state.killer2);
  Move line[lineLength] = {};
  for (int depth = 1; depth <= maxDepth && !searchSignals.stop; ++depth) {
    // The first iteration builds the root moves, so no helper skips it.
    if (depth > 1 && helperSkipsDepth(state.helperIndex, depth)) {
      state.scoreByDepth[depth] = state.scoreByDepth[depth - 1];
      continue;
    }
    uint64_t firstMoveNodes = 0, otherMoveNodes = 0;
    state.selDepth = 0;
    const AspirationWindow window = firstWindow(state, depth);
    int value = searchRoot(state, root, 2 * depth, window.alpha, window.beta, line, allowed, &firstMoveNodes,
                           &otherMoveNodes);
    value = resolveWindow(state, root, 2 * depth, window, value, line, allowed, &firstMoveNodes, &otherMoveNodes);
    if (searchSignals.stop) break;
    state.scoreByDepth[depth] = value;
    state.moveByDepth[depth] = line[0];
  }
}

void endHelpers() {
  {
    std::lock_guard<std::mutex> lock(searchThreads.mutex);
    for (auto& helper : searchThreads.helpers) helper->ending = true;
  }
  searchThreads.wake.notify_all();
  for (auto& helper : searchThreads.helpers) helper->thread.join();
  searchThreads.helpers.clear();
}

}  // namespace

SearchThreads::~SearchThreads() {
  // The shell lets a search answer before the engine ends, so the threads
  // are idle here; a helper that still ran would see the stop and end.
  searchSignals.stop = 1;
  endHelpers();
  if (!main) return;
  {
    std::lock_guard<std::mutex> lock(mutex);
    main->ending = true;
  }
  wake.notify_all();
  main->thread.join();
}

void setThreadCount(int count) {
  endHelpers();
  for (int i = 1; i < count; ++i) {
    auto helper = std::make_unique<SearchWorker>();
    helper->ownState = std::make_unique<SearchState>();
    helper->ownCaches = std::make_unique<EvalCaches>();
    helper->state = helper->ownState.get();
    helper->state->caches = helper->ownCaches.get();
    helper->state->helperIndex = i;
    adviseHugePages(helper->ownCaches.get(), sizeof(EvalCaches));
    forgetGameMemory(*helper->state);
    searchThreads.helpers.push_back(std::move(helper));
  }
  for (auto& helper : searchThreads.helpers) helper->thread = std::thread(workerMain, std::ref(*helper));
}

void startMainSearch(SearchJob job, void (*whenIdle)()) {
  if (!searchThreads.main) {
    searchThreads.main = std::make_unique<SearchWorker>();
    searchThreads.main->state = &mainSearch;
    searchThreads.main->thread = std::thread(workerMain, std::ref(*searchThreads.main));
  }
  startWorker(*searchThreads.main, job, whenIdle);
}

void waitForMainSearch() {
  if (searchThreads.main) waitForWorker(*searchThreads.main);
}

bool mainSearchBusy() {
  if (!searchThreads.main) return false;
  std::lock_guard<std::mutex> lock(searchThreads.mutex);
  return searchThreads.main->busy;
}

void startHelpers(const Position& root, const RootMoveList& allowed, int maxDepth) {
  if (searchThreads.helpers.empty()) return;
  searchThreads.root = root;
  searchThreads.allowed = allowed;
  searchThreads.maxDepth = maxDepth;
  // Counts of the last search go before the first line of this one.
  for (auto& helper : searchThreads.helpers) helper->state->nodes = 0;
  for (auto& helper : searchThreads.helpers) startWorker(*helper, helperDeepening);
}

void stopHelpers() {
  if (searchThreads.helpers.empty()) return;
  searchSignals.stop = 1;
  for (auto& helper : searchThreads.helpers) waitForWorker(*helper);
}

void forgetHelpersGames() {
  for (auto& helper : searchThreads.helpers) forgetGameMemory(*helper->state);
}

uint64_t nodesOfAllThreads() {
  uint64_t nodes = mainSearch.nodes;
  for (const auto& helper : searchThreads.helpers) nodes += helper->state->nodes;
  return nodes;
}

bool helperSkipsDepth(int helperIndex, int depth) {
  // Helper k skips runs of `size` depths in turn with runs it searches,
  // shifted by k: helper 1 searches the odd depths, helpers 2 and 3 two
  // depths in four, 4 to 7 three in six, and so on.
  const int size = std::bit_width(static_cast<unsigned>(helperIndex));
  const int phase = helperIndex % (2 * size);
  return ((depth + phase) / size) % 2 == 1;
}
