#include "platform/store/sql/local_date.h"

#include <cstddef>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {
namespace {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Two digits of a year stand for 1930 to 2029, as in the system's own conversion of texts to dates.
constexpr int kFirstShortYear = 30;

/// Reads a date text from the left to the right.
class LocalDateReader {
 public:
  LocalDateReader(std::string_view text, DateOrder order, DateShape shape)
      : text_(text), order_(order), shape_(shape) {}

  /// The date in ISO 8601, or nothing when the text has none of the forms or the day does not exist.
  std::optional<std::string> read();

 private:
  struct Number {
    int value = 0;
    std::size_t digitCount = 0;
  };

  char peek() const { return text_.empty() ? '\0' : text_.front(); }
  bool skip(char c);
  bool skipBlanks();
  Number readNumber();
  bool readDate();
  bool readTime();
  bool readHalfOfDay();

  std::string_view text_;  // what is not read yet
  DateOrder order_;
  DateShape shape_;
  int year_ = 0;
  int month_ = 0;
  int day_ = 0;
  int hour_ = 0;
  int minute_ = 0;
  int second_ = 0;
};

std::string padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

std::optional<std::string> LocalDateReader::read() {
  if (!readDate()) return std::nullopt;
  std::string iso = padded(year_, 4) + '-' + padded(month_, 2) + '-' + padded(day_, 2);
  if (!text_.empty()) {
    if (!skipBlanks() || !readTime()) return std::nullopt;
  }
  if (shape_ == DateShape::dateTime || hour_ != 0 || minute_ != 0 || second_ != 0) {
    iso += ' ' + padded(hour_, 2) + ':' + padded(minute_, 2) + ':' + padded(second_, 2);
  }
  if (!parseIsoDate(iso)) return std::nullopt;
  return iso;
}

bool LocalDateReader::skip(char c) {
  if (peek() != c) return false;
  text_.remove_prefix(1);
  return true;
}

bool LocalDateReader::skipBlanks() {
  const std::size_t before = text_.size();
  while (skip(' ')) {
  }
  return text_.size() != before;
}

/// Reads at most four digits; a fifth is left to be in the way of what must follow.
LocalDateReader::Number LocalDateReader::readNumber() {
  Number number;
  while (isDigit(peek()) && number.digitCount < 4) {
    number.value = number.value * 10 + (peek() - '0');
    ++number.digitCount;
    text_.remove_prefix(1);
  }
  return number;
}

bool LocalDateReader::readDate() {
  const Number first = readNumber();
  const char separator = peek();
  if (separator != '/' && separator != '.' && separator != '-') return false;
  text_.remove_prefix(1);
  const Number second = readNumber();
  if (!skip(separator)) return false;
  const Number third = readNumber();

  const bool yearIsFirst = first.digitCount == 4 || order_ == DateOrder::yearMonthDay;
  if (yearIsFirst && separator == '.' && order_ != DateOrder::yearMonthDay) return false;
  const bool monthIsFirst = !yearIsFirst && order_ == DateOrder::monthDayYear;
  const Number& year = yearIsFirst ? first : third;
  const Number& month = yearIsFirst || !monthIsFirst ? second : first;
  const Number& day = yearIsFirst ? third : monthIsFirst ? second : first;
  const auto isShort = [](const Number& number) { return number.digitCount == 1 || number.digitCount == 2; };
  if ((year.digitCount != 4 && year.digitCount != 2) || !isShort(month) || !isShort(day)) return false;
  year_ = year.digitCount == 4 ? year.value : year.value + (year.value < kFirstShortYear ? 2000 : 1900);
  month_ = month.value;
  day_ = day.value;
  return true;
}

/// Reads the rest of the text.
bool LocalDateReader::readTime() {
  const Number hour = readNumber();
  if (hour.digitCount == 0 || hour.digitCount > 2 || !skip(':')) return false;
  const Number minute = readNumber();
  if (minute.digitCount != 2) return false;
  Number second;
  if (skip(':')) {
    second = readNumber();
    if (second.digitCount != 2) return false;
  }
  hour_ = hour.value;
  minute_ = minute.value;
  second_ = second.value;
  return readHalfOfDay();
}

bool LocalDateReader::readHalfOfDay() {
  skipBlanks();
  const bool isAfternoon = equalsIgnoringCase(text_, "PM");
  if (!isAfternoon && !equalsIgnoringCase(text_, "AM")) return text_.empty();
  text_ = {};
  if (hour_ < 1 || hour_ > 12) return false;
  hour_ = hour_ % 12 + (isAfternoon ? 12 : 0);
  return true;
}

}  // namespace

std::optional<std::string> isoOfLocalDate(std::string_view text, DateOrder order, DateShape shape) {
  return LocalDateReader(text, order, shape).read();
}

}  // namespace store
