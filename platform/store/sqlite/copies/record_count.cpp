#include "platform/store/sqlite/copies/record_count.h"

#include <chrono>
#include <memory>
#include <sqlite3.h>
#include <string_view>
#include <vector>

#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/connection/sqlite_statement.h"
#include "platform/store/sqlite/connection/table_kind.h"
#include "platform/store/sqlite/files/file_system.h"

namespace store {

namespace {

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};

constexpr const char* kTables =
    "SELECT s.name FROM sqlite_schema s WHERE s.type = 'table' AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND " QUIVANE_KIND_OF_TABLE " = 'table'";

/// So many of SQLite's steps, two for each record.
constexpr int kStepsBetweenQuestions = 10'000;

int ask(void* isStopped) {
  return (*static_cast<const std::function<bool()>*>(isStopped))() ? 1 : 0;
}

SqliteStatement prepare(sqlite3* connection, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  return SqliteStatement(statement);
}

}  // namespace

std::optional<std::int64_t> countRecords(const std::string& path, const std::function<bool()>& isStopped) {
  std::function<bool()> question = isStopped;
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY, fileSystemName());
  const std::unique_ptr<sqlite3, Closer> connection(opened);
  if (result != SQLITE_OK) return {};
  std::vector<std::string> tables;
  {
    const SqliteStatement names = prepare(opened, kTables);
    if (names == nullptr) return {};
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(names.get())) == SQLITE_ROW) tables.emplace_back(columnText(names.get(), 0));
    if (step != SQLITE_DONE) return {};
  }
  if (question) sqlite3_progress_handler(opened, kStepsBetweenQuestions, ask, &question);
  std::int64_t records = 0;
  for (const std::string& table : tables) {
    if (question && question()) return {};
    // Without a condition SQLite would count the table in a single step, during which nobody is asked.
    const SqliteStatement count =
        prepare(opened, "SELECT count(*) FROM main." + quotedName(table) + " WHERE 1");
    if (count == nullptr || sqlite3_step(count.get()) != SQLITE_ROW) return {};
    records += sqlite3_column_int64(count.get(), 0);
  }
  return records;
}

std::function<bool()> untilTimeIsUp() {
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kMost{100};
  return [end = std::optional<Clock::time_point>()]() mutable {
    if (!end) end = Clock::now() + kMost;
    return Clock::now() >= *end;
  };
}

}  // namespace store
