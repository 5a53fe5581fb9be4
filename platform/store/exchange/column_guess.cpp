#include "platform/store/exchange/column_guess.h"

#include <limits>

#include "platform/store/exchange/formats/number_text.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

constexpr std::size_t kDayLength = 10;
constexpr std::size_t kSureDigits = 15;

}  // namespace

void ColumnGuess::lookAtValue(const Field& field) {
  hasValue_ = true;
  switch (field.form) {
    case FieldForm::bare:
      lookAtBare(field.text);
      break;
    case FieldForm::number:
      canBeBoolean_ = canBeDate_ = false;
      lookAtNumber(field.text);
      break;
    case FieldForm::word:
      canBeInteger_ = canBeReal_ = canBeDate_ = false;
      break;
    case FieldForm::string:
      canBeInteger_ = canBeReal_ = canBeBoolean_ = false;
      lookAtDate(field.text);
      break;
    default:
      canBeInteger_ = canBeReal_ = canBeBoolean_ = canBeDate_ = false;
  }
  isSettled_ = !canBeInteger_ && !canBeReal_ && !canBeBoolean_ && !canBeDate_;
}

void ColumnGuess::lookAtBare(std::string_view text) {
  if (canBeInteger_ || canBeReal_) {
    if (const std::optional<std::int64_t> value = readPlainInteger(text)) {
      using Limits = std::numeric_limits<std::int32_t>;
      isLarge_ |= *value < Limits::min() || *value > Limits::max();
      // A double holds it for certain.
      if (text.size() <= kSureDigits) return lookAtInteger();
    } else {
      canBeInteger_ = false;
    }
    if (canBeReal_ && !readPlainReal(text)) canBeReal_ = false;
  }
  if (canBeBoolean_) canBeBoolean_ = equalsIgnoringCase(text, "true") || equalsIgnoringCase(text, "false");
  if (canBeDate_) lookAtDate(text);
}

void ColumnGuess::lookAtInteger() {
  canBeBoolean_ = canBeDate_ = false;
}

void ColumnGuess::lookAtNumber(std::string_view text) {
  if (const std::optional<std::int64_t> value = readPlainInteger(text)) {
    using Limits = std::numeric_limits<std::int32_t>;
    isLarge_ |= *value < Limits::min() || *value > Limits::max();
  } else {
    canBeInteger_ = false;
  }
  if (!canBeReal_) return;
  // A number that is told to be one may be written in several ways.
  const std::optional<double> value = readReal(text);
  canBeReal_ = value && isSameDecimal(text, *value);
}

void ColumnGuess::lookAtDate(std::string_view text) {
  if (!canBeDate_) return;
  const bool isDay = text.size() >= kDayLength && text[4] == '-' && parseIsoDate(text);
  canBeDate_ = isDay;
  hasTime_ |= isDay && text.size() > kDayLength;
}

std::string_view ColumnGuess::declaredType() const {
  if (!hasValue_ || isSettled_) return "Text";
  if (canBeInteger_) return isLarge_ ? "Bigint" : "Integer";
  if (canBeReal_) return "Float";
  if (canBeBoolean_) return "Bit";
  return hasTime_ ? "Datetime" : "Date";
}

}  // namespace store::exchange
