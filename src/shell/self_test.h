// The two batch modes: the self-test over fifty fixed positions, and the
// regeneration of its table.
#pragma once

extern char testFens[50][160];

// Prints a fresh table body (the caller prints its head); returns 0.
int makeTestData();
// Searches every row up to 100 times and compares; 0 if all agree, else 1.
int runSelfTest();
