// Start-up: process-wide preparation, the switches, and the three modes.
#pragma once

// The whole program behind main. Returns 0 after -makeTestData and after a
// self-test that passed, 1 after one that failed, -1 after a command-line
// error. UCI mode never returns: it ends by quit, or at the end of input.
int engineMain(int argc, char** argv);
