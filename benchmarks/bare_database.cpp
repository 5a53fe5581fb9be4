#include "benchmarks/bare_database.h"

#include <cstdio>
#include <cstdlib>

#include "platform/store/sqlite/files/file_system.h"

namespace bench {

namespace {

void require(bool done, const char* what, sqlite3* connection) {
  if (done) return;
  std::fprintf(stderr, "bench: %s: %s\n", what, sqlite3_errmsg(connection));
  std::exit(1);
}

}  // namespace

BareDatabase::BareDatabase(const std::string& path) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, store::fileSystemName());
  connection_.reset(opened);
  require(result == SQLITE_OK, path.c_str(), opened);
  // An emptied journal is flushed, while a deleted one may come back after a loss of power.
  run("PRAGMA synchronous=FULL");
  run("PRAGMA journal_mode=TRUNCATE");
  run("PRAGMA cache_size=-65536");
  fetch_ = prepare("SELECT * FROM Measurements WHERE rowid = ?");
  change_ = prepare("UPDATE Measurements SET Level = ? WHERE rowid = ?");
}

void BareDatabase::run(const char* sql) {
  const int result = sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr);
  require(result == SQLITE_OK, sql, connection_.get());
}

BareDatabase::Statement BareDatabase::prepare(const char* sql) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(connection_.get(), sql, -1, &prepared, nullptr);
  require(result == SQLITE_OK, sql, connection_.get());
  return Statement(prepared);
}

std::int64_t BareDatabase::scanRowIds() {
  const Statement statement = prepare("SELECT rowid FROM Measurements");
  std::int64_t sum = 0;
  while (sqlite3_step(statement.get()) == SQLITE_ROW) sum += sqlite3_column_int64(statement.get(), 0);
  return sum;
}

std::int64_t BareDatabase::fetchRow(std::int64_t rowId) {
  if (sqlite3_get_autocommit(connection_.get()) != 0) run("BEGIN");
  sqlite3_stmt* statement = fetch_.get();
  sqlite3_bind_int64(statement, 1, rowId);
  require(sqlite3_step(statement) == SQLITE_ROW, "fetch", connection_.get());
  std::int64_t bytes = 0;
  for (int column = 0; column < sqlite3_column_count(statement); ++column) {
    require(sqlite3_column_text16(statement, column) != nullptr, "text", connection_.get());
    bytes += sqlite3_column_bytes16(statement, column);
  }
  sqlite3_reset(statement);
  return bytes;
}

void BareDatabase::changeRow(std::int64_t rowId, std::int64_t value) {
  sqlite3_bind_int64(change_.get(), 1, value);
  sqlite3_bind_int64(change_.get(), 2, rowId);
  require(sqlite3_step(change_.get()) == SQLITE_DONE, "change", connection_.get());
  sqlite3_reset(change_.get());
}

std::int64_t BareDatabase::runToEnd(const std::string& sql) {
  const Statement statement = prepare(sql.c_str());
  std::int64_t count = 0;
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement.get())) == SQLITE_ROW) ++count;
  require(result == SQLITE_DONE, sql.c_str(), connection_.get());
  return count;
}

void BareDatabase::endReading() {
  if (sqlite3_get_autocommit(connection_.get()) == 0) run("COMMIT");
}

}  // namespace bench
