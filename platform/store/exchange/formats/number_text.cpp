#include "platform/store/exchange/formats/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace store::exchange {

namespace {

constexpr double kLeastFixed = 1e-5;
constexpr double kMostFixed = 1e16;
// So many significant digits come back from any double.
constexpr std::size_t kSureDigits = 15;
// As SQLite itself writes infinity in statements.
constexpr std::string_view kInfinity = "9e999";
constexpr std::string_view kMinusInfinity = "-9e999";

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Digits with at most one point among them, as RealText writes what a double surely holds. Much quicker to
/// tell than by reading and writing the number.
bool isSurelyPlain(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  if (whole.empty() || whole.size() > kSureDigits) return false;
  for (const char character : whole) {
    if (!isDigit(character)) return false;
  }
  const bool startsWithZero = whole.front() == '0';
  if (startsWithZero && whole.size() > 1) return false;
  if (point == std::string_view::npos) return !startsWithZero;
  const std::string_view fraction = text.substr(point + 1);
  if (fraction.empty() || fraction.size() + whole.size() > kSureDigits || fraction.back() == '0')
    return false;
  for (const char character : fraction) {
    if (!isDigit(character)) return false;
  }
  // Small ones have an exponent.
  return !startsWithZero || fraction.substr(0, 4).find_first_not_of('0') != std::string_view::npos;
}

struct Decimal {
  bool isNegative = false;
  std::string digits;  // without zeros at the ends
  std::int64_t exponent = 0;
  bool operator==(const Decimal&) const = default;
};

std::optional<Decimal> readDecimal(std::string_view text) {
  Decimal decimal;
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) decimal.isNegative = text[at++] == '-';
  bool hasDigit = false;
  bool hasPoint = false;
  for (; at < text.size() && (isDigit(text[at]) || (text[at] == '.' && !hasPoint)); ++at) {
    if (text[at] == '.') {
      hasPoint = true;
      continue;
    }
    hasDigit = true;
    if (hasPoint) --decimal.exponent;
    if (text[at] != '0' || !decimal.digits.empty()) decimal.digits += text[at];
  }
  if (!hasDigit) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && text[at] == '+') ++at;
    int exponent = 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), exponent);
    if (error != std::errc()) return std::nullopt;
    decimal.exponent += exponent;
    at = static_cast<std::size_t>(end - text.data());
  }
  if (at != text.size()) return std::nullopt;
  while (!decimal.digits.empty() && decimal.digits.back() == '0') {
    decimal.digits.pop_back();
    ++decimal.exponent;
  }
  if (decimal.digits.empty()) decimal = {};
  return decimal;
}

std::optional<double> parsed(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty() || text.front() == '+') return std::nullopt;
  if (text == kInfinity) return std::numeric_limits<double>::infinity();
  if (text == kMinusInfinity) return -std::numeric_limits<double>::infinity();
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || std::isnan(value)) return std::nullopt;
  return value;
}

/// Of fractions and powers, programs write so many digits to have the very same double back.
constexpr std::size_t kMostMeantDigits = 17;

/// How many digits there are from the first that is not zero up to the exponent.
std::size_t significantDigits(std::string_view text) {
  text = text.substr(0, text.find_first_of("eE"));
  const std::size_t first = text.find_first_of("123456789");
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first);
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isDigit));
}

}  // namespace

std::optional<std::int64_t> readPlainInteger(std::string_view text) {
  if (text.empty()) return std::nullopt;
  const std::string_view digits = text.front() == '-' ? text.substr(1) : text;
  if (digits.empty() || !isDigit(digits.front())) return std::nullopt;
  if (digits.front() == '0' && text.size() > 1) return std::nullopt;
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

RealText::RealText(double value) {
  if (std::isinf(value)) {
    const std::string_view text = value > 0 ? kInfinity : kMinusInfinity;
    length_ = text.copy(text_.data(), text.size());
    return;
  }
  const double size = std::abs(value);
  const bool isFixed = (size >= kLeastFixed && size < kMostFixed) || size == 0;
  const auto [end, error] = std::to_chars(text_.data(), text_.data() + text_.size(), value,
                                          isFixed ? std::chars_format::fixed : std::chars_format::scientific);
  length_ = error == std::errc() ? static_cast<std::size_t>(end - text_.data()) : 0;
}

std::optional<double> readPlainReal(std::string_view text) {
  const bool isPlain = isSurelyPlain(text);
  if (!isPlain && (text.empty() || !isDigit(text.back()) || text == "-0")) return std::nullopt;
  const std::optional<double> value = parsed(text);
  if (!value || (!isPlain && RealText(*value) != text)) return std::nullopt;
  return value;
}

std::optional<std::int64_t> readInteger(std::string_view text) {
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> readReal(std::string_view text) {
  const std::optional<double> value = parsed(text);
  const bool isWhole = text.find_first_of(".eEnN") == std::string_view::npos;
  const std::size_t sureDigits = isWhole ? kSureDigits : kMostMeantDigits;
  if (value && significantDigits(text) > sureDigits && !isSameDecimal(text, *value)) return std::nullopt;
  return value;
}

bool isSameDecimal(std::string_view text, double real) {
  const std::optional<Decimal> decimal = readDecimal(text);
  return decimal && decimal == readDecimal(RealText(real));
}

bool looksNumeric(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
  if (first == std::string_view::npos) return false;
  text = text.substr(first, text.find_last_not_of(" \t\n\v\f\r") - first + 1);
  return readDecimal(text).has_value();
}

}  // namespace store::exchange
