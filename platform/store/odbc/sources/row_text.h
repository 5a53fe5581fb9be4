#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/store/odbc/driver/answer.h"

namespace store {

/// A row that the server sends as one text, as it writes a row's value: "(1,\"two words\",)". A driver hands
/// out each value by a call of its own, and needs as long for a short one as for a whole row.

/// What is selected instead of the expressions in `list`, which are parted by commas.
std::string asRowText(const std::string& list);

/// Parts a text of that kind into its `count` values; nothing is null. False, and `*row` is untouched, for
/// any other text.
bool readRowText(std::string_view text, std::size_t count, AnswerRow* row);

/// Replaces a row of an answer, which has one such text, by the values in it.
Status partRowText(std::size_t count, AnswerRow* row);

/// The same for each row of an answer.
Status partRowTexts(std::size_t count, Answer* answer);

}  // namespace store
