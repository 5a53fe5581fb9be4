#include "platform/store/exchange/formats/value_reading.h"

#include "platform/store/exchange/formats/number_text.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

Cell integerCell(std::int64_t value) {
  Cell cell;
  cell.kind = CellKind::integer;
  cell.integer = value;
  return cell;
}

Cell realCell(double value) {
  Cell cell;
  cell.kind = CellKind::real;
  cell.real = value;
  return cell;
}

Cell bytesCell(CellKind kind, std::string_view bytes) {
  Cell cell;
  cell.kind = kind;
  cell.bytes = bytes;
  return cell;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

int valueOfDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

bool readHex(std::string_view text, std::string* bytes) {
  if (text.size() % 2 != 0) return false;
  bytes->clear();
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const int high = valueOfDigit(text[at]);
    const int low = valueOfDigit(text[at + 1]);
    if (high < 0 || low < 0) return false;
    bytes->push_back(static_cast<char>(high << 4 | low));
  }
  return true;
}

/// What stands between the quotes of x'...'; false when it is no such text.
bool isBlobLiteral(std::string_view text, std::string_view* digits) {
  if (text.size() < 3 || (text[0] != 'x' && text[0] != 'X') || text[1] != '\'' || text.back() != '\'')
    return false;
  *digits = text.substr(2, text.size() - 3);
  return true;
}

const char* readInteger(std::string_view text, Cell* cell) {
  const std::optional<std::int64_t> value = exchange::readInteger(text);
  if (!value) return "is no whole number that the column holds";
  *cell = integerCell(*value);
  return nullptr;
}

const char* readReal(std::string_view text, bool keepsIntegers, Cell* cell) {
  if (keepsIntegers) {
    if (const std::optional<std::int64_t> whole = exchange::readInteger(text)) {
      *cell = integerCell(*whole);
      return nullptr;
    }
  }
  const std::optional<double> value = exchange::readReal(text);
  if (!value) return "is no number that the column holds";
  *cell = realCell(*value);
  return nullptr;
}

const char* readBoolean(std::string_view text, Cell* cell) {
  struct Word {
    std::string_view text;
    std::int64_t value;
  };
  // The single letters are PostgreSQL's.
  static constexpr Word kWords[] = {{"true", 1}, {"false", 0}, {"yes", 1}, {"no", 0}, {"t", 1}, {"f", 0}};
  for (const Word& word : kWords) {
    if (!equalsIgnoringCase(text, word.text)) continue;
    *cell = integerCell(word.value);
    return nullptr;
  }
  const std::optional<std::int64_t> value = exchange::readInteger(text);
  if (!value) return "is neither true nor false";
  *cell = integerCell(*value);
  return nullptr;
}

const char* readDate(std::string_view text, std::string* scratch, Cell* cell) {
  if (parseIsoDate(text)) {
    *cell = bytesCell(CellKind::text, text);
    return nullptr;
  }
  // The year in front leaves no doubt which number is the month.
  if (text.size() >= 10 && text[4] == '/' && text[7] == '/') {
    *scratch = text;
    (*scratch)[4] = (*scratch)[7] = '-';
    if (parseIsoDate(*scratch)) {
      *cell = bytesCell(CellKind::text, *scratch);
      return nullptr;
    }
  }
  return "is no date of the form 2001-03-09 or 2001-03-09 14:05:07";
}

/// What stands in the quotes of CAST(x'...' AS TEXT); false when it is no such text.
bool isTextLiteral(std::string_view text, std::string_view* digits) {
  constexpr std::string_view kStart = "CAST(";
  constexpr std::string_view kEnd = " AS TEXT)";
  if (!text.starts_with(kStart) || !text.ends_with(kEnd) || text.size() < kStart.size() + kEnd.size())
    return false;
  return isBlobLiteral(text.substr(kStart.size(), text.size() - kStart.size() - kEnd.size()), digits);
}

const char* readBytes(std::string_view text, std::string* scratch, Cell* cell) {
  std::string_view digits = text;
  // As PostgreSQL writes them.
  if (text.starts_with("\\x")) {
    digits.remove_prefix(2);
  } else {
    isBlobLiteral(text, &digits);
  }
  if (!readHex(digits, scratch)) return "is no row of pairs of hexadecimal digits";
  *cell = bytesCell(CellKind::blob, *scratch);
  return nullptr;
}

/// A value without quotes is what it looks like, if it comes out the same.
void readAny(const Field& field, std::string* scratch, Cell* cell) {
  const std::string_view text = field.text;
  *cell = bytesCell(CellKind::text, text);
  if (field.form == FieldForm::quoted || field.form == FieldForm::string) return;
  if (field.form == FieldForm::word) {
    *cell = integerCell(text == "true" ? 1 : 0);
    return;
  }
  if (const std::optional<std::int64_t> whole = readPlainInteger(text)) {
    *cell = integerCell(*whole);
    return;
  }
  // Doubles that are whole numbers are told by their point.
  const bool hasPoint = text.ends_with(".0");
  const std::string_view number = hasPoint ? text.substr(0, text.size() - 2) : text;
  const std::optional<double> real = number == "-0" ? std::optional<double>(-0.0) : readPlainReal(number);
  const bool isReal = real && (hasPoint || number.find_first_of(".e") != std::string_view::npos);
  std::string_view digits;
  if (isReal) {
    *cell = realCell(*real);
  } else if (field.form == FieldForm::number) {
    const std::optional<double> value = exchange::readReal(text);
    if (value && isSameDecimal(text, *value)) *cell = realCell(*value);
  } else if (isBlobLiteral(text, &digits) && readHex(digits, scratch)) {
    *cell = bytesCell(CellKind::blob, *scratch);
  } else if (isTextLiteral(text, &digits) && readHex(digits, scratch)) {
    *cell = bytesCell(CellKind::text, *scratch);
  }
}

/// SQLite makes a number of it, and takes the one that is meant.
const char* readNumericText(std::string_view text, Cell* cell) {
  *cell = bytesCell(CellKind::text, text);
  if (!looksNumeric(text)) return nullptr;
  if (const std::optional<std::int64_t> integer = readPlainInteger(text)) {
    *cell = integerCell(*integer);
  } else if (const std::optional<double> real = readPlainReal(text)) {
    *cell = realCell(*real);
  } else {
    return "would become another number in a column of this type";
  }
  return nullptr;
}

}  // namespace

const char* readValue(const Field& field, ValueKind kind, std::string* scratch, Cell* cell) {
  *cell = Cell();
  if (field.form == FieldForm::missing) return nullptr;
  const bool isText = kind == ValueKind::text || kind == ValueKind::numericText || kind == ValueKind::any;
  if (field.form == FieldForm::bytes) {
    if (!isText && kind != ValueKind::bytes) return "is no value of the column's type";
    return readBytes(field.text, scratch, cell);
  }
  if (field.form == FieldForm::textBytes) {
    if (!isText || !readHex(field.text, scratch)) return "is no value of the column's type";
    *cell = bytesCell(CellKind::text, *scratch);
    return nullptr;
  }
  const std::string_view text = isText ? field.text : trimmed(field.text);
  if (!isText && text.empty()) return nullptr;
  switch (kind) {
    case ValueKind::text:
      *cell = bytesCell(CellKind::text, text);
      return nullptr;
    case ValueKind::numericText:
      return readNumericText(text, cell);
    case ValueKind::integer:
      return readInteger(text, cell);
    case ValueKind::real:
      return readReal(text, false, cell);
    case ValueKind::numeric:
      return readReal(text, true, cell);
    case ValueKind::boolean:
      return readBoolean(text, cell);
    case ValueKind::date:
      return readDate(text, scratch, cell);
    case ValueKind::bytes:
      return readBytes(text, scratch, cell);
    default:
      readAny(field, scratch, cell);
      return nullptr;
  }
}

}  // namespace store::exchange
