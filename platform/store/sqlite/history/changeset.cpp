#include "platform/store/sqlite/history/changeset.h"

namespace store {

ChangesetReader::ChangesetReader(const Changeset& changes, bool isInverted) {
  if (changes.isEmpty()) {
    result_ = SQLITE_DONE;
    return;
  }
  result_ = sqlite3changeset_start_v2(&iterator_, changes.size(), changes.bytes(),
                                      isInverted ? SQLITE_CHANGESETSTART_INVERT : 0);
}

ChangesetReader::~ChangesetReader() {
  sqlite3changeset_finalize(iterator_);
}

bool ChangesetReader::next() {
  if (result_ != SQLITE_OK && result_ != SQLITE_ROW) return false;
  result_ = sqlite3changeset_next(iterator_);
  if (result_ != SQLITE_ROW) return false;
  const char* table = nullptr;
  int indirect = 0;
  result_ = sqlite3changeset_op(iterator_, &table, &columnCount_, &operation_, &indirect);
  if (result_ != SQLITE_OK) return false;
  result_ = SQLITE_ROW;
  isOtherTable_ = table_ != table;
  if (isOtherTable_) table_ = table;
  isIndirect_ = indirect != 0;
  return true;
}

sqlite3_value* ChangesetReader::before(int column) const {
  sqlite3_value* value = nullptr;
  if (operation_ != SQLITE_INSERT) sqlite3changeset_old(iterator_, column, &value);
  return value;
}

sqlite3_value* ChangesetReader::behind(int column) const {
  sqlite3_value* value = nullptr;
  if (operation_ != SQLITE_DELETE) sqlite3changeset_new(iterator_, column, &value);
  return value;
}

}  // namespace store
