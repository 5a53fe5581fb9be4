#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/store/sql/sql_tokens.h"

namespace store {

/// The tokens [first, last] of a statement.
struct Span {
  std::size_t first = 0;
  std::size_t last = 0;
};

/// A column as a statement names it, alone or with its table and schema, or the least or greatest of its
/// values.
struct Operand {
  Span whole;  ///< with parentheses around it
  Span name;
  bool isExtreme = false;  ///< MIN(name) or MAX(name)
};

/// Whether the token is a dot, or an operator that binds its operands more tightly than a comparison: what
/// stands beside it is a part of a larger value.
bool isTight(const Token& token);

/// Finds columns, texts and lists in a statement by its tokens. Places that are given may be any; those that
/// are found are inside the text.
class SqlOperands {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// `tokens` must outlive the object. Linear in time.
  explicit SqlOperands(const Tokens& tokens);

  /// The parenthesis that closes the one at `open`; the number of tokens when none does.
  std::size_t closeOf(std::size_t open) const { return open < close_.size() ? close_[open] : close_.size(); }

  /// Whether the token is a text that holds a digit. Double quotes that name nothing hold a text for SQLite.
  bool isLiteral(std::size_t index) const;
  /// The literal that the tokens are, maybe in parentheses, or kNone.
  std::size_t literalIn(Span span) const;

  /// The span with all the parentheses that hold it and nothing else.
  Span withParentheses(Span span) const;
  /// The column whose last (first) token, parentheses included, stands at `index`.
  std::optional<Operand> operandEndingAt(std::size_t index) const;
  std::optional<Operand> operandBeginningAt(std::size_t index) const;

  /// The parts of a list between its commas. `list` is what stands between its parentheses.
  std::vector<Span> elementsOf(Span list) const;

 private:
  bool isGrouping(std::size_t open) const;
  bool isExtremeOf(Span name) const;
  std::optional<Operand> nameIn(std::size_t first, std::size_t last) const;

  const Tokens& tokens_;
  std::vector<std::size_t> close_;  // of each opening parenthesis
};

}  // namespace store
