#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/history/changeset.h"

namespace store {

/// A session of SQLite's.
struct SessionCloser {
  void operator()(sqlite3_session* session) const { sqlite3session_delete(session); }
};
using UniqueSession = std::unique_ptr<sqlite3_session, SessionCloser>;

/// A session on the file of `connection` that writes down what changes in all of its tables, also in those
/// without a key; null when there is no memory. It ends before the connection.
UniqueSession makeSession(sqlite3* connection);

/// A table that rows of were changed in, and the row ids that these had or have, as often as it was done.
struct TouchedTable {
  std::string name;
  std::vector<std::int64_t> rowIds;
};

/// Writes down what one transaction changes. Inside a Use of the connection's guard.
class ChangeRecorder {
 public:
  /// `connection` outlives it.
  explicit ChangeRecorder(sqlite3* connection) : connection_(connection) {}
  ~ChangeRecorder() { end(); }
  ChangeRecorder(const ChangeRecorder&) = delete;
  ChangeRecorder& operator=(const ChangeRecorder&) = delete;

  /// Begins, in at most about `mostBytes`.
  void begin(std::size_t mostBytes);
  /// Gives up what takes more than it may. To be called now and then.
  void checkSize();
  /// What was changed until now. False when it is not known, because it takes too much memory. `stopped` when
  /// somebody stopped the connection meanwhile, which is for the caller to obey.
  Status read(bool* isKnown, Changeset* changes);
  const std::vector<TouchedTable>& touched() const { return touched_; }
  void end();

 private:
  static int onTable(void* self, const char* name);
  static void onRow(void* self, int operation, const char* database, const char* table, sqlite3_int64 rowId);
  void touch(const char* table, std::int64_t rowId);

  sqlite3* connection_;
  UniqueSession session_;
  std::size_t mostBytes_ = 0;
  std::size_t touchedCount_ = 0;
  bool isLost_ = true;
  std::vector<TouchedTable> touched_;
  TouchedTable* last_ = nullptr;  // of touched_
};

}  // namespace store
