#include "platform/store/sqlite/sources/sqlite_row_scan.h"

#include <algorithm>
#include <limits>

#include "platform/store/sqlite/connection/query_plan.h"
#include "platform/store/sqlite/connection/row_run.h"

namespace store {
namespace {

using Clock = RowScan::Clock;

// A function takes a hundred arguments on every build of SQLite.
constexpr std::size_t kMostValues = 90;

// Row ids are gone along in parts of this many, whose order is checked first.
constexpr std::size_t kPart = 1 << 16;
// Half of what is gone along together: little enough that next to nothing is lost where it is broken off.
constexpr std::size_t kTogether = 1 << 15;
// Seeking a row costs as much as stepping over some.
constexpr std::size_t kMostStrangers = 8;
constexpr std::size_t kFewRows = 2048;

constexpr std::size_t kFewestWords = 1 << 10;
constexpr std::size_t kMostWords = 1 << 19;  // 4 MiB

// Who changes the file as often during one search goes on doing so.
constexpr int kMostForgotten = 3;

constexpr std::size_t kSampleCount = 1000;

/// Whether row ids taken here and there grow. What lies between is looked at where it is used.
bool growsOnTheWhole(const KeySet& keys) {
  const std::size_t step = keys.count() / kSampleCount + 1;
  for (std::size_t index = step; index < keys.count(); index += step) {
    if (keys.rowIdAt(index) <= keys.rowIdAt(index - step)) return false;
  }
  return true;
}

/// Whether SQLite sorts the rows of a statement before it gives the first one.
Status isSortedFirst(SqliteConnection& connection, const std::string& sql, bool* isSorted) {
  std::vector<std::string> steps;
  if (Status status = readQueryPlan(connection, sql, &steps); !status) return status;
  *isSorted = std::any_of(steps.begin(), steps.end(),
                          [](const std::string& step) { return step.starts_with("USE TEMP B-TREE"); });
  return {};
}

}  // namespace

SqliteRowScan::SqliteRowScan(SqliteConnection& connection, RowSource& source, RowTest& test, ScannedRows rows,
                             std::function<Status()> checkRows)
    : connection_(connection),
      test_(test),
      rows_(std::move(rows)),
      ignored_(RowRun::ignoredBy(test)),
      checkRows_(std::move(checkRows)),
      oneByOne_(makeFetchingScan(source, test)) {}

SqliteRowScan::~SqliteRowScan() {
  ConnectionGuard::Use use(connection_.guard());
  from_.reset();
  whole_.reset();
}

Status SqliteRowScan::passOver(const KeySet& keys, std::size_t first, std::size_t last,
                               Clock::time_point until, std::size_t* next) {
  *next = first;
  ConnectionGuard::Use use(connection_.guard());
  if (Status status = connection_.beginRead(); !status) return status;
  if (Status status = checkRows_(); !status) return status;
  if (Status status = prepare(); !status) return status;
  if (!isDecided_) decide(keys);
  if (Status status = forgetOldMarks(); !status) return status;
  bool stops = false;
  while (*next < last && !stops) {
    // What is found soon is not worth another thread.
    const bool isLong = companion_ || *next - first >= kPart;
    Status status = isLong && last - *next > kTogether && goesAlong_ && hasCompanion()
                        ? goAlongTogether(keys, last, until, next, &stops)
                        : passOverSome(keys, last, until, next, &stops);
    if (!status) return status;
    if (Clock::now() >= until) return {};
  }
  return {};
}

void SqliteRowScan::decide(const KeySet& keys) {
  isDecided_ = true;
  goesAlong_ = !rows_.areTupleKeyed && (rows_.areWholeTable || growsOnTheWhole(keys));
  mayHaveCompanion_ = rows_.areInFile && rows_.areWholeTable && goesAlong_;
  oneByOneLeft_ = kFewRows + keys.count() / 64;
}

bool SqliteRowScan::hasCompanion() {
  if (mayHaveCompanion_ && !companion_) {
    companion_ = CompanionScan::open(connection_, statementText(true), test_.copy());
    mayHaveCompanion_ = companion_ != nullptr;
  }
  return mayHaveCompanion_;
}

/// Each takes half of the next part. What the companion has found behind a row at which this one stops is
/// forgotten.
Status SqliteRowScan::goAlongTogether(const KeySet& keys, std::size_t last, Clock::time_point until,
                                      std::size_t* next, bool* stops) {
  const std::size_t half = keys.growingEnd(*next, *next + kTogether);
  const std::size_t end = keys.growingEnd(half, std::min(last, half + kTogether));
  companion_->begin(keys, half, end, until);
  Status status = goAlong(keys, half, until, next, stops);
  if (!status || *stops || *next < half) {
    companion_->abandon();
    return status;
  }
  const std::optional<CompanionScan::Answer> answer = companion_->finish();
  if (!answer) return {};
  if (answer->isValid) {
    *next = answer->next;
    *stops = answer->stops;
  } else {
    companion_.reset();
    mayHaveCompanion_ = false;
  }
  return {};
}

Status SqliteRowScan::passOverSome(const KeySet& keys, std::size_t last, Clock::time_point until,
                                   std::size_t* next, bool* stops) {
  if (goesAlong_) {
    const std::size_t end = keys.growingEnd(*next, std::min(last, *next + kPart));
    // Records that were added here stand at the end, whatever their row ids; there are few of them.
    return goAlong(keys, end, until, next, stops);
  }
  if (isOneByOne_) return lookOneByOne(keys, last, until, next, stops);
  if (oneByOneLeft_ > 0 || (!isMarked_ && last - *next <= kFewRows)) {
    const std::size_t before = *next;
    const std::size_t end = std::min(last, *next + std::max(oneByOneLeft_, kFewRows));
    Status status = lookOneByOne(keys, end, until, next, stops);
    oneByOneLeft_ -= std::min(oneByOneLeft_, *next - before);
    return status;
  }
  if (!isMarked_) return goThrough(keys, until);
  if (passOverUnmarked(keys, last, next)) return {};
  // Another row may have the same mark.
  return lookOneByOne(keys, *next + 1, until, next, stops);
}

Status SqliteRowScan::lookOneByOne(const KeySet& keys, std::size_t last, Clock::time_point until,
                                   std::size_t* next, bool* stops) {
  Status status = oneByOne_->passOver(keys, *next, last, until, next);
  *stops = *next < last;
  return status;
}

Status SqliteRowScan::goAlong(const KeySet& keys, std::size_t end, Clock::time_point until, std::size_t* next,
                              bool* stops) {
  sqlite3_stmt* statement = from_.get();
  const std::uint64_t mostRows = rows_.areWholeTable ? std::numeric_limits<std::uint64_t>::max()
                                                     : kMostStrangers * (end - *next) + kFewRows;
  RowRun run(test_, ignored_, until, mostRows);
  const int result = goAlongRows(statement, run, mostRows, keys, end, next, stops);
  if (result == SQLITE_ROW) goesAlong_ = false;
  return result == SQLITE_ROW || result == SQLITE_DONE ? Status() : fail(statement, result);
}

/// A row that has become a wanted one since the table was gone through has no mark.
Status SqliteRowScan::forgetOldMarks() {
  if (marks_.empty()) return {};
  std::int64_t version = 0;
  if (Status status = connection_.seenVersion(&version); !status) return status;
  if (version == markedVersion_) return {};
  marks_.clear();
  isMarked_ = false;
  resumeAt_.reset();
  rowsSeen_ = 0;
  isOneByOne_ = isOneByOne_ || ++timesForgotten_ > kMostForgotten;
  return {};
}

Status SqliteRowScan::goThrough(const KeySet& keys, Clock::time_point until) {
  if (marks_.empty()) {
    if (Status status = connection_.seenVersion(&markedVersion_); !status) return status;
    std::size_t words = kFewestWords;
    while (words < kMostWords && words < keys.count()) words *= 2;
    marks_.resize(words);
  }
  sqlite3_stmt* statement = rows_.areTupleKeyed && !resumeAt_ ? whole_.get() : from_.get();
  const std::uint64_t mostRows = 4 * kMostStrangers * keys.count() + kPart;
  RowRun run(test_, ignored_, until, mostRows, rowsSeen_);
  const StatementRun ended(statement);
  sqlite3_bind_pointer(statement, 1, &run, RowRun::kPointer, nullptr);
  if (!rows_.areTupleKeyed) {
    const std::int64_t from =
        resumeAt_ ? std::get<std::int64_t>(*resumeAt_) : std::numeric_limits<std::int64_t>::min();
    sqlite3_bind_int64(statement, 2, from);
    sqlite3_bind_int64(statement, 3, std::numeric_limits<std::int64_t>::max());
  } else if (resumeAt_) {
    int position = 2;
    for (const Value& value : std::get<std::vector<Value>>(*resumeAt_)) {
      const int bound = bindValueCopy(statement, position++, value);
      if (bound != SQLITE_OK) return statusOf(connection_.handle(), bound);
    }
  }
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
    Key key = keyOf(statement);
    if (run.isStopped) {
      rowsSeen_ = run.rowCount;
      resumeAt_ = std::move(key);
      // The table is much larger than what is looked for in it.
      isOneByOne_ = rowsSeen_ > mostRows;
      return {};
    }
    const std::uint64_t bit = bitOf(KeySet::hashOf(key));
    marks_[bit / 64] |= std::uint64_t{1} << bit % 64;
  }
  if (result != SQLITE_DONE) return fail(statement, result);
  isMarked_ = true;
  return {};
}

bool SqliteRowScan::passOverUnmarked(const KeySet& keys, std::size_t last, std::size_t* next) const {
  // In parts, so that the clock is looked at in between.
  const std::size_t end = std::min(last, *next + kPart);
  for (; *next < end; ++*next) {
    const std::uint64_t bit = bitOf(keys.hashAt(*next));
    if ((marks_[bit / 64] >> bit % 64 & 1) != 0) return false;
  }
  return true;
}

Status SqliteRowScan::fail(sqlite3_stmt* statement, int result) {
  Status status = statusOf(connection_.handle(), result);
  sqlite3_reset(statement);
  connection_.endRead();
  return status;
}

Key SqliteRowScan::keyOf(sqlite3_stmt* statement) const {
  if (!rows_.areTupleKeyed) return sqlite3_column_int64(statement, 0);
  std::vector<Value> values;
  for (int index = 0; index < static_cast<int>(rows_.keys.size()); ++index) {
    values.push_back(columnValue(statement, index));
  }
  return values;
}

Status SqliteRowScan::prepare() {
  if (from_ && preparedAt_ == connection_.rebuilds()) return {};
  from_.reset();
  whole_.reset();
  companion_.reset();
  // Another program may have added columns behind those of the source.
  SqliteStatement all;
  const std::string sql = "SELECT " + rows_.columnList + " FROM " + rows_.tableClause;
  if (Status status = connection_.prepare(sql, &all); !status) return status;
  columnCount_ = static_cast<std::size_t>(sqlite3_column_count(all.get()));
  if (rows_.areTupleKeyed) {
    if (Status status = connection_.prepare(statementText(false), &whole_); !status) return status;
    bool isSorted = false;
    if (Status status = isSortedFirst(connection_, statementText(false), &isSorted); !status) return status;
    // The table would be gone through to its end before the first row of it came, and that again each time.
    isOneByOne_ = isOneByOne_ || isSorted;
  }
  if (Status status = connection_.prepare(statementText(true), &from_); !status) return status;
  preparedAt_ = connection_.rebuilds();
  return {};
}

// The columns get names of their own by way of a table expression, which SQLite dissolves again: it reads
// only those that are asked for, and row after row along the table.
std::string SqliteRowScan::statementText(bool isBounded) const {
  const auto column = [](std::size_t index) { return "c" + std::to_string(index); };
  const auto key = [](std::size_t index) { return "k" + std::to_string(index); };
  std::string names;
  for (std::size_t index = 0; index < columnCount_; ++index) names += column(index) + ", ";
  std::string keyNames;
  std::string keys;
  std::string parameters;
  for (std::size_t index = 0; index < rows_.keys.size(); ++index) {
    const char* comma = index == 0 ? "" : ", ";
    keyNames += comma + key(index);
    keys += comma + rows_.keys[index];
    parameters += comma + ("?" + std::to_string(index + 2));
  }
  std::string test;
  const std::vector<std::size_t>& columns = test_.columns();
  for (std::size_t first = 0; first == 0 || first < columns.size(); first += kMostValues) {
    test += (first == 0 ? "" : " OR ") + ("quivane_wanted(?1, " + std::to_string(first));
    const std::size_t end = std::min(columns.size(), first + kMostValues);
    for (std::size_t number = first; number < end; ++number) test += ", " + column(columns[number]);
    test += ")";
  }
  std::string bounds;
  if (isBounded) {
    bounds = rows_.areTupleKeyed ? "(" + keyNames + ") >= (" + parameters + ") AND "
                                 : keyNames + " BETWEEN ?2 AND ?3 AND ";
  }
  return "WITH [quivane rows](" + names + keyNames + ") AS (SELECT " + rows_.columnList + ", " + keys +
         " FROM " + rows_.tableClause + ") SELECT " + keyNames + " FROM [quivane rows] WHERE " + bounds +
         "(" + test + ") ORDER BY " + keyNames;
}

}  // namespace store
