#include "board/piece_square.h"

#include "base/score_pair.h"

ScorePair pieceSquare[2 * 8 * 64];

namespace {

struct SourceCell {
  int open;
  int end;
};

// Source tables for files a to d, rank 8 first; files e to h mirror d to a.
using SourceTable = SourceCell[8][4];

constexpr SourceTable knightSource = {
    {{-55, -40}, {-3, -3}, {-1, -1}, {0, 0}},
    {{-5, -5}, {-1, -1}, {2, 2}, {3, 3}},
    {{-4, -4}, {0, 0}, {3, 3}, {5, 5}},
    {{-4, -4}, {0, 0}, {3, 3}, {5, 5}},
    {{-5, -5}, {-1, -1}, {2, 2}, {3, 3}},
    {{-7, -7}, {-3, -3}, {-1, -1}, {0, 0}},
    {{-10, -10}, {-7, -7}, {-5, -5}, {-4, -4}},
    {{-15, -15}, {-12, -12}, {-10, -10}, {-9, -9}},
};

constexpr SourceTable bishopSource = {
    {{-4, -1}, {-5, -2}, {-5, -2}, {-4, -1}},
    {{-6, -2}, {3, 1}, {5, 2}, {2, 1}},
    {{-7, -2}, {4, 1}, {6, 2}, {5, 2}},
    {{-7, -2}, {0, 0}, {4, 1}, {9, 3}},
    {{-6, -2}, {1, 0}, {5, 2}, {10, 3}},
    {{-6, -2}, {3, 1}, {5, 2}, {4, 1}},
    {{-5, -2}, {2, 1}, {2, 1}, {-1, 0}},
    {{-3, -1}, {-6, -2}, {-8, -3}, {-9, -3}},
};

constexpr SourceTable rookSource = {
    {{-3, 0}, {0, 0}, {3, 0}, {6, 0}},
    {{-3, 2}, {0, 2}, {3, 2}, {6, 2}},
    {{-3, 2}, {0, 2}, {3, 2}, {6, 2}},
    {{-4, 1}, {-1, 1}, {2, 1}, {5, 1}},
    {{-4, 0}, {-1, 0}, {2, 0}, {5, 0}},
    {{-4, 0}, {-1, 0}, {2, 0}, {5, 0}},
    {{-4, 0}, {-1, 0}, {2, 0}, {5, 0}},
    {{-4, 0}, {-1, 0}, {2, 0}, {5, 0}},
};

constexpr SourceTable queenSource = {
    {{-6, -6}, {-6, -6}, {-6, -6}, {-6, -6}},
    {{-6, -6}, {0, 0}, {0, 0}, {0, 0}},
    {{-6, -6}, {0, 0}, {5, 5}, {5, 5}},
    {{-6, -6}, {0, 0}, {5, 5}, {9, 9}},
    {{-6, -6}, {0, 0}, {5, 5}, {9, 9}},
    {{-6, -6}, {0, 0}, {5, 5}, {5, 5}},
    {{-6, -6}, {0, 0}, {0, 0}, {0, 0}},
    {{-6, -6}, {-6, -6}, {-6, -6}, {-6, -6}},
};

constexpr SourceTable kingSource = {
    {{-71, -72}, {-65, -52}, {-87, -40}, {-99, -36}},
    {{-63, -52}, {-57, -32}, {-80, -20}, {-93, -16}},
    {{-56, -40}, {-50, -20}, {-74, -8}, {-88, -4}},
    {{-48, -36}, {-42, -16}, {-67, -4}, {-82, 0}},
    {{-39, -40}, {-33, -20}, {-59, -8}, {-75, -4}},
    {{-30, -52}, {-24, -32}, {-51, -20}, {-68, -16}},
    {{-12, -72}, {-6, -52}, {-35, -40}, {-54, -36}},
    {{-6, -100}, {0, -80}, {-30, -68}, {-50, -64}},
};

// Material in thousandths of a pawn, by piece code; the king has none.
constexpr ScorePair material[7] = {
    0,
    makeScorePair(800, 1050),
    makeScorePair(3500, 3900),
    makeScorePair(3600, 4000),
    makeScorePair(5000, 6200),
    makeScorePair(9800, 11800),
    0,
};

void setBothColours(int piece, Square whiteSquare, ScorePair white) {
  pieceSquare[pieceIndex(White, piece, whiteSquare)] = white;
  pieceSquare[pieceIndex(Black, piece, whiteSquare ^ 56)] = scorePairNeg(white);
}

// Pawns are a rule rather than a table: central files gain more from
// advancing in the opening, edge pawns gain in the ending, and the gain
// grows with the rank.
void fillPawnRows() {
  constexpr int byFileOpen[8] = {-12, -2, 4, 10, 10, 4, -2, -12};
  constexpr int byFileEnd[8] = {3, 1, -1, -3, -3, -1, 1, 3};
  constexpr int byRank[8] = {0, -1, 0, 2, 4, 6, 6, 0};
  constexpr int advanceByFile[8] = {-5, 0, 5, 10, 10, 5, 0, -5};
  for (Square s = 8; s < 56; ++s) {
    int f = fileOfSquare(s);
    int r = rankOfSquare(s);
    int open = 10 * (byFileOpen[f] + byRank[r]) + advanceByFile[f] * byRank[r];
    int end = 10 * (byFileEnd[f] + byRank[r]);
    setBothColours(Pawn, s, makeScorePair(open, end));
  }
}

void fillFromSource(int piece, const SourceTable& source, ScorePair scale) {
  for (Square s = 0; s < 64; ++s) {
    int f = fileOfSquare(s);
    const SourceCell& cell = source[7 - rankOfSquare(s)][f < 4 ? f : 7 - f];
    setBothColours(piece, s, scorePairMul(scale, makeScorePair(cell.open, cell.end)));
  }
}

}  // namespace

void initPieceSquare() {
  for (auto& entry : pieceSquare) entry = 0;
  fillPawnRows();
  fillFromSource(Knight, knightSource, makeScorePair(30, 12));
  fillFromSource(Bishop, bishopSource, makeScorePair(14, 14));
  fillFromSource(Rook, rookSource, makeScorePair(16, 12));
  fillFromSource(Queen, queenSource, makeScorePair(14, 14));
  fillFromSource(King, kingSource, makeScorePair(9, 12));
  for (int piece = Pawn; piece <= Queen; ++piece) {
    for (Square s = 0; s < 64; ++s) {
      ScorePair& white = pieceSquare[pieceIndex(White, piece, s)];
      ScorePair& black = pieceSquare[pieceIndex(Black, piece, s)];
      white = scorePairAdd(white, material[piece]);
      black = scorePairAdd(black, scorePairNeg(material[piece]));
    }
  }
}

void fillRootScores(Position& position) {
  ScorePair sum = 0;
  int phase = 0;
  for (int colour = White; colour <= Black; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      for (Bitboard b = position.pieces[colour][piece]; b;) {
        Square s = popLowest(b);
        sum = scorePairAdd(sum, pieceSquare[pieceIndex(colour, piece, s)]);
        phase += phaseWeights[piece];
      }
    }
  }
  position.pstScore = sum;
  position.phase = phase;
}
