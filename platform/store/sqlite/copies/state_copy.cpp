#include "platform/store/sqlite/copies/state_copy.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/files/durable_file.h"
#include "platform/store/sqlite/files/file_system.h"

namespace store {

namespace {

// As large as the largest page: of more SQLite's layer over the system takes only a part.
constexpr int kPieceBytes = 1 << 16;
constexpr std::array<const char*, 3> kBeside = {"-journal", "-wal", "-shm"};

// On some systems the bytes on which SQLite sets its locks can't be read while another program has one. They
// hold nothing.
constexpr sqlite3_int64 kFirstLockByte = 0x40000000;
constexpr sqlite3_int64 kLockBytes = 512;

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, Closer>;

sqlite3_file* fileOf(sqlite3* connection, int which) {
  sqlite3_file* file = nullptr;
  const int result = sqlite3_file_control(connection, "main", which, &file);
  return result == SQLITE_OK && file != nullptr && file->pMethods != nullptr ? file : nullptr;
}

/// The file of the write-ahead log; null in other modes, where that is the journal.
sqlite3_file* logOf(sqlite3* connection) {
  constexpr int kReadVersionOffset = 19;
  constexpr unsigned char kWriteAheadVersion = 2;
  unsigned char version = 0;
  sqlite3_file* main = fileOf(connection, SQLITE_FCNTL_FILE_POINTER);
  if (main == nullptr || main->pMethods->xRead(main, &version, 1, kReadVersionOffset) != SQLITE_OK ||
      version != kWriteAheadVersion) {
    return nullptr;
  }
  return fileOf(connection, SQLITE_FCNTL_JOURNAL_POINTER);
}

sqlite3_int64 lengthOf(sqlite3_file* file) {
  sqlite3_int64 length = 0;
  if (file == nullptr || file->pMethods->xFileSize(file, &length) != SQLITE_OK) return 0;
  return length;
}

Status openTarget(const std::string& path, Connection* connection) {
  sqlite3* opened = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXRESCODE;
  const int result = sqlite3_open_v2(path.c_str(), &opened, flags, fileSystemName());
  connection->reset(opened);
  if (result == SQLITE_OK && fileOf(opened, SQLITE_FCNTL_FILE_POINTER) != nullptr) return {};
  return {ErrorCode::cannotOpen, "The file of the copy can't be opened."};
}

/// The bytes between two places.
int copyPiece(sqlite3_file* from, sqlite3_file* to, char* room, sqlite3_int64 start, sqlite3_int64 end) {
  const int length = static_cast<int>(end - start);
  const int result = from->pMethods->xRead(from, room, length, start);
  return result != SQLITE_OK ? result : to->pMethods->xWrite(to, room, length, start);
}

Status copyFile(sqlite3_file* from, sqlite3_file* to, const IsStopped& isStopped) {
  const sqlite3_int64 length = lengthOf(from);
  std::vector<char> room(kPieceBytes);
  for (sqlite3_int64 start = 0; start < length;) {
    if (isStopped && isStopped()) return {ErrorCode::stopped, "The copying was stopped."};
    if (start == kFirstLockByte) start += kLockBytes;
    sqlite3_int64 end = std::min(start + kPieceBytes, length);
    if (start < kFirstLockByte) end = std::min(end, kFirstLockByte);
    if (end <= start) break;
    const int result = copyPiece(from, to, room.data(), start, end);
    if (result != SQLITE_OK) return statusOf(nullptr, result);
    start = end;
  }
  return {};
}

/// What stands in the log goes into the database, which then has no log.
Status takeLogIn(const std::string& path) {
  Connection connection;
  if (Status status = openTarget(path, &connection); !status) return status;
  for (const char* statement : {"PRAGMA synchronous=OFF", "PRAGMA locking_mode=EXCLUSIVE",
                                "SELECT count(*) FROM sqlite_schema", "PRAGMA journal_mode=DELETE"}) {
    const int result = sqlite3_exec(connection.get(), statement, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) return statusOf(connection.get(), result);
  }
  return {};
}

}  // namespace

std::int64_t bytesOfState(sqlite3* connection) {
  return lengthOf(fileOf(connection, SQLITE_FCNTL_FILE_POINTER)) + lengthOf(logOf(connection));
}

Status copyState(sqlite3* connection, const std::string& target, const IsStopped& isStopped) {
  sqlite3_file* main = fileOf(connection, SQLITE_FCNTL_FILE_POINTER);
  if (main == nullptr) return {ErrorCode::inputOutput, "The file can't be read."};
  sqlite3_file* log = logOf(connection);
  {
    Connection file;
    if (Status status = openTarget(target, &file); !status) return status;
    sqlite3_file* to = fileOf(file.get(), SQLITE_FCNTL_FILE_POINTER);
    if (Status status = copyFile(main, to, isStopped); !status) return status;
  }
  if (log == nullptr) return {};
  {
    Connection file;
    if (Status status = openTarget(target + "-wal", &file); !status) return status;
    sqlite3_file* to = fileOf(file.get(), SQLITE_FCNTL_FILE_POINTER);
    if (Status status = copyFile(log, to, isStopped); !status) return status;
  }
  Status status = takeLogIn(target);
  // What a damaged database has in its log nobody can take in.
  return status.code() == ErrorCode::damaged ? Status() : status;
}

Status CopyInMaking::make(sqlite3* connection, const IsStopped& isStopped) {
  discard();
  if (Status status = folder_.begin(database_, bytesOfState(connection), &unfinished_, &time_); !status) {
    return status;
  }
  Status status = copyState(connection, unfinished_, isStopped);
  isMade_ = static_cast<bool>(status);
  if (!status) discard();
  return status;
}

Status CopyInMaking::finish(CopyReason reason, std::string* kept) {
  Status status = folder_.finish(unfinished_, {.time = time_, .reason = reason}, kept);
  if (!status) return status;
  unfinished_.clear();
  isMade_ = false;
  return {};
}

void CopyInMaking::discard() noexcept {
  isMade_ = false;
  if (unfinished_.empty()) return;
  try {
    for (const char* beside : kBeside) removeFile(unfinished_ + beside);
  } catch (...) {
    // They are removed with all else that is unfinished, later.
  }
  removeFile(unfinished_);
  unfinished_.clear();
}

}  // namespace store
