#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"
#include "tests/store/cell_text.h"
#include "tests/support/paths.h"

namespace store {

/// The path as the engine takes it.
inline std::string utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

inline std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) return {};
  std::string bytes(static_cast<std::size_t>(file.tellg()), '\0');
  file.seekg(0);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

inline void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Another program that uses SQLite directly.
class OtherProgram {
 public:
  explicit OtherProgram(const std::filesystem::path& path) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(SQLITE_OK, sqlite3_open(utf8Of(path).c_str(), &opened));
    connection_.reset(opened);
    // A reading of ours may still hold its lock for a moment.
    sqlite3_busy_timeout(opened, 5000);
  }

  sqlite3* handle() { return connection_.get(); }

  /// SQLite's result code.
  int tryRun(const std::string& sql) {
    return sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  }
  void run(const std::string& sql) {
    ASSERT_EQ(SQLITE_OK, tryRun(sql)) << sql << ": " << sqlite3_errmsg(connection_.get());
  }

  /// The first column of the first row as text; "(none)" without a row and "(null)" for null.
  std::string ask(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(SQLITE_OK, sqlite3_prepare_v2(connection_.get(), sql.c_str(), -1, &statement, nullptr)) << sql;
    std::string answer = "(none)";
    if (sqlite3_step(statement) == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
      answer = text != nullptr
                   ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, 0)))
                   : "(null)";
    }
    sqlite3_finalize(statement);
    return answer;
  }

 private:
  struct Closer {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
  };
  std::unique_ptr<sqlite3, Closer> connection_;
};

/// A database of its own for each test.
class StoreTest : public testing::Test {
 protected:
  StoreTest() : path_(folder_.file("some data.cdb")) {}

  void SetUp() override { ASSERT_TRUE(createDatabase(utf8Of(path_))); }

  /// What other programs put into the file before it is opened.
  void prepare(const std::string& sql) { OtherProgram(path_).run(sql); }

  void open(const OpenOptions& options = {}) {
    std::unique_ptr<Backend> backend;
    const Status status = openDatabase(utf8Of(path_), options, &backend);
    ASSERT_TRUE(status) << status.message();
    backend_ = std::move(backend);
  }

  Status tryRun(std::string_view sql, std::int64_t* affected = nullptr) {
    std::int64_t count = 0;
    std::unique_ptr<RowSource> rows;
    Status status = backend_->run(sql, affected != nullptr ? affected : &count, &rows);
    return status;
  }
  void run(std::string_view sql) {
    const Status status = tryRun(sql);
    ASSERT_TRUE(status) << sql << ": " << status.message();
  }

  Status tryOpen(std::string_view source, std::unique_ptr<Recordset>* recordset,
                 SourceKind kind = SourceKind::text, CursorType cursor = CursorType::keyset,
                 LockType lock = LockType::optimistic) {
    std::unique_ptr<RowSource> rows;
    if (Status status = backend_->openRows(source, kind, &rows); !status) return status;
    if (rows == nullptr) return {ErrorCode::illegalOperation, "no rows"};
    auto made = std::make_unique<Recordset>(backend_, std::move(rows), cursor, lock);
    if (Status status = made->load(); !status) return status;
    *recordset = std::move(made);
    return {};
  }
  /// Null, and a failed test, when it can't be opened.
  std::unique_ptr<Recordset> records(std::string_view source, SourceKind kind = SourceKind::text) {
    std::unique_ptr<Recordset> recordset;
    const Status status = tryOpen(source, &recordset, kind);
    EXPECT_TRUE(status) << source << ": " << status.message();
    return recordset;
  }

  /// A cell as text: (null), numbers in decimal, texts as they are, bytes in front of "x:".
  static std::string textOf(Recordset& recordset, std::size_t column) {
    Cell cell;
    if (const Status status = recordset.cell(column, &cell); !status)
      return "(failed: " + status.message() + ")";
    return plainTextOf(cell);
  }
  /// One column of all records from the current one on, joined by blanks.
  static std::string columnOf(Recordset& recordset, std::size_t column = 0) {
    std::string text;
    while (!recordset.isEof()) {
      if (!text.empty()) text += ' ';
      text += textOf(recordset, column);
      if (!recordset.moveNext()) break;
    }
    return text;
  }
  std::string columnOf(std::string_view source, std::size_t column = 0) {
    const std::unique_ptr<Recordset> recordset = records(source, SourceKind::unknown);
    return recordset ? columnOf(*recordset, column) : "(failed)";
  }

  testsupport::TempFolder folder_;
  std::filesystem::path path_;
  std::shared_ptr<Backend> backend_;
};

}  // namespace store
