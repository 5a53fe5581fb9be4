#include "platform/store/sqlite/history/former_rows.h"

#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/files/file_system.h"

namespace store {

bool FormerRows::open() {
  if (wasTried_) return former_ != nullptr;
  wasTried_ = true;
  sqlite3* opened = nullptr;
  const int result =
      sqlite3_open_v2(connection_.path().c_str(), &opened, SQLITE_OPEN_READONLY, fileSystemName());
  former_.reset(opened);
  if (result != SQLITE_OK) former_.reset();
  if (!former_) return false;
  sqlite3_db_config(former_.get(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  // Its lock is taken once for all rows, and goes with the connection.
  sqlite3_exec(former_.get(), "BEGIN", nullptr, nullptr, nullptr);
  return true;
}

sqlite3_stmt* FormerRows::statementFor(const std::string& query) {
  SqliteStatement& kept = statements_[query];
  prepareKept(former_.get(), kept, query.c_str());
  return kept.get();
}

std::optional<std::int64_t> FormerRows::rowIdOf(const RecordedTable& table, const ChangesetReader& change) {
  if (!open()) return std::nullopt;
  sqlite3_stmt* const statement = statementFor(table.rowIdQuery());
  if (statement == nullptr) return std::nullopt;
  const StatementRun run(statement);
  const bool isFound = table.bindKey(statement, 1, change, false) && sqlite3_step(statement) == SQLITE_ROW;
  return isFound ? std::optional<std::int64_t>(sqlite3_column_int64(statement, 0)) : std::nullopt;
}

}  // namespace store
