#pragma once

#include <sqlite3.h>
#include <string_view>

#include "platform/store/engine/connection_guard.h"
#include "platform/store/engine/sqlite_statement.h"

namespace store {

/// The file beside the database from which SQLite undoes a transaction that was cut off. Each write
/// transaction ends by emptying it: that is flushed like every write, while deleting it would only be as
/// durable as the folder's entry. The emptied file stays open for the next transaction, because making
/// and deleting it each time is dear. But it is only lent: where an open file can't be deleted, it lets the
/// commits of every other program wait, and after a second fail, that end with deleting it. So it is given
/// back when the guard lets go, and before this connection waits for another program.
///
/// All functions are called inside a Use of the guard. A file in write-ahead mode, also one that another
/// program puts into it, has no such journal and stays in its mode.
class RollbackJournal {
 public:
  /// `connection` and `guard` outlive the journal.
  RollbackJournal(sqlite3* connection, ConnectionGuard& guard) : connection_(connection), guard_(guard) {}

  /// Inside a write transaction that has changed nothing yet: sees to its durable end. Returns SQLite's
  /// result code.
  int prepare();

  /// Whether giveBack() has something to do.
  bool isKept() const { return isKept_; }

  /// Outside write transactions: closes the journal and, unless another program just uses the database,
  /// deletes it. Doesn't wait.
  void giveBack();

 private:
  bool isMode(std::string_view mode);

  sqlite3* connection_;
  ConnectionGuard& guard_;
  SqliteStatement mode_;
  SqliteStatement empty_;
  SqliteStatement delete_;
  bool isKept_ = false;
};

}  // namespace store
