#include "platform/store/odbc/sources/row_text.h"

#include <utility>

namespace store {

namespace {

bool endsValue(char sign) {
  return sign == ',' || sign == ')';
}

}  // namespace

std::string asRowText(const std::string& list) {
  return "ROW(" + list + ")::text";
}

bool RowTextReader::enterRow() {
  if (!rest_.starts_with('(')) return false;
  rest_.remove_prefix(1);
  isFirst_ = true;
  return true;
}

bool RowTextReader::leaveRow() {
  if (!rest_.starts_with(')')) return false;
  rest_.remove_prefix(1);
  return true;
}

bool RowTextReader::takeValue(std::optional<std::string_view>* value) {
  if (!std::exchange(isFirst_, false)) {
    if (!rest_.starts_with(',')) return false;
    rest_.remove_prefix(1);
  }
  std::size_t place = 0;
  for (; place < rest_.size() && !endsValue(rest_[place]); ++place) {
    if (rest_[place] == '"') return takeQuotedValue(value);
  }
  if (place == rest_.size()) return false;
  if (place == 0) {
    value->reset();
  } else {
    *value = rest_.substr(0, place);
  }
  rest_.remove_prefix(place);
  return true;
}

bool RowTextReader::takeQuotedValue(std::optional<std::string_view>* value) {
  // Mostly the quotes stand around all of it, and nothing in it is doubled.
  const std::size_t end = rest_.starts_with('"') ? rest_.find('"', 1) : std::string_view::npos;
  const bool isWhole = end != std::string_view::npos && end + 1 < rest_.size() && endsValue(rest_[end + 1]);
  if (isWhole && rest_.substr(1, end - 1).find('\\') == std::string_view::npos) {
    *value = rest_.substr(1, end - 1);
    rest_.remove_prefix(end + 1);
    return true;
  }
  unquoted_.clear();
  bool isQuoted = false;
  std::size_t copied = 0;
  std::size_t place = 0;
  for (; place < rest_.size(); ++place) {
    const char sign = rest_[place];
    if (!isQuoted && endsValue(sign)) break;
    if (sign != '"' && sign != '\\') continue;
    const bool isDoubled = isQuoted && place + 1 < rest_.size() && rest_[place + 1] == sign;
    if (!isDoubled && sign == '\\') continue;
    // Of two signs the first goes with what stands in front of them.
    unquoted_.append(rest_, copied, place + (isDoubled ? 1 : 0) - copied);
    if (isDoubled) {
      ++place;
    } else {
      isQuoted = !isQuoted;
    }
    copied = place + 1;
  }
  if (place == rest_.size()) return false;
  unquoted_.append(rest_, copied, place - copied);
  rest_.remove_prefix(place);
  *value = unquoted_;
  return true;
}

bool readRowText(std::string_view text, std::size_t count, AnswerRow* row) {
  RowTextReader reader(text);
  if (!reader.enterRow()) return false;
  AnswerRow values(count);
  for (std::optional<std::string>& value : values) {
    std::optional<std::string_view> taken;
    if (!reader.takeValue(&taken)) return false;
    if (taken) value.emplace(*taken);
  }
  if (!reader.leaveRow() || !reader.isAtEnd()) return false;
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
