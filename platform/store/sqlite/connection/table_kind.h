#pragma once

namespace store {

/// What a row `s` of sqlite_schema with the type 'table' or 'view' stands for, as an expression of SQL:
/// 'table', 'view', 'virtual', or 'shadow' for a table in which a virtual one keeps its content.
///
/// PRAGMA table_list would tell the same. But it looks into every view of the file first, each time, and a
/// file of bad views lets it do so for as long as their maker likes.
#define QUIVANE_KIND_OF_TABLE                                                                             \
  "CASE WHEN s.type = 'view' THEN 'view' WHEN ifnull(s.rootpage, 0) = 0 THEN 'virtual' "                  \
  "WHEN lower(s.name) IN (SELECT lower(v.name) || '_' || p.ending FROM sqlite_schema v JOIN ("            \
  "SELECT 'fts5' AS module, 'config' AS ending UNION ALL SELECT 'fts5', 'content' "                       \
  "UNION ALL SELECT 'fts5', 'data' UNION ALL SELECT 'fts5', 'docsize' UNION ALL SELECT 'fts5', 'idx' "    \
  "UNION ALL SELECT 'rtree', 'node' UNION ALL SELECT 'rtree', 'parent' UNION ALL SELECT 'rtree', 'rowid'" \
  ") p ON v.type = 'table' AND ifnull(v.rootpage, 0) = 0 AND v.sql LIKE '%using%' || p.module || '%') "   \
  "THEN 'shadow' ELSE 'table' END"

}  // namespace store
