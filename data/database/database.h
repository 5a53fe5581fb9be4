#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/growable_array.h"
#include "base/name_list.h"
#include "base/string.h"
#include "data/database/look_up_records.h"
#include "data/database/record_counters.h"
#include "data/database/saved_query.h"
#include "data/handles/database_copy.h"
#include "data/handles/exported_records.h"
#include "data/handles/file_state.h"
#include "data/handles/history_step.h"
#include "data/outcome.h"
#include "data/values/bytes.h"
#include "data/values/field_value_source.h"
#include "data/values/record_mark.h"
#include "data/values/record_snapshot.h"
#include "data/values/schema.h"

class BusyListener;
class ConnectionHandle;
class ImportFile;
class RecordsetHandle;
class TableSearch;

/// The gateway to the open database file: its tables, its saved queries and one current recordset, the
/// table or query that the form and the list show. There is one Database in the program, used by one
/// thread; it keeps the program-wide counters of record_counters.h.
///
/// An Outcome says whether the operation succeeded and why not, a bool result only whether; nothing here
/// shows a message. After a failure out-parameters and counters are as before unless an operation says
/// otherwise. Field indexes are
/// 0-based, record positions 1-based. std::bad_alloc passes through when memory runs out.
///
/// CREATE and DROP statements have room for 199 characters. A name or path that does not fit is
/// refused before anything is sent.
class Database {
 public:
  /// No file is open; currentRecord and the list position are 1. Needs the data-access components to be
  /// registered; without them every operation fails.
  Database();
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Who is told while an operation takes its time; it outlives this object. Null, at first, tells nobody.
  void setBusyListener(BusyListener* listener);

  // ---- The file (database.cpp)

  /// Opens the file at `path` after closing the one that is open, with a password for a server that wants
  /// one. Opens no recordset. A failure leaves no file open.
  Outcome open(const String& path, const String& password = String());
  /// Closes the file and forgets its path, fields and records. Always true.
  bool close();
  /// Makes a new database file. Whatever the result, no file is open afterwards.
  Outcome createDatabase(const String& path);
  /// The same, also in place of a file that exists: the new one is made beside it and takes its name, so
  /// that a failure leaves the old one. One that another program has unfinished work in is not replaced.
  Outcome replaceDatabase(const String& path);
  /// Deletes a database file. Another file that is open stays so; the file itself is closed first. With no
  /// file open the connection stays with the store after a failed statement.
  Outcome dropDatabase(const String& path);

  // ---- The file that loses its name while it is open (database_file_state.cpp)

  /// Cheap: nothing of the file is read. FileState::present also when none is open. From the loss on the
  /// store refuses every change, and reading goes on.
  FileState fileState();
  /// Why a change could not be stored at the moment; done when nothing is known against it. Nothing is
  /// changed. A file is open.
  Outcome tryWriting();
  /// Whether what is open is the database of a server.
  bool isServers() const;
  /// What the server of the open database is and whether the connection to it is encrypted, for the user;
  /// empty for a file, and when none is open. On failure `text` is untouched.
  Outcome describeServer(String& text);
  /// Why the server of the open database let its user in no more since this was asked last; done when it has
  /// not.
  Outcome takeRefusal();
  /// Gives another password, by which the next operation connects. passwordWanted when the server doesn't
  /// take it.
  Outcome givePassword(const String& password);
  /// Writes what is open into a new file, without records that were begun and not stored; the open file
  /// stays open. Fails, and no file was made, when something stands at `path` already or it can't be written.
  Outcome saveCopy(const String& path);
  /// Whether the file at `path` opens as a database. The open one stays open.
  Outcome tryOpening(const String& path);
  /// Goes on in `copy`, which saveCopy has made, in place of the open file: currentRecord and the fields
  /// stay. With `keepsRecords` the current recordset is opened there in its place, a new record that was
  /// begun is begun anew. Fails when the copy does not open, or when the current record is not the same
  /// there; the open file stays open then.
  Outcome goOnIn(const String& copy, bool keepsRecords);

  // ---- Former states of databases (database_copies.cpp)

  /// From the next opening on the state of a database before the first change made to it is kept in this
  /// folder.
  void keepCopiesIn(const String& folder);
  /// Why that could not be done, once; else empty. The change was made all the same.
  String takeCopyFailure();
  /// Keeps the open database before a table is deleted, and one that is not open before it is deleted or
  /// replaced. Done also where nothing is kept at all.
  Outcome keepBeforeDeletion();
  Outcome keepDatabase(const String& path);
  static bool isThere(const String& path);
  /// The databases that have copies, the one with the newest first, and the copies of one, newest first.
  std::vector<String> databasesWithCopies();
  std::vector<DatabaseCopy> copiesOf(const String& database);
  /// Whether the file is a copy, which can only be read.
  bool isCopy(const String& path);
  /// DatabaseCopy::kNotCounted when it takes longer.
  std::int64_t countRecordsOfCopy(const String& copy, unsigned milliseconds);
  /// Puts a copy in the place of a database that is not open, or a table of it into that; the database is
  /// kept as a copy first. On failure it is as it was.
  Outcome putBack(const String& database, const String& copy);
  Outcome putTableBack(const String& database, const String& copy, const String& table);
  /// The tables of a copy that its database does not have. On failure `names` is untouched.
  Outcome listMissingTables(const String& database, const String& copy, NameList& names);

  bool isOpen() const { return isOpen_; }
  /// The path of the open file, empty when none is open.
  const String& path() const { return path_; }

  // ---- What other programs change (database_others.cpp)

  /// Whether another program has changed the file since it was opened, or since the last call that said so.
  /// Cheap enough for every second: nothing of the records is read, and nobody is waited for; what is told
  /// only later is not lost. False also when no file is open.
  bool othersHaveChanged();
  /// Opens the current recordset anew in its place, with the records that there are by now, if its fields are
  /// still the same. Each of `positions` becomes the place of the record that stood there, or where that is
  /// gone of one that stood near it; 0 where there are no records any more. The first of them is read,
  /// becomes `read` and is current in the recordset then; currentRecord is left to the caller. Not while a
  /// new record is pending. After a failure, whose reason may be empty, everything is as before.
  Outcome reopenInPlace(std::vector<std::uint32_t>& positions, RecordSnapshot& read);
  /// Whether both are readings of the same values.
  static bool isSameReading(const RecordSnapshot& one, const RecordSnapshot& other);

  // ---- Other files (database_exchange.cpp). A file is open.

  /// Writes records into a file at `path`, in the format of its ending, else as separated values. A file that
  /// is there is replaced, but only when all is written, and never the open one. After a failure nothing was
  /// made or replaced.
  Outcome exportRecords(const ExportedRecords& records, const String& path, ExportCounts& counts);
  /// Opens a file of separated values or JSON, to be imported. It lives no longer than this object.
  Outcome openImport(const String& path, std::unique_ptr<ImportFile>& file);

  // ---- Tables (database_tables.cpp)

  /// `columns` is the column list as SQL spells it, without the parentheses around it.
  Outcome createTable(const String& name, const String& columns);
  Outcome dropTable(const String& name);
  /// Fills `names` with the tables of the file in the catalogue's order, the catalogue's own tables left
  /// out. Always true; `names` is left as it was when the catalogue can't be read to its end, which `read`
  /// says unless it is null.
  bool listTables(NameList& names, Outcome* read = nullptr);
  /// Fills `names` with the field names of a SELECT, without touching the current recordset; leaves
  /// `names` as it was when the statement does not open.
  void listFieldNames(const String& sql, NameList& names);

  // ---- The current recordset (database_fields.cpp)

  /// Opens `sql` as the current recordset, in place of the former one, and loads its fields. The first
  /// record is current in the recordset; currentRecord is left to the caller. After a failure no
  /// recordset is open and the fields of the former one are still named.
  Outcome openRecordset(const String& sql);
  /// Whether `sql` opens. It is opened as the current recordset and stays so, but the fields are not
  /// loaded: openRecordset is to be called before records are read again.
  Outcome checkSql(const String& sql);
  void closeRecordset();
  /// After another program has changed the structure of the file: opens the current recordset anew in its
  /// place, if its fields are still the same. The first record is then current in the recordset, a new
  /// record that was begun is begun again, currentRecord is left to the caller. False otherwise, and then
  /// everything is as before.
  bool reopenSameFields();

  /// Opens `sql` in the place of the current recordset, which holds records of the same table: `position`
  /// (from 1) becomes the place of the record that stood at `former`, 0 when it is not among them, and
  /// `hasOtherFields` whether the fields are others than before. The recordset stands at any record then,
  /// currentRecord is left to the caller. On failure everything is as before.
  Outcome openInPlace(const String& sql, std::uint32_t former, std::uint32_t& position, bool& hasOtherFields);
  /// By what the record at this position (from 1) of the current recordset is found again, in any recordset
  /// over the same table. Of what is no single table the number counts. Empty when it can't be had.
  RecordMark markRecord(std::uint32_t position);
  /// Where that record stands in the current recordset, in which it is looked for from `nearby` outwards; 0
  /// when it is none of those. No record becomes current by it.
  std::uint32_t placeOf(const RecordMark& mark, std::uint32_t nearby);
  struct FieldDescription {
    String name;
    FieldType type;
  };
  /// The fields of a SELECT, without touching the current recordset. `fields` is untouched when it does not
  /// open.
  Outcome describeFields(const String& sql, std::vector<FieldDescription>& fields);
  /// The texts of the fields of the first record of a SELECT, as the user reads them. `texts` is untouched
  /// when there is none or it can't be read.
  Outcome readFirst(const String& sql, std::vector<std::wstring>& texts);
  /// Whether `sql` opens. The current recordset is not touched.
  Outcome trySql(const String& sql);

  /// Whether fields were ever loaded.
  bool fieldsLoaded() const { return fieldsLoaded_; }
  /// 0 once the file is closed.
  std::uint32_t fieldCount() const { return fieldCount_; }
  /// The records of the current recordset, kept up to date by addNew and deleteCurrent.
  std::uint32_t recordCount() const { return recordCount_; }
  /// In UTF-16 units.
  std::uint32_t longestFieldName() const { return longestFieldName_; }

  /// For an index that is no field's: the empty text, type 0, width 0 and read-only.
  const String& fieldName(std::uint32_t field) const;
  FieldType fieldType(std::uint32_t field) const;
  std::uint32_t fieldWidth(std::uint32_t field) const;
  bool isFieldReadOnly(std::uint32_t field) const;
  /// What the values of the field refer to; none for most fields.
  const LookUpTarget& lookUpTarget(std::uint32_t field) const;
  /// Whether a field refers to something.
  bool hasLookUps() const;
  /// A field of whole numbers, and of such as may be negative.
  bool isNumeric(std::uint32_t field) const;
  bool isSignedInteger(std::uint32_t field) const;
  /// The first field of exactly that name, or fieldCount() when there is none.
  std::uint32_t fieldIndexByName(const String& name) const;

  // ---- The records to which the values of a field refer (look_up_records.h), of a field that has a target

  /// The name of the record with this key; empty when there is none.
  String lookUpName(std::uint32_t field, const String& key);
  Outcome openLookUp(std::uint32_t field, std::unique_ptr<LookUpRecords>& records);

  // ---- Moving (database_moves.cpp). Each leaves currentRecord alone when it fails, but for moveFirst.

  /// currentRecord becomes 1, also when it fails because there are no records.
  bool moveFirst();
  /// currentRecord becomes recordCount().
  bool moveLast();
  /// From the last record to the place behind it.
  bool moveNext();
  /// From the first record to the place before it.
  bool movePrevious();
  /// currentRecord becomes `position`.
  bool moveTo(std::uint32_t position);

  // ---- The rows of the list (database_list.cpp), from 0. A cursor of their own reads them, a copy of the
  // recordset that is made when it is needed and dropped with every change: the current record stays current,
  // with everything that was written into it and is not stored. A new record has no row before it is stored.

  /// Moves that cursor to a row, by the shortest way from the row where it stands.
  bool moveForList(std::uint32_t row);
  /// Tells that `count` rows from this one on will be read soon, in their order.
  void expectListRows(std::uint32_t row, std::uint32_t count);
  /// What valueText gives for the field in that row; empty where there is no such row or field. When it
  /// can't be read `text` is untouched.
  Outcome readForList(std::uint32_t row, std::uint32_t field, String& text);
  /// All fields of that row as a line of separated values, with tabs between them and a line end behind: an
  /// import takes it for the same values. `text` is untouched when it can't be read or is no text.
  Outcome readRowText(std::uint32_t row, std::wstring& text);

  /// The value in that row as a literal of SQL; `text` is untouched when it can't be read, or takes more than
  /// `mostBytes` in the file.
  Outcome readLiteral(std::uint32_t row, std::uint32_t field, std::uint32_t mostBytes, std::wstring& text);

  /// The record of that row as readRecord reads the current one; not readable where there is no such row.
  RecordSnapshot readListRecord(std::uint32_t row);

  /// Begins to look for a text in a field, in any letter case; endRowSearch ends it.
  void beginRowSearch(std::uint32_t field, const String& text);
  /// How many rows from `row` on, of `most`, can't hold it, as far as that is found out within so many
  /// milliseconds; 0 when it isn't.
  std::uint32_t passOverRows(std::uint32_t row, std::uint32_t most, std::uint32_t milliseconds);
  void endRowSearch();

  // ---- Whole values of the record that was read as `seen` (database_bytes.cpp). The cursor of the list
  // reads them. Each fails when the field no longer holds what was seen, and for a record that is not stored
  // yet.

  /// The bytes of the field; none of a value that is of no bytes. `bytes` is untouched after a failure.
  Outcome readBytes(const RecordSnapshot& seen, std::uint32_t field, Bytes& bytes);
  /// Writes them, or a text in UTF-8, into a file. One that is there is replaced, but never the database nor
  /// what is kept beside it. After a failure nothing was made or replaced.
  Outcome saveBytes(const RecordSnapshot& seen, std::uint32_t field, const String& path);

  // ---- Records (database_records.cpp)

  /// Set by addNew; cleared when that record is stored or abandoned, or its recordset is replaced.
  bool newRecordPending() const { return newRecordPending_; }
  void setNewRecordPending(bool pending) { newRecordPending_ = pending; }

  /// Begins a new record behind the last one and makes it current; `update` stores it. Fails when there
  /// are records and the last can't be reached.
  Outcome addNew();
  /// Stores what was written into the current record. Always true. What the store refuses stays
  /// written: a move tries again and fails until it can be stored.
  bool update();
  /// Takes back what was written into the current record and not stored, a new record with it; the record
  /// that was current before the new one is current then.
  void abandonUpdate();
  /// Abandons the new record, or else deletes the current one from the file; it then stays current,
  /// unreadable, until a move. currentRecord shrinks by 1 with a deleted record.
  Outcome deleteCurrent();

  /// Changes the record that was read as `seen`, whatever the current one is, and makes it current: writes
  /// what the editors hold, one for each field in field order, and stores it. A record that is not stored
  /// yet is added so. Fails, and nothing is written, when the record can't be read again or no longer
  /// holds what was seen; a change that the store refuses is taken back, a new record stays begun.
  /// `leftOut` receives the names of the fields that were cleared because the content of their editors
  /// could not be converted.
  Outcome storeRecord(const RecordSnapshot& seen, const FieldEditors& editors, NameList& leftOut);
  /// Deletes the record that was read as `seen`, as deleteCurrent does, whatever the current one is. Fails
  /// when it no longer holds what was seen; one that another program has deleted counts as deleted.
  Outcome deleteRecord(const RecordSnapshot& seen);

  // ---- Changes that are taken back (database_history.cpp): those that were stored since the file was
  // opened, one by one, newest first

  /// The next one that way; of the kind none when there is none.
  HistoryStep nextStep(HistoryWay way) const;
  /// Takes it. The current recordset is to be opened anew for records that come or go by it, and a record
  /// that is current moved to again. On failure nothing has changed.
  Outcome takeStep(HistoryWay way);
  /// Where the record that it was about stands in the current recordset; 0 when it doesn't.
  std::uint32_t positionOfStep() const;
  /// Whether it changed values alone, so that the current recordset need not be opened anew for it.
  bool hasStepKeptRecords() const;

  // ---- Values of the current record (record_reading.cpp, value_writing.cpp)

  /// Reads the current record, which waits at most once for another program's lock.
  RecordSnapshot readRecord();
  /// The value as the user reads it (FieldKind::textOf); the empty text for one that can't be fetched.
  String valueText(std::uint32_t field);
  /// The value converted to a 32-bit integer is not 0.
  bool fieldIsSet(std::uint32_t field);

  /// Looks for `text` in the current record: in field `firstField`, or with `allFields` in it and those
  /// behind it. Booleans and dates are passed over. True when it occurs in the text of a value;
  /// `foundField` is then the first such field, otherwise untouched.
  bool matchRecord(bool allFields, bool matchCase, std::uint32_t firstField, String text,
                   std::uint32_t& foundField);
  /// The same, and says why when the record can't be read. `foundField` is empty when nothing was found.
  Outcome searchRecord(bool allFields, bool matchCase, std::uint32_t firstField, String text,
                       std::optional<std::uint32_t>& foundField);

  // ---- The search through many records (database_search.cpp). It only spares matchRecord the records for
  // which it would say no: who tests each record with matchRecord and moves on finds the same without it.

  /// Begins a search for what matchRecord would be asked; the one before ends.
  void beginSearch(bool allFields, bool matchCase, std::uint32_t field, const String& text);
  /// Moves on, as moveNext does, over records that matchRecord would not match, at most `most` of them and
  /// for about as many milliseconds, and returns how many. It may stop at any record; without a search, or
  /// where the data-access components have none, it passes over none.
  std::uint32_t passOver(std::uint32_t most, std::uint32_t milliseconds);
  void endSearch();
  /// Begins a search for `text` in a table, beside the current recordset. It ends before this object does.
  Outcome beginTableSearch(const String& table, const String& text, TableSearch& search);

  /// Writes the content of an editor into the field of the current record; `update` stores it. False
  /// when fields of this type are not written. True otherwise, also when the content could not be
  /// converted, which clears the field, and when the store refused it.
  ///
  /// An editor that holds what it was given writes nothing, so that a value which its text does not hold
  /// in full (a double beyond six decimals, a value of another type) survives the saving of its
  /// neighbours. In a new record every field is written.
  bool setValueFromEditor(std::uint32_t field, const FieldValueSource& editor);

  // ---- Saved queries (saved_queries.cpp). They live in the table QuivaneQueries of the file. Indexes are
  // 0-based, in the order of the names; names may repeat. The current recordset is not touched.

  /// Always true; `names` is left as it was when there is no such table or it can't be read, which `read`
  /// says unless it is null.
  bool listQueries(NameList& names, Outcome* read = nullptr);
  /// True when the table could be read and has that index; `read` says why not, unless it is null.
  bool getQuery(std::uint32_t index, SavedQuery& query, Outcome* read = nullptr);
  /// Each is true when the table could be read and has that index, whether or not the query was changed:
  /// that is what `change` says, unless it is null. A query that is no longer what was `seen` is left alone;
  /// of a query that is deleted the name is compared. Null compares nothing.
  bool updateQuery(std::uint32_t index, const SavedQuery& query, Outcome* change = nullptr,
                   const SavedQuery* seen = nullptr);
  bool deleteQuery(std::uint32_t index, Outcome* change = nullptr, const String* seenName = nullptr);
  /// Makes the table when there is none yet; true when the table is there. `change` as above.
  bool addQuery(const SavedQuery& query, Outcome* change = nullptr);

 private:
  void rememberOthersChanges();
  std::uint32_t placeAmong(RecordsetHandle& others, std::uint32_t count, std::uint32_t position);
  static std::uint32_t findAgain(RecordsetHandle& records, const RecordMark& mark, std::uint32_t nearby);
  static std::uint32_t countOf(RecordsetHandle& records);
  void takeInPlace(std::unique_ptr<RecordsetHandle> records);
  bool prepareListRows();
  Outcome returnForBytes(const RecordSnapshot& seen, std::uint32_t field);
  void dropListRows();
  Outcome openStore();
  Outcome runTableStatement(bool fits, const wchar_t* statement);
  Outcome runInStore(const wchar_t* statement);
  Outcome dropBeside(const wchar_t* statement);
  Outcome openCurrent(const String& sql);
  Outcome takeOver(std::unique_ptr<RecordsetHandle>& records);
  void loadFields();
  void clearFields();
  void setRecordCount(std::uint32_t count);
  bool hasSameFields(RecordsetHandle& other) const;
  bool holds(const RecordSnapshot& present, const RecordSnapshot& seen) const;
  RecordMark markOf(RecordsetHandle& records) const;
  bool standAt(const RecordSnapshot& seen);
  Outcome checkOnlyOne(const RecordSnapshot& seen) const;
  Outcome returnTo(const RecordSnapshot& seen);
  Outcome returnOrReopen(const RecordSnapshot& seen);
  Outcome writeAndStore(const FieldEditors& editors, NameList& leftOut);
  Outcome writeField(std::uint32_t field, const FieldValueSource& editor, NameList& leftOut);
  RecordSnapshot readFrom(RecordsetHandle& records, std::uint32_t position, bool isNew) const;
  /// They append what they can read before they fail.
  Outcome readTables(NameList& names) const;
  Outcome readQueryNames(NameList& names);
  Outcome openQueries(RecordsetHandle& queries);
  Outcome openQueryAt(std::uint32_t index, RecordsetHandle& queries);

  bool isOpen_ = false;
  std::optional<std::int64_t> othersChanges_;  // what the connection counted last; none when it did not yet
  BusyListener* busyListener_ = nullptr;
  std::unique_ptr<RecordsetHandle> recordset_;
  std::unique_ptr<ConnectionHandle> connection_;
  std::uint32_t longestFieldName_ = 0;
  bool fieldsLoaded_ = false;
  String copiesFolder_;  // empty while no copies are kept
  String path_;
  bool newRecordPending_ = false;
  String recordsetSql_;    // what the current recordset was opened from
  unsigned rebuilds_ = 0;  // of times that the records were opened anew because the tables became others
  std::uint32_t recordCount_ = 0;
  std::uint32_t fieldCount_ = 0;
  NameList fieldNames_;
  GrowableArray<FieldType> fieldTypes_;
  GrowableArray<std::uint32_t> fieldWidths_;
  GrowableArray<std::uint32_t> fieldReadOnly_;
  std::vector<LookUpTarget> lookUpTargets_;
  std::vector<std::optional<String>> lookUpNames_;  // the fields of the names there, once they were asked for

  std::unique_ptr<RecordsetHandle> listRows_;  // behind recordset_ and connection_: it goes first
  std::uint32_t listPosition_ = 1;  // of the record that moveForList last made current in listRows_
  bool isAtListPosition_ = false;   // listRows_ stands there
};
