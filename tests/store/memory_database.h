#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace store {

/// A database in memory, which shows what SQLite makes of a statement.
class MemoryDatabase {
 public:
  using Texts = std::vector<std::string>;

  MemoryDatabase() {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(":memory:", &handle), SQLITE_OK);
    handle_.reset(handle);
  }

  /// Runs exactly one statement. False when SQLite refuses it or finds more than one.
  bool run(const std::string& sql) {
    const StatementPointer statement = prepare(sql);
    if (!statement) return false;
    const int result = sqlite3_step(statement.get());
    return result == SQLITE_DONE || result == SQLITE_ROW;
  }

  /// The first column of all rows of exactly one statement.
  Texts query(const std::string& sql) {
    Texts values;
    const StatementPointer statement = prepare(sql);
    EXPECT_TRUE(statement) << sql << ": " << sqlite3_errmsg(handle_.get());
    while (statement && sqlite3_step(statement.get()) == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
      values.emplace_back(text == nullptr ? "NULL" : text);
    }
    return values;
  }

  Texts tables() { return query("SELECT name FROM sqlite_master WHERE type = 'table'"); }

 private:
  struct CloseDatabase {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using StatementPointer = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

  StatementPointer prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    const int length = static_cast<int>(sql.size());
    const int result = sqlite3_prepare_v2(handle_.get(), sql.data(), length, &statement, &tail);
    StatementPointer owner(statement);
    if (result != SQLITE_OK || tail != sql.data() + sql.size()) owner.reset();
    return owner;
  }

  std::unique_ptr<sqlite3, CloseDatabase> handle_;
};

}  // namespace store
