// The input thread's reader: standard input cut into lines, overlong lines
// dropped whole, and a wait that another thread can end.
#include "shell/input_lines.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

struct Pipe {
  int ends[2] = {-1, -1};
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    for (int end : ends)
      if (end >= 0) close(end);
  }
  void write(const std::string& text) { EXPECT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size())); }
  void closeWriter() {
    close(ends[1]);
    ends[1] = -1;
  }
};

std::string taken(LineReader& reader) {
  const LineStatus status = nextLine(reader);
  if (status == LineStatus::Line) return reader.line;
  if (status == LineStatus::Dropped) return "<dropped>";
  if (status == LineStatus::Woken) return "<woken>";
  return "<ended>";
}

TEST(InputLines, LinesComeWholeInOrderAndAnOverlongLineIsDroppedWhole) {
  auto reader = std::make_unique<LineReader>();
  Pipe input;
  ASSERT_TRUE(openLineReader(*reader, input.ends[0]));
  // The longest line passes, one byte more drops it, and the line after it
  // comes whole; the last line has no line feed.
  const std::string longest(longestLine, 'a');
  // More than a pipe holds: the client writes while the engine reads.
  std::thread client([&] {
    input.write("uci\n\nisready\r\n" + longest + "\n" + longest + "b\ngo depth 3\nquit");
    input.closeWriter();
  });
  EXPECT_EQ(taken(*reader), "uci");
  EXPECT_EQ(taken(*reader), "");
  EXPECT_EQ(taken(*reader), "isready\r");
  EXPECT_EQ(taken(*reader), longest);
  EXPECT_EQ(taken(*reader), "<dropped>");
  EXPECT_EQ(taken(*reader), "go depth 3");
  EXPECT_EQ(taken(*reader), "quit");
  EXPECT_EQ(taken(*reader), "<ended>");
  EXPECT_EQ(taken(*reader), "<ended>");
  client.join();
}

TEST(InputLines, AWakeUpEndsAWaitAndTheLinesAfterItStillCome) {
  auto reader = std::make_unique<LineReader>();
  Pipe input;
  ASSERT_TRUE(openLineReader(*reader, input.ends[0]));
  // A line cut in two by the wait: its first half waits for the rest.
  input.write("posi");
  std::thread waker([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    wakeLineReader(*reader);
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(taken(*reader), "<woken>");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
  waker.join();
  input.write("tion startpos\nstop\n");
  EXPECT_EQ(taken(*reader), "position startpos");
  EXPECT_EQ(taken(*reader), "stop");
  // A wake-up given while no one waits ends the next wait.
  wakeLineReader(*reader);
  EXPECT_EQ(taken(*reader), "<woken>");
}

}  // namespace
