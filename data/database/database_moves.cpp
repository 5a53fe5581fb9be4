#include "data/database/database.h"
#include "data/handles/recordset_handle.h"

bool Database::moveFirst() {
  const bool moved = recordset_->moveFirst();
  if (moved || recordCount_ == 0) currentRecord = 1;
  return moved;
}

bool Database::moveLast() {
  if (!recordset_->moveLast()) return false;
  currentRecord = recordCount_;
  return true;
}

bool Database::moveNext() {
  if (!recordset_->moveNext()) return false;
  ++currentRecord;
  return true;
}

bool Database::movePrevious() {
  if (!recordset_->movePrevious()) return false;
  if (currentRecord > 0) --currentRecord;
  return true;
}

bool Database::moveTo(std::uint32_t position) {
  if (!recordset_->move(static_cast<LONG>(position - 1), MoveOrigin::first)) return false;
  currentRecord = position;
  return true;
}
