#include "platform/store/sql/date_statement.h"

#include <algorithm>
#include <charconv>

#include "platform/store/sql/moments.h"

namespace store {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string graveName(const std::string& name) {
  std::string quoted = "`";
  for (const char c : name) quoted.append(c == '`' ? 2 : 1, c);
  return quoted + '`';
}

}  // namespace

bool isDateType(const std::optional<FieldType>& type) {
  return type && type->code == TypeCode::date && type->dateShape != DateShape::time;
}

std::string quotedText(const std::string& text) {
  return '\'' + text + '\'';
}

std::string DateStatement::textAt(std::size_t index) const {
  std::string text = unquoted(tokens_[index].text);
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

DateLiteral DateStatement::literalAt(std::size_t index) const {
  const std::string text = textAt(index);
  if (const std::optional<std::string> iso = isoOfLocalDate(text, order_, DateShape::dateTime)) {
    return {DateLiteral::Kind::moment, *iso};
  }
  if (parseIsoDate(text)) {
    const bool isTimeAlone = text[2] == ':';
    return isTimeAlone ? DateLiteral{} : DateLiteral{DateLiteral::Kind::moment, momentText(text)};
  }
  double number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end) return {};
  // Another form of ISO 8601, or a part of a date, which stands at the right place byte by byte.
  const auto digits = [&](std::size_t first, std::size_t count) {
    return std::all_of(text.data() + first, text.data() + first + count, isDigit);
  };
  const bool isIso = text.size() >= 7 && digits(0, 4) && text[4] == '-' && digits(5, 2) &&
                     (text.size() == 7 || text[7] == '-');
  if (isIso || tokens_[index].kind != TokenKind::string) return {};
  return {DateLiteral::Kind::unknown, {}};
}

std::optional<std::string> DateStatement::storedTextOf(std::size_t index, DateShape shape) const {
  return isoOfLocalDate(textAt(index), order_, shape);
}

Status DateStatement::notUnderstood(std::size_t index) const {
  return {ErrorCode::errorsInCommand, "The date " + std::string(tokens_[index].text) +
                                          " is not understood. Write it as 'yyyy-mm-dd' or 'yyyy/mm/dd'."};
}

Status DateStatement::isDate(const Operand& operand, bool* isDate) {
  std::string name;
  for (std::size_t i = operand.name.first; i <= operand.name.last; ++i) {
    // In grave accents a name never becomes a text, as it may in double quotes.
    name += tokens_[i].kind == TokenKind::dot ? "." : graveName(nameOf(tokens_[i]));
  }
  const std::size_t scope = scopes_.scopeAt(operand.name.first);
  const auto [place, isNew] = known_.try_emplace({scope, name});
  if (isNew) {
    if (Status status = ask(scopes_.questions(scope, name), &place->second); !status) return status;
  }
  *isDate = isDateType(place->second);
  return {};
}

Status DateStatement::ask(const std::vector<std::string>& questions, std::optional<FieldType>* type) {
  for (const std::string& question : questions) {
    std::optional<std::string> declared;
    if (Status status = types_.ofSelect(question, &declared); !status) return status;
    if (!declared) continue;
    *type = fieldTypeOf(*declared);
    break;
  }
  return {};
}

Status DateStatement::typesOfTargets(std::size_t place, Span list, Types* types) {
  for (const Span& element : operands_.elementsOf(list)) {
    std::optional<FieldType> type;
    if (element.first == element.last && isName(tokens_[element.first])) {
      const std::string question =
          scopes_.questionOfTarget(scopes_.scopeAt(place), graveName(nameOf(tokens_[element.first])));
      if (Status status = ask({question}, &type); !status) return status;
    }
    types->push_back(type);
  }
  return {};
}

void DateStatement::replace(std::size_t index, std::string text) {
  const std::string_view token = tokens_[index].text;
  edits_.push_back({token.data(), token.data() + token.size(), false, std::move(text)});
}

void DateStatement::insertBefore(std::size_t index, std::string text) {
  const char* const place = tokens_[index].text.data();
  edits_.push_back({place, place, false, std::move(text)});
}

void DateStatement::insertBehind(std::size_t index, std::string text) {
  const std::string_view token = tokens_[index].text;
  edits_.push_back({token.data() + token.size(), token.data() + token.size(), true, std::move(text)});
}

std::string DateStatement::changed(std::string_view sql) const {
  std::vector<const Edit*> edits;
  for (const Edit& edit : edits_) edits.push_back(&edit);
  // What is inserted behind a token, before one, and what replaces it may all begin at one place.
  const auto rank = [](const Edit& edit) { return edit.isBehind ? 0 : edit.begin == edit.end ? 1 : 2; };
  std::stable_sort(edits.begin(), edits.end(), [&](const Edit* left, const Edit* right) {
    return std::pair(left->begin, rank(*left)) < std::pair(right->begin, rank(*right));
  });
  std::string text;
  const char* copied = sql.data();
  for (const Edit* edit : edits) {
    text.append(copied, edit->begin).append(edit->text);
    copied = edit->end;
  }
  return text.append(copied, sql.data() + sql.size());
}

}  // namespace store
