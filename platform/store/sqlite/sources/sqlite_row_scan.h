#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/sources/companion_scan.h"

namespace store {

/// Where the rows of a source are, and how SQL names what is in them.
struct ScannedRows {
  std::string columnList;         ///< what stands behind SELECT for all columns of the source
  std::string tableClause;        ///< what stands behind FROM
  std::vector<std::string> keys;  ///< what reads the key: one for a row id
  bool areTupleKeyed = false;
  /// Whether the keys are those of all rows in the order of the keys, more or less.
  bool areWholeTable = false;
  /// Whether they are rows of a table in the file, which any connection to it can read.
  bool areInFile = false;
};

/// Walks over the rows inside SQLite. Where row ids stand in their own order, it goes along them, in a large
/// table together with a companion. In any other order it looks at some rows one by one; then it goes through
/// the table once, in the table's order, and notes in a bit map of a fixed size which rows are wanted. When
/// another connection has changed the file meanwhile it goes through it again, and looks at the rows one by
/// one in the end.
class SqliteRowScan : public RowScan {
 public:
  /// `connection`, `source` and `test` outlive the scan. `checkRows`, called with a read transaction open,
  /// says whether the keys still name the rows that they were taken from.
  SqliteRowScan(SqliteConnection& connection, RowSource& source, RowTest& test, ScannedRows rows,
                std::function<Status()> checkRows);
  ~SqliteRowScan() override;
  SqliteRowScan(const SqliteRowScan&) = delete;
  SqliteRowScan& operator=(const SqliteRowScan&) = delete;

  Status passOver(const KeySet& keys, std::size_t first, std::size_t last, Clock::time_point until,
                  std::size_t* next) override;

 private:
  Status passOverSome(const KeySet& keys, std::size_t last, Clock::time_point until, std::size_t* next,
                      bool* stops);
  Status lookOneByOne(const KeySet& keys, std::size_t last, Clock::time_point until, std::size_t* next,
                      bool* stops);
  Status goAlong(const KeySet& keys, std::size_t end, Clock::time_point until, std::size_t* next,
                 bool* stops);
  Status goAlongTogether(const KeySet& keys, std::size_t last, Clock::time_point until, std::size_t* next,
                         bool* stops);
  bool hasCompanion();
  Status forgetOldMarks();
  Status goThrough(const KeySet& keys, Clock::time_point until);
  /// False at a row that has a mark. One without is no wanted one: each wanted row of the table has left the
  /// mark of its hash, and the same key has the same hash.
  bool passOverUnmarked(const KeySet& keys, std::size_t last, std::size_t* next) const;
  Status fail(sqlite3_stmt* statement, int result);
  void decide(const KeySet& keys);
  Status prepare();
  std::string statementText(bool isBounded) const;
  Key keyOf(sqlite3_stmt* statement) const;
  std::uint64_t bitOf(std::uint64_t hash) const { return hash & (marks_.size() * 64 - 1); }

  SqliteConnection& connection_;
  RowTest& test_;
  ScannedRows rows_;
  std::size_t columnCount_ = 0;  // that its list of columns makes
  std::vector<char> ignored_;    // what the test ignores
  std::function<Status()> checkRows_;
  std::unique_ptr<RowScan> oneByOne_;
  SqliteStatement from_;     // from a key on, for row ids up to another one
  SqliteStatement whole_;    // for tuples: from the first key on
  unsigned preparedAt_ = 0;  // what the connection had counted of rebuilds then

  bool isDecided_ = false;
  bool goesAlong_ = false;  // the keys are row ids in their order, as far as is known
  bool mayHaveCompanion_ = false;
  std::unique_ptr<CompanionScan> companion_;
  bool isOneByOne_ = false;       // the table is never gone through
  std::size_t oneByOneLeft_ = 0;  // so many rows are looked at one by one before the table is gone through
  bool isMarked_ = false;         // the whole table was gone through
  std::vector<std::uint64_t> marks_;  // a bit for each remainder of a hash of a key; a power of two of words
  std::optional<Key> resumeAt_;       // where going through the table goes on
  std::uint64_t rowsSeen_ = 0;        // while going through the table
  std::int64_t markedVersion_ = 0;    // what the connection saw when it began with that
  int timesForgotten_ = 0;
};

}  // namespace store
