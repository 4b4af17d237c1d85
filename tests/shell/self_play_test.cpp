// Two engine processes play fast games against each other through pipes,
// as a match manager runs them: the test keeps the clock, sends the moves
// and the time left, and judges every answer by the engine's own generator.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "../support/legal_moves.h"
#include "../support/uci_lines.h"
#include "engine_session.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double startSeconds = 2.0;
constexpr double incrementSeconds = 0.05;
constexpr int pliesCap = 60;

struct GameRecord {
  std::vector<Position> positions;  // fixed size: the records point to their predecessors
  std::vector<std::string> moves;
  int reversiblePlies = 0;
  int length = 0;  // index of the current record

  GameRecord() : positions(pliesCap + 16) { parseFen(positions[0], startPositionFen); }

  bool play(const std::string& text) {
    Move move = findLegalMove(positions[length], text);
    if (!move) return false;
    makeMove(positions[length], positions[length + 1], move);
    ++length;
    moves.push_back(text);
    const Position& now = positions[length];
    reversiblePlies = now.capturedPiece || now.movedPiece == Pawn ? 0 : reversiblePlies + 1;
    return true;
  }

  // Third occurrence of the position, with the same side to move, since the
  // last capture or pawn move.
  bool threefold() const {
    int seen = 1;
    for (int back = 2; back <= reversiblePlies; back += 2)
      seen += positions[length - back].hashKey == positions[length].hashKey;
    return seen >= 3;
  }

  std::string positionCommand() const {
    std::string line = "position startpos moves";
    for (const std::string& m : moves) line += " " + m;
    return line;
  }
};

struct Outcome {
  std::string result;
  int plies;
  double leastTimeLeft;
  double longestAnswer;
};

Outcome playGame(EngineSession* players[2], const std::vector<std::string>& opening) {
  GameRecord game;
  for (const std::string& m : opening) EXPECT_TRUE(game.play(m)) << m;
  double remaining[2] = {startSeconds, startSeconds};
  Outcome outcome{"move cap", 0, startSeconds, 0.0};
  while (game.length < pliesCap) {
    if (legalMoveCount(game.positions[game.length]) == 0) {
      outcome.result = game.positions[game.length].inCheck ? "mate" : "stalemate";
      break;
    }
    if (game.threefold()) {
      outcome.result = "repetition";
      break;
    }
    if (game.reversiblePlies >= 100) {
      outcome.result = "50 moves";
      break;
    }
    const int side = sideToMove(game.positions[game.length]);
    EngineSession& engine = *players[side];
    char go[160];
    std::snprintf(go, sizeof go, "go wtime %d btime %d winc %d binc %d", static_cast<int>(remaining[White] * 1000),
                  static_cast<int>(remaining[Black] * 1000), static_cast<int>(incrementSeconds * 1000),
                  static_cast<int>(incrementSeconds * 1000));
    engine.send(game.positionCommand());
    auto asked = Clock::now();
    engine.send(go);
    std::string answer = engine.waitFor("bestmove", remaining[side] + 1.0);
    double used = std::chrono::duration<double>(Clock::now() - asked).count();
    EXPECT_LT(used, remaining[side]) << "out of time at ply " << game.length << ": " << go;
    remaining[side] -= used;
    if (remaining[side] < outcome.leastTimeLeft) outcome.leastTimeLeft = remaining[side];
    if (used > outcome.longestAnswer) outcome.longestAnswer = used;
    remaining[side] += incrementSeconds;
    std::string best = wordAfter(answer, "bestmove");
    if (!game.play(best)) {
      ADD_FAILURE() << "illegal answer '" << answer << "' after " << game.positionCommand();
      outcome.result = "illegal move";
      break;
    }
  }
  outcome.plies = game.length;
  return outcome;
}

// As a match manager does before each game: the clock starts only once the
// engine says it is ready.
void prepare(EngineSession& engine) {
  engine.send("ucinewgame");
  engine.send("isready");
  ASSERT_EQ(engine.waitFor("readyok", 10.0), "readyok");
}

TEST(SelfPlay, FastGamesEndWithLegalMovesAndTimeToSpare) {
  EngineSession first(TARVOK_ENGINE_PATH);
  EngineSession second(TARVOK_ENGINE_PATH);
  for (EngineSession* engine : {&first, &second}) {
    engine->send("uci");
    ASSERT_EQ(engine->waitFor("uciok", 10.0), "uciok");
  }
  const std::vector<std::string> openings[] = {{}, {"e2e4", "c7c5"}};
  for (int g = 0; g < 2; ++g) {
    EngineSession* players[2] = {g % 2 ? &second : &first, g % 2 ? &first : &second};
    prepare(first);
    prepare(second);
    Outcome outcome = playGame(players, openings[g]);
    std::printf("game %d: %s after %d plies, least time left %.3f s, longest answer %.3f s\n", g + 1,
                outcome.result.c_str(), outcome.plies, outcome.leastTimeLeft, outcome.longestAnswer);
    EXPECT_NE(outcome.result, "illegal move");
    EXPECT_GT(outcome.leastTimeLeft, 0.0);
  }
  for (EngineSession* engine : {&first, &second}) {
    EXPECT_EQ(engine->transcript.find("refused"), std::string::npos);
    engine->send("quit");
    EXPECT_EQ(engine->waitForExit(5.0), 0);
  }
}

}  // namespace
