#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace store {

/// Why a copy of a database was kept. The numbers are those of the automation.
enum class CopyReason {
  change = 1,           ///< before the first change of a session
  goingBack = 2,        ///< before another copy was put in its place
  tableDeletion = 3,    ///< before a table was deleted
  databaseDeletion = 4  ///< before the database was deleted or replaced
};

/// Whether nothing of what the copy holds is in the file any more, or may be.
constexpr bool isOfDeletion(CopyReason reason) {
  return reason == CopyReason::tableDeletion || reason == CopyReason::databaseDeletion;
}

/// What the name of a copy says: all that is known of one stands in its name, so that no list of them can be
/// wrong.
struct CopyName {
  std::int64_t time = 0;  ///< milliseconds since 1970, universal time
  CopyReason reason = CopyReason::change;
  std::optional<std::int64_t> records = std::nullopt;  ///< in all tables, once they were counted
  bool operator==(const CopyName&) const = default;
};

/// "2026-11-22 17-31-05-123Z change 1000000.cdb": the names of a folder are in the order of time.
std::string textOf(const CopyName& name);
/// Empty for what is no copy's name, to the letter.
std::optional<CopyName> copyNameOf(std::string_view text);

/// What a copy is called while it is written. It takes the place of the name: who makes this file first has
/// that millisecond.
std::string unfinishedNameOf(std::int64_t time);
bool isUnfinishedName(std::string_view text);

}  // namespace store
