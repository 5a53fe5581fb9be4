#include "platform/store/sql/date_storing.h"

#include <algorithm>

namespace store {
namespace {

class StoredDates {
 public:
  explicit StoredDates(DateStatement& statement)
      : statement_(statement), tokens_(statement.tokens()), operands_(statement.operands()) {}

  Status read();

 private:
  using Types = DateStatement::Types;

  Status store(std::size_t index, const std::optional<FieldType>& type);
  Status storeElements(Span list, const Types& types);
  std::size_t endOfValue(std::size_t index) const;
  Status readSet(std::size_t set);
  Status readInsert(std::size_t into);
  Status readInsertedSelect(std::size_t select, const Types& types);

  DateStatement& statement_;
  const Tokens& tokens_;
  const SqlOperands& operands_;
};

Status StoredDates::read() {
  Status status;
  for (std::size_t i = 0; i < tokens_.count() && status; ++i) {
    if (isWord(tokens_[i], "SET")) status = readSet(i);
    if (isWord(tokens_[i], "INTO") && tokens_[i].depth == 0) status = readInsert(i);
  }
  return status;
}

Status StoredDates::store(std::size_t index, const std::optional<FieldType>& type) {
  if (!isDateType(type)) return {};
  if (std::optional<std::string> iso = statement_.storedTextOf(index, type->dateShape)) {
    statement_.replace(index, quotedText(*iso));
    return {};
  }
  return statement_.literalAt(index).kind == DateLiteral::Kind::unknown ? statement_.notUnderstood(index)
                                                                        : Status();
}

Status StoredDates::storeElements(Span list, const Types& types) {
  const std::vector<Span> elements = operands_.elementsOf(list);
  for (std::size_t position = 0; position < std::min(elements.size(), types.size()); ++position) {
    const std::size_t index = operands_.literalIn(elements[position]);
    if (index == SqlOperands::kNone) continue;
    if (Status status = store(index, types[position]); !status) return status;
  }
  return {};
}

/// The last token of a value in SET that begins at `index`.
std::size_t StoredDates::endOfValue(std::size_t index) const {
  const int depth = tokens_[index].depth;
  std::size_t i = index;
  for (; i < tokens_.count(); ++i) {
    if (tokens_[i].kind == TokenKind::open) i = std::min(operands_.closeOf(i), tokens_.count() - 1);
    const Token& next = tokens_[i + 1];
    const bool ends = next.depth < depth || next.kind == TokenKind::end || next.kind == TokenKind::comma ||
                      next.kind == TokenKind::close || next.kind == TokenKind::semicolon ||
                      isOneOfWords(next, {"WHERE", "FROM", "RETURNING", "ORDER", "LIMIT"});
    if (ends) return i;
  }
  return i - 1;
}

Status StoredDates::readSet(std::size_t set) {
  for (std::size_t target = set + 1;;) {
    const bool isRow = tokens_[target].kind == TokenKind::open;
    const Span names = isRow ? Span{target + 1, operands_.closeOf(target) - 1} : Span{target, target};
    const std::size_t sign = isRow ? operands_.closeOf(target) + 1 : target + 1;
    if (tokens_[sign].text != "=" || names.first > names.last) return {};
    statement_.markAssignment(sign);
    const Span value{sign + 1, endOfValue(sign + 1)};
    if (value.first > value.last) return {};
    const bool isList =
        isRow && tokens_[value.first].kind == TokenKind::open && operands_.closeOf(value.first) == value.last;
    const bool isStored = isList || operands_.literalIn(value) != SqlOperands::kNone;
    if (isStored) {
      Types types;
      if (Status status = statement_.typesOfTargets(set, names, &types); !status) return status;
      const Span list = isList ? Span{value.first + 1, value.last - 1} : value;
      if (Status status = storeElements(list, types); !status) return status;
    }
    if (tokens_[value.last + 1].kind != TokenKind::comma) return {};
    target = value.last + 2;
  }
}

Status StoredDates::readInsert(std::size_t into) {
  bool hasLiteral = false;
  for (std::size_t i = into; i < tokens_.count() && !hasLiteral; ++i) hasLiteral = operands_.isLiteral(i);
  if (!hasLiteral) return {};
  const std::size_t table = tokens_[into + 2].kind == TokenKind::dot ? into + 3 : into + 1;
  std::size_t next = isWord(tokens_[table + 1], "AS") ? table + 3 : table + 1;
  if (!isName(tokens_[table])) return {};
  Types types;
  if (tokens_[next].kind == TokenKind::open) {
    const Span names{next + 1, operands_.closeOf(next) - 1};
    if (Status status = statement_.typesOfTargets(into, names, &types); !status) return status;
    next = operands_.closeOf(next) + 1;
  } else {
    std::vector<std::string> declared;
    if (Status status = statement_.types().ofInsert(nameOf(tokens_[table]), &declared); !status)
      return status;
    for (const std::string& type : declared) types.emplace_back(fieldTypeOf(type));
  }
  bool hasValues = false;
  for (std::size_t i = next; i < tokens_.count(); ++i) {
    if (tokens_[i].depth != 0) continue;
    if (isWord(tokens_[i], "RETURNING") || (isWord(tokens_[i], "ON") && isWord(tokens_[i + 1], "CONFLICT")))
      break;
    Status status;
    if (isWord(tokens_[i], "VALUES")) {
      hasValues = true;
    } else if (isWord(tokens_[i], "SELECT")) {
      hasValues = false;
      status = readInsertedSelect(i, types);
    } else if (hasValues && tokens_[i].kind == TokenKind::open && operands_.closeOf(i) < tokens_.count()) {
      status = storeElements({i + 1, operands_.closeOf(i) - 1}, types);
    }
    if (!status) return status;
  }
  return {};
}

/// What a SELECT of an INSERT gives back as it stands. How many columns a * stands for is not told here, so
/// behind one the columns count from the last one.
Status StoredDates::readInsertedSelect(std::size_t select, const Types& types) {
  const std::size_t first = isOneOfWords(tokens_[select + 1], {"ALL", "DISTINCT"}) ? select + 2 : select + 1;
  std::size_t last = first;
  const auto ends = [](const Token& token) {
    return token.kind == TokenKind::end || token.kind == TokenKind::semicolon ||
           (token.depth == 0 && isOneOfWords(token, {"FROM", "WHERE", "GROUP", "HAVING", "ORDER", "LIMIT",
                                                     "UNION", "INTERSECT", "EXCEPT", "RETURNING", "WINDOW"}));
  };
  while (!ends(tokens_[last + 1])) ++last;
  const std::vector<Span> elements = operands_.elementsOf({first, last});
  std::size_t starCount = 0;
  for (const Span& element : elements) starCount += tokens_[element.last].text == "*" ? 1 : 0;
  std::size_t passed = 0;
  for (std::size_t position = 0; position < elements.size(); ++position) {
    Span element = elements[position];
    if (tokens_[element.last].text == "*") ++passed;
    if (element.last > element.first && isName(tokens_[element.last])) {
      element.last -= isWord(tokens_[element.last - 1], "AS") ? 2 : 1;
    }
    const std::size_t index = operands_.literalIn(element);
    const std::size_t behind = elements.size() - position;
    const bool isKnown = passed == 0 || (passed == starCount && behind <= types.size());
    const std::size_t column = passed == 0 ? position : types.size() - behind;
    if (index == SqlOperands::kNone || !isKnown || column >= types.size()) continue;
    if (Status status = store(index, types[column]); !status) return status;
  }
  return {};
}

}  // namespace

Status readStoredDates(DateStatement& statement) {
  return StoredDates(statement).read();
}

}  // namespace store
