#include "platform/store/sqlite/connection/lock_wait.h"

#include <algorithm>

namespace store {

namespace {

// At first short, because most locks are; then long enough not to be in the way of who holds it.
constexpr int kFirstNap = 1;
constexpr int kLongestNap = 50;
constexpr int kMostDoublings = 6;

}  // namespace

LockWait::LockWait(sqlite3* connection, std::chrono::milliseconds most)
    : connection_(connection), most_(most) {
  sqlite3_busy_handler(connection_, &LockWait::onBusy, this);
}

LockWait::~LockWait() {
  sqlite3_busy_handler(connection_, nullptr, nullptr);
}

int LockWait::onBusy(void* self, int count) {
  return static_cast<LockWait*>(self)->waitOnce(count) ? 1 : 0;
}

bool LockWait::waitOnce(int count) {
  if (!isAllowed_) return false;
  const auto now = std::chrono::steady_clock::now();
  if (!hasWaited_) {
    hasWaited_ = true;
    end_ = now + most_;
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - now).count();
  if (left <= 0 || (question_ && question_(Busy::waiting))) return false;
  const int nap = std::min(kFirstNap << std::min(count, kMostDoublings), kLongestNap);
  sqlite3_sleep(static_cast<int>(std::min<decltype(left)>(left, nap)));
  return true;
}

}  // namespace store
