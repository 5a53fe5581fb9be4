#include "platform/store/sql/moments.h"

#include <optional>

#include "platform/store/rows/iso_date.h"

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

}  // namespace store
