#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/backend.h"

namespace store {

enum class CursorType { forwardOnly = 0, keyset = 1 };
enum class LockType { readOnly = 1, optimistic = 3 };
enum class MoveOrigin { current = 0, first = 1, last = 2 };
enum class EditMode { none = 0, inProgress = 1, adding = 2 };

/// A keyset cursor. Opening takes the keys of all rows in order; every move after that costs the same
/// wherever it goes, and a row is read when a value is asked for. Rows that this recordset adds stand
/// at its end, rows that it deletes leave it, rows that other programs add don't appear.
///
/// One record is current: a row, BOF (before the first), EOF (behind the last), a new record that
/// `update` has not yet written, or the place of a deleted row, from which the next move starts. At
/// most one record is dirty; a move off it writes it first and stays when that fails.
///
/// Other programs may change, delete and replace rows meanwhile. A row that was read is changed or
/// deleted here only if it still holds what was read, as far as the recordset shows it; otherwise
/// changedElsewhere tells the difference, and a move or cancelUpdate reads the row anew. Reading itself
/// is not guarded like this: keys are all that the recordset knows of rows that it has not read. A
/// program that deletes the last rows of a table and adds others may give these the same row ids, unless
/// the table's key is AUTOINCREMENT; such a row is then shown in the place of the former one, and
/// deleted there by a `remove` without a reading since the last move.
class Recordset {
 public:
  /// Keeps `backend` open as long as it lives.
  Recordset(std::shared_ptr<Backend> backend, std::unique_ptr<RowSource> rows, CursorType cursor,
            LockType lock);
  ~Recordset();
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  /// Takes the keys and makes the first record current. To be called once, before anything else.
  Status load();

  /// A second cursor over the same keys, standing at the first record, without this one's edits. Waits for
  /// all keys; on failure `*copy` is untouched.
  Status clone(std::unique_ptr<Recordset>* copy);

  const std::vector<Column>& columns() const { return rows_->columns(); }
  /// The column of that name: exact, else in any letter case (ASCII). Empty when there is none.
  std::optional<std::size_t> columnIndex(std::string_view name) const;

  CursorType cursorType() const { return cursor_; }
  LockType lockType() const { return lock_; }
  EditMode editMode() const;
  std::int64_t recordCount() const { return static_cast<std::int64_t>(keys_.count() + missingCount_); }
  bool isBof() const;
  bool isEof() const;

  /// 1-based position of the current record; -2 at BOF, -3 at EOF, -1 where there is none to name.
  std::int64_t position() const;
  Status setPosition(std::int64_t position);

  /// Tells that the `count` records from `position` on will be read soon, in their order: where they are far
  /// away they come together then. Moves nothing and reads nothing; places where there is no record are
  /// passed over.
  void readAhead(std::int64_t position, std::int64_t count);

  Status moveFirst();
  Status moveLast();
  /// From the last record to EOF; at EOF noCurrentRecord. From a deleted record to the one behind it.
  Status moveNext();
  /// From the first record to BOF; at BOF noCurrentRecord.
  Status movePrevious();
  /// `count` records forwards (backwards when negative) from `origin`; past an end it lands on BOF or
  /// EOF. noCurrentRecord when it starts from BOF backwards, from EOF forwards, or in an empty set.
  Status move(std::int64_t count, MoveOrigin origin);
  /// The same from a bookmark. invalidArgument when it names no record of this recordset.
  Status moveFromBookmark(std::int64_t count, std::string_view bookmark);

  /// Where the record stands among these, 1-based; 0 when it is none of them, or not all keys could be read.
  std::int64_t positionOf(const RecordAddress& record);

  /// Opaque bytes that name the current record until it leaves the recordset.
  Status bookmark(std::string* bookmark);
  Status setBookmark(std::string_view bookmark);

  /// The value of the current record's field: what was written into the field and not yet stored, else
  /// what the database holds. `cell` holds until the next call of any other operation. Fails with
  /// noCurrentRecord off the records, on a deleted row and on a row that another program deleted, with
  /// structureChanged when the tables became others: this recordset is then to be opened anew.
  Status cell(std::size_t column, Cell* cell);

  /// Writes into the current record's field; stored by `update`. A value equal to the one that the
  /// field shows changes nothing, so that a field which is written back unchanged keeps what the file
  /// has, to the byte.
  Status setValue(std::size_t column, Value value);

  /// Makes a new record current, all its fields null. Writes a dirty record first.
  Status addNew();
  /// Stores the dirty record durably; nothing to do when there is none. On failure the record stays
  /// dirty with its values, and the database is unchanged. noCurrentRecord when the row is gone,
  /// changedElsewhere when it no longer holds what was read, constraint when a rule of the database
  /// (a trigger that ignores the change included) did not take it.
  Status update();
  /// Drops what was written since the last update; a new record gives way to the former current one.
  Status cancelUpdate();
  /// Deletes the current record durably. It stays current, unreadable, until a move. A row that is gone
  /// already counts as deleted; changedElsewhere and constraint as for `update`.
  Status remove();

  /// A scan of this recordset's rows for passOver(). The recordset and `test` outlive it; it is of use as
  /// long as keyChanges() stays the same.
  std::unique_ptr<RowScan> makeScan(RowTest& test) { return rows_->makeScan(test); }
  /// Counts the times that a record was added, deleted or stored here.
  std::uint64_t keyChanges() const { return keyChanges_; }
  /// Moves on over records that `scan` tells not to be wanted, as moveNext() would, at most `most` of them,
  /// the last one included, and stores how many they were. It stops at any of them when it is `until`. Passes
  /// over none from a record that was changed, is new or deleted, and from BOF or EOF. On failure the cursor
  /// has moved as `*passed` says.
  Status passOver(RowScan& scan, std::int64_t most, RowScan::Clock::time_point until, std::int64_t* passed);

  bool isUpdatable() const { return lock_ != LockType::readOnly && rows_->isUpdatable(); }

 private:
  Recordset(std::shared_ptr<Backend> backend, std::shared_ptr<RowSource> rows, CursorType cursor,
            LockType lock);

  enum class Place { bof, row, deleted, eof, adding };

  Status leaveRecord();
  Status requireBackwards() const;
  /// Where a move starts.
  std::int64_t indexOf(MoveOrigin origin, bool forwards) const;
  void goTo(std::int64_t index);
  /// Waits for the keys of the first records, so many of them.
  Status needKeys(std::size_t count);
  Status needAllKeys() { return needKeys(keys_.count() + missingCount_); }
  /// Where the key stands; KeySet::npos when it is none of these.
  Status findKey(const Key& key, std::size_t* found);
  Status fetchRow();
  const Value* pendingValue(std::size_t column) const;

  std::shared_ptr<Backend> backend_;
  std::shared_ptr<RowSource> rows_;
  CursorType cursor_;
  LockType lock_;
  KeySet keys_;
  std::size_t missingCount_ = 0;  // keys of the last records, which were counted and have not come yet
  std::uint64_t keyChanges_ = 0;
  Place place_ = Place::eof;
  std::size_t index_ = 0;  // of the row; where a deleted row stood
  Place placeBeforeAdd_ = Place::eof;
  std::size_t indexBeforeAdd_ = 0;
  Row row_;
  bool rowFetched_ = false;
  std::vector<Change> changes_;  // of the dirty record, one for each written column
};

}  // namespace store
