#include "platform/store/sqlite/copies/going_back.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/store/sqlite/connection/lock_wait.h"
#include "platform/store/sqlite/copies/copy_check.h"
#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/copies/state_copy.h"
#include "platform/store/sqlite/copies/upkeep.h"
#include "platform/store/sqlite/files/durable_file.h"
#include "platform/store/sqlite/files/file_head.h"
#include "platform/store/sqlite/files/file_path.h"
#include "platform/store/sqlite/files/file_system.h"
#include "platform/store/sqlite/files/new_file.h"

namespace store {

namespace {

constexpr const char* kMain = "main";
constexpr int kPagesPerStep = 1000;

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};

struct BackupFinisher {
  void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
};

bool isThere(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(pathOf(path), error);
}

bool isUnusable(int result) {
  return (result & 0xFF) == SQLITE_CORRUPT || (result & 0xFF) == SQLITE_NOTADB;
}

}  // namespace

/// The database that a copy is to be put into, as SQLite writes to it.
class GoingBack::Target {
 public:
  Status open(const std::string& path, int lockWait, const BusyQuestion& question) {
    if (isMarkedReadOnly(path)) return {ErrorCode::readOnly, "The file is marked as not to be written."};
    sqlite3* opened = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE;
    const int result = sqlite3_open_v2(path.c_str(), &opened, flags, fileSystemName());
    connection_.reset(opened);
    if (result != SQLITE_OK) return {ErrorCode::cannotOpen, statusOf(opened, result).message()};
    if (sqlite3_db_readonly(opened, kMain) == 1) return {ErrorCode::readOnly, "The file can only be read."};
    wait_.emplace(opened, std::chrono::milliseconds(lockWait));
    wait_->ask(question);
    return {};
  }

  /// SQLite's result code of looking at what it is.
  int look() {
    int result = run("PRAGMA synchronous=FULL");
    // Each time that the pages don't fit any more the journal is flushed.
    if (result == SQLITE_OK) result = run("PRAGMA cache_size=-65536");
    if (result == SQLITE_OK) result = run("SELECT count(*) FROM sqlite_schema");
    if (result != SQLITE_OK) return result;
    isWriteAhead_ = textOf("PRAGMA journal_mode") == "wal";
    // As with every change, an emptied journal is durable where a deleted one is not.
    return isWriteAhead_ ? SQLITE_OK : run("PRAGMA journal_mode=TRUNCATE");
  }

  /// A database in write-ahead mode keeps the size of its pages; it leaves the mode for one of another size.
  int prepareFor(sqlite3* copy) {
    if (!isWriteAhead_ || textOf("PRAGMA page_size") == textOf(copy, "PRAGMA page_size")) return SQLITE_OK;
    hasLeftMode_ = true;
    return run("PRAGMA journal_mode=TRUNCATE");
  }

  /// Nothing more is to be written.
  void end() {
    if (hasLeftMode_) {
      run("PRAGMA journal_mode=WAL");
    } else if (!isWriteAhead_) {
      run("PRAGMA journal_mode=DELETE");
    }
  }

  void close() {
    wait_.reset();
    connection_.reset();
  }

  sqlite3* handle() const { return connection_.get(); }

 private:
  int run(const char* sql) { return sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr); }
  std::string textOf(const char* sql) { return textOf(handle(), sql); }
  static std::string textOf(sqlite3* connection, const char* sql) {
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(connection, sql, -1, &prepared, nullptr);
    const SqliteStatement statement(prepared);
    const bool hasRow = statement != nullptr && sqlite3_step(statement.get()) == SQLITE_ROW;
    return hasRow ? std::string(columnText(statement.get(), 0)) : std::string();
  }

  std::unique_ptr<sqlite3, Closer> connection_;
  std::optional<LockWait> wait_;  // of the connection
  bool isWriteAhead_ = false;
  bool hasLeftMode_ = false;
};

/// The present state of what `connection` has open and keeps others from writing to, durably.
Status GoingBack::keep(sqlite3* connection, const std::string& database, CopyReason reason,
                       std::string* kept) {
  CopyInMaking copy(folder_, database);
  if (Status status = copy.make(connection, [this] { return isToStop(); }); !status) return status;
  if (Status status = copy.finish(reason, kept); !status) return status;
  if (flushFile(*kept)) return {};
  removeFile(*kept);
  return {ErrorCode::inputOutput, "The copy could not be written to the disk."};
}

Status GoingBack::keepBeforeDeletion(const std::string& database) {
  Target file;
  if (Status status = checkOrdinaryFile(database); !status) return status;
  if (Status status = file.open(database, lockWait_, question_); !status) return status;
  if (!checkFileHead(file.handle())) return {};
  // What is damaged is kept as it is; nobody can write to it.
  int result = file.look();
  if (result == SQLITE_OK) result = sqlite3_exec(file.handle(), "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  if (result != SQLITE_OK && !isUnusable(result)) return statusOf(file.handle(), result);
  std::string kept;
  const Status status = keep(file.handle(), database, CopyReason::databaseDeletion, &kept);
  sqlite3_exec(file.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
  file.end();
  return status ? bringIn(folder_, database, kept, {}, untilTimeIsUp()) : status;
}

Status GoingBack::putBack(const std::string& database, const std::string& copy) {
  SqliteConnection whole;
  if (Status status = openWhole(copy, question_, &whole); !status) return status;
  const ConnectionGuard::Use use(whole.guard());
  FormerState kept;
  Status status;
  if (!isThere(database)) {
    status = makeAnew(database, whole.handle(), false);
  } else {
    status = putIntoFile(database, whole.handle(), &kept);
  }
  return settle(status, kept, database, copy);
}

/// Where nothing was changed the copy is no former state; where it may be the only one of what was in the
/// file nothing is tried with it that could fail.
Status GoingBack::settle(const Status& status, const FormerState& kept, const std::string& database,
                         const std::string& copy) {
  if (kept.path.empty()) return status;
  if (status) return bringIn(folder_, database, kept.path, {copy}, untilTimeIsUp());
  if (!kept.isNeeded) removeFile(kept.path);
  return status;
}

Status GoingBack::putIntoFile(const std::string& database, sqlite3* copy, FormerState* kept) {
  Target target;
  if (Status status = checkOrdinaryFile(database); !status) return status;
  if (Status status = target.open(database, lockWait_, question_); !status) return status;
  int result = target.look();
  if (result == SQLITE_OK) result = target.prepareFor(copy);
  Status status = statusOf(target.handle(), result);
  if (status) status = putInto(target, copy, database, kept);
  target.end();
  if (status.code() != ErrorCode::damaged) return status;
  if (!kept->path.empty()) removeFile(kept->path);
  *kept = {};
  status = keep(target.handle(), database, CopyReason::goingBack, &kept->path);
  target.close();
  if (!status) return status;
  status = makeAnew(database, copy, true);
  // It may have its place already, and only not be on the disk.
  kept->isNeeded = status.code() == ErrorCode::inputOutput;
  return status;
}

/// The transaction shuts other writers out before anything is in the file. What is there then is kept, and
/// the pages follow. The write-ahead log takes pages of a file that has lost its name, too, and would then be
/// taken for that of the file which has the name.
Status GoingBack::putInto(Target& target, sqlite3* copy, const std::string& database, FormerState* kept) {
  std::unique_ptr<sqlite3_backup, BackupFinisher> backup(
      sqlite3_backup_init(target.handle(), kMain, copy, kMain));
  if (backup == nullptr) return statusOf(target.handle(), sqlite3_extended_errcode(target.handle()));
  constexpr int kNoPages = 0;
  int result = sqlite3_backup_step(backup.get(), kNoPages);
  if (result != SQLITE_OK) return statusOf(nullptr, result);
  Status status = keep(target.handle(), database, CopyReason::goingBack, &kept->path);
  if (!status) return status;
  while (result == SQLITE_OK && status) {
    if (isToStop()) {
      status = {ErrorCode::stopped, "The statement was stopped."};
    } else if (status = checkNameOf(target.handle()); status) {
      result = sqlite3_backup_step(backup.get(), kPagesPerStep);
    }
  }
  const int finished = sqlite3_backup_finish(backup.release());
  if (result == SQLITE_DONE) result = finished;
  if (status) status = statusOf(target.handle(), result);
  const Status named = checkNameOf(target.handle());
  if (status) status = named;
  // A commit whose last flush failed may have been one all the same, and a file without a name goes with
  // whoever has it open.
  kept->isNeeded = !named || (result & 0xFF) == SQLITE_IOERR;
  return status;
}

/// As a file of its own, which then gets the name.
Status GoingBack::makeAnew(const std::string& database, sqlite3* copy, bool replaces) {
  std::string unfinished;
  Status status{ErrorCode::fileExists, {}};
  for (int number = 0; status.code() == ErrorCode::fileExists; ++number) {
    unfinished = database + "~" + std::to_string(number);
    status = createNewFile(unfinished);
  }
  if (!status) return status;
  status = copyState(copy, unfinished, [this] { return isToStop(); });
  if (status && !flushFile(unfinished)) {
    status = {ErrorCode::inputOutput, "The file could not be written to the disk."};
  }
  if (status && !replaces && isThere(database)) {
    status = {ErrorCode::fileExists, "Another program has made a file of that name meanwhile."};
  }
  if (status) {
    // What a file of this name had beside it belongs to that one, and would be taken for the new one's.
    for (const char* beside : {"-journal", "-wal", "-shm"}) removeFile(database + beside);
    if (!renameFile(unfinished, database, replaces) || !flushFile(database)) {
      status = {ErrorCode::inputOutput, "The file can't be put into its place: another program may use it."};
    }
  }
  if (!status) removeFile(unfinished);
  return status;
}

}  // namespace store
