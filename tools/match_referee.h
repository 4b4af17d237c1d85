// The referee of `tarvok-tool match`: one game's record from its opening,
// the rules that end it, the move texts the engines exchange, and the checks
// of what an engine writes while it thinks. The engine's own board code
// decides what is legal, so the referee and the players agree on the rules.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/types.h"

enum class Ending { None, Checkmate, Stalemate, Repetition, FiftyMoves, Material };

// "checkmate", "threefold repetition", ...
const char* endingName(Ending ending);

struct RefereeGame {
  std::string fen;  // the opening as sent to the engines: four fields, clock and move number
  bool chess960 = false;
  Position position;                // the current position; it carries the opening's castling rooks
  int halfmoveClock = 0;            // plies since the last capture or pawn move
  int firstMoveNumber = 1;          // the opening's move number, for the score sheet
  std::vector<uint64_t> keys;       // repetition key of every position from the opening on
  std::vector<std::string> moves;   // coordinate texts played since the opening
  std::vector<std::string> sanMoves;
};

// Sets up a game from one line of an EPD file: board, side, castling and en
// passant, then an optional halfmove clock and move number; anything after a
// ';' is ignored. Returns "" or why the line can't start a game.
std::string startGame(RefereeGame& game, const std::string& epdLine, bool chess960 = false);

// The legal move of the current position written as text, or 0.
Move findMove(const Position& position, const std::string& text, bool chess960);
// A legal move of position as UCI text.
std::string moveText(const Position& position, Move move, bool chess960);
// A legal move in standard algebraic notation with check and mate signs.
std::string sanText(const Position& position, Move move);

// Plays a legal move on the record.
void playMove(RefereeGame& game, Move move);
// Whether the game is over by the rules at its current position.
Ending gameEnding(const RefereeGame& game);
// The last `position` line that gives the engines the current position.
std::string positionCommand(const RefereeGame& game);

// What a careful interface finds wrong in an engine's thinking output.
enum class OutputFault { None, IllegalPvMove, PvAfterGameEnd, BestmoveMismatch };

// The phrase that starts a warning of the fault: "Illegal PV move", ...
const char* faultPhrase(OutputFault fault);

struct OutputCheck {
  OutputFault fault = OutputFault::None;
  std::string detail;  // which move, and why
};

// Judges one line an engine writes while thinking about the game's current
// position: the pv of every `info` line must be playable from there and stop
// where the game would end; the `bestmove` must start the pv of the last
// main line (multipv 1, or no multipv). primaryMove carries the first move of
// that line from one call to the next; clear it before each `go`.
OutputCheck judgeEngineLine(const RefereeGame& game, const std::string& line, std::string& primaryMove);

// The game as a PGN record: tags, the moves in SAN, a comment with how the
// game ended, and the result.
std::string pgnText(const RefereeGame& game, const std::string& white, const std::string& black,
                    const std::string& result, const std::string& termination, const std::string& reason,
                    int round, const std::string& timeControl);
