#include "platform/store/sqlite/copies/retention.h"

#include <set>

namespace store {

namespace {

constexpr int kLast = 5;
constexpr std::int64_t kDays = 7;
constexpr std::int64_t kWeeks = 5;  // this one among them

// Day 0 was a Thursday.
std::int64_t weekOf(std::int64_t day) {
  constexpr std::int64_t kFromMonday = 3;
  const std::int64_t shifted = day + kFromMonday;
  return shifted >= 0 ? shifted / 7 : -((6 - shifted) / 7);
}

/// Whether it is the first one of its span, and the span one of the last ones.
bool isFirstOf(std::set<std::int64_t>& seen, std::int64_t span, std::int64_t present, std::int64_t count) {
  return span <= present && span > present - count && seen.insert(span).second;
}

}  // namespace

std::vector<bool> keptOf(const std::vector<CopyName>& copies, std::int64_t now, const LocalDay& dayOf) {
  const std::int64_t today = dayOf(now);
  std::vector<bool> kept;
  std::set<std::int64_t> days;
  std::set<std::int64_t> weeks;
  int states = 0;
  int deletions = 0;
  for (const CopyName& copy : copies) {
    const std::int64_t day = dayOf(copy.time);
    const bool isOfLast = isOfDeletion(copy.reason) ? deletions++ < kLast : states++ < kLast;
    const bool isOfDay = isFirstOf(days, day, today, kDays);
    const bool isOfWeek = isFirstOf(weeks, weekOf(day), weekOf(today), kWeeks);
    kept.push_back(isOfLast || isOfDay || isOfWeek);
  }
  return kept;
}

}  // namespace store
