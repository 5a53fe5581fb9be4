#include "platform/store/engine/rollback_journal.h"

namespace store {

int RollbackJournal::prepare() {
  if (isMode("delete")) {
    const int result = runKept(connection_, empty_, "PRAGMA journal_mode=TRUNCATE");
    if (result != SQLITE_OK) return result;
  }
  isKept_ = isMode("truncate");
  return SQLITE_OK;
}

void RollbackJournal::giveBack() {
  if (!isKept_) return;
  isKept_ = false;
  const LockWait::Never never(guard_.lockWait());
  // SQLite closes the journal first, so what can't be deleted now holds up nobody.
  if (isMode("truncate")) runKept(connection_, delete_, "PRAGMA journal_mode=DELETE");
}

bool RollbackJournal::isMode(std::string_view mode) {
  if (prepareKept(connection_, mode_, "PRAGMA journal_mode") != SQLITE_OK) return false;
  const StatementRun run(mode_.get());
  return sqlite3_step(mode_.get()) == SQLITE_ROW && columnText(mode_.get(), 0) == mode;
}

}  // namespace store
