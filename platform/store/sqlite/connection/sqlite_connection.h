#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <string_view>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/connection/change_listener.h"
#include "platform/store/sqlite/connection/connection_guard.h"
#include "platform/store/sqlite/connection/open_options.h"
#include "platform/store/sqlite/connection/read_lease.h"
#include "platform/store/sqlite/connection/rollback_journal.h"
#include "platform/store/sqlite/connection/sqlite_statement.h"
#include "platform/store/sqlite/connection/statement_permissions.h"
#include "platform/store/sqlite/connection/statement_watch.h"

namespace store {

/// What SQLite told last on `connection` about `result`, as a status.
Status statusOf(sqlite3* connection, int result);

/// Whether the main file of `connection`, which was opened in the file system of the store, still stands
/// under its name: fileGone or fileReplaced if not, inputOutput when the system doesn't tell.
Status checkNameOf(sqlite3* connection);

/// One open SQLite file: settings, statements, read and write transactions.
/// All operations but the constructor and open() are made inside a Use of `guard()`.
class SqliteConnection {
 public:
  SqliteConnection() = default;
  ~SqliteConnection();
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  /// Opens the existing file at `path`, which begins as an SQLite file does, and reads its schema once.
  Status open(const std::string& path, const OpenOptions& options);

  sqlite3* handle() const { return handle_.get(); }
  ConnectionGuard& guard() { return *guard_; }
  StatementWatch& watch() { return *watch_; }
  /// Whom to ask while a statement is being run, and while another program's lock is waited for.
  void askWhileBusy(BusyQuestion question);
  const std::string& path() const { return path_; }
  bool isReadOnly() const { return readOnly_; }
  /// What one SELECT may put into temporary files.
  std::int64_t mostTemporaryBytes() const { return mostTemporaryBytes_; }

  /// Counts the times that the rows of a table may have come to other row ids or columns than before, or
  /// gone with it: another program changed the structure or rebuilt the file, or a statement of ours did.
  unsigned rebuilds() const { return rebuilds_; }

  /// Who hears of changes of records from now on; it outlives the connection or is taken away with null.
  void setChangeListener(ChangeListener* listener) { changeListener_ = listener; }
  /// Who hears of every writing, as long as that; null for nobody.
  void setWriteListener(WriteListener* listener) { writeListener_ = listener; }
  /// Another number after each change of the structure that this connection knows of.
  std::int64_t structureVersion() const { return schemaVersion_; }

  /// Whether the open file still stands under its name: fileGone or fileReplaced if not, inputOutput when the
  /// system doesn't tell.
  Status checkFile();
  /// The same of a file with a change that is durable: what the system doesn't tell is no reason to say that
  /// it failed, because it would be made once more then.
  Status checkFileAfterCommit();
  /// As Backend::tryWriting.
  Status tryWriting();
  /// As Backend::countOthersChanges.
  Status countOthersChanges(std::int64_t* count);

  /// Prepares a statement of the engine's own.
  Status prepare(std::string_view sql, SqliteStatement* statement);

  struct UserStatement {
    SqliteStatement statement;
    bool readsTable = false;  ///< it names at least one table, view or table-valued function
  };
  /// Prepares a statement that came from outside: one statement, and nothing that would reach other
  /// files, touch the transactions, or weaken the durability of the connection.
  Status prepareUser(std::string_view sql, UserStatement* statement);

  /// Opens the read transaction, or goes on with it, and notices what others changed meanwhile.
  Status beginRead();
  /// Inside a read transaction: a number for what it sees, which is another one after each change by another
  /// connection.
  Status seenVersion(std::int64_t* version);
  /// A read failed with SQLite's `result`: ends the transaction and returns what happened.
  Status failRead(int result);
  /// Inside a read transaction: more rows than any table of the file can have.
  Status readMostRows(std::uint64_t* most);
  /// Ends the read transaction if there is one.
  void endRead() { lease_->end(); }

  /// One durable transaction that changes the database. What is not committed is undone.
  class WriteTransaction {
   public:
    explicit WriteTransaction(SqliteConnection& connection) : connection_(connection) {}
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction&) = delete;
    WriteTransaction& operator=(const WriteTransaction&) = delete;

    /// Waits for the right to write and notices what others changed meanwhile. `claim`, unless it is null, is
    /// a statement that writes to the file and changes nothing: with it an open read transaction can become
    /// this one, which saves the locks of another.
    Status begin(sqlite3_stmt* claim = nullptr);
    /// Inside the transaction, before anything is changed: what changes from here on are records, which the
    /// listener hears of. `note` may be completed until the commit, by what this returns.
    ChangeNote& record(ChangeNote note);
    /// Runs `statement` to its end, calling `onRow` for each row it returns.
    Status run(sqlite3_stmt* statement, const std::function<void(sqlite3_stmt*)>& onRow = {});
    /// After it nothing is undone any more, whatever happens to the program or the machine. Fails also when
    /// the file has lost its name meanwhile, where nobody would find what was written.
    Status commit();
    /// The same after a statement that changed the structure; tells the connection whether tables may have
    /// other rows or columns now.
    Status commitStructure(bool tablesChange);

   private:
    friend class SqliteConnection;
    Status open(sqlite3_stmt* claim);
    Status commitChange(bool hasChanged);
    bool takeOverReading(sqlite3_stmt* claim);
    void tellEnd(bool isAcknowledged);

    SqliteConnection& connection_;
    bool open_ = false;
    ChangeNote note_;
    ChangeListener* listener_ = nullptr;      // from the beginning of a change of records to its end
    WriteListener* writeListener_ = nullptr;  // from the beginning to the end
    std::int64_t changesBefore_ = 0;          // of all statements of the connection
  };

  /// Runs a statement that can't stand inside a transaction (VACUUM), durably.
  Status runAlone(sqlite3_stmt* statement);

 private:
  struct Closer {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
  };

  Status openFile(const std::string& path, bool isReadOnly);
  Status configure(const OpenOptions& options);
  void letGo();
  Status tellOfWriting();
  Status readNumber(std::string_view sql, std::int64_t* number);
  Status readKept(SqliteStatement& kept, const char* sql, std::int64_t* number);
  Status readSchemaVersion(std::int64_t* version);
  Status noticeSchemaVersion();
  Status checkWhole();

  std::string path_;
  std::unique_ptr<sqlite3, Closer> handle_;
  // Made without taking memory, so that all of them are there or none.
  std::optional<StatementWatch> watch_;
  std::optional<ConnectionGuard> guard_;
  std::optional<ReadLease> lease_;
  std::optional<RollbackJournal> journal_;
  SqliteStatement schemaVersionStatement_;
  SqliteStatement dataVersionStatement_;
  SqliteStatement beginStatement_;
  SqliteStatement commitStatement_;
  std::int64_t schemaVersion_ = 0;
  unsigned rebuilds_ = 0;
  std::int64_t mostTemporaryBytes_ = 0;
  bool readOnly_ = false;
  ChangeListener* changeListener_ = nullptr;
  WriteListener* writeListener_ = nullptr;
  StatementPermissions permissions_;
};

}  // namespace store
