#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"
#include "platform/store/rows/iso_date.h"

namespace automation {

namespace {

using store::Blob;
using store::Cell;
using store::CellKind;
using store::FieldType;
using store::TypeCode;
using store::Value;

Outcome cannotConvert() {
  return {kConversion, "The field can't take a value of this kind or size."};
}

struct Range {
  std::int64_t least;
  std::int64_t most;
};
template <class T>
constexpr Range kRangeOf = {std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};

/// The value of a whole number's VARIANT. Read here, because the systems differ in which of these
/// conversions notice that a number does not fit. Empty for other types and for what 64 bits with a sign
/// don't hold.
std::optional<std::int64_t> wholeNumberOf(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_I1:
      return static_cast<signed char>(V_I1(&value));
    case VT_UI1:
      return V_UI1(&value);
    case VT_I2:
      return V_I2(&value);
    case VT_UI2:
      return V_UI2(&value);
    case VT_I4:
      return V_I4(&value);
    case VT_INT:
      return V_INT(&value);
    case VT_UI4:
      return V_UI4(&value);
    case VT_UINT:
      return V_UINT(&value);
    case VT_I8:
      return V_I8(&value);
    case VT_UI8:
      if (V_UI8(&value) > static_cast<ULONGLONG>(std::numeric_limits<std::int64_t>::max()))
        return std::nullopt;
      return static_cast<std::int64_t>(V_UI8(&value));
    default:
      return std::nullopt;
  }
}

/// The value of a VARIANT that holds a double or float, dates included.
std::optional<double> doubleOf(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_R4:
      return V_R4(&value);
    case VT_R8:
      return V_R8(&value);
    case VT_DATE:
      return V_DATE(&value);
    default:
      return std::nullopt;
  }
}

bool isWholeNumber(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
      return true;
    default:
      return false;
  }
}

bool isNumber(VARTYPE type) {
  return isWholeNumber(type) || type == VT_R4 || type == VT_R8 || type == VT_CY || type == VT_DECIMAL;
}

bool takesAsNumber(VARTYPE type) {
  return isNumber(type) || type == VT_DATE || type == VT_BSTR;
}

/// The automation's own conversion, from which NaN and infinities are kept away: it takes them for numbers.
bool changeType(const VARIANT& value, VARTYPE type, OwnedVariant* changed) {
  const std::optional<double> number = doubleOf(value);
  return (!number || std::isfinite(*number)) && changed->convert(value, type);
}

/// Rounds half to even, as the automation does.
std::optional<std::int64_t> rounded(double number) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  const double whole = std::nearbyint(number);
  if (!(whole >= -kLimit && whole < kLimit)) return std::nullopt;
  return static_cast<std::int64_t>(whole);
}

std::optional<std::int64_t> integerOf(const VARIANT& given) {
  if (V_VT(&given) == VT_BOOL) return V_BOOL(&given) != 0 ? 1 : 0;
  if (isWholeNumber(V_VT(&given))) return wholeNumberOf(given);
  if (const std::optional<double> number = doubleOf(given)) return rounded(*number);
  OwnedVariant number;
  if (!takesAsNumber(V_VT(&given)) || !changeType(given, VT_I8, &number)) return std::nullopt;
  return V_I8(number.get());
}

bool isWithin(std::int64_t number, Range range) {
  return number >= range.least && number <= range.most;
}

Outcome toInteger(const VARIANT& given, Range range, Value* value) {
  const std::optional<std::int64_t> number = integerOf(given);
  if (!number || !isWithin(*number, range)) return cannotConvert();
  *value = *number;
  return {};
}

Outcome toReal(const VARIANT& given, Value* value) {
  OwnedVariant converted;
  std::optional<double> number = doubleOf(given);
  if (V_VT(&given) == VT_BOOL) {
    number = V_BOOL(&given) != 0 ? 1.0 : 0.0;
  } else if (V_VT(&given) == VT_UI8) {
    number = static_cast<double>(V_UI8(&given));
  } else if (!number && takesAsNumber(V_VT(&given)) && changeType(given, VT_R8, &converted)) {
    number = V_R8(converted.get());
  }
  if (!number || std::isnan(*number)) return cannotConvert();
  *value = *number;
  return {};
}

Outcome toBoolean(const VARIANT& given, Value* value) {
  OwnedVariant truth;
  if (V_VT(&given) != VT_BOOL && !takesAsNumber(V_VT(&given))) return cannotConvert();
  if (!changeType(given, VT_BOOL, &truth)) return cannotConvert();
  *value = std::int64_t{V_BOOL(truth.get()) != 0 ? 1 : 0};
  return {};
}

Outcome toDate(const VARIANT& given, store::DateShape shape, Value* value) {
  if (V_VT(&given) == VT_BSTR) {
    std::string text = utf8Of(viewOf(V_BSTR(&given)));
    if (store::parseIsoDate(text)) {
      *value = std::move(text);
      return {};
    }
  }
  OwnedVariant date;
  if (!takesAsNumber(V_VT(&given)) || !changeType(given, VT_DATE, &date)) return cannotConvert();
  std::optional<std::string> text = store::formatIsoDate(V_DATE(date.get()), shape);
  if (!text) return cannotConvert();
  *value = std::move(*text);
  return {};
}

Outcome toText(const VARIANT& given, Value* value) {
  if (const std::optional<std::string> bytes = bytesOf(given)) {
    if (bytes->size() % sizeof(wchar_t) != 0) return cannotConvert();
    std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
    bytes->copy(reinterpret_cast<char*>(text.data()), bytes->size());
    *value = utf8Of(text);
    return {};
  }
  if (V_VT(&given) == VT_BSTR) {
    *value = utf8Of(viewOf(V_BSTR(&given)));
    return {};
  }
  if (!takesAsNumber(V_VT(&given)) && V_VT(&given) != VT_BOOL) return cannotConvert();
  OwnedVariant source;
  OwnedVariant text;
  if (!source.copy(given)) return cannotConvert();
  if (V_VT(&given) == VT_BOOL && V_BOOL(&given) != 0) V_BOOL(source.get()) = VARIANT_TRUE;
  if (!changeType(*source, VT_BSTR, &text)) return cannotConvert();
  *value = utf8Of(viewOf(V_BSTR(text.get())));
  return {};
}

Outcome toBytes(const VARIANT& given, Value* value) {
  if (std::optional<std::string> bytes = bytesOf(given)) {
    *value = Blob{std::move(*bytes)};
    return {};
  }
  if (V_VT(&given) != VT_BSTR) return cannotConvert();
  const std::wstring_view text = viewOf(V_BSTR(&given));
  *value = Blob{std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t))};
  return {};
}

bool isFraction(const VARIANT& value) {
  if (V_VT(&value) != VT_R8 && V_VT(&value) != VT_R4) return false;
  const double number = *doubleOf(value);
  return std::isfinite(number) && number != std::trunc(number);
}

/// The same for a column that other programs may fill with any number: it takes one of 64 bits from a type
/// that was made for it (as the field itself shows one), and from every type where it holds one, and a
/// fraction where it holds one.
Outcome toColumnInteger(const VARIANT& given, Range range, bool takesWide, const Cell& present,
                        Value* value) {
  const VARTYPE type = V_VT(&given);
  const bool isWide = takesWide && (type == VT_DECIMAL || type == VT_I8 || type == VT_UI8);
  const bool holdsReal = present.kind == CellKind::real;
  const bool holdsWide =
      holdsReal || (present.kind == CellKind::integer && !isWithin(present.integer, range));
  if (holdsReal && isFraction(given)) return toReal(given, value);
  return toInteger(given, isWide || holdsWide ? kRangeOf<std::int64_t> : range, value);
}

/// The number that the text writes in the plain way, so that nothing is lost by keeping the number only.
std::optional<std::int64_t> plainInteger(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return std::to_string(number) == text ? std::optional(number) : std::nullopt;
}

Outcome untypedText(const VARIANT& given, const Cell& present, Value* value) {
  std::string text = utf8Of(viewOf(V_BSTR(&given)));
  const bool replacesNumber = present.kind == CellKind::integer || present.kind == CellKind::real;
  OwnedVariant real;
  if (const std::optional<std::int64_t> number = plainInteger(text); replacesNumber && number) {
    *value = *number;
  } else if (replacesNumber && changeType(given, VT_R8, &real)) {
    *value = V_R8(real.get());
  } else {
    *value = std::move(text);
  }
  return {};
}

Outcome untyped(const VARIANT& given, const Cell& present, Value* value) {
  const VARTYPE type = V_VT(&given);
  if (type == VT_BSTR) return untypedText(given, present, value);
  if (type == VT_DATE) return toDate(given, store::DateShape::dateTime, value);
  if (type == VT_BOOL || isWholeNumber(type)) return toInteger(given, kRangeOf<std::int64_t>, value);
  if (type == VT_DECIMAL) {
    // A whole number beyond 32 bits is shown as VT_DECIMAL and must come back whole.
    OwnedVariant whole;
    OwnedVariant back;
    DECIMAL rounded;
    DECIMAL exact = V_DECIMAL(&given);
    if (changeType(given, VT_I8, &whole) && SUCCEEDED(VarDecFromI8(V_I8(whole.get()), &rounded)) &&
        VarDecCmp(&rounded, &exact) == static_cast<HRESULT>(VARCMP_EQ)) {
      *value = std::int64_t{V_I8(whole.get())};
      return {};
    }
  }
  if (isNumber(type)) return toReal(given, value);
  return toBytes(given, value);
}

}  // namespace

Outcome storedValue(const VARIANT& given, const FieldType& type, const Cell& present, Value* value) {
  if (V_VT(&given) == VT_EMPTY || V_VT(&given) == VT_NULL) {
    *value = std::monostate();
    return {};
  }
  if (!type.isTyped) return untyped(given, present, value);
  switch (type.code) {
    case TypeCode::smallInt:
      return toColumnInteger(given, kRangeOf<std::int16_t>, false, present, value);
    case TypeCode::integer:
      return toColumnInteger(given, kRangeOf<std::int32_t>, true, present, value);
    case TypeCode::unsignedSmallInt:
      return toColumnInteger(given, kRangeOf<std::uint16_t>, false, present, value);
    case TypeCode::unsignedInt:
      return toColumnInteger(given, kRangeOf<std::uint32_t>, false, present, value);
    case TypeCode::real:
      return toReal(given, value);
    case TypeCode::date:
      return toDate(given, type.dateShape, value);
    case TypeCode::boolean:
      return toBoolean(given, value);
    case TypeCode::varWChar:
    case TypeCode::longVarWChar:
      return toText(given, value);
    case TypeCode::varBinary:
    case TypeCode::longVarBinary:
      return toBytes(given, value);
  }
  return cannotConvert();
}

}  // namespace automation
