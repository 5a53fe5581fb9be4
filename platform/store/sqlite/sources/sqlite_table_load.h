#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/store/rows/table_load.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// Adds rows to a table of an SQLite file.
class SqliteTableLoad : public TableLoad {
 public:
  /// `connection` outlives the load.
  explicit SqliteTableLoad(SqliteConnection& connection)
      : connection_(connection), use_(connection.guard()), transaction_(connection) {}

  /// Takes the right to write, runs `createSql` (SQLite's SQL, from outside; may be empty) and prepares the
  /// statements. To be called once, before anything else.
  Status begin(const LoadTarget& target, const std::string& createSql);

  Status add(std::span<const Cell> values) override;
  Status commit() override;
  std::int64_t replacedCount() const override { return replacedCount_; }

 private:
  Status create(const std::string& createSql);
  Status prepareKey(const LoadTarget& target);
  Status makeKeyIndex(const LoadTarget& target);
  Status countOfKey(std::span<const Cell> values, int* count);
  Status runRow(sqlite3_stmt* statement);
  Status rowStatusOf(int result);

  SqliteConnection& connection_;
  ConnectionGuard::Use use_;
  SqliteConnection::WriteTransaction transaction_;
  SqliteStatement insert_;
  SqliteStatement update_;
  SqliteStatement find_;
  std::vector<std::size_t> keyIndexes_;     // of the key's columns in `columns`
  std::vector<std::size_t> updateIndexes_;  // of the others
  bool changesStructure_ = false;
  bool hasKeyIndex_ = false;  // one that is dropped again at the end
  bool hasFailed_ = false;
  std::int64_t replacedCount_ = 0;
};

}  // namespace store
