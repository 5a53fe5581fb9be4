#pragma once

#include <string>

namespace store {

/// The system's files, as SQLite reaches them, with operations that fail when a test wants it. While
/// installed it stands between SQLite and the system for every database that is opened; nothing is
/// flushed to the disk then.
class FailingFileSystem {
 public:
  enum class Operation { read, write, fullDisk, sync, lock, truncate, open, remove };

  static void install();
  static void uninstall();

  /// Lets the operation with the 0-based `number` from now on fail, and all behind it when `forEver`.
  static void fail(Operation operation, int number, bool forEver);

  /// No operation fails any more. Whether one did since fail().
  static bool heal();

  /// What has been done to the size of rollback journals and to their durability since the last call, in
  /// order: "truncate", "sync", "close" and "delete", with a blank behind each.
  static std::string takeJournalLog();
};

}  // namespace store
