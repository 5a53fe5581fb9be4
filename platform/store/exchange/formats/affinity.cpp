#include "platform/store/exchange/formats/affinity.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/store/exchange/formats/number_text.h"
#include "platform/store/rows/ascii_case.h"

namespace store::exchange {

namespace {

// Of more, written in an odd way, SQLite may make the number beside.
constexpr std::ptrdiff_t kSureDigits = 15;

bool isNumber(const Cell& cell) {
  return cell.kind == CellKind::integer || cell.kind == CellKind::real;
}

void setInteger(Cell& cell, std::int64_t value) {
  cell.kind = CellKind::integer;
  cell.integer = value;
}

void setReal(Cell& cell, double value) {
  cell.kind = CellKind::real;
  cell.real = value;
}

/// A text that looks like a number becomes one. False when that is for SQLite to tell.
bool makeNumber(Cell& cell) {
  std::string_view text = cell.bytes;
  if (text.ends_with(".0")) text.remove_suffix(2);
  const auto digits = std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (const std::optional<std::int64_t> integer = readPlainInteger(text)) {
    setInteger(cell, *integer);
  } else if (const std::optional<double> plain = readPlainReal(text)) {
    setReal(cell, *plain);
  } else if (const std::optional<double> real = readReal(text); real && digits <= kSureDigits) {
    setReal(cell, *real);
  } else {
    return false;
  }
  return true;
}

/// A double that is a whole number becomes one where 64 bits hold it.
void makeInteger(Cell& cell) {
  constexpr double kBound = 9223372036854775808.0;
  if (std::abs(cell.real) >= kBound || std::trunc(cell.real) != cell.real) return;
  setInteger(cell, static_cast<std::int64_t>(cell.real));
}

bool isSame(const Cell& left, const Cell& right) {
  if (left.kind != right.kind) return false;
  switch (left.kind) {
    case CellKind::integer:
      return left.integer == right.integer;
    case CellKind::real:
      return std::bit_cast<std::uint64_t>(left.real) == std::bit_cast<std::uint64_t>(right.real);
    case CellKind::text:
    case CellKind::blob:
      return left.bytes == right.bytes;
    default:
      return true;
  }
}

}  // namespace

Affinity affinityOf(std::string_view declaredType) {
  const std::string type = lowerCase(declaredType);
  const auto has = [&type](std::string_view part) { return type.find(part) != std::string::npos; };
  if (has("int")) return Affinity::integer;
  if (has("char") || has("clob") || has("text")) return Affinity::text;
  if (has("blob") || type.empty()) return Affinity::none;
  if (has("real") || has("floa") || has("doub")) return Affinity::real;
  return Affinity::numeric;
}

bool isStoredAs(const Cell& value, Affinity affinity, const Cell& wanted) {
  Cell stored = value;
  const bool prefersNumbers = affinity != Affinity::text && affinity != Affinity::none;
  if (affinity == Affinity::text && isNumber(stored)) return false;
  if (prefersNumbers && stored.kind == CellKind::text && looksNumeric(stored.bytes) && !makeNumber(stored)) {
    return false;
  }
  if (affinity == Affinity::real && stored.kind == CellKind::integer) {
    setReal(stored, static_cast<double>(stored.integer));
  } else if (prefersNumbers && affinity != Affinity::real && stored.kind == CellKind::real) {
    makeInteger(stored);
  }
  // (It keeps whole numbers of such a column without their sign of zero.)
  if (affinity == Affinity::real && stored.kind == CellKind::real && stored.real == 0) setReal(stored, 0.0);
  return isSame(stored, wanted);
}

}  // namespace store::exchange
