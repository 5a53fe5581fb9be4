#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/store/rows/keyset.h"
#include "platform/store/rows/row_scan.h"
#include "platform/store/sqlite/connection/row_run.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// Goes along row ids that grow, as far as `end`, by `statement`, in which ?1 is `run` and the row ids are
/// those from ?2 to ?3. `*next` is the index that it has come to, `end` when it is through. `*stops` is set
/// at a row that may be wanted, and where the run stopped. Returns SQLite's result code, SQLITE_ROW for a run
/// that looked at too many rows, SQLITE_DONE otherwise.
int goAlongRows(sqlite3_stmt* statement, RowRun& run, std::uint64_t mostRows, const KeySet& keys,
                std::size_t end, std::size_t* next, bool* stops);

/// Goes along some rows of a table on a thread and a connection of its own, while another thread goes along
/// others: SQLite's walk over the pages is most of a search, and a machine with two processors has it done in
/// half the time. It reads what is committed, never waits for another program's lock, and may fail at any
/// time: then the other thread has to look at the rows by itself.
class CompanionScan {
 public:
  /// Null where it is of no use: on one processor, and when the file that `beside` has open can't be opened
  /// once more. `statement` is as for goAlongRows(), on tables of the file. Of `beside`, inside a Use,
  /// nothing is kept. May throw std::bad_alloc.
  static std::unique_ptr<CompanionScan> open(SqliteConnection& beside, std::string statement,
                                             std::unique_ptr<RowTest> test);
  ~CompanionScan();
  CompanionScan(const CompanionScan&) = delete;
  CompanionScan& operator=(const CompanionScan&) = delete;

  /// Begins to look at the rows with the row ids [first, end) of `keys`, which grow, and which nobody changes
  /// until finish() or abandon(), one of which must follow.
  void begin(const KeySet& keys, std::size_t first, std::size_t end, RowScan::Clock::time_point until);

  struct Answer {
    bool isValid = false;  ///< whether it could look at the rows at all
    std::size_t next = 0;  ///< as goAlongRows() stores it
    bool stops = false;
  };
  /// Waits until it has come to its end. Nothing when it has not come to begin: on a busy machine that may
  /// take longer than to look at the rows oneself.
  std::optional<Answer> finish();
  /// Makes it stop, and waits until it has.
  void abandon();

 private:
  struct Task {
    const KeySet* keys = nullptr;
    std::size_t first = 0;
    std::size_t end = 0;
    RowScan::Clock::time_point until;
  };

  CompanionScan(std::int64_t structureVersion, std::unique_ptr<RowTest> test);
  bool prepare(SqliteConnection& beside, const std::string& statement);
  void work();
  Answer look(const Task& task);

  const std::int64_t structureVersion_;
  std::unique_ptr<RowTest> test_;
  std::vector<char> ignored_;
  SqliteConnection connection_;
  SqliteStatement statement_;
  std::atomic<bool> isAbandoned_{false};

  std::mutex mutex_;
  std::condition_variable changed_;
  Task task_;
  Answer answer_;
  enum class State {
    idle,
    offered,  // by begin()
    working,
  };
  State state_ = State::idle;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace store
