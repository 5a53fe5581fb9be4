#pragma once

#include <cstdint>
#include <memory>
#include <sqlite3.h>
#include <string>

namespace bench {

/// The bare SQLite C API with the settings for reading that the engine uses too, on files as the engine
/// reaches them, and with the cheapest commit that is as durable and as safe beside other programs.
class BareDatabase {
 public:
  explicit BareDatabase(const std::string& path);

  /// Walks over all row ids and returns their sum.
  std::int64_t scanRowIds();
  /// Fetches one row in a transaction that stays open, and reads all its fields as UTF-16. Returns the
  /// number of bytes read.
  std::int64_t fetchRow(std::int64_t rowId);
  /// Writes one field of one row, durably.
  void changeRow(std::int64_t rowId, std::int64_t value);
  /// Runs a statement to its end and returns the number of rows that it yields.
  std::int64_t runToEnd(const std::string& sql);
  /// Ends the transaction that fetchRow opened.
  void endReading();

 private:
  struct Closer {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  void run(const char* sql);
  Statement prepare(const char* sql);

  std::unique_ptr<sqlite3, Closer> connection_;
  Statement fetch_;
  Statement change_;
};

}  // namespace bench
