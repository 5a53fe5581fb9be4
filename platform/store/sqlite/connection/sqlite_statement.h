#pragma once

#include <memory>
#include <sqlite3.h>
#include <string_view>

#include "platform/store/rows/value.h"

namespace store {

struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// Owns a prepared statement.
using SqliteStatement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

/// Prepares `sql`, unless it is in `statement` already, to be run many times. Returns SQLite's result code.
int prepareKept(sqlite3* connection, SqliteStatement& statement, const char* sql);

/// The same, and runs it; a row that it may return is not read. Returns SQLite's result code, SQLITE_OK
/// for success.
int runKept(sqlite3* connection, SqliteStatement& statement, const char* sql);

/// Undoes the open transaction, if there is one, also while another thread stops what runs.
void undo(sqlite3* connection);

/// Ends a run of a statement when the scope ends: it holds no lock and no row afterwards.
class StatementRun {
 public:
  explicit StatementRun(sqlite3_stmt* statement) : statement_(statement) {}
  ~StatementRun() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }
  StatementRun(const StatementRun&) = delete;
  StatementRun& operator=(const StatementRun&) = delete;

 private:
  sqlite3_stmt* statement_;
};

/// Binds `value` to the parameter at the 1-based `position`; texts and blobs are not copied and must
/// outlive the run. Returns SQLite's result code.
int bindValue(sqlite3_stmt* statement, int position, const Value& value);
/// The same with a copy, so that `value` need not outlive the call.
int bindValueCopy(sqlite3_stmt* statement, int position, const Value& value);

/// The result column at `index` of the current row, as a value of its own.
Value columnValue(sqlite3_stmt* statement, int index);

/// Appends the result columns [0, count) of the current row to `row`. False when memory ran out.
bool copyColumns(sqlite3_stmt* statement, int count, Row* row);

/// A text column of the current row as UTF-8; empty for null. Holds until the statement moves on.
std::string_view columnText(sqlite3_stmt* statement, int index);

}  // namespace store
