#include "search/threads.h"

#include <bit>
#include <cstring>

#include "base/platform.h"
#include "search/aspiration.h"
#include "search/limits.h"
#include "search/search.h"

SearchThreads searchThreads;

namespace {

// One helper's search of the root: iterative deepening with aspiration
// windows, one line, until the stop flag or the last depth. What it finds
// reaches the main search through the hash table only.
void helperDeepening(HelperThread& helper, Position& root, const RootMoveList& allowed, int maxDepth) {
  SearchState& state = helper.state;
  std::memset(state.killer1, 0, sizeof state.killer1);
  std::memset(state.killer2, 0, sizeof state.killer2);
  Move line[lineLength] = {};
  for (int depth = 1; depth <= maxDepth && !searchLimits.stop; ++depth) {
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
    if (searchLimits.stop) break;
    state.scoreByDepth[depth] = value;
    state.moveByDepth[depth] = line[0];
  }
}

void helperMain(HelperThread& helper) {
  std::unique_lock<std::mutex> lock(searchThreads.mutex);
  helper.counter = &nodeCounter;
  ++searchThreads.ready;
  searchThreads.idle.notify_all();
  uint64_t searched = searchThreads.searchNumber;
  for (;;) {
    searchThreads.wake.wait(lock, [&] { return searchThreads.ending || searchThreads.searchNumber != searched; });
    if (searchThreads.ending) return;
    searched = searchThreads.searchNumber;
    Position root = searchThreads.root;
    const RootMoveList allowed = searchThreads.allowed;
    const int maxDepth = searchThreads.maxDepth;
    lock.unlock();
    helperDeepening(helper, root, allowed, maxDepth);
    lock.lock();
    if (--searchThreads.busy == 0) searchThreads.idle.notify_all();
  }
}

void endHelpers() {
  {
    std::lock_guard<std::mutex> lock(searchThreads.mutex);
    searchThreads.ending = true;
  }
  searchThreads.wake.notify_all();
  for (auto& helper : searchThreads.helpers) helper->thread.join();
  searchThreads.helpers.clear();
  searchThreads.ending = false;
  searchThreads.ready = 0;
}

}  // namespace

SearchThreads::~SearchThreads() {
  // The engine may quit while helpers search: they see the stop and end.
  searchLimits.stop = 1;
  endHelpers();
}

void setThreadCount(int count) {
  endHelpers();
  for (int i = 1; i < count; ++i) {
    auto helper = std::make_unique<HelperThread>();
    helper->state.caches = &helper->caches;
    helper->state.helperIndex = i;
    adviseHugePages(&helper->caches, sizeof helper->caches);
    forgetGameMemory(helper->state);
    searchThreads.helpers.push_back(std::move(helper));
  }
  for (auto& helper : searchThreads.helpers) helper->thread = std::thread(helperMain, std::ref(*helper));
  // Every helper has its counter in place before a search can add them up.
  std::unique_lock<std::mutex> lock(searchThreads.mutex);
  searchThreads.idle.wait(lock, [] { return searchThreads.ready == static_cast<int>(searchThreads.helpers.size()); });
}

void startHelpers(const Position& root, const RootMoveList& allowed, int maxDepth) {
  if (searchThreads.helpers.empty()) return;
  {
    std::lock_guard<std::mutex> lock(searchThreads.mutex);
    searchThreads.root = root;
    searchThreads.allowed = allowed;
    searchThreads.maxDepth = maxDepth;
    // Counts of the last search go before the first line of this one.
    for (auto& helper : searchThreads.helpers) helper->counter->nodes = 0;
    searchThreads.busy = static_cast<int>(searchThreads.helpers.size());
    ++searchThreads.searchNumber;
  }
  searchThreads.wake.notify_all();
}

void stopHelpers() {
  if (searchThreads.helpers.empty()) return;
  const int32_t stopped = searchLimits.stop;
  searchLimits.stop = 1;
  {
    std::unique_lock<std::mutex> lock(searchThreads.mutex);
    searchThreads.idle.wait(lock, [] { return searchThreads.busy == 0; });
  }
  searchLimits.stop = stopped;
}

void forgetHelpersGames() {
  for (auto& helper : searchThreads.helpers) forgetGameMemory(helper->state);
}

uint64_t nodesOfAllThreads() {
  uint64_t nodes = nodeCounter.nodes;
  for (const auto& helper : searchThreads.helpers) nodes += helper->counter->nodes;
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
