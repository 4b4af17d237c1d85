#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

#include "shell/input_ring.h"

namespace {

// A ring fed from a pipe by its own reader thread, as standard input feeds
// the engine's.
struct PipeFedRing {
  std::unique_ptr<InputRing> ring = std::make_unique<InputRing>();
  int fds[2];
  std::thread reader;

  PipeFedRing() {
    EXPECT_EQ(pipe(fds), 0);
    reader = std::thread(readInputLines, std::ref(*ring), fds[0]);
  }
  ~PipeFedRing() {
    closeInput();
    reader.join();
    close(fds[0]);
  }
  void write(const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
      ssize_t put = ::write(fds[1], text.data() + done, text.size() - done);
      ASSERT_GT(put, 0);
      done += static_cast<size_t>(put);
    }
  }
  void closeInput() {
    if (fds[1] >= 0) close(fds[1]);
    fds[1] = -1;
  }
  int unread() {
    std::lock_guard<std::mutex> hold(ring->inputLock);
    return (ring->writeIndex - ring->readIndex + ringSlots) % ringSlots;
  }
  // Polls for up to 5 s until the reader thread has made done() true.
  template <typename Done>
  static bool waitUntil(Done done) {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!done())
      if (std::chrono::steady_clock::now() > deadline) return false;
      else std::this_thread::sleep_for(std::chrono::microseconds(200));
    return true;
  }
  bool waitForUnread(int count) {
    return waitUntil([&] { return unread() >= count; });
  }
  bool waitForEnd() {
    return waitUntil([&] {
      std::lock_guard<std::mutex> hold(ring->inputLock);
      return ring->inputEnded != 0;
    });
  }
};

std::string take(InputRing& ring) {
  const InputSlot* slot = takeInputLine(ring);
  return !slot ? "<none>" : slot->dropped ? "<dropped>" : slot->text;
}

TEST(InputRing, LinesComeOutInOrderWithTheirEndings) {
  PipeFedRing fed;
  fed.write("uci\nisready\r\n\n   \nquit");
  fed.closeInput();
  ASSERT_TRUE(fed.waitForEnd());
  EXPECT_EQ(take(*fed.ring), "uci\n");
  EXPECT_EQ(take(*fed.ring), "isready\r\n");
  EXPECT_EQ(take(*fed.ring), "\n") << "an empty line is stored like any other";
  EXPECT_EQ(take(*fed.ring), "   \n");
  EXPECT_FALSE(inputFinished(*fed.ring)) << "a line is still unread";
  EXPECT_EQ(take(*fed.ring), "quit") << "a last line without line ending is served";
  EXPECT_EQ(takeInputLine(*fed.ring), nullptr);
  EXPECT_TRUE(inputFinished(*fed.ring));
}

TEST(InputRing, LinesUpToTheLimitComeWholeLongerOnesAreDroppedWhole) {
  PipeFedRing fed;
  std::string longest(longestLine, 'x');
  for (size_t i = 0; i < longest.size(); i += 1000) longest[i] = static_cast<char>('a' + i / 1000 % 26);
  // Far beyond a pipe's buffer: the write returns as the reader reads.
  fed.write(longest + "\n" + longest + "y\n" + std::string(200000, 'z') + "\nisready\n" + longest + "yy");
  fed.closeInput();
  ASSERT_TRUE(fed.waitForEnd());
  EXPECT_EQ(take(*fed.ring), longest + "\n");
  EXPECT_EQ(take(*fed.ring), "<dropped>");
  EXPECT_EQ(take(*fed.ring), "<dropped>");
  EXPECT_EQ(take(*fed.ring), "isready\n") << "the reader skips to the end of a dropped line";
  EXPECT_EQ(take(*fed.ring), "<dropped>") << "a last line without line ending";
  EXPECT_TRUE(inputFinished(*fed.ring));
}

TEST(InputRing, FullRingMakesTheReaderWaitAndLosesNothing) {
  PipeFedRing fed;
  const int total = 1000;
  std::thread writer([&fed] {
    for (int i = 0; i < total; ++i) fed.write("line " + std::to_string(i) + "\n");
    fed.closeInput();
  });

  // Failures are only noted until the ring is drained below, so that a
  // fault can't leave the writer blocked on a full pipe.
  EXPECT_TRUE(fed.waitForUnread(ringSlots - 1));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(fed.unread(), ringSlots - 1) << "the reader must wait while 127 lines are unread";

  // The line taken last stays intact while the ring fills up behind it.
  const char* held = takeInputLine(*fed.ring)->text;
  EXPECT_STREQ(held, "line 0\n");
  EXPECT_TRUE(fed.waitForUnread(ringSlots - 1));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_STREQ(held, "line 0\n");

  int next = 1, outOfOrder = 0;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!inputFinished(*fed.ring) && std::chrono::steady_clock::now() < deadline) {
    const InputSlot* slot = takeInputLine(*fed.ring);
    if (!slot) {
      std::this_thread::yield();
      continue;
    }
    if (std::string(slot->text) != "line " + std::to_string(next) + "\n") ++outOfOrder;
    ++next;
  }
  writer.join();
  EXPECT_EQ(next, total);
  EXPECT_EQ(outOfOrder, 0);
}

}  // namespace
