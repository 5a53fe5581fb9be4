#pragma once

#include <cstdint>
#include <string_view>

#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

/// Finds the type that a column of a new table is to have, from all of its values: anything but Text only if
/// each of them comes out of such a column as it went in.
class ColumnGuess {
 public:
  void look(const Field& field) {
    if (isSettled_) return;
    if (field.form == FieldForm::missing || (field.form == FieldForm::bare && field.text.empty())) return;
    lookAtValue(field);
  }

  /// "Integer", "Bigint", "Float", "Bit", "Date", "Datetime" or "Text".
  std::string_view declaredType() const;
  /// Whether anything was seen that is more than a text.
  bool isTyped() const { return hasValue_ && !isSettled_; }

 private:
  void lookAtValue(const Field& field);
  void lookAtBare(std::string_view text);
  void lookAtInteger();
  void lookAtNumber(std::string_view text);
  void lookAtDate(std::string_view text);

  bool isSettled_ = false;  // it can be nothing but a text
  bool hasValue_ = false;
  bool canBeInteger_ = true;
  bool canBeReal_ = true;
  bool canBeBoolean_ = true;
  bool canBeDate_ = true;
  bool hasTime_ = false;
  bool isLarge_ = false;  // more than 32 bits
};

}  // namespace store::exchange
