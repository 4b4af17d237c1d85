// Two engine processes play a fast game against each other through pipes,
// as a match manager runs them: the test keeps the clock, sends the moves
// and the time left, and judges every answer by the engine's own generator.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double startSeconds = 2.0;
constexpr int incrementMs = 50;
constexpr int pliesCap = 40;

// Plays one game up to mate, stalemate or the ply cap; returns the least time
// that any side had left after a move.
double playGame(EngineSession* players[2], const std::vector<std::string>& opening) {
  std::vector<Position> game(pliesCap + opening.size() + 1);  // records point to their predecessors
  parseFen(game[0], startPositionFen);
  std::string moves;
  size_t ply = 0;
  auto play = [&](const std::string& text) {
    Move move = findLegalMove(game[ply], text);
    if (!move) return false;
    makeMove(game[ply], game[ply + 1], move);
    moves += " " + text;
    ++ply;
    return true;
  };
  for (const std::string& m : opening) EXPECT_TRUE(play(m)) << m;
  double remaining[2] = {startSeconds, startSeconds};
  double leastLeft = startSeconds;
  while (ply < pliesCap && !legalMoves(game[ply]).empty()) {
    const int side = sideToMove(game[ply]);
    const std::string go = "go wtime " + std::to_string(static_cast<int>(remaining[White] * 1000)) + " btime " +
                           std::to_string(static_cast<int>(remaining[Black] * 1000)) + " winc " +
                           std::to_string(incrementMs) + " binc " + std::to_string(incrementMs);
    players[side]->send("position startpos moves" + moves);
    auto asked = Clock::now();
    players[side]->send(go);
    const std::string answer = wordAfter(players[side]->waitFor("bestmove", remaining[side] + 1.0), "bestmove");
    remaining[side] -= std::chrono::duration<double>(Clock::now() - asked).count();
    EXPECT_GT(remaining[side], 0.0) << "out of time at ply " << ply << ": " << go;
    leastLeft = std::min(leastLeft, remaining[side]);
    remaining[side] += incrementMs * 0.001;
    if (!play(answer)) {
      ADD_FAILURE() << "illegal answer '" << answer << "' after position startpos moves" << moves;
      break;
    }
  }
  return leastLeft;
}

TEST(SelfPlay, AFastGameEndsWithLegalMovesAndTimeToSpare) {
  EngineSession white(TARVOK_ENGINE_PATH), black(TARVOK_ENGINE_PATH);
  // As a match manager does before a game: the clock starts only once the
  // engines say they are ready.
  for (EngineSession* engine : {&white, &black}) {
    engine->send("ucinewgame\nisready");
    ASSERT_EQ(engine->waitFor("readyok", 10.0), "readyok");
  }
  EngineSession* players[2] = {&white, &black};
  std::printf("least time left %.3f s\n", playGame(players, {"e2e4", "c7c5"}));
  for (EngineSession* engine : {&white, &black}) {
    EXPECT_EQ(engine->transcript.find("refused"), std::string::npos);
    engine->send("quit");
    EXPECT_EQ(engine->waitForExit(5.0), 0);
  }
}

}  // namespace
