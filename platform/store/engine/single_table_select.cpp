#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/engine/dialect.h"
#include "platform/store/engine/sql_tokens.h"

namespace store {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

enum class CallKind { none, aggregate, minOrMax };

/// What the parenthesis behind this token opens: a call of an aggregate function or something else.
CallKind callKindOf(const Token& token) {
  if (token.kind != TokenKind::word && token.kind != TokenKind::name) return CallKind::none;
  const std::string name = lowerCase(nameOf(token));
  if (name == "min" || name == "max") return CallKind::minOrMax;
  for (const std::string_view aggregate :
       {"count", "sum", "total", "avg", "group_concat", "string_agg", "median"}) {
    if (name == aggregate) return CallKind::aggregate;
  }
  for (const std::string_view prefix : {"percentile", "json_group_", "jsonb_group_"}) {
    if (name.starts_with(prefix)) return CallKind::aggregate;
  }
  return CallKind::none;
}

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

/// Looks for what makes one row of many in a part of a SELECT: aggregates and window functions. Those
/// inside a subquery belong to it, unless they are made of the outer table's columns. These are found
/// by the table's name in front of the column, or by the lack of any table in the subquery.
class AggregateFinder {
 public:
  /// `outerTable` is how the SELECT addresses its table. Both arguments must outlive the object.
  AggregateFinder(const Tokens& tokens, const std::string& outerTable)
      : tokens_(tokens), outerTable_(outerTable) {}

  /// Whether there is one among the tokens from `first` up to `last`, whose parentheses match.
  bool isFoundIn(std::size_t first, std::size_t last);

 private:
  struct Parenthesis {
    CallKind call = CallKind::none;
    bool isSubquery = false;
    bool hasFrom = false;       // of a subquery
    bool hasAggregate = false;  // of a subquery: one with an argument
    bool hasComma = false;
    bool hasOuterColumn = false;
    bool hasArgument = false;      // something other than nothing or an asterisk
    std::size_t subquery = kNone;  // the place of the innermost subquery around it
  };

  void open(std::size_t index);
  bool closesAggregate(std::size_t index);
  void note(std::size_t index);

  const Tokens& tokens_;
  const std::string& outerTable_;
  std::vector<Parenthesis> open_;
};

bool AggregateFinder::isFoundIn(std::size_t first, std::size_t last) {
  open_.clear();
  for (std::size_t i = first; i < last; ++i) {
    if (tokens_[i].kind == TokenKind::open) {
      open(i);
    } else if (tokens_[i].kind == TokenKind::close) {
      if (closesAggregate(i)) return true;
    } else if (!open_.empty()) {
      note(i);
    }
  }
  return false;
}

void AggregateFinder::open(std::size_t index) {
  Parenthesis opened;
  const Token& next = tokens_[index + 1];
  opened.call = callKindOf(tokens_[index - 1]);
  opened.isSubquery = isOneOfWords(next, {"SELECT", "WITH", "VALUES"});
  opened.hasArgument = next.kind != TokenKind::close && next.text != "*";
  if (!open_.empty()) {
    opened.subquery = open_.back().isSubquery ? open_.size() - 1 : open_.back().subquery;
  }
  open_.push_back(opened);
}

bool AggregateFinder::closesAggregate(std::size_t index) {
  const Parenthesis closed = open_.back();
  open_.pop_back();
  if (!open_.empty() && closed.hasOuterColumn) open_.back().hasOuterColumn = true;
  if (closed.isSubquery && closed.hasAggregate && !closed.hasFrom) return true;

  const bool isAggregate =
      closed.call == CallKind::aggregate || (closed.call == CallKind::minOrMax && !closed.hasComma);
  if (closed.subquery == kNone) return isAggregate || isOverOrFilter(tokens_, index + 1);
  if (!isAggregate) return false;
  if (closed.hasArgument) open_[closed.subquery].hasAggregate = true;
  return closed.hasOuterColumn;
}

void AggregateFinder::note(std::size_t index) {
  const Token& token = tokens_[index];
  Parenthesis& innermost = open_.back();
  if (token.kind == TokenKind::comma) {
    innermost.hasComma = true;
  } else if (isWord(token, "FROM")) {
    if (!isDistinctFrom(tokens_, index)) innermost.hasFrom = true;
  } else if (isName(token) && tokens_[index + 1].kind == TokenKind::dot) {
    if (equalsIgnoringCase(nameOf(token), outerTable_)) innermost.hasOuterColumn = true;
  }
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

}  // namespace

std::optional<SingleTableSelect> readSingleTableSelect(std::string_view sql) {
  const Tokens tokens(sql);
  const std::size_t last = tokens.countWithoutSemicolons();
  if (!isWord(tokens[0], "SELECT") || !isOneStatement(tokens, last)) return std::nullopt;
  const std::size_t columns = isWord(tokens[1], "ALL") ? 2 : 1;
  const std::size_t from = findWordAtTop(tokens, "FROM", columns, last);
  if (isWord(tokens[columns], "DISTINCT") || from == columns || from == last) return std::nullopt;

  const std::optional<TableReference> table = readTable(tokens, from + 1);
  if (!table || !isPlainTail(tokens, table->end, last)) return std::nullopt;
  // An aggregate in WHERE is an error anyway.
  const std::size_t order = findWordAtTop(tokens, "ORDER", table->end, last);
  AggregateFinder finder(tokens, table->alias);
  if (finder.isFoundIn(columns, from) || finder.isFoundIn(order, last)) return std::nullopt;

  SingleTableSelect select;
  select.table = table->table;
  select.columnList = tokens.slice(columns, from);
  select.tableClause = tokens.slice(from + 1, table->end);
  select.qualifier = quotedName(table->alias);
  select.tail = tokens.slice(table->end, last);
  select.isPlainTable = select.columnList == "*" && table->end == from + 2 && table->end == last;
  return select;
}

}  // namespace store
