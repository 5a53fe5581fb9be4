#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <sqlite3.h>
#include <thread>
#include <utility>

#include "owners/recursive_mutex.h"
#include "platform/store/sqlite/connection/lock_wait.h"

namespace store {

/// Who may use a connection, and for how long it holds on to what is only lent to it.
///
/// The connection is used by one thread at a time: whoever holds a Use. Nothing else may run on it.
/// What would be dear to take anew for each use may be kept between uses, although it is in the way of
/// other programs: a helper thread lets go of it as soon as the connection was not used for a moment,
/// and after a quarter of a second of steady use.
class ConnectionGuard {
 public:
  /// `connection` outlives the guard. `letGo` gives back all that is lent; it is called inside a Use, on the
  /// helper thread, and doesn't throw.
  ConnectionGuard(sqlite3* connection, std::chrono::milliseconds lockWait, std::function<void()> letGo)
      : lockWait_(connection, lockWait), letGo_(std::move(letGo)) {}
  /// Ends the helper thread. What is still lent then is the owner's to give back.
  ~ConnectionGuard();
  ConnectionGuard(const ConnectionGuard&) = delete;
  ConnectionGuard& operator=(const ConnectionGuard&) = delete;

  /// The right to use the connection, for a scope. May be taken again inside itself. Within it all waiting
  /// for locks takes no longer than the lock wait.
  class Use {
   public:
    explicit Use(ConnectionGuard& guard) : lock_(guard.mutex_) { guard.lockWait_.renew(); }

   private:
    std::lock_guard<std::recursive_mutex> lock_;
  };

  LockWait& lockWait() { return lockWait_; }

  /// Inside a Use, each time that something lent is taken or used: sees to it that `letGo` will be called.
  /// False when there can be no thread to call it; then nothing may be kept after the Use.
  bool lend();

  /// Inside a Use: whether this Use has lasted so long that it must give back by itself what is lent. Says
  /// so once.
  bool takeOverdue() { return isOverdue_.exchange(false, std::memory_order_relaxed); }

 private:
  void watch();
  bool startWatching();
  bool letGoIfDue(unsigned* loansSeen, int* ticks);

  LockWait lockWait_;
  std::function<void()> letGo_;
  RecursiveMutex mutex_;                // held by whoever uses the connection
  unsigned loans_ = 0;                  // calls of lend, to see whether there were any lately
  std::atomic<bool> isOverdue_{false};  // asks the user to give back

  std::mutex watchMutex_;  // the watcher's own, so that it never makes the user wait
  std::condition_variable wake_;
  bool isLent_ = false;  // written with both mutexes held, read with either
  bool stopping_ = false;
  std::thread watcher_;
};

}  // namespace store
