#include "platform/store/exchange/formats/coming_back.h"

#include <cmath>
#include <string>

#include "platform/store/exchange/formats/value_reading.h"
#include "platform/store/rows/iso_date.h"

namespace store::exchange {

namespace {

bool isForIntegers(const WrittenColumn& column) {
  if (column.affinity == Affinity::text || column.affinity == Affinity::real) return false;
  return column.kind == ValueKind::integer || column.kind == ValueKind::numeric ||
         column.kind == ValueKind::any || column.kind == ValueKind::boolean;
}

bool isForReals(double value, const WrittenColumn& column) {
  switch (column.affinity) {
    case Affinity::real:
      return (column.kind == ValueKind::real || column.kind == ValueKind::any) && value != 0;
    case Affinity::none:
      return column.kind == ValueKind::any;
    case Affinity::integer:
    case Affinity::numeric:
      // Whole numbers are integers there.
      return (column.kind == ValueKind::numeric || column.kind == ValueKind::any) &&
             std::trunc(value) != value;
    default:
      return false;
  }
}

/// Whether SQLite may take it for a number, by its first character.
bool mayBeNumber(std::string_view text) {
  if (text.empty()) return false;
  const char first = text.front();
  return (first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.' || first == ' ' ||
         (first >= '\t' && first <= '\r');
}

bool isForTexts(std::string_view text, const WrittenColumn& column) {
  const bool prefersNumbers = column.affinity != Affinity::text && column.affinity != Affinity::none;
  switch (column.kind) {
    case ValueKind::text:
      return !prefersNumbers;
    case ValueKind::any:
      return !prefersNumbers || !mayBeNumber(text);
    case ValueKind::numericText:
      return !mayBeNumber(text);
    case ValueKind::date:
      return parseIsoDate(text).has_value();
    default:
      return false;
  }
}

}  // namespace

std::vector<WrittenColumn> writtenColumns(const std::vector<Column>& columns, bool isExact) {
  std::vector<WrittenColumn> written;
  for (const Column& column : columns) {
    written.push_back(
        {isExact ? ValueKind::any : kindOf(column.declaredType), affinityOf(column.declaredType)});
  }
  return written;
}

bool isOfKind(const Cell& cell, const WrittenColumn& column) {
  switch (cell.kind) {
    case CellKind::integer:
      return isForIntegers(column);
    case CellKind::real:
      return isForReals(cell.real, column);
    case CellKind::text:
      return isForTexts(cell.bytes, column);
    case CellKind::blob:
      return column.kind == ValueKind::bytes || column.kind == ValueKind::any;
    default:
      return true;
  }
}

bool comesBack(const Field& field, const WrittenColumn& column, const Cell& cell) {
  std::string scratch;
  Cell read;
  return readValue(field, column.kind, &scratch, &read) == nullptr && isStoredAs(read, column.affinity, cell);
}

}  // namespace store::exchange
