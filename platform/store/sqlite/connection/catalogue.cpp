#include "platform/store/sqlite/connection/catalogue.h"

#include <array>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "platform/store/rows/field_type.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/connection/sqlite_statement.h"
#include "platform/store/sqlite/connection/table_kind.h"

namespace store {

namespace {

struct CatalogueTable {
  const char* name;
  const char* secondName;
  const char* declaration;
  const char* query;
};

// The identifiers 1 to 4 are the catalogue's own, a table's is its place in SQLite's schema behind them.
// A table that serves a virtual one, and SQLite's own tables, are not for the user.
#define QUIVANE_TABLES                                                       \
  "tables(TableName, TableID, TableFlags) AS ("                              \
  "SELECT 'MSysFields', 1, 3 UNION ALL SELECT 'MSysTables', 2, 3 UNION ALL " \
  "SELECT 'MSysIndexes', 3, 3 UNION ALL SELECT 'MSysProcs', 4, 3 UNION ALL " \
  "SELECT name, 4 + rowid, iif(kind = 'table', 0, 2) FROM ("                 \
  "SELECT s.rowid, s.name, " QUIVANE_KIND_OF_TABLE                           \
  " AS kind FROM sqlite_schema s "                                           \
  "WHERE s.type IN ('table', 'view') AND substr(s.name, 1, 7) <> 'sqlite_') WHERE kind <> 'shadow') "

// A view whose tables are gone, or a table of an unknown module, can't be described: it has no fields here.
#define QUIVANE_READABLE "iif(t.TableFlags <> 2 OR quivane_readable(t.TableName), t.TableName, '')"

constexpr std::array<CatalogueTable, 4> kTables{{
    {"MSysFields", "quivane_MSysFields",
     "CREATE TABLE x(TableID INTEGER, FieldName VARCHAR(64), FieldID INTEGER, Len INTEGER, ODBCType INTEGER)",
     "WITH " QUIVANE_TABLES
     "SELECT t.TableID, c.name, c.cid, quivane_length(c.type), quivane_odbc_type(c.type) "
     "FROM tables t JOIN pragma_table_xinfo(" QUIVANE_READABLE
     ") c WHERE c.hidden <> 1 ORDER BY t.TableID, c.cid"},
    {"MSysTables", "quivane_MSysTables",
     "CREATE TABLE x(TableName VARCHAR(128), TableID INTEGER, TableFlags INTEGER)",
     "WITH " QUIVANE_TABLES "SELECT TableName, TableID, TableFlags FROM tables ORDER BY TableID"},
    {"MSysIndexes", "quivane_MSysIndexes",
     "CREATE TABLE x(TableID INTEGER, IndexName VARCHAR(64), FieldID INTEGER, IndexFlags INTEGER)",
     "WITH " QUIVANE_TABLES
     "SELECT t.TableID, i.name, c.cid, c.\"desc\" + 2 * (c.coll = 'NOCASE') + 4 * (c.\"desc\" = 0) "
     "FROM tables t JOIN pragma_index_list(" QUIVANE_READABLE ") i JOIN pragma_index_xinfo(i.name) c "
     "WHERE c.key = 1 ORDER BY t.TableID, i.seq DESC, c.seqno"},
    {"MSysProcs", "quivane_MSysProcs", "CREATE TABLE x(ProcName VARCHAR(128), SQLText TEXT)",
     "SELECT '', '' WHERE 0"},
}};
#undef QUIVANE_TABLES
#undef QUIVANE_READABLE

// Views can stand on views, twofold and again twofold, until nobody lives to see them understood.
constexpr std::chrono::milliseconds kViewPatience{100};

// Type numbers of ODBC's SQL data types (sql.h, sqlext.h).
int odbcTypeOf(TypeCode code) {
  switch (code) {
    case TypeCode::smallInt:
    case TypeCode::unsignedSmallInt:
      return 5;
    case TypeCode::integer:
    case TypeCode::unsignedInt:
      return 4;
    case TypeCode::real:
      return 8;
    case TypeCode::date:
      return 11;
    case TypeCode::boolean:
      return -7;
    case TypeCode::varWChar:
      return -9;
    case TypeCode::varBinary:
      return -3;
    case TypeCode::longVarBinary:
      return -4;
    case TypeCode::longVarWChar:
      break;
  }
  return -10;
}

FieldType typeOfArgument(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return fieldTypeOf(text != nullptr ? text : "");
}

void lengthFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  sqlite3_result_int(context, typeOfArgument(arguments[0]).definedSize);
}

void odbcTypeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  sqlite3_result_int(context, odbcTypeOf(typeOfArgument(arguments[0]).code));
}

void readableFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* name = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  sqlite3* connection = sqlite3_context_db_handle(context);
  const StatementWatch::Limit limit(*static_cast<StatementWatch*>(sqlite3_user_data(context)), kViewPatience);
  sqlite3_stmt* statement = nullptr;
  char* sql = sqlite3_mprintf("SELECT * FROM main.\"%w\"", name);
  const int result =
      sql != nullptr ? sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr) : SQLITE_NOMEM;
  sqlite3_finalize(statement);
  sqlite3_free(sql);
  if (result == SQLITE_NOMEM) {
    sqlite3_result_error_nomem(context);
  } else {
    sqlite3_result_int(context, result == SQLITE_OK ? 1 : 0);
  }
}

struct Table {
  sqlite3_vtab base{};
  sqlite3* connection = nullptr;
  const CatalogueTable* table = nullptr;
};

struct Cursor {
  sqlite3_vtab_cursor base{};
  SqliteStatement rows;
  sqlite3_int64 row = 0;
  bool atEnd = true;
};

int connectTable(sqlite3* connection, void* data, int, const char* const*, sqlite3_vtab** table, char**) {
  const auto* row = static_cast<const CatalogueTable*>(data);
  const int result = sqlite3_declare_vtab(connection, row->declaration);
  if (result != SQLITE_OK) return result;
  auto* made = new (std::nothrow) Table;
  if (made == nullptr) return SQLITE_NOMEM;
  made->connection = connection;
  made->table = row;
  *table = &made->base;
  return SQLITE_OK;
}

int disconnectTable(sqlite3_vtab* table) {
  std::unique_ptr<Table>(reinterpret_cast<Table*>(table)).reset();
  return SQLITE_OK;
}

int planScan(sqlite3_vtab*, sqlite3_index_info* info) {
  info->estimatedCost = 1000;
  return SQLITE_OK;
}

int openCursor(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
  auto* made = new (std::nothrow) Cursor;
  if (made == nullptr) return SQLITE_NOMEM;
  *cursor = &made->base;
  return SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) {
  std::unique_ptr<Cursor>(reinterpret_cast<Cursor*>(cursor)).reset();
  return SQLITE_OK;
}

int nextRow(sqlite3_vtab_cursor* base) {
  auto* cursor = reinterpret_cast<Cursor*>(base);
  const int result = sqlite3_step(cursor->rows.get());
  cursor->atEnd = result != SQLITE_ROW;
  ++cursor->row;
  return result == SQLITE_ROW || result == SQLITE_DONE ? SQLITE_OK : result;
}

int startScan(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value**) {
  auto* cursor = reinterpret_cast<Cursor*>(base);
  const auto* table = reinterpret_cast<Table*>(base->pVtab);
  sqlite3_stmt* rows = nullptr;
  const int result = sqlite3_prepare_v2(table->connection, table->table->query, -1, &rows, nullptr);
  cursor->rows.reset(rows);
  if (result != SQLITE_OK) return result;
  cursor->row = 0;
  return nextRow(base);
}

int isAtEnd(sqlite3_vtab_cursor* cursor) {
  return reinterpret_cast<Cursor*>(cursor)->atEnd ? 1 : 0;
}

int readColumn(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
  auto* cursor = reinterpret_cast<Cursor*>(base);
  sqlite3_result_value(context, sqlite3_column_value(cursor->rows.get(), column));
  return SQLITE_OK;
}

int readRowId(sqlite3_vtab_cursor* cursor, sqlite3_int64* rowId) {
  *rowId = reinterpret_cast<Cursor*>(cursor)->row;
  return SQLITE_OK;
}

// Without xCreate a table of this module exists under the module's name in every database.
const sqlite3_module kModule = [] {
  sqlite3_module module{};
  module.iVersion = 1;
  module.xConnect = connectTable;
  module.xBestIndex = planScan;
  module.xDisconnect = disconnectTable;
  module.xOpen = openCursor;
  module.xClose = closeCursor;
  module.xFilter = startScan;
  module.xNext = nextRow;
  module.xEof = isAtEnd;
  module.xColumn = readColumn;
  module.xRowid = readRowId;
  return module;
}();

}  // namespace

Status addCatalogue(sqlite3* connection, StatementWatch& watch) {
  // For the catalogue's own statements, not for what a file brings along.
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DIRECTONLY;
  int result = sqlite3_create_function_v2(connection, "quivane_length", 1, kFlags | SQLITE_DETERMINISTIC,
                                          nullptr, lengthFunction, nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) {
    result = sqlite3_create_function_v2(connection, "quivane_odbc_type", 1, kFlags | SQLITE_DETERMINISTIC,
                                        nullptr, odbcTypeFunction, nullptr, nullptr, nullptr);
  }
  if (result == SQLITE_OK) {
    result = sqlite3_create_function_v2(connection, "quivane_readable", 1, kFlags, &watch, readableFunction,
                                        nullptr, nullptr, nullptr);
  }
  for (const CatalogueTable& table : kTables) {
    for (const char* name : {table.name, table.secondName}) {
      if (result != SQLITE_OK) break;
      result =
          sqlite3_create_module_v2(connection, name, &kModule, const_cast<CatalogueTable*>(&table), nullptr);
    }
  }
  return statusOf(connection, result);
}

bool isCatalogueTable(const char* name) {
  for (const CatalogueTable& table : kTables) {
    if (sqlite3_stricmp(table.name, name) == 0) return true;
  }
  return false;
}

const char* catalogueSourceOf(std::string_view name, bool anyCase) {
  for (const CatalogueTable& table : kTables) {
    const bool isIt =
        anyCase ? sqlite3_stricmp(table.name, std::string(name).c_str()) == 0 : name == table.name;
    if (isIt) return table.secondName;
  }
  return nullptr;
}

}  // namespace store
