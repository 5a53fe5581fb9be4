#include "platform/store/sql/dialect.h"

#include <utility>

#include "platform/store/sql/create_table.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {
namespace {

StatementKind kindOf(const Token& verb, const Token& next) {
  if (isOneOfWords(verb, {"SELECT", "WITH", "VALUES"})) return StatementKind::select;
  if (isOneOfWords(verb, {"INSERT", "UPDATE", "DELETE", "REPLACE"})) return StatementKind::change;
  if (isOneOfWords(verb, {"CREATE", "DROP", "ALTER", "REINDEX", "ANALYZE"}) && !isWord(next, "DATABASE")) {
    return StatementKind::definition;
  }
  return StatementKind::other;
}

/// The part of `text` from the token on.
std::string_view textFrom(std::string_view text, const Token& token) {
  return text.substr(static_cast<std::size_t>(token.text.data() - text.data()));
}

/// The quoted name that begins with the token and reaches to the last such quote of `text`. Nothing
/// when something but semicolons and comments follows there.
std::optional<std::string> readToLastQuote(std::string_view text, const Token& token) {
  if (token.text.empty() || !isOpeningQuote(token.text[0])) return std::nullopt;
  const std::string_view quoted = textFrom(text, token);
  const std::size_t end = quoted.rfind(closingQuote(quoted[0]));
  if (end == 0 || end == std::string_view::npos) return std::nullopt;
  if (Tokens(quoted.substr(end + 1)).countWithoutSemicolons() != 0) return std::nullopt;
  return unquoted(quoted.substr(0, end + 1));
}

std::optional<std::string> readDropTable(std::string_view text, const Tokens& tokens, std::size_t first) {
  std::size_t name = first + 2;
  if (isWord(tokens[name], "IF") && isWord(tokens[name + 1], "EXISTS")) name += 2;
  // 'main'.'t' is a name in two parts.
  if (isName(tokens[name]) && tokens[name + 1].kind == TokenKind::dot && isName(tokens[name + 2])) {
    return std::nullopt;
  }
  const bool isWhole = isName(tokens[name]) && tokens[name].kind != TokenKind::word &&
                       tokens.countWithoutSemicolons() == name + 1;
  const std::optional<std::string> table =
      isWhole ? nameOf(tokens[name]) : readToLastQuote(text, tokens[name]);
  if (!table) return std::nullopt;
  return std::string(tokens.slice(first, name)) + ' ' + quotedName(*table);
}

std::optional<std::string> readSelectAll(std::string_view text, const Tokens& tokens, std::size_t first) {
  const std::size_t name = first + 3;
  const bool isSelectAll = tokens[first + 1].text == "*" && isWord(tokens[first + 2], "FROM") &&
                           tokens[name].text.starts_with('[');
  // A bracket too many is what SQL can't read; all else keeps its meaning.
  if (!isSelectAll || !tokens.hasIllegal()) return std::nullopt;
  const std::optional<std::string> table = readToLastQuote(text, tokens[name]);
  if (!table) return std::nullopt;
  return std::string(tokens.slice(first, name)) + ' ' + quotedName(*table);
}

/// Fills `statement` and returns true when it creates or drops a database.
bool readDatabaseStatement(std::string_view text, const Tokens& tokens, std::size_t first,
                           Statement* statement) {
  const bool creates = isWord(tokens[first], "CREATE");
  if (!creates && !isWord(tokens[first], "DROP")) return false;
  if (!isWord(tokens[first + 1], "DATABASE")) return false;
  std::optional<std::string> path = readToLastQuote(text, tokens[first + 2]);
  if (!path) return false;
  *statement = {.kind = creates ? StatementKind::createDatabase : StatementKind::dropDatabase,
                .sql = {},
                .path = std::move(*path),
                .takesFromTables = false};
  return true;
}

std::optional<std::string> readDialect(std::string_view text, const Tokens& tokens, std::size_t first) {
  if (isWord(tokens[first], "SELECT")) return readSelectAll(text, tokens, first);
  if (!isWord(tokens[first + 1], "TABLE")) return std::nullopt;
  if (isWord(tokens[first], "CREATE")) return readCreateTable(text, tokens, first);
  if (isWord(tokens[first], "DROP")) return readDropTable(text, tokens, first);
  return std::nullopt;
}

/// Whether the token is the type of a column that is called memo. `list` is the parenthesis that opens the
/// list of columns in CREATE TABLE.
bool isMemoType(const Tokens& tokens, std::size_t index, std::size_t list) {
  const Token& name = tokens[index - 1];
  if (!isWord(tokens[index], "MEMO") || !isName(name) || isOneOfWords(name, {"CONSTRAINT", "COLUMN"})) {
    return false;
  }
  const Token& before = tokens[index - 2];
  if (isWord(tokens[0], "ALTER")) return isOneOfWords(before, {"ADD", "COLUMN"});
  return index == list + 2 || (index > list && before.kind == TokenKind::comma && before.depth == 1);
}

/// A CREATE TABLE or ALTER TABLE statement with text for memo.
std::string withTextForMemo(const std::string& sql) {
  const Tokens tokens(sql);
  std::size_t list = 0;
  while (list < tokens.count() && tokens[list].kind != TokenKind::open) {
    // The columns of a SELECT have no types.
    if (isWord(tokens[list++], "AS")) return sql;
  }
  std::string changed;
  std::size_t first = 0;
  for (std::size_t index = 2; index < tokens.count(); ++index) {
    if (!isMemoType(tokens, index, list)) continue;
    changed.append(tokens.slice(first, index)).append(" text ");
    first = index + 1;
  }
  return first == 0 ? sql : changed.append(tokens.slice(first, tokens.count()));
}

}  // namespace

Status readStatement(std::string_view text, Statement* statement) {
  const Tokens tokens(text);
  std::size_t first = 0;
  while (tokens[first].kind == TokenKind::semicolon) ++first;
  if (first == tokens.count()) return {ErrorCode::noCommand, "The statement is empty."};

  // SQLite reads no further than a zero character, so a text with one is no statement of the dialect.
  const bool hasZero = text.find('\0') != std::string_view::npos;
  if (!hasZero && readDatabaseStatement(text, tokens, first, statement)) return {};
  std::optional<std::string> sql;
  if (!hasZero) sql = readDialect(text, tokens, first);
  if (!sql) sql = tokens.slice(first, tokens.countWithoutSemicolons());
  const bool defines = isOneOfWords(tokens[first], {"CREATE", "ALTER"}) && isWord(tokens[first + 1], "TABLE");
  if (defines && !hasZero) sql = withTextForMemo(*sql);
  const bool takes =
      isWord(tokens[first], "ALTER") || (isWord(tokens[first], "DROP") && isWord(tokens[first + 1], "TABLE"));
  *statement = {.kind = kindOf(tokens[first], tokens[first + 1]),
                .sql = std::move(*sql),
                .path = {},
                .takesFromTables = takes};
  return {};
}

std::string quotedName(std::string_view name) {
  std::string quoted;
  quoted.reserve(name.size() + 2);
  quoted.push_back('"');
  for (const char c : name) {
    if (c == '"') quoted.push_back('"');
    quoted.push_back(c);
  }
  quoted.push_back('"');
  return quoted;
}

std::string quotedText(std::string_view text) {
  std::string quoted = "'";
  for (const char sign : text) {
    quoted += sign;
    if (sign == '\'') quoted += sign;
  }
  return quoted + "'";
}

}  // namespace store
