#include "platform/store/sqlite/connection/statement_permissions.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/store/sqlite/connection/catalogue.h"

namespace store {

namespace {

// Pragmas that only tell something. All others could weaken the connection or the file.
constexpr std::array<std::string_view, 20> kTellingPragmas{
    "application_id", "collation_list",    "compile_options",  "data_version",    "database_list",
    "encoding",       "foreign_key_check", "foreign_key_list", "freelist_count",  "function_list",
    "index_info",     "index_list",        "index_xinfo",      "integrity_check", "page_count",
    "page_size",      "quick_check",       "table_info",       "table_list",      "table_xinfo"};
// These tell something only without an argument.
constexpr std::array<std::string_view, 4> kWritablePragmas{"application_id", "encoding", "page_size",
                                                           "user_version"};

bool contains(const auto& names, const char* name) {
  return std::any_of(names.begin(), names.end(), [name](std::string_view known) {
    return sqlite3_stricmp(std::string(known).c_str(), name) == 0;
  });
}

bool isTellingPragma(const char* name, const char* argument) {
  if (contains(kWritablePragmas, name)) return argument == nullptr;
  return contains(kTellingPragmas, name);
}

}  // namespace

void StatementPermissions::watchOver(sqlite3* connection) {
  sqlite3_set_authorizer(connection, &StatementPermissions::authorize, this);
}

void StatementPermissions::beginOutside() {
  isOutside_ = true;
  readsTable_ = false;
}

bool StatementPermissions::endOutside() {
  isOutside_ = false;
  return readsTable_;
}

int StatementPermissions::authorize(void* self, int action, const char* first, const char* second,
                                    const char* database, const char* /*trigger*/) {
  return static_cast<StatementPermissions*>(self)->allows(action, first, second, database) ? SQLITE_OK
                                                                                           : SQLITE_DENY;
}

bool StatementPermissions::allows(int action, const char* first, const char* second, const char* database) {
  // VACUUM attaches a file without a name while it runs; VACUUM INTO would attach another one.
  if (action == SQLITE_ATTACH && first != nullptr && first[0] != '\0') return false;
  if (!isOutside_) return true;
  switch (action) {
    case SQLITE_READ:
      readsTable_ = true;
      return true;
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
    // The temporary database is the engine's own: it keeps results there, and a table of the user's would
    // hide one of the file.
    case SQLITE_CREATE_TEMP_TABLE:
    case SQLITE_CREATE_TEMP_VIEW:
    case SQLITE_CREATE_TEMP_TRIGGER:
    case SQLITE_CREATE_TEMP_INDEX:
    case SQLITE_DROP_TEMP_TABLE:
      return false;
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      // (ALTER TABLE looks through its schema.)
      return database == nullptr || sqlite3_stricmp(database, "temp") != 0 ||
             sqlite3_strnicmp(first, "sqlite_temp_", 12) == 0;
    case SQLITE_PRAGMA:
      return isTellingPragma(first, second);
    case SQLITE_CREATE_TABLE:
    case SQLITE_CREATE_VIEW:
    case SQLITE_CREATE_VTABLE:
      return !isCatalogueTable(first);
    default:
      return true;
  }
}

}  // namespace store
