#include "platform/store/sql/create_table.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"

namespace store {
namespace {

// How many quotes before a parenthesis are tried as the end of the table's name. A name that holds
// such a pair itself is rare, and each trial reads the rest of the statement.
constexpr int kMaxNameEndCount = 8;

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
/// or to the end of the list. Never reads beyond a quote, which keeps repeated calls linear.
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

struct Entry {
  std::string name;
  EntryType type;
  bool needsPlainForm = false;  // SQL has another reading of it
};

/// Reads a column list entry by entry.
class ColumnListReader {
 public:
  /// `signs` are the indices in `list` of the commas and parentheses that SQL sees there, in order; none
  /// when it can't read the list. `hasPlainName`: the table's name is in single quotes.
  ColumnListReader(std::string_view list, std::vector<std::size_t> signs, bool hasPlainName)
      : list_(list), signs_(std::move(signs)), hasPlainName_(hasPlainName) {}

  /// The list in SQLite's SQL, or nothing when one of its entries is not a name and a type of the
  /// handheld, or when SQL reads it otherwise and the application would not have written it so.
  std::optional<std::string> read() const;

 private:
  std::optional<Entry> readEntry(std::size_t begin) const;
  std::optional<Entry> readQuoted(std::size_t begin, std::size_t end) const;
  std::optional<Entry> readBare(std::size_t begin) const;
  std::optional<Entry> readPlainlyQuoted(std::size_t begin, std::size_t sqlEnd) const;
  std::size_t findClosingQuote(std::size_t index) const;
  bool hasSign(std::size_t begin, std::size_t end) const;

  std::string_view list_;
  std::vector<std::size_t> signs_;
  bool hasPlainName_;
};

std::optional<std::string> ColumnListReader::read() const {
  std::string sql;
  bool isPlainForm = hasPlainName_;
  bool needsPlainForm = false;
  for (std::size_t index = 0;; ++index) {
    index = skipBlanks(list_, index);
    if (index == list_.size()) return std::nullopt;
    const std::optional<Entry> entry = readEntry(index);
    if (!entry) return std::nullopt;
    needsPlainForm = needsPlainForm || entry->needsPlainForm;
    if (!sql.empty()) sql += ", ";
    sql += quotedName(entry->name);
    sql += ' ';
    sql += entry->type.type;
    index = entry->type.end;
    if (index == list_.size()) break;
    isPlainForm = isPlainForm && isSqlBlank(list_[index - 1]);
  }
  if (needsPlainForm && !isPlainForm) return std::nullopt;
  return sql;
}

/// The entry that begins at `begin`, which is no blank.
std::optional<Entry> ColumnListReader::readEntry(std::size_t begin) const {
  if (!isOpeningQuote(list_[begin])) return readBare(begin);
  const std::size_t end = findClosingQuote(begin);
  std::optional<Entry> entry;
  if (end != std::string_view::npos) entry = readQuoted(begin, end);
  if (!entry && list_[begin] == '\'') entry = readBare(begin);
  if (!entry) entry = readPlainlyQuoted(begin, end);
  return entry;
}

/// A name between the quotes at `begin` and `end`.
std::optional<Entry> ColumnListReader::readQuoted(std::size_t begin, std::size_t end) const {
  const std::optional<EntryType> type = readType(list_, end + 1);
  if (!type) return std::nullopt;
  return Entry{.name = unquoted(list_.substr(begin, end + 1 - begin)), .type = *type};
}

/// A name that reaches to the first blank.
std::optional<Entry> ColumnListReader::readBare(std::size_t begin) const {
  std::size_t end = begin;
  while (end < list_.size() && !isSqlBlank(list_[end])) ++end;
  const std::optional<EntryType> type = readType(list_, end);
  const std::string_view name = list_.substr(begin, end - begin);
  if (!type || (isOpeningQuote(name[0]) && hasSign(begin, end))) return std::nullopt;
  return Entry{
      .name = std::string(name), .type = *type, .needsPlainForm = name.find(',') != std::string_view::npos};
}

/// A quoted name that holds such quotes itself: it ends at the first one that a blank and a type follow.
/// `sqlEnd` is where SQL ends it.
std::optional<Entry> ColumnListReader::readPlainlyQuoted(std::size_t begin, std::size_t sqlEnd) const {
  // A letter behind a quote is an apostrophe's; SQL has a blank there, or a sign.
  const bool isApostrophe = sqlEnd < list_.size() - 1 && isNamePart(list_[sqlEnd + 1]);
  const char close = closingQuote(list_[begin]);
  std::size_t end = list_.find(close, begin + 1);
  for (; end != std::string_view::npos; end = list_.find(close, end + 1)) {
    if (end + 1 == list_.size() || !isSqlBlank(list_[end + 1])) continue;
    std::optional<Entry> entry = readQuoted(begin, end);
    if (!entry) continue;
    entry->needsPlainForm = hasSign(begin, end);
    if (entry->needsPlainForm && !isApostrophe) return std::nullopt;
    return entry;
  }
  return std::nullopt;
}

/// The quote that ends the name which begins at `index`, by the rules of SQL.
std::size_t ColumnListReader::findClosingQuote(std::size_t index) const {
  const char close = closingQuote(list_[index]);
  for (std::size_t i = index + 1; i < list_.size(); ++i) {
    if (list_[i] != close) continue;
    if (close == ']' || i + 1 == list_.size() || list_[i + 1] != close) return i;
    ++i;
  }
  return std::string_view::npos;
}

bool ColumnListReader::hasSign(std::size_t begin, std::size_t end) const {
  const auto sign = std::lower_bound(signs_.begin(), signs_.end(), begin);
  return sign != signs_.end() && *sign < end;
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

/// The indices in `list` of the commas and parentheses between the first token and the token `last`.
std::vector<std::size_t> findSigns(std::string_view list, const Tokens& tokens, std::size_t last) {
  std::vector<std::size_t> signs;
  for (std::size_t i = 1; i < last; ++i) {
    const TokenKind kind = tokens[i].kind;
    if (kind == TokenKind::comma || kind == TokenKind::open || kind == TokenKind::close) {
      signs.push_back(indexIn(list, tokens[i].text));
    }
  }
  return signs;
}

/// The column list and the options behind it, rewritten. `text` begins with the parenthesis and reaches
/// to the end of the statement. Nothing when the list is to pass unchanged.
std::optional<std::string> readColumnList(std::string_view text, bool hasPlainName) {
  const Tokens tokens(text);
  std::size_t listEnd = 0;
  std::vector<std::size_t> signs;
  std::string_view options;
  if (const std::size_t close = findListEnd(tokens); close != 0) {
    if (hasComment(tokens, 0, close)) return std::nullopt;
    listEnd = indexIn(text, tokens[close].text);
    signs = findSigns(text.substr(1), tokens, close);
    options = tokens.slice(close + 1, tokens.countWithoutSemicolons());
  } else {
    // Apostrophes or signs in bare names lead SQL astray: the list then reaches to the last parenthesis.
    listEnd = text.rfind(')');
    if (listEnd == std::string_view::npos) return std::nullopt;
    const Tokens rest(text.substr(listEnd + 1));
    if (!areTableOptions(rest, 0)) return std::nullopt;
    options = rest.slice(0, rest.countWithoutSemicolons());
  }
  const ColumnListReader reader(text.substr(1, listEnd - 1), std::move(signs), hasPlainName);
  const std::optional<std::string> columns = reader.read();
  if (!columns) return std::nullopt;
  std::string sql = '(' + *columns + ')';
  if (!options.empty()) sql.append(" ").append(options);
  return sql;
}

/// The first quote from `index` on that a parenthesis follows. `text` begins with the opening quote.
std::size_t findNameEnd(std::string_view text, std::size_t index) {
  const char close = closingQuote(text[0]);
  for (std::size_t end = text.find(close, index); end != std::string_view::npos;
       end = text.find(close, end + 1)) {
    const std::size_t open = skipBlanks(text, end + 1);
    if (open < text.size() && text[open] == '(') return end;
  }
  return std::string_view::npos;
}

std::string createTableSql(const std::string& name, std::string_view columnsAndOptions) {
  return "CREATE TABLE " + quotedName(name) + ' ' + std::string(columnsAndOptions);
}

/// Reads a statement by its quotes alone: the name ends at the first one behind which a column list
/// follows that fits. `text` begins with the opening quote.
std::optional<std::string> readByQuotes(std::string_view text) {
  const char close = closingQuote(text[0]);
  int triedCount = 0;
  for (std::size_t end = findNameEnd(text, 1); end != std::string_view::npos && triedCount < kMaxNameEndCount;
       end = findNameEnd(text, end + 1)) {
    const std::string_view list = text.substr(skipBlanks(text, end + 1));
    if (const auto columns = readColumnList(list, close == '\'')) {
      return createTableSql(unquoted(text.substr(0, end + 1)), *columns);
    }
    ++triedCount;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> readCreateTable(std::string_view text, const Tokens& tokens, std::size_t first) {
  const Token& name = tokens[first + 2];
  const Token& next = tokens[first + 3];
  const bool isWhole = isName(name) && next.kind == TokenKind::open;
  if (isWhole) {
    const std::string_view list = text.substr(indexIn(text, next.text));
    if (const auto columns = readColumnList(list, name.text[0] == '\'')) {
      return createTableSql(nameOf(name), *columns);
    }
    if (findListEnd(Tokens(list)) != 0) return std::nullopt;
  }
  if (name.text.empty() || !isOpeningQuote(name.text[0])) return std::nullopt;
  const bool isSchema = next.kind == TokenKind::dot && isName(tokens[first + 4]);
  const bool isQuery = isWord(next, "AS") && isOneOfWords(tokens[first + 4], {"SELECT", "WITH", "VALUES"});
  if (isSchema || isQuery) return std::nullopt;

  const std::string_view quoted = text.substr(indexIn(text, name.text));
  std::optional<std::string> sql = readByQuotes(quoted);
  const std::size_t end = findNameEnd(quoted, 1);
  if (!sql && !isWhole && end != std::string_view::npos) {
    // The name alone is in the dialect.
    const Tokens list(quoted.substr(end + 1));
    sql = createTableSql(unquoted(quoted.substr(0, end + 1)), list.slice(0, list.countWithoutSemicolons()));
  }
  return sql;
}

}  // namespace store
