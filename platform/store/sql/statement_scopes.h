#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/sql/sql_tokens.h"

namespace store {

/// Which tables and subqueries the names of a statement are looked up in, so that SQLite itself can be asked
/// what a name stands for: for each place a SELECT that gives the name back and nothing else.
class StatementScopes {
 public:
  /// `tokens` must outlive the object. Linear in time; a text that is no statement does no harm.
  explicit StatementScopes(const Tokens& tokens);

  /// The number of the scope that the token stands in; equal for tokens that see the same names.
  std::size_t scopeAt(std::size_t index) const { return scopeAt_[index]; }

  /// SELECTs with the one column `name` (as SQL spells it), to be tried in this order: the first one that
  /// SQLite can prepare means what the statement means by that name in the scope. Names of result columns
  /// and of the row that an INSERT could not add ("excluded") come after those of the tables.
  std::vector<std::string> questions(std::size_t scope, std::string_view name) const;

  /// A SELECT whose column is what `name` means as a column that the INSERT or UPDATE of the scope writes.
  std::string questionOfTarget(std::size_t scope, std::string_view name) const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Range {  // of tokens
    std::size_t first = kNone;
    std::size_t last = kNone;
    bool isOpen() const { return first != kNone && last == kNone; }
    bool isWhole() const { return first != kNone && last != kNone; }
  };
  /// A WITH clause, or a statement with its FROM: one SELECT of a compound, an INSERT, UPDATE or DELETE.
  struct Scope {
    std::size_t parent = kNone;
    bool seesParent = false;  // and not only the WITH clause that the parent may be
    bool isInsert = false;
    Range with;
    Range results;
    Range table;  // of an INSERT or UPDATE
    Range from;
  };
  /// What stands between the parentheses of a subquery, or the whole text.
  struct Frame {
    int depth = 0;
    std::size_t parent = kNone;
    bool seesParent = false;
    std::size_t with = kNone;
    std::size_t insert = kNone;
    std::size_t current = kNone;
  };

  void readWord(std::size_t index);
  void open(std::size_t index);
  void endClauses(Frame& frame, std::size_t index);
  Scope& begin(Frame& frame, std::size_t index);
  bool startsTable(std::size_t open) const;
  std::string sourceOf(const Scope& scope) const;
  std::string text(const Range& range) const;
  std::string within(std::size_t scope, std::string select, bool seesTables) const;

  const Tokens& tokens_;
  std::vector<Scope> scopes_;
  std::vector<Frame> frames_;
  std::vector<std::size_t> scopeAt_;
};

}  // namespace store
