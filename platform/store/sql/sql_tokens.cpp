#include "platform/store/sql/sql_tokens.h"

#include <algorithm>

#include "platform/store/rows/ascii_case.h"

namespace store {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isNonAscii(char c) {
  return static_cast<unsigned char>(c) >= 0x80;
}

constexpr bool isNameStart(char c) {
  return isLetter(c) || c == '_' || isNonAscii(c);
}

/// Reads one token after the other. The text holds no zero character; behind its end at() gives one.
class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  /// Skips blanks and comments. False at the end of the text.
  bool findToken();
  /// The token that findToken() came to; its depth is not set.
  Token read();

 private:
  char at(std::size_t offset) const { return offset < text_.size() - begin_ ? text_[begin_ + offset] : '\0'; }
  bool skipBlanks();
  bool skipComment();
  TokenKind readQuoted();
  TokenKind readNumber();
  TokenKind readParameter();
  TokenKind readBlob();
  TokenKind readSign();
  void readDigits();
  TokenKind taken(TokenKind kind, std::size_t length) {
    length_ = length;
    return kind;
  }

  std::string_view text_;
  std::size_t begin_ = 0;   // of the token being read
  std::size_t length_ = 0;  // what is read of it
};

bool Lexer::findToken() {
  while (skipBlanks() || skipComment()) {
  }
  return begin_ < text_.size();
}

bool Lexer::skipBlanks() {
  const std::size_t before = begin_;
  if (text_.substr(begin_).starts_with(kByteOrderMark)) begin_ += kByteOrderMark.size();
  // A vertical tab is blank to SQLite behind another blank only.
  if (isSqlBlank(at(0))) {
    while (isSqlBlank(at(0)) || at(0) == '\v') ++begin_;
  }
  return begin_ != before;
}

bool Lexer::skipComment() {
  std::size_t end = 0;
  if (at(0) == '-' && at(1) == '-') {
    end = text_.find('\n', begin_);
  } else if (at(0) == '/' && at(1) == '*' && at(2) != '\0') {
    end = text_.find("*/", begin_ + 2);
    if (end != std::string_view::npos) end += 2;
  } else {
    return false;
  }
  begin_ = std::min(end, text_.size());
  return true;
}

Token Lexer::read() {
  const char c = at(0);
  TokenKind kind = TokenKind::illegal;
  if ((c == 'x' || c == 'X') && at(1) == '\'') {
    kind = readBlob();
  } else if (isNameStart(c)) {
    length_ = 1;
    while (isNamePart(at(length_))) ++length_;
    kind = TokenKind::word;
  } else if (isOpeningQuote(c)) {
    kind = readQuoted();
  } else if (isDigit(c) || (c == '.' && isDigit(at(1)))) {
    kind = readNumber();
  } else if (c == '?' || c == '$' || c == '@' || c == ':' || c == '#') {
    kind = readParameter();
  } else {
    kind = readSign();
  }
  const Token token{.kind = kind, .text = text_.substr(begin_, length_)};
  begin_ += length_;
  return token;
}

TokenKind Lexer::readQuoted() {
  const char close = closingQuote(at(0));
  const bool doubles = close != ']';
  for (length_ = 1; begin_ + length_ < text_.size(); ++length_) {
    if (at(length_) != close) continue;
    if (doubles && at(length_ + 1) == close) {
      ++length_;
      continue;
    }
    return taken(close == '\'' ? TokenKind::string : TokenKind::name, length_ + 1);
  }
  return TokenKind::illegal;
}

void Lexer::readDigits() {
  while (isDigit(at(length_)) || at(length_) == '_') ++length_;
}

TokenKind Lexer::readNumber() {
  length_ = 0;
  if (at(0) == '0' && (at(1) == 'x' || at(1) == 'X') && isHexDigit(at(2))) {
    length_ = 3;
    while (isHexDigit(at(length_)) || at(length_) == '_') ++length_;
  } else {
    readDigits();
    if (at(length_) == '.') {
      ++length_;
      readDigits();
    }
    const bool hasSign = at(length_ + 1) == '+' || at(length_ + 1) == '-';
    if ((at(length_) == 'e' || at(length_) == 'E') && isDigit(at(length_ + (hasSign ? 2 : 1)))) {
      length_ += 2;
      readDigits();
    }
  }
  if (!isNamePart(at(length_))) return TokenKind::number;
  while (isNamePart(at(length_))) ++length_;
  return TokenKind::illegal;
}

TokenKind Lexer::readParameter() {
  length_ = 1;
  if (at(0) == '?') {
    while (isDigit(at(length_))) ++length_;
    return TokenKind::parameter;
  }
  bool isNamed = false;
  for (;; ++length_) {
    if (isNamePart(at(length_))) {
      isNamed = true;
    } else if (at(length_) == ':' && at(length_ + 1) == ':') {
      ++length_;
    } else {
      break;
    }
  }
  if (!isNamed) return TokenKind::illegal;
  if (at(length_) != '(') return TokenKind::parameter;
  while (at(length_) != ')') {
    ++length_;
    if (at(length_) == '\0' || isSqlBlank(at(length_)) || at(length_) == '\v') return TokenKind::illegal;
  }
  return taken(TokenKind::parameter, length_ + 1);
}

TokenKind Lexer::readBlob() {
  length_ = 2;
  while (isHexDigit(at(length_))) ++length_;
  const bool isWhole = at(length_) == '\'' && length_ % 2 == 0;
  while (at(length_) != '\0' && at(length_) != '\'') ++length_;
  if (at(length_) == '\'') ++length_;
  return isWhole ? TokenKind::blob : TokenKind::illegal;
}

TokenKind Lexer::readSign() {
  const char next = at(1);
  switch (at(0)) {
    case '(':
      return taken(TokenKind::open, 1);
    case ')':
      return taken(TokenKind::close, 1);
    case ',':
      return taken(TokenKind::comma, 1);
    case '.':
      return taken(TokenKind::dot, 1);
    case ';':
      return taken(TokenKind::semicolon, 1);
    case '+':
    case '*':
    case '/':
    case '%':
    case '&':
    case '~':
      return taken(TokenKind::op, 1);
    case '-':
      if (next != '>') return taken(TokenKind::op, 1);
      return taken(TokenKind::op, at(2) == '>' ? 3 : 2);
    case '=':
      return taken(TokenKind::op, next == '=' ? 2 : 1);
    case '<':
      return taken(TokenKind::op, next == '=' || next == '>' || next == '<' ? 2 : 1);
    case '>':
      return taken(TokenKind::op, next == '=' || next == '>' ? 2 : 1);
    case '|':
      return taken(TokenKind::op, next == '|' ? 2 : 1);
    case '!':
      if (next == '=') return taken(TokenKind::op, 2);
      return taken(TokenKind::illegal, 1);
    default:
      return taken(TokenKind::illegal, 1);
  }
}

}  // namespace

Tokens::Tokens(std::string_view sql) {
  const std::size_t zeroIndex = std::min(sql.find('\0'), sql.size());
  Lexer lexer(sql.substr(0, zeroIndex));
  int depth = 0;
  while (lexer.findToken()) {
    Token token = lexer.read();
    if (token.kind == TokenKind::close) --depth;
    token.depth = depth;
    if (token.kind == TokenKind::open) ++depth;
    if (token.kind == TokenKind::illegal) hasIllegal_ = true;
    tokens_.push_back(token);
  }
  if (zeroIndex < sql.size()) {
    tokens_.push_back({.kind = TokenKind::illegal, .depth = depth, .text = sql.substr(zeroIndex)});
    hasIllegal_ = true;
  }
}

std::size_t Tokens::countWithoutSemicolons() const {
  std::size_t last = count();
  while (last > 0 && tokens_[last - 1].kind == TokenKind::semicolon) --last;
  return last;
}

std::string_view Tokens::slice(std::size_t first, std::size_t last) const {
  last = std::min(last, count());
  if (first >= last) return {};
  const char* begin = tokens_[first].text.data();
  const std::string_view lastText = tokens_[last - 1].text;
  return {begin, static_cast<std::size_t>(lastText.data() + lastText.size() - begin)};
}

bool isWord(const Token& token, std::string_view word) {
  return token.kind == TokenKind::word && equalsIgnoringCase(token.text, word);
}

bool isOneOfWords(const Token& token, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [&token](std::string_view word) { return isWord(token, word); });
}

bool isName(const Token& token) {
  return token.kind == TokenKind::word || token.kind == TokenKind::name || token.kind == TokenKind::string;
}

std::string nameOf(const Token& token) {
  return token.kind == TokenKind::word ? std::string(token.text) : unquoted(token.text);
}

bool isOpeningQuote(char c) {
  return c == '\'' || c == '"' || c == '`' || c == '[';
}

char closingQuote(char openingQuote) {
  return openingQuote == '[' ? ']' : openingQuote;
}

std::string unquoted(std::string_view quoted) {
  const char close = quoted.back();
  const std::string_view inner = quoted.substr(1, quoted.size() - 2);
  if (close == ']') return std::string(inner);
  std::string text;
  text.reserve(inner.size());
  for (std::size_t i = 0; i < inner.size(); ++i) {
    text.push_back(inner[i]);
    if (inner[i] == close && i + 1 < inner.size() && inner[i + 1] == close) ++i;
  }
  return text;
}

bool isNamePart(char c) {
  return isNameStart(c) || isDigit(c) || c == '$';
}

bool isSqlBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

}  // namespace store
