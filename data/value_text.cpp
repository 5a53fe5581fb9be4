#include <optional>

#include "data/database.h"
#include "data/date_value.h"
#include "data/recordset_handle.h"
#include "data/value_conversion.h"

namespace {

constexpr wchar_t kUnknownTypeText[] = L"<not recognised>";

String textOfDoubleField(const Variant& value) {
  return value.type() == VT_R8 ? textOfDouble(value.get().dblVal) : textOf(value);
}

/// The automation's day zero counts as no date.
String textOfDateField(const Variant& value) {
  const std::optional<LONG> days = integerOf(value);
  if (days.value_or(0) != 0) return textOf(value);
  if (days || value.type() == VT_DATE) return kNoDateText;
  const String text = textOf(value);
  return text.isEmpty() ? String(kNoDateText) : text;
}

}  // namespace

String Database::valueText(std::uint32_t field) {
  if (field >= fieldCount_) return {};
  const Variant& value = recordset_->field(static_cast<LONG>(field)).value();
  switch (fieldType(field)) {
    case FieldType::real:
      return textOfDoubleField(value);
    case FieldType::date:
      return textOfDateField(value);
    case FieldType::smallInt:
    case FieldType::integer:
    case FieldType::bit:
    case FieldType::unsignedSmallInt:
    case FieldType::unsignedInt:
    case FieldType::varWChar:
    case FieldType::longVarWChar:
    case FieldType::varBinary:
    case FieldType::longVarBinary:
      return textOf(value);
    default:
      return kUnknownTypeText;
  }
}

bool Database::fieldIsSet(std::uint32_t field) {
  return recordset_->field(static_cast<LONG>(field)).valueAsInteger() != 0;
}

bool Database::matchRecord(bool allFields, bool matchCase, std::uint32_t firstField, String text,
                           std::uint32_t& foundField) {
  if (!matchCase) text.toUpperCase();
  const std::uint32_t end = allFields ? fieldCount_ : firstField + 1;
  for (std::uint32_t field = firstField; field < end; ++field) {
    const FieldType type = fieldType(field);
    if (type == FieldType::bit || type == FieldType::date) continue;
    String value = valueText(field);
    if (!matchCase) value.toUpperCase();
    if (value.find(text.text()) >= 0) {
      foundField = field;
      return true;
    }
  }
  return false;
}
