// The go command: reads the search parameters, turns the clock into a time
// budget and runs the search inside the current pass of uciPoll.
#pragma once

// tokens[0] is "go"; count includes it. Everything it needs from the tokens
// must be read before the search starts: the search polls, and the polls
// may reuse the line's slot of the input ring.
void goCommand(char** tokens, int count);
