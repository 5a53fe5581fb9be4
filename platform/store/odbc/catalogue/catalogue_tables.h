#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace store {

inline constexpr std::array<std::string_view, 4> kCatalogueTables = {"MSysFields", "MSysTables",
                                                                     "MSysIndexes", "MSysProcs"};

/// The columns of one of these, in their order.
std::vector<std::string_view> catalogueColumns(std::string_view table);

/// Which rows of pg_class c with their pg_namespace n are tables and views, and none of the server's own.
inline constexpr std::string_view kIsUsers =
    "c.relkind IN ('r', 'p', 'v', 'm', 'f') AND NOT c.relispartition "
    "AND n.nspname NOT IN ('pg_catalog', 'information_schema') AND n.nspname !~ '^pg_(toast|temp)'";

/// Which of them the user may read, if only by one of their columns.
inline constexpr std::string_view kIsReadable =
    "pg_catalog.has_schema_privilege(n.oid, 'USAGE') AND pg_catalog.has_any_column_privilege(c.oid, "
    "'SELECT')";

}  // namespace store
