#include "data/field_text.h"

#include <optional>

#include "data/date_value.h"
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

String fieldText(FieldType type, const Variant& value) {
  switch (type) {
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
