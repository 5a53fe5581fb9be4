// Former states of databases.
#include <windows.h>

#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "data/handles/copies_handle.h"

void Database::keepCopiesIn(const String& folder) {
  copiesFolder_ = folder;
  CopiesHandle(*connection_).keepIn(folder);
}

String Database::takeCopyFailure() {
  return isOpen_ ? CopiesHandle(*connection_).takeFailure() : String();
}

Outcome Database::keepBeforeDeletion() {
  if (copiesFolder_.isEmpty()) return {};
  dropListRows();
  return CopiesHandle(*connection_).keepBeforeDeletion();
}

Outcome Database::keepDatabase(const String& path) {
  return copiesFolder_.isEmpty() ? Outcome() : CopiesHandle(*connection_).keepDatabase(path);
}

bool Database::isThere(const String& path) {
  return GetFileAttributesW(path.text()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<String> Database::databasesWithCopies() {
  return CopiesHandle(*connection_).databases();
}

std::vector<DatabaseCopy> Database::copiesOf(const String& database) {
  return CopiesHandle(*connection_).copiesOf(database);
}

bool Database::isCopy(const String& path) {
  return CopiesHandle(*connection_).isCopy(path);
}

std::int64_t Database::countRecordsOfCopy(const String& copy, unsigned milliseconds) {
  return CopiesHandle(*connection_).countRecords(copy, milliseconds);
}

Outcome Database::putBack(const String& database, const String& copy) {
  return CopiesHandle(*connection_).putBack(database, copy);
}

Outcome Database::putTableBack(const String& database, const String& copy, const String& table) {
  return CopiesHandle(*connection_).putTableBack(database, copy, table);
}

Outcome Database::listMissingTables(const String& database, const String& copy, NameList& names) {
  return CopiesHandle(*connection_).listMissingTables(database, copy, names);
}
