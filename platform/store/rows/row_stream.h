#pragma once

#include <cstddef>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/rows/value.h"

namespace store {

struct Column;

/// The rows of a SELECT, once and one after the other, as they were at one moment. Nothing of them is kept,
/// so that there may be more of them than memory holds.
///
/// While it lives its thread alone can use the backend, and other programs can't write to the file: it is
/// made for a work that goes on without a pause. It is destroyed on the thread that made it.
class RowStream {
 public:
  virtual ~RowStream() = default;

  virtual const std::vector<Column>& columns() const = 0;

  /// Goes to the first row, and then to the next one; `*hasRow` is false behind the last, where it stays.
  virtual Status next(bool* hasRow) = 0;

  /// The value of the present row at `index`, which is less than the number of columns. Its bytes hold until
  /// the next call of next() or, for the same column, of cell().
  virtual Cell cell(std::size_t index) = 0;
};

}  // namespace store
