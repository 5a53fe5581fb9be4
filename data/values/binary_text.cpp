#include "data/values/binary_text.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <vector>

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

std::optional<std::vector<BYTE>> readPairs(const wchar_t* text) {
  std::vector<BYTE> bytes;
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

}  // namespace

bool isBytes(const Variant& value) {
  return value.type() == (VT_ARRAY | VT_UI1);
}

String textOfBytes(const Variant& value) {
  SAFEARRAY* const array = isBytes(value) ? value.get().parray : nullptr;
  return array ? textOfBytes(value, array->rgsabound[0].cElements) : String();
}

String textOfBytes(const Variant& beginning, std::uint64_t wholeCount) {
  SAFEARRAY* const array = isBytes(beginning) ? beginning.get().parray : nullptr;
  if (!array || SafeArrayGetDim(array) != 1) return {};
  const ULONG count = array->rgsabound[0].cElements;
  void* data = nullptr;
  if (count == 0 || FAILED(SafeArrayAccessData(array, &data))) return {};
  const auto* const bytes = static_cast<const BYTE*>(data);
  const ULONG shown = std::min<ULONG>(count, kMostShownByteCount);
  std::wstring text;
  text.reserve(std::size_t{shown} * 3 + 32);
  for (ULONG index = 0; index < shown; ++index) {
    if (index != 0) text += L' ';
    text += kDigits[bytes[index] >> 4];
    text += kDigits[bytes[index] & 15];
  }
  SafeArrayUnaccessData(array);
  if (shown < wholeCount) text += L" \x2026 (" + std::to_wstring(wholeCount) + L" bytes)";
  return text.c_str();
}

Variant bytesFromText(const wchar_t* text) {
  Variant value;
  const std::optional<std::vector<BYTE>> bytes = readPairs(text);
  if (!bytes || bytes->empty()) return value;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes->size()));
  if (!array) throw std::bad_alloc();
  VARIANT* const target = value.put();
  target->vt = VT_ARRAY | VT_UI1;
  target->parray = array;
  std::copy(bytes->begin(), bytes->end(), static_cast<BYTE*>(array->pvData));
  return value;
}
