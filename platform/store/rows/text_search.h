#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/store/rows/recordset.h"
#include "platform/store/rows/row_scan.h"
#include "platform/store/rows/text_test.h"

namespace store {

/// One search for a text in the records of a recordset. Made when it begins and dropped when it ends: while
/// it lasts, a record that was passed over is not looked at again.
class TextSearch {
 public:
  /// Looks at the columns [0, column count) of the recordset that `columns` names; dates and truth values
  /// among them are left out. `records` and `texts` outlive the search. May throw std::bad_alloc.
  TextSearch(Recordset& records, const std::vector<std::size_t>& columns, TextNeedle needle,
             ValueTexts& texts);

  /// Moves the recordset on over records in which the text does not occur, as Recordset::passOver() says. The
  /// empty text passes over none.
  Status passOver(std::int64_t most, RowScan::Clock::time_point until, std::int64_t* passed);

 private:
  Recordset& records_;
  bool isEmpty_;
  TextTest test_;
  std::unique_ptr<RowScan> scan_;
  std::uint64_t keyChanges_ = 0;  // of the recordset when the scan was made
};

}  // namespace store
