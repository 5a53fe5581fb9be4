// What a mutex leaves behind of the system's, which only Windows lets one count.
#include <windows.h>

#include <atomic>
#include <thread>

#include "gtest/gtest.h"
#include "owners/recursive_mutex.h"
#include "tests/ui/remote/possessions.h"

namespace {

int handleCount() {
  return possessionsOf(GetCurrentProcessId(), GetCurrentProcess()).handles;
}

/// Until the system has made an event for it.
void wantTwice(RecursiveMutex& mutex) {
  mutex.lock();
  std::atomic<int> before{-1};
  std::thread other([&] {
    before = handleCount();
    const std::lock_guard<RecursiveMutex> lock(mutex);
  });
  while (before < 0 || handleCount() <= before) std::this_thread::yield();
  mutex.unlock();
  other.join();
}

TEST(RecursiveMutexTest, TakesItsEventAlong) {
  // What the first thread brings along for all.
  RecursiveMutex first;
  wantTwice(first);
  const int before = handleCount();
  constexpr int kCount = 20;
  for (int i = 0; i < kCount; ++i) {
    RecursiveMutex mutex;
    wantTwice(mutex);
  }
  // A thread that has just ended may still have its own.
  EXPECT_LT(handleCount(), before + kCount / 2);
}

}  // namespace
