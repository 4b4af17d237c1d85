// Counters of the search: how often each search is entered and how often each
// pruning, reduction and extension rule fires. They only count; no search
// reads them. A developer compares them between builds to find the rule
// that makes two node counts differ (tarvok-tool trace).
//
// Only the developer tool's copy of the search counts: it compiles the search
// sources with TARVOK_SEARCH_TRACE defined. In the engine every traceCount
// compiles to nothing, so its hot path carries no counters.
#pragma once

#include <cstdint>

struct SearchTrace {
  // Entries of the searches, and root passes (aspiration re-searches count).
  uint64_t nodeEntries;
  uint64_t pvEntries;
  uint64_t quietEntries;
  uint64_t rootPasses;

  // searchNode, by step.
  uint64_t nodeHorizonTests;       // a threatening quiet horizon node is evaluated
  uint64_t nodeHorizonExtensions;  // ... and gets its extra ply
  uint64_t nodeHashCutoffs;
  uint64_t hopelessReturns;
  uint64_t winningDepthCuts;
  uint64_t nodeIidSearches;
  uint64_t nodeIidNullBlocks;  // the IID result keeps the null move out
  uint64_t staticNullMargins;  // depth <= 5, first static test
  uint64_t staticNullHanging;  // depth <= 5, hanging-piece test
  uint64_t staticNullDeep;     // depth 6 and 7
  uint64_t nullMoveSearches;
  uint64_t nullMoveCutoffs;
  uint64_t nullMoveZugzwangSkips;
  uint64_t razorShallowReturns;
  uint64_t razorDeepSearches;
  uint64_t razorDeepCutoffs;
  uint64_t capturesOnlyNodes;  // the futility margin leaves captures and checks
  uint64_t lateMovePrunes;
  uint64_t underPromotionSkips;
  uint64_t nodeExchangePrunes;
  uint64_t nodeRepetitions;
  uint64_t singleReplyNodes;
  uint64_t nodeCheckExtensions;
  uint64_t queenCheckExtensions;
  uint64_t firstMoveExtensions;
  uint64_t nodeSingularTests;
  uint64_t nodeSingularExtensions;
  uint64_t pawnEndingExtensions;
  uint64_t escapes;
  uint64_t futilityTests;          // beta above the limit: the two tests run
  uint64_t futilityNegativePower;  // ... with 2^s for a negative s
  uint64_t futilityPrunes;
  uint64_t lateFailLows;
  uint64_t nodeReductions;
  uint64_t nodeReductionResearches;
  uint64_t nodeFullSearches;
  uint64_t nodeCutoffs;
  uint64_t nodeFailLows;

  // searchPv.
  uint64_t pvHorizonExtensions;
  uint64_t pvIidSearches;
  uint64_t pvSingleReplyNodes;
  uint64_t pvCheckExtensions;
  uint64_t pvPasserExtensions;
  uint64_t pvCaptureExtensions;
  uint64_t pvSingularTests;
  uint64_t pvSingularExtensions;
  uint64_t pvRescues;
  uint64_t pvReductions;
  uint64_t pvReductionFailLows;
  uint64_t pvZeroWindowSearches;
  uint64_t pvResearches;

  // searchQuiet.
  uint64_t quietHashCutoffs;
  uint64_t quietDepthLimitReturns;
  uint64_t quietStandPats;
  uint64_t quietEvasionPrunes;
  uint64_t quietDeltaPrunes;
  uint64_t quietRecaptureSkips;
  uint64_t quietDroppedQuiets;

  // searchRoot.
  uint64_t rootReductions;
  uint64_t rootReductionFailLows;
  uint64_t rootResearches;

  // The transposition table.
  uint64_t hashProbes;
  uint64_t hashHits;
  uint64_t hashStores;
};

extern SearchTrace searchTrace;

#ifdef TARVOK_SEARCH_TRACE
constexpr bool searchTraced = true;
#else
constexpr bool searchTraced = false;
#endif

// Counts one event of the counter's kind, or none when it didn't happen.
inline void traceCount(uint64_t SearchTrace::*counter, bool happened = true) {
  if constexpr (searchTraced) searchTrace.*counter += happened ? 1 : 0;
}

// The counters after each iteration of the latest search in batch mode,
// running values since the search began, like depthNodes.
extern SearchTrace depthTrace[32];

struct SearchTraceField {
  const char* name;
  uint64_t SearchTrace::*counter;
};

// Every counter with its printed name, in the order of the record; ends with
// a null name.
extern const SearchTraceField searchTraceFields[];
