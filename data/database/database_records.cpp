// New, changed and deleted records. What is changed or deleted is what was seen.
#include <algorithm>
#include <utility>

#include "data/database/database.h"
#include "data/handles/recordset_handle.h"

Outcome Database::addNew() {
  const std::uint32_t before = currentRecord;
  if (moveLast()) {
    ++currentRecord;
  } else if (recordCount_ != 0) {
    return Outcome::failure(L"The last record can't be reached.");
  }
  if (Outcome begun = recordset_->addNew(); !begun) {
    // What would be written next would go into the last record.
    currentRecord = before;
    return begun;
  }
  setRecordCount(recordCount_ + 1);
  newRecordPending_ = true;
  return {};
}

bool Database::update() {
  dropListRows();
  if (recordset_->update()) newRecordPending_ = false;
  return true;
}

void Database::abandonUpdate() {
  dropListRows();
  recordset_->cancelUpdate();
  if (!newRecordPending_) return;
  newRecordPending_ = false;
  setRecordCount(recordCount_ - 1);
  if (currentRecord > 0) --currentRecord;
}

Outcome Database::deleteCurrent() {
  dropListRows();
  if (newRecordPending_) {
    // Without this the next move would store the record, as it does with every unfinished one.
    recordset_->cancelUpdate();
    newRecordPending_ = false;
    setRecordCount(recordCount_ - 1);
    return {};
  }
  if (Outcome deleted = recordset_->deleteCurrent(); !deleted) return deleted;
  setRecordCount(recordCount_ - 1);
  if (currentRecord > 0) --currentRecord;
  return {};
}

Outcome Database::storeRecord(const RecordSnapshot& seen, const FieldEditors& editors, NameList& leftOut) {
  if (newRecordPending_) {
    Outcome stored = writeAndStore(editors, leftOut);
    if (stored.cause() != Outcome::Cause::structureChanged || !reopenSameFields()) return stored;
    currentRecord = recordCount_;
    return writeAndStore(editors, leftOut);
  }
  if (Outcome returned = returnOrReopen(seen); !returned) return returned;
  Outcome stored = writeAndStore(editors, leftOut);
  if (!stored) recordset_->cancelUpdate();
  return stored;
}

Outcome Database::deleteRecord(const RecordSnapshot& seen) {
  if (!newRecordPending_) {
    Outcome returned = returnOrReopen(seen);
    // Whoever has deleted it did what is asked for here.
    if (!returned && returned.cause() != Outcome::Cause::recordGone) return returned;
  }
  return deleteCurrent();
}

/// Makes the record current that was read as `seen`. What it holds now is compared with what was seen, and
/// the store in its turn lets it be changed only as long as it holds what was read here.
Outcome Database::returnTo(const RecordSnapshot& seen) {
  if (seen.isEmpty()) return Outcome::failure(L"It was not read.");
  if (!seen.isReadable() && seen.outcome().cause() != Outcome::Cause::recordGone) return seen.outcome();
  if (!standAt(seen)) {
    return Outcome::failure(L"It can no longer be reached.", Outcome::Cause::changedElsewhere);
  }
  const RecordSnapshot present = readRecord();
  if (!present.isReadable()) return present.outcome();
  if (!holds(present, seen)) {
    return Outcome::failure(L"Another program has changed the record since it was read.",
                            Outcome::Cause::changedElsewhere);
  }
  return seen.mark().rebuilds_ == rebuilds_ ? Outcome() : checkOnlyOne(seen);
}

/// By its key: its place is another one when its records were opened anew meanwhile. False when it is none of
/// them; the one that stands in its place is current then.
bool Database::standAt(const RecordSnapshot& seen) {
  const RecordMark& mark = seen.mark();
  if (mark.isEmpty()) return moveTo(seen.position());
  if (recordCount_ == 0 || !moveTo(std::clamp(seen.position(), 1u, recordCount_))) return false;
  if (!recordset_->goTo(mark.key_)) return false;
  currentRecord = static_cast<std::uint32_t>(std::max(recordset_->position(), 1L));
  return true;
}

/// A program that rebuilds the file may give the key of a record to another one, so that no more than the
/// values tell whether it is the same.
Outcome Database::checkOnlyOne(const RecordSnapshot& seen) const {
  const std::unique_ptr<RecordsetHandle> records = recordset_->clone();
  const std::uint32_t count = records ? countOf(*records) : 0;
  unsigned same = 0;
  for (std::uint32_t passed = 0; passed < count; ++passed) {
    bool isSame = true;
    for (std::uint32_t field = 0; field < fieldCount_ && isSame; ++field) {
      if (isFieldReadOnly(field)) continue;
      ValueBeginning present;
      Outcome read = records->field(static_cast<LONG>(field)).readBeginning(kMostReadBytes, present);
      if (!read && read.cause() != Outcome::Cause::recordGone) return read;
      isSame = read && isSameBeginning(present, seen.fields()[field].read);
    }
    if (isSame) ++same;
    if (same > 1) break;
    if (Outcome read = records->readOn(); !read) return read;
  }
  if (same == 1) return {};
  return Outcome::failure(
      L"Another program has changed the structure of the database, and another record holds the same.",
      Outcome::Cause::changedElsewhere);
}

Outcome Database::returnOrReopen(const RecordSnapshot& seen) {
  Outcome returned = returnTo(seen);
  if (returned.cause() != Outcome::Cause::structureChanged || !reopenSameFields()) return returned;
  return returnTo(seen);
}

/// Fields that can't be written don't count: an expression may say something else each time.
bool Database::holds(const RecordSnapshot& present, const RecordSnapshot& seen) const {
  if (present.fields().size() != seen.fields().size()) return false;
  for (std::uint32_t field = 0; field < present.fields().size(); ++field) {
    if (!isFieldReadOnly(field) &&
        !isSameBeginning(present.fields()[field].read, seen.fields()[field].read)) {
      return false;
    }
  }
  return true;
}

Outcome Database::writeAndStore(const FieldEditors& editors, NameList& leftOut) {
  NameList cleared;
  const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(editors.size(), fieldCount_));
  for (std::uint32_t field = 0; field < count; ++field) {
    if (Outcome written = writeField(field, *editors[field], cleared); !written) return written;
  }
  leftOut.swap(cleared);
  dropListRows();
  Outcome stored = recordset_->update();
  if (stored) newRecordPending_ = false;
  return stored;
}
