#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

/// What one column of a SELECT on one table shows.
struct ListedColumn {
  std::string tableColumn;  ///< the table's column; empty for an expression
  std::string expression;   ///< as SQL, without an alias
  std::string text;         ///< with the alias, if there is one
};

/// Takes the column list of a SELECT apart, which is in the server's SQL. `columns` are those of the table in
/// its order, for asterisks; `qualifier` is the table's name or alias, quoted. Empty when the list can't be
/// read.
std::optional<std::vector<ListedColumn>> readColumnList(std::string_view list,
                                                        const std::vector<std::string>& columns,
                                                        std::string_view qualifier);

}  // namespace store
