#include "platform/store/sql/date_comparisons.h"

#include <utility>

#include "platform/store/sql/moments.h"

namespace store {
namespace {

bool isOrder(const Token& token) {
  if (token.kind != TokenKind::op) return false;
  return token.text == "<" || token.text == "<=" || token.text == ">" || token.text == ">=";
}

/// Equality and all that binds as loosely.
bool isEquality(const Token& token) {
  if (token.kind == TokenKind::word) {
    return isOneOfWords(token,
                        {"IS", "IN", "LIKE", "GLOB", "MATCH", "REGEXP", "BETWEEN", "ISNULL", "NOTNULL"});
  }
  return token.kind == TokenKind::op &&
         (token.text == "=" || token.text == "==" || token.text == "<>" || token.text == "!=");
}

std::string momentLiteral(const std::string& moment) {
  return quotedText(moment) + " COLLATE " + kMomentCollation;
}

bool isSubquery(const Token& first) {
  return isOneOfWords(first, {"SELECT", "WITH", "VALUES"});
}

struct Comparison {
  Span op;
  bool isEqual = false;     // = or IS
  bool isRelation = false;  // < <= > >=
  bool pointsDown = false;  // < or <=
};

class DateComparisons {
 public:
  explicit DateComparisons(DateStatement& statement)
      : statement_(statement),
        tokens_(statement.tokens()),
        operands_(statement.operands()),
        isBetweenAnd_(statement.tokens().count()) {}

  Status read();

 private:
  Status readLiteral(std::size_t index);
  Status readBetween(std::size_t between, std::size_t conjunction);
  Status readTestedLiteral(std::size_t tested, std::size_t between, std::size_t conjunction);
  Status readIn(std::size_t open);
  Status compare(std::size_t index, Span literal, const Operand& column, const Comparison& comparison,
                 bool columnIsFirst);
  std::optional<Comparison> comparisonBefore(std::size_t index) const;
  std::optional<Comparison> comparisonBehind(std::size_t index) const;
  bool isOperandOf(Span whole, bool isRelation) const;
  bool standsAlone(Span whole) const;
  void wrap(Span whole, Span column, const std::string& lowest, const std::string& highest);

  DateStatement& statement_;
  const Tokens& tokens_;
  const SqlOperands& operands_;
  std::vector<bool> isBetweenAnd_;  // by token
};

Status DateComparisons::read() {
  std::vector<std::size_t> betweens(
      1, SqlOperands::kNone);  // for each level of parentheses the one without its AND
  Status status;
  for (std::size_t i = 0; i < tokens_.count() && status; ++i) {
    const Token& token = tokens_[i];
    if (token.kind == TokenKind::open) {
      betweens.push_back(SqlOperands::kNone);
      if (isWord(tokens_[i - 1], "IN")) status = readIn(i);
    } else if (token.kind == TokenKind::close) {
      if (betweens.size() > 1) betweens.pop_back();
    } else if (isWord(token, "BETWEEN")) {
      betweens.back() = i;
    } else if (isWord(token, "AND") && betweens.back() != SqlOperands::kNone) {
      isBetweenAnd_[i] = true;
      status = readBetween(std::exchange(betweens.back(), SqlOperands::kNone), i);
    } else if (operands_.isLiteral(i)) {
      status = readLiteral(i);
    }
  }
  return status;
}

std::optional<Comparison> DateComparisons::comparisonBefore(std::size_t index) const {
  std::size_t last = index - 1;
  const Token& token = tokens_[last];
  if (statement_.isAssignment(last)) return std::nullopt;
  if (isOrder(token)) {
    return Comparison{{last, last}, false, true, token.text[0] == '<'};
  }
  if (token.kind == TokenKind::op && isEquality(token)) {
    return Comparison{{last, last}, token.text[0] == '=', false, false};
  }
  const std::size_t end = last;
  bool isEqual = true;
  if (isWord(tokens_[last], "FROM") && isWord(tokens_[last - 1], "DISTINCT")) {
    isEqual = false;
    last -= 2;
  }
  if (isWord(tokens_[last], "NOT")) {
    isEqual = !isEqual;
    --last;
  }
  if (!isWord(tokens_[last], "IS")) return std::nullopt;
  return Comparison{{last, end}, isEqual, false, false};
}

std::optional<Comparison> DateComparisons::comparisonBehind(std::size_t index) const {
  std::size_t first = index + 1;
  if (tokens_[first].kind == TokenKind::op) return comparisonBefore(first + 1);
  if (!isWord(tokens_[first], "IS")) return std::nullopt;
  std::size_t last = first;
  if (isWord(tokens_[last + 1], "NOT")) ++last;
  if (isWord(tokens_[last + 1], "DISTINCT") && isWord(tokens_[last + 2], "FROM")) last += 2;
  return comparisonBefore(last + 1);
}

Status DateComparisons::readLiteral(std::size_t index) {
  const Span literal = operands_.withParentheses({index, index});
  if (isTight(tokens_[literal.first - 1]) || isTight(tokens_[literal.last + 1])) return {};
  if (const std::optional<Comparison> before = comparisonBefore(literal.first)) {
    const std::optional<Operand> column = operands_.operandEndingAt(before->op.first - 1);
    if (column && isOperandOf({column->whole.first, literal.last}, before->isRelation)) {
      return compare(index, literal, *column, *before, true);
    }
  }
  if (const std::optional<Comparison> behind = comparisonBehind(literal.last)) {
    const std::optional<Operand> column = operands_.operandBeginningAt(behind->op.last + 1);
    if (column && isOperandOf({literal.first, column->whole.last}, behind->isRelation)) {
      return compare(index, literal, *column, *behind, false);
    }
  }
  return {};
}

/// Whether the comparison that the tokens spell is one, and neither of its operands another one's.
bool DateComparisons::isOperandOf(Span whole, bool isRelation) const {
  const Token& before = tokens_[whole.first - 1];
  const Token& behind = tokens_[whole.last + 1];
  const bool isAfterEquality = isEquality(before) && !statement_.isAssignment(whole.first - 1);
  if (isOrder(before) || (isAfterEquality && !isRelation)) return false;
  return !isOrder(behind) || isRelation;
}

Status DateComparisons::compare(std::size_t index, Span literal, const Operand& column,
                                const Comparison& comparison, bool columnIsFirst) {
  bool found = false;
  if (Status status = statement_.isDate(column, &found); !status || !found) return status;
  const DateLiteral read = statement_.literalAt(index);
  if (read.kind == DateLiteral::Kind::unknown) return statement_.notUnderstood(index);
  if (read.kind == DateLiteral::Kind::other) return {};
  statement_.replace(index, momentLiteral(read.moment));
  const Span whole =
      columnIsFirst ? Span{column.whole.first, literal.last} : Span{literal.first, column.whole.last};
  if (!standsAlone(whole) || column.isExtreme) return {};
  const bool hasUpper =
      comparison.isEqual || (comparison.isRelation && comparison.pointsDown == columnIsFirst);
  const bool hasLower =
      comparison.isEqual || (comparison.isRelation && comparison.pointsDown != columnIsFirst);
  wrap(whole, column.name, hasLower ? read.moment : "", hasUpper ? read.moment : "");
  return {};
}

/// Whether parentheses can be put around a comparison, and a condition be added to it inside them.
bool DateComparisons::standsAlone(Span whole) const {
  const Token& before = tokens_[whole.first - 1];
  const Token& behind = tokens_[whole.last + 1];
  const bool isBetween = isWord(before, "AND") && isBetweenAnd_[whole.first - 1];
  const bool isIsNot = isWord(before, "NOT") && isWord(tokens_[whole.first - 2], "IS");
  if (isBetween || isIsNot) return false;
  const bool begins = before.kind == TokenKind::open ||
                      isOneOfWords(before, {"WHERE", "AND", "OR", "NOT", "ON", "HAVING", "WHEN"});
  const bool ends =
      behind.kind == TokenKind::close || behind.kind == TokenKind::end ||
      behind.kind == TokenKind::semicolon ||
      isOneOfWords(behind, {"AND", "OR", "THEN", "GROUP", "ORDER", "LIMIT", "HAVING", "WINDOW", "UNION",
                            "INTERSECT", "EXCEPT", "RETURNING", "JOIN", "INNER", "LEFT", "CROSS"});
  return begins && ends;
}

/// Adds bounds for the column's plain texts, which every text at (at or behind `lowest`, at or before
/// `highest`) keeps. An empty moment is no bound.
void DateComparisons::wrap(Span whole, Span column, const std::string& lowest, const std::string& highest) {
  if (lowest.empty() && highest.empty()) return;
  const std::string name =
      " AND " + std::string(tokens_.slice(column.first, column.last + 1)) + " COLLATE BINARY ";
  std::string bounds;
  if (!lowest.empty()) bounds += name + ">= " + quotedText(lowestText(lowest));
  if (!highest.empty()) bounds += name + "< " + quotedText(endText(highest));
  statement_.insertBefore(whole.first, "(");
  statement_.insertBehind(whole.last, bounds + ')');
}

Status DateComparisons::readBetween(std::size_t between, std::size_t conjunction) {
  const bool isNegated = isWord(tokens_[between - 1], "NOT");
  const std::size_t tested = isNegated ? between - 2 : between - 1;
  const std::size_t low = operands_.literalIn({between + 1, conjunction - 1});
  std::size_t high = conjunction + 1;
  while (tokens_[high].kind == TokenKind::open) ++high;
  Span highSpan;
  if (high < tokens_.count() && operands_.isLiteral(high)) highSpan = operands_.withParentheses({high, high});
  if (highSpan.first != conjunction + 1 || isTight(tokens_[highSpan.last + 1])) high = SqlOperands::kNone;

  const std::optional<Operand> column = operands_.operandEndingAt(tested);
  if (!column) return readTestedLiteral(tested, between, conjunction);
  if ((low == SqlOperands::kNone && high == SqlOperands::kNone) || !isOperandOf(column->whole, false))
    return {};
  bool found = false;
  if (Status status = statement_.isDate(*column, &found); !status || !found) return status;
  std::string moments[2];
  for (const bool isHigh : {false, true}) {
    const std::size_t index = isHigh ? high : low;
    if (index == SqlOperands::kNone) continue;
    DateLiteral read = statement_.literalAt(index);
    if (read.kind == DateLiteral::Kind::unknown) return statement_.notUnderstood(index);
    if (read.kind == DateLiteral::Kind::other) continue;
    statement_.replace(index, momentLiteral(read.moment));
    moments[isHigh ? 1 : 0] = std::move(read.moment);
  }
  const bool isWhole = !isNegated && !column->isExtreme && !moments[0].empty() && !moments[1].empty();
  if (isWhole && standsAlone({column->whole.first, highSpan.last})) {
    wrap({column->whole.first, highSpan.last}, column->name, moments[0], moments[1]);
  }
  return {};
}

/// 'literal' BETWEEN column AND column.
Status DateComparisons::readTestedLiteral(std::size_t tested, std::size_t between, std::size_t conjunction) {
  std::size_t index = tested;
  while (tokens_[index].kind == TokenKind::close) --index;
  if (index >= tokens_.count() || !operands_.isLiteral(index)) return {};
  const Span literal = operands_.withParentheses({index, index});
  if (literal.last != tested || isTight(tokens_[literal.first - 1]) || !isOperandOf(literal, false))
    return {};
  for (const std::size_t bound : {between + 1, conjunction + 1}) {
    const std::optional<Operand> column = operands_.operandBeginningAt(bound);
    bool found = false;
    if (!column) continue;
    if (Status status = statement_.isDate(*column, &found); !status) return status;
    if (!found) continue;
    const DateLiteral read = statement_.literalAt(index);
    if (read.kind == DateLiteral::Kind::unknown) return statement_.notUnderstood(index);
    if (read.kind == DateLiteral::Kind::moment) statement_.replace(index, momentLiteral(read.moment));
    break;
  }
  return {};
}

Status DateComparisons::readIn(std::size_t open) {
  if (isSubquery(tokens_[open + 1]) || operands_.closeOf(open) >= tokens_.count()) return {};
  const bool isNegated = isWord(tokens_[open - 2], "NOT");
  const std::optional<Operand> column = operands_.operandEndingAt(isNegated ? open - 3 : open - 2);
  if (!column || !isOperandOf(column->whole, false)) return {};
  const std::vector<Span> elements = operands_.elementsOf({open + 1, operands_.closeOf(open) - 1});
  std::string lowest;
  std::string highest;
  std::size_t momentCount = 0;
  for (const Span& element : elements) {
    const std::size_t index = operands_.literalIn(element);
    if (index == SqlOperands::kNone) continue;
    bool found = false;
    if (Status status = statement_.isDate(*column, &found); !status || !found) return status;
    const DateLiteral read = statement_.literalAt(index);
    if (read.kind == DateLiteral::Kind::unknown) return statement_.notUnderstood(index);
    if (read.kind == DateLiteral::Kind::other) continue;
    statement_.replace(index, quotedText(read.moment));
    if (momentCount == 0 || read.moment < lowest) lowest = read.moment;
    if (momentCount == 0 || read.moment > highest) highest = read.moment;
    ++momentCount;
  }
  if (momentCount == 0) return {};
  // Of the operands of IN the left one says how they are compared.
  statement_.insertBehind(column->whole.last, std::string(" COLLATE ") + kMomentCollation);
  const Span whole{column->whole.first, operands_.closeOf(open)};
  if (momentCount == elements.size() && !isNegated && !column->isExtreme && standsAlone(whole)) {
    wrap(whole, column->name, lowest, highest);
  }
  return {};
}

}  // namespace

Status readDateComparisons(DateStatement& statement) {
  return DateComparisons(statement).read();
}

}  // namespace store
