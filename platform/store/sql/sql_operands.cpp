#include "platform/store/sql/sql_operands.h"

#include <algorithm>
#include <string_view>

namespace store {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

bool isTight(const Token& token) {
  if (token.kind == TokenKind::dot) return true;
  if (token.kind != TokenKind::op) return false;
  for (const std::string_view op : {"||", "+", "-", "*", "/", "%", "&", "|", "~", "<<", ">>", "->", "->>"}) {
    if (token.text == op) return true;
  }
  return false;
}

bool SqlOperands::isLiteral(std::size_t index) const {
  const Token& token = tokens_[index];
  if (token.kind != TokenKind::string && (token.kind != TokenKind::name || token.text[0] != '"'))
    return false;
  return std::any_of(token.text.begin(), token.text.end(), isDigit);
}

SqlOperands::SqlOperands(const Tokens& tokens) : tokens_(tokens), close_(tokens.count(), tokens.count()) {
  std::vector<std::size_t> opened;
  for (std::size_t i = 0; i < tokens_.count(); ++i) {
    if (tokens_[i].kind == TokenKind::open) opened.push_back(i);
    if (tokens_[i].kind != TokenKind::close || opened.empty()) continue;
    close_[opened.back()] = i;
    opened.pop_back();
  }
}

/// Whether the parenthesis groups an expression and does not call, list or begin something.
bool SqlOperands::isGrouping(std::size_t open) const {
  const Token& before = tokens_[open - 1];
  switch (before.kind) {
    case TokenKind::word:
      return isOneOfWords(before, {"AND", "OR", "NOT", "WHERE", "ON", "HAVING", "WHEN", "THEN", "ELSE", "IS",
                                   "FROM", "BETWEEN", "SELECT", "BY", "CASE", "RETURNING", "DISTINCT"});
    case TokenKind::op:
    case TokenKind::open:
    case TokenKind::comma:
      return true;
    default:
      return false;
  }
}

Span SqlOperands::withParentheses(Span span) const {
  while (tokens_[span.first - 1].kind == TokenKind::open && closeOf(span.first - 1) == span.last + 1 &&
         isGrouping(span.first - 1)) {
    --span.first;
    ++span.last;
  }
  return span;
}

/// Whether the name is the only argument of MIN or MAX.
bool SqlOperands::isExtremeOf(Span name) const {
  return tokens_[name.first - 1].kind == TokenKind::open && closeOf(name.first - 1) == name.last + 1 &&
         isOneOfWords(tokens_[name.first - 2], {"MIN", "MAX"});
}

/// The tokens [first, last] as a name, alone or with those of its table and schema, maybe in parentheses.
std::optional<Operand> SqlOperands::nameIn(std::size_t first, std::size_t last) const {
  for (std::size_t i = first; i <= last; ++i) {
    const bool isPart = (i - first) % 2 == 0 ? isName(tokens_[i]) && tokens_[i].kind != TokenKind::string
                                             : tokens_[i].kind == TokenKind::dot;
    if (!isPart) return std::nullopt;
  }
  if ((last - first) % 2 != 0) return std::nullopt;
  const Span name{first, last};
  const bool isExtreme = isExtremeOf(name);
  const Span whole = withParentheses(isExtreme ? Span{first - 2, last + 1} : name);
  if (isTight(tokens_[whole.first - 1]) || isTight(tokens_[whole.last + 1])) return std::nullopt;
  return Operand{whole, name, isExtreme};
}

std::optional<Operand> SqlOperands::operandEndingAt(std::size_t index) const {
  std::size_t last = index;
  while (tokens_[last].kind == TokenKind::close) --last;
  std::size_t first = last;
  while (tokens_[first - 1].kind == TokenKind::dot) first -= 2;
  if (first >= tokens_.count() || last >= tokens_.count() || first > last) return std::nullopt;
  const std::optional<Operand> operand = nameIn(first, last);
  return operand && operand->whole.last == index ? operand : std::nullopt;
}

std::optional<Operand> SqlOperands::operandBeginningAt(std::size_t index) const {
  std::size_t first = index;
  while (tokens_[first].kind == TokenKind::open ||
         (isOneOfWords(tokens_[first], {"MIN", "MAX"}) && tokens_[first + 1].kind == TokenKind::open)) {
    ++first;
  }
  std::size_t last = first;
  while (tokens_[last + 1].kind == TokenKind::dot) last += 2;
  if (last >= tokens_.count()) return std::nullopt;
  const std::optional<Operand> operand = nameIn(first, last);
  const bool fits = operand && operand->whole.first == index;
  return fits && tokens_[operand->whole.last + 1].kind != TokenKind::open ? operand : std::nullopt;
}

std::size_t SqlOperands::literalIn(Span span) const {
  while (span.first < span.last && tokens_[span.first].kind == TokenKind::open &&
         closeOf(span.first) == span.last) {
    ++span.first;
    --span.last;
  }
  return span.first == span.last && isLiteral(span.first) ? span.first : kNone;
}

std::vector<Span> SqlOperands::elementsOf(Span list) const {
  std::vector<Span> elements;
  std::size_t first = list.first;
  for (std::size_t i = list.first; i <= list.last; ++i) {
    if (tokens_[i].kind == TokenKind::open) i = std::min(closeOf(i), list.last);
    if (i != list.last && tokens_[i].kind != TokenKind::comma) continue;
    elements.push_back({first, tokens_[i].kind == TokenKind::comma ? i - 1 : i});
    first = i + 1;
  }
  return elements;
}

}  // namespace store
