#include "platform/store/odbc/catalogue/catalogue_tables.h"

#include <string>

#include "platform/store/odbc/catalogue/server_catalogue.h"

namespace store {

namespace {

// The identifiers 1 to 4 are the catalogue's own; a server's begin far above.
constexpr std::string_view kUsersTables =
    "quivane_tables(\"TableName\", \"TableID\", \"TableFlags\", oid) AS ("
    "SELECT CASE WHEN pg_catalog.pg_table_is_visible(c.oid) THEN c.relname::text ELSE n.nspname || '.' || "
    "c.relname "
    "END, (c.oid::bigint & 2147483647)::integer, CASE WHEN c.relkind IN ('r', 'p') THEN 0 ELSE 2 END, c.oid "
    "FROM pg_catalog.pg_class c JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace WHERE ";

constexpr std::string_view kTables =
    "\"MSysTables\"(\"TableName\", \"TableID\", \"TableFlags\") AS ("
    "SELECT * FROM (VALUES ('MSysFields'::varchar(128), 1, 3), ('MSysTables', 2, 3), ('MSysIndexes', 3, 3), "
    "('MSysProcs', 4, 3)) AS own UNION ALL SELECT \"TableName\", \"TableID\", \"TableFlags\" FROM "
    "quivane_tables "
    "ORDER BY 2)";

// ODBC's numbers of the types, and the lengths that the handheld's types have.
constexpr std::string_view kFields =
    "\"MSysFields\"(\"TableID\", \"FieldName\", \"FieldID\", \"Len\", \"ODBCType\") AS ("
    "SELECT * FROM (VALUES (1, 'TableID'::varchar(64), 0, 4, 4), (1, 'FieldName', 1, 64, -9), (1, 'FieldID', "
    "2, 4, 4), "
    "(1, 'Len', 3, 4, 4), (1, 'ODBCType', 4, 4, 4), (2, 'TableName', 0, 128, -9), (2, 'TableID', 1, 4, 4), "
    "(2, 'TableFlags', 2, 4, 4), (3, 'TableID', 0, 4, 4), (3, 'IndexName', 1, 64, -9), (3, 'FieldID', 2, 4, "
    "4), "
    "(3, 'IndexFlags', 3, 4, 4), (4, 'ProcName', 0, 128, -9), (4, 'SQLText', 1, 1073741823, -10)) AS own "
    "UNION ALL "
    "SELECT t.\"TableID\", a.attname::text, a.attnum - 1, CASE y.typname WHEN 'int2' THEN 2 WHEN 'bool' THEN "
    "2 "
    "WHEN 'int4' THEN 4 WHEN 'oid' THEN 4 WHEN 'int8' THEN 20 WHEN 'float4' THEN 8 WHEN 'float8' THEN 8 "
    "WHEN 'date' THEN 8 WHEN 'time' THEN 8 WHEN 'timestamp' THEN 8 WHEN 'bytea' THEN 2147483647 "
    "ELSE CASE WHEN y.typname IN ('varchar', 'bpchar') AND a.atttypmod > 4 THEN a.atttypmod - 4 ELSE "
    "1073741823 END "
    "END, CASE y.typname WHEN 'int2' THEN 5 WHEN 'bool' THEN -7 WHEN 'int4' THEN 4 WHEN 'oid' THEN 4 "
    "WHEN 'int8' THEN -9 WHEN 'float4' THEN 8 WHEN 'float8' THEN 8 WHEN 'date' THEN 11 WHEN 'time' THEN 11 "
    "WHEN 'timestamp' THEN 11 WHEN 'bytea' THEN -4 ELSE CASE WHEN y.typname IN ('varchar', 'bpchar') "
    "AND a.atttypmod > 4 THEN -9 ELSE -10 END END FROM quivane_tables t JOIN pg_catalog.pg_attribute a "
    "ON a.attrelid = t.oid JOIN pg_catalog.pg_type y ON y.oid = a.atttypid WHERE a.attnum > 0 AND NOT "
    "a.attisdropped "
    "AND a.attname <> 'quivane_row' ORDER BY 1, 3)";

// The server's bits are 1 descending and 2 nulls first.
constexpr std::string_view kIndexes =
    "\"MSysIndexes\"(\"TableID\", \"IndexName\", \"FieldID\", \"IndexFlags\") AS ("
    "SELECT t.\"TableID\", x.relname::varchar(64), k.number - 1, (k.flags & 1) + CASE WHEN k.flags & 2 = 2 "
    "THEN 4 ELSE 0 "
    "END FROM quivane_tables t JOIN pg_catalog.pg_index i ON i.indrelid = t.oid JOIN pg_catalog.pg_class x "
    "ON x.oid = i.indexrelid CROSS JOIN LATERAL unnest(pg_catalog.string_to_array(i.indkey::text, "
    "' ')::int[], "
    "pg_catalog.string_to_array(i.indoption::text, ' ')::int[]) WITH ORDINALITY AS k(number, flags, place) "
    "WHERE k.place <= i.indnkeyatts ORDER BY t.\"TableID\", x.oid, k.place)";

constexpr std::string_view kProcedures =
    "\"MSysProcs\"(\"ProcName\", \"SQLText\") AS (SELECT ''::varchar(128), ''::text WHERE false)";

}  // namespace

std::vector<std::string_view> catalogueColumns(std::string_view table) {
  if (table == "MSysTables") return {"TableName", "TableID", "TableFlags"};
  if (table == "MSysFields") return {"TableID", "FieldName", "FieldID", "Len", "ODBCType"};
  if (table == "MSysIndexes") return {"TableID", "IndexName", "FieldID", "IndexFlags"};
  return {"ProcName", "SQLText"};
}

std::string ServerCatalogue::catalogueClause(bool isContinued) {
  std::string clause = "WITH ";
  clause.append(kUsersTables).append(kIsUsers).append(" AND (").append(kIsReadable);
  // That the saved queries may not be read is told, and not taken for none.
  clause.append(" OR (c.relname = 'QuivaneQueries' AND pg_catalog.pg_table_is_visible(c.oid)))), ");
  clause.append(kTables).append(", ").append(kFields).append(", ");
  clause.append(kIndexes).append(", ").append(kProcedures);
  return clause + (isContinued ? ", " : " ");
}

}  // namespace store
