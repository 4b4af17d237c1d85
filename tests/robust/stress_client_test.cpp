// A careless client: thousands of random lines, many of them malformed, sent
// to the built engine through pipes, with isready after every few. The
// engine has to answer each isready within a few seconds, answer every go it
// accepts with exactly one bestmove, and leave with code 0 on quit.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "../shell/engine_session.h"
#include "../support/book_writer.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "search/book.h"
#include "shell/input_ring.h"
#include "shell/self_test.h"
#include "shell/tokenise.h"
#include "shell/uci.h"

namespace {

constexpr int randomLines = 2400;
constexpr double answerSeconds = 5.0;

// The first word of a line as the engine's dispatcher reads it: the reader
// drops a line longer than its limit whole, a zero byte ends the text, and
// the line ends at its first form feed, line feed or carriage return.
std::string firstWordOf(std::string line) {
  if (line.size() > static_cast<size_t>(longestLine)) return "";
  line = line.substr(0, line.find('\0'));
  line = line.substr(0, line.find_first_of("\f\n\r"));
  std::vector<char> text(line.begin(), line.end());
  text.push_back(0);
  std::vector<char*> tokens(text.size() / 2 + 2);
  return tokenise(text.data(), tokens.data()) > 0 ? tokens[0] : "";
}

bool isCommand(const std::string& word) {
  switch (commandHash(word.c_str())) {
    case hashUci: case hashIsReady: case hashSetOption: case hashPosition:
    case hashGo: case hashStop: case hashPonderHit: case hashQuit:
      return true;
    default:
      return false;
  }
}

int countOf(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

struct StressClient {
  std::mt19937 random{20240611};
  std::string bookPath;
  // An infinite or pondering search waits for this line, sent after a few
  // other lines.
  std::string pendingEnd;
  int linesUntilEnd = 0;

  uint32_t pick(uint32_t n) { return static_cast<uint32_t>(random() % n); }
  template <size_t n>
  const char* oneOf(const char* const (&list)[n]) { return list[pick(n)]; }

  std::vector<std::string> poolFens() {
    std::vector<std::string> fens = {
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
        "r3k2r/pppq1ppp/2n2n2/3pp3/1b1PP3/2N2N2/PPPQ1PPP/R3K2R w KQkq -",
        "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6",
        "8/P6k/8/8/8/8/p6K/8 w - -",
        "7k/5Q2/6K1/8/8/8/8/8 b - -",
        "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq -",
        "4k3/8/8/8/8/8/8/4K3 w - -",
        "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - -",
    };
    for (const auto& row : testFens) {
      char copy[sizeof row];
      std::memcpy(copy, row, sizeof row);
      copy[sizeof row - 1] = 0;
      char* tokens[80];
      if (tokenise(copy, tokens) >= 4)
        fens.push_back(std::string(tokens[0]) + " " + tokens[1] + " " + tokens[2] + " " + tokens[3]);
    }
    return fens;
  }

  // Up to plies random legal moves from the FEN, as text.
  std::string randomGame(const std::string& fen, int plies) {
    std::vector<Position> game(plies + 1);
    parseFen(game[0], fen.c_str());
    std::string moves;
    for (int ply = 0; ply < plies; ++ply) {
      Move list[maxGeneratedMoves];
      int count = generateAllMoves(game[ply], list);
      std::vector<Move> legal;
      for (int i = 0; i < count; ++i) {
        makeMove(game[ply], game[ply + 1], list[i]);
        if (!kingAttacked(game[ply + 1], sideToMove(game[ply]))) legal.push_back(list[i]);
      }
      if (legal.empty()) break;
      Move move = legal[pick(static_cast<uint32_t>(legal.size()))];
      makeMove(game[ply], game[ply + 1], move);
      char text[8];
      moveToText(move, text);
      moves += std::string(" ") + text;
    }
    return moves;
  }

  std::string positionLine() {
    static const std::vector<std::string> fens = poolFens();
    const std::string fen = fens[pick(static_cast<uint32_t>(fens.size()))];
    std::string line = pick(2) ? "position startpos" : "position fen " + fen + (pick(3) ? "" : " 0 1");
    if (pick(4) == 0) return line;
    std::string moves = randomGame(line.find("startpos") != std::string::npos ? startPositionFen : fen,
                                   static_cast<int>(pick(60)));
    static const char* const tails[] = {"", "", "", " e2e5", " zz", " a7a8q", " e1g1", " E7E5", " 0000", " e2e4e5"};
    return line + " moves" + moves + tails[pick(10)];
  }

  std::string badFenLine() {
    static const std::vector<std::string> fens = poolFens();
    std::string board = fens[pick(static_cast<uint32_t>(fens.size()))];
    board = board.substr(0, board.find(' '));
    static const char edits[] = "pnbrqkPNBRQK0123456789/x!?";
    for (uint32_t n = 1 + pick(4); n > 0; --n) {
      uint32_t at = pick(static_cast<uint32_t>(board.size()));
      switch (pick(4)) {
        case 0: board[at] = edits[pick(sizeof edits - 1)]; break;
        case 1: board.insert(at, 1, edits[pick(sizeof edits - 1)]); break;
        case 2: board.erase(at, 1); break;
        default: board += "/8"; break;
      }
    }
    if (pick(8) == 0) board = "8/8/8/8/8/8/8/8";
    // The side field is always w or b: any other letter there is an orderly
    // stop of the engine, not a case of robustness.
    std::string line = "position fen " + board;
    if (pick(5) == 0) return line;
    static const char* const castling[] = {"KQkq", "-", "x", "kqKQKQ", "Kk", "QqZ"};
    static const char* const enPassant[] = {"-", "e3", "e6", "z9", "a", "h8", "e33", "d6"};
    line += std::string(pick(2) ? " w " : " b ") + oneOf(castling) + " " + oneOf(enPassant);
    return pick(2) ? line + " moves" + randomGame(startPositionFen, static_cast<int>(pick(4))) : line;
  }

  std::string goLine() {
    static const char* const bounded[] = {
        "go depth 1", "go depth 2", "go nodes 100", "go nodes 1", "go nodes 2000", "go movetime 10",
        "go movetime 1", "go movetime 0 nodes 300", "go wtime 50 btime 50", "go wtime 1000 btime 900 winc 100 binc 100",
        "go wtime -1000 btime -5 winc -1 binc -1", "go wtime 100 btime 100 movestogo 1", "go btime 80 wtime 20 movestogo 40",
        "go depth 0 wtime 50 btime 50", "go depth -1 wtime 100 btime 100", "go", "go depth", "go nodes", "go wtime",
        "go movestogo", "go searchmoves e2e4 a1a1 zz depth 2", "go searchmoves", "go searchmoves nodes 100",
        "go searchmoves e2e4 d2d4 g1f3 wtime 30", "go depth 99999999999999999999 nodes 300",
        "go nodes 18446744073709551615 depth 1", "go nodes 99999999999999999999999 depth 2",
        "go movetime 99999999999 nodes 200", "go movetime -5", "go fast please depth 1",
        "go depth 2 depth 1 depth", "go\tdepth\t1", "go  depth   2  ",
        "go wtime 10 wtime 20 btime 10 winc 5 binc 5 movestogo 3 movestogo",
    };
    if (linesUntilEnd == 0 && pick(6) == 0) {
      // Searches that only a command ends.
      static const char* const open[] = {"go infinite", "go infinite depth 3", "go ponder", "go ponder wtime 30 btime 30",
                                         "go ponder movetime 10", "go ponder infinite", "go infinite searchmoves e2e4",
                                         "go ponder depth 1 ponderhit"};
      std::string line = oneOf(open);
      pendingEnd = line.find("ponder") != std::string::npos && pick(2) ? "ponderhit" : "stop";
      if (line == "go ponder infinite") pendingEnd = "stop";
      linesUntilEnd = 1 + static_cast<int>(pick(4));
      return line;
    }
    return oneOf(bounded);
  }

  std::string setoptionLine() {
    // Sizes the machine gives at once: a size beyond memory, which keeps the
    // table in use, is tested on its own.
    static const char* const hashValues[] = {"-1", "0", "1", "2", "4", "16", "x", "", "-99999999999999999999",
                                             "-4294967297", "1e3", "0x10", "  8", "17"};
    static const char* const spinNames[] = {"Red depth threshold", "King Safety Aggressiveness", "Drawscore",
                                            "red DEPTH threshold", "KING SAFETY AGGRESSIVENESS"};
    static const char* const spinValues[] = {"0", "-1", "5", "100", "1000", "-1000", "2147483647", "-2147483648",
                                             "99999999999999999999", "abc", "", "7 8 9"};
    static const char* const checkNames[] = {"use lmr", "null move pruning", "deterministic", "Best Line", "USE LMR",
                                             "OwnBook", "Ponder"};
    static const char* const checkValues[] = {"true", "false", "TRUE", "maybe", "", "1", "false true"};
    static const char* const multiPvValues[] = {"1", "2", "3", "0", "-4", "99", "1000", "abc"};
    static const char* const overheadValues[] = {"0", "20", "5000", "30000", "1000000", "-1", "x"};
    switch (pick(11)) {
      case 0: return std::string("setoption name Hash value ") + oneOf(hashValues);
      case 1: return std::string("setoption name ") + oneOf(spinNames) + " value " + oneOf(spinValues);
      case 2: return std::string("setoption name ") + oneOf(checkNames) + " value " + oneOf(checkValues);
      case 3: return std::string("setoption name MultiPV value ") + oneOf(multiPvValues);
      case 4: return std::string("setoption name move overhead milliseconds value ") + oneOf(overheadValues);
      case 5: {
        static const char* const files[] = {"", "/", ".", "/dev/null", "no-such-book.bin", "a b c"};
        std::string file = pick(2) ? bookPath : oneOf(files);
        return "setoption name Book File value " + file;
      }
      case 6: {
        static const char* const odd[] = {"setoption", "setoption name", "setoption value 3", "setoption name value",
                                          "setoption name Hash", "setoption name Drawscore value",
                                          "setoption name No Such Option value 1", "setoption value name Hash",
                                          "setoption name name name value value value"};
        return oneOf(odd);
      }
      default: return std::string("setoption name ") + oneOf(checkNames) + " value " + oneOf(checkValues);
    }
  }

  // Bytes whose first word, as the engine reads it, is no command.
  std::string garbageLine(bool binary) {
    static const char* const words[] = {"ucinewgame", "debug", "on", "register", "later", "Go", "ISREADY", "Quit",
                                        "position2", "gostop", "stopp", "fen", "moves", "startpos", "depth", "e2e4",
                                        "\t", "  ", "\xe9t\xe9", "\x7f", "123", "-1"};
    for (;;) {
      std::string line;
      if (binary) {
        for (uint32_t n = 1 + pick(200); n > 0; --n) {
          char c = static_cast<char>(pick(256));
          if (c != '\n') line += c;
        }
      } else {
        for (uint32_t n = 1 + pick(6); n > 0; --n) line += std::string(oneOf(words)) + (pick(3) ? " " : "");
      }
      if (!isCommand(firstWordOf(line))) return line;
    }
  }

  // Long lines: most of them within the reader's limit and served whole, the
  // last kind beyond it, where the go at its start must not run.
  std::string longLine() {
    auto hex = [&](size_t length) {
      std::string text;
      while (text.size() < length) text += "0123456789abcdef/"[pick(17)];
      return text;
    };
    switch (pick(6)) {
      case 5: return "go depth 1 " + hex(longestLine);
      case 0: return "setoption name Book File value " + hex(9000 + pick(3000));
      case 1: return "position startpos moves" + randomGame(startPositionFen, 2000);
      case 2: {
        std::string line = "go searchmoves";
        while (line.size() < 10000) line += " e2e4 d2d4";
        return line;
      }
      case 3: return "setoption name " + hex(8500) + " value " + hex(100);
      default: return hex(20000 + pick(5000));
    }
  }

  std::string nextLine() {
    if (linesUntilEnd > 0 && --linesUntilEnd == 0) return pendingEnd;
    uint32_t kind = pick(100);
    if (kind < 14) return positionLine();
    if (kind < 20) return badFenLine();
    if (kind < 34) return goLine();
    if (kind < 48) return setoptionLine();
    if (kind < 53) return "stop";
    if (kind < 57) return "ponderhit";
    if (kind < 60) return "uci";
    if (kind < 70) return garbageLine(false);
    if (kind < 76) return garbageLine(true);
    if (kind < 79) return longLine();
    static const char* const odd[] = {"", " ", "\t\t", "\r", "isready\r", "\f", "position", "position fen",
                                      " isready", "stop now", "ponderhit please", "uci extra words",
                                      "position startpos moves", "position startpos moves e2e4 moves e7e5",
                                      "position fen 8/8/8/8/8/8/8/8 w - -", "position startpos\r\nisready"};
    return oneOf(odd);
  }
};

// A book with moves for the start position and after 1.e4, beside records
// that no position has: the engine's book hits take part too.
std::string writeStressBook() {
  using testbook::moveField;
  const uint64_t start = testbook::keyOf(startPositionFen);
  const uint64_t afterE4 = testbook::keyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3");
  std::string path = testing::TempDir() + "stress-book-" + std::to_string(getpid()) + ".bin";
  testbook::writeBook(path, {{start, moveField("e2e4"), 30}, {start, moveField("d2d4"), 20},
                             {start, moveField("g1f3"), 10}, {afterE4, moveField("e7e5"), 5},
                             {afterE4, moveField("c7c5"), 5}, {1, moveField("a1b1"), 1},
                             {~uint64_t{0}, moveField("b1c1"), 3}});
  return path;
}

TEST(StressClient, EveryIsReadyIsAnsweredEveryGoGetsOneBestMoveAndQuitEndsWithZero) {
  StressClient client;
  client.bookPath = writeStressBook();
  // What the engine writes to standard error is shown if the test fails: a
  // sanitizer's report, or the text of a stop.
  const std::string errorPath = testing::TempDir() + "stress-errors-" + std::to_string(getpid()) + ".txt";
  std::remove(errorPath.c_str());
  struct ShowErrors {
    const std::string& path;
    ~ShowErrors() {
      if (testing::Test::HasFailure()) {
        std::ifstream file(path);
        std::stringstream text;
        text << file.rdbuf();
        std::printf("The engine's standard error:\n%s\n", text.str().c_str());
      }
      std::remove(path.c_str());
    }
  } showErrors{errorPath};
  EngineSession engine(TARVOK_ENGINE_PATH, {}, nullptr, errorPath.c_str());
  int goLines = 0;
  int readyChecks = 0;
  int oddIsReady = 0;  // lines such as "isready\r" that the engine reads as isready
  double slowestAnswer = 0.0;
  auto send = [&](const std::string& line) {
    const std::string word = firstWordOf(line);
    if (word == "go") ++goLines;
    if (word == "isready") ++oddIsReady;
    engine.send(line);
  };
  auto checkReady = [&](const std::string& after) {
    auto start = std::chrono::steady_clock::now();
    engine.send("isready");
    ++readyChecks;
    for (; oddIsReady >= 0; --oddIsReady)
      ASSERT_EQ(engine.waitFor("readyok", answerSeconds), "readyok")
          << "no readyok within " << answerSeconds << " s after: " << after.substr(0, 200);
    oddIsReady = 0;
    double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (took > slowestAnswer) slowestAnswer = took;
  };

  send("setoption name Hash value 4");
  int sent = 0;
  while (sent < randomLines) {
    std::string last;
    for (uint32_t n = 1 + client.pick(4); n > 0 && sent < randomLines; --n, ++sent) {
      last = client.nextLine();
      send(last);
    }
    checkReady(last);
    if (testing::Test::HasFatalFailure()) return;
  }
  if (client.linesUntilEnd > 0) send(client.pendingEnd);
  send("stop");
  checkReady("the last stop");
  if (testing::Test::HasFatalFailure()) return;
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(answerSeconds), 0);
  std::remove(client.bookPath.c_str());

  const int refused = countOf(engine.transcript, "info string go refused while a search runs\n");
  EXPECT_EQ(countOf(engine.transcript, "bestmove "), goLines - refused)
      << goLines << " go lines, " << refused << " refused";
  EXPECT_GT(goLines - refused, 200) << "most searches run";
  EXPECT_GT(readyChecks, 700);
  RecordProperty("slowestReadyOkMs", static_cast<int>(slowestAnswer * 1000));
}

}  // namespace
