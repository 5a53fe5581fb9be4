#include "platform/store/sql/statement_scopes.h"

#include <algorithm>

namespace store {

namespace {

bool endsFrom(const Tokens& tokens, std::size_t index) {
  const Token& token = tokens[index];
  if (isWord(token, "WINDOW")) return isWord(tokens[index + 2], "AS");
  if (isWord(token, "ON")) return isWord(tokens[index + 1], "CONFLICT");
  return isOneOfWords(
      token, {"WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "RETURNING", "UNION", "INTERSECT", "EXCEPT"});
}

bool isDistinctFrom(const Tokens& tokens, std::size_t index) {
  return isWord(tokens[index - 1], "DISTINCT") &&
         isOneOfWords(tokens[isWord(tokens[index - 2], "NOT") ? index - 3 : index - 2], {"IS"});
}

}  // namespace

StatementScopes::StatementScopes(const Tokens& tokens) : tokens_(tokens), scopeAt_(tokens.count(), kNone) {
  frames_.emplace_back();
  for (std::size_t i = 0; i < tokens_.count(); ++i) {
    const Token& token = tokens_[i];
    if (token.kind == TokenKind::close && frames_.size() > 1 && token.depth < frames_.back().depth) {
      endClauses(frames_.back(), i);
      frames_.pop_back();
    }
    if (token.kind == TokenKind::word && token.depth == frames_.back().depth) readWord(i);
    scopeAt_[i] = frames_.back().current;
    if (token.kind == TokenKind::open) open(i);
  }
  for (Frame& frame : frames_) endClauses(frame, tokens_.countWithoutSemicolons());
}

/// A subquery begins behind the parenthesis, or just another part of the same scope.
void StatementScopes::open(std::size_t index) {
  if (!isOneOfWords(tokens_[index + 1], {"SELECT", "WITH", "VALUES"})) return;
  const std::size_t parent = frames_.back().current;
  const bool sees = !startsTable(index);
  Frame& frame = frames_.emplace_back();
  frame.depth = tokens_[index].depth + 1;
  frame.parent = parent;
  frame.seesParent = sees;
}

/// Whether a subquery in this parenthesis stands for a table: such a one sees no other table beside it.
bool StatementScopes::startsTable(std::size_t open) const {
  const Frame& frame = frames_.back();
  if (frame.current == kNone) return true;
  const Scope& scope = scopes_[frame.current];
  if (scope.with.isOpen()) return true;
  if (!scope.from.isOpen()) return false;
  const Token& before = tokens_[open - 1];
  return before.kind == TokenKind::comma || before.kind == TokenKind::open ||
         isOneOfWords(before, {"FROM", "JOIN"});
}

StatementScopes::Scope& StatementScopes::begin(Frame& frame, std::size_t index) {
  endClauses(frame, index);
  frame.current = scopes_.size();
  Scope& scope = scopes_.emplace_back();
  const bool hasWith = frame.with != kNone;
  scope.parent = hasWith ? frame.with : frame.parent;
  scope.seesParent = hasWith || frame.seesParent;
  return scope;
}

void StatementScopes::endClauses(Frame& frame, std::size_t index) {
  if (frame.current == kNone) return;
  Scope& scope = scopes_[frame.current];
  for (Range* range : {&scope.with, &scope.results, &scope.table, &scope.from}) {
    if (range->isOpen()) range->last = index;
  }
}

void StatementScopes::readWord(std::size_t index) {
  Frame& frame = frames_.back();
  const Token& token = tokens_[index];
  const bool isFirst = frame.current == kNone || scopes_[frame.current].with.isOpen();
  if (frame.current == kNone && isWord(token, "WITH")) {
    Scope& scope = begin(frame, index);
    scope.with.first = index;
    frame.with = frame.current;
    return;
  }
  if (isOneOfWords(token, {"SELECT", "VALUES"})) {
    begin(frame, index).results.first = index + 1;
    return;
  }
  if (isFirst && isOneOfWords(token, {"INSERT", "REPLACE", "UPDATE", "DELETE"})) {
    Scope& scope = begin(frame, index);
    scope.isInsert = isOneOfWords(token, {"INSERT", "REPLACE"});
    if (scope.isInsert) frame.insert = frame.current;
    if (isWord(token, "UPDATE")) scope.table.first = isWord(tokens_[index + 1], "OR") ? index + 3 : index + 1;
    return;
  }
  if (frame.current == kNone) return;
  if (endsFrom(tokens_, index)) {
    endClauses(frame, index);
    const bool isBehindInsert = isOneOfWords(token, {"ON", "RETURNING"});
    if (isBehindInsert && frame.insert != kNone) frame.current = frame.insert;
    return;
  }
  Scope& scope = scopes_[frame.current];
  if (isWord(token, "SET") && scope.table.isOpen()) {
    scope.table.last = index;
  } else if (isWord(token, "INTO") && scope.isInsert) {
    const std::size_t name = tokens_[index + 2].kind == TokenKind::dot ? index + 3 : index + 1;
    scope.table = {index + 1, isWord(tokens_[name + 1], "AS") ? name + 3 : name + 1};
  } else if (isWord(token, "FROM") && scope.from.first == kNone && !isDistinctFrom(tokens_, index)) {
    endClauses(frame, index);
    scope.from.first = index + 1;
  }
}

std::string StatementScopes::text(const Range& range) const {
  return range.isWhole() ? std::string(tokens_.slice(range.first, range.last)) : std::string();
}

std::string StatementScopes::sourceOf(const Scope& scope) const {
  const std::string table = text(scope.table);
  const std::string from = text(scope.from);
  return table + (table.empty() || from.empty() ? "" : ", ") + from;
}

/// `select` inside all that surrounds the scope: the WITH clauses, and the tables if it sees them.
std::string StatementScopes::within(std::size_t scope, std::string select, bool seesTables) const {
  for (; scope != kNone; scope = scopes_[scope].parent) {
    const std::size_t parent = scopes_[scope].parent;
    if (parent == kNone) break;
    const Scope& around = scopes_[parent];
    if (around.with.isWhole()) {
      select = text(around.with) + " SELECT (" + select + ")";
    } else if (const std::string source = sourceOf(around);
               seesTables && scopes_[scope].seesParent && !source.empty()) {
      select = "SELECT (" + select + ") FROM " + source;
    }
  }
  return select;
}

std::string StatementScopes::questionOfTarget(std::size_t scope, std::string_view name) const {
  const std::string table = scope == kNone ? std::string() : text(scopes_[scope].table);
  return "SELECT " + std::string(name) + (table.empty() ? "" : " FROM " + table);
}

std::vector<std::string> StatementScopes::questions(std::size_t scope, std::string_view name) const {
  if (scope == kNone) return {};
  const Scope& own = scopes_[scope];
  const std::string select = "SELECT " + std::string(name);
  const std::string source = sourceOf(own);
  std::vector<std::string> texts;
  // The names of a SELECT's own results hide those of the tables around it.
  for (const bool seesTables : {false, true}) {
    texts.push_back(within(scope, source.empty() ? select : select + " FROM " + source, seesTables));
    if (!own.results.isWhole() || source.empty()) continue;
    const std::string results = "(SELECT " + text(own.results) + " FROM " + source + ")";
    texts.push_back(within(scope, select + " FROM " + results, seesTables));
  }
  if (own.isInsert && own.table.isWhole()) {
    const bool hasAlias = isWord(tokens_[own.table.last - 2], "AS");
    const std::size_t last = hasAlias ? own.table.last - 2 : own.table.last;
    texts.push_back(within(
        scope, select + " FROM " + std::string(tokens_.slice(own.table.first, last)) + " AS excluded", true));
  }
  return texts;
}

}  // namespace store
