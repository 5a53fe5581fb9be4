#include "platform/store/odbc/dialect/server_statement.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {

namespace {

/// Words that are never names where they stand bare.
bool isReserved(const Token& token) {
  return isOneOfWords(
      token,
      {"SELECT", "FROM",      "WHERE",   "ORDER",   "GROUP",   "BY",     "HAVING",     "LIMIT",    "OFFSET",
       "AND",    "OR",        "NOT",     "IN",      "IS",      "NULL",   "LIKE",       "BETWEEN",  "CASE",
       "WHEN",   "THEN",      "ELSE",    "END",     "AS",      "ON",     "JOIN",       "INNER",    "LEFT",
       "OUTER",  "CROSS",     "UNION",   "ALL",     "SET",     "VALUES", "INSERT",     "INTO",     "UPDATE",
       "DELETE", "CREATE",    "DROP",    "ALTER",   "TABLE",   "ASC",    "DESC",       "USING",    "EXISTS",
       "CAST",   "DISTINCT",  "DEFAULT", "PRIMARY", "UNIQUE",  "CHECK",  "REFERENCES", "FOREIGN",  "WITH",
       "EXCEPT", "INTERSECT", "RIGHT",   "FULL",    "NATURAL", "TRUE",   "FALSE",      "RETURNING"});
}

enum class Form { toRun, toRead };

class Translation {
 public:
  Translation(std::string_view sql, const Tokens& tokens, NameSource& names, Form form)
      : sql_(sql),
        tokens_(tokens),
        names_(names),
        form_(form),
        replaced_(tokens.count()),
        behind_(tokens.count()),
        isTable_(tokens.count(), false) {}

  Status run(std::string* serverSql) {
    if (Status status = findTables(); !status) return status;
    findAliases();
    for (std::size_t index = 0; index < tokens_.count(); ++index) {
      if (!replaced_[index] && !isTable_[index]) translate(index);
    }
    *serverSql = joined();
    return {};
  }

 private:
  using KnownColumn = NamedTable::Column;
  using Values = NamedTable::Values;

  bool isQuoted(std::size_t index) const { return tokens_[index].kind == TokenKind::name; }

  /// Whether the parenthesis that the token stands in belongs to the function.
  bool isInside(std::size_t index, std::string_view function) const {
    const int depth = tokens_[index].depth;
    for (std::size_t before = index; before-- > 0;) {
      if (tokens_[before].kind == TokenKind::open && tokens_[before].depth == depth - 1) {
        return isWord(tokens_[before - 1], function);
      }
    }
    return false;
  }

  bool isTablePlace(std::size_t index, bool isInFrom) const {
    const Token& before = tokens_[index - 1];
    if (isOneOfWords(before, {"FROM", "JOIN", "INTO", "UPDATE", "TABLE", "ONLY", "ANALYZE"})) return true;
    if (isWord(before, "EXISTS")) return isWord(tokens_[index - 2], "IF");
    if (isOneOfWords(before, {"ON", "REFERENCES"})) return isOneOfWords(tokens_[0], {"CREATE", "ALTER"});
    return before.kind == TokenKind::comma && isInFrom;
  }

  Status findTables() {
    std::vector<bool> inFrom(1, false);  // for each depth, whether the clause is a list of tables
    for (std::size_t index = 0; index < tokens_.count(); ++index) {
      const Token& token = tokens_[index];
      const auto depth = static_cast<std::size_t>(std::max(token.depth, 0));
      if (inFrom.size() <= depth + 1) inFrom.resize(depth + 2, false);
      if (token.kind == TokenKind::open) inFrom[depth + 1] = false;
      if (isWord(token, "FROM")) inFrom[depth] = true;
      if (isOneOfWords(token, {"WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "UNION", "EXCEPT", "INTERSECT",
                               "SELECT", "SET", "VALUES"})) {
        inFrom[depth] = false;
      }
      if (isUnnamedSelect(index, inFrom[depth])) nameSelect(index);
      const bool canBe = (isName(token) && !isReserved(token)) || token.kind == TokenKind::string;
      if (!canBe || !isTablePlace(index, inFrom[depth])) continue;
      if (Status status = findTable(index); !status) return status;
    }
    return {};
  }

  bool isUnnamedSelect(std::size_t index, bool isInFrom) const {
    return form_ == Form::toRun && tokens_[index].kind == TokenKind::open && isTablePlace(index, isInFrom) &&
           isOneOfWords(tokens_[index + 1], {"SELECT", "VALUES", "WITH"});
  }

  void nameSelect(std::size_t open) {
    const std::size_t close = closeOf(open);
    const Token& next = tokens_[close + 1];
    if (close == tokens_.count() || isWord(next, "AS") || (isName(next) && !isReserved(next))) return;
    replaced_[close] = ") AS quivane_" + std::to_string(open);
  }

  Status findTable(std::size_t index) {
    const bool isQualified = tokens_[index + 1].kind == TokenKind::dot && isName(tokens_[index + 2]);
    const std::string own =
        tokens_[index].kind == TokenKind::string ? unquoted(tokens_[index].text) : nameOf(tokens_[index]);
    const std::string name = isQualified ? own + "." + nameOf(tokens_[index + 2]) : own;
    std::optional<NamedTable> table;
    if (Status status = names_.findTable(name, &table); !status) return status;
    if (!table) return {};
    const std::string reference = form_ == Form::toRun ? table->reference : quotedName(table->name);
    replaced_[index] = reference;
    isTable_[index] = true;
    if (isQualified) {
      replaced_[index + 1] = "";
      replaced_[index + 2] = "";
    }
    for (const NamedTable::Column& column : table->columns) {
      columns_[lowerCase(column.name)].push_back(column);
    }
    qualifiers_[lowerCase(name)] = reference;
    return {};
  }

  void findAliases() {
    for (std::size_t index = 0; index < tokens_.count(); ++index) {
      if (!isName(tokens_[index]) || isReserved(tokens_[index])) continue;
      const Token& before = tokens_[index - 1];
      const bool isGiven = isWord(before, "AS") && !isInside(index, "CAST");
      const bool isImplied =
          isQuoted(index) &&
          (before.kind == TokenKind::close || isName(before) || before.kind == TokenKind::string) &&
          !isReserved(before);
      if (isGiven || isImplied) aliases_.emplace(lowerCase(nameOf(tokens_[index])), nameOf(tokens_[index]));
    }
  }

  /// The column of that name, exact before any letter case; null when there is none.
  const KnownColumn* columnOf(const std::string& name) const {
    const auto found = columns_.find(lowerCase(name));
    if (found == columns_.end()) return nullptr;
    for (const KnownColumn& column : found->second) {
      if (column.name == name) return &column;
    }
    return &found->second.front();
  }

  /// A name that the statement gives to something.
  bool isDefined(std::size_t index) const {
    const Token& before = tokens_[index - 1];
    if (isWord(before, "AS")) return !isInside(index, "CAST") && tokens_[index + 1].kind != TokenKind::open;
    if (isWord(tokens_[0], "ALTER")) {
      return isWord(before, "TO") || (isWord(before, "ADD") && !isWord(tokens_[index], "COLUMN")) ||
             (isWord(before, "COLUMN") && isWord(tokens_[index - 2], "ADD"));
    }
    if (!isWord(tokens_[0], "CREATE")) return false;
    return isOneOfWords(before, {"TABLE", "VIEW", "INDEX"}) ||
           (isWord(before, "EXISTS") && isWord(tokens_[index - 2], "NOT"));
  }

  void translate(std::size_t index) {
    const Token& token = tokens_[index];
    switch (token.kind) {
      case TokenKind::word:
        translateWord(index);
        break;
      case TokenKind::name:
        translateName(index);
        break;
      case TokenKind::blob:
        replaced_[index] = bytesOf(token.text);
        break;
      case TokenKind::op:
        if (token.text == "==") replaced_[index] = "=";
        break;
      case TokenKind::number:
        translateNumber(index);
        break;
      default:
        break;
    }
  }

  /// x'00'. Without any bytes it is compared with texts of bytes.
  static std::string bytesOf(std::string_view literal) {
    const std::string text = "'\\x" + std::string(literal.substr(2, literal.size() - 3)) + "'";
    return literal.size() > 3 ? "CAST(" + text + " AS bytea)" : text;
  }

  void translateWord(std::size_t index) {
    const Token& token = tokens_[index];
    if (isWord(token, "LIKE")) {
      replaced_[index] = "ILIKE";
      return;
    }
    const bool isFunction = tokens_[index + 1].kind == TokenKind::open;
    if (isFunction && translateFunction(index)) return;
    if (isReserved(token)) return;
    const std::string name(token.text);
    if (isDefined(index) && !isOneOfWords(token, {"IF", "CONSTRAINT"})) {
      replaced_[index] = quotedName(name);
      return;
    }
    if (isFunction && !isColumnListOf(index)) return;
    replaceKnown(index, name);
  }

  /// Where the parenthesis closes that stands at `open`; the number of tokens when it does not.
  std::size_t closeOf(std::size_t open) const {
    std::size_t close = open + 1;
    while (close < tokens_.count() && tokens_[close].depth != tokens_[open].depth) ++close;
    return close;
  }

  /// The components' own functions, and one of SQLite's. False for any other.
  bool translateFunction(std::size_t index) {
    const std::size_t close = closeOf(index + 1);
    if (close == tokens_.count()) return false;
    if (isWord(tokens_[index], "IFNULL")) {
      replaced_[index] = "COALESCE";
      castFirstOf(index, close);
      compareWithEmpty(index + 2, close);
      return true;
    }
    if (isWord(tokens_[index], "QUIVANE_FOLD")) {
      if (isMeasuredColumn(index + 2, close) && isOrder(index)) {
        replaced_[index] = "";
        return true;
      }
      replaced_[index] = "upper(CAST(";
      replaced_[index + 1] = "";
      replaced_[close] = " AS text))";
      return true;
    }
    const bool isContains = isWord(tokens_[index], "QUIVANE_CONTAINS") &&
                            tokens_[index + 2].kind == TokenKind::string &&
                            tokens_[index + 3].kind == TokenKind::comma;
    if (!isContains) return false;
    replaced_[index] = "(strpos(upper(concat_ws(chr(31)";
    replaced_[index + 1] = "";
    replaced_[index + 2] = "";
    replaced_[close] = ")), upper(" + std::string(tokens_[index + 2].text) + ")) > 0)";
    return true;
  }

  /// Whether the tokens between are the name of one, by which its values are to be ordered instead of by
  /// their letters.
  bool isMeasuredColumn(std::size_t name, std::size_t end) const {
    if (name + 1 != end || !isName(tokens_[name])) return false;
    const KnownColumn* column = columnOf(nameOf(tokens_[name]));
    return column != nullptr && column->values == Values::measured;
  }

  /// Whether it is what ORDER BY orders by.
  bool isOrder(std::size_t index) const {
    const int depth = tokens_[index].depth;
    for (std::size_t before = index; before-- > 0 && tokens_[before].depth >= depth;) {
      if (tokens_[before].depth != depth) continue;
      if (isWord(tokens_[before], "BY")) return isWord(tokens_[before - 1], "ORDER");
      if (isOneOfWords(tokens_[before], {"SELECT", "FROM", "WHERE", "HAVING", "LIMIT"})) return false;
    }
    return false;
  }

  /// IFNULL(name, '') and IFNULL(name, 0): the server takes only values of one type.
  void castFirstOf(std::size_t function, std::size_t close) {
    const std::size_t name = function + 2;
    if (close != function + 5 || !isName(tokens_[name]) || tokens_[name + 1].kind != TokenKind::comma) return;
    const Token& other = tokens_[name + 2];
    const KnownColumn* column = columnOf(nameOf(tokens_[name]));
    const bool isTruth =
        other.kind == TokenKind::number && column != nullptr && column->values == Values::truth;
    if (other.kind != TokenKind::string && !isTruth) return;
    // Not by colons, which who reads the statement on doesn't know.
    replaced_[function + 1] = "(CAST(";
    behind_[name] = isTruth ? " AS integer)" : " AS text)";
  }

  /// IFNULL(name, '') IN ('', x''), behind whose first parenthesis `name` stands and which closes at `close`:
  /// the text of bytes that are none is that of others than bytes, too, and no empty one there.
  void compareWithEmpty(std::size_t name, std::size_t close) {
    const std::size_t in = close + (isWord(tokens_[close + 1], "NOT") ? 2 : 1);
    const std::size_t blob = in + 4;
    if (!isName(tokens_[name]) || !isWord(tokens_[in], "IN") || blob >= tokens_.count()) return;
    if (tokens_[blob].kind != TokenKind::blob || tokens_[blob].text.size() > 3) return;
    if (const KnownColumn* column = columnOf(nameOf(tokens_[name]))) {
      if (column->values != Values::bytes) replaced_[blob] = "''";
      return;
    }
    // The server knows what it is.
    translate(name);
    const std::string own = replaced_[name] ? *replaced_[name] : std::string(tokens_[name].text);
    replaced_[blob] = "CASE WHEN pg_typeof(" + own + ") = CAST('bytea' AS regtype) THEN '\\x' ELSE '' END";
  }

  /// A name before a parenthesis is a function's, but not a table's in front of its list of columns.
  bool isColumnListOf(std::size_t index) const { return isWord(tokens_[index - 1], "INTO"); }

  /// Puts the server's name in the place of one that it has. False when it has none.
  bool replaceKnown(std::size_t index, const std::string& name) {
    if (const KnownColumn* column = columnOf(name)) {
      replaced_[index] = quotedName(column->name);
      if (column->values == Values::truth) translateBooleanBehind(index);
      if (column->values == Values::single) castSingleBehind(index);
      return true;
    }
    if (const auto found = qualifiers_.find(lowerCase(name)); found != qualifiers_.end()) {
      replaced_[index] = found->second;
      return true;
    }
    if (const auto found = aliases_.find(lowerCase(name)); found != aliases_.end()) {
      replaced_[index] = quotedName(found->second);
      return true;
    }
    return false;
  }

  void translateName(std::size_t index) {
    const Token& token = tokens_[index];
    const std::string name = nameOf(token);
    if (isSubscript(index)) return;
    if (isDefined(index) || isTable_[index]) {
      replaced_[index] = quotedName(name);
      return;
    }
    if (replaceKnown(index, name)) return;
    const Token& before = tokens_[index - 1];
    const bool standsForValue = before.kind == TokenKind::op || before.kind == TokenKind::comma ||
                                before.kind == TokenKind::open ||
                                isOneOfWords(before, {"LIKE", "BETWEEN", "AND", "THEN", "ELSE", "IS", "NOT"});
    const bool isText = token.text.front() == '"' && standsForValue &&
                        tokens_[index + 1].kind != TokenKind::dot && !isWord(tokens_[0], "CREATE") &&
                        !isWord(tokens_[0], "ALTER");
    replaced_[index] = isText ? quotedText(name) : quotedName(name);
  }

  /// value[1], which is no name in brackets.
  bool isSubscript(std::size_t index) const {
    const std::string_view text = tokens_[index].text;
    if (index == 0 || text.front() != '[') return false;
    const std::string_view before = tokens_[index - 1].text;
    const bool isBeside = before.data() + before.size() == text.data();
    const bool isValue = tokens_[index - 1].kind == TokenKind::close ||
                         (isName(tokens_[index - 1]) && !isReserved(tokens_[index - 1]));
    return isBeside && isValue && text.find_first_not_of("[]0123456789:,'") == std::string_view::npos;
  }

  /// bool = 1.
  void translateBooleanBehind(std::size_t index) {
    const std::string_view sign = tokens_[index + 1].text;
    if (sign != "=" && sign != "==" && sign != "<>" && sign != "!=") return;
    const Token& number = tokens_[index + 2];
    if (number.text == "0" || number.text == "1")
      replaced_[index + 2] = number.text == "1" ? "TRUE" : "FALSE";
  }

  /// single = 0.1, which the server would take for the nearest number of 64 bits, that no single is.
  void castSingleBehind(std::size_t index) {
    const std::string_view sign = tokens_[index + 1].text;
    constexpr std::array<std::string_view, 8> kComparisons{"=", "==", "<>", "!=", "<", ">", "<=", ">="};
    if (std::find(kComparisons.begin(), kComparisons.end(), sign) == kComparisons.end()) return;
    const std::size_t number = index + (tokens_[index + 2].text == "-" ? 3 : 2);
    if (tokens_[number].kind != TokenKind::number) return;
    const std::string text(tokens_[number].text);
    const double value = std::strtod(text.c_str(), nullptr);
    using Limits = std::numeric_limits<float>;
    if (value > Limits::max() || (value < Limits::min() && value != 0)) return;
    replaced_[number] = "CAST(" + text + " AS real)";
  }

  /// WHERE 0.
  bool isCondition(std::size_t index) const {
    const Token& number = tokens_[index];
    const Token& next = tokens_[index + 1];
    return isWord(tokens_[index - 1], "WHERE") && (number.text == "0" || number.text == "1") &&
           (next.kind == TokenKind::end || next.kind == TokenKind::close ||
            isOneOfWords(next, {"AND", "OR", "GROUP", "ORDER", "LIMIT"}));
  }

  void translateNumber(std::size_t index) {
    if (isCondition(index)) replaced_[index] = tokens_[index].text == "1" ? "TRUE" : "FALSE";
    if (!isWord(tokens_[0], "INSERT") || tokens_[index].depth == 0) return;
    const auto ends = [](const Token& token) {
      return token.kind == TokenKind::comma || token.kind == TokenKind::open ||
             token.kind == TokenKind::close;
    };
    const bool isAlone = ends(tokens_[index - 1]) && ends(tokens_[index + 1]);
    if (!isAlone || !isInValues(index)) return;
    replaced_[index] = quotedText(tokens_[index].text);
  }

  bool isInValues(std::size_t index) const {
    if (tokens_[index].depth != 1) return false;
    for (std::size_t before = index; before-- > 0;) {
      if (tokens_[before].depth != 0) continue;
      if (isWord(tokens_[before], "VALUES")) return true;
      if (tokens_[before].kind == TokenKind::word) return false;
    }
    return false;
  }

  std::string joined() const {
    std::string text;
    const char* end = sql_.data();
    for (std::size_t index = 0; index < tokens_.count(); ++index) {
      const std::string_view own = tokens_[index].text;
      text.append(end, static_cast<std::size_t>(own.data() - end));
      text += replaced_[index] ? *replaced_[index] : std::string(own);
      text += behind_[index];
      end = own.data() + own.size();
    }
    return text;
  }

  std::string_view sql_;
  const Tokens& tokens_;
  NameSource& names_;
  Form form_;
  std::vector<std::optional<std::string>> replaced_;
  std::vector<std::string> behind_;  // what follows the token
  std::vector<bool> isTable_;
  std::map<std::string, std::vector<KnownColumn>> columns_;  // by lower case
  std::map<std::string, std::string> qualifiers_;            // by lower case: how a column's table is called
  std::map<std::string, std::string> aliases_;               // by lower case
};

Status translated(std::string_view sql, NameSource& names, Form form, std::string* result) {
  const Tokens tokens(sql);
  for (std::size_t index = 0; index < tokens.count(); ++index) {
    if (tokens[index].kind == TokenKind::semicolon) {
      return {ErrorCode::errorsInCommand, "Only one statement can be run at a time."};
    }
  }
  if (sql.find('\0') != std::string_view::npos) {
    return {ErrorCode::errorsInCommand, "A statement can't hold a zero character."};
  }
  return Translation(sql, tokens, names, form).run(result);
}

}  // namespace

Status toServerSql(std::string_view sql, NameSource& names, std::string* serverSql) {
  return translated(sql, names, Form::toRun, serverSql);
}

Status toReadableSql(std::string_view sql, NameSource& names, std::string* readableSql) {
  return translated(sql, names, Form::toRead, readableSql);
}

bool changesRows(std::string_view sql) {
  const Tokens tokens(sql);
  if (!isWord(tokens[0], "WITH")) return false;
  for (std::size_t index = 1; index < tokens.count(); ++index) {
    if (tokens[index].depth != 0) continue;
    if (isOneOfWords(tokens[index], {"INSERT", "UPDATE", "DELETE"})) return true;
    if (isOneOfWords(tokens[index], {"SELECT", "VALUES"})) return false;
  }
  return false;
}

bool namesTable(std::string_view sql) {
  const Tokens tokens(sql);
  for (std::size_t index = 0; index < tokens.count(); ++index) {
    if (isWord(tokens[index], "FROM")) return true;
  }
  return false;
}

}  // namespace store
