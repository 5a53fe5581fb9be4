#pragma once

#include <sqlite3.h>
#include <string_view>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/connection/statement_watch.h"

namespace store {

/// The catalogue tables MSysFields, MSysTables, MSysIndexes and MSysProcs, in which programs of the
/// handheld look up what a database holds. They answer to SELECT on `connection` and are made up from
/// SQLite's schema at the moment of the question: nothing of them is in the file.
///  - MSysTables: TableName, TableID, TableFlags (1 system, 2 read-only)
///  - MSysFields: TableID, FieldName, FieldID, Len, ODBCType
///  - MSysIndexes: TableID, IndexName, FieldID, IndexFlags (1 descending, 2 case-insensitive, 4 nulls first)
///  - MSysProcs: ProcName, SQLText; without rows
/// Tables stand in the order of their making, the catalogue itself before all others. TableID joins them.
/// A table of the file that has such a name, in any letter case, hides the one of the catalogue from SELECT;
/// by the name that catalogueSourceOf() gives it is still found. A view that takes too long to be understood
/// has no fields there. `watch` watches over the connection and outlives it.
Status addCatalogue(sqlite3* connection, StatementWatch& watch);

/// Whether `name`, in any letter case (ASCII), is one of the four.
bool isCatalogueTable(const char* name);

/// The second name, which nobody else gives to a table, of the catalogue table called exactly `name`, or
/// with `anyCase` so in any letter case. Null when there is none.
const char* catalogueSourceOf(std::string_view name, bool anyCase);

}  // namespace store
