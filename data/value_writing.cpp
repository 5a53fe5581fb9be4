#include <windows.h>

#include <oleauto.h>

#include <cwchar>
#include <optional>

#include "data/binary_text.h"
#include "data/database.h"
#include "data/date_value.h"
#include "data/recordset_handle.h"
#include "data/value_conversion.h"

namespace {

/// Stored where the automation's own true would be -1; it reads back as true.
constexpr VARIANT_BOOL kStoredTrue = 1;

bool isWritten(FieldType type) {
  switch (type) {
    case FieldType::smallInt:
    case FieldType::integer:
    case FieldType::real:
    case FieldType::date:
    case FieldType::bit:
    case FieldType::unsignedSmallInt:
    case FieldType::unsignedInt:
    case FieldType::varWChar:
    case FieldType::longVarWChar:
    case FieldType::varBinary:
    case FieldType::longVarBinary:
      return true;
    default:
      return false;
  }
}

bool sameText(const String& one, const String& other) {
  return std::wcscmp(one.text(), other.text()) == 0;
}

/// VT_EMPTY, which clears a field, when the text can't be converted.
Variant convertedText(const String& text, VARTYPE type) {
  Variant converted;
  Variant::fromText(text.text()).convertTo(type, converted);
  return converted;
}

/// Whole numbers that their field's type can't hold stand in files of other programs; a field that
/// holds one takes others like it.
Variant numberFromText(const String& text, FieldType type, const Variant& stored) {
  const auto own = static_cast<VARTYPE>(type);
  Variant number = convertedText(text, own);
  const bool holdsOther = stored.type() == VT_DECIMAL || (stored.type() == VT_I4 && own != VT_I4);
  if (number.type() == VT_EMPTY && holdsOther) number = convertedText(text, VT_DECIMAL);
  return number;
}

Variant storedBoolean(bool isTrue) {
  Variant value;
  VARIANT* target = value.put();
  target->vt = VT_BOOL;
  target->boolVal = isTrue ? kStoredTrue : VARIANT_FALSE;
  return value;
}

Variant editedValue(FieldType type, const FieldValueSource& editor, const Variant& stored) {
  switch (type) {
    case FieldType::bit:
      return storedBoolean(editor.isChecked());
    case FieldType::date: {
      const std::optional<double> date = editor.date();
      return date ? Variant::fromDate(*date) : Variant();
    }
    case FieldType::real:
      return doubleFromText(editor.text().text());
    case FieldType::varWChar:
    case FieldType::longVarWChar:
      return Variant::fromText(editor.text().text());
    case FieldType::varBinary:
    case FieldType::longVarBinary:
      return bytesFromText(editor.text().text());
    default:
      return numberFromText(editor.text(), type, stored);
  }
}

/// A content that is more than nothing: what it says is lost when it can't be stored.
bool saysSomething(FieldType type, const FieldValueSource& editor) {
  const String text = editor.text();
  return !text.isEmpty() && (type != FieldType::date || !sameText(text, kNoDateText));
}

}  // namespace

bool Database::setValueFromEditor(std::uint32_t field, const FieldValueSource& editor) {
  NameList leftOut;
  if (!isWritten(fieldType(field))) return false;
  // Whether the store took it shows when the record is stored.
  static_cast<void>(writeField(field, editor, leftOut));
  return true;
}

/// Does nothing for a field whose editor has nothing to write. `leftOut` receives the name of a field that
/// was cleared because the content could not be converted.
Outcome Database::writeField(std::uint32_t field, const FieldValueSource& editor, NameList& leftOut) {
  if (!isWritten(fieldType(field))) return {};
  // In a new record, too, a field that can't be written is left to the database.
  if (!editor.isEdited() && (!newRecordPending_ || isFieldReadOnly(field))) return {};
  FieldHandle& handle = recordset_->field(static_cast<LONG>(field));
  const Variant value = editedValue(fieldType(field), editor, handle.value());
  if (Outcome put = handle.setValue(value); !put) return put;
  if (value.type() == VT_EMPTY && saysSomething(fieldType(field), editor)) leftOut.append(fieldName(field));
  return {};
}
