// Which database, table or query is reopened at the next start.
#include <cstdint>

#include "base/settings_store.h"
#include "records/document.h"

namespace {

constexpr wchar_t kLastDatabase[] = L"LastDBOnStartup";
constexpr wchar_t kLastTable[] = L"LastTableOnStartup";
constexpr wchar_t kLastQuery[] = L"LastQueryOnStartup";
constexpr wchar_t kLastSql[] = L"LastSQLQuery";
constexpr wchar_t kOpenQuery[] = L"OpenQueryOnStartup";

void writeText(const wchar_t* name, const String& text) {
  SettingsStore::writeString(SettingsStore::kOptions, name, text);
}

/// Empty for a value that can't be read.
String readText(const wchar_t* name) {
  String text;
  SettingsStore::readString(SettingsStore::kOptions, name, text);
  return text;
}

}  // namespace

void Document::saveSession() {
  writeText(kLastDatabase, databasePath_);
  writeText(kLastTable, tableName());
  writeText(kLastQuery, queryName());
  writeText(kLastSql, sqlText());
  SettingsStore::writeDword(SettingsStore::kOptions, kOpenQuery, openedFromQuery() ? 1 : 0);
}

RestoreResult Document::restoreSession() {
  String path;
  std::uint32_t openQuery = 0;
  const String table = readText(kLastTable);
  const String query = readText(kLastQuery);
  if (!SettingsStore::readString(SettingsStore::kOptions, kLastDatabase, path) ||
      !SettingsStore::readDword(SettingsStore::kOptions, kOpenQuery, 0, openQuery) || !openConnection(path)) {
    return RestoreResult::nothing;
  }
  databaseOpen_ = true;
  reselectTable_ = true;
  if (restoreRecords(table, query, openQuery != 0)) return RestoreResult::records;

  wanted_.chooseNone();
  setViewMode(ViewMode::tables);
  if (tableNames_.isEmpty()) return RestoreResult::noTables;
  openTableSelection(0);
  return RestoreResult::tables;
}

bool Document::restoreRecords(const String& table, const String& query, bool asQuery) {
  if (asQuery && !query.isEmpty()) {
    String sql;
    if (!SettingsStore::readString(SettingsStore::kOptions, kLastSql, sql)) return false;
    wanted_.chooseQuery(query, sql, table);
    setViewMode(ViewMode::form);
    return recordsetOpen_;
  }
  if (table.isEmpty()) return false;
  wanted_.chooseTable(table);
  setViewMode(ViewMode::form);
  return recordsetOpen_;
}
