#pragma once

#include <sqlite3.h>

#include "platform/store/sqlite/connection/connection_guard.h"
#include "platform/store/sqlite/connection/sqlite_statement.h"

namespace store {

/// Keeps one read transaction open over many reads, because each transaction of its own costs file
/// locks, which are dear where locks go through a server process. The transaction is lent: the guard's
/// letting go must end() it, so that other programs can write.
///
/// All functions are called inside a Use of the guard.
class ReadLease {
 public:
  /// `connection` and `guard` outlive the lease.
  ReadLease(sqlite3* connection, ConnectionGuard& guard) : connection_(connection), guard_(guard) {}

  /// Makes sure that the read transaction is open. `*isNew` says whether it was opened by this call, so that
  /// what was known of the database may be out of date. Returns SQLite's result code.
  int begin(bool* isNew);

  /// Whether there is a read transaction. (After some failures SQLite ends it by itself.)
  bool isOpen() const;

  /// Leaves the open read transaction to the caller, who ends it.
  void handOver();

  /// Ends the read transaction if there is one. Every statement must have been reset.
  void end();

 private:
  sqlite3* connection_;
  ConnectionGuard& guard_;
  SqliteStatement begin_;
  SqliteStatement commit_;
  bool isActive_ = false;
};

}  // namespace store
