#include "platform/store/rows/iso_date.h"

#include <chrono>
#include <cmath>
#include <cstdint>

namespace store {
namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::int64_t kMillisecondsPerMinute = 60 * kMillisecondsPerSecond;
constexpr std::int64_t kMillisecondsPerHour = 60 * kMillisecondsPerMinute;
constexpr std::int64_t kMillisecondsPerDay = 24 * kMillisecondsPerHour;

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr year_month_day dateOf(int year, int month, int day) {
  return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
          std::chrono::day(static_cast<unsigned>(day))};
}

constexpr sys_days kEpoch = dateOf(1899, 12, 30);

/// Since the epoch.
constexpr std::int64_t dayNumberOf(const year_month_day& date) {
  return (sys_days(date) - kEpoch).count();
}

constexpr std::int64_t kFirstDay = dayNumberOf(dateOf(100, 1, 1));
constexpr std::int64_t kLastDay = dayNumberOf(dateOf(9999, 12, 31));
static_assert(kFirstDay == -657434 && kLastDay == 2958465);

/// A point in time as both directions handle it: whole days since the epoch (of either sign) and the
/// time of that day.
struct Moment {
  std::int64_t day = 0;
  std::int64_t millisecond = 0;
};

/// A time of day that was rounded up to midnight is the next day's; the last day has no next one, so
/// there the last millisecond stands.
Moment withinDay(Moment moment) {
  if (moment.millisecond < kMillisecondsPerDay) return moment;
  if (moment.day == kLastDay) return {kLastDay, kMillisecondsPerDay - 1};
  return {moment.day + 1, 0};
}

/// Takes parts from the front of a text.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  bool atEnd() const { return text_.empty(); }

  bool skip(char character) {
    if (text_.empty() || text_.front() != character) return false;
    text_.remove_prefix(1);
    return true;
  }

  /// A number of exactly `digitCount` digits.
  bool readNumber(std::size_t digitCount, int* number) {
    if (text_.size() < digitCount) return false;
    int result = 0;
    for (const char character : text_.substr(0, digitCount)) {
      if (!isDigit(character)) return false;
      result = result * 10 + (character - '0');
    }
    text_.remove_prefix(digitCount);
    *number = result;
    return true;
  }

  bool readDay(std::int64_t* day) {
    int year = 0;
    int month = 0;
    int dayOfMonth = 0;
    if (!readNumber(4, &year) || !skip('-') || !readNumber(2, &month) || !skip('-') ||
        !readNumber(2, &dayOfMonth))
      return false;
    const year_month_day date = dateOf(year, month, dayOfMonth);
    if (year < 100 || !date.ok()) return false;
    *day = dayNumberOf(date);
    return true;
  }

  bool readTime(std::int64_t* millisecond) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    std::int64_t fraction = 0;
    if (!readNumber(2, &hour) || !skip(':') || !readNumber(2, &minute)) return false;
    if (skip(':')) {
      if (!readNumber(2, &second)) return false;
      if (skip('.') && !readFraction(&fraction)) return false;
    }
    skip('Z');
    if (hour > 23 || minute > 59 || second > 59) return false;
    *millisecond = hour * kMillisecondsPerHour + minute * kMillisecondsPerMinute +
                   second * kMillisecondsPerSecond + fraction;
    return true;
  }

 private:
  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  /// One digit or more, to the nearest millisecond: 1000 for .9995 and more.
  bool readFraction(std::int64_t* millisecond) {
    if (text_.empty() || !isDigit(text_.front())) return false;
    std::int64_t result = 0;
    int digitCount = 0;
    for (; !text_.empty() && isDigit(text_.front()); text_.remove_prefix(1), ++digitCount) {
      const int digit = text_.front() - '0';
      if (digitCount < 3) result = result * 10 + digit;
      // The fourth digit alone decides which millisecond is the nearest.
      if (digitCount == 3 && digit >= 5) ++result;
    }
    for (; digitCount < 3; ++digitCount) result *= 10;
    *millisecond = result;
    return true;
  }

  std::string_view text_;
};

void appendNumber(std::string* text, std::int64_t number, int digitCount) {
  std::int64_t divisor = 1;
  for (int i = 1; i < digitCount; ++i) divisor *= 10;
  for (; divisor != 0; divisor /= 10) text->push_back(static_cast<char>('0' + number / divisor % 10));
}

void appendDay(std::string* text, std::int64_t day) {
  const year_month_day date = kEpoch + std::chrono::days(day);
  appendNumber(text, static_cast<int>(date.year()), 4);
  text->push_back('-');
  appendNumber(text, static_cast<unsigned>(date.month()), 2);
  text->push_back('-');
  appendNumber(text, static_cast<unsigned>(date.day()), 2);
}

void appendTime(std::string* text, std::int64_t millisecond) {
  appendNumber(text, millisecond / kMillisecondsPerHour, 2);
  text->push_back(':');
  appendNumber(text, millisecond / kMillisecondsPerMinute % 60, 2);
  text->push_back(':');
  appendNumber(text, millisecond / kMillisecondsPerSecond % 60, 2);
  if (millisecond % kMillisecondsPerSecond == 0) return;
  text->push_back('.');
  appendNumber(text, millisecond % kMillisecondsPerSecond, 3);
}

}  // namespace

std::optional<double> parseIsoDate(std::string_view text) {
  DateReader reader(text);
  Moment moment;
  const bool hasTimeOnly = text.size() > 2 && text[2] == ':';
  if (hasTimeOnly) {
    if (!reader.readTime(&moment.millisecond)) return std::nullopt;
  } else {
    if (!reader.readDay(&moment.day)) return std::nullopt;
    const bool hasTime = reader.skip(' ') || reader.skip('T');
    if (hasTime && !reader.readTime(&moment.millisecond)) return std::nullopt;
  }
  if (!reader.atEnd()) return std::nullopt;
  moment = withinDay(moment);

  // One division of integers, which a double holds exactly, makes the nearest double.
  const std::int64_t distance = std::abs(moment.day) * kMillisecondsPerDay + moment.millisecond;
  const double date = static_cast<double>(distance) / static_cast<double>(kMillisecondsPerDay);
  return moment.day < 0 ? -date : date;
}

std::optional<std::string> formatIsoDate(double date, DateShape shape) {
  const double wholeDays = std::trunc(date);
  // Also false for what is not a number.
  const bool isInRange =
      wholeDays >= static_cast<double>(kFirstDay) && wholeDays <= static_cast<double>(kLastDay);
  if (!isInRange) return std::nullopt;
  const double timeOfDay = std::abs(date - wholeDays) * static_cast<double>(kMillisecondsPerDay);
  const Moment moment = withinDay({static_cast<std::int64_t>(wholeDays), std::llround(timeOfDay)});

  const bool showsDay = shape != DateShape::time || moment.day != 0;
  const bool showsTime = shape != DateShape::date || moment.millisecond != 0;
  std::string text;
  if (showsDay) appendDay(&text, moment.day);
  if (showsDay && showsTime) text.push_back(' ');
  if (showsTime) appendTime(&text, moment.millisecond);
  return text;
}

}  // namespace store
