#include "platform/store/engine/read_lease.h"

namespace store {

namespace {

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

int ReadLease::begin(bool* isNew) {
  if (guard_.takeOverdue()) end();
  // After some failures SQLite has ended the transaction by itself.
  if (isActive_ && sqlite3_get_autocommit(connection_) != 0) isActive_ = false;
  *isNew = !isActive_;
  // Without anybody to end it the transaction is not held: each read is then one of its own.
  if (!guard_.lend() || isActive_) return SQLITE_OK;
  const int result = runOnce(connection_, begin_, "BEGIN");
  isActive_ = result == SQLITE_OK;
  return result;
}

void ReadLease::end() {
  if (!isActive_) return;
  isActive_ = false;
  if (runOnce(connection_, commit_, "COMMIT") != SQLITE_OK) {
    sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

}  // namespace store
