#include "platform/store/odbc/dialect/server_definition.h"

#include <array>
#include <set>
#include <vector>

#include "platform/store/odbc/dialect/server_names.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/field_type.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {

namespace {

/// Types of the handheld and of SQLite's users that the server doesn't have, or that are something else
/// there.
struct OtherType {
  std::string_view name;
  std::string_view serverType;
  bool keepsSize = false;
};
constexpr std::array<OtherType, 36> kOtherTypes{{
    {"bit", "boolean"},
    {"bool", "boolean"},
    {"datetime", "timestamp"},
    {"datetime2", "timestamp"},
    {"smalldatetime", "timestamp"},
    {"double", "double precision"},
    {"float", "double precision"},
    {"real", "double precision"},
    {"tinyint", "smallint"},
    {"int16", "smallint"},
    {"int32", "integer"},
    {"mediumint", "integer"},
    {"int64", "bigint"},
    {"unsigned smallint", "integer"},
    {"smallint unsigned", "integer"},
    {"uint16", "integer"},
    {"unsigned int", "bigint"},
    {"int unsigned", "bigint"},
    {"unsigned integer", "bigint"},
    {"integer unsigned", "bigint"},
    {"unsigned", "bigint"},
    {"uint32", "bigint"},
    {"nvarchar", "varchar", true},
    {"varchar2", "varchar", true},
    {"nchar", "char", true},
    {"ntext", "text"},
    {"memo", "text"},
    {"clob", "text"},
    {"longtext", "text"},
    {"long text", "text"},
    {"varbinary", "bytea"},
    {"binary", "bytea"},
    {"long varbinary", "bytea"},
    {"image", "bytea"},
    {"blob", "bytea"},
    {"longblob", "bytea"},
}};

bool beginsConstraint(const Token& token) {
  return isOneOfWords(token, {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN", "EXCLUDE", "LIKE"});
}

bool endsType(const Token& token) {
  return isOneOfWords(token, {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "NOT", "NULL", "DEFAULT", "COLLATE",
                              "REFERENCES", "GENERATED", "AUTOINCREMENT", "AS"});
}

/// Words of a type, lower case with one blank between them.
std::string wordsOf(std::string_view type) {
  std::string words;
  bool isApart = false;
  for (const char sign : type.substr(0, type.find('('))) {
    if (isSqlBlank(sign)) {
      isApart = !words.empty();
      continue;
    }
    if (isApart) words += ' ';
    isApart = false;
    words += sign;
  }
  return lowerCase(words);
}

class Definition {
 public:
  Definition(const Tokens& tokens, std::size_t list, std::size_t close)
      : tokens_(tokens), list_(list), close_(close) {}

  std::string translated() {
    findColumns();
    // "table name", which may be in two parts.
    std::string sql;
    for (std::size_t index = 0; index < list_; ++index) {
      const bool isPart = index > 0 && isName(tokens_[index]) && index >= nameIndex();
      sql += isPart ? quotedName(nameOf(tokens_[index])) : std::string(tokens_[index].text);
      if (tokens_[index].kind != TokenKind::dot && tokens_[index + 1].kind != TokenKind::dot) sql += ' ';
    }
    sql += '(';
    std::size_t first = list_ + 1;
    bool hasKey = false;
    for (std::size_t index = first; index <= close_; ++index) {
      const bool isEnd =
          index == close_ || (tokens_[index].kind == TokenKind::comma && tokens_[index].depth == 1);
      if (isWord(tokens_[index], "PRIMARY") && isWord(tokens_[index + 1], "KEY")) hasKey = true;
      if (!isEnd) continue;
      if (first != list_ + 1) sql += ", ";
      sql += entry(first, index);
      first = index + 1;
    }
    if (!hasKey) {
      sql += (close_ == list_ + 1 ? "" : ", ") + quotedName(kHiddenKey) +
             " bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY";
    }
    // What may follow (WITHOUT ROWID, STRICT) is about the other store.
    return sql + ")";
  }

 private:
  /// Where the table's name begins.
  std::size_t nameIndex() const {
    std::size_t index = list_ - 1;
    while (index > 1 && tokens_[index - 1].kind == TokenKind::dot) index -= 2;
    return index;
  }

  void findColumns() {
    bool isFirst = true;
    for (std::size_t index = list_ + 1; index < close_; ++index) {
      if (isFirst && isName(tokens_[index]) && !beginsConstraint(tokens_[index]))
        columns_.insert(nameOf(tokens_[index]));
      isFirst = tokens_[index].kind == TokenKind::comma && tokens_[index].depth == 1;
    }
  }

  std::string nameAt(std::size_t index) const {
    const std::string name = nameOf(tokens_[index]);
    for (const std::string& column : columns_) {
      if (equalsIgnoringCase(column, name)) return quotedName(column);
    }
    return tokens_[index].kind == TokenKind::word ? std::string(tokens_[index].text) : quotedName(name);
  }

  /// The tokens [first, last) with the names of columns as they are declared.
  std::string rest(std::size_t first, std::size_t last) const {
    std::string text;
    for (std::size_t index = first; index < last; ++index) {
      if (isWord(tokens_[index], "AUTOINCREMENT")) continue;
      text += ' ';
      text += isName(tokens_[index]) && !endsType(tokens_[index]) ? nameAt(index)
                                                                  : std::string(tokens_[index].text);
    }
    return text;
  }

  std::string entry(std::size_t first, std::size_t last) const {
    if (!isName(tokens_[first]) || beginsConstraint(tokens_[first])) return rest(first, last);
    std::size_t end = first + 1;
    while (end < last && !(tokens_[end].depth == 1 && endsType(tokens_[end]))) ++end;
    const std::string_view declared = tokens_.slice(first + 1, end);
    std::string text = quotedName(nameOf(tokens_[first])) + ' ' + serverTypeFor(declared);
    const bool isKey = isWord(tokens_[end], "PRIMARY") && isWord(tokens_[end + 1], "KEY");
    if (isKey && wordsOf(declared) == "integer") text += " GENERATED BY DEFAULT AS IDENTITY";
    return text + rest(end, last);
  }

  const Tokens& tokens_;
  std::size_t list_;
  std::size_t close_;
  std::set<std::string> columns_;
};

}  // namespace

std::string serverTypeFor(std::string_view declaredType) {
  const std::string words = wordsOf(declaredType);
  if (words.empty()) return "text";
  for (const OtherType& type : kOtherTypes) {
    if (type.name != words) continue;
    const std::size_t size = declaredType.find('(');
    const bool hasSize = type.keepsSize && size != std::string_view::npos;
    return std::string(type.serverType) +
           std::string(hasSize ? declaredType.substr(size) : std::string_view());
  }
  return std::string(declaredType);
}

std::optional<std::string> toServerDefinition(std::string_view sql) {
  const Tokens tokens(sql);
  if (!isWord(tokens[0], "CREATE") || tokens.hasIllegal()) return std::nullopt;
  const bool isTemporary = isOneOfWords(tokens[1], {"TEMP", "TEMPORARY"});
  if (!isWord(tokens[isTemporary ? 2 : 1], "TABLE")) return std::nullopt;
  std::size_t list = 0;
  while (list < tokens.count() && tokens[list].kind != TokenKind::open) {
    if (isWord(tokens[list++], "AS")) return std::nullopt;
  }
  std::size_t close = list + 1;
  while (close < tokens.count() && !(tokens[close].kind == TokenKind::close && tokens[close].depth == 0))
    ++close;
  if (list < 2 || close >= tokens.count()) return std::nullopt;
  return Definition(tokens, list, close).translated();
}

}  // namespace store
