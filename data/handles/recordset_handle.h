#pragma once

#include <windows.h>

#include <adoce.h>
#include <memory>
#include <optional>

#include "data/handles/adoce_constants.h"
#include "data/handles/connection_handle.h"
#include "data/handles/field_handle.h"
#include "data/outcome.h"
#include "owners/com_handles.h"

/// A recordset of the data-access components; closes it at the end. Without registered components there
/// is no object behind it and every operation fails.
class RecordsetHandle {
 public:
  /// Makes the object. `activeConnection` may be null; it is used where open is given no other.
  explicit RecordsetHandle(const ConnectionHandle* activeConnection = nullptr);
  /// Takes over an object that exists; may be null.
  explicit RecordsetHandle(ComPtr<IAdoceRecordset> recordset);
  ~RecordsetHandle();
  RecordsetHandle(const RecordsetHandle&) = delete;
  RecordsetHandle& operator=(const RecordsetHandle&) = delete;

  /// Closes what is open and takes over `recordset`, which may be null.
  void attach(ComPtr<IAdoceRecordset> recordset);

  /// Closes what is open first. `connection` may be null. A statement is written to the debug output.
  Outcome open(const wchar_t* source, const ConnectionHandle* connection, CursorType cursor, SourceKind kind,
               LockType lock = LockType::optimistic);
  void close();
  /// A second cursor over the same records, standing at the first one, without what was written here and not
  /// stored. Null when there can't be one; nothing is open then, for example.
  std::unique_ptr<RecordsetHandle> clone();

  bool moveFirst();
  bool moveLast();
  bool moveNext();
  /// moveNext of who reads all records, to whom one that fails is no end.
  Outcome readOn();
  bool movePrevious();
  /// `count` records on (back when negative) from `origin`. Past an end it lands there and succeeds.
  bool move(LONG count, MoveOrigin origin);

  /// Tells that the `count` records from the one at `position` (1-based) on will be read soon, in their
  /// order.
  void readAhead(LONG position, LONG count);

  /// What names the current record in every recordset over the same table, until it leaves this one. False
  /// where there is no current record.
  bool bookmark(Variant& bookmark);
  /// Makes the record current that a recordset over the same table named so. False, and nothing has moved,
  /// when it is not among these.
  bool goTo(const Variant& bookmark);
  /// Of the current record, from 1; below 1 when there is none, or it can't be had.
  LONG position();

  /// May be null. Valid while this handle lives and nothing else is attached.
  IAdoceRecordset* get() const { return recordset_.get(); }
  /// -1 when it can't be had.
  LONG recordCount();

  Outcome addNew();
  /// Stores what was written into the current record. When the store refuses, it stays written.
  Outcome update();
  /// Drops what was written since the last update; a new record gives way to the former current one.
  bool cancelUpdate();
  /// The current record only.
  Outcome deleteCurrent();

  /// Begins a search for `text` in all fields, or in the one at `field` (0-based), which ends the one before.
  /// False when the component has no such search, and then there is none.
  bool beginTextSearch(const wchar_t* text, std::optional<LONG> field, bool matchCase);
  /// Moves on over records in which the text can't occur, at most `most` of them and for about as many
  /// milliseconds. Returns how many; 0 without a search, too.
  LONG passOver(LONG most, LONG milliseconds);
  void endTextSearch();

  /// Writes the bytes, or the text in UTF-8, of the field at `index` of the current record into a file, and
  /// replaces one that is there, but never the database nor what is kept beside it. After a failure nothing
  /// was made or replaced.
  Outcome saveField(LONG index, const wchar_t* path);

  /// -1 when it can't be had.
  LONG fieldCount();
  /// The one field handle of this recordset, referring to the field at `index` (0-based), or to none
  /// when there is no such field. The next call makes it refer to another.
  FieldHandle& field(LONG index);

 private:
  IAdoceFields* fields();

  ComPtr<IAdoceRecordset> recordset_;
  ComPtr<IAdoceConnection> activeConnection_;
  ComPtr<IAdoceTextSearch> search_;  // while there is one
  ComPtr<IAdoceFields> fields_;      // from the first need of it until close
  FieldHandle field_;
};
