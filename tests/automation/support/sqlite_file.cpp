#include "tests/automation/support/sqlite_file.h"

#include <filesystem>

#include "gtest/gtest.h"

namespace automationtest {
namespace {

constexpr int kPatience = 5000;

}  // namespace

SqliteFile::SqliteFile(const std::wstring& path) {
  const std::u8string name = std::filesystem::path(path).u8string();
  EXPECT_EQ(sqlite3_open(reinterpret_cast<const char*>(name.c_str()), &connection_), SQLITE_OK);
  sqlite3_busy_timeout(connection_, kPatience);
  // What the tests put into place need not survive the machine.
  run("PRAGMA synchronous=OFF");
}

SqliteFile::~SqliteFile() {
  EXPECT_EQ(sqlite3_close(connection_), SQLITE_OK);
}

void SqliteFile::run(const std::string& sql) {
  char* message = nullptr;
  EXPECT_EQ(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
      << (message != nullptr ? message : "") << " in " << sql;
  sqlite3_free(message);
}

bool SqliteFile::tryRun(const std::string& sql, int patience) {
  sqlite3_busy_timeout(connection_, patience);
  const bool hasRun = sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  sqlite3_busy_timeout(connection_, kPatience);
  return hasRun;
}

std::vector<std::string> SqliteFile::column(const std::string& sql) {
  std::vector<std::string> values;
  sqlite3_stmt* statement = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
      << sqlite3_errmsg(connection_) << " in " << sql;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    const void* data = sqlite3_column_blob(statement, 0);
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, 0));
    values.emplace_back(data == nullptr ? "" : static_cast<const char*>(data), length);
  }
  EXPECT_EQ(sqlite3_finalize(statement), SQLITE_OK);
  return values;
}

std::vector<std::string> sqliteColumn(const std::wstring& path, const std::string& sql) {
  return SqliteFile(path).column(sql);
}

}  // namespace automationtest
