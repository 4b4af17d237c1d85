// The go command: reads the search parameters, has the time manager turn
// them into the search's limits, and starts the search on the main search's
// thread.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "search/think.h"
#include "shell/time_manager.h"

// The search that go started, as the input thread and the search's thread
// see it. The input thread writes it before it hands the search over and
// doesn't touch it again until the search has answered.
struct SearchSession {
  ThinkRequest request;
  Move bookMove = 0;  // the book's answer: given without a search
  // Only a command ends the search (go infinite, go mate): at the end of
  // input it is stopped as by "stop", as is a search still pondering.
  bool needsCommand = false;
};

extern SearchSession searchSession;

// tokens[0] is "go"; count includes it.
void readGoWords(char** tokens, int count, GoRequest& request);

// The whole command: reads the line and starts the search of the current
// record of the game, or the book's answer, on the main search's thread;
// returns at once. Only while no search runs.
void goCommand(char** tokens, int count);
