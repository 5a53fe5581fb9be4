#pragma once

#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// The rows of a running SQLite statement.
class SqliteRowStream : public RowStream {
 public:
  /// Made inside a Use with a read transaction open. `connection` outlives the stream.
  SqliteRowStream(SqliteConnection& connection, std::vector<Column> columns, SqliteStatement statement)
      : connection_(connection),
        use_(connection.guard()),
        columns_(std::move(columns)),
        statement_(std::move(statement)) {}

  const std::vector<Column>& columns() const override { return columns_; }
  Status next(bool* hasRow) override;
  Cell cell(std::size_t index) override;

 private:
  SqliteConnection& connection_;
  ConnectionGuard::Use use_;
  std::vector<Column> columns_;
  SqliteStatement statement_;
  bool isAtEnd_ = false;
};

}  // namespace store
