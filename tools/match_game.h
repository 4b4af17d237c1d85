// One game of `tarvok-tool match`, played start to end by one process: the
// two engines, the clock, the referee's rulings, and the report that goes
// back to the process that runs the match.
#pragma once

#include <string>
#include <vector>

#include "match_engine.h"

struct MatchSettings {
  EngineSetup engines[2];
  std::string timeControl;  // as given, for the score sheet
  double baseSeconds = 0;
  double incrementSeconds = 0;
  double timeMarginSeconds = 0;
  int games = 2;
  int concurrency = 1;
  int maxMoves = 0;  // 0: no limit
  bool chess960 = false;
  std::string openingsPath;
  bool randomOrder = false;
  unsigned long long seed = 0;
  int firstOpening = 1;
  std::string logPath;
  std::string pgnPath;
};

// Counted per engine over the match.
struct EngineTally {
  int timeLosses = 0;
  int illegalMoves = 0;
  int crashes = 0;
  int illegalPv = 0;
  int pvAfterEnd = 0;
  int bestmoveMismatches = 0;
};

struct GameReport {
  std::string result;       // "1-0", "0-1", "1/2-1/2"; empty if the game never reported
  std::string reason;       // how it ended, in words
  std::string termination;  // the PGN tag: normal, time forfeit, rules infraction, adjudication
  EngineTally tally[2];     // by engine, as in MatchSettings::engines
  std::vector<std::string> logLines;
  std::string pgn;
};

// Plays game `index` (from 0) from the opening; the first engine has white
// in even games. The opening has already been checked by the referee.
GameReport playGame(const MatchSettings& settings, int index, const std::string& opening);

// The report as lines of text for the pipe to the match, and back.
std::string reportText(const GameReport& report);
GameReport readReport(const std::string& text);
