// The two batch modes: the self-test over fifty fixed positions, and the
// regeneration of its table.
#pragma once

extern char testFens[50][160];

// Depth, in iterations, of every search of the two modes.
constexpr int testSearchDepth = 13;

// Searches the position of fen to depth iterations from a local record, with
// no time limit and all legal moves, as the two modes search their rows.
void searchBatchPosition(const char* fen, int depth);
// The four FEN fields of row (0..49) of testFens, into fen (160 bytes).
// Exits on a row with too few fields.
void testRowFen(int row, char* fen);

// Prepares row (0..49) of testFens and searches it to testSearchDepth;
// fen receives the four FEN fields (160 bytes). Exits on a row with too few
// fields. The results are those think leaves in depthMove and its kin.
void searchTestRow(int row, char* fen);

// Prints a fresh table body (the caller prints its head); returns 0.
int makeTestData();
// Searches every row up to 100 times and compares; 0 if all agree, else 1.
int runSelfTest();
