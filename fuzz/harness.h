// What the fuzz targets share: the engine prepared once per process and put
// back into one known state before each input, lines fed to it through its
// own dispatcher, and its fatal stops and quit turned into an exception that
// comes back to the target (engine_exit_unwind.cpp stands in for the
// engine's own exits in these builds).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Thrown where the engine would end the process: code 1 for a fatal stop,
// 0 for quit.
struct EngineExit {
  int code;
};

// Once per process: evaluation tables, a 1 MB hash table, a log that goes
// to /dev/null (so that every log line is formatted), standard output to
// /dev/null, and the defaults that resetEngine restores.
void prepareEngine();

// Before each input: options back to their defaults (tables rebuilt if any
// changed), an empty hash table and history, the start position as the
// game, the flags of a fresh engine, no command waiting.
void resetEngine();

// The input cut into lines as the engine's reader cuts standard input: at
// line feeds, leaving out a line of more than longestLine bytes before its
// line feed, which the reader drops whole.
std::vector<std::string> readerLines(const uint8_t* data, size_t size);

// A setoption line that asks for more than 16 MB of hash asks for 16: the
// fuzzer's memory is the limit here, not the engine's.
std::string withSmallHash(const std::string& line);

// Hands the lines to the dispatcher in batches, as the input thread does,
// and stops every search once the batch is in, so that each ends after its
// first iteration and what waited behind it runs. Returns the exit code if
// the engine would have ended, else -1.
int serveLines(const std::vector<std::string>& lines);
