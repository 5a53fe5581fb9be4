#pragma once

#include <cstddef>
#include <memory>
#include <sqlite3.h>
#include <string>

namespace store {

/// What a step changed, as SQLite's session extension writes it down.
class Changeset {
 public:
  Changeset() = default;
  /// Takes over bytes that SQLite gave.
  Changeset(void* bytes, int size) : bytes_(bytes), size_(size) {}

  bool isEmpty() const { return size_ == 0; }
  void* bytes() const { return bytes_.get(); }
  int size() const { return size_; }

 private:
  struct Free {
    void operator()(void* bytes) const { sqlite3_free(bytes); }
  };
  std::unique_ptr<void, Free> bytes_;
  int size_ = 0;
};

/// Goes through the changes of a changeset, each of one row; those of one table follow one another.
class ChangesetReader {
 public:
  /// `isInverted` for the changes that take these back: they come in the same order. The changeset outlives
  /// it.
  ChangesetReader(const Changeset& changes, bool isInverted);
  ~ChangesetReader();
  ChangesetReader(const ChangesetReader&) = delete;
  ChangesetReader& operator=(const ChangesetReader&) = delete;

  /// To the first change, or from one to the next; false behind the last and when there is no memory.
  bool next();
  /// SQLite's result code of what next() came to.
  int result() const { return result_; }

  /// Whether next() came to a table other than that of the change before.
  bool isOtherTable() const { return isOtherTable_; }
  const std::string& table() const { return table_; }
  int operation() const { return operation_; }  ///< SQLITE_INSERT, SQLITE_UPDATE or SQLITE_DELETE
  /// Made by a trigger or a foreign key.
  bool isIndirect() const { return isIndirect_; }
  int columnCount() const { return columnCount_; }
  /// The values of a column before and behind the change; null for one that an update leaves alone, and where
  /// there is no row.
  sqlite3_value* before(int column) const;
  sqlite3_value* behind(int column) const;

 private:
  sqlite3_changeset_iter* iterator_ = nullptr;
  int result_ = SQLITE_OK;
  std::string table_;
  bool isOtherTable_ = false;
  int operation_ = 0;
  bool isIndirect_ = false;
  int columnCount_ = 0;
};

}  // namespace store
