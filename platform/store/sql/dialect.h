#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/status.h"

namespace store {

/// The statements that the components take beyond SQLite's own SQL, turned into SQLite's SQL, and what
/// the engine must know of a statement before SQLite sees it.

enum class StatementKind {
  createDatabase,  ///< CREATE DATABASE 'path'
  dropDatabase,    ///< DROP DATABASE 'path'
  select,          ///< begins with SELECT, WITH or VALUES
  definition,      ///< CREATE, DROP, ALTER, REINDEX, ANALYZE of anything but a database
  change,          ///< INSERT, UPDATE, DELETE, REPLACE
  other,           ///< anything else, a CREATE or DROP DATABASE without a quoted path included
};

struct Statement {
  StatementKind kind = StatementKind::other;
  std::string sql;   ///< what SQLite is to run, without blanks, comments and semicolons at its ends;
                     ///< empty for createDatabase and dropDatabase
  std::string path;  ///< createDatabase and dropDatabase: the path between the quotes, maybe empty
  bool takesFromTables =
      false;  ///< a definition that may take rows or columns from a table: ALTER, DROP TABLE
};

/// Reads one statement of the components' dialect (UTF-8). Beyond SQL it has:
///  - In CREATE DATABASE, DROP DATABASE and DROP TABLE a quoted name reaches to the last quote of the
///    statement, in "Select * from [name]" to the last bracket, where SQL can't read the statement as it
///    stands: plain quotes in a name need not be doubled there. Any of ' " ` [ ] may be the quotes.
///  - A column list of CREATE TABLE whose every entry is a name (a word, quoted or bracketed) and a type
///    of the handheld is taken entry by entry: a word may be one of SQL's own, or begin with a digit. SQLite
///    gets the names in double quotes and the types as spelled. One entry that doesn't fit lets the whole
///    list pass unchanged.
///  - The type memo of a column, in CREATE TABLE and ALTER TABLE, becomes text: SQLite would take it for
///    one of numbers and make 7 of the text "007".
/// A doubled quote stands for one. What SQL reads as one statement of these keeps its meaning: DROP TABLE
/// 'it''s' drops it's, and a quote in a default value or a comment is no part of a name. Everything else
/// passes unchanged.
///
/// Of several statements none is hidden: either the text as a whole is one quoted name that happens to
/// hold semicolons (DROP TABLE 'a'; DROP TABLE 'b' drops at most the one table so called), or all of
/// them are in `sql`, where SQLite finds the end of the first one. So it does for a zero character:
/// who runs `sql` must refuse it when SQLite stops before its last byte.
///
/// Fails with noCommand for a text without a statement (blanks, comments and semicolons only);
/// `statement` is then untouched. Linear in time. May throw std::bad_alloc, as all functions here.
Status readStatement(std::string_view text, Statement* statement);

/// `name` as SQLite reads it back: in double quotes, inner ones doubled.
std::string quotedName(std::string_view name);
/// `text` as a string of SQL: in apostrophes, inner ones doubled.
std::string quotedText(std::string_view text);

/// A SELECT on one table whose rows can be told apart by the table's own keys, and therefore changed, unless
/// an aggregate makes one row of all.
/// The texts are slices of the statement, without comments at their ends. ORDER BY and WHERE may refer
/// to the columns by position or alias, so a statement made of the parts keeps `columnList` in front.
struct SingleTableSelect {
  std::string table;        ///< the table's name, without quotes
  std::string columnList;   ///< the text between SELECT [ALL] and FROM
  std::string tableClause;  ///< the table as it stands in FROM, with its schema and alias
  std::string qualifier;    ///< how the table's columns are addressed: alias or name, in double quotes
  std::string tail;         ///< what follows the table: WHERE, ORDER BY, LIMIT, or nothing
  std::string order;        ///< its ORDER BY alone, or nothing
  /// What stands around it, from the inside out: "SELECT * FROM (...) WHERE ... ORDER BY ...", which only
  /// chooses among its rows and orders them. The parts above are those of the innermost SELECT.
  struct Around {
    std::string tail;   ///< what follows the parenthesis
    std::string order;  ///< its ORDER BY alone, or nothing
  };
  static constexpr std::size_t kMostAround = 8;
  std::vector<Around> around;
  bool isPlainTable = false;  ///< "SELECT * FROM table" and nothing else, no schema or alias either
};

/// The parts of `sql` when it is a SELECT on exactly one table of the main database: no DISTINCT, join,
/// comma, subquery in FROM, table-valued function, other schema than main, GROUP BY, HAVING, WINDOW,
/// compound, WITH or INDEXED BY, and no window function in its column list or ORDER BY. Whether the name
/// is a table (not a view) is for the caller to ask, and so is whether there is an aggregate: one inside a
/// subquery may belong to either SELECT, which only the tables' columns tell. Subqueries elsewhere than in
/// FROM are allowed. So is "SELECT * FROM" such a SELECT in parentheses, up to kMostAround times over.
/// Empty for every other statement, several statements and text that SQLite can't read included.
/// A statement that is not empty need not be a correct one. Linear in time.
std::optional<SingleTableSelect> readSingleTableSelect(std::string_view sql);

}  // namespace store
