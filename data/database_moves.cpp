#include "data/database.h"
#include "data/recordset_handle.h"

bool Database::moveFirst() {
  isAtListPosition_ = false;
  const bool moved = recordset_->moveFirst();
  if (moved || recordCount_ == 0) currentRecord = 1;
  return moved;
}

bool Database::moveLast() {
  isAtListPosition_ = false;
  if (!recordset_->moveLast()) return false;
  currentRecord = recordCount_;
  return true;
}

bool Database::moveNext() {
  isAtListPosition_ = false;
  if (!recordset_->moveNext()) return false;
  ++currentRecord;
  return true;
}

bool Database::movePrevious() {
  isAtListPosition_ = false;
  if (!recordset_->movePrevious()) return false;
  if (currentRecord > 0) --currentRecord;
  return true;
}

bool Database::moveTo(std::uint32_t position) {
  isAtListPosition_ = false;
  if (!recordset_->move(static_cast<LONG>(position - 1), MoveOrigin::first)) return false;
  currentRecord = position;
  return true;
}

bool Database::moveForList(std::uint32_t row) {
  const LONG distance = static_cast<LONG>(row - listPosition_ + 1);
  // The list position says nothing about the current record once something else has moved it.
  const bool moved = isAtListPosition_ && distance != 0
                         ? recordset_->move(distance, MoveOrigin::current)
                         : recordset_->move(static_cast<LONG>(row), MoveOrigin::first);
  isAtListPosition_ = moved;
  if (moved) listPosition_ = row + 1;
  return moved;
}
