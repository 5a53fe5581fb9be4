#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/string.h"
#include "data/outcome.h"

class ConnectionHandle;
class RecordsetHandle;

/// One text looked for in the fields of one table, in any letter case, a part at a time. The fields are those
/// that a search looks at (FieldKind::isSearched), and their values what the user reads there.
class TableSearch {
 public:
  struct Match {
    std::uint32_t record = 0;  ///< its place in the order of the file, from 1
    String field;
    std::wstring excerpt;  ///< of the value, around the text
  };

  TableSearch();
  ~TableSearch();
  TableSearch(const TableSearch&) = delete;
  TableSearch& operator=(const TableSearch&) = delete;

  /// Opens the table. Fails, and there is nothing to be gone on with, when that is not possible.
  Outcome begin(const ConnectionHandle& connection, const String& table, const String& text);
  /// Goes on for about as many milliseconds, at most to the end of the next record in which the text occurs,
  /// whose matches are appended. On failure the search is over.
  Outcome step(std::uint32_t milliseconds, std::vector<Match>& matches);
  bool isOver() const { return position_ > count_; }

  std::uint32_t testedCount() const { return position_ - 1; }
  std::uint32_t recordCount() const { return count_; }

 private:
  Outcome matchRecord(std::vector<Match>& matches);

  std::unique_ptr<RecordsetHandle> records_;
  String text_;  // in capitals
  std::uint32_t position_ = 1;
  std::uint32_t count_ = 0;
};
