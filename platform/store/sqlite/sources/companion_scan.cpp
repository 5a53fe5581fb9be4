#include "platform/store/sqlite/sources/companion_scan.h"

#include <limits>
#include <system_error>
#include <utility>

#include "platform/store/sqlite/files/file_system.h"

namespace store {
namespace {

// It reads each page once.
constexpr int kPageCacheKibibytes = 512;

}  // namespace

int goAlongRows(sqlite3_stmt* statement, RowRun& run, std::uint64_t mostRows, const KeySet& keys,
                std::size_t end, std::size_t* next, bool* stops) {
  const StatementRun ended(statement);
  sqlite3_bind_pointer(statement, 1, &run, RowRun::kPointer, nullptr);
  sqlite3_bind_int64(statement, 2, keys.rowIdAt(*next));
  sqlite3_bind_int64(statement, 3, keys.rowIdAt(end - 1));
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
    // Whatever stands in front of it is gone or was looked at.
    const std::int64_t rowId = sqlite3_column_int64(statement, 0);
    *next = keys.firstNotBelow(*next, end, rowId);
    if (run.rowCount > mostRows) return SQLITE_ROW;
    *stops = run.isStopped || (*next < end && keys.rowIdAt(*next) == rowId);
    if (*stops) return SQLITE_DONE;
  }
  if (result == SQLITE_DONE) *next = end;
  return result;
}

std::unique_ptr<CompanionScan> CompanionScan::open(SqliteConnection& beside, std::string statement,
                                                   std::unique_ptr<RowTest> test) {
  if (std::thread::hardware_concurrency() < 2) return nullptr;
  std::unique_ptr<CompanionScan> scan(new CompanionScan(beside.structureVersion(), std::move(test)));
  return scan->prepare(beside, statement) ? std::move(scan) : nullptr;
}

CompanionScan::CompanionScan(std::int64_t structureVersion, std::unique_ptr<RowTest> test)
    : structureVersion_(structureVersion), test_(std::move(test)), ignored_(RowRun::ignoredBy(*test_)) {}

bool CompanionScan::prepare(SqliteConnection& beside, const std::string& statement) {
  OpenOptions options;
  options.lockWait = 0;
  options.pageCacheKibibytes = kPageCacheKibibytes;
  if (!connection_.open(beside.path(), options)) return false;
  // Another file may have taken its name.
  if (!haveSameFile(beside.handle(), connection_.handle())) return false;
  {
    const ConnectionGuard::Use use(connection_.guard());
    if (!connection_.prepare(statement, &statement_)) return false;
  }
  try {
    thread_ = std::thread([this] { work(); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

CompanionScan::~CompanionScan() {
  if (thread_.joinable()) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      isEnding_ = true;
      isAbandoned_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }
  // Without a statement there may be no open connection.
  if (!statement_) return;
  const ConnectionGuard::Use use(connection_.guard());
  statement_.reset();
}

void CompanionScan::begin(const KeySet& keys, std::size_t first, std::size_t end,
                          RowScan::Clock::time_point until) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    task_ = {&keys, first, end, until};
    isAbandoned_ = false;
    state_ = State::offered;
  }
  changed_.notify_all();
}

std::optional<CompanionScan::Answer> CompanionScan::finish() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (state_ == State::offered) {
    state_ = State::idle;
    return std::nullopt;
  }
  changed_.wait(lock, [this] { return state_ == State::idle; });
  return answer_;
}

void CompanionScan::abandon() {
  isAbandoned_ = true;
  finish();
}

void CompanionScan::work() {
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return state_ == State::offered || isEnding_; });
    if (isEnding_) return;
    const Task task = task_;
    state_ = State::working;
    lock.unlock();
    const Answer answer = look(task);
    lock.lock();
    answer_ = answer;
    state_ = State::idle;
    changed_.notify_all();
  }
}

CompanionScan::Answer CompanionScan::look(const Task& task) {
  Answer answer;
  try {
    const ConnectionGuard::Use use(connection_.guard());
    // With another structure the row ids may be those of other rows.
    if (!connection_.beginRead() || connection_.structureVersion() != structureVersion_) return answer;
    constexpr std::uint64_t kMostRows = std::numeric_limits<std::uint64_t>::max();
    RowRun run(*test_, ignored_, task.until, kMostRows);
    run.isAbandoned = &isAbandoned_;
    answer.next = task.first;
    const int result =
        goAlongRows(statement_.get(), run, kMostRows, *task.keys, task.end, &answer.next, &answer.stops);
    answer.isValid = result == SQLITE_DONE;
    connection_.endRead();
  } catch (...) {
    answer.isValid = false;
  }
  return answer;
}

}  // namespace store
