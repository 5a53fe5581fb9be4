#include <cwchar>

#include "data/database/database.h"
#include "data/handles/recordset_handle.h"
#include "data/values/date_value.h"
#include "data/values/field_kinds.h"

namespace {

bool sameText(const String& one, const String& other) {
  return std::wcscmp(one.text(), other.text()) == 0;
}

/// A content that is more than nothing: what it says is lost when it can't be stored.
bool saysSomething(const FieldKind& kind, const FieldValueSource& editor) {
  const String text = editor.text();
  return !text.isEmpty() && (kind.editor != FieldEditorKind::date || !sameText(text, kNoDateText));
}

}  // namespace

bool Database::setValueFromEditor(std::uint32_t field, const FieldValueSource& editor) {
  NameList leftOut;
  if (!fieldKind(fieldType(field)).valueOf) return false;
  // Whether the store took it shows when the record is stored.
  static_cast<void>(writeField(field, editor, leftOut));
  return true;
}

/// Does nothing for a field whose editor has nothing to write. `leftOut` receives the name of a field that
/// was cleared because the content could not be converted.
Outcome Database::writeField(std::uint32_t field, const FieldValueSource& editor, NameList& leftOut) {
  const FieldKind& kind = fieldKind(fieldType(field));
  if (!kind.valueOf) return {};
  // In a new record, too, a field that can't be written is left to the database.
  if (!editor.isEdited() && (!newRecordPending_ || isFieldReadOnly(field))) return {};
  FieldHandle& handle = recordset_->field(static_cast<LONG>(field));
  const Variant value = kind.valueOf(editor, handle.value());
  if (Outcome put = handle.setValue(value); !put) return put;
  if (value.type() == VT_EMPTY && saysSomething(kind, editor)) leftOut.append(fieldName(field));
  return {};
}
