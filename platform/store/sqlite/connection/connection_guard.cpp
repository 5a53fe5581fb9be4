#include "platform/store/sqlite/connection/connection_guard.h"

#include <system_error>

namespace store {

namespace {

// Short enough that a writer hardly notices, long enough that a screenful is read in one transaction.
constexpr std::chrono::milliseconds kTick{25};
constexpr int kMostTicks = 10;

}  // namespace

ConnectionGuard::~ConnectionGuard() {
  if (!watcher_.joinable()) return;
  {
    std::lock_guard<std::mutex> lock(watchMutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  watcher_.join();
}

bool ConnectionGuard::startWatching() {
  if (watcher_.joinable()) return true;
  try {
    watcher_ = std::thread([this] { watch(); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

bool ConnectionGuard::lend() {
  ++loans_;
  // Waking the watcher is dear, and it is awake as long as something is lent.
  if (isLent_) return true;
  if (!startWatching()) return false;
  {
    std::lock_guard<std::mutex> lock(watchMutex_);
    isLent_ = true;
  }
  wake_.notify_one();
  return true;
}

bool ConnectionGuard::letGoIfDue(unsigned* loansSeen, int* ticks) {
  ++*ticks;
  std::unique_lock<std::recursive_mutex> connection(mutex_, std::try_to_lock);
  if (!connection.owns_lock()) {
    if (*ticks >= kMostTicks) isOverdue_.store(true, std::memory_order_relaxed);
    return false;
  }
  const bool isDue = loans_ == *loansSeen || *ticks >= kMostTicks;
  *loansSeen = loans_;
  if (!isDue) return false;
  letGo_();
  std::lock_guard<std::mutex> lock(watchMutex_);
  isLent_ = false;
  return true;
}

void ConnectionGuard::watch() {
  std::unique_lock<std::mutex> lock(watchMutex_);
  while (!stopping_) {
    wake_.wait(lock, [this] { return isLent_ || stopping_; });
    unsigned loansSeen = 0;  // nothing is lent without a loan, so the first tick never lets go early
    int ticks = 0;
    bool isDone = false;
    while (!stopping_ && !isDone) {
      wake_.wait_for(lock, kTick, [this] { return stopping_; });
      if (stopping_) break;
      // Who lends something takes this lock with the connection's held.
      lock.unlock();
      isDone = letGoIfDue(&loansSeen, &ticks);
      lock.lock();
    }
  }
}

}  // namespace store
