#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/connection/sqlite_statement.h"
#include "platform/store/sqlite/history/changeset.h"

namespace store {

class SqliteConnection;

/// A table as the changes of its rows see it, and the reading of its rows by their keys, inside a Use.
class RecordedTable {
 public:
  /// noTable when there is no such table; notAvailable when its changes can't be kept: it belongs to a
  /// virtual table or to SQLite, or a column hides its row ids.
  Status read(SqliteConnection& connection, const std::string& name);

  /// As sqlite_schema spells it.
  const std::string& definition() const { return definition_; }
  /// The columns that changes have, the row id before all others where it is the key.
  int columnCount() const { return static_cast<int>(columns_.size()); }
  /// Whether it is no column of the user's.
  bool isRowId(int column) const { return column == 0 && hasNoKey_; }
  bool isKey(int column) const { return isKey_[static_cast<std::size_t>(column)]; }
  /// It has row ids beside a key of its own, which changes don't have.
  bool hasHiddenRowIds() const { return !rowIdName_.empty(); }
  /// Rows whose key holds a null are in none of the changes.
  bool mayHaveNullKeys() const { return hasHiddenRowIds() && mayHaveNullKeys_; }

  /// Looks for the row that the present change is about, as it stands, by the key before or behind it. The
  /// row holds until the next call for this table.
  Status find(const ChangesetReader& change, bool behind, bool* found);
  /// Of the row that was found: a value, the row id of a table that hides it, and a number that is another
  /// one when any of the values is, as good as always.
  sqlite3_value* value(int column) const;
  std::int64_t rowId() const;
  std::uint64_t image() const;
  /// Lets go of that row.
  void release();

  /// Of a table that hides its row ids: the statement that reads one by the key, which are its parameters.
  std::string rowIdQuery() const;
  /// Binds the key before or behind a change to the parameters from `first` on. False without memory.
  bool bindKey(sqlite3_stmt* statement, int first, const ChangesetReader& change, bool behind) const;
  /// Of a table that hides its row ids: whether there is a row with this one, and whether its key holds a
  /// null.
  Status findRowId(std::int64_t rowId, bool* found, bool* hasNullKey);
  /// Of such a table: the lowest and the highest row id, 0 without rows.
  Status findRowIdRange(std::int64_t* lowest, std::int64_t* highest);
  /// Gives the row that stands behind a change this row id, unless another row has it, which `*isTaken` says.
  Status moveToRowId(const ChangesetReader& change, std::int64_t rowId, bool* isTaken);

 private:
  Status prepare(SqliteStatement& statement, const std::string& sql);

  SqliteConnection* connection_ = nullptr;
  std::string name_;  // quoted
  std::string definition_;
  std::vector<std::string> columns_;  // quoted
  std::vector<bool> isKey_;
  std::string rowIdName_;
  bool mayHaveNullKeys_ = false;
  bool hasNoKey_ = false;
  std::string keyCondition_;
  std::string nullCondition_;
  SqliteStatement find_;
  SqliteStatement findRowId_;
  SqliteStatement move_;
};

/// The tables that changes were about, read anew when the structure of the file is another one.
class RecordedTables {
 public:
  explicit RecordedTables(SqliteConnection& connection) : connection_(connection) {}

  /// Inside a transaction. `*table` is valid until the next call after a change of the structure.
  Status find(const std::string& name, RecordedTable** table);
  void clear() { tables_.clear(); }
  const SqliteConnection& connection() const { return connection_; }

 private:
  SqliteConnection& connection_;
  std::map<std::string, std::unique_ptr<RecordedTable>> tables_;
  std::int64_t structureVersion_ = 0;
};

/// Whether both are the same value of the same kind, to the byte.
bool isSame(sqlite3_value* one, sqlite3_value* other);

}  // namespace store
