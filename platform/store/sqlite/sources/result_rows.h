#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// The rows of a statement that no table's keys tell apart: a join, an aggregate, a view, a pragma. They
/// are taken down once, in SQLite's temporary storage, and are read-only.
class ResultRows : public RowSource {
 public:
  /// `connection` outlives the rows.
  ResultRows(SqliteConnection& connection, std::vector<Column> columns)
      : connection_(connection), columns_(std::move(columns)) {}
  ~ResultRows() override;
  ResultRows(const ResultRows&) = delete;
  ResultRows& operator=(const ResultRows&) = delete;

  /// Runs `statement` to its end and takes its rows down, inside a Use with a read transaction. To be
  /// called once, before anything else.
  Status take(sqlite3_stmt* statement);

  const std::vector<Column>& columns() const override { return columns_; }
  bool isUpdatable() const override { return false; }
  Status readKeys(KeySet* keys, std::size_t* count) override;
  Status fetch(const KeySet& keys, std::size_t index, Row* row) override;
  std::unique_ptr<RowScan> makeScan(RowTest& test) override;
  Status insert(const std::vector<Change>& changes, KeySet* keys) override;
  Status update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                const Row& read) override;
  Status remove(KeySet* keys, std::size_t index, const Row* read) override;

 private:
  Status makeTable();
  Status takeRows(sqlite3_stmt* statement);

  SqliteConnection& connection_;
  std::vector<Column> columns_;
  std::string table_;          // quoted, with its schema; empty until it is made
  std::string dropStatement_;  // made beforehand, because at the end memory may be short
  std::int64_t count_ = 0;
  SqliteStatement fetch_;
};

}  // namespace store
