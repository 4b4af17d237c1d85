// match -engine ... -engine ... -tc BASE[+INC] [...]: games between two UCI
// engines, refereed with the engine's own board code, and a summary with the
// Elo difference, the losses by rule and the warnings about engine output.
//
// The board library counts nodes in a global and isn't meant to run in two
// threads of one process, so every running game is a child process of its
// own; it plays the game through and sends its report back on a pipe.
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

#include "board/piece_square.h"
#include "commands.h"
#include "match_game.h"
#include "match_referee.h"

namespace {

constexpr const char* usage =
    "usage: tarvok-tool match -engine name=N cmd=PATH [args=\"A B\"] [\"option.NAME=VALUE\"...]\n"
    "                         -engine name=N cmd=PATH [...] -tc BASE[+INC] [-games N] [-concurrency C]\n"
    "                         [-openings file=EPD [order=sequential|random] [seed=S] [start=K]]\n"
    "                         [-timemargin MS] [-maxmoves N] [-log FILE] [-pgn FILE]\n"
    "                         [-variant standard|fischerandom]\n";

bool readNumber(const std::string& text, double low, double high, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == 0 && value >= low && value <= high;
}

bool readCount(const std::string& text, int low, int& value) {
  double number;
  if (!readNumber(text, low, 1e9, number) || number != std::floor(number)) return false;
  value = static_cast<int>(number);
  return true;
}

// The words of a block flag (-engine, -openings): every following argument
// with an '=' in it, split at the first '=' (option names may hold blanks,
// their values may not start a key).
std::vector<std::pair<std::string, std::string>> blockOf(int argc, char** argv, int& i) {
  std::vector<std::pair<std::string, std::string>> pairs;
  while (i + 1 < argc && argv[i + 1][0] != '-' && std::strchr(argv[i + 1], '=')) {
    std::string word = argv[++i];
    size_t equals = word.find('=');
    pairs.emplace_back(word.substr(0, equals), word.substr(equals + 1));
  }
  return pairs;
}

bool readEngine(const std::vector<std::pair<std::string, std::string>>& pairs, EngineSetup& setup,
                std::string& error) {
  for (const auto& [key, value] : pairs) {
    if (key == "name") {
      setup.name = value;
    } else if (key == "cmd") {
      setup.command = value;
    } else if (key == "args") {
      std::istringstream words(value);
      for (std::string word; words >> word;) setup.arguments.push_back(word);
    } else if (key.rfind("option.", 0) == 0 && key.size() > 7) {
      setup.options.emplace_back(key.substr(7), value);
    } else {
      error = "unknown engine setting '" + key + "'";
      return false;
    }
  }
  if (setup.command.empty()) error = "an engine needs cmd=PATH";
  if (setup.name.empty()) setup.name = setup.command.substr(setup.command.rfind('/') + 1);
  return error.empty();
}

bool readOpenings(const std::vector<std::pair<std::string, std::string>>& pairs, MatchSettings& s,
                  std::string& error) {
  double seed = 0;
  for (const auto& [key, value] : pairs) {
    bool good = true;
    if (key == "file") s.openingsPath = value;
    else if (key == "format") good = value == "epd";
    else if (key == "order") good = (s.randomOrder = value == "random") || value == "sequential";
    else if (key == "seed") good = readNumber(value, 0, 1e18, seed);
    else if (key == "start") good = readCount(value, 1, s.firstOpening);
    else good = false;
    if (!good) error = "bad opening setting '" + key + "=" + value + "'";
  }
  s.seed = static_cast<unsigned long long>(seed);
  return error.empty();
}

bool readTimeControl(const std::string& text, MatchSettings& s) {
  size_t plus = text.find('+');
  s.timeControl = text;
  s.incrementSeconds = 0;
  return readNumber(text.substr(0, plus), 0.001, 1e6, s.baseSeconds) &&
         (plus == std::string::npos || readNumber(text.substr(plus + 1), 0, 1e6, s.incrementSeconds));
}

bool readSettings(int argc, char** argv, MatchSettings& s, std::string& error) {
  int engines = 0;
  for (int i = 0; i < argc && error.empty(); ++i) {
    std::string flag = argv[i];
    bool hasValue = i + 1 < argc;
    std::string value = hasValue ? argv[i + 1] : "";
    double number = 0;
    if (flag == "-engine") {
      if (engines == 2) error = "more than two engines";
      else readEngine(blockOf(argc, argv, i), s.engines[engines++], error);
      continue;
    }
    if (flag == "-openings") {
      readOpenings(blockOf(argc, argv, i), s, error);
      continue;
    }
    bool good = hasValue;
    if (flag == "-tc") good = good && readTimeControl(value, s);
    else if (flag == "-games") good = good && readCount(value, 1, s.games);
    else if (flag == "-concurrency") good = good && readCount(value, 1, s.concurrency);
    else if (flag == "-maxmoves") good = good && readCount(value, 0, s.maxMoves);
    else if (flag == "-timemargin") good = good && readNumber(value, 0, 1e9, number);
    else if (flag == "-log") s.logPath = value;
    else if (flag == "-pgn") s.pgnPath = value;
    else if (flag == "-variant") good = good && ((s.chess960 = value == "fischerandom") || value == "standard");
    else error = "unknown argument '" + flag + "'";
    if (flag == "-timemargin") s.timeMarginSeconds = number / 1000;  // given in milliseconds
    if (!good && error.empty()) error = "bad or missing value for " + flag;
    ++i;
  }
  if (error.empty() && engines != 2) error = "two engines are needed";
  if (error.empty() && s.timeControl.empty()) error = "-tc is needed";
  return error.empty();
}

// Every opening the file holds, checked by the referee; without a file, the
// start position. A line the referee can't start from stops the match
// before it begins, with its number.
bool loadOpenings(const MatchSettings& s, std::vector<std::string>& openings) {
  if (s.openingsPath.empty()) {
    openings.push_back("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    return true;
  }
  std::ifstream file(s.openingsPath);
  if (!file) {
    std::fprintf(stderr, "match: can't read %s\n", s.openingsPath.c_str());
    return false;
  }
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    RefereeGame game;
    std::string defect = startGame(game, line, s.chess960);
    if (!defect.empty()) {
      std::fprintf(stderr, "match: %s:%d: %s\n", s.openingsPath.c_str(), number, defect.c_str());
      return false;
    }
    openings.push_back(line);
  }
  if (openings.empty()) std::fprintf(stderr, "match: %s holds no opening\n", s.openingsPath.c_str());
  if (s.randomOrder) {
    // A shuffle of our own: the standard library's may differ between
    // versions, and a seed must give the same order everywhere.
    std::mt19937_64 random(s.seed);
    for (size_t i = openings.size(); i > 1; --i) std::swap(openings[i - 1], openings[random() % i]);
  }
  return !openings.empty();
}

struct RunningGame {
  int index;
  pid_t pid;
  int pipe;
  std::string text;
};

RunningGame startGameProcess(const MatchSettings& s, int index, const std::string& opening) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {index, -1, -1, ""};
  std::fflush(nullptr);  // or the child would write the parent's buffered output a second time
  pid_t pid = fork();
  if (pid == 0) {
    close(ends[0]);
    std::string text = reportText(playGame(s, index, opening));
    for (size_t done = 0; done < text.size();) {
      ssize_t wrote = write(ends[1], text.data() + done, text.size() - done);
      if (wrote <= 0) break;
      done += static_cast<size_t>(wrote);
    }
    _exit(0);
  }
  close(ends[1]);
  if (pid < 0) close(ends[0]);
  return {index, pid, pid < 0 ? -1 : ends[0], ""};
}

// Totals over the match, from the first engine's side.
struct MatchTotals {
  int games = 0, wins = 0, draws = 0, losses = 0;
  EngineTally tally[2];
};

void addReport(MatchTotals& totals, const GameReport& report, int index) {
  ++totals.games;
  int firstIsWhite = index % 2 == 0;
  if (report.result == "1/2-1/2") ++totals.draws;
  else if ((report.result == "1-0") == firstIsWhite) ++totals.wins;
  else ++totals.losses;
  for (int e = 0; e < 2; ++e) {
    EngineTally& sum = totals.tally[e];
    const EngineTally& t = report.tally[e];
    sum.timeLosses += t.timeLosses;
    sum.illegalMoves += t.illegalMoves;
    sum.crashes += t.crashes;
    sum.illegalPv += t.illegalPv;
    sum.pvAfterEnd += t.pvAfterEnd;
    sum.bestmoveMismatches += t.bestmoveMismatches;
  }
}

// The logistic Elo difference at which the expected score is s.
double eloOf(double s) { return 400.0 * std::log10(s / (1.0 - s)); }

void printSummary(const MatchSettings& s, const MatchTotals& t, FILE* out) {
  const std::string& first = s.engines[0].name;
  const std::string& second = s.engines[1].name;
  int n = t.games;
  double points = t.wins + 0.5 * t.draws;
  double score = n ? points / n : 0.5;
  std::fprintf(out, "Games: %d, %s vs %s: +%d =%d -%d, points %.1f - %.1f (%.1f%%)\n", n, first.c_str(),
               second.c_str(), t.wins, t.draws, t.losses, points, n - points, 100 * score);
  // The error bar takes the variance of the per-game score (1, 1/2, 0) of
  // the first engine, sd/sqrt(n) as the standard error of the mean score,
  // and maps score +/- 1.96 standard errors through the same Elo curve; the
  // half width of that interval is printed.
  double variance = n ? (t.wins * (1 - score) * (1 - score) + t.draws * (0.5 - score) * (0.5 - score) +
                         t.losses * score * score) / n
                      : 0;
  double margin = 1.96 * std::sqrt(variance / std::max(n, 1));
  if (score <= 0 || score >= 1) {
    std::fprintf(out, "Elo %s - %s: %s (no finite estimate from a score of %.0f%%)\n", first.c_str(),
                 second.c_str(), score >= 1 ? "+inf" : "-inf", 100 * score);
  } else if (score - margin <= 0 || score + margin >= 1) {
    std::fprintf(out, "Elo %s - %s: %+.1f +/- inf (95%%)\n", first.c_str(), second.c_str(), eloOf(score));
  } else {
    std::fprintf(out, "Elo %s - %s: %+.1f +/- %.1f (95%%)\n", first.c_str(), second.c_str(), eloOf(score),
                 (eloOf(score + margin) - eloOf(score - margin)) / 2);
  }
  for (int e = 0; e < 2; ++e) {
    const EngineTally& k = t.tally[e];
    std::fprintf(out,
                 "%s: time losses %d, illegal moves %d, crashes %d; warnings: Illegal PV move %d, "
                 "PV continues after game end %d, Bestmove does not match %d\n",
                 s.engines[e].name.c_str(), k.timeLosses, k.illegalMoves, k.crashes, k.illegalPv, k.pvAfterEnd,
                 k.bestmoveMismatches);
  }
}

}  // namespace

int matchCommand(int argc, char** argv) {
  MatchSettings s;
  std::string error;
  if (!readSettings(argc, argv, s, error)) {
    std::fprintf(stderr, "match: %s\n%s", error.c_str(), usage);
    return 2;
  }
  // makeMove keeps the piece-square sum up to date, so the table must be there.
  initPieceSquare();
  std::vector<std::string> openings;
  if (!loadOpenings(s, openings)) return 2;
  FILE* log = s.logPath.empty() ? nullptr : std::fopen(s.logPath.c_str(), "a");
  FILE* pgn = s.pgnPath.empty() ? nullptr : std::fopen(s.pgnPath.c_str(), "a");
  if ((!s.logPath.empty() && !log) || (!s.pgnPath.empty() && !pgn)) {
    std::fprintf(stderr, "match: can't write the log or the PGN file\n");
    return 2;
  }

  MatchTotals totals;
  std::vector<RunningGame> running;
  int next = 0;
  while (next < s.games || !running.empty()) {
    while (next < s.games && static_cast<int>(running.size()) < s.concurrency) {
      // Both games of a pair share their opening, with colours reversed; a
      // match longer than the file starts over at its first opening.
      size_t opening = (static_cast<size_t>(s.firstOpening - 1) + next / 2) % openings.size();
      running.push_back(startGameProcess(s, next, openings[opening]));
      ++next;
    }
    std::vector<pollfd> ready;
    bool failed = false;  // a game whose process didn't start has nothing to wait for
    for (const RunningGame& game : running) {
      ready.push_back({game.pipe, POLLIN, 0});
      failed |= game.pipe < 0;
    }
    poll(ready.data(), ready.size(), failed ? 0 : -1);
    for (size_t i = running.size(); i-- > 0;) {
      RunningGame& game = running[i];
      char buffer[4096];
      ssize_t got = game.pipe < 0 ? 0 : ready[i].revents ? read(game.pipe, buffer, sizeof buffer) : -1;
      if (got > 0) game.text.append(buffer, static_cast<size_t>(got));
      if (got != 0) continue;
      // The end of the pipe: the game is over, or its process failed.
      if (game.pipe >= 0) close(game.pipe);
      if (game.pid > 0) waitpid(game.pid, nullptr, 0);
      GameReport report = readReport(game.text);
      int number = game.index + 1;
      const std::string& white = s.engines[game.index % 2].name;
      const std::string& black = s.engines[1 - game.index % 2].name;
      if (report.result.empty()) {
        std::printf("Game %d: %s - %s: no result, the game's process failed; not counted\n", number,
                    white.c_str(), black.c_str());
      } else {
        addReport(totals, report, game.index);
        std::printf("Game %d: %s - %s %s (%s)\n", number, white.c_str(), black.c_str(), report.result.c_str(),
                    report.reason.c_str());
      }
      if (log) {
        for (const std::string& line : report.logLines) std::fprintf(log, "%s\n", line.c_str());
        std::fprintf(log, "Game %d: %s - %s %s (%s)\n", number, white.c_str(), black.c_str(),
                     report.result.c_str(), report.reason.c_str());
        std::fflush(log);
      }
      if (pgn && !report.result.empty()) std::fprintf(pgn, "%s\n", report.pgn.c_str());
      std::fflush(nullptr);
      running.erase(running.begin() + static_cast<long>(i));
    }
  }
  printSummary(s, totals, stdout);
  if (log) {
    printSummary(s, totals, log);
    std::fclose(log);
  }
  if (pgn) std::fclose(pgn);
  return 0;
}
