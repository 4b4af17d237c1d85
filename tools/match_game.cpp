#include "match_game.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "match_referee.h"

namespace {

// How long an engine may take to answer uci and isready. Generous, since a
// large hash table is cleared at start-up; the game clock hasn't started.
constexpr double handshakeSeconds = 10.0;

std::string firstWord(const std::string& line) {
  std::istringstream stream(line);
  std::string word;
  stream >> word;
  return word;
}

bool waitForWord(EngineProcess& engine, const std::string& word) {
  auto deadline = secondsAfter(MatchClock::now(), handshakeSeconds);
  std::string line;
  while (engine.readLine(line, deadline) == EngineRead::Line)
    if (firstWord(line) == word) return true;
  return false;
}

bool handshake(EngineProcess& engine, const EngineSetup& setup, bool chess960) {
  if (!engine.start(setup) || !engine.send("uci") || !waitForWord(engine, "uciok")) return false;
  if (chess960) engine.send("setoption name UCI_Chess960 value true");
  for (const auto& [name, value] : setup.options) engine.send("setoption name " + name + " value " + value);
  return engine.send("ucinewgame") && engine.send("isready") && waitForWord(engine, "readyok");
}

// The game as it is played: the record, both engines by colour and their clocks.
struct Table {
  const MatchSettings& settings;
  RefereeGame game;
  int engineOf[2];  // engine index by colour
  EngineProcess engines[2];
  double remaining[2];
  GameReport report;

  const std::string& nameOf(int colour) const { return settings.engines[engineOf[colour]].name; }
  EngineTally& tallyOf(int colour) { return report.tally[engineOf[colour]]; }

  void end(const char* result, const std::string& reason, const char* termination) {
    report.result = result;
    report.reason = reason;
    report.termination = termination;
  }
  void lose(int colour, const std::string& reason, const char* termination) {
    end(colour == White ? "0-1" : "1-0", nameOf(colour) + " " + reason, termination);
  }
  void warn(int colour, const OutputCheck& check, const std::string& line, int gameNumber) {
    EngineTally& tally = tallyOf(colour);
    int& count = check.fault == OutputFault::IllegalPvMove    ? tally.illegalPv
                 : check.fault == OutputFault::PvAfterGameEnd ? tally.pvAfterEnd
                                                              : tally.bestmoveMismatches;
    ++count;
    report.logLines.push_back(std::string("Warning; ") + faultPhrase(check.fault) + " - engine " + nameOf(colour) +
                              ", game " + std::to_string(gameNumber) + ", ply " +
                              std::to_string(game.moves.size() + 1) + ": " + check.detail + "; " +
                              positionCommand(game) + "; line: " + line);
  }
  // Asks the side to move for its move and plays it; false once the game
  // has ended on that turn.
  bool playTurn(int gameNumber);
};

bool Table::playTurn(int gameNumber) {
  const int side = sideToMove(game.position);
  EngineProcess& engine = engines[side];
  char go[160];
  auto ms = [](double seconds) { return static_cast<long long>(seconds * 1000); };
  std::snprintf(go, sizeof go, "go wtime %lld btime %lld winc %lld binc %lld", ms(remaining[White]),
                ms(remaining[Black]), ms(settings.incrementSeconds), ms(settings.incrementSeconds));
  bool sent = engine.send(positionCommand(game));
  auto asked = MatchClock::now();
  sent = sent && engine.send(go);
  // Waiting longer than the clock allows would only find a time loss later.
  auto deadline = secondsAfter(asked, remaining[side] + settings.timeMarginSeconds);
  // The lines are judged once the clock has stopped: replaying every line
  // while the engine's time runs would charge the referee's work to the
  // engine whose lines are longest, and at a hundredth of a second a move
  // that is much of its time.
  std::string line, best;
  std::vector<std::string> answer;
  EngineRead read = EngineRead::Closed;
  while (sent && (read = engine.readLine(line, deadline)) == EngineRead::Line) {
    answer.push_back(line);
    std::istringstream words(line);
    std::string word;
    if (words >> word && word == "bestmove") {
      words >> best;
      break;
    }
  }
  double used = std::chrono::duration<double>(MatchClock::now() - asked).count();
  std::string primaryMove;
  for (const std::string& said : answer) {
    OutputCheck check = judgeEngineLine(game, said, primaryMove);
    if (check.fault != OutputFault::None) warn(side, check, said, gameNumber);
  }
  if (read == EngineRead::Closed) {
    ++tallyOf(side).crashes;
    lose(side, "crashed or disconnected", "rules infraction");
    return false;
  }
  // A flag falls even against a bare king: the referee doesn't ask whether
  // the opponent could still have mated, so the user sees every overstep as a loss.
  if (read == EngineRead::Timeout || used > remaining[side] + settings.timeMarginSeconds) {
    ++tallyOf(side).timeLosses;
    char times[96];
    if (read == EngineRead::Timeout)
      std::snprintf(times, sizeof times, "no bestmove within %.0f ms", 1000 * used);
    else
      std::snprintf(times, sizeof times, "%.1f ms used of %.1f", 1000 * used, 1000 * remaining[side]);
    lose(side, std::string("loses on time, ") + times, "time forfeit");
    return false;
  }
  // Within the margin the clock stops at zero rather than going below it.
  remaining[side] = std::max(0.0, remaining[side] - used) + settings.incrementSeconds;
  Move move = findMove(game.position, best, settings.chess960);
  if (!move) {
    ++tallyOf(side).illegalMoves;
    lose(side, "plays an illegal move '" + best + "'", "rules infraction");
    return false;
  }
  playMove(game, move);
  return true;
}

void writeTally(std::ostringstream& text, int engine, const EngineTally& t) {
  text << "tally " << engine << ' ' << t.timeLosses << ' ' << t.illegalMoves << ' ' << t.crashes << ' '
       << t.illegalPv << ' ' << t.pvAfterEnd << ' ' << t.bestmoveMismatches << '\n';
}

}  // namespace

GameReport playGame(const MatchSettings& settings, int index, const std::string& opening) {
  Table table{settings, {}, {index % 2, 1 - index % 2}, {}, {settings.baseSeconds, settings.baseSeconds}, {}};
  startGame(table.game, opening, settings.chess960);
  const int gameNumber = index + 1;
  for (int colour = White; colour <= Black && table.report.result.empty(); ++colour) {
    if (handshake(table.engines[colour], settings.engines[table.engineOf[colour]], settings.chess960)) continue;
    ++table.tallyOf(colour).crashes;
    table.lose(colour, "doesn't answer uci and isready", "rules infraction");
  }
  while (table.report.result.empty()) {
    Ending ending = gameEnding(table.game);
    if (ending == Ending::Checkmate) {
      table.end(sideToMove(table.game.position) == White ? "0-1" : "1-0", endingName(ending), "normal");
    } else if (ending != Ending::None) {
      table.end("1/2-1/2", endingName(ending), "normal");
    } else if (settings.maxMoves > 0 && table.game.moves.size() >= 2u * settings.maxMoves) {
      table.end("1/2-1/2", "move limit", "adjudication");
    } else {
      table.playTurn(gameNumber);
    }
  }
  for (EngineProcess& engine : table.engines) engine.stop();
  table.report.pgn = pgnText(table.game, table.nameOf(White), table.nameOf(Black), table.report.result,
                             table.report.termination, table.report.reason, gameNumber, settings.timeControl);
  return table.report;
}

// One record per line, led by its kind; no field holds a line ending, since
// engine output arrives line by line.
std::string reportText(const GameReport& report) {
  std::ostringstream text;
  text << "result " << report.result << "\nreason " << report.reason << "\ntermination " << report.termination
       << '\n';
  for (int engine = 0; engine < 2; ++engine) writeTally(text, engine, report.tally[engine]);
  for (const std::string& line : report.logLines) text << "log " << line << '\n';
  std::istringstream pgn(report.pgn);
  for (std::string line; std::getline(pgn, line);) text << "pgn " << line << '\n';
  return text.str();
}

GameReport readReport(const std::string& text) {
  GameReport report;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    size_t space = line.find(' ');
    std::string kind = line.substr(0, space);
    std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
    if (kind == "result") report.result = rest;
    if (kind == "reason") report.reason = rest;
    if (kind == "termination") report.termination = rest;
    if (kind == "log") report.logLines.push_back(rest);
    if (kind == "pgn") report.pgn += rest + "\n";
    if (kind == "tally") {
      std::istringstream fields(rest);
      int engine = 2;
      EngineTally t;
      fields >> engine >> t.timeLosses >> t.illegalMoves >> t.crashes >> t.illegalPv >> t.pvAfterEnd >>
          t.bestmoveMismatches;
      if (fields && (engine == 0 || engine == 1)) report.tally[engine] = t;
    }
  }
  return report;
}
