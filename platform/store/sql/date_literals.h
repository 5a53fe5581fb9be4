#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/sql/local_date.h"

namespace store {

/// What SQLite knows of the columns of the database that a statement is for.
class DeclaredTypes {
 public:
  virtual ~DeclaredTypes() = default;

  /// Stores the declared type of the first column of `select`: empty for an expression, nothing when SQLite
  /// can't prepare the statement.
  virtual Status ofSelect(const std::string& select, std::optional<std::string>* type) = 0;

  /// Stores the declared types of the columns that an INSERT without a list of columns fills, in their
  /// order; none when there is no such table. `table` is the name without quotes.
  virtual Status ofInsert(const std::string& table, std::vector<std::string>* types) = 0;
};

/// Makes the dates of a statement mean moments. A date literal is a text in single or double quotes, maybe in
/// parentheses, that isoOfLocalDate or parseIsoDate reads as a day with or without a time. `sql` becomes the
/// same statement in which
///  - a date literal that is compared with a date column, or its MIN or MAX, by = == <> != < <= > >= IS, IS
///  DISTINCT FROM, BETWEEN
///    or IN is compared by the collation kMomentCollation, on either side. Where the comparison stands for
///    itself, bounds are added that let an index on the column's plain texts be used;
///  - a date literal that is stored in a date column by UPDATE or INSERT is written in ISO 8601 by the shape
///  of
///    the column.
/// Date columns are those whose declared type fieldTypeOf() takes for a date or a date and time, as SQLite
/// finds them through views, subqueries and aliases. A column or literal that an arithmetic or text operator
/// joins with something else is left alone, and so is every literal without a digit, that reads as a number
/// or as a time of day, or begins as ISO 8601 ("2001-03"). Fails with errorsInCommand for any other text in
/// single quotes in such a place, because it could only be compared letter by letter: 'March 9, 2001'. A
/// failure of `types` is handed on. `*sql` is then untouched. Linear in time but for the questions, of which
/// each name costs one in each SELECT.
Status makeDatesMoments(std::string* sql, DateOrder order, DeclaredTypes& types);

}  // namespace store
