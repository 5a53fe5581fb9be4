#include "platform/store/sqlite/connection/row_run.h"

#include <algorithm>

#include "platform/store/sqlite/connection/function_values.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {
namespace {

// The clock is asked once for so many rows, or for so many bytes of texts among them.
constexpr unsigned kRowsBetweenLooks = 64;
constexpr std::size_t kBytesBetweenLooks = 1 << 18;

constexpr std::size_t kKindCount = static_cast<std::size_t>(CellKind::blob) + 1;

}  // namespace

RowRun::RowRun(RowTest& test, const std::vector<char>& ignored, RowScan::Clock::time_point until,
               std::uint64_t mostRows, std::uint64_t rowsBefore)
    : rowCount(rowsBefore),
      test_(test),
      ignored_(ignored),
      until_(until),
      mostRows_(mostRows),
      rowsToLook_(kRowsBetweenLooks),
      bytesToLook_(kBytesBetweenLooks) {}

std::vector<char> RowRun::ignoredBy(const RowTest& test) {
  std::vector<char> ignored;
  for (std::size_t number = 0; number < test.columns().size(); ++number) {
    for (std::size_t kind = 0; kind < kKindCount; ++kind) {
      ignored.push_back(test.ignores(number, static_cast<CellKind>(kind)) ? 1 : 0);
    }
  }
  return ignored;
}

bool RowRun::stopsBeforeRow() {
  ++rowCount;
  if (rowCount > mostRows_) isStopped = true;
  if (--rowsToLook_ == 0 || bytesToLook_ == 0) {
    rowsToLook_ = kRowsBetweenLooks;
    bytesToLook_ = kBytesBetweenLooks;
    if (RowScan::Clock::now() >= until_ || (isAbandoned != nullptr && *isAbandoned)) isStopped = true;
  }
  return isStopped;
}

bool RowRun::isWanted(std::size_t number, sqlite3_value* value) {
  const CellKind kind = kindOf(value);
  if (ignored_[number * kKindCount + static_cast<std::size_t>(kind)] != 0) return false;
  const Cell cell = cellOf(value, kind);
  bytesToLook_ -= std::min(bytesToLook_, cell.bytes.size());
  return test_.isWanted(number, cell);
}

void RowRun::callFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  // A statement from outside can call it, but has no such pointer.
  auto* run = count < 2 ? nullptr : static_cast<RowRun*>(sqlite3_value_pointer(values[0], kPointer));
  if (run == nullptr) {
    sqlite3_result_error(context, "no such function: quivane_wanted", -1);
    return;
  }
  const auto first = static_cast<std::size_t>(sqlite3_value_int64(values[1]));
  bool isWanted = run->isStopped || (first == 0 && run->stopsBeforeRow());
  for (int index = 2; index < count && !isWanted; ++index) {
    isWanted = run->isWanted(first + static_cast<std::size_t>(index) - 2, values[index]);
  }
  sqlite3_result_int(context, isWanted ? 1 : 0);
}

Status RowRun::addFunction(sqlite3* connection) {
  const int result =
      sqlite3_create_function_v2(connection, "quivane_wanted", -1, SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr,
                                 &RowRun::callFunction, nullptr, nullptr, nullptr);
  return statusOf(connection, result);
}

}  // namespace store
