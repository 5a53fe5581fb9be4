#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/busy.h"
#include "platform/store/rows/change_history.h"
#include "platform/store/rows/field_type.h"
#include "platform/store/rows/former_states.h"
#include "platform/store/rows/keyset.h"
#include "platform/store/rows/row_scan.h"
#include "platform/store/rows/row_stream.h"
#include "platform/store/rows/status.h"
#include "platform/store/rows/table_load.h"
#include "platform/store/rows/table_schema.h"
#include "platform/store/rows/value.h"

namespace store {

/// How the engine reaches rows, whatever holds them: a file or a server. Everything above knows only
/// these two interfaces. All operations are made from one thread at a time.

struct Column {
  std::string name;  ///< UTF-8, as the statement names it
  FieldType type;
  std::string declaredType;  ///< as the table spells it; empty for an expression
  bool updatable = false;
  bool nullable = true;
  Reference reference;  ///< the table may have been dropped since
};

/// A column of the row source and the value to write into it.
struct Change {
  std::size_t column;
  Value value;
};

/// The rows of one SELECT: their keys in order, and each row by its key.
/// Lives no longer than the Backend that made it.
class RowSource {
 public:
  virtual ~RowSource() = default;

  virtual const std::vector<Column>& columns() const = 0;

  /// The one table whose rows these are, by their keys there; empty when they are no single table's.
  virtual std::string_view table() const { return {}; }

  /// Whether rows can be added, changed and deleted at all; a single column may still be read-only.
  virtual bool isUpdatable() const = 0;

  /// Replaces `keys` by the keys of the rows as they are at the moment, in the statement's order and of the
  /// kind that this source uses, and stores how many rows there are. Only some of the first keys may be there
  /// yet; readMoreKeys() has the others. On failure both are untouched.
  virtual Status readKeys(KeySet* keys, std::size_t* count) = 0;

  /// Appends to what readKeys() began the keys that follow, until there are `wanted` or all; waits for them.
  /// The set may have been changed meanwhile, but for additions. structureChanged when they can't be had any
  /// more.
  virtual Status readMoreKeys(KeySet* /*keys*/, std::size_t /*wanted*/) { return {}; }

  /// Copies the values of the row with the key at `index` of `keys` into `row`, one for each column.
  /// Fails with noCurrentRecord when the row is gone, and with structureChanged when it can no longer be
  /// told to be the same row; `row` is then empty.
  virtual Status fetch(const KeySet& keys, std::size_t index, Row* row) = 0;

  /// Tells that the rows at `index` and the `count - 1` behind it will be fetched soon, one after the other,
  /// so that a source far away can bring them together. Reads nothing yet, and changes nothing of what
  /// fetch() does.
  virtual void expect(std::size_t /*index*/, std::size_t /*count*/) {}

  /// The quickest way through the rows that this source has (row_scan.h); at worst makeFetchingScan(). The
  /// source and `test` outlive it. May throw std::bad_alloc.
  virtual std::unique_ptr<RowScan> makeScan(RowTest& test) = 0;

  /// Adds a row with the given values, the others being their defaults, as one durable transaction,
  /// and appends its key to `keys`. On failure nothing has changed.
  virtual Status insert(const std::vector<Change>& changes, KeySet* keys) = 0;

  /// Changes columns of the row with the key at `index` as one durable transaction; when the change
  /// moves the row to another key, the set follows. noCurrentRecord when the row is gone;
  /// structureChanged as for fetch(); changedElsewhere when `read`, which is what fetch() gave for it, is no
  /// longer what the columns of the table hold; constraint when a rule of the database kept the row as it is.
  /// On failure nothing has changed.
  virtual Status update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                        const Row& read) = 0;

  /// Deletes the row with the key at `index` as one durable transaction and takes the key out of the
  /// set. A row that is gone already leaves the set too and is no failure. `read` is what fetch() gave
  /// for the row, or null when it was not read; failures are those of update().
  virtual Status remove(KeySet* keys, std::size_t index, const Row* read) = 0;
};

/// What a row source is opened from.
enum class SourceKind {
  text,     ///< a SELECT in the components' dialect
  table,    ///< the name of a table, view or catalogue table
  unknown,  ///< the name of a table if there is one so called, else a SELECT
};

/// One open database.
class Backend {
 public:
  virtual ~Backend() = default;

  /// Whether the database could only be opened for reading.
  virtual bool isReadOnly() const = 0;

  /// Whom to ask while an operation on the database or on rows of it takes its time. One that is stopped has
  /// changed nothing, and fails with locked when it was waiting, else with stopped. A change that a server is
  /// left alone with, because it doesn't answer, fails with inputOutput: whether it is stored is not known.
  /// While a change is being made durable nobody is asked but about the waiting for other programs.
  virtual void askWhileBusy(BusyQuestion question) = 0;

  /// Stops the operation that runs at the moment of the call, like the answer true; without one nothing
  /// happens. May be called from any thread as long as the database is open.
  virtual void stop() = 0;

  /// Opens the rows of `source`. A statement that yields no rows by its nature (DDL, INSERT, …) is run
  /// instead, at once and durably, and leaves `*rows` null. Refuses several statements whole. On
  /// failure `*rows` is untouched and nothing has changed.
  virtual Status openRows(std::string_view source, SourceKind kind, std::unique_ptr<RowSource>* rows) = 0;

  /// Runs one statement, at once and durably, and stores how many rows an INSERT, UPDATE or DELETE
  /// changed in `*affected` (0 for any other statement). A SELECT is opened as by openRows. On failure
  /// both out-parameters are untouched and nothing has changed.
  virtual Status run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) = 0;

  /// Opens the rows of `source` to be gone through once. Fails with illegalOperation for a statement that
  /// would change anything, which is then not run. On failure `*stream` is untouched.
  virtual Status openStream(std::string_view source, SourceKind kind, std::unique_ptr<RowStream>* stream) = 0;

  /// Stores what is known of the table or view `name` (any letter case); without columns when there is none.
  virtual Status describeTable(std::string_view name, TableSchema* schema) = 0;

  /// Begins to add rows to a table. On failure (noTable, readOnly, tableExists and what else can be wrong
  /// with the statement that makes the table, locked) `*load` is untouched and nothing has changed.
  virtual Status beginLoad(const LoadTarget& target, std::unique_ptr<TableLoad>* load) = 0;

  /// Whether what is open still stands under the name by which it was opened: fileGone when it was deleted or
  /// renamed, fileReplaced when another file has taken its place, inputOutput when the system doesn't tell.
  /// Then no change is acknowledged any more (each fails in the same way, and one that met the deletion
  /// halfway may be in the nameless file); reading goes on. Reads nothing of the file and waits for nobody.
  virtual Status checkFile() = 0;

  /// Whether a change could be stored at the moment, as far as that shows before there is one: readOnly or
  /// inputOutput when the file or its folder can't be written, and what checkFile says. Another program's
  /// lock is not waited for and says nothing. Nothing is changed.
  virtual Status tryWriting() = 0;

  /// Stores a number that becomes another one when another program, or another Backend, has changed the
  /// database; what this one changes leaves it. It says nothing beyond the life of the Backend. Of the rows
  /// nothing is read, and nobody is waited for: fails with locked while another program keeps the database to
  /// itself. On failure `*count` is untouched.
  virtual Status countOthersChanges(std::int64_t* count) = 0;
  /// Whether a server has the database, and statements are its own SQL where the dialect says nothing.
  virtual bool isServers() const { return false; }
  /// Stores a line for people: what the server is and whether the connection to it is encrypted, as far as it
  /// says so. Empty for a database that is a file. On failure `*text` is untouched.
  virtual Status describeServer(std::string* text) {
    text->clear();
    return {};
  }
  /// Why the server let its user in no more after a conversation was lost: passwordWanted, once for each time
  /// that something failed for it. Done when that was not the reason, or there is no server.
  virtual Status takeRefusal() { return {}; }
  /// Gives another password to connect with; what is called next does. passwordWanted when the server doesn't
  /// take it either, notAvailable where none is wanted; on failure the former one stays.
  virtual Status givePassword(const std::string& /*password*/) {
    return {ErrorCode::notAvailable, "No password is wanted for what is open."};
  }
  /// What can be taken back of the changes made through this backend. Null where there is nothing of the
  /// kind; it keeps nothing until it is told to.
  virtual ChangeHistory* history() { return nullptr; }
  /// What is kept of the states before its changes; null where nothing is.
  virtual FormerStates* formerStates() { return nullptr; }

  /// Writes what is open, as it is at the moment, durably into a new file at `path` (UTF-8), also when the
  /// open one has lost its name. The backend stays with the file that it has open. On failure (fileExists,
  /// cannotOpen, locked, inputOutput, outOfMemory; noTable without a database) no file has been made.
  virtual Status saveCopy(const std::string& path) = 0;
};

}  // namespace store
