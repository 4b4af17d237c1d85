// Start-up: process-wide preparation, the switches, and the three modes.
#pragma once

// The whole program behind main. Returns 0 after -makeTestData and after a
// self-test that passed, 1 after one that failed, -1 after a command-line
// error. UCI mode never returns: it ends by quit, or at the end of input.
int engineMain(int argc, char** argv);

// UCI mode after the start-up: passes of uciPoll for ever, with a short sleep
// after each pass that found no line.
[[noreturn]] void runUciLoop();
