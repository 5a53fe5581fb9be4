#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace store {

inline constexpr std::array<std::string_view, 4> kCatalogueTables = {"MSysFields", "MSysTables",
                                                                     "MSysIndexes", "MSysProcs"};

/// The columns of one of these, in their order.
std::vector<std::string_view> catalogueColumns(std::string_view table);

/// Which rows of pg_class c with their pg_namespace n are tables and views of the user's: those that he finds
/// without a schema, and those of other schemas that he may read.
inline constexpr std::string_view kUserTables =
    "c.relkind IN ('r', 'p', 'v', 'm', 'f') AND NOT c.relispartition "
    "AND n.nspname NOT IN ('pg_catalog', 'information_schema') AND n.nspname !~ '^pg_(toast|temp)' "
    "AND (pg_catalog.pg_table_is_visible(c.oid) OR (pg_catalog.has_schema_privilege(n.oid, 'USAGE') "
    "AND pg_catalog.has_any_column_privilege(c.oid, 'SELECT')))";

}  // namespace store
