#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace store {

/// The words and signs of a SQL text, parted by SQLite's own rules, so that what is decided about a
/// statement agrees with what SQLite then reads. Source: SQLite's tokenizer (sqlite3GetToken).

enum class TokenKind {
  end,     ///< behind the last token; also in front of the first
  word,    ///< a keyword or a bare name
  string,  ///< '...'; where a name is expected SQLite takes it for one
  name,    ///< "...", `...` or [...]; double quotes that name nothing are a string to SQLite
  number,
  blob,       ///< x'...'
  parameter,  ///< ?1, :name, @name, $name
  op,         ///< any operator; an asterisk is one too
  open,       ///< (
  close,      ///< )
  comma,
  dot,
  semicolon,
  illegal,  ///< what SQLite refuses: an unterminated quote, a stray character, "1st"
};

struct Token {
  TokenKind kind = TokenKind::end;
  int depth = 0;          ///< parentheses open around it; "(" has the depth of its ")"
  std::string_view text;  ///< as spelled, quotes included
};

/// The tokens of a SQL text (UTF-8, valid or not) without blanks and comments. Linear in time and
/// memory. A zero character ends the text for SQLite: from there on all is one illegal token.
/// The text must outlive the tokens. May throw std::bad_alloc.
class Tokens {
 public:
  explicit Tokens(std::string_view sql);

  /// The number of tokens, the end not counted.
  std::size_t count() const { return tokens_.size(); }

  /// Any index is allowed: outside the text there is a token of kind end, so that looking two tokens
  /// back or ahead (`index - 2` may wrap around) needs no check.
  const Token& operator[](std::size_t index) const { return index < count() ? tokens_[index] : end_; }

  /// The number of tokens without the semicolons at the end.
  std::size_t countWithoutSemicolons() const;

  bool hasIllegal() const { return hasIllegal_; }

  /// The text from the token `first` up to but without the token `last`, and without the blanks and
  /// comments on both sides. Empty when first >= last.
  std::string_view slice(std::size_t first, std::size_t last) const;

 private:
  std::vector<Token> tokens_;
  Token end_;
  bool hasIllegal_ = false;
};

/// Whether the token is this word, bare, in any letter case. `word` is in upper case.
bool isWord(const Token& token, std::string_view word);
bool isOneOfWords(const Token& token, std::initializer_list<std::string_view> words);

/// Whether the token can stand for the name of a table or column: a word or anything quoted.
bool isName(const Token& token);

/// The name that such a token spells: without its quotes, doubled ones made one.
std::string nameOf(const Token& token);

/// Whether a name or a string may begin with this character: ' " ` or [.
bool isOpeningQuote(char c);
/// The character that ends what `openingQuote` began.
char closingQuote(char openingQuote);
/// What stands between the quotes of `quoted`, doubled ones made one (brackets never double).
/// `quoted` begins with an opening quote and ends with the closing one.
std::string unquoted(std::string_view quoted);

/// Whether SQLite skips this character between tokens.
bool isSqlBlank(char c);

/// Whether a bare name may hold this character (though not begin with a digit or a dollar sign).
bool isNamePart(char c);

}  // namespace store
