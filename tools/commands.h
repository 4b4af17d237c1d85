// The subcommands of tarvok-tool. Each takes the arguments behind its own
// name and returns the process exit code.
#pragma once

int perftCommand(int argc, char** argv);
int evalCommand(int argc, char** argv);
int bookKeyCommand(int argc, char** argv);
int fingerprintsCommand(int argc, char** argv);
int traceCommand(int argc, char** argv);
int benchCommand(int argc, char** argv);
