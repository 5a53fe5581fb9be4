#pragma once

#include <limits>
#include <memory>
#include <sqlite3.h>

namespace store {

/// Reads a database file ahead of SQLite where it goes along it page by page: a reading of a whole table
/// costs a call of the system for each page otherwise, which is dear where files go through another layer.
///
/// What was read ahead may be handed out only as long as nobody can have changed the file: the owner calls
/// forget() at the beginning and the end of each transaction, and at each change of its own. (In the
/// write-ahead mode others write into the file during a transaction, but no page that the transaction reads
/// from there.) Never throws.
class ReadAhead {
 public:
  /// As xRead of `file`, with the same results, but for pages that were read ahead.
  int read(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) noexcept;

  void forget() noexcept;

 private:
  /// Of SQLite's pages the largest has 64 KiB.
  static constexpr int kRoom = 1 << 18;
  /// So many pages in a row show that SQLite goes along the file.
  static constexpr int kFewestInRow = 4;
  /// Pages that SQLite has already are passed over.
  static constexpr int kMostPassedOver = 8;
  static constexpr sqlite3_int64 kNowhere = std::numeric_limits<sqlite3_int64>::max();

  bool holds(int length, sqlite3_int64 offset) const noexcept;
  bool fill(sqlite3_file* file, int length, sqlite3_int64 offset) noexcept;

  std::unique_ptr<char[]> room_;
  sqlite3_int64 start_ = 0;  // of what was read ahead, in the file
  int count_ = 0;            // how many bytes that is
  sqlite3_int64 lastEnd_ = 0;
  int inRow_ = 0;
  sqlite3_int64 shortFrom_ = kNowhere;  // from there on not enough is left of the file, or can be read
};

}  // namespace store
