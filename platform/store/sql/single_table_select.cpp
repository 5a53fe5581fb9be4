#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {
namespace {

/// Whether the words at `index` make a window function of the parenthesis that closes before them.
/// OVER and FILTER are plain names elsewhere.
bool isOverOrFilter(const Tokens& tokens, std::size_t index) {
  const Token& next = tokens[index + 1];
  if (isWord(tokens[index], "FILTER")) return next.kind == TokenKind::open;
  if (!isWord(tokens[index], "OVER")) return false;
  return next.kind == TokenKind::open || (isName(next) && !isWord(next, "FROM"));
}

/// Whether FROM at `index` belongs to the operator IS [NOT] DISTINCT FROM.
bool isDistinctFrom(const Tokens& tokens, std::size_t index) {
  if (!isWord(tokens[index - 1], "DISTINCT")) return false;
  const std::size_t before = isWord(tokens[index - 2], "NOT") ? index - 3 : index - 2;
  return isWord(tokens[before], "IS");
}

/// Whether there is a window function among the tokens from `first` up to `last`, whose parentheses match.
/// One inside a subquery belongs to it.
bool hasWindowFunction(const Tokens& tokens, std::size_t first, std::size_t last) {
  std::vector<bool> inSubquery;  // for each open parenthesis
  for (std::size_t i = first; i < last; ++i) {
    if (tokens[i].kind == TokenKind::open) {
      inSubquery.push_back((!inSubquery.empty() && inSubquery.back()) ||
                           isOneOfWords(tokens[i + 1], {"SELECT", "WITH", "VALUES"}));
    } else if (tokens[i].kind == TokenKind::close) {
      inSubquery.pop_back();
      const bool isOutside = inSubquery.empty() || !inSubquery.back();
      if (isOutside && isOverOrFilter(tokens, i + 1)) return true;
    }
  }
  return false;
}

/// The table in a FROM clause, and where the clause ends.
struct TableReference {
  std::string table;
  std::string alias;  // the table's name when it has none
  std::size_t end = 0;
};

/// Words that can stand behind a table's name and are no alias.
bool isAfterTable(const Token& token) {
  return isOneOfWords(token, {"WHERE",     "GROUP",  "HAVING",  "WINDOW",  "ORDER", "LIMIT", "UNION",
                              "INTERSECT", "EXCEPT", "JOIN",    "CROSS",   "INNER", "LEFT",  "RIGHT",
                              "FULL",      "OUTER",  "NATURAL", "INDEXED", "NOT",   "ON",    "USING"});
}

std::optional<TableReference> readTable(const Tokens& tokens, std::size_t index) {
  if (!isName(tokens[index]) || isAfterTable(tokens[index])) return std::nullopt;
  if (tokens[index + 1].kind == TokenKind::dot) {
    if (!equalsIgnoringCase(nameOf(tokens[index]), "main")) return std::nullopt;
    index += 2;
    if (!isName(tokens[index])) return std::nullopt;
  }
  TableReference reference;
  reference.table = nameOf(tokens[index]);
  reference.alias = reference.table;
  reference.end = index + 1;
  const bool hasAs = isWord(tokens[index + 1], "AS");
  const std::size_t alias = hasAs ? index + 2 : index + 1;
  if (isName(tokens[alias]) && (hasAs || !isAfterTable(tokens[alias]))) {
    reference.alias = nameOf(tokens[alias]);
    reference.end = alias + 1;
  } else if (hasAs) {
    return std::nullopt;
  }
  return reference;
}

/// Whether the clauses from `first` on are only WHERE, ORDER BY and LIMIT.
bool isPlainTail(const Tokens& tokens, std::size_t first, std::size_t last) {
  if (first == last) return true;
  if (!isOneOfWords(tokens[first], {"WHERE", "ORDER", "LIMIT"})) return false;
  for (std::size_t i = first; i < last; ++i) {
    if (tokens[i].depth != 0) continue;
    if (isOneOfWords(tokens[i], {"GROUP", "HAVING", "UNION", "INTERSECT", "EXCEPT"})) return false;
    // WINDOW is a plain name elsewhere.
    if (isWord(tokens[i], "WINDOW") && isName(tokens[i + 1]) && isWord(tokens[i + 2], "AS")) return false;
  }
  return true;
}

std::size_t findWordAtTop(const Tokens& tokens, std::string_view word, std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) {
    if (tokens[i].depth == 0 && isWord(tokens[i], word) && !isDistinctFrom(tokens, i)) return i;
  }
  return last;
}

bool isOneStatement(const Tokens& tokens, std::size_t last) {
  if (tokens.hasIllegal()) return false;
  int depth = 0;
  for (std::size_t i = 0; i < last; ++i) {
    if (tokens[i].kind == TokenKind::semicolon || tokens[i].depth < 0) return false;
    depth = tokens[i].kind == TokenKind::open ? tokens[i].depth + 1 : tokens[i].depth;
  }
  return depth == 0;
}

/// Where the parenthesis closes that stands at `open`; `last` when it does not.
std::size_t findClose(const Tokens& tokens, std::size_t open, std::size_t last) {
  for (std::size_t i = open + 1; i < last; ++i) {
    if (tokens[i].kind == TokenKind::close && tokens[i].depth == tokens[open].depth) return i;
  }
  return last;
}

/// "SELECT * FROM (inside) ...": what follows, and `*inside` becomes what stands in the parentheses. Empty
/// for anything else; `*inside` is then untouched.
std::optional<SingleTableSelect::Around> readAround(std::string_view* inside) {
  const Tokens tokens(*inside);
  const std::size_t last = tokens.countWithoutSemicolons();
  constexpr std::size_t kOpen = 3;
  const bool isAround = isWord(tokens[0], "SELECT") && tokens[1].text == "*" && isWord(tokens[2], "FROM") &&
                        tokens[kOpen].kind == TokenKind::open;
  if (!isAround || !isOneStatement(tokens, last)) return std::nullopt;
  const std::size_t close = findClose(tokens, kOpen, last);
  if (!isPlainTail(tokens, close + 1, last)) return std::nullopt;
  const std::size_t order = findWordAtTop(tokens, "ORDER", close + 1, last);
  if (hasWindowFunction(tokens, order, last)) return std::nullopt;
  SingleTableSelect::Around around;
  around.tail = tokens.slice(close + 1, last);
  around.order = tokens.slice(order, findWordAtTop(tokens, "LIMIT", order, last));
  *inside = tokens.slice(kOpen + 1, close);
  return around;
}

std::optional<SingleTableSelect> readInnermost(std::string_view sql) {
  const Tokens tokens(sql);
  const std::size_t last = tokens.countWithoutSemicolons();
  if (!isWord(tokens[0], "SELECT") || !isOneStatement(tokens, last)) return std::nullopt;
  const std::size_t columns = isWord(tokens[1], "ALL") ? 2 : 1;
  const std::size_t from = findWordAtTop(tokens, "FROM", columns, last);
  if (isWord(tokens[columns], "DISTINCT") || from == columns || from == last) return std::nullopt;

  const std::optional<TableReference> table = readTable(tokens, from + 1);
  if (!table || !isPlainTail(tokens, table->end, last)) return std::nullopt;
  const std::size_t order = findWordAtTop(tokens, "ORDER", table->end, last);
  if (hasWindowFunction(tokens, columns, from) || hasWindowFunction(tokens, order, last)) return std::nullopt;

  SingleTableSelect select;
  select.table = table->table;
  select.columnList = tokens.slice(columns, from);
  select.tableClause = tokens.slice(from + 1, table->end);
  select.qualifier = quotedName(table->alias);
  select.tail = tokens.slice(table->end, last);
  select.order = tokens.slice(order, findWordAtTop(tokens, "LIMIT", order, last));
  select.isPlainTable = select.columnList == "*" && table->end == from + 2 && table->end == last;
  return select;
}

}  // namespace

std::optional<SingleTableSelect> readSingleTableSelect(std::string_view sql) {
  std::vector<SingleTableSelect::Around> around;
  while (std::optional<SingleTableSelect::Around> next = readAround(&sql)) {
    if (around.size() == SingleTableSelect::kMostAround) return std::nullopt;
    around.insert(around.begin(), std::move(*next));
  }
  std::optional<SingleTableSelect> select = readInnermost(sql);
  if (!select || around.empty()) return select;
  select->isPlainTable = false;
  select->around = std::move(around);
  return select;
}

}  // namespace store
