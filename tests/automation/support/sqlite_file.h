#pragma once

#include <sqlite3.h>
#include <string>
#include <vector>

namespace automationtest {

/// A database file as another program makes and sees it: by SQLite alone.
class SqliteFile {
 public:
  /// Opens the file, making it when it is missing.
  explicit SqliteFile(const std::wstring& path);
  ~SqliteFile();
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  /// Runs statements; a failure fails the running test.
  void run(const std::string& sql);
  /// Runs statements that may fail, as when the file is in use for longer than so many milliseconds. Whether
  /// all have run.
  bool tryRun(const std::string& sql, int patience);
  /// The first column of all rows. Ask for quote(column) to see kind and value of each.
  std::vector<std::string> column(const std::string& sql);

 private:
  sqlite3* connection_ = nullptr;
};

/// The column of a closed file.
std::vector<std::string> sqliteColumn(const std::wstring& path, const std::string& sql);

}  // namespace automationtest
