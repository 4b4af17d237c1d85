// A careless client: thousands of random lines, many of them malformed, sent
// to the built engine through pipes, with isready after every few. The
// engine has to answer each isready within a few seconds, answer every go it
// accepts with exactly one bestmove, and leave with code 0 on quit.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "../support/book_writer.h"
#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"
#include "shell/self_test.h"

namespace {

constexpr int randomLines = 2400;
constexpr double answerSeconds = 20.0;  // a hang, not a slow machine

// The first word of a line as the engine promises to read it: a line longer
// than 64 KB is dropped whole, a zero byte or the first form feed, line feed
// or carriage return ends the text, and words are separated by blanks and
// tabs.
std::string firstWordOf(std::string line) {
  if (line.size() > 65536) return "";
  line = line.substr(0, line.find('\0'));
  line = line.substr(0, line.find_first_of("\f\n\r"));
  size_t start = line.find_first_not_of(" \t");
  return start == std::string::npos ? "" : line.substr(start, line.find_first_of(" \t", start) - start);
}

bool isCommand(const std::string& word) {
  for (const char* command : {"uci", "isready", "setoption", "position", "go", "stop", "ponderhit", "quit"})
    if (word == command) return true;
  return false;
}

struct StressClient {
  std::mt19937 random{20240611};
  std::string bookPath;
  // An infinite or pondering search waits for this line, sent after a few
  // other lines.
  std::string pendingEnd;
  int linesUntilEnd = 0;
  std::vector<std::string> fens = {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6",
                                    "r3k2r/pppq1ppp/2n2n2/3pp3/1b1PP3/2N2N2/PPPQ1PPP/R3K2R w KQkq -",
                                    "8/P6k/8/8/8/8/p6K/8 w - -", "7k/5Q2/6K1/8/8/8/8/8 b - -"};

  StressClient() {
    for (const auto& row : testFens) {
      std::istringstream words(row);
      std::string board, side, castling, enPassant;
      if (words >> board >> side >> castling >> enPassant)
        fens.push_back(board + " " + side + " " + castling + " " + enPassant);
    }
  }
  uint32_t pick(uint32_t n) { return static_cast<uint32_t>(random() % n); }
  template <size_t n>
  const char* oneOf(const char* const (&list)[n]) { return list[pick(n)]; }
  const std::string& anyFen() { return fens[pick(static_cast<uint32_t>(fens.size()))]; }

  // Up to plies random legal moves from the FEN, as text.
  std::string randomGame(const std::string& fen, int plies) {
    std::vector<Position> game(plies + 1);
    parseFen(game[0], fen.c_str());
    std::string moves;
    for (int ply = 0; ply < plies; ++ply) {
      std::vector<Move> legal = legalMoves(game[ply]);
      if (legal.empty()) break;
      makeMove(game[ply], game[ply + 1], legal[pick(static_cast<uint32_t>(legal.size()))]);
      moves.append(" ").append(moveText(game[ply], game[ply + 1].lastMove));
    }
    return moves;
  }

  std::string positionLine() {
    const bool start = pick(2);
    const std::string fen = start ? startPositionFen : anyFen();
    std::string line = start ? "position startpos" : "position fen " + fen + (pick(3) ? "" : " 0 1");
    static const char* const tails[] = {"", "", "", " e2e5", " zz", " a7a8q", " e1g1", " E7E5", " 0000", " e2e4e5"};
    return pick(4) ? line + " moves" + randomGame(fen, static_cast<int>(pick(60))) + oneOf(tails) : line;
  }

  // A board from the pool with a few characters changed, inserted or taken
  // out. The side field is always w or b: any other letter there is an
  // orderly stop of the engine, not a case of robustness.
  std::string badFenLine() {
    const std::string& fen = anyFen();
    std::string board = fen.substr(0, fen.find(' '));
    static const char edits[] = "pnbrqkPNBRQK0123456789/x!?";
    for (uint32_t n = 1 + pick(4); n > 0; --n) {
      const uint32_t at = pick(static_cast<uint32_t>(board.size()));
      const char c = edits[pick(sizeof edits - 1)];
      switch (pick(4)) {
        case 0: board[at] = c; break;
        case 1: board.insert(at, 1, c); break;
        case 2: board.erase(at, 1); break;
        default: board += "/8";
      }
    }
    static const char* const castling[] = {"KQkq", "-", "x", "kqKQKQ", "Kk", "QqZ"};
    static const char* const enPassant[] = {"-", "e3", "e6", "z9", "a", "h8", "e33", "d6"};
    std::string line = "position fen " + (pick(8) ? board : "8/8/8/8/8/8/8/8");
    if (pick(5) == 0) return line;
    line += std::string(pick(2) ? " w " : " b ") + oneOf(castling) + " " + oneOf(enPassant);
    return pick(2) ? line + " moves" + randomGame(startPositionFen, static_cast<int>(pick(4))) : line;
  }

  std::string goLine() {
    static const char* const bounded[] = {
        "go depth 1", "go depth 2", "go nodes 1", "go nodes 2000", "go movetime 1", "go movetime 0 nodes 300",
        "go wtime 50 btime 50", "go wtime 1000 btime 900 winc 100 binc 100", "go wtime -1000 btime -5 winc -1 binc -1",
        "go btime 80 wtime 20 movestogo 40", "go depth -1 wtime 100 btime 100", "go", "go depth", "go wtime",
        "go searchmoves e2e4 a1a1 zz depth 2", "go searchmoves nodes 100", "go depth 99999999999999999999 nodes 300",
        "go movetime 99999999999 nodes 200", "go fast please depth 1", "go\tdepth\t1", "go  depth   2  "};
    // Searches that only a command ends, sent after a few more lines.
    static const char* const open[] = {"go infinite", "go infinite depth 3", "go ponder", "go ponder wtime 30 btime 30",
                                       "go ponder movetime 10", "go ponder infinite", "go infinite searchmoves e2e4",
                                       "go ponder depth 1 ponderhit"};
    if (linesUntilEnd > 0 || pick(6) != 0) return oneOf(bounded);
    std::string line = oneOf(open);
    const bool hitEnds = line.find("ponder") != std::string::npos && line != "go ponder infinite";
    pendingEnd = hitEnds && pick(2) ? "ponderhit" : "stop";
    linesUntilEnd = 1 + static_cast<int>(pick(4));
    return line;
  }

  std::string setoptionLine() {
    static const char* const names[] = {"Hash",    "Red depth threshold", "King Safety Aggressiveness", "Drawscore",
                                        "MultiPV", "KING SAFETY AGGRESSIVENESS", "move overhead milliseconds",
                                        "use lmr", "null move pruning", "deterministic", "Best Line", "OwnBook",
                                        "Ponder"};
    static const char* const values[] = {"0", "-1", "1", "2", "16", "100", "1000000", "2147483647", "-2147483648",
                                         "99999999999999999999", "abc", "", "7 8 9", "true", "false", "TRUE", "maybe"};
    static const char* const odd[] = {"setoption", "setoption name", "setoption value 3", "setoption name value",
                                      "setoption name Drawscore value", "setoption value name Hash",
                                      "setoption name No Such Option value 1",
                                      "setoption name name name value value value",
                                      "setoption name Book File value", "setoption name Book File value /",
                                      "setoption name Book File value no-such-book.bin"};
    if (pick(4) == 0) return pick(2) ? "setoption name Book File value " + bookPath : oneOf(odd);
    std::string name = oneOf(names), value = oneOf(values);
    // Sizes the machine gives at once: a size beyond memory, which keeps the
    // table in use, is tested on its own.
    return "setoption name " + name + " value " + (name == "Hash" && value.size() > 3 ? "4" : value);
  }

  // Bytes whose first word, as the engine reads it, is no command.
  std::string garbageLine(bool binary) {
    static const char* const words[] = {"ucinewgame", "debug", "on", "register", "later", "Go", "ISREADY", "Quit",
                                        "position2", "gostop", "stopp", "fen", "moves", "startpos", "depth", "e2e4",
                                        "\t", "  ", "\xe9t\xe9", "\x7f", "123", "-1"};
    for (;;) {
      std::string line;
      for (uint32_t n = 1 + pick(binary ? 200 : 6); n > 0; --n) {
        if (!binary) line += std::string(oneOf(words)) + (pick(3) ? " " : "");
        else if (char c = static_cast<char>(pick(256)); c != '\n') line += c;
      }
      if (!isCommand(firstWordOf(line))) return line;
    }
  }

  // Long lines: most within the reader's limit and served whole, some beyond
  // it, where the command at their start must not run.
  std::string longLine() {
    std::string hex;
    const size_t length = pick(4) ? 9000 + pick(12000) : 65536;
    while (hex.size() < length) hex += "0123456789abcdef/"[pick(17)];
    static const char* const heads[] = {"setoption name Book File value ", "setoption name ", "go searchmoves ", "",
                                        "position startpos moves", "go depth 1 "};
    const std::string head = oneOf(heads);
    return head + (head == "position startpos moves" ? randomGame(startPositionFen, 2000) : hex);
  }

  std::string nextLine() {
    if (linesUntilEnd > 0 && --linesUntilEnd == 0) return pendingEnd;
    static const char* const odd[] = {"", " \t", "\r", "isready\r", "\f", "position", "position fen", " isready",
                                      "stop now", "ponderhit please", "uci extra words", "stop", "ponderhit",
                                      "position startpos moves e2e4 moves e7e5", "position fen 8/8/8/8/8/8/8/8 w - -"};
    uint32_t kind = pick(100);
    if (kind < 14) return positionLine();
    if (kind < 20) return badFenLine();
    if (kind < 34) return goLine();
    if (kind < 48) return setoptionLine();
    if (kind < 64) return garbageLine(kind >= 58);
    return kind < 67 ? longLine() : oneOf(odd);
  }
};

TEST(StressClient, EveryIsReadyIsAnsweredEveryGoGetsOneBestMoveAndQuitEndsWithZero) {
  StressClient client;
  // A book with moves for the start position and after 1.e4, beside records
  // that no position has: the engine's book hits take part too.
  using testbook::moveField;
  const uint64_t start = testbook::keyOf(startPositionFen);
  const uint64_t afterE4 = testbook::keyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3");
  client.bookPath = testing::TempDir() + "stress-book-" + std::to_string(getpid()) + ".bin";
  testbook::writeBook(client.bookPath, {{start, moveField("e2e4"), 30}, {start, moveField("d2d4"), 20},
                                        {start, moveField("g1f3"), 10}, {afterE4, moveField("e7e5"), 5},
                                        {afterE4, moveField("c7c5"), 5}, {1, moveField("a1b1"), 1},
                                        {~uint64_t{0}, moveField("b1c1"), 3}});
  EngineSession engine(TARVOK_ENGINE_PATH);
  int goLines = 0, readyChecks = 0;
  int oddIsReady = 0;  // lines such as "isready\r" that the engine reads as isready
  auto send = [&](const std::string& line) {
    const std::string word = firstWordOf(line);
    goLines += word == "go";
    oddIsReady += word == "isready";
    engine.send(line);
  };
  auto checkReady = [&](const std::string& batch) {
    engine.send("isready");
    ++readyChecks;
    for (; oddIsReady >= 0; --oddIsReady)
      ASSERT_EQ(engine.waitFor("readyok", answerSeconds), "readyok")
          << "no readyok within " << answerSeconds << " s after:\n" << batch;
    oddIsReady = 0;
  };

  send("setoption name Hash value 4");
  for (int sent = 0; sent < randomLines && !testing::Test::HasFatalFailure();) {
    std::string batch;  // the lines since the last isready, each cut to 100 bytes, for the message
    for (uint32_t n = 1 + client.pick(4); n > 0 && sent < randomLines; --n, ++sent) {
      const std::string line = client.nextLine();
      send(line);
      batch += line.substr(0, 100) + "\n";
    }
    checkReady(batch);
  }
  if (client.linesUntilEnd > 0) send(client.pendingEnd);
  send("stop");
  if (!testing::Test::HasFatalFailure()) checkReady("the last stop");
  // The searches held back behind others run in turn: each answers, the
  // ones that only a command ends at a stop.
  for (int round = 0; round < 4000 && countOf(engine.transcript, "bestmove ") < goLines; ++round) {
    engine.send("stop");
    engine.waitFor("bestmove", 0.05);
  }
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(answerSeconds), 0);
  std::remove(client.bookPath.c_str());
  EXPECT_EQ(countOf(engine.transcript, "bestmove "), goLines) << goLines << " go lines";
  EXPECT_GT(goLines, 150);
  EXPECT_GT(readyChecks, 700);
  // A sanitizer's report, or the text of a stop.
  if (testing::Test::HasFailure()) std::printf("The engine's standard error:\n%s\n", engine.errors().c_str());
}

}  // namespace
