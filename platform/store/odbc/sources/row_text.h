#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/store/odbc/driver/answer.h"

namespace store {

/// A row that the server sends as one text, as it writes a row's value: "(1,\"two words\",)". A driver hands
/// out each value by a call of its own, and needs as long for a short one as for a whole row.

/// What is selected instead of the expressions in `list`, which are parted by commas.
std::string asRowText(const std::string& list);

/// Goes through the values of such texts that stand one behind the other.
class RowTextReader {
 public:
  /// `text` outlives the reader.
  explicit RowTextReader(std::string_view text = {}) : rest_(text) {}

  bool isAtEnd() const { return rest_.empty(); }
  /// Goes on with another text.
  void begin(std::string_view text) { rest_ = text; }

  /// Goes to the first value of the next row, and behind the last one of this. False, and nothing more can be
  /// read, where no row begins or ends.
  bool enterRow();
  bool leaveRow();
  /// Takes the next value of the row; nothing is null. It holds until the next one is taken. False, and
  /// nothing more can be read, where no value ends.
  bool takeValue(std::optional<std::string_view>* value);

 private:
  bool takeQuotedValue(std::optional<std::string_view>* value);

  std::string_view rest_;
  bool isFirst_ = false;
  std::string unquoted_;
};

/// Parts a text of that kind into its `count` values; nothing is null. False, and `*row` is untouched, for
/// any other text.
bool readRowText(std::string_view text, std::size_t count, AnswerRow* row);

/// Replaces a row of an answer, which has one such text, by the values in it.
Status partRowText(std::size_t count, AnswerRow* row);

/// The same for each row of an answer.
Status partRowTexts(std::size_t count, Answer* answer);

}  // namespace store
