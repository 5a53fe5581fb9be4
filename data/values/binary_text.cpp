#include "data/values/binary_text.h"

#include <algorithm>
#include <new>
#include <optional>
#include <span>
#include <string>

#include "owners/ole_functions.h"

namespace {

constexpr wchar_t kDigits[] = L"0123456789ABCDEF";

int digitValue(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  return -1;
}

bool isBlank(wchar_t character) {
  return character == L' ' || character == L'\t' || character == L'\r' || character == L'\n' ||
         character == L',';  // what the form shows for a line end
}

std::optional<Bytes> readPairs(const wchar_t* text) {
  Bytes bytes;
  while (*text) {
    if (isBlank(*text)) {
      ++text;
      continue;
    }
    const int high = digitValue(text[0]);
    const int low = high < 0 ? -1 : digitValue(text[1]);
    if (low < 0) return std::nullopt;
    bytes.push_back(static_cast<BYTE>(high * 16 + low));
    text += 2;
  }
  return bytes;
}

/// The bytes of a value, which outlives them; none of a value that isBytes denies.
std::span<const std::uint8_t> viewOf(const Variant& value) {
  SAFEARRAY* const array = isBytes(value) ? value.get().parray : nullptr;
  if (!array || ole::safeArrayGetDim(array) != 1) return {};
  return {static_cast<const std::uint8_t*>(array->pvData), array->rgsabound[0].cElements};
}

String textOf(std::span<const std::uint8_t> beginning, std::uint64_t wholeCount) {
  const std::size_t shown = std::min<std::size_t>(beginning.size(), kMostShownByteCount);
  if (shown == 0) return {};
  std::wstring text;
  text.reserve(shown * 3 + 32);
  for (std::size_t index = 0; index < shown; ++index) {
    if (index != 0) text += L' ';
    text += kDigits[beginning[index] >> 4];
    text += kDigits[beginning[index] & 15];
  }
  if (shown < wholeCount) text += L" \x2026 (" + std::to_wstring(wholeCount) + L" bytes)";
  return text.c_str();
}

}  // namespace

bool isBytes(const Variant& value) {
  return value.type() == (VT_ARRAY | VT_UI1);
}

String textOfBytes(const Variant& value) {
  return textOf(viewOf(value), viewOf(value).size());
}

String textOfBytes(const Variant& beginning, std::uint64_t wholeCount) {
  return textOf(viewOf(beginning), wholeCount);
}

String textOfBytes(const Bytes& bytes) {
  return textOf(bytes, bytes.size());
}

Bytes bytesOf(const Variant& value) {
  const std::span<const std::uint8_t> bytes = viewOf(value);
  return {bytes.begin(), bytes.end()};
}

Variant variantOfBytes(const Bytes& bytes) {
  Variant value;
  SAFEARRAY* const array = ole::safeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (!array) throw std::bad_alloc();
  VARIANT* const target = value.put();
  target->vt = VT_ARRAY | VT_UI1;
  target->parray = array;
  std::copy(bytes.begin(), bytes.end(), static_cast<BYTE*>(array->pvData));
  return value;
}

Variant bytesFromText(const wchar_t* text) {
  const std::optional<Bytes> bytes = readPairs(text);
  return bytes && !bytes->empty() ? variantOfBytes(*bytes) : Variant();
}
