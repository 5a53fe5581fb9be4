#include "platform/store/sql/create_table.h"

#include <algorithm>
#include <iterator>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"

namespace store {
namespace {

constexpr std::string_view kTypeNames[] = {"bigint",
                                           "bit",
                                           "blob",
                                           "boolean",
                                           "date",
                                           "datetime",
                                           "double",
                                           "float",
                                           "image",
                                           "int",
                                           "integer",
                                           "long varbinary",
                                           "memo",
                                           "real",
                                           "smallint",
                                           "text",
                                           "time",
                                           "timestamp",
                                           "varbinary",
                                           "varchar",
                                           "bigint unsigned",
                                           "int unsigned",
                                           "integer unsigned",
                                           "smallint unsigned",
                                           "unsigned bigint",
                                           "unsigned int",
                                           "unsigned integer",
                                           "unsigned smallint"};

bool isTypeName(std::string_view words) {
  return std::find(std::begin(kTypeNames), std::end(kTypeNames), words) != std::end(kTypeNames);
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t skipBlanks(std::string_view text, std::size_t index) {
  while (index < text.size() && isSqlBlank(text[index])) ++index;
  return index;
}

/// The type of an entry, and where the entry ends.
struct EntryType {
  std::string_view type;  // as spelled
  std::size_t end;        // the index of the comma behind it, or the list's size
};

/// The "(n)" that may follow a type name: the index behind it, or `index` when there is none.
std::size_t skipLength(std::string_view list, std::size_t index) {
  const std::size_t open = skipBlanks(list, index);
  if (open == list.size() || list[open] != '(') return index;
  const std::size_t digits = skipBlanks(list, open + 1);
  std::size_t digitsEnd = digits;
  while (digitsEnd < list.size() && isDigit(list[digitsEnd])) ++digitsEnd;
  const std::size_t close = skipBlanks(list, digitsEnd);
  if (digitsEnd == digits || close == list.size() || list[close] != ')') return index;
  return close + 1;
}

/// A type of the handheld that begins at `index`, behind blanks or none, and reaches to the next comma
/// or to the end of the list.
std::optional<EntryType> readType(std::string_view list, std::size_t index) {
  const std::size_t begin = skipBlanks(list, index);
  std::string words;
  std::size_t end = begin;
  std::size_t i = begin;
  for (int wordCount = 0; wordCount < 2 && i < list.size() && isLetter(list[i]); ++wordCount) {
    if (wordCount > 0) words.push_back(' ');
    const std::size_t wordBegin = i;
    while (i < list.size() && isLetter(list[i])) ++i;
    words.append(list.substr(wordBegin, i - wordBegin));
    end = i;
    i = skipBlanks(list, i);
  }
  if (!isTypeName(lowerCase(words))) return std::nullopt;
  end = skipLength(list, end);
  const std::size_t entryEnd = skipBlanks(list, end);
  if (entryEnd < list.size() && list[entryEnd] != ',') return std::nullopt;
  return EntryType{.type = list.substr(begin, end - begin), .end = entryEnd};
}

/// The quote that ends the name which begins at `index`, by the rules of SQL.
std::size_t findClosingQuote(std::string_view list, std::size_t index) {
  const char close = closingQuote(list[index]);
  for (std::size_t i = index + 1; i < list.size(); ++i) {
    if (list[i] != close) continue;
    if (close == ']' || i + 1 == list.size() || list[i + 1] != close) return i;
    ++i;
  }
  return std::string_view::npos;
}

/// Behind the name that begins at `index`: one in quotes, or a word, with which SQL may mean something else.
/// `index` when there is none.
std::size_t skipName(std::string_view list, std::size_t index) {
  if (isOpeningQuote(list[index])) {
    const std::size_t close = findClosingQuote(list, index);
    return close == std::string_view::npos ? index : close + 1;
  }
  while (index < list.size() && isNamePart(list[index])) ++index;
  return index;
}

/// The list in SQLite's SQL, or nothing when one of its entries is not a name and a type of the handheld.
std::optional<std::string> readColumns(std::string_view list) {
  std::string sql;
  for (std::size_t index = 0;; ++index) {
    index = skipBlanks(list, index);
    if (index == list.size()) return std::nullopt;
    const std::size_t nameEnd = skipName(list, index);
    const std::string_view name = list.substr(index, nameEnd - index);
    const bool isWordAlone = !name.empty() && !isOpeningQuote(name[0]);
    if (name.empty() || (isWordAlone && nameEnd < list.size() && !isSqlBlank(list[nameEnd]))) {
      return std::nullopt;
    }
    const std::optional<EntryType> type = readType(list, nameEnd);
    if (!type) return std::nullopt;
    if (!sql.empty()) sql += ", ";
    sql += quotedName(isWordAlone ? std::string(name) : unquoted(name));
    sql += ' ';
    sql += type->type;
    index = type->end;
    if (index == list.size()) return sql;
  }
}

/// Whether the tokens from `first` up to a semicolon or the end are table options or nothing.
bool areTableOptions(const Tokens& tokens, std::size_t first) {
  const auto isEnd = [&tokens](std::size_t i) {
    return tokens[i].kind == TokenKind::end || tokens[i].kind == TokenKind::semicolon;
  };
  if (isEnd(first)) return true;
  for (std::size_t i = first;; ++i) {
    if (isWord(tokens[i], "WITHOUT") && isWord(tokens[i + 1], "ROWID")) {
      i += 2;
    } else if (isWord(tokens[i], "STRICT")) {
      ++i;
    } else {
      return false;
    }
    if (isEnd(i)) return true;
    if (tokens[i].kind != TokenKind::comma) return false;
  }
}

/// The parenthesis that closes the column list, when SQL reads the list and what follows it as a
/// CREATE TABLE statement may have them; otherwise 0. The first token opens the list.
std::size_t findListEnd(const Tokens& tokens) {
  for (std::size_t i = 1; i < tokens.count(); ++i) {
    if (tokens[i].kind == TokenKind::close && tokens[i].depth == 0) {
      return areTableOptions(tokens, i + 1) ? i : 0;
    }
  }
  return 0;
}

/// Whether a comment stands between the tokens `first` and `last`.
bool hasComment(const Tokens& tokens, std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) {
    const std::string_view both = tokens.slice(i, i + 2);
    const std::string_view gap =
        both.substr(tokens[i].text.size(), both.size() - tokens[i].text.size() - tokens[i + 1].text.size());
    if (gap.find_first_of("-/") != std::string_view::npos) return true;
  }
  return false;
}

std::size_t indexIn(std::string_view text, std::string_view part) {
  return static_cast<std::size_t>(part.data() - text.data());
}

/// The column list and the options behind it, rewritten. `text` begins with the parenthesis and reaches
/// to the end of the statement. Nothing when the list is to pass unchanged.
std::optional<std::string> readColumnList(std::string_view text) {
  const Tokens tokens(text);
  const std::size_t close = findListEnd(tokens);
  if (close == 0 || hasComment(tokens, 0, close)) return std::nullopt;
  const std::size_t listEnd = indexIn(text, tokens[close].text);
  const std::optional<std::string> columns = readColumns(text.substr(1, listEnd - 1));
  if (!columns) return std::nullopt;
  std::string sql = '(' + *columns + ')';
  const std::string_view options = tokens.slice(close + 1, tokens.countWithoutSemicolons());
  if (!options.empty()) sql.append(" ").append(options);
  return sql;
}

}  // namespace

std::optional<std::string> readCreateTable(std::string_view text, const Tokens& tokens, std::size_t first) {
  const Token& name = tokens[first + 2];
  const Token& open = tokens[first + 3];
  if (!isName(name) || open.kind != TokenKind::open) return std::nullopt;
  const auto columns = readColumnList(text.substr(indexIn(text, open.text)));
  if (!columns) return std::nullopt;
  return "CREATE TABLE " + quotedName(nameOf(name)) + ' ' + *columns;
}

}  // namespace store
