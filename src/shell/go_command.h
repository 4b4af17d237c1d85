// The go command: reads the search parameters, turns the clock into a time
// budget and runs the search inside the current pass of uciPoll.
#pragma once

#include <cstdint>

// Set while go runs its search; polls then refuse go, position and a new
// hash table, which would pull the ground from under the search.
extern int32_t searchRunning;
// The running search ends only by a command (infinite or ponder): at the end
// of input it is stopped as by "stop".
extern int32_t searchNeedsCommand;

// tokens[0] is "go"; count includes it. Everything it needs from the tokens
// is read before the search starts: the search polls, and the polls may
// reuse the line's slot of the input ring.
void goCommand(char** tokens, int count);

// The goal in seconds for a clock situation, setting hardTimePercent where
// the budget decides it: moves-to-go when movesToGo isn't 0, half the time
// for a negative depth, else the game budget. Writes the budget's log line.
double timeBudget(double timeLeft, double increment, int movesToGo, int depth, double overhead);
