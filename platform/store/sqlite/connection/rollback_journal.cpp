#include "platform/store/sqlite/connection/rollback_journal.h"

namespace store {

int RollbackJournal::prepare() {
  if (!isMode("delete")) return SQLITE_OK;
  return runKept(connection_, empty_, "PRAGMA journal_mode=TRUNCATE");
}

void RollbackJournal::remove() {
  // With SQLite's own lock for it, so that it is nobody's who writes at the moment.
  if (isMode("truncate")) sqlite3_exec(connection_, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
}

bool RollbackJournal::isMode(std::string_view mode) {
  if (prepareKept(connection_, mode_, "PRAGMA journal_mode") != SQLITE_OK) return false;
  const StatementRun run(mode_.get());
  return sqlite3_step(mode_.get()) == SQLITE_ROW && columnText(mode_.get(), 0) == mode;
}

}  // namespace store
