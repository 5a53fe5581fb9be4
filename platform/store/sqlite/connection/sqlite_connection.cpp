#include "platform/store/sqlite/connection/sqlite_connection.h"

#include <array>
#include <chrono>
#include <utility>

#include "platform/store/sqlite/connection/catalogue.h"
#include "platform/store/sqlite/connection/moment_collation.h"
#include "platform/store/sqlite/connection/row_run.h"
#include "platform/store/sqlite/connection/text_functions.h"
#include "platform/store/sqlite/files/file_head.h"
#include "platform/store/sqlite/files/file_system.h"

namespace store {

namespace {

// A statement longer than this is not a question that a person asks.
constexpr int kMostStatementBytes = 1'000'000;

// Files come from anywhere. What other programs can make is read; what only serves to exhaust memory, stack
// or patience is not. Lengths of values, numbers of columns and all else keep SQLite's own limits.
struct Limit {
  int what;
  int most;
};
constexpr std::array<Limit, 4> kLimits{{
    {SQLITE_LIMIT_SQL_LENGTH, 10 * kMostStatementBytes},  // of the definition of a table or view
    {SQLITE_LIMIT_EXPR_DEPTH, 1000},                      // the most that SQLite's own tools can make
    {SQLITE_LIMIT_VDBE_OP, 5'000'000},                    // steps of one statement, 24 bytes each
    {SQLITE_LIMIT_TRIGGER_DEPTH, 1000},
}};

// SQLite has one code for all that is wrong with a statement; its sentence tells which.
ErrorCode codeOfStatementError(std::string_view message) {
  if (message.starts_with("no such table") || message.starts_with("no such view")) return ErrorCode::noTable;
  if (message.starts_with("no such column") ||
      message.find("has no column named") != std::string_view::npos) {
    return ErrorCode::badColumn;
  }
  if (message.ends_with("already exists") || message.starts_with("there is already"))
    return ErrorCode::tableExists;
  return ErrorCode::errorsInCommand;
}

ErrorCode codeOf(int result, std::string_view message) {
  switch (result & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return ErrorCode::ok;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return ErrorCode::locked;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return ErrorCode::readOnly;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      return ErrorCode::constraint;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return ErrorCode::damaged;
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN:
    case SQLITE_NOLFS:
      return ErrorCode::inputOutput;
    case SQLITE_NOMEM:
      return ErrorCode::outOfMemory;
    case SQLITE_INTERRUPT:
      return ErrorCode::stopped;
    default:
      return codeOfStatementError(message);
  }
}

Status run(sqlite3* connection, const char* sql) {
  return statusOf(connection, sqlite3_exec(connection, sql, nullptr, nullptr, nullptr));
}

bool onlyBlanks(std::string_view text) {
  return text.find_first_not_of(" \t\r\n\f;") == std::string_view::npos;
}

}  // namespace

Status statusOf(sqlite3* connection, int result) {
  if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE) return {};
  if (result == SQLITE_READONLY_DBMOVED && connection != nullptr) {
    if (Status status = checkNameOf(connection); !status) return status;
  }
  const char* text = connection != nullptr ? sqlite3_errmsg(connection) : sqlite3_errstr(result);
  std::string message = text != nullptr ? text : "The database can't be used.";
  const ErrorCode code = codeOf(result, message);
  if (code == ErrorCode::locked) message = "Another program is using the database.";
  if (code == ErrorCode::stopped) message = "The statement was stopped.";
  if (result == SQLITE_READONLY_DIRECTORY) message = "The folder of the database is read-only.";
  return {code, std::move(message)};
}

Status checkNameOf(sqlite3* connection) {
  switch (fileStateOf(connection)) {
    case FileState::same:
      return {};
    case FileState::gone:
      return {ErrorCode::fileGone, "The file was deleted or renamed while it was open."};
    case FileState::replaced:
      return {ErrorCode::fileReplaced, "Another file has taken the place of the one that is open."};
    default:
      return {ErrorCode::inputOutput, "The file can't be found under its name at the moment."};
  }
}

SqliteConnection::~SqliteConnection() {
  if (!guard_) return;
  {
    const ConnectionGuard::Use use(*guard_);
    const LockWait::Never never(guard_->lockWait());
    lease_->end();
    journal_->remove();
  }
  // First of all, because its thread uses the rest.
  guard_.reset();
}

void SqliteConnection::askWhileBusy(BusyQuestion question) {
  watch_->ask(question);
  guard_->lockWait().ask(std::move(question));
}

void SqliteConnection::letGo() {
  const ConnectionGuard::Use use(*guard_);
  lease_->end();
}

Status SqliteConnection::openFile(const std::string& path, bool isReadOnly) {
  // SQLite goes on without write access by itself where the system refuses it; a file that is marked
  // read-only is left alone also when the user could override the mark.
  const bool isLeftAlone = isReadOnly || isMarkedReadOnly(path);
  const int access = isLeftAlone ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* connection = nullptr;
  const int result =
      sqlite3_open_v2(path.c_str(), &connection, access | SQLITE_OPEN_EXRESCODE, fileSystemName());
  handle_.reset(connection);
  if (result != SQLITE_OK) {
    const Status status = statusOf(connection, result);
    return {status.code() == ErrorCode::outOfMemory ? ErrorCode::outOfMemory : ErrorCode::cannotOpen,
            status.message()};
  }
  readOnly_ = sqlite3_db_readonly(connection, "main") == 1;
  return {};
}

Status SqliteConnection::configure(const OpenOptions& options) {
  sqlite3* connection = handle_.get();
  for (const Limit& limit : kLimits) sqlite3_limit(connection, limit.what, limit.most);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
  const std::string pageCache = "PRAGMA cache_size=-" + std::to_string(options.pageCacheKibibytes);
  for (const char* setting : {"PRAGMA synchronous=FULL", "PRAGMA cell_size_check=ON", pageCache.c_str()}) {
    if (Status status = run(connection, setting); !status) return status;
  }
  return {};
}

Status SqliteConnection::checkWhole() {
  SqliteStatement statement;
  if (Status status = prepare("SELECT count(*) FROM sqlite_schema", &statement); !status) return status;
  if (const int result = sqlite3_step(statement.get()); result != SQLITE_ROW)
    return statusOf(handle(), result);
  if (endsWithinPage(handle())) return {ErrorCode::damaged, "The file is cut short."};
  return {};
}

// Only pages hold rows, and even the smallest row takes six bytes of one: its cell and where that stands. A
// damaged tree that leads to the same pages again and again has more, without end.
Status SqliteConnection::readMostRows(std::uint64_t* most) {
  std::int64_t count = 0;
  Status status = readNumber(
      "SELECT p.page_count * s.page_size / 6 FROM pragma_page_count p, pragma_page_size s", &count);
  if (status) *most = static_cast<std::uint64_t>(count);
  return status;
}

Status SqliteConnection::readNumber(std::string_view sql, std::int64_t* number) {
  SqliteStatement statement;
  if (Status status = prepare(sql, &statement); !status) return status;
  const int result = sqlite3_step(statement.get());
  if (result != SQLITE_ROW) return statusOf(handle(), result);
  *number = sqlite3_column_int64(statement.get(), 0);
  return {};
}

Status SqliteConnection::open(const std::string& path, const OpenOptions& options) {
  if (Status status = checkOrdinaryFile(path); !status) return status;
  path_ = path;
  mostTemporaryBytes_ = options.mostTemporaryBytes;
  if (Status status = openFile(path, options.isReadOnly); !status) return status;
  if (Status status = checkFileHead(handle()); !status) return status;
  watch_.emplace(handle());
  guard_.emplace(handle(), std::chrono::milliseconds(options.lockWait), [this] { letGo(); });
  lease_.emplace(handle(), *guard_);
  journal_.emplace(handle());
  ConnectionGuard::Use use(*guard_);
  askWhileBusy(options.question);
  Status status = configure(options);
  if (status) status = statusOf(handle(), addMomentCollation(handle()));
  if (status) status = addCatalogue(handle(), *watch_);
  if (status) status = RowRun::addFunction(handle());
  if (status) status = statusOf(handle(), addTextFunctions(handle(), options.folding));
  if (status) status = checkWhole();
  if (status) status = readSchemaVersion(&schemaVersion_);
  if (!status) {
    // At the opening a damaged file and one of another kind are the same to the user.
    const bool unusable = status.code() == ErrorCode::damaged || status.code() == ErrorCode::errorsInCommand;
    return unusable ? Status(ErrorCode::cannotOpen, "The database is damaged: " + status.message()) : status;
  }
  permissions_.watchOver(handle());
  return {};
}

Status SqliteConnection::checkFile() {
  return checkNameOf(handle());
}

Status SqliteConnection::checkFileAfterCommit() {
  Status status = checkFile();
  return status.code() == ErrorCode::fileGone || status.code() == ErrorCode::fileReplaced ? status : Status();
}

// Begins a change that changes nothing, and undoes it: what it needs beside the database is made with the
// first page that is touched.
Status SqliteConnection::tryWriting() {
  if (isReadOnly()) return {ErrorCode::readOnly, "The database can only be read."};
  const LockWait::Never never(guard_->lockWait());
  WriteTransaction transaction(*this);
  Status status = transaction.open(nullptr);
  std::int64_t version = 0;
  if (status) status = readNumber("PRAGMA user_version", &version);
  SqliteStatement same;
  if (status) status = prepare("PRAGMA user_version=" + std::to_string(version), &same);
  if (status) status = transaction.run(same.get());
  return status.code() == ErrorCode::locked ? Status() : status;
}

// Inside a read transaction it would be as old as that one.
Status SqliteConnection::countOthersChanges(std::int64_t* count) {
  const LockWait::Never never(guard_->lockWait());
  lease_->end();
  return readKept(dataVersionStatement_, "PRAGMA data_version", count);
}

Status SqliteConnection::seenVersion(std::int64_t* version) {
  return readKept(dataVersionStatement_, "PRAGMA data_version", version);
}

Status SqliteConnection::prepare(std::string_view sql, SqliteStatement* statement) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v3(handle(), sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  if (result != SQLITE_OK) return statusOf(handle(), result);
  statement->reset(prepared);
  return {};
}

Status SqliteConnection::prepareUser(std::string_view sql, UserStatement* statement) {
  if (sql.size() > kMostStatementBytes) {
    return {ErrorCode::errorsInCommand, "The statement is longer than 1,000,000 bytes."};
  }
  if (sql.find('\0') != std::string_view::npos) {
    return {ErrorCode::errorsInCommand, "A statement can't hold a zero character."};
  }
  const StatementWatch::Asked asked(*watch_);
  permissions_.beginOutside();
  sqlite3_stmt* prepared = nullptr;
  const char* tail = nullptr;
  const int result = sqlite3_prepare_v2(handle(), sql.data(), static_cast<int>(sql.size()), &prepared, &tail);
  const bool readsTable = permissions_.endOutside();
  SqliteStatement owner(prepared);
  if (result == SQLITE_AUTH) return {ErrorCode::errorsInCommand, "This statement is not allowed here."};
  if (result != SQLITE_OK) return statusOf(handle(), result);
  if (!owner) return {ErrorCode::noCommand, "The statement is empty."};
  const std::string_view rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
  if (!onlyBlanks(rest)) {
    sqlite3_stmt* second = nullptr;
    // Many pragmas take effect while they are prepared, so this one is no less from outside.
    permissions_.beginOutside();
    const int secondResult =
        sqlite3_prepare_v2(handle(), rest.data(), static_cast<int>(rest.size()), &second, nullptr);
    permissions_.endOutside();
    SqliteStatement secondOwner(second);
    // A comment behind the statement is none itself.
    if (secondResult != SQLITE_OK || secondOwner) {
      return {ErrorCode::errorsInCommand, "Only one statement can be run at a time."};
    }
  }
  statement->statement = std::move(owner);
  statement->readsTable = readsTable;
  return {};
}

// By a statement that stays prepared.
Status SqliteConnection::readKept(SqliteStatement& kept, const char* sql, std::int64_t* number) {
  sqlite3* connection = handle();
  int result = prepareKept(connection, kept, sql);
  if (result != SQLITE_OK) return statusOf(connection, result);
  const StatementRun run(kept.get());
  result = sqlite3_step(kept.get());
  if (result != SQLITE_ROW) return statusOf(connection, result);
  *number = sqlite3_column_int64(kept.get(), 0);
  return {};
}

Status SqliteConnection::readSchemaVersion(std::int64_t* version) {
  return readKept(schemaVersionStatement_, "PRAGMA schema_version", version);
}

Status SqliteConnection::noticeSchemaVersion() {
  std::int64_t version = 0;
  if (Status status = readSchemaVersion(&version); !status) return status;
  if (version == schemaVersion_) return {};
  // SQLite notices only when a statement runs, and would prepare the next one by what it knew before.
  if (Status status = run(handle(), "SELECT 1 FROM main.sqlite_schema LIMIT 1"); !status) return status;
  schemaVersion_ = version;
  ++rebuilds_;
  return {};
}

Status SqliteConnection::beginRead() {
  bool isNew = false;
  if (const int result = lease_->begin(&isNew); result != SQLITE_OK) return failRead(result);
  if (!isNew) return {};
  Status status = noticeSchemaVersion();
  if (!status) lease_->end();
  return status;
}

Status SqliteConnection::failRead(int result) {
  Status status = statusOf(handle(), result);
  lease_->end();
  return status;
}

SqliteConnection::WriteTransaction::~WriteTransaction() {
  // SQLite undoes by itself what fails beyond repair, and is then outside a transaction already.
  sqlite3* connection = connection_.handle();
  if (open_) undo(connection);
  tellEnd(false);
}

ChangeNote& SqliteConnection::WriteTransaction::record(ChangeNote note) {
  note_ = std::move(note);
  listener_ = connection_.changeListener_;
  if (listener_ != nullptr) listener_->changeBegins();
  return note_;
}

void SqliteConnection::WriteTransaction::tellEnd(bool isAcknowledged) {
  if (WriteListener* const listener = std::exchange(writeListener_, nullptr)) {
    listener->writingIsOver(false);
  }
  if (ChangeListener* const listener = std::exchange(listener_, nullptr)) {
    listener->changeIsOver(isAcknowledged);
  }
}

Status SqliteConnection::WriteTransaction::begin(sqlite3_stmt* claim) {
  if (Status status = open(claim); !status) return status;
  if (connection_.writeListener_ == nullptr || connection_.isReadOnly()) return {};
  changesBefore_ = sqlite3_total_changes64(connection_.handle());
  writeListener_ = connection_.writeListener_;
  return writeListener_->writingBegins();
}

Status SqliteConnection::WriteTransaction::open(sqlite3_stmt* claim) {
  if (!takeOverReading(claim)) {
    connection_.lease_->end();
    sqlite3* connection = connection_.handle();
    const int result = runKept(connection, connection_.beginStatement_, "BEGIN IMMEDIATE");
    if (result != SQLITE_OK) return statusOf(connection, result);
    open_ = true;
    if (Status status = connection_.noticeSchemaVersion(); !status) return status;
  }
  if (connection_.isReadOnly()) return {};
  if (Status status = connection_.checkFile(); !status) return status;
  return statusOf(connection_.handle(), connection_.journal_->prepare());
}

// What was read in the transaction still holds, because nobody could commit beside it, or the claim fails.
// It doesn't wait: another writer may be waiting for the end of this very transaction.
bool SqliteConnection::WriteTransaction::takeOverReading(sqlite3_stmt* claim) {
  if (claim == nullptr || !connection_.lease_->isOpen()) return false;
  const LockWait::Never never(connection_.guard_->lockWait());
  const int result = sqlite3_step(claim);
  sqlite3_reset(claim);
  if (result != SQLITE_DONE) return false;
  connection_.lease_->handOver();
  open_ = true;
  return true;
}

Status SqliteConnection::WriteTransaction::run(sqlite3_stmt* statement,
                                               const std::function<void(sqlite3_stmt*)>& onRow) {
  const StatementWatch::Asked asked(connection_.watch());
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
    if (onRow) onRow(statement);
  }
  Status status = statusOf(connection_.handle(), result);
  // What a change keeps beside the database can't be made. Not every system says why.
  if ((result & 0xFF) == SQLITE_CANTOPEN)
    status = {ErrorCode::inputOutput,
              "No file can be made beside the database: its folder may be read-only."};
  sqlite3_reset(statement);
  return status;
}

Status SqliteConnection::WriteTransaction::commit() {
  return commitChange(sqlite3_total_changes64(connection_.handle()) != changesBefore_);
}

Status SqliteConnection::WriteTransaction::commitChange(bool hasChanged) {
  if (listener_ != nullptr) {
    if (Status status = listener_->changeIsComplete(note_); !status) return status;
  }
  if (writeListener_ != nullptr) writeListener_->writingIsComplete(hasChanged);
  sqlite3* connection = connection_.handle();
  Status status = statusOf(connection, runKept(connection, connection_.commitStatement_, "COMMIT"));
  if (!status) return status;
  open_ = false;
  if (WriteListener* const listener = std::exchange(writeListener_, nullptr)) listener->writingIsOver(true);
  status = connection_.checkFileAfterCommit();
  tellEnd(static_cast<bool>(status));
  return status;
}

Status SqliteConnection::WriteTransaction::commitStructure(bool tablesChange) {
  std::int64_t version = 0;
  if (Status status = connection_.readSchemaVersion(&version); !status) return status;
  if (Status status = commitChange(true); !status) return status;
  connection_.schemaVersion_ = version;
  if (tablesChange) ++connection_.rebuilds_;
  return {};
}

/// Of a statement that has no transaction of ours around it.
Status SqliteConnection::tellOfWriting() {
  WriteTransaction transaction(*this);
  if (Status status = transaction.begin(); !status) return status;
  return transaction.commitChange(true);
}

Status SqliteConnection::runAlone(sqlite3_stmt* statement) {
  if (Status status = checkFile(); !status) return status;
  if (writeListener_ != nullptr && !isReadOnly() && sqlite3_stmt_readonly(statement) == 0) {
    if (Status status = tellOfWriting(); !status) return status;
  }
  letGo();
  const StatementWatch::Asked asked(*watch_);
  int result = SQLITE_ROW;
  while (result == SQLITE_ROW) result = sqlite3_step(statement);
  Status status = statusOf(handle(), result);
  sqlite3_reset(statement);
  if (!status) return status;
  ++rebuilds_;
  if (status = readSchemaVersion(&schemaVersion_); !status) return status;
  return checkFileAfterCommit();
}

}  // namespace store
