#include "platform/store/odbc/dialect/column_list.h"

#include <algorithm>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {

namespace {

/// The server's name of a token: bare ones are in lower case there.
std::string serverName(const Token& token) {
  return token.kind == TokenKind::word ? lowerCase(token.text) : nameOf(token);
}

}  // namespace

std::optional<std::vector<ListedColumn>> readColumnList(std::string_view list,
                                                        const std::vector<std::string>& columns,
                                                        std::string_view qualifier) {
  const Tokens tokens(list);
  if (tokens.hasIllegal()) return std::nullopt;
  std::vector<ListedColumn> read;
  std::size_t first = 0;
  for (std::size_t index = 0; index <= tokens.count(); ++index) {
    const bool isEnd =
        index == tokens.count() || (tokens[index].kind == TokenKind::comma && tokens[index].depth == 0);
    if (!isEnd) continue;
    std::size_t last = index;
    if (first == last) return std::nullopt;
    const bool isQualified = tokens[first + 1].kind == TokenKind::dot && last >= first + 3;
    const std::size_t name = isQualified ? first + 2 : first;
    if (tokens[name].text == "*" && name + 1 == last) {
      for (const std::string& column : columns) {
        const std::string own = std::string(qualifier) + "." + quotedName(column);
        read.push_back({column, own, own});
      }
    } else {
      if (last >= first + 3 && isWord(tokens[last - 2], "AS") && tokens[last - 2].depth == 0) {
        last -= 2;
      } else if (last >= first + 2 && isName(tokens[last - 1]) && tokens[last - 2].kind != TokenKind::op &&
                 tokens[last - 2].kind != TokenKind::dot && tokens[last - 1].depth == 0 &&
                 !isOneOfWords(tokens[last - 1], {"END", "NULL", "TRUE", "FALSE"})) {
        last -= 1;
      }
      ListedColumn column;
      column.expression = tokens.slice(first, last);
      column.text = tokens.slice(first, index);
      if (name + 1 == last && isName(tokens[name])) {
        const std::string own = serverName(tokens[name]);
        if (std::find(columns.begin(), columns.end(), own) != columns.end()) {
          column.tableColumn = own;
          column.expression = std::string(qualifier) + "." + quotedName(own);
        }
      }
      read.push_back(std::move(column));
    }
    first = index + 1;
  }
  return read;
}

}  // namespace store
