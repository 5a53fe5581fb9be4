#pragma once

#include <sqlite3.h>
#include <string_view>

#include "platform/store/sqlite/connection/sqlite_statement.h"

namespace store {

/// The file beside the database from which SQLite undoes a transaction that was cut off. Each write
/// transaction ends by emptying it: that is flushed like every write, while deleting it would only be as
/// durable as the folder's entry, which can't be flushed on every system. An empty one stands for nothing,
/// to SQLite in every program. It is closed between two transactions and stays in the folder until the end,
/// because making and deleting it each time is dear.
///
/// A file in write-ahead mode, also one that another program puts into it, has no such journal and stays in
/// its mode.
class RollbackJournal {
 public:
  /// `connection` outlives the journal.
  explicit RollbackJournal(sqlite3* connection) : connection_(connection) {}

  /// Inside a write transaction that has changed nothing yet: sees to its durable end. Returns SQLite's
  /// result code.
  int prepare();

  /// Outside transactions: deletes the emptied journal, unless another program just uses the database.
  void remove();

 private:
  bool isMode(std::string_view mode);

  sqlite3* connection_;
  SqliteStatement mode_;
  SqliteStatement empty_;
};

}  // namespace store
