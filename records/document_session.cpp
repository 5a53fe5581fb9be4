// Which database, table or query is reopened at the next start.
#include <cstdint>

#include "base/settings/settings_store.h"
#include "records/parts/former_states.h"

namespace {

/// Empty for a value that can't be read.
String readText(Setting setting) {
  String text;
  SettingsStore::read(setting, text);
  return text;
}

}  // namespace

void Document::saveSession() {
  // Of a copy that is looked at the database is what is opened next time.
  SettingsStore::write(Setting::lastDatabase, formerStates_->presentDatabase());
  SettingsStore::write(Setting::lastTable, tableName());
  SettingsStore::write(Setting::lastQuery, queryName());
  SettingsStore::write(Setting::lastSql, wanted_.plainSql());
  SettingsStore::write(Setting::openQuery, openedFromQuery() ? 1u : 0u);
}

RestoreResult Document::restoreSession() {
  String path;
  std::uint32_t openQuery = 0;
  const String table = readText(Setting::lastTable);
  const String query = readText(Setting::lastQuery);
  if (!SettingsStore::read(Setting::lastDatabase, path) ||
      !SettingsStore::read(Setting::openQuery, openQuery) || !openConnection(path)) {
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
    if (!SettingsStore::read(Setting::lastSql, sql)) return false;
    chooseQuery(query, sql, table);
    static_cast<void>(switchMode(ViewMode::form));
    return recordsetOpen_;
  }
  if (table.isEmpty()) return false;
  chooseTable(table);
  static_cast<void>(switchMode(ViewMode::form));
  return recordsetOpen_;
}
