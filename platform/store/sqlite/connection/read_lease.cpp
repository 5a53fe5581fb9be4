#include "platform/store/sqlite/connection/read_lease.h"

namespace store {

int ReadLease::begin(bool* isNew) {
  if (guard_.takeOverdue()) end();
  isActive_ = isOpen();
  *isNew = !isActive_;
  // Without anybody to end it the transaction is not held: each read is then one of its own.
  if (!guard_.lend() || isActive_) return SQLITE_OK;
  const int result = runKept(connection_, begin_, "BEGIN");
  isActive_ = result == SQLITE_OK;
  return result;
}

bool ReadLease::isOpen() const {
  return isActive_ && sqlite3_get_autocommit(connection_) == 0;
}

void ReadLease::handOver() {
  isActive_ = false;
}

void ReadLease::end() {
  if (!isActive_) return;
  isActive_ = false;
  if (runKept(connection_, commit_, "COMMIT") != SQLITE_OK) undo(connection_);
}

}  // namespace store
