#pragma once

#include <string>
#include <string_view>

#include "platform/store/rows/backend.h"
#include "platform/store/sql/dialect.h"

namespace store {

/// Which tables, views and catalogue tables a database has.
class TableNames {
 public:
  virtual ~TableNames() = default;

  /// Whether there is one called so, in any letter case. On failure `*found` may be anything.
  virtual Status isTable(std::string_view name, bool* found) = 0;
  /// The SELECT that shows all of it. noTable when there is none; `*select` is then untouched.
  virtual Status selectAllOf(std::string_view name, std::string* select) = 0;
};

/// The statement that opens a source: of a table the SELECT of all of it, else the source as it stands. Fails
/// as `tables` does; `*text` is then untouched.
Status textOfSource(std::string_view source, SourceKind kind, TableNames& tables, std::string* text);

/// Reads the statement of a source whose rows are to be gone through once. illegalOperation for one that is
/// about a database; otherwise fails as `tables` and readStatement() do. `*statement` is then untouched.
Status readStreamedSource(std::string_view source, SourceKind kind, TableNames& tables, Statement* statement);

/// What a statement without records is refused with where there have to be some.
Status statementWithoutRecords();

}  // namespace store
