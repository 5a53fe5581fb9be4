// What the current record says: whole, field by field, and when a text is looked for in it.
#include <optional>
#include <utility>
#include <vector>

#include "data/database/database.h"
#include "data/handles/recordset_handle.h"
#include "data/values/field_kinds.h"

namespace {

FieldSnapshot::State stateOf(const Variant& value, const String& text) {
  using State = FieldSnapshot::State;
  if (value.type() == VT_NULL || value.type() == VT_EMPTY) return State::null;
  const bool mayBeEmpty = value.type() == VT_BSTR || (value.type() & VT_ARRAY) != 0;
  return text.isEmpty() && !mayBeEmpty ? State::unreadable : State::value;
}

}  // namespace

RecordSnapshot Database::readRecord() {
  return readFrom(*recordset_, currentRecord, newRecordPending_);
}

RecordSnapshot Database::readFrom(RecordsetHandle& records, std::uint32_t position, bool isNew) const {
  std::vector<FieldSnapshot> fields(fieldCount_);
  for (std::uint32_t index = 0; index < fieldCount_; ++index) {
    FieldSnapshot& field = fields[index];
    // The first field that can't be fetched ends it: each further one would wait for the same lock again.
    Outcome read = records.field(static_cast<LONG>(index)).readBeginning(kMostReadBytes, field.read);
    if (!read) return {position, std::move(read)};
    field.text = textOfBeginning(fieldType(index), field.read);
    field.state = stateOf(field.read.value, field.text);
  }
  return {position, isNew, std::move(fields), isNew ? RecordMark() : markOf(records)};
}

String Database::valueText(std::uint32_t field) {
  if (field >= fieldCount_) return {};
  return fieldKind(fieldType(field)).textOf(recordset_->field(static_cast<LONG>(field)).value());
}

bool Database::fieldIsSet(std::uint32_t field) {
  return recordset_->field(static_cast<LONG>(field)).valueAsInteger() != 0;
}

bool Database::matchRecord(bool allFields, bool matchCase, std::uint32_t firstField, String text,
                           std::uint32_t& foundField) {
  std::optional<std::uint32_t> found;
  const Outcome searched = searchRecord(allFields, matchCase, firstField, std::move(text), found);
  if (!searched || !found) return false;
  foundField = *found;
  return true;
}

Outcome Database::searchRecord(bool allFields, bool matchCase, std::uint32_t firstField, String text,
                               std::optional<std::uint32_t>& foundField) {
  if (!matchCase) text.toUpperCase();
  const std::uint32_t end = allFields ? fieldCount_ : firstField + 1;
  for (std::uint32_t field = firstField; field < end && field < fieldCount_; ++field) {
    const FieldKind& kind = fieldKind(fieldType(field));
    if (!kind.isSearched) continue;
    Variant value;
    if (Outcome read = recordset_->field(static_cast<LONG>(field)).read(value); !read) return read;
    String shown = kind.textOf(value);
    if (!matchCase) shown.toUpperCase();
    if (shown.find(text.text()) < 0) continue;
    foundField = field;
    return {};
  }
  foundField.reset();
  return {};
}
