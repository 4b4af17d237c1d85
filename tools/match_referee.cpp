#include "match_referee.h"

#include <algorithm>
#include <ctime>
#include <sstream>

#include "base/options.h"
#include "board/castling.h"
#include "board/fen.h"
#include "board/keys.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "shell/game.h"

namespace {

constexpr int fiftyMovePlies = 100;
// a1 is dark; a set of bishops all on one colour can never give mate.
constexpr Bitboard darkSquares = 0xAA55AA55AA55AA55ULL;

// The board's key names an en-passant square whenever an enemy pawn stands
// beside the pawn that double-stepped; the rules of repetition only count it
// when the capture can really be played (not when the capturer is pinned).
uint64_t repetitionKey(const Position& position) {
  if (!position.epBit) return position.hashKey;
  Move list[maxGeneratedMoves];
  int count = generateLegalMoves(position, list);
  for (int i = 0; i < count; ++i)
    if (moveKind(list[i]) == KindEnPassant) return position.hashKey;
  return position.hashKey ^ enPassantKey(lowestSquare(position.epBit));
}

// Dead positions by material alone: bare kings, one minor piece, or only
// bishops that all stand on squares of one colour.
bool insufficientMaterial(const Position& p) {
  Bitboard heavy = 0, knights = 0, bishops = 0;
  for (int colour = White; colour <= Black; ++colour) {
    heavy |= p.pieces[colour][Pawn] | p.pieces[colour][Rook] | p.pieces[colour][Queen];
    knights |= p.pieces[colour][Knight];
    bishops |= p.pieces[colour][Bishop];
  }
  if (heavy) return false;
  if (popCount(knights | bishops) <= 1) return true;
  return !knights && ((bishops & darkSquares) == 0 || (bishops & ~darkSquares) == 0);
}

// The state the rules look at; the game record and a pv being replayed from
// it both carry one.
struct LineState {
  Position position;
  int halfmoveClock;
  std::vector<uint64_t> keys;
};

Ending endingOf(const LineState& line) {
  Move list[maxGeneratedMoves];
  // Mate comes first: a mate given on the hundredth quiet ply stands.
  if (generateLegalMoves(line.position, list) == 0)
    return kingAttacked(line.position, sideToMove(line.position)) ? Ending::Checkmate : Ending::Stalemate;
  if (line.halfmoveClock >= fiftyMovePlies) return Ending::FiftyMoves;
  // Captures, pawn moves and lost rights change the key for good, so counting
  // over the whole game counts the same as counting since the last of them.
  if (std::count(line.keys.begin(), line.keys.end(), line.keys.back()) >= 3) return Ending::Repetition;
  if (insufficientMaterial(line.position)) return Ending::Material;
  return Ending::None;
}

void advance(LineState& line, Move move) {
  Position next;
  makeMove(line.position, next, move);
  next.inCheck = kingAttacked(next, sideToMove(next));
  bool irreversible = next.movedPiece == Pawn || next.capturedPiece != NoPiece;
  line.halfmoveClock = irreversible ? 0 : line.halfmoveClock + 1;
  line.position = next;
  line.keys.push_back(repetitionKey(next));
}

std::string squareText(Square square) {
  return {static_cast<char>('a' + fileOfSquare(square)), static_cast<char>('1' + rankOfSquare(square))};
}

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> found;
  for (std::string word; stream >> word;) found.push_back(word);
  return found;
}

bool isNumber(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The keywords of an info line; a pv runs until one of them.
bool isInfoKeyword(const std::string& word) {
  static const char* const keywords[] = {"depth",  "seldepth",       "time",    "nodes",    "multipv",
                                         "score",  "currmove",       "currmovenumber", "hashfull", "nps",
                                         "tbhits", "sbhits",         "cpuload", "string",   "refutation",
                                         "currline", "pv"};
  for (const char* keyword : keywords)
    if (word == keyword) return true;
  return false;
}

struct InfoPv {
  std::vector<std::string> moves;
  int multipv = 1;
};

// The pv and multipv of an info line. Everything behind "string" is free
// text, so a "pv" there is no pv.
InfoPv readInfoPv(const std::vector<std::string>& tokens) {
  InfoPv info;
  for (size_t i = 1; i < tokens.size() && tokens[i] != "string"; ++i) {
    if (tokens[i] == "multipv" && i + 1 < tokens.size()) {
      info.multipv = isNumber(tokens[i + 1]) ? std::stoi(tokens[i + 1].substr(0, 6)) : 0;
    } else if (tokens[i] == "pv") {
      info.moves.clear();
      while (i + 1 < tokens.size() && !isInfoKeyword(tokens[i + 1])) info.moves.push_back(tokens[++i]);
    }
  }
  return info;
}

std::string joined(const std::vector<std::string>& list) {
  std::string text;
  for (const std::string& word : list) text += (text.empty() ? "" : " ") + word;
  return text;
}

}  // namespace

const char* endingName(Ending ending) {
  switch (ending) {
    case Ending::Checkmate: return "checkmate";
    case Ending::Stalemate: return "stalemate";
    case Ending::Repetition: return "threefold repetition";
    case Ending::FiftyMoves: return "fifty-move rule";
    case Ending::Material: return "insufficient material";
    case Ending::None: break;
  }
  return "none";
}

std::string startGame(RefereeGame& game, const std::string& epdLine, bool chess960) {
  std::vector<std::string> fields = words(epdLine.substr(0, epdLine.find(';')));
  if (fields.size() < 4) return "fewer than four FEN fields";
  // The board reader ends the program on a side it doesn't know.
  if (fields[1] != "w" && fields[1] != "b") return "the side to move is neither w nor b";
  game = RefereeGame{};
  game.chess960 = chess960;
  // EPD lines may go on with operations ("bm Nf3"); only numbers are a clock.
  bool counted = fields.size() >= 6 && isNumber(fields[4]) && isNumber(fields[5]);
  game.halfmoveClock = counted ? std::stoi(fields[4].substr(0, 6)) : 0;
  game.firstMoveNumber = counted ? std::max(1, std::stoi(fields[5].substr(0, 6))) : 1;
  std::string placement = fields[0] + " " + fields[1] + " " + fields[2] + " " + fields[3];
  // The variant decides only how the FEN reader takes KQkq: in Chess960 the
  // outermost rooks, wherever they stand.
  const int32_t chess960Before = options.chess960;
  options.chess960 = chess960 ? 1 : 0;
  parseFen(game.position, placement.c_str());
  options.chess960 = chess960Before;
  dropUnfitRights(game.position);
  if (const char* defect = positionDefect(game.position)) return defect;
  game.position.inCheck = kingAttacked(game.position, sideToMove(game.position));
  game.fen = placement + " " + std::to_string(game.halfmoveClock) + " " + std::to_string(game.firstMoveNumber);
  game.keys.push_back(repetitionKey(game.position));
  return "";
}

// Castling is the one move whose text depends on the variant: standard UCI
// writes the king's two-square step (e1g1), Chess960 the king taking its own
// rook (e1h1), since there the king may move one square or none. Every move
// text the referee reads or writes passes through here.
std::string moveText(const Position& position, Move move, bool chess960) {
  if (moveKind(move) == KindCastle) {
    const int colour = rankOfSquare(moveFrom(move)) == 0 ? White : Black;
    const int side = fileOfSquare(moveTo(move)) == 6 ? ShortSide : LongSide;
    return squareText(moveFrom(move)) + squareText(chess960 ? castlingRookHome(position.castling, colour, side) : moveTo(move));
  }
  char text[8];
  moveToText(position, move, text);
  return text;
}

Move findMove(const Position& position, const std::string& text, bool chess960) {
  Move list[maxGeneratedMoves];
  int count = generateLegalMoves(position, list);
  for (int i = 0; i < count; ++i)
    if (moveText(position, list[i], chess960) == text) return list[i];
  return 0;
}

std::string sanText(const Position& position, Move move) {
  const int us = sideToMove(position);
  const Square from = moveFrom(move), to = moveTo(move);
  const int piece = pieceOn(position, us, from);
  std::string san;
  if (moveKind(move) == KindCastle) {
    san = fileOfSquare(to) == 6 ? "O-O" : "O-O-O";
  } else {
    bool capture = (position.pieces[us ^ 1][0] & squareBit(to)) || moveKind(move) == KindEnPassant;
    if (piece == Pawn) {
      if (capture) san = squareText(from).substr(0, 1);
    } else {
      san = std::string(1, "  NBRQK"[piece]);
      // Name the file, else the rank, else both, of a piece that shares its
      // target with another of its kind.
      bool rival = false, sameFile = false, sameRank = false;
      Move list[maxGeneratedMoves];
      int count = generateLegalMoves(position, list);
      for (int i = 0; i < count; ++i) {
        Square other = moveFrom(list[i]);
        if (moveTo(list[i]) != to || other == from || pieceOn(position, us, other) != piece) continue;
        rival = true;
        sameFile |= fileOfSquare(other) == fileOfSquare(from);
        sameRank |= rankOfSquare(other) == rankOfSquare(from);
      }
      if (rival && (!sameFile || sameRank)) san += squareText(from)[0];
      if (rival && sameFile) san += squareText(from)[1];
    }
    if (capture) san += 'x';
    san += squareText(to);
    if (isPromotion(move)) san += std::string("=") + "....QNRB"[moveKindIndex(move)];
  }
  Position child;
  makeMove(position, child, move);
  if (kingAttacked(child, us ^ 1)) {
    Move replies[maxGeneratedMoves];
    san += generateLegalMoves(child, replies) == 0 ? '#' : '+';
  }
  return san;
}

void playMove(RefereeGame& game, Move move) {
  game.moves.push_back(moveText(game.position, move, game.chess960));
  game.sanMoves.push_back(sanText(game.position, move));
  LineState line{game.position, game.halfmoveClock, std::move(game.keys)};
  advance(line, move);
  game.position = line.position;
  game.halfmoveClock = line.halfmoveClock;
  game.keys = std::move(line.keys);
}

Ending gameEnding(const RefereeGame& game) {
  return endingOf({game.position, game.halfmoveClock, game.keys}); }

std::string positionCommand(const RefereeGame& game) {
  return "position fen " + game.fen + (game.moves.empty() ? "" : " moves " + joined(game.moves));
}

const char* faultPhrase(OutputFault fault) {
  switch (fault) {
    case OutputFault::IllegalPvMove: return "Illegal PV move";
    case OutputFault::PvAfterGameEnd: return "PV continues after game end";
    case OutputFault::BestmoveMismatch: return "Bestmove does not match";
    case OutputFault::None: break;
  }
  return "";
}

OutputCheck judgeEngineLine(const RefereeGame& game, const std::string& line, std::string& primaryMove) {
  std::vector<std::string> tokens = words(line);
  OutputCheck check;
  if (tokens.empty()) return check;
  if (tokens[0] == "bestmove") {
    std::string best = tokens.size() > 1 ? tokens[1] : "";
    if (!primaryMove.empty() && best != primaryMove) {
      check.fault = OutputFault::BestmoveMismatch;
      check.detail = "bestmove " + best + ", the last pv starts " + primaryMove;
    }
    return check;
  }
  if (tokens[0] != "info") return check;
  InfoPv info = readInfoPv(tokens);
  if (info.moves.empty()) return check;
  if (info.multipv == 1) primaryMove = info.moves[0];
  // Replay the pv on top of the game, so that repetitions count the moves
  // played before the root as well as those of the pv.
  LineState replay{game.position, game.halfmoveClock, game.keys};
  for (size_t i = 0; i < info.moves.size(); ++i) {
    const std::string where = "pv move " + std::to_string(i + 1) + " " + info.moves[i];
    // A pv that goes past mate or stalemate meets a move that can't be
    // legal; it is counted as going on after the end, which is what it does.
    Ending ending = endingOf(replay);
    if (ending != Ending::None) {
      check.fault = OutputFault::PvAfterGameEnd;
      check.detail = where + " follows " + endingName(ending);
      return check;
    }
    Move move = findMove(replay.position, info.moves[i], game.chess960);
    if (!move) {
      check.fault = OutputFault::IllegalPvMove;
      check.detail = where + " is not legal";
      return check;
    }
    advance(replay, move);
  }
  return check;
}

std::string pgnText(const RefereeGame& game, const std::string& white, const std::string& black,
                    const std::string& result, const std::string& termination, const std::string& reason,
                    int round, const std::string& timeControl) {
  char date[16];
  std::time_t now = std::time(nullptr);
  std::strftime(date, sizeof date, "%Y.%m.%d", std::localtime(&now));
  std::string text = "[Event \"tarvok-tool match\"]\n[Site \"?\"]\n[Date \"" + std::string(date) +
                     "\"]\n[Round \"" + std::to_string(round) + "\"]\n[White \"" + white + "\"]\n[Black \"" +
                     black + "\"]\n[Result \"" + result + "\"]\n[SetUp \"1\"]\n[FEN \"" + game.fen +
                     "\"]\n[TimeControl \"" + timeControl + "\"]\n[Termination \"" + termination + "\"]\n";
  if (game.chess960) text += "[Variant \"Chess960\"]\n";
  text += "\n";
  // Recover the side that began from the number of moves and the side to
  // move now; the score sheet numbers black's first move "N...".
  int side = (sideToMove(game.position) + static_cast<int>(game.sanMoves.size())) & 1;
  int number = game.firstMoveNumber;
  std::string row;
  auto add = [&](const std::string& word) {
    if (row.size() + word.size() + 1 > 79) {
      text += row + "\n";
      row.clear();
    }
    row += (row.empty() ? "" : " ") + word;
  };
  for (size_t i = 0; i < game.sanMoves.size(); ++i) {
    if (side == White) add(std::to_string(number) + ".");
    else if (i == 0) add(std::to_string(number) + "...");
    add(game.sanMoves[i]);
    if (side == Black) ++number;
    side ^= 1;
  }
  add("{" + reason + "}");
  add(result);
  return text + row + "\n";
}
