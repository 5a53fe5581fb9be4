#include "platform/store/engine/moment_collation.h"

#include <new>
#include <optional>

#include "platform/store/engine/iso_date.h"

namespace store {
namespace {

constexpr std::string_view kFullForm = "0000-00-00 00:00:00";
constexpr std::size_t kDayLength = 10;

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Whether the text looks like the one form without a fraction: it is its own momentText then, whether or
/// not there is such a day.
bool hasFullForm(std::string_view text) {
  if (text.size() != kFullForm.size()) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool fits = isDigit(kFullForm[index]) ? isDigit(text[index]) : text[index] == kFullForm[index];
    if (!fits) return false;
  }
  return true;
}

int compare(void* connection, int leftLength, const void* left, int rightLength, const void* right) {
  const std::string_view leftText(static_cast<const char*>(left), static_cast<std::size_t>(leftLength));
  const std::string_view rightText(static_cast<const char*>(right), static_cast<std::size_t>(rightLength));
  try {
    return compareMoments(leftText, rightText);
  } catch (const std::bad_alloc&) {
    // A collation has no other way to fail than to have the statement stopped.
    sqlite3_interrupt(static_cast<sqlite3*>(connection));
    return leftText.compare(rightText);
  }
}

}  // namespace

std::string momentText(std::string_view text) {
  const bool isTimeAlone = text.size() > 2 && text[2] == ':';
  const std::optional<double> date = isTimeAlone ? std::nullopt : parseIsoDate(text);
  const std::optional<std::string> moment = date ? formatIsoDate(*date, DateShape::dateTime) : std::nullopt;
  return moment ? *moment : std::string(text);
}

int compareMoments(std::string_view left, std::string_view right) {
  if (hasFullForm(left) && hasFullForm(right)) return left.compare(right);
  return momentText(left).compare(momentText(right));
}

// A fraction that is rounded up carries a text of the last second of a day into the next day.
std::string lowestText(std::string_view moment) {
  const std::string_view day = moment.substr(0, kDayLength);
  const std::optional<double> date = parseIsoDate(day);
  const std::optional<std::string> before = date ? formatIsoDate(*date - 1, DateShape::date) : std::nullopt;
  return before ? *before + " 23" : std::string(day);
}

// Behind the day stands nothing, a blank or a T.
std::string endText(std::string_view moment) {
  return std::string(moment.substr(0, kDayLength)) + 'U';
}

int addMomentCollation(sqlite3* connection) {
  return sqlite3_create_collation_v2(connection, kMomentCollation, SQLITE_UTF8, connection, compare, nullptr);
}

}  // namespace store
