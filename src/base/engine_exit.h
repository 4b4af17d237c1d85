// The ways the engine ends by itself: an orderly stop on a condition it can't
// go on from, and quit. Every such end passes through here, so that a build
// for fuzzing can swap this one file for one that returns to its caller.
#pragma once

// Prints the formatted text to standard error as it stands (no line end is
// added) and ends the process with exit code 1.
[[noreturn]] void fatalExit(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Ends the process with exit code 0: the quit command, and the end of input.
[[noreturn]] void quitEngine();
