#pragma once

#include <string_view>

#include "platform/store/rows/status.h"
#include "platform/store/rows/table_schema.h"

namespace store {

class SqliteConnection;

/// Reads the schema of the table called `name` (any letter case) in the main database, inside a Use.
/// A name that no table has is no failure: `ordinary` is false and `columns` empty.
Status readTableSchema(SqliteConnection& connection, std::string_view name, TableSchema* schema);

}  // namespace store
