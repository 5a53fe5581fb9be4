#include "platform/store/sqlite/file_copy.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/store/sqlite/database_file.h"
#include "platform/store/sqlite/files/file_head.h"
#include "platform/store/sqlite/files/file_system.h"
#include "platform/store/sqlite/files/new_file.h"

namespace store {

namespace {

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, Closer>;

constexpr const char* kMain = "main";

/// Some of them at a time: who waits can stop it in between.
constexpr int kPagesPerStep = 256;

Status copyPages(sqlite3* source, sqlite3* target, const StatementWatch& watch) {
  // As with every change, an emptied journal is durable where a deleted one is not.
  int result = sqlite3_exec(target, "PRAGMA journal_mode=TRUNCATE", nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) return statusOf(nullptr, result);
  sqlite3_backup* backup = sqlite3_backup_init(target, kMain, source, kMain);
  if (backup == nullptr) return statusOf(nullptr, sqlite3_extended_errcode(target));
  bool isStopped = false;
  while (result == SQLITE_OK && !isStopped) {
    result = sqlite3_backup_step(backup, kPagesPerStep);
    isStopped = result == SQLITE_OK && watch.isToStop();
  }
  const int finished = sqlite3_backup_finish(backup);
  if (isStopped) return {ErrorCode::stopped, "The copying was stopped."};
  return statusOf(nullptr, result != SQLITE_DONE ? result : finished);
}

}  // namespace

Status copyDatabase(SqliteConnection& source, const std::string& path) {
  NewFileRemoval removal(path);
  const std::filesystem::path journal = pathOf(path + "-journal");
  if (Status status = createNewFile(path); !status) return status;
  removal.begin();
  // All pages are of one moment, which is now: nothing is written between the steps.
  source.endRead();
  if (Status status = source.beginRead(); !status) return status;
  sqlite3* opened = nullptr;
  int result =
      sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE, fileSystemName());
  Connection target(opened);
  if (result != SQLITE_OK) return {ErrorCode::cannotOpen, statusOf(opened, result).message()};
  Status copied = copyPages(source.handle(), opened, source.watch());
  source.endRead();
  if (!copied) return copied;
  target.reset();
  std::error_code ignored;
  std::filesystem::remove(journal, ignored);
  removal.cancel();
  return {};
}

}  // namespace store
