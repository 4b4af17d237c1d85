#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "../support/board_builder.h"
#include "board/exchange.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "moves/generate.h"
#include "moves/picker.h"

namespace {

using testboard::mv;

Position fen(const char* text) {
  Position p;
  parseFen(p, text);
  return p;
}

// Every move the picker hands out, in order, up to the closing 0.
std::vector<Move> drain(const Position& position, int stageSet, Move hashMove = 0, Move killerA = 0,
                        Move killerB = 0) {
  MovePicker picker;
  initPicker(picker, position, stageSet, hashMove, killerA, killerB);
  std::vector<Move> out;
  while (Move m = nextMove(picker)) {
    out.push_back(m);
    if (out.size() > 400) break;
  }
  return out;
}

std::vector<Move> moves(std::initializer_list<Move> list) { return std::vector<Move>(list); }

class PickerTest : public ::testing::Test {
 protected:
  void SetUp() override { std::memset(history, 0, sizeof history); }
  void TearDown() override { std::memset(history, 0, sizeof history); }
};

const char* startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

TEST_F(PickerTest, WithoutHashMoveOrCapturesTheFirstKillerComesFirst) {
  Position p = fen(startFen);
  std::vector<Move> expected = moves({
      mv("g1", "f3"), mv("b1", "c3"),  // the killers
      mv("a2", "a3"), mv("b2", "b3"), mv("c2", "c3"), mv("d2", "d3"), mv("e2", "e3"), mv("f2", "f3"),
      mv("g2", "g3"), mv("h2", "h3"), mv("b1", "a3"), mv("g1", "h3"),
      mv("a2", "a4", KindDoubleStep), mv("b2", "b4", KindDoubleStep), mv("c2", "c4", KindDoubleStep),
      mv("d2", "d4", KindDoubleStep), mv("e2", "e4", KindDoubleStep), mv("f2", "f4", KindDoubleStep),
      mv("g2", "g4", KindDoubleStep), mv("h2", "h4", KindDoubleStep),
  });
  EXPECT_EQ(drain(p, 0, 0, mv("g1", "f3"), mv("b1", "c3")), expected);
}

TEST_F(PickerTest, KillersThatDoNotFitAreDroppedSilently) {
  Position p = fen(startFen);
  // A pawn jump of three squares, and a knight's jump from c1 where a bishop
  // stands: neither can be played, and the next stage answers in the same call.
  MovePicker picker;
  initPicker(picker, p, 0, 0, mv("e2", "e5"), mv("c1", "b3"));
  EXPECT_EQ(nextMove(picker), mv("a2", "a3"));

  std::vector<Move> all = drain(p, 0, 0, mv("e2", "e5"), mv("b1", "c3"));
  ASSERT_EQ(all.size(), 20u);
  EXPECT_EQ(all[0], mv("b1", "c3"));
  EXPECT_EQ(all[1], mv("a2", "a3"));
}

TEST_F(PickerTest, KillerStagesMayRepeatTheHashMoveAndServedCaptures) {
  // A killer equal to the hash move comes a second time; the quiet list then
  // skips it.
  std::vector<Move> all = drain(fen(startFen), 0, mv("g1", "f3"), mv("g1", "f3"));
  ASSERT_EQ(all.size(), 21u);
  EXPECT_EQ(all[0], mv("g1", "f3"));
  EXPECT_EQ(all[1], mv("g1", "f3"));
  int count = 0;
  for (Move m : all) count += m == mv("g1", "f3");
  EXPECT_EQ(count, 2);

  // A killer equal to a capture that the capture stage has already served.
  Position q = fen("7k/8/8/3p4/8/2N5/8/6K1 w - - 0 1");
  std::vector<Move> fromQ = drain(q, 0, 0, mv("c3", "d5"));
  ASSERT_GE(fromQ.size(), 2u);
  EXPECT_EQ(fromQ[0], mv("c3", "d5"));
  EXPECT_EQ(fromQ[1], mv("c3", "d5"));
}

TEST_F(PickerTest, EnPassantHashMoveIsServedAmongTheCapturesUnderItsOwnKey) {
  // Black has just played d7d5 beside the pawn on e5. Generation writes
  // e5d6 (en passant), b7b8q, b7b8n, c3d5; the keys are 14, -2, -2, 28.
  Position p = fen("7k/1P6/8/3pP3/8/2N5/8/6K1 w - d6 0 1");
  Move enPassant = mv("e5", "d6", KindEnPassant);
  std::vector<Move> expected = moves({mv("c3", "d5"), enPassant, mv("b7", "b8", KindPromoteQueen),
                                      mv("b7", "b8", KindPromoteKnight)});
  EXPECT_EQ(drain(p, 3, enPassant), expected);
  EXPECT_EQ(drain(p, 3), expected);
}

TEST_F(PickerTest, LosingCaptureHashMoveIsServedFirstAndOnlyOnce) {
  // Queen takes a pawn defended by a pawn: -8, yet it comes first as the hash
  // move and is not deferred again when the capture list reaches it.
  Position p = fen("6k1/8/4p3/3p4/8/8/8/3QK3 w - - 0 1");
  Move queenTakes = mv("d1", "d5");
  ASSERT_LT(exchangeValue(p, queenTakes, 0), 0);
  std::vector<Move> all = drain(p, 0, queenTakes);
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(all[0], queenTakes);
  int count = 0;
  for (Move m : all) count += m == queenTakes;
  EXPECT_EQ(count, 1);
}

TEST_F(PickerTest, LosingCaptureWaitsForTheQuietMovesOrIsNeverPlayed) {
  Position p = fen("6k1/8/4p3/3p4/8/8/8/3QK3 w - - 0 1");
  Move queenTakes = mv("d1", "d5");

  // Set 0: the quiet moves in generation order (no history), then the capture.
  Move quiets[maxGeneratedMoves];
  int quietCount = generateQuiets(p, quiets);
  std::vector<Move> expected(quiets, quiets + quietCount);
  expected.push_back(queenTakes);
  EXPECT_EQ(drain(p, 0), expected);

  // As a killer it comes straight after the captures, and the deferred
  // stage then knows it has been played.
  std::vector<Move> asKiller = drain(p, 0, 0, queenTakes);
  ASSERT_EQ(asKiller.size(), expected.size());
  EXPECT_EQ(asKiller[0], queenTakes);
  EXPECT_EQ(std::vector<Move>(asKiller.begin() + 1, asKiller.end()),
            std::vector<Move>(expected.begin(), expected.end() - 1));

  // Set 1 plays the one quiet check, then the deferred capture.
  EXPECT_EQ(drain(p, 1), moves({mv("d1", "g4"), queenTakes}));
  // Sets 2 and 3 have no deferred stage: the capture is gone.
  EXPECT_EQ(drain(p, 2), moves({mv("d1", "g4")}));
  EXPECT_EQ(drain(p, 3), moves({}));
}

TEST_F(PickerTest, CapturesByVictimThenAttacker) {
  // Keys: b7a8q and b7a8n 254, e4d5 (pawn takes queen) 158, d1d5 (queen takes
  // queen) 150, g4h5 (pawn takes pawn) 30, d1c2 (queen takes pawn) 22, g2h2
  // (king takes pawn) 20, b7b8q and b7b8n -2. Every capture wins material.
  Position p = fen("r6k/1P6/8/3q3p/4P1P1/8/2p3Kp/3Q4 w - - 0 1");
  std::vector<Move> expected = moves({
      mv("b7", "a8", KindPromoteQueen), mv("b7", "a8", KindPromoteKnight), mv("e4", "d5"), mv("d1", "d5"),
      mv("g4", "h5"), mv("d1", "c2"), mv("g2", "h2"), mv("b7", "b8", KindPromoteQueen),
      mv("b7", "b8", KindPromoteKnight),
  });
  EXPECT_EQ(drain(p, 3), expected);
}

TEST_F(PickerTest, QuietMovesByHistoryRateTiesInGenerationOrder) {
  Position p = fen(startFen);
  history[White][Knight][testboard::sq("f3")] = {3, 3};  // 12288
  history[White][Pawn][testboard::sq("e4")] = {1, 1};    // 8192
  history[White][Pawn][testboard::sq("d3")] = {1, 3};    // 4096
  history[White][Knight][testboard::sq("c3")] = {1, 3};  // 4096, generated after d2d3
  history[Black][Pawn][testboard::sq("h3")] = {9, 0};    // the other colour's row is not read
  std::vector<Move> expected = moves({
      mv("g1", "f3"), mv("e2", "e4", KindDoubleStep), mv("d2", "d3"), mv("b1", "c3"),
      mv("a2", "a3"), mv("b2", "b3"), mv("c2", "c3"), mv("e2", "e3"), mv("f2", "f3"), mv("g2", "g3"),
      mv("h2", "h3"), mv("b1", "a3"), mv("g1", "h3"),
      mv("a2", "a4", KindDoubleStep), mv("b2", "b4", KindDoubleStep), mv("c2", "c4", KindDoubleStep),
      mv("d2", "d4", KindDoubleStep), mv("f2", "f4", KindDoubleStep), mv("g2", "g4", KindDoubleStep),
      mv("h2", "h4", KindDoubleStep),
  });
  EXPECT_EQ(drain(p, 0), expected);
}

TEST_F(PickerTest, QuietChecksPutKnightsFirst) {
  // Generation order: the discovered check e5e6 (bishop c3 behind it), the
  // knight checks g3f5 and g3h5, the rook check a1a7.
  Position p = fen("8/6k1/8/4P3/8/2B3N1/7K/R7 w - - 0 1");
  std::vector<Move> expected = moves({mv("g3", "f5"), mv("g3", "h5"), mv("e5", "e6"), mv("a1", "a7")});
  EXPECT_EQ(drain(p, 2), expected);

  // A black rook on a8 makes a1a7 a losing check and a1a8 a capture: the
  // check waits for the deferred stage of set 1 and is dropped by set 2.
  Position q = fen("r7/6k1/8/4P3/8/2B3N1/7K/R7 w - - 0 1");
  EXPECT_EQ(drain(q, 2), moves({mv("a1", "a8"), mv("g3", "f5"), mv("g3", "h5"), mv("e5", "e6")}));
  EXPECT_EQ(drain(q, 1),
            moves({mv("a1", "a8"), mv("g3", "f5"), mv("g3", "h5"), mv("e5", "e6"), mv("a1", "a7")}));
}

TEST_F(PickerTest, EvasionsLosingTheExchangeAreDeferredKingMovesIncluded) {
  // The rook on e8 checks. Generation: e1d1 e1f1 e1d2 e1e2 e1f2, then the
  // blocks c3e2 and c3e4. e1e2 walks into the rook and c3e4 into the pawn:
  // both come last, in the order they failed.
  Position p = fen("4r2k/8/8/3p4/8/2N5/8/4K3 w - - 0 1");
  std::vector<Move> expected = moves({mv("e1", "d1"), mv("e1", "f1"), mv("e1", "d2"), mv("e1", "f2"),
                                      mv("c3", "e2"), mv("e1", "e2"), mv("c3", "e4")});
  EXPECT_EQ(drain(p, 4), expected);
}

TEST_F(PickerTest, EvasionKeysCapturesThenEnPassantThenQuietByHalfRate) {
  // d7d5 checks the king on e4. Captures of the checker: c3d5 (30012), e4d5
  // twice (30004: once as a king move, once as a capture on the square), the
  // en passant e5d6 (30000), then king steps, e4f5 first by its history.
  Position p = fen("7k/8/8/3pP3/4K3/2N5/8/8 w - d6 0 1");
  history[White][King][testboard::sq("f5")] = {1, 1};
  std::vector<Move> expected = moves({
      mv("c3", "d5"), mv("e4", "d5"), mv("e4", "d5"), mv("e5", "d6", KindEnPassant), mv("e4", "f5"),
      mv("e4", "d3"), mv("e4", "e3"), mv("e4", "f3"), mv("e4", "d4"), mv("e4", "f4"),
  });
  EXPECT_EQ(drain(p, 4), expected);
}

TEST_F(PickerTest, SetZeroServesEveryCaptureAndQuietMoveExactlyOnce) {
  // Along the first ply of a busy position: the hash move and the killers,
  // skipped when the lists reach them, and the deferred captures, served
  // last, add up to the generated lists with nothing lost or doubled.
  Position root = fen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
  Move rootMoves[maxGeneratedMoves];
  int rootCount = generateAllMoves(root, rootMoves);
  for (int i = 0; i < rootCount; ++i) {
    Position child;
    makeMove(root, child, rootMoves[i]);
    Move generated[2 * maxGeneratedMoves];
    int count = generateCaptures(child, generated);
    count += generateQuiets(child, generated + count);
    std::vector<Move> expected(generated, generated + count);
    std::sort(expected.begin(), expected.end());

    Move hashMove = count > 0 ? generated[count - 1] : 0;
    Move killer = count > 1 ? generated[count / 2] : 0;
    std::vector<Move> served = drain(child, 0, hashMove, killer, 0);
    if (killer != 0 && killer != hashMove) {
      auto at = std::find(served.begin(), served.end(), killer);
      ASSERT_NE(at, served.end());
      // A quiet killer comes once; a capture killer comes a second time.
      if (std::count(served.begin(), served.end(), killer) == 2) served.erase(at);
    }
    std::sort(served.begin(), served.end());
    EXPECT_EQ(served, expected) << "after root move " << i;
  }
}

}  // namespace
