#include "platform/store/rows/text_search.h"

#include <utility>

namespace store {
namespace {

std::vector<std::size_t> searched(const std::vector<Column>& all, const std::vector<std::size_t>& columns) {
  std::vector<std::size_t> kept;
  for (const std::size_t column : columns) {
    const TypeCode code = all[column].type.code;
    if (code != TypeCode::boolean && code != TypeCode::date) kept.push_back(column);
  }
  return kept;
}

}  // namespace

TextSearch::TextSearch(Recordset& records, const std::vector<std::size_t>& columns, TextNeedle needle,
                       ValueTexts& texts)
    : records_(records),
      isEmpty_(needle.isEmpty()),
      test_(records.columns(), searched(records.columns(), columns), std::move(needle), texts) {}

Status TextSearch::passOver(std::int64_t most, RowScan::Clock::time_point until, std::int64_t* passed) {
  *passed = 0;
  if (isEmpty_) return {};
  if (!scan_ || keyChanges_ != records_.keyChanges()) {
    scan_ = records_.makeScan(test_);
    keyChanges_ = records_.keyChanges();
  }
  return records_.passOver(*scan_, most, until, passed);
}

}  // namespace store
