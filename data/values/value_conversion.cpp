#include "data/values/value_conversion.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

#include "data/values/binary_text.h"
#include "owners/ole_functions.h"

namespace {

/// The longest double: a sign, 309 digits, the point and six decimals.
constexpr std::size_t kLongestDouble = 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6;

/// Whether the system's conversions can take the value: they don't expect infinities and NaN.
bool isConvertible(const Variant& value) {
  switch (value.type()) {
    case VT_R4:
      return std::isfinite(value.get().fltVal);
    case VT_R8:
      return std::isfinite(value.get().dblVal);
    case VT_DATE:
      return std::isfinite(value.get().date);
    default:
      return true;
  }
}

bool isDigit(wchar_t character) {
  return character >= L'0' && character <= L'9';
}

/// Whether the text is digits with one point among them and perhaps a sign before them.
bool hasDecimalPoint(const wchar_t* text) {
  if (*text == L'-' || *text == L'+') ++text;
  int digits = 0;
  int points = 0;
  for (; isDigit(*text) || *text == L'.'; ++text) ++(*text == L'.' ? points : digits);
  return *text == L'\0' && digits > 0 && points == 1;
}

}  // namespace

UniqueBstr makeBstr(const wchar_t* text) {
  UniqueBstr copy(ole::sysAllocString(text ? text : L""));
  if (!copy) throw std::bad_alloc();
  return copy;
}

String textOfBstr(BSTR text) {
  constexpr wchar_t kSymbolForNull = L'\x2400';
  const UINT length = ole::sysStringLen(text);
  if (length == 0 || wmemchr(text, L'\0', length) == nullptr) return text;
  const auto shown = std::make_unique_for_overwrite<wchar_t[]>(std::size_t{length} + 1);
  for (UINT i = 0; i < length; ++i) shown[i] = text[i] == L'\0' ? kSymbolForNull : text[i];
  shown[length] = L'\0';
  return shown.get();
}

String textOf(const Variant& value) {
  if (value.type() == VT_BSTR) return textOfBstr(value.get().bstrVal);
  if (isBytes(value)) return textOfBytes(value);
  if (value.type() == VT_R8 && !isConvertible(value)) return textOfDouble(value.get().dblVal);
  Variant text;
  if (!isConvertible(value) || FAILED(value.convertTo(VT_BSTR, text))) return {};
  return textOfBstr(text.get().bstrVal);
}

std::optional<LONG> integerOf(const Variant& value) {
  Variant integer;
  if (!isConvertible(value) || FAILED(value.convertTo(VT_I4, integer))) return std::nullopt;
  return integer.get().lVal;
}

String textOfDouble(double value) {
  std::array<char, kLongestDouble> narrow{};
  const std::to_chars_result end =
      std::to_chars(narrow.data(), narrow.data() + narrow.size(), value, std::chars_format::fixed, 6);
  std::array<wchar_t, kLongestDouble + 1> wide{};
  std::copy(narrow.data(), end.ptr, wide.data());
  return wide.data();
}

Variant doubleFromText(const wchar_t* text) {
  Variant converted;
  const Variant source = Variant::fromText(text);
  if (!hasDecimalPoint(text)) {
    source.convertTo(VT_R8, converted);
    return converted;
  }
  double number = 0;
  if (SUCCEEDED(ole::varR8FromStr(const_cast<wchar_t*>(text), LOCALE_INVARIANT, 0, &number))) {
    VARIANT* target = converted.put();
    target->vt = VT_R8;
    target->dblVal = number;
  }
  return converted;
}
