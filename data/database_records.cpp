#include "data/database.h"
#include "data/recordset_handle.h"

bool Database::addNew() {
  if (moveLast()) {
    ++currentRecord;
  } else if (recordCount_ != 0) {
    return false;
  }
  setRecordCount(recordCount_ + 1);
  newRecordPending_ = true;
  recordset_->addNew();
  return true;
}

bool Database::update() {
  if (recordset_->update()) newRecordPending_ = false;
  return true;
}

bool Database::deleteCurrent() {
  isAtListPosition_ = false;
  if (newRecordPending_) {
    // Without this the next move would store the record, as it does with every unfinished one.
    recordset_->cancelUpdate();
    newRecordPending_ = false;
    setRecordCount(recordCount_ - 1);
    return true;
  }
  if (!recordset_->deleteCurrent()) return false;
  setRecordCount(recordCount_ - 1);
  if (currentRecord > 0) --currentRecord;
  return true;
}
