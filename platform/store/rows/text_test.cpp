#include "platform/store/rows/text_test.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace store {
namespace {

constexpr std::u16string_view kDigits = u"0123456789";

/// The longest double: a sign, 309 digits, the point and six decimals.
constexpr std::size_t kLongestDouble = 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6;

/// Of so many bytes the user sees the pairs of digits.
constexpr std::size_t kMostShownByteCount = 256;
constexpr std::u16string_view kBytesSigns = u"ABCDEF \u2026(bytes)";

/// The text by which the user knows bytes: pairs of hexadecimal digits with blanks between them; of many the
/// first pairs, an ellipsis and how many they are.
std::string textOfBytes(std::string_view bytes) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes.substr(0, kMostShownByteCount)) {
    const auto value = static_cast<unsigned char>(byte);
    if (!text.empty()) text += ' ';
    text += kHexDigits[value >> 4];
    text += kHexDigits[value & 15];
  }
  if (bytes.size() > kMostShownByteCount) text += " \u2026 (" + std::to_string(bytes.size()) + " bytes)";
  return text;
}

/// Whether a double holds the number exactly. In a column of doubles it is shown as one then.
bool isExactReal(std::int64_t number) {
  constexpr std::int64_t kMostExact = std::int64_t{1} << 53;
  return number >= -kMostExact && number <= kMostExact;
}

}  // namespace

// The flags spare numbers the making of a text in which the needle can't occur, because it has a unit
// that none of those texts is made of. Most texts that are looked for have a letter.
TextTest::TextTest(const std::vector<Column>& all, std::vector<std::size_t> columns, TextNeedle needle,
                   ValueTexts& texts)
    : columns_(std::move(columns)),
      needle_(std::move(needle)),
      texts_(texts),
      fitsInteger_(!texts.writesPlainIntegers() || canOccurIn(u"-")),
      fitsDecimal_(canOccurIn(u"-.")),
      fitsInfinite_(canOccurIn(u"-infa")),
      fitsSystemsNumber_(canOccurIn(texts.numberSigns())),
      fitsBytes_(canOccurIn(kBytesSigns)) {
  for (const std::size_t column : columns_) types_.push_back(all[column].type);
}

/// The longest run of ASCII: a unit of ASCII may stand for another one in a text, but not in one of ASCII
/// alone.
std::optional<SoughtText> TextTest::soughtText() const {
  SoughtText sought{.ascii = {}, .anyLetterCase = needle_.ignoresCase()};
  std::string run;
  for (const char16_t unit : needle_.units()) {
    if (unit < 0x80) {
      run += static_cast<char>(unit);
    } else {
      run.clear();
    }
    if (run.size() > sought.ascii.size()) sought.ascii = run;
  }
  return sought;
}

bool TextTest::canOccurIn(std::u16string_view signs) const {
  for (const char16_t unit : needle_.units()) {
    bool isFound = false;
    for (const std::u16string_view units : {kDigits, signs}) {
      for (const char16_t sign : units) isFound |= needle_.folded(sign) == unit;
    }
    if (!isFound) return false;
  }
  return true;
}

bool TextTest::ignores(std::size_t number, CellKind kind) const noexcept {
  const bool isReal = types_[number].code == TypeCode::real;
  switch (kind) {
    case CellKind::null:
      return !needle_.isEmpty();
    case CellKind::integer:  // small ones are shown as doubles in a column of these
      return !fitsInteger_ && !(isReal && fitsDecimal_);
    case CellKind::real:
      return !fitsInfinite_ && !(isReal ? fitsDecimal_ : fitsSystemsNumber_);
    default:
      return false;
  }
}

bool TextTest::isWanted(std::size_t number, const Cell& cell) noexcept {
  switch (cell.kind) {
    case CellKind::null:
      return needle_.isEmpty();
    case CellKind::text:
      return needle_.occursIn(cell.bytes);
    case CellKind::blob:
      return occursInBytes(cell.bytes);
    case CellKind::integer:
      return occursInInteger(cell.integer, types_[number]);
    case CellKind::real:
      return occursInReal(cell.real, types_[number]);
  }
  return true;
}

bool TextTest::occursInBytes(std::string_view bytes) noexcept {
  if (!fitsBytes_) return false;
  try {
    return needle_.occursIn(textOfBytes(bytes));
  } catch (...) {
    return true;  // who looks at the row itself will see
  }
}

bool TextTest::occursInInteger(std::int64_t integer, const FieldType& type) noexcept {
  if (type.code == TypeCode::real && isExactReal(integer)) {
    return occursInReal(static_cast<double>(integer), type);
  }
  if (!fitsInteger_) return false;
  if (!texts_.writesPlainIntegers()) {
    return occursInSystemsText({.kind = CellKind::integer, .integer = integer, .bytes = {}}, type);
  }
  std::array<char, std::numeric_limits<std::int64_t>::digits10 + 2> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), integer).ptr;
  return needle_.occursIn({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

bool TextTest::occursInReal(double real, const FieldType& type) noexcept {
  // What is not finite has the same text everywhere, a word.
  const bool isFinite = std::isfinite(real);
  if (isFinite && type.code != TypeCode::real) {
    return fitsSystemsNumber_ &&
           occursInSystemsText({.kind = CellKind::real, .real = real, .bytes = {}}, type);
  }
  if (isFinite && !fitsDecimal_) return false;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): as much as is written is read
  std::array<char, kLongestDouble> digits;
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), real, std::chars_format::fixed, 6).ptr;
  return needle_.occursIn({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

bool TextTest::occursInSystemsText(const Cell& cell, const FieldType& type) noexcept {
  try {
    return texts_.textOf(cell, type, &text_) ? needle_.occursInUnits(text_) : needle_.isEmpty();
  } catch (...) {
    return true;  // who looks at the row itself will see
  }
}

}  // namespace store
