#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/opening/open_path.h"
#include "platform/store/rows/recordset.h"
#include "tests/support/paths.h"

namespace store {

/// The path as the engine takes it.
inline std::string utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// The lines of a link to a database of the server that the tests have for themselves (with-server). Throws
/// std::runtime_error when there is none.
std::string linkTo(const std::string& database, const std::string& more = {});

/// Runs statements in the server's own language, as its own tools do.
void runOnServer(const std::string& sql, const std::string& database);

/// Ends the server as a crash does, and waits until it has begun anew.
void restartServer();

/// Another program that uses the server at the same time.
class OtherProgram {
 public:
  explicit OtherProgram(const std::filesystem::path& link);

  Status tryRun(const std::string& sql);
  void run(const std::string& sql);
  /// The first column of the first row as text; "(none)" without a row and "(null)" for null.
  std::string ask(const std::string& sql);

 private:
  std::unique_ptr<Backend> backend_;
};

/// Asks again and again until the answer is yes; false when half a minute was not enough.
bool isMetSoon(const std::function<bool()>& condition);

/// A database of the server that is empty before each test, and that nobody uses any more soon after it.
class StoreTest : public testing::Test {
 protected:
  StoreTest();
  ~StoreTest() override;

  /// What other programs do with the database.
  void prepare(const std::string& sql) { OtherProgram(path_).run(sql); }

  void open(const OpenOptions& options = {});

  Status tryRun(std::string_view sql, std::int64_t* affected = nullptr);
  void run(std::string_view sql);

  Status tryOpen(std::string_view source, std::unique_ptr<Recordset>* recordset,
                 SourceKind kind = SourceKind::text, CursorType cursor = CursorType::keyset,
                 LockType lock = LockType::optimistic);
  /// Null, and a failed test, when it can't be opened.
  std::unique_ptr<Recordset> records(std::string_view source, SourceKind kind = SourceKind::text);

  /// A cell as text: (null), numbers in decimal, texts as they are, bytes in front of "x:".
  static std::string textOf(Recordset& recordset, std::size_t column);
  /// One column of all records from the current one on, joined by blanks.
  static std::string columnOf(Recordset& recordset, std::size_t column = 0);
  std::string columnOf(std::string_view source, std::size_t column = 0);

  testsupport::TempFolder folder_;
  std::string database_;
  std::filesystem::path path_;
  std::shared_ptr<Backend> backend_;
};

/// Of tests with a table of a single row.
class ServerRowTest : public StoreTest {
 protected:
  /// The table t with one row, which is opened.
  void openRow(const std::string& columns, const std::string& values) {
    runOnServer("CREATE TABLE t (k integer PRIMARY KEY, " + columns + ")", database_);
    runOnServer("INSERT INTO t VALUES (1, " + values + ")", database_);
    open();
    rows_ = records("Select * from [t]");
    ASSERT_NE(nullptr, rows_);
    ASSERT_EQ(1, rows_->recordCount());
  }
  std::string onServer(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  std::unique_ptr<Recordset> rows_;
};

}  // namespace store
