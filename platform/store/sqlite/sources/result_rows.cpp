#include "platform/store/sqlite/sources/result_rows.h"

#include <atomic>
#include <utility>

#include "platform/store/sqlite/files/temporary_bound.h"
#include "platform/store/sqlite/sources/sqlite_row_scan.h"

namespace store {

namespace {

Status readOnlyRows() {
  return {ErrorCode::readOnly, "The records of this statement can only be read."};
}

}  // namespace

ResultRows::~ResultRows() {
  ConnectionGuard::Use use(connection_.guard());
  fetch_.reset();
  if (!table_.empty()) {
    connection_.endRead();
    sqlite3_exec(connection_.handle(), dropStatement_.c_str(), nullptr, nullptr, nullptr);
  }
}

Status ResultRows::makeTable() {
  static std::atomic<unsigned> made{0};
  std::string table = "temp.[quivane result " + std::to_string(++made) + "]";
  std::string definition;
  for (std::size_t index = 0; index < columns_.size(); ++index) {
    // Without a type, so that each value stays as it is.
    definition += (index == 0 ? "c" : ", c") + std::to_string(index);
  }
  const std::string sql = "CREATE TABLE " + table + " (" + definition + ")";
  dropStatement_ = "DROP TABLE " + table;
  const int result = sqlite3_exec(connection_.handle(), sql.c_str(), nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) table_ = std::move(table);
  return statusOf(connection_.handle(), result);
}

Status ResultRows::takeRows(sqlite3_stmt* statement) {
  std::string parameters;
  for (std::size_t index = 0; index < columns_.size(); ++index) parameters += index == 0 ? "?" : ", ?";
  SqliteStatement insert;
  if (Status status = connection_.prepare("INSERT INTO " + table_ + " VALUES (" + parameters + ")", &insert);
      !status) {
    return status;
  }
  const StatementWatch::Asked asked(connection_.watch());
  const int columnCount = static_cast<int>(columns_.size());
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
    for (int index = 0; index < columnCount; ++index) {
      result = sqlite3_bind_value(insert.get(), index + 1, sqlite3_column_value(statement, index));
      if (result != SQLITE_OK) return statusOf(connection_.handle(), result);
    }
    result = sqlite3_step(insert.get());
    sqlite3_reset(insert.get());
    if (result != SQLITE_DONE) return statusOf(connection_.handle(), result);
    ++count_;
  }
  return statusOf(connection_.handle(), result);
}

Status ResultRows::take(sqlite3_stmt* statement) {
  if (Status status = makeTable(); !status) return status;
  const TemporaryBound bound(connection_.mostTemporaryBytes());
  Status status = bound.explain(takeRows(statement));
  sqlite3_reset(statement);
  // As a part of that transaction the table would go with a change that takes it over and is undone.
  connection_.endRead();
  if (status) status = connection_.prepare("SELECT * FROM " + table_ + " WHERE rowid = ?", &fetch_);
  return status;
}

Status ResultRows::readKeys(KeySet* keys, std::size_t* count) {
  KeySet read(KeySet::Kind::rowId);
  for (std::int64_t number = 1; number <= count_; ++number) read.append(number);
  *count = read.count();
  *keys = std::move(read);
  return {};
}

Status ResultRows::fetch(const KeySet& keys, std::size_t index, Row* row) {
  row->clear();
  ConnectionGuard::Use use(connection_.guard());
  StatementRun run(fetch_.get());
  sqlite3_bind_int64(fetch_.get(), 1, keys.rowIdAt(index));
  const int result = sqlite3_step(fetch_.get());
  if (result != SQLITE_ROW) {
    Status status = statusOf(connection_.handle(), result);
    return status ? Status(ErrorCode::noCurrentRecord, "There is no such record.") : status;
  }
  if (copyColumns(fetch_.get(), static_cast<int>(columns_.size()), row)) return {};
  row->clear();
  return {ErrorCode::outOfMemory, "Out of memory."};
}

std::unique_ptr<RowScan> ResultRows::makeScan(RowTest& test) {
  ScannedRows rows;
  rows.columnList = "*";
  rows.tableClause = table_;
  rows.keys = {"rowid"};
  rows.areWholeTable = true;
  return std::make_unique<SqliteRowScan>(connection_, *this, test, std::move(rows), [] { return Status(); });
}

Status ResultRows::insert(const std::vector<Change>&, KeySet*) {
  return readOnlyRows();
}
Status ResultRows::update(const std::vector<Change>&, KeySet*, std::size_t, const Row&) {
  return readOnlyRows();
}
Status ResultRows::remove(KeySet*, std::size_t, const Row*) {
  return readOnlyRows();
}

}  // namespace store
