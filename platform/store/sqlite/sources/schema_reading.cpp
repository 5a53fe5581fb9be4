#include "platform/store/sqlite/sources/schema_reading.h"

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/connection/table_kind.h"

namespace store {

namespace {

bool bindText(sqlite3_stmt* statement, std::string_view text) {
  return sqlite3_bind_text64(statement, 1, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8) == SQLITE_OK;
}

// What pragma_table_xinfo says in its column "hidden" of generated columns.
constexpr int kGeneratedVirtual = 2;
constexpr int kGeneratedStored = 3;

constexpr std::string_view kOwnPrefix = "sqlite_";

Status readKind(SqliteConnection& connection, std::string_view name, TableSchema* schema) {
  SqliteStatement statement;
  Status status = connection.prepare("SELECT " QUIVANE_KIND_OF_TABLE
                                     " FROM sqlite_schema s WHERE s.type IN ('table', 'view') AND s.name = "
                                     "?1 COLLATE NOCASE",
                                     &statement);
  if (!status) return status;
  if (!bindText(statement.get(), name)) return {ErrorCode::outOfMemory, "Out of memory."};
  const int result = sqlite3_step(statement.get());
  if (result != SQLITE_ROW) return statusOf(connection.handle(), result);
  // SQLite's own tables can be read and no more.
  const bool isOwn =
      name.size() >= kOwnPrefix.size() && equalsIgnoringCase(kOwnPrefix, name.substr(0, kOwnPrefix.size()));
  schema->ordinary = columnText(statement.get(), 0) == "table" && !isOwn;
  return {};
}

Status readColumns(SqliteConnection& connection, std::string_view name, TableSchema* schema) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT name, type, \"notnull\", pk, hidden FROM pragma_table_xinfo(?1, 'main') ORDER BY cid",
      &statement);
  if (!status) return status;
  if (!bindText(statement.get(), name)) return {ErrorCode::outOfMemory, "Out of memory."};
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement.get())) == SQLITE_ROW) {
    TableSchema::Column column;
    column.name = columnText(statement.get(), 0);
    column.declaredType = columnText(statement.get(), 1);
    column.notNull = sqlite3_column_int(statement.get(), 2) != 0;
    column.keyPosition = sqlite3_column_int(statement.get(), 3);
    const int hidden = sqlite3_column_int(statement.get(), 4);
    column.generated = hidden == kGeneratedVirtual || hidden == kGeneratedStored;
    schema->columns.push_back(std::move(column));
  }
  return statusOf(connection.handle(), result);
}

// A foreign key that names no column means the primary key of the other table, which must be of one column
// then, too. A table that isn't there has none.
Status readReferences(SqliteConnection& connection, std::string_view name, TableSchema* schema) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT f.\"from\", f.\"table\", coalesce(f.\"to\", (SELECT max(p.name) "
      "FROM pragma_table_xinfo(f.\"table\", 'main') p WHERE p.pk > 0 HAVING count(*) = 1)) AS target "
      "FROM pragma_foreign_key_list(?1, 'main') f GROUP BY f.id HAVING count(*) = 1 AND target IS NOT NULL "
      "ORDER BY f.id DESC",
      &statement);
  if (!status) return status;
  if (!bindText(statement.get(), name)) return {ErrorCode::outOfMemory, "Out of memory."};
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement.get())) == SQLITE_ROW) {
    const std::string column(columnText(statement.get(), 0));
    for (TableSchema::Column& found : schema->columns) {
      if (!found.reference.table.empty() || !equalsIgnoringCase(found.name, column)) continue;
      found.reference = {std::string(columnText(statement.get(), 1)),
                         std::string(columnText(statement.get(), 2))};
    }
  }
  return statusOf(connection.handle(), result);
}

// An INTEGER PRIMARY KEY has no index of its own when it is the row id itself. (With DESC it is not.) The
// index of a table without row ids is the table, and nothing in it leads to a row id.
Status readKeyIndex(SqliteConnection& connection, std::string_view name, bool* hasKeyIndex, bool* hasRowId) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT EXISTS (SELECT 1 FROM pragma_index_xinfo(i.name, 'main') WHERE cid = -1) "
      "FROM pragma_index_list(?1, 'main') i WHERE i.origin = 'pk'",
      &statement);
  if (!status) return status;
  if (!bindText(statement.get(), name)) return {ErrorCode::outOfMemory, "Out of memory."};
  const int result = sqlite3_step(statement.get());
  *hasKeyIndex = result == SQLITE_ROW;
  *hasRowId = !*hasKeyIndex || sqlite3_column_int(statement.get(), 0) != 0;
  return statusOf(connection.handle(), result);
}

// The key need not tell texts apart as the columns do that it consists of.
Status readKeyCollations(SqliteConnection& connection, std::string_view name, TableSchema* schema) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT k.name, k.coll FROM pragma_index_list(?1, 'main') i, pragma_index_xinfo(i.name, 'main') k "
      "WHERE i.origin = 'pk' AND k.key = 1",
      &statement);
  if (!status) return status;
  if (!bindText(statement.get(), name)) return {ErrorCode::outOfMemory, "Out of memory."};
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement.get())) == SQLITE_ROW) {
    const std::string_view column = columnText(statement.get(), 0);
    for (TableSchema::Column& found : schema->columns) {
      if (found.name == column) found.keyCollation = columnText(statement.get(), 1);
    }
  }
  return statusOf(connection.handle(), result);
}

}  // namespace

Status readTableSchema(SqliteConnection& connection, std::string_view name, TableSchema* schema) {
  // To know the columns of a view is to understand what it stands on.
  const StatementWatch::Asked asked(connection.watch());
  TableSchema read;
  if (Status status = readKind(connection, name, &read); !status) return status;
  if (Status status = readColumns(connection, name, &read); !status) return status;
  if (Status status = readReferences(connection, name, &read); !status) return status;
  bool hasKeyIndex = false;
  bool hasRowId = true;
  if (Status status = readKeyIndex(connection, name, &hasKeyIndex, &hasRowId); !status) return status;
  read.withoutRowId = !hasRowId;
  if (read.withoutRowId) {
    if (Status status = readKeyCollations(connection, name, &read); !status) return status;
  }
  const std::vector<std::string> keys = read.keyColumns();
  read.rowIdIsColumn = !read.withoutRowId && keys.size() == 1 && !hasKeyIndex;
  *schema = std::move(read);
  return {};
}

}  // namespace store
