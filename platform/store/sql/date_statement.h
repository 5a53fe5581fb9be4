#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/store/rows/field_type.h"
#include "platform/store/sql/date_literals.h"
#include "platform/store/sql/sql_operands.h"
#include "platform/store/sql/sql_tokens.h"
#include "platform/store/sql/statement_scopes.h"

namespace store {

/// A text of a statement, read as a date.
struct DateLiteral {
  enum class Kind {
    moment,
    other,    ///< compares and is stored as any text
    unknown,  ///< looks like a date that nobody understands
  };
  Kind kind = Kind::other;
  std::string moment;  ///< its momentText
};

/// Whether the column holds dates, with or without a time of day. False for nothing.
bool isDateType(const std::optional<FieldType>& type);

/// `text`, which holds no quote, as a text of SQL.
std::string quotedText(const std::string& text);

/// A statement whose dates are being read: what its names and texts are, and what shall change in it.
class DateStatement {
 public:
  using Types = std::vector<std::optional<FieldType>>;

  /// The arguments must outlive the object.
  DateStatement(const Tokens& tokens, DateOrder order, DeclaredTypes& types)
      : tokens_(tokens),
        order_(order),
        types_(types),
        operands_(tokens),
        scopes_(tokens),
        isAssignment_(tokens.count()) {}

  const Tokens& tokens() const { return tokens_; }
  const SqlOperands& operands() const { return operands_; }
  DeclaredTypes& types() { return types_; }

  DateLiteral literalAt(std::size_t index) const;
  /// The text as a value of a date column of that shape; nothing when it is not in the user's form.
  std::optional<std::string> storedTextOf(std::size_t index, DateShape shape) const;
  Status notUnderstood(std::size_t index) const;

  /// Whether the name stands for a date column in the place where it stands.
  Status isDate(const Operand& operand, bool* isDate);
  /// Appends the types of the columns that a list names in the table that is written to at the token `place`.
  Status typesOfTargets(std::size_t place, Span list, Types* types);

  /// The = of an UPDATE, which compares nothing.
  void markAssignment(std::size_t index) { isAssignment_[index] = true; }
  bool isAssignment(std::size_t index) const { return index < isAssignment_.size() && isAssignment_[index]; }

  void replace(std::size_t index, std::string text);
  void insertBefore(std::size_t index, std::string text);
  void insertBehind(std::size_t index, std::string text);
  /// `sql`, which the tokens are of, with all changes.
  std::string changed(std::string_view sql) const;

 private:
  struct Edit {
    const char* begin;  // the part of the text that it replaces, which may be empty
    const char* end;
    bool isBehind;  // the token that ends there: then it comes before one that stands in front of the next
    std::string text;
  };

  std::string textAt(std::size_t index) const;
  Status ask(const std::vector<std::string>& questions, std::optional<FieldType>* type);

  const Tokens& tokens_;
  DateOrder order_;
  DeclaredTypes& types_;
  SqlOperands operands_;
  StatementScopes scopes_;
  std::vector<bool> isAssignment_;
  std::map<std::pair<std::size_t, std::string>, std::optional<FieldType>> known_;  // by scope and name
  std::vector<Edit> edits_;
};

}  // namespace store
