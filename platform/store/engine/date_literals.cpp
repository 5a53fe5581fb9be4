#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/store/engine/dialect.h"
#include "platform/store/engine/iso_date.h"
#include "platform/store/engine/sql_tokens.h"

namespace store {
namespace {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

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

  const bool yearIsFirst = first.digitCount == 4;
  if (yearIsFirst && separator == '.' && order_ != DateOrder::yearMonthDay) return false;
  if (!yearIsFirst && order_ == DateOrder::yearMonthDay) return false;
  const bool monthIsFirst = !yearIsFirst && order_ == DateOrder::monthDayYear;
  const Number& year = yearIsFirst ? first : third;
  const Number& month = yearIsFirst || !monthIsFirst ? second : first;
  const Number& day = yearIsFirst ? third : monthIsFirst ? second : first;
  const auto isShort = [](const Number& number) { return number.digitCount == 1 || number.digitCount == 2; };
  if (year.digitCount != 4 || !isShort(month) || !isShort(day)) return false;
  year_ = year.value;
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

/// A dot, or an operator that binds its operands more tightly than a comparison: the literal or column
/// beside it is a part of a larger value.
bool isTight(const Token& token) {
  if (token.kind == TokenKind::dot) return true;
  if (token.kind != TokenKind::op) return false;
  for (const std::string_view op : {"||", "+", "-", "*", "/", "%", "&", "|", "<<", ">>", "->", "->>"}) {
    if (token.text == op) return true;
  }
  return false;
}

bool isComparison(const Token& token) {
  if (token.kind != TokenKind::op) return false;
  for (const std::string_view op : {"=", "==", "<>", "!=", "<", "<=", ">", ">="}) {
    if (token.text == op) return true;
  }
  return false;
}

/// Finds the date literals of a statement that stand beside date columns.
class DateLiteralFinder {
 public:
  /// All arguments must outlive the object.
  DateLiteralFinder(const Tokens& tokens, const std::vector<std::string>& dateColumns, DateShape shape,
                    DateOrder order);

  struct Found {
    std::size_t index;  // of the token
    std::string iso;
  };
  std::vector<Found> find();

 private:
  struct Level {                 // of parentheses
    bool isDateList = false;     // column IN ( ... )
    bool isDateBetween = false;  // column BETWEEN was read and its AND was not
  };

  bool isDateName(const Token& token) const;
  bool isColumnEndingAt(std::size_t index) const;
  bool isColumnBeginningAt(std::size_t index) const;
  std::size_t endBeforeOperator(std::size_t index) const;
  std::size_t beginAfterOperator(std::size_t index) const;
  bool isLiteral(std::size_t index) const;
  bool isBesideColumn(std::size_t index) const;
  bool isWholeElement(std::size_t index) const;
  void readWord(std::size_t index);
  void readInsert(std::size_t into);
  void markValues(std::size_t values, const std::vector<bool>& isDatePosition);

  const Tokens& tokens_;
  DateShape shape_;
  DateOrder order_;
  std::unordered_set<std::string> dateNames_;  // in lower case
  std::vector<Level> levels_ = std::vector<Level>(1);
  std::size_t upperBound_;         // the token behind the AND of a BETWEEN on a date column
  std::vector<bool> isDateValue_;  // by token: an element of VALUES for a date column
};

DateLiteralFinder::DateLiteralFinder(const Tokens& tokens, const std::vector<std::string>& dateColumns,
                                     DateShape shape, DateOrder order)
    : tokens_(tokens),
      shape_(shape),
      order_(order),
      upperBound_(tokens.count()),
      isDateValue_(tokens.count()) {
  for (const std::string& column : dateColumns) dateNames_.insert(lowerCase(column));
}

std::vector<DateLiteralFinder::Found> DateLiteralFinder::find() {
  std::vector<Found> found;
  for (std::size_t i = 0; i < tokens_.count(); ++i) {
    const TokenKind kind = tokens_[i].kind;
    if (kind == TokenKind::open) {
      const std::size_t operand = isWord(tokens_[i - 2], "NOT") ? i - 3 : i - 2;
      const bool isList = isWord(tokens_[i - 1], "IN") && isColumnEndingAt(operand) &&
                          !isOneOfWords(tokens_[i + 1], {"SELECT", "WITH", "VALUES"});
      levels_.push_back({.isDateList = isList});
    } else if (kind == TokenKind::close) {
      if (levels_.size() > 1) levels_.pop_back();
    } else if (kind == TokenKind::word) {
      readWord(i);
    } else if (isLiteral(i) && isBesideColumn(i)) {
      const std::string_view text = tokens_[i].text;
      std::optional<std::string> iso =
          LocalDateReader(text.substr(1, text.size() - 2), order_, shape_).read();
      if (iso) found.push_back({.index = i, .iso = std::move(*iso)});
    }
  }
  return found;
}

void DateLiteralFinder::readWord(std::size_t index) {
  const Token& token = tokens_[index];
  bool& isDateBetween = levels_.back().isDateBetween;
  if (isWord(token, "BETWEEN")) {
    const std::size_t operand = isWord(tokens_[index - 1], "NOT") ? index - 2 : index - 1;
    isDateBetween = isColumnEndingAt(operand);
  } else if (isWord(token, "AND")) {
    if (isDateBetween) upperBound_ = index + 1;
    isDateBetween = false;
  } else if (token.depth == 0 && isWord(token, "INTO")) {
    readInsert(index);
  }
}

/// Double quotes that name nothing hold a string for SQLite.
bool DateLiteralFinder::isLiteral(std::size_t index) const {
  const Token& token = tokens_[index];
  return token.kind == TokenKind::string || (token.kind == TokenKind::name && token.text[0] == '"');
}

bool DateLiteralFinder::isBesideColumn(std::size_t index) const {
  const Token& before = tokens_[index - 1];
  const Token& after = tokens_[index + 1];
  if (isTight(before) || isTight(after)) return false;
  if (isColumnEndingAt(endBeforeOperator(index))) return true;
  if (isColumnBeginningAt(beginAfterOperator(index))) return true;
  if (isWord(before, "BETWEEN") && levels_.back().isDateBetween) return true;
  if (index == upperBound_) return true;
  return isWholeElement(index) && (levels_.back().isDateList || isDateValue_[index]);
}

/// Whether the token is all there is between two commas or parentheses.
bool DateLiteralFinder::isWholeElement(std::size_t index) const {
  const TokenKind before = tokens_[index - 1].kind;
  const TokenKind after = tokens_[index + 1].kind;
  return (before == TokenKind::open || before == TokenKind::comma) &&
         (after == TokenKind::close || after == TokenKind::comma);
}

bool DateLiteralFinder::isDateName(const Token& token) const {
  return isName(token) && dateNames_.contains(lowerCase(nameOf(token)));
}

bool DateLiteralFinder::isColumnEndingAt(std::size_t index) const {
  if (!isDateName(tokens_[index])) return false;
  while (tokens_[index - 1].kind == TokenKind::dot) index -= 2;
  return !isTight(tokens_[index - 1]);
}

bool DateLiteralFinder::isColumnBeginningAt(std::size_t index) const {
  while (tokens_[index + 1].kind == TokenKind::dot) index += 2;
  if (!isDateName(tokens_[index])) return false;
  const Token& after = tokens_[index + 1];
  return after.kind != TokenKind::open && !isTight(after);
}

/// The last token of the operand to the left of the operator that ends before `index`; the end token
/// when no comparison does.
std::size_t DateLiteralFinder::endBeforeOperator(std::size_t index) const {
  std::size_t last = index - 1;
  if (isComparison(tokens_[last])) return last - 1;
  if (isWord(tokens_[last], "FROM") && isWord(tokens_[last - 1], "DISTINCT")) last -= 2;
  if (isWord(tokens_[last], "NOT")) --last;
  return isWord(tokens_[last], "IS") ? last - 1 : tokens_.count();
}

/// The first token of the operand to the right of the operator behind `index`, likewise.
std::size_t DateLiteralFinder::beginAfterOperator(std::size_t index) const {
  std::size_t first = index + 1;
  if (isComparison(tokens_[first])) return first + 1;
  if (isWord(tokens_[first], "BETWEEN")) return first + 1;
  if (isWord(tokens_[first], "NOT") && isWord(tokens_[first + 1], "BETWEEN")) return first + 2;
  if (!isWord(tokens_[first], "IS")) return tokens_.count();
  ++first;
  if (isWord(tokens_[first], "NOT")) ++first;
  if (isWord(tokens_[first], "DISTINCT") && isWord(tokens_[first + 1], "FROM")) first += 2;
  return first;
}

/// Reads INSERT INTO table [AS alias] (columns) VALUES up to the values, and marks those of the date
/// columns. `into` is the index of INTO.
void DateLiteralFinder::readInsert(std::size_t into) {
  std::size_t i = into + 2;
  if (tokens_[i].kind == TokenKind::dot) i += 2;
  if (isWord(tokens_[i], "AS")) i += 2;
  if (tokens_[i].kind != TokenKind::open) return;
  std::vector<bool> isDatePosition;
  do {
    ++i;
    isDatePosition.push_back(isDateName(tokens_[i]));
    ++i;
  } while (tokens_[i].kind == TokenKind::comma);
  if (tokens_[i].kind == TokenKind::close && isWord(tokens_[i + 1], "VALUES")) {
    markValues(i + 1, isDatePosition);
  }
}

void DateLiteralFinder::markValues(std::size_t values, const std::vector<bool>& isDatePosition) {
  std::size_t position = 0;
  for (std::size_t i = values + 1; i < tokens_.count(); ++i) {
    const Token& token = tokens_[i];
    const bool isBetweenRows = token.depth <= 0;
    if (isBetweenRows && token.kind == TokenKind::open) position = 0;
    if (isBetweenRows && (token.kind == TokenKind::word || token.kind == TokenKind::semicolon)) return;
    if (token.depth != 1) continue;
    if (token.kind == TokenKind::comma) ++position;
    isDateValue_[i] = position < isDatePosition.size() && isDatePosition[position];
  }
}

}  // namespace

std::string withIsoDates(std::string_view sql, const std::vector<std::string>& dateColumns, DateShape shape,
                         DateOrder order) {
  if (dateColumns.empty()) return std::string(sql);
  const Tokens tokens(sql);
  std::string iso;
  iso.reserve(sql.size());
  std::size_t copied = 0;
  for (const DateLiteralFinder::Found& found : DateLiteralFinder(tokens, dateColumns, shape, order).find()) {
    const std::string_view literal = tokens[found.index].text;
    const auto begin = static_cast<std::size_t>(literal.data() - sql.data());
    iso.append(sql.substr(copied, begin - copied));
    iso.append("'").append(found.iso).append("'");
    copied = begin + literal.size();
  }
  iso.append(sql.substr(copied));
  return iso;
}

}  // namespace store
