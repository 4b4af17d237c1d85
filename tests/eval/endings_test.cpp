#include "eval/endings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "eval/endgames.h"
#include "test_board.h"

namespace {

class Endings : public ::testing::Test {
 protected:
  void SetUp() override { buildEndingTable(); }
};

const EndingRow* rowOf(const char* pieces) { return findEnding(boardOf(pieces, White).materialKey); }

TEST_F(Endings, FiftyThreeBalancesTakeFiftyThreeRows) {
  int used = 0;
  std::set<uint64_t> keys;
  for (const EndingRow& row : endingTable) {
    if (row.tag == 1) {
      ++used;
      keys.insert(row.key);
    } else {
      EXPECT_EQ(row.tag, -1);
      EXPECT_EQ(row.key, 1u);
      EXPECT_EQ(row.factor, 1.0);
      EXPECT_EQ(row.correction, 0);
      EXPECT_EQ(row.handler, nullptr);
    }
  }
  EXPECT_EQ(used, 53);
  EXPECT_EQ(keys.size(), 53u);
  for (const EndingDefinition* d = endingList; d->name[0] != '-'; ++d) {
    EXPECT_NE(findEnding(endingKey(d->name, false)), nullptr) << d->name;
    EXPECT_NE(findEnding(endingKey(d->name, true)), nullptr) << d->name;
  }
}

TEST_F(Endings, EachColourFindsTheSameBalance) {
  for (const char* pieces : {"Ke1 Qd1 ke8", "Ke1 qd8 ke8"}) {
    const EndingRow* row = rowOf(pieces);
    ASSERT_NE(row, nullptr) << pieces;
    EXPECT_EQ(row->factor, 0.7);
    EXPECT_EQ(row->correction, 0);
  }
  const EndingRow* white = rowOf("Ke1 Rd1 Nc3 ke8 rh8");
  const EndingRow* black = rowOf("Ke1 Rh1 ke8 rd8 nc6");
  ASSERT_NE(white, nullptr);
  ASSERT_NE(black, nullptr);
  EXPECT_EQ(white->factor, 0.2);
  EXPECT_EQ(black->factor, 0.2);
  EXPECT_EQ(white->correction, -2000);
  EXPECT_EQ(black->correction, 2000);
  EXPECT_EQ(rowOf("Ke1 Nb1 Ng1 ke8")->correction, -7000);
  EXPECT_EQ(rowOf("Ke1 ke8 nb8 ng8")->correction, 7000);
  EXPECT_EQ(rowOf("Ke1 Bc1 Bf1 ke8 bc8")->correction, -3000);
  EXPECT_EQ(rowOf("Ke1 Bc1 ke8 bc8 bf8")->correction, 3000);
  EXPECT_EQ(rowOf("Ke1 Rd1 ke8 rd8")->factor, 0.05);
}

TEST_F(Endings, HandlersServeBothColours) {
  EXPECT_EQ(rowOf("Ke1 Pe2 ke8")->handler, endKpk);
  EXPECT_EQ(rowOf("Ke1 ke8 pe7")->handler, endKpk);
  EXPECT_EQ(rowOf("Ke1 Bc1 Nb1 ke8")->handler, endKbnk);
  EXPECT_EQ(rowOf("Ke1 ke8 bc8 nb8")->handler, endKbnk);
  EXPECT_EQ(rowOf("Ke1 Bc1 Pa2 ke8")->handler, endKbpk);
  EXPECT_EQ(rowOf("Ke1 ke8 bc8 pa7")->handler, endKbpk);
  EXPECT_EQ(rowOf("Ke1 Nb1 Pa2 ke8")->handler, endKnpk);
  EXPECT_EQ(rowOf("Ke1 ke8 nb8 pa7")->handler, endKnpk);
  EXPECT_EQ(rowOf("Ke1 Qd1 ke8")->handler, nullptr);
}

TEST_F(Endings, ABalanceEnteredTwiceEndsTheProgram) {
  const EndingDefinition twice[] = {{"Q", 0.7, 0, nullptr}, {"Q", 0.7, 0, nullptr}, {"-", 0.0, 0, nullptr}};
  EXPECT_EXIT(buildEndingTable(twice), ::testing::ExitedWithCode(1), "^Hash conflict in ending tables\n$");
  // A second name for the mirror of an earlier one collides with it as well.
  const EndingDefinition mirrored[] = {{"Rn", 0.2, -1500, nullptr}, {"Nr", 0.2, 1500, nullptr}, {"-", 0.0, 0, nullptr}};
  EXPECT_EXIT(buildEndingTable(mirrored), ::testing::ExitedWithCode(1), "^Hash conflict in ending tables\n$");
}

}  // namespace
