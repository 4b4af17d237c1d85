#include "shell/input_ring.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

int unread(InputRing& ring) {
  std::lock_guard<std::mutex> hold(ring.inputLock);
  return (ring.writeIndex - ring.readIndex + ringSlots) % ringSlots;
}

// Polls for up to 5 s until the reader thread has left count lines unread.
bool waitForUnread(InputRing& ring, int count) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (unread(ring) < count)
    if (std::chrono::steady_clock::now() > deadline) return false;
    else std::this_thread::sleep_for(std::chrono::microseconds(200));
  return true;
}

TEST(InputRing, AFullRingMakesTheReaderWaitAndLosesNothing) {
  // A ring fed from a pipe by its own reader thread, as standard input feeds
  // the engine's, and a writer that floods it.
  auto ring = std::make_unique<InputRing>();
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  std::thread reader(readInputLines, std::ref(*ring), fds[0]);
  const int total = 1000;
  std::thread writer([&] {
    for (int i = 0; i < total; ++i) {
      std::string line = "line " + std::to_string(i) + "\n";
      if (::write(fds[1], line.data(), line.size()) != static_cast<ssize_t>(line.size())) break;
    }
    close(fds[1]);
  });

  // Failures are only noted until the ring is drained below, so that a
  // fault can't leave the writer blocked on a full pipe.
  EXPECT_TRUE(waitForUnread(*ring, ringSlots - 1));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(unread(*ring), ringSlots - 1) << "the reader must wait while 127 lines are unread";
  // The line taken last stays intact while the ring fills up behind it.
  const char* held = takeInputLine(*ring)->text;
  EXPECT_STREQ(held, "line 0\n");
  EXPECT_TRUE(waitForUnread(*ring, ringSlots - 1));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_STREQ(held, "line 0\n");

  int next = 1, outOfOrder = 0;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!inputFinished(*ring) && std::chrono::steady_clock::now() < deadline) {
    const InputSlot* slot = takeInputLine(*ring);
    if (!slot) {
      std::this_thread::yield();
      continue;
    }
    outOfOrder += std::string(slot->text) != "line " + std::to_string(next) + "\n";
    ++next;
  }
  writer.join();
  reader.join();
  close(fds[0]);
  EXPECT_EQ(next, total);
  EXPECT_EQ(outOfOrder, 0);
}

}  // namespace
