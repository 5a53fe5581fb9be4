#include <algorithm>
#include <limits>
#include <optional>

#include "data/database/database.h"
#include "data/database/table_search.h"
#include "data/handles/recordset_handle.h"

void Database::beginSearch(bool allFields, bool matchCase, std::uint32_t field, const String& text) {
  std::optional<LONG> one;
  if (!allFields) one = static_cast<LONG>(field);
  recordset_->beginTextSearch(text.text(), one, matchCase);
}

std::uint32_t Database::passOver(std::uint32_t most, std::uint32_t milliseconds) {
  constexpr std::uint32_t kMost = std::numeric_limits<LONG>::max();
  const LONG passed =
      recordset_->passOver(static_cast<LONG>(std::min(most, kMost)), static_cast<LONG>(milliseconds));
  if (passed <= 0) return 0;
  currentRecord += static_cast<std::uint32_t>(passed);
  return static_cast<std::uint32_t>(passed);
}

Outcome Database::beginTableSearch(const String& table, const String& text, TableSearch& search) {
  return search.begin(*connection_, table, text);
}

void Database::endSearch() {
  recordset_->endTextSearch();
}
