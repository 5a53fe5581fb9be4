#include "data/database.h"
#include "data/last_error.h"
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
  updateRefused_ = !recordset_->update();
  if (updateRefused_) {
    refusalText_ = takeLastErrorText();
  } else {
    newRecordPending_ = false;
  }
  return true;
}

void Database::abandonUpdate() {
  updateRefused_ = false;
  isAtListPosition_ = false;
  recordset_->cancelUpdate();
  if (!newRecordPending_) return;
  newRecordPending_ = false;
  setRecordCount(recordCount_ - 1);
  if (currentRecord > 0) --currentRecord;
}

bool Database::deleteCurrent() {
  isAtListPosition_ = false;
  if (newRecordPending_) {
    // Without this the next move would store the record, as it does with every unfinished one.
    recordset_->cancelUpdate();
    newRecordPending_ = false;
    updateRefused_ = false;
    setRecordCount(recordCount_ - 1);
    return true;
  }
  if (!recordset_->deleteCurrent()) {
    refusalText_ = takeLastErrorText();
    return false;
  }
  updateRefused_ = false;
  setRecordCount(recordCount_ - 1);
  if (currentRecord > 0) --currentRecord;
  return true;
}
