#include "platform/store/engine/iso_date.h"

#include <cmath>
#include <cstdint>

namespace store {
namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::int64_t kMillisecondsPerMinute = 60 * kMillisecondsPerSecond;
constexpr std::int64_t kMillisecondsPerHour = 60 * kMillisecondsPerMinute;
constexpr std::int64_t kMillisecondsPerDay = 24 * kMillisecondsPerHour;

struct CivilDay {
  int year;
  int month;
  int day;
};

// Both conversions count years from March, so that the leap day is the last one of its year, and in
// cycles of 400 years, after which the Gregorian calendar repeats. Years are positive throughout.
constexpr std::int64_t kDaysPer4Years = 1461;
constexpr std::int64_t kDaysPer100Years = 36524;
constexpr std::int64_t kDaysPer400Years = 146097;

/// Days since 1 March of the year 0.
constexpr std::int64_t dayNumberOf(const CivilDay& date) {
  const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
  const std::int64_t month = date.month > 2 ? date.month - 3 : date.month + 9;
  return year * 365 + year / 4 - year / 100 + year / 400 + (153 * month + 2) / 5 + date.day - 1;
}

constexpr CivilDay civilDayOf(std::int64_t dayNumber) {
  const std::int64_t cycle = dayNumber / kDaysPer400Years;
  const std::int64_t dayOfCycle = dayNumber % kDaysPer400Years;
  const std::int64_t leapDays =
      dayOfCycle / (kDaysPer4Years - 1) - dayOfCycle / kDaysPer100Years + dayOfCycle / (kDaysPer400Years - 1);
  const std::int64_t yearOfCycle = (dayOfCycle - leapDays) / 365;
  const std::int64_t dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  const std::int64_t day = dayOfYear - (153 * month + 2) / 5 + 1;
  const std::int64_t year = cycle * 400 + yearOfCycle + (month < 10 ? 0 : 1);
  return {static_cast<int>(year), static_cast<int>(month < 10 ? month + 3 : month - 9),
          static_cast<int>(day)};
}

constexpr std::int64_t kEpoch = dayNumberOf({1899, 12, 30});
constexpr std::int64_t kFirstDay = dayNumberOf({100, 1, 1}) - kEpoch;
constexpr std::int64_t kLastDay = dayNumberOf({9999, 12, 31}) - kEpoch;
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

int dayCountOf(int year, int month) {
  if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
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
    CivilDay date{};
    if (!readNumber(4, &date.year) || !skip('-') || !readNumber(2, &date.month) || !skip('-') ||
        !readNumber(2, &date.day))
      return false;
    if (date.year < 100 || date.month < 1 || date.month > 12) return false;
    if (date.day < 1 || date.day > dayCountOf(date.year, date.month)) return false;
    *day = dayNumberOf(date) - kEpoch;
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
  const CivilDay date = civilDayOf(day + kEpoch);
  appendNumber(text, date.year, 4);
  text->push_back('-');
  appendNumber(text, date.month, 2);
  text->push_back('-');
  appendNumber(text, date.day, 2);
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
