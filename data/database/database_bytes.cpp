// Whole values of the record that was read as a snapshot. They are read by the list's cursor: what the user
// has written into the current record, and which one that is, stay.
#include <utility>

#include "data/database/database.h"
#include "data/handles/recordset_handle.h"
#include "data/values/binary_text.h"

/// Moves the list's cursor to the record and looks whether the field still holds what was seen.
Outcome Database::returnForBytes(const RecordSnapshot& seen, std::uint32_t field) {
  if (!seen.isReadable() || field >= seen.fields().size()) return Outcome::failure(L"It was not read.");
  if (seen.isNew()) return Outcome::failure(L"The record is new and not stored yet.");
  if (!moveForList(seen.position() - 1)) return Outcome::failure(L"It can no longer be reached.");
  ValueBeginning present;
  Outcome read = listRows_->field(static_cast<LONG>(field)).readBeginning(kMostReadBytes, present);
  if (!read) {
    isAtListPosition_ = false;  // a move back to it reads it anew
    return read;
  }
  if (isSameBeginning(present, seen.fields()[field].read)) return {};
  return Outcome::failure(L"Another program has changed the record since it was read.",
                          Outcome::Cause::changedElsewhere);
}

Outcome Database::readBytes(const RecordSnapshot& seen, std::uint32_t field, Bytes& bytes) {
  if (Outcome returned = returnForBytes(seen, field); !returned) return returned;
  Variant value;
  if (Outcome read = listRows_->field(static_cast<LONG>(field)).read(value); !read) {
    isAtListPosition_ = false;
    return read;
  }
  bytes = bytesOf(value);
  return {};
}

Outcome Database::saveBytes(const RecordSnapshot& seen, std::uint32_t field, const String& path) {
  if (Outcome returned = returnForBytes(seen, field); !returned) return returned;
  return listRows_->saveField(static_cast<LONG>(field), path.text());
}
