#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sqlite3.h>
#include <thread>

#include "platform/store/engine/lock_wait.h"
#include "platform/store/engine/sqlite_statement.h"

namespace store {

/// Keeps one read transaction open over many reads, because each transaction of its own costs file
/// locks, which are dear where locks go through a server process. The transaction is lent, not owned:
/// a helper thread ends it as soon as nothing was read for a moment, and after a quarter of a second
/// of steady reading, so that other programs can write.
///
/// The connection is used by one thread at a time: whoever holds a Use. Nothing else may run on it.
class ReadLease {
 public:
  /// `connection` outlives the lease.
  ReadLease(sqlite3* connection, std::chrono::milliseconds lockWait)
      : connection_(connection), lockWait_(connection, lockWait) {}
  /// Ends the transaction and the helper thread.
  ~ReadLease();
  ReadLease(const ReadLease&) = delete;
  ReadLease& operator=(const ReadLease&) = delete;

  /// The right to use the connection, for a scope. May be taken again inside itself. Within it all waiting
  /// for locks takes no longer than the lock wait.
  class Use {
   public:
    explicit Use(ReadLease& lease) : lock_(lease.mutex_) { lease.lockWait_.renew(); }

   private:
    std::lock_guard<std::recursive_mutex> lock_;
  };

  /// Inside a Use: makes sure that the read transaction is open. `*isNew` says whether it was opened by
  /// this call, so that what was known of the database may be out of date. Returns SQLite's result code.
  int begin(bool* isNew);

  LockWait& lockWait() { return lockWait_; }

  /// Inside a Use: ends the read transaction if there is one. Every statement must have been reset.
  void end();

 private:
  void watch();
  bool startWatching();
  bool endIfDue(unsigned* readsSeen, int* ticks);

  sqlite3* connection_;
  LockWait lockWait_;
  SqliteStatement begin_;
  SqliteStatement commit_;
  std::recursive_mutex mutex_;  // held by whoever uses the connection
  std::atomic<bool> active_{false};
  unsigned reads_ = 0;                // calls of begin, to see whether anything was read lately
  std::atomic<bool> expired_{false};  // asks the reader to end the transaction itself

  std::mutex watchMutex_;  // the watcher's own, so that it never makes the reader wait
  std::condition_variable wake_;
  bool stopping_ = false;
  std::thread watcher_;
};

}  // namespace store
