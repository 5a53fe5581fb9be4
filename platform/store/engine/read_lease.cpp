#include "platform/store/engine/read_lease.h"

#include <chrono>
#include <system_error>

namespace store {

namespace {

// Short enough that a writer hardly notices, long enough that a screenful is read in one transaction.
constexpr std::chrono::milliseconds kTick{25};
constexpr int kMostTicks = 10;

int runOnce(sqlite3* connection, SqliteStatement& statement, const char* sql) {
  if (!statement) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (result != SQLITE_OK) return result;
    statement.reset(prepared);
  }
  const int result = sqlite3_step(statement.get());
  sqlite3_reset(statement.get());
  return result == SQLITE_DONE ? SQLITE_OK : result;
}

}  // namespace

ReadLease::~ReadLease() {
  if (watcher_.joinable()) {
    {
      std::lock_guard<std::mutex> lock(watchMutex_);
      stopping_ = true;
    }
    wake_.notify_one();
    watcher_.join();
  }
  end();
}

bool ReadLease::startWatching() {
  if (watcher_.joinable()) return true;
  try {
    watcher_ = std::thread([this] { watch(); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

int ReadLease::begin(bool* isNew) {
  ++reads_;
  if (expired_.exchange(false, std::memory_order_relaxed)) end();
  // After some failures SQLite has ended the transaction by itself.
  if (active_ && sqlite3_get_autocommit(connection_) != 0) active_ = false;
  *isNew = !active_;
  // Without a thread to end it the transaction is not held: each read is then one of its own.
  if (active_ || !startWatching()) return SQLITE_OK;
  const int result = runOnce(connection_, begin_, "BEGIN");
  if (result != SQLITE_OK) return result;
  {
    std::lock_guard<std::mutex> lock(watchMutex_);
    active_ = true;
  }
  wake_.notify_one();
  return SQLITE_OK;
}

void ReadLease::end() {
  if (!active_) return;
  active_ = false;
  if (runOnce(connection_, commit_, "COMMIT") != SQLITE_OK) {
    sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

bool ReadLease::endIfDue(unsigned* readsSeen, int* ticks) {
  ++*ticks;
  std::unique_lock<std::recursive_mutex> connection(mutex_, std::try_to_lock);
  if (!connection.owns_lock()) {
    if (*ticks >= kMostTicks) expired_.store(true, std::memory_order_relaxed);
    return !active_;
  }
  if (reads_ == *readsSeen || *ticks >= kMostTicks) end();
  *readsSeen = reads_;
  return !active_;
}

void ReadLease::watch() {
  std::unique_lock<std::mutex> lock(watchMutex_);
  while (!stopping_) {
    wake_.wait(lock, [this] { return active_ || stopping_; });
    unsigned readsSeen = 0;  // no transaction opens without a read, so the first tick never ends it early
    int ticks = 0;
    while (!stopping_) {
      wake_.wait_for(lock, kTick, [this] { return stopping_; });
      if (stopping_) break;
      lock.unlock();  // a reader that opens a transaction meanwhile takes this lock with the connection's
                      // held
      const bool ended = endIfDue(&readsSeen, &ticks);
      lock.lock();
      if (ended) break;
    }
  }
}

}  // namespace store
