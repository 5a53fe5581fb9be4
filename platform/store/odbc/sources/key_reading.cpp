#include "platform/store/odbc/sources/key_reading.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/driver/call_thread.h"
#include "platform/store/odbc/sources/key_blocks.h"
#include "platform/store/sql/dialect.h"

namespace store {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kFirstKeys = 1000;
// A server that is alive ends a statement at once when it is told to.
constexpr auto kEndPatience = 3s;

}  // namespace

/// Reads the keys behind the first ones in another conversation, which sees what the first one saw.
class KeyReading::Background {
 public:
  Background(const OdbcConnection& connection, const Statements& statements, std::string snapshot)
      : state_(std::make_shared<State>(connection, statements, std::move(snapshot))) {
    thread_.begin([state = state_] {
      state->read();
      return SQL_SUCCESS;
    });
  }
  ~Background() {
    state_->end();
    thread_.waitFor(kEndPatience);
  }
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  /// Whether it has seen the snapshot within that time, so that this may go, or has failed to.
  bool waitForBeginning(std::chrono::milliseconds time) { return state_->waitForBeginning(time); }
  /// Whether it sees the snapshot, whatever became of it afterwards.
  bool hasSnapshot() { return state_->hasSnapshot(); }
  Status status() { return state_->status(); }
  /// Appends what has come; false when nothing has within that time. `*isWhole` tells that no more will come.
  bool take(std::chrono::milliseconds time, KeySet* keys, bool* isWhole) {
    return state_->take(time, keys, isWhole);
  }

 private:
  /// Also the thread's, which may outlast the reading when the server doesn't answer.
  class State {
   public:
    State(const OdbcConnection& connection, Statements statements, std::string snapshot)
        : connection_(connection.another()),
          statements_(std::move(statements)),
          snapshot_(std::move(snapshot)) {}

    /// Nothing leaves it: there is nobody on that thread to catch it.
    void read() noexcept {
      Status status;
      try {
        status = readBlocks();
      } catch (...) {
        status = {ErrorCode::outOfMemory, "Out of memory."};
      }
      connection_->lose();
      const std::lock_guard<std::mutex> lock(mutex_);
      status_ = std::move(status);
      hasBegun_ = isOver_ = true;
      changed_.notify_all();
    }

    void end() {
      {
        const std::lock_guard<std::mutex> lock(mutex_);
        isEnding_ = true;
      }
      connection_->stop();
    }

    bool waitForBeginning(std::chrono::milliseconds time) {
      std::unique_lock<std::mutex> lock(mutex_);
      return changed_.wait_for(lock, time, [this] { return hasBegun_; });
    }

    bool hasSnapshot() {
      const std::lock_guard<std::mutex> lock(mutex_);
      return hasSnapshot_;
    }

    Status status() {
      const std::lock_guard<std::mutex> lock(mutex_);
      return isIncomplete_ ? Status(ErrorCode::outOfMemory, "Out of memory.") : status_;
    }

    bool take(std::chrono::milliseconds time, KeySet* keys, bool* isWhole) {
      std::unique_lock<std::mutex> lock(mutex_);
      const auto isThere = [this] { return !blocks_.empty() || isOver_ || isIncomplete_; };
      if (!changed_.wait_for(lock, time, isThere)) return false;
      *isWhole = isOver_ || isIncomplete_;
      if (isIncomplete_) return true;
      std::deque<KeySet> blocks = std::exchange(blocks_, {});
      // Whoever has no memory for these gets none of the later ones in their place.
      isIncomplete_ = true;
      lock.unlock();
      for (const KeySet& block : blocks) {
        for (std::size_t index = 0; index < block.count(); ++index) keys->append(block.keyAt(index));
      }
      lock.lock();
      isIncomplete_ = false;
      return true;
    }

   private:
    Status readBlocks() {
      Status status = begin();
      for (bool isAtEnd = false; status && !isAtEnd;) {
        KeySet block(statements_.kind);
        status = fetchKeys(*connection_, kKeysAtOnce, &block);
        isAtEnd = !status || block.count() == 0;
        const std::lock_guard<std::mutex> lock(mutex_);
        if (isEnding_) status = {ErrorCode::stopped, "The reading was ended."};
        if (!isAtEnd) blocks_.push_back(std::move(block));
        changed_.notify_all();
      }
      return status;
    }

    Status begin() {
      Status status = runStatement(*connection_, "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
      if (status) status = runStatement(*connection_, "SET TRANSACTION SNAPSHOT " + quotedText(snapshot_));
      if (status) status = declareKeys(*connection_, statements_.keys);
      if (status)
        status =
            runStatement(*connection_, "MOVE FORWARD " + std::to_string(kFirstKeys) + " IN quivane_keys");
      if (!status) return status;
      const std::lock_guard<std::mutex> lock(mutex_);
      hasBegun_ = hasSnapshot_ = true;
      changed_.notify_all();
      return {};
    }

    std::unique_ptr<OdbcConnection> connection_;  // but for stop() the thread's
    Statements statements_;
    std::string snapshot_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<KeySet> blocks_;
    Status status_;
    bool hasBegun_ = false;  // or failed to
    bool hasSnapshot_ = false;
    bool isEnding_ = false;
    bool isOver_ = false;
    bool isIncomplete_ = false;  // keys were taken and got lost
  };

  std::shared_ptr<State> state_;
  CallThread thread_;
};

KeyReading::KeyReading(OdbcConnection& connection, Statements statements)
    : connection_(connection), statements_(std::move(statements)) {}

KeyReading::~KeyReading() = default;

Status KeyReading::begin(KeySet* keys, std::size_t* count) {
  background_.reset();
  KeySet read(statements_.kind);
  std::size_t counted = 0;
  bool isWhole = false;
  if (!statements_.count.empty()) {
    if (Status status = readFirst(&read, &counted, &isWhole); !status) return status;
  }
  // A server that lets no other conversation see the same moment gives all keys in this one.
  if (!isWhole && background_ == nullptr) {
    if (Status status = readAll(&read); !status) return status;
    counted = read.count();
  }
  *keys = std::move(read);
  *count = counted;
  return {};
}

/// Leaves `*isWhole` false and `background_` null when all keys have to be read at once.
Status KeyReading::readFirst(KeySet* keys, std::size_t* count, bool* isWhole) {
  ReadTransaction transaction(connection_);
  if (Status status = transaction.begin(); !status) return status;
  if (Status status = declareKeys(connection_, statements_.keys); !status) return status;
  if (Status status = fetchKeys(connection_, kFirstKeys, keys); !status) return status;
  if (keys->count() < kFirstKeys) {
    *count = keys->count();
    *isWhole = true;
    return {};
  }
  Answer snapshot;
  Status status = ask(connection_, "SELECT pg_export_snapshot()", {}, &snapshot);
  if (status.code() == ErrorCode::stopped || connection_.session() == nullptr) return status;
  if (!status || snapshot.empty()) return {};
  auto background = std::make_unique<Background>(connection_, statements_, snapshot[0][0].value_or(""));
  Answer counted;
  if (status = ask(connection_, statements_.count, {}, &counted); !status) return status;
  status = connection_.wait([&](auto time) { return background->waitForBeginning(time); });
  if (!status) return status;
  if (counted.empty() || !background->hasSnapshot()) return {};
  *count = static_cast<std::size_t>(std::stoull(counted[0][0].value_or("0")));
  background_ = std::move(background);
  return {};
}

Status KeyReading::readAll(KeySet* keys) {
  KeySet read(statements_.kind);
  ReadTransaction transaction(connection_);
  if (Status status = transaction.begin(); !status) return status;
  if (Status status = declareKeys(connection_, statements_.keys); !status) return status;
  for (bool isAtEnd = false; !isAtEnd;) {
    const std::size_t before = read.count();
    if (Status status = fetchKeys(connection_, kKeysAtOnce, &read); !status) return status;
    isAtEnd = read.count() == before;
  }
  *keys = std::move(read);
  return {};
}

Status KeyReading::readOn(KeySet* keys, std::size_t wanted) {
  while (background_ != nullptr && keys->count() < wanted) {
    bool isWhole = false;
    const auto take = [&](auto time) { return background_->take(time, keys, &isWhole); };
    if (Status status = connection_.wait(take); !status) return status;
    if (!isWhole) continue;
    if (Status status = background_->status(); !status) {
      return {ErrorCode::structureChanged,
              "Not all records could be read: the table must be opened again. " + status.message()};
    }
    background_.reset();
  }
  return {};
}

}  // namespace store
