#include "platform/store/odbc/sources/row_text.h"

#include <utility>

namespace store {

namespace {

/// Takes the value in front of `*text`, up to the sign that ends it. False when none does.
bool takeValue(std::string_view* text, std::optional<std::string>* value) {
  const bool isNull = text->starts_with(',') || text->starts_with(')');
  value->reset();
  if (isNull) return true;
  std::string& taken = value->emplace();
  bool isQuoted = false;
  std::size_t place = 0;
  for (; place < text->size(); ++place) {
    const char sign = (*text)[place];
    const bool isDoubled =
        (sign == '"' || sign == '\\') && isQuoted && place + 1 < text->size() && (*text)[place + 1] == sign;
    if (isDoubled) {
      taken += sign;
      ++place;
    } else if (sign == '"') {
      isQuoted = !isQuoted;
    } else if (!isQuoted && (sign == ',' || sign == ')')) {
      break;
    } else {
      taken += sign;
    }
  }
  const bool isEnded = place < text->size();
  text->remove_prefix(place);
  return isEnded;
}

}  // namespace

std::string asRowText(const std::string& list) {
  return "ROW(" + list + ")::text";
}

bool readRowText(std::string_view text, std::size_t count, AnswerRow* row) {
  if (!text.starts_with('(')) return false;
  text.remove_prefix(1);
  AnswerRow values(count);
  for (std::size_t index = 0; index < count; ++index) {
    if (!takeValue(&text, &values[index])) return false;
    if (text.front() != (index + 1 < count ? ',' : ')')) return false;
    text.remove_prefix(1);
  }
  if (!text.empty()) return false;
  *row = std::move(values);
  return true;
}

Status partRowText(std::size_t count, AnswerRow* row) {
  if (row->size() == 1 && row->front() && readRowText(*row->front(), count, row)) return {};
  return {ErrorCode::inputOutput, "The server's answer can't be read."};
}

Status partRowTexts(std::size_t count, Answer* answer) {
  for (AnswerRow& row : *answer) {
    if (Status status = partRowText(count, &row); !status) return status;
  }
  return {};
}

}  // namespace store
