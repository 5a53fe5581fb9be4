#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>

#include "platform/store/sqlite/connection/sqlite_statement.h"
#include "platform/store/sqlite/history/changeset.h"
#include "platform/store/sqlite/history/recorded_table.h"

namespace store {

class SqliteConnection;

/// The rows as they were before the open write transaction of a connection, which every other connection
/// still sees: one of its own is opened when the first row is asked for. It shuts the writer's commit out as
/// long as it lives.
class FormerRows {
 public:
  /// `connection` outlives it.
  explicit FormerRows(const SqliteConnection& connection) : connection_(connection) {}

  /// The row id of a row that `change` deletes, in a table that hides its row ids; nothing when the file
  /// can't be read beside the transaction.
  std::optional<std::int64_t> rowIdOf(const RecordedTable& table, const ChangesetReader& change);

 private:
  struct Closer {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
  };

  bool open();
  sqlite3_stmt* statementFor(const std::string& query);

  const SqliteConnection& connection_;
  bool wasTried_ = false;
  std::unique_ptr<sqlite3, Closer> former_;
  std::map<std::string, SqliteStatement> statements_;  // by their texts; they go before the connection
};

}  // namespace store
