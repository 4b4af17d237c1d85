#include "shell/self_test.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/engine_exit.h"
#include "board/fen.h"
#include "book/book.h"
#include "search/limits.h"
#include "search/think.h"
#include "shell/tokenise.h"
#include "shell/uci.h"

// Fifty positions with the move word, score and node count of a depth-13
// search from cleared tables. -makeTestData prints a fresh copy of this table.
char testFens[50][160] = {
  "r4qnk/p1p5/5r1b/3P1b1p/2p2N2/2N4P/PP1QB3/2K2RR1 w - - 341 -19 3019998",
  "5rk1/1npbnppp/3p4/1p1Pp1b1/1P2P3/2P1N3/2BB1PPP/q3RNK1 w - - 256 77 301435",
  "2b1q3/p3b1k1/1p2B2p/4Pp2/1P1r1Pp1/P3N1P1/3Q2P1/6K1 w - - 1317 382 5388900",
  "8/8/pr1ppk1p/R4pP1/8/3K2P1/P3PP2/8 b - - 3046 124 160573",
  "2rr2k1/1pqnbppp/p2p1n2/Pb2p3/4P3/2NNBB2/1PPQ1PPP/R2R2K1 b - - 2138 -29 1010308",
  "3qk2r/1brn1ppp/pp2pn2/8/3N4/Q1N3P1/PP2PPBP/R2R2K1 b k - 3150 -40 799882",
  "3r2k1/1p3ppp/p1q5/P2rpP2/5nPP/5NQ1/1PP2R2/R6K w - - 463 -132 2094279",
  "r5k1/1b1nqp1p/1Pr3p1/p1pp1n2/N7/Q1N1P1P1/P4PBP/2RR2K1 b - - 3305 -161 1153642",
  "1r2qrk1/1b1nb1pp/1p1ppn2/p4p2/N1PB4/1P3PP1/P1Q1P1BP/3RNRK1 b - - 3178 -11 806691",
  "rnbqk2r/ppp2ppp/4pn2/3pP1B1/1b1P4/2N5/PPP2PPP/R2QKBNR b KQkq - 3567 -37 643161",
  "2rqk2r/p3bppp/bpn2n2/2pp4/3P4/1PN2NP1/PB2PPBP/2RQ1RK1 b k - 16190 -2 1012285",
  "r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 12550 8 1281678",
  "r1bqr1k1/1p3pbp/2pp1np1/p1nPp3/2P1P3/2N2N2/PP3PPP/1RBQRBK1 w - - 139 -5 1251546",
  "2k1r3/4rpBp/2p5/p2p4/8/1PPR4/Pb1K1PPP/3R4 w - - 714 96 419029",
  "6k1/3n1pp1/b6p/1n1Pp3/4PP2/rB4PP/3N1B2/2R3K1 b - - 7590 -165 1914271",
  "r2q1rk1/pb1n1pb1/1p5p/6p1/1PNPp3/6B1/P3BPPP/2RQ1RK1 b - - 3309 -59 942478",
  "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 7460 -13 445444",
  "1R5Q/5p1p/6p1/6k1/1P2r2P/4qPK1/6P1/8 b - h3 2469 -252 741462",
  "8/p4r2/1p2k3/3prp1p/3R4/1P3K1P/P2R2P1/8 b - - 3446 70 294752",
  "r2qr1k1/pp3ppp/5b2/1bNp4/3Bn3/1P4P1/P3PPBP/2RQR1K1 b - - 2154 -21 1406458",
  "1r6/5pk1/2pN4/2Pb2p1/1P4P1/5p2/5P1K/1R6 b - - 3502 5 415154",
  "4r3/5k1p/p1b1p3/1pBpP3/1Pn2qP1/3B2K1/P3R3/8 w - - 1437 17 345939",
  "r2qr1k1/pbpn2pp/4pB2/2Pp1p2/8/4QNP1/PP2PPBP/R2R2K1 b - - 3821 -21 744770",
  "6kr/p1r5/q1b1p1p1/Pp1pPn1p/1QpB1P2/2P2BP1/2P1K2P/R5R1 w - - 781 29 713853",
  "4rr2/4Nk1p/B2Pb1p1/2p1QN2/4p3/8/1PP2qPP/R3R2K b - - 2981 -1033 509628",
  "r2qb2r/4n2k/1pn1p1pp/p2pPp2/P1pP1P1N/B1P4R/2P1B1PP/R2Q3K b - - 3582 -90 785230",
  "r6k/p6p/1n3r1q/1b1pQ3/3Pp1p1/4P1P1/P2NNP1P/2R2RK1 w - - 732 310 486281",
  "r3qbk1/1npr1pp1/1p2p2p/p3P3/2PN4/2N2QP1/PP3P1P/3RR1K1 b - - 3643 -31 809461",
  "rnbqkb1r/pp1p1ppp/5n2/1N2p3/2P5/8/PP2PPPP/RNBQKB1R b KQkq - 3307 -13 1062770",
  "r2q1r1k/n1p3pp/p4b2/P7/1p1PRB2/1B3b2/1P3PPP/R2Q2K1 w - - 917 95 2703555",
  "rnbqkb1r/1p2pppp/p2p1n2/6B1/3NP3/2N5/PPP2PPP/R2QKB1R b KQkq - 3372 -18 1716102",
  "rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq c6 405 54 668453",
  "2R2b1B/p3k3/1p2P3/5Pp1/1P2n3/P5P1/3r3p/7K w - - 3762 -289 529540",
  "rnb1k2r/pp4pp/4pp2/q1Pn4/3QP3/P1P2P2/6PP/R1B1KBNR b KQkq e3 3690 -42 828367",
  "rn2k2r/2p2ppp/p3pn2/1P6/4b3/3q1NP1/P4PBP/1RBQK2R w Kkq - 211 -74 867246",
  "r1bq1rk1/pp2bppp/2n1pn2/2pp4/2P5/1P3NP1/PB1PPPBP/RN1Q1RK1 w - - 788 -5 1644808",
  "r3k2r/p1qbnpp1/1p2p2p/n1ppP2P/P2P4/B1P2N2/2PQ1PP1/R3KB1R w KQkq - 332 25 2194066",
  "rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b KQkq d3 7395 -17 411454",
  "8/R5K1/8/8/1p6/1k6/p6P/8 b - - 1097 82 475447",
  "rnbqk2r/ppp1ppbp/5np1/3p4/2PP4/2N3P1/PP2PPBP/R1BQK1NR b KQkq - 2266 17 927791",
  "6k1/1p3p2/p2p2bp/P1rPr3/3QPp2/7P/4R1P1/6K1 w - - 1753 86 838744",
  "1r3rk1/2qbbnnp/3p1pp1/1p1Pp3/2p1P1P1/1PP2NNP/1BB2P1K/R2Q2R1 w - - 204 33 749597",
  "5n1k/6b1/1p3p1p/p1p1p1p1/2P1P1B1/P1Br2P1/5P1P/2R3K1 w - - 398 4 122992",
  "2b5/8/p1p5/1P3kpp/P1P5/3NK3/7P/8 b - - 2721 -19 97855",
  "rnbqkbnr/pp2pppp/3p4/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 82 42 1356114",
  "r4rk1/p4pp1/1p1q3p/2nPp3/2B5/2P1Q3/P4PPP/2R2RK1 w - - 853 4 826271",
  "r2r2k1/4q1p1/2nNp2p/p3p3/4P3/2PQP3/P5PP/3R1RK1 w - - 1178 122 968622",
  "7k/p3bprp/4p3/qp1pP2R/3P4/2r2NP1/P2Q1PK1/7R b - - 4094 64 610467",
  "6k1/5pp1/8/1P6/3N4/4P3/3N4/4K2r w - - 268 181 142708",
  "3r4/q2np1k1/6pp/2pPp1b1/2N1N3/1P4PQ/r3RP2/3R2K1 w - - 1830 195 740181",
};

namespace {

constexpr double searchGoal = 31622400.0;  // a year: time never ends these searches

}  // namespace

void searchBatchPosition(const char* fen, int depth) {
  Position position;
  parseFen(position, fen);
  // A position the book knows is answered from the book, as in play: no
  // search runs, and the results of each depth say so.
  if (Move bookMove = probeBook(position)) {
    for (int d = 0; d < 32; ++d) {
      mainSearch.depthMove[d] = bookMove;
      mainSearch.depthScore[d] = 0;
      mainSearch.depthNodes[d] = 0;
      mainSearch.depthTime[d] = 0.0;
    }
    return;
  }
  ThinkRequest request;
  request.goalSeconds = searchGoal;
  request.hardSeconds = searchGoal;
  request.maxDepth = depth;
  clearTheStop();
  think(mainSearch, position, request);
}

void testRowFen(int row, char* fen) {
  char copy[160];
  char* tokens[80];
  std::memcpy(copy, testFens[row], sizeof copy);
  copy[sizeof copy - 1] = 0;
  int count = tokenise(copy, tokens);
  if (count < 4) fatalExit("Error in data structure\n");
  std::snprintf(fen, 160, "%s %s %s %s", tokens[0], tokens[1], tokens[2], tokens[3]);
}

void searchTestRow(int row, char* fen) {
  testRowFen(row, fen);
  searchBatchPosition(fen, testSearchDepth);
}

int makeTestData() {
  for (int row = 0; row < 50; ++row) {
    char fen[160];
    searchTestRow(row, fen);
    std::printf("  \"%s %d %d %" PRId64 "\",\n", fen, static_cast<int>(mainSearch.depthMove[testSearchDepth]),
                mainSearch.depthScore[testSearchDepth], static_cast<int64_t>(mainSearch.depthNodes[testSearchDepth]));
    std::fflush(stdout);
  }
  std::printf("};\n");
  return 0;
}

int runSelfTest() {
  std::printf("\n");
  std::printf("This self-test verifies that the program is deterministic and also\n");
  std::printf("performs a simple benchmark using 50 random positions.\n\n");
  std::printf("Up to 100 passes are done, and the Sec column gives the average time\n");
  std::printf("to perforam a %d ply search.  mNPS gives millions of nodes per second.\n\n", testSearchDepth);
  std::printf("Pass Progress ...                                          Sec    mNPS\n");
  std::printf("==== ================================================== ====== =======\n");
  uint64_t totalNodes = 0;
  double totalSeconds = 0.0;
  for (int pass = 1; pass <= 100; ++pass) {
    std::printf("%4d ", pass);
    std::fflush(stdout);
    for (int row = 0; row < 50; ++row) {
      char fen[160];
      searchTestRow(row, fen);
      char copy[160];
      char* tokens[80];
      std::memcpy(copy, testFens[row], sizeof copy);
      copy[sizeof copy - 1] = 0;
      int count = tokenise(copy, tokens);
      bool same = count >= 7 && static_cast<long long>(mainSearch.depthMove[testSearchDepth]) == std::atoll(tokens[4]) &&
                  static_cast<long long>(mainSearch.depthScore[testSearchDepth]) == std::atoll(tokens[5]) &&
                  static_cast<long long>(mainSearch.depthNodes[testSearchDepth]) == std::atoll(tokens[6]);
      if (!same) {
        std::printf("Error in position %d - self test failed\n", row);
        return 1;
      }
      for (int depth = 1; depth < testSearchDepth; ++depth) {
        totalNodes += mainSearch.depthNodes[depth];
        totalSeconds += mainSearch.depthTime[depth];
      }
      std::printf(".");
      std::fflush(stdout);
    }
    std::printf("%7.3f %7.4f\n", totalSeconds / (pass * 50.0), totalNodes / totalSeconds * 0.000001);
  }
  std::printf("\n");
  return 0;
}
