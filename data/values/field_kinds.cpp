#include "data/values/field_kinds.h"

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/variant.h"
#include "data/values/binary_text.h"
#include "data/values/date_value.h"
#include "data/values/field_value_source.h"
#include "data/values/value_conversion.h"

namespace {

/// Stored where the automation's own true would be -1; it reads back as true.
constexpr VARIANT_BOOL kStoredTrue = 1;

// ---- Reading

String doubleText(const Variant& value) {
  return value.type() == VT_R8 ? textOfDouble(value.get().dblVal) : textOf(value);
}

/// The automation's day zero counts as no date.
String dateText(const Variant& value) {
  const std::optional<LONG> days = integerOf(value);
  if (days.value_or(0) != 0) return textOf(value);
  if (days || value.type() == VT_DATE) return kNoDateText;
  const String text = textOf(value);
  return text.isEmpty() ? String(kNoDateText) : text;
}

String unknownText(const Variant&) {
  return L"<not recognised>";
}

// ---- Writing

Variant convertedText(const String& text, VARTYPE type) {
  Variant converted;
  Variant::fromText(text.text()).convertTo(type, converted);
  return converted;
}

bool isFraction(const Variant& number) {
  return number.type() == VT_R8 && number.get().dblVal != std::trunc(number.get().dblVal);
}

/// Numbers that their field's type can't hold stand in files of other programs; a field that holds one takes
/// others like it.
template <VARTYPE own>
Variant numberFrom(const FieldValueSource& editor, const Variant& stored) {
  const String text = editor.text();
  if (stored.type() == VT_R8) {
    if (Variant real = convertedText(text, VT_R8); isFraction(real)) return real;
  }
  Variant number = convertedText(text, own);
  const bool holdsOther =
      stored.type() == VT_DECIMAL || stored.type() == VT_R8 || (stored.type() == VT_I4 && own != VT_I4);
  if (number.type() == VT_EMPTY && holdsOther) number = convertedText(text, VT_DECIMAL);
  return number;
}

Variant doubleFrom(const FieldValueSource& editor, const Variant&) {
  return doubleFromText(editor.text().text());
}

Variant textFrom(const FieldValueSource& editor, const Variant&) {
  return Variant::fromText(editor.text().text());
}

Variant bytesFrom(const FieldValueSource& editor, const Variant&) {
  const Bytes* const bytes = editor.bytes();
  return bytes ? variantOfBytes(*bytes) : bytesFromText(editor.text().text());
}

Variant dateFrom(const FieldValueSource& editor, const Variant&) {
  const std::optional<double> date = editor.date();
  return date ? Variant::fromDate(*date) : Variant();
}

Variant booleanFrom(const FieldValueSource& editor, const Variant&) {
  Variant value;
  VARIANT* const target = value.put();
  target->vt = VT_BOOL;
  target->boolVal = editor.isChecked() ? kStoredTrue : VARIANT_FALSE;
  return value;
}

// ---- The table

using Type = FieldType;
using Editor = FieldEditorKind;

constexpr FieldKind kUnknown = {{}, nullptr, nullptr, Editor::text, true, unknownText, nullptr};

/// Those that are offered come first.
constexpr std::size_t kOfferedCount = 7;
constexpr std::array kKinds = {
    FieldKind{Type::bit, L"Boolean (True/False))", L"Bit", Editor::checkBox, false, textOf, booleanFrom},
    FieldKind{Type::date, L"Date", L"Datetime", Editor::date, false, dateText, dateFrom},
    FieldKind{Type::real, L"Float", L"Float", Editor::text, true, doubleText, doubleFrom},
    FieldKind{Type::smallInt, L"Integer (-128 to +127)", L"SmallInt", Editor::signedDigits, true, textOf,
              numberFrom<VT_I2>},
    FieldKind{Type::integer, L"Integer (-32768 to +32767)", L"Integer", Editor::signedDigits, true, textOf,
              numberFrom<VT_I4>},
    FieldKind{Type::varWChar, L"Text (to 255 characters)", L"Varchar (255)", Editor::text, true, textOf,
              textFrom},
    FieldKind{Type::longVarWChar, L"Text (to 32000 characters)", L"Text", Editor::text, true, textOf,
              textFrom},
    FieldKind{Type::unsignedSmallInt, nullptr, nullptr, Editor::digits, true, textOf, numberFrom<VT_UI2>},
    FieldKind{Type::unsignedInt, nullptr, nullptr, Editor::digits, true, textOf, numberFrom<VT_UI4>},
    FieldKind{Type::varBinary, nullptr, nullptr, Editor::bytes, true, textOf, bytesFrom},
    FieldKind{Type::longVarBinary, nullptr, nullptr, Editor::bytes, true, textOf, bytesFrom},
};
static_assert([] {
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    const bool isOffered = kKinds[i].label != nullptr && kKinds[i].sqlType != nullptr;
    if (isOffered != (i < kOfferedCount)) return false;
  }
  return true;
}());

}  // namespace

const FieldKind& fieldKind(FieldType type) {
  const auto* const found =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const FieldKind& kind) { return kind.type == type; });
  return found == kKinds.end() ? kUnknown : *found;
}

String textOfBeginning(FieldType type, const ValueBeginning& beginning) {
  if (beginning.isCut() && isBytes(beginning.value)) return textOfBytes(beginning.value, beginning.length);
  return fieldKind(type).textOf(beginning.value);
}

std::span<const FieldKind> offeredFieldKinds() {
  return std::span(kKinds).first(kOfferedCount);
}
