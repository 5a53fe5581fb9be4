#pragma once

#include <vector>

#include "platform/store/exchange/formats/affinity.h"
#include "platform/store/exchange/formats/record_reader.h"
#include "platform/store/exchange/formats/value_kind.h"
#include "platform/store/rows/backend.h"

namespace store::exchange {

/// A column whose values are written out, and into one like which they are to come back.
struct WrittenColumn {
  ValueKind kind = ValueKind::any;
  Affinity affinity = Affinity::none;
};

/// In a file that is `exact` no column has a kind: each value is written, and read, as what it is.
std::vector<WrittenColumn> writtenColumns(const std::vector<Column>& columns, bool isExact);

/// Whether `cell` is a value such as the column is made for: what every format writes of it is read as the
/// same value again. SQLite's columns may hold any other as well (a text in a column of dates); those are to
/// be tried.
bool isOfKind(const Cell& cell, const WrittenColumn& column);

/// Whether `field`, which was written for `cell`, is the same value again when it is read and stored in such
/// a column.
bool comesBack(const Field& field, const WrittenColumn& column, const Cell& cell);

}  // namespace store::exchange
