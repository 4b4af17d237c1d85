#include "board/attacks.h"

#include "base/platform.h"

Bitboard knightAttacks[64];
Bitboard kingAttacks[64];
Bitboard bishopRays[64];
Bitboard rookRays[64];
Bitboard queenRays[64];
Bitboard between[64][64];
Bitboard pawnCheckOrigins[2][64];
// The rook lookups come first and fill exactly one 2 MB huge page, which
// Linux is asked for below: the sliders are looked up everywhere, and with
// 4 KB pages their scattered lookups would keep missing the page cache.
alignas(hugePageBytes) Bitboard sliderAttacks[sliderAttackSize];
SliderMagic bishopMagics[64];
SliderMagic rookMagics[64];
Bitboard bishopMasks[64];
Bitboard rookMasks[64];

namespace {

// Multipliers found offline by a search over sparse random numbers; each maps
// every subset of its square's mask to a slot that holds the right attack set.
constexpr uint64_t bishopMultipliers[64] = {
    0x0804081001102040ull, 0x0001048810441840ull, 0x0022001101000000ull, 0x6020086020804a00ull,
    0x0008902000011042ull, 0x0000102520600010ull, 0x0200044100820000ull, 0x4a49090924002000ull,
    0x0000400088000a80ull, 0x1220041404a07490ull, 0x0e40030082008400ull, 0x0006025005400110ull,
    0x4460ba48040a0002ull, 0x0000010800401820ull, 0x101a102130482000ull, 0x0088804880402180ull,
    0x1002000448440221ull, 0x2008240202460008ull, 0x9422000484040458ull, 0x8a08200412008000ull,
    0x08e0204010400014ull, 0x8000800040104000ull, 0x0080101204100400ull, 0x4009280020140a00ull,
    0x0408411020148310ull, 0x0001086048208601ull, 0x0112004008004108ull, 0x0002040018010821ull,
    0x0230104409004000ull, 0x00040008092021a0ull, 0x1100424000100800ull, 0x0141000202031410ull,
    0x0009011000010481ull, 0x002048220c084042ull, 0x4001640400004800ull, 0x0000202020080080ull,
    0x8204090200100808ull, 0x0d41026620100800ull, 0x2000820040000820ull, 0x04240c0011010544ull,
    0x3c00402220c80342ull, 0x1100401802249100ull, 0x00d2001660c00990ull, 0x400118e208000020ull,
    0x0000008200440a00ull, 0x0001006022000118ull, 0x0420010032042412ull, 0x0000608055c10810ull,
    0x0000201102080822ull, 0x0400802401002201ull, 0x0d042002002f0242ull, 0x0080001201010000ull,
    0x000821d020020201ull, 0x1000100190000810ull, 0x8048088204000910ull, 0x02a0404308088000ull,
    0x9000848040104100ull, 0x0081080a8a083816ull, 0x0020000090282802ull, 0x0208184384220620ull,
    0x0000001430060130ull, 0x0281021000720044ull, 0x2020180e02aa0804ull, 0x48137102001a4002ull,
};

constexpr uint64_t rookMultipliers[64] = {
    0x4080024008218010ull, 0x2040009000200058ull, 0x0060000500590020ull, 0x0210010010c00200ull,
    0x00800a0080280405ull, 0xc108020004000100ull, 0x3e00080042002094ull, 0x2200008041022402ull,
    0x000008401080a200ull, 0x0002280024c00122ull, 0x0010401310408819ull, 0x0051001000210002ull,
    0x3200408040020828ull, 0x000a020008040205ull, 0x0003008802000401ull, 0x80450007000140a2ull,
    0x0110454000200810ull, 0x1045a06008824430ull, 0x1002809404081000ull, 0x0001001004400200ull,
    0x0004184800085010ull, 0x0080040082224811ull, 0x0488008100060020ull, 0x2238008000d008a1ull,
    0x08004840200010a4ull, 0x880a112002029000ull, 0x0002000480802014ull, 0x1001884202100002ull,
    0x08001020020080c4ull, 0x4800100200480420ull, 0x0026008300020024ull, 0x000020e080800100ull,
    0x2004800040a01220ull, 0x0280100008408022ull, 0x0400040040181040ull, 0x002940020a410044ull,
    0x8440028120820010ull, 0x00090c0800800200ull, 0xa4c1084080f00188ull, 0x0006840020180040ull,
    0x0013012080410010ull, 0x0028008c02000800ull, 0x0004801000140808ull, 0x1400400201200408ull,
    0x0000882004440080ull, 0x1004108001002200ull, 0x041001000ca08200ull, 0x0800600040042008ull,
    0x0203428832002200ull, 0x4000392100080013ull, 0x2002006040040a20ull, 0x8000040c50260604ull,
    0x09000200010a8020ull, 0x0104101082014020ull, 0x020084080e000068ull, 0x6000802001801008ull,
    0x8041800502204011ull, 0x0001102120884082ull, 0x0009084020000411ull, 0x0008102200402086ull,
    0x020a001c04130802ull, 0x9501090084000941ull, 0x0010020104058041ull, 0x20e8004025008406ull,
};

constexpr int bishopDirections[4][2] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
constexpr int rookDirections[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};

bool onBoard(int rank, int file) { return rank >= 0 && rank < 8 && file >= 0 && file < 8; }

// Attack set by walking the rays: each ray stops at and includes the first blocker.
Bitboard slowSliderAttacks(Square s, Bitboard occupied, const int (*directions)[2]) {
  Bitboard attacks = 0;
  for (int d = 0; d < 4; ++d) {
    int rank = rankOfSquare(s) + directions[d][0];
    int file = fileOfSquare(s) + directions[d][1];
    while (onBoard(rank, file)) {
      Square t = rank * 8 + file;
      attacks |= squareBit(t);
      if (occupied & squareBit(t)) break;
      rank += directions[d][0];
      file += directions[d][1];
    }
  }
  return attacks;
}

// Relevant occupancy: the rays without the origin and without their last square.
Bitboard relevantMask(Square s, const int (*directions)[2]) {
  Bitboard mask = 0;
  for (int d = 0; d < 4; ++d) {
    int rank = rankOfSquare(s) + directions[d][0];
    int file = fileOfSquare(s) + directions[d][1];
    while (onBoard(rank + directions[d][0], file + directions[d][1])) {
      mask |= squareBit(rank * 8 + file);
      rank += directions[d][0];
      file += directions[d][1];
    }
  }
  return mask;
}

void fillSliderTable(Square s, const int (*directions)[2], Bitboard mask, const SliderMagic& m, int shift) {
  Bitboard subset = 0;
  do {
    sliderAttacks[m.offset + ((subset * m.multiplier) >> shift)] = slowSliderAttacks(s, subset, directions);
    subset = (subset - mask) & mask;
  } while (subset);
}

void initAttackTables() {
  // Before the first write, which is when the pages are given.
  adviseHugePages(sliderAttacks, sizeof(sliderAttacks));
  constexpr int knightSteps[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
  for (Square s = 0; s < 64; ++s) {
    int rank = rankOfSquare(s), file = fileOfSquare(s);
    for (auto& step : knightSteps)
      if (onBoard(rank + step[0], file + step[1])) knightAttacks[s] |= squareBit((rank + step[0]) * 8 + file + step[1]);
    for (int dr = -1; dr <= 1; ++dr)
      for (int df = -1; df <= 1; ++df)
        if ((dr || df) && onBoard(rank + dr, file + df)) kingAttacks[s] |= squareBit((rank + dr) * 8 + file + df);
    bishopRays[s] = slowSliderAttacks(s, 0, bishopDirections) | squareBit(s);
    rookRays[s] = slowSliderAttacks(s, 0, rookDirections) | squareBit(s);
    queenRays[s] = bishopRays[s] | rookRays[s];
  }

  for (Square a = 0; a < 64; ++a) {
    for (Square b = 0; b < 64; ++b) {
      if (a == b || !(queenRays[a] & squareBit(b))) continue;
      const int (*directions)[2] = (bishopRays[a] & squareBit(b)) ? bishopDirections : rookDirections;
      between[a][b] = slowSliderAttacks(a, squareBit(b), directions) & slowSliderAttacks(b, squareBit(a), directions);
    }
  }

  // A pawn two ranks ahead on an adjacent file pushes onto a checking square;
  // from the enemy pawns' home rank the double step reaches the same square.
  for (Square k = 0; k < 64; ++k) {
    int rank = rankOfSquare(k), file = fileOfSquare(k);
    for (int df = -1; df <= 1; df += 2) {
      if (file + df < 0 || file + df > 7) continue;
      if (rank + 2 <= 7) pawnCheckOrigins[White][k] |= squareBit((rank + 2) * 8 + file + df);
      if (rank + 3 == 6) pawnCheckOrigins[White][k] |= squareBit((rank + 3) * 8 + file + df);
      if (rank - 2 >= 0) pawnCheckOrigins[Black][k] |= squareBit((rank - 2) * 8 + file + df);
      if (rank - 3 == 1) pawnCheckOrigins[Black][k] |= squareBit((rank - 3) * 8 + file + df);
    }
  }

  for (Square s = 0; s < 64; ++s) {
    bishopMasks[s] = relevantMask(s, bishopDirections);
    rookMasks[s] = relevantMask(s, rookDirections);
    rookMagics[s] = {rookMultipliers[s], s * 4096};
    bishopMagics[s] = {bishopMultipliers[s], 64 * 4096 + s * 512};
    fillSliderTable(s, bishopDirections, bishopMasks[s], bishopMagics[s], 55);
    fillSliderTable(s, rookDirections, rookMasks[s], rookMagics[s], 52);
  }
}

// The tables are pure functions of the board geometry; they are ready before
// main runs and nothing writes them afterwards.
[[maybe_unused]] const bool attackTablesReady = (initAttackTables(), true);

}  // namespace
