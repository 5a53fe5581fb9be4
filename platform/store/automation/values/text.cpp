#include "platform/store/automation/values/text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include "platform/store/rows/utf.h"

namespace automation {

namespace {

wchar_t foldedAscii(wchar_t unit) {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
}

}  // namespace

std::wstring_view viewOf(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

std::string utf8Of(std::wstring_view text) {
  static_assert(sizeof(wchar_t) == sizeof(char16_t));
  return store::toUtf8(std::u16string_view(reinterpret_cast<const char16_t*>(text.data()), text.size()));
}

std::wstring wideOf(std::string_view utf8) {
  std::wstring text(utf8.size(), L'\0');
  text.resize(store::decodeUtf8(utf8, reinterpret_cast<char16_t*>(text.data())));
  return text;
}

BSTR newText(std::wstring_view text) {
  if (text.size() > std::numeric_limits<UINT>::max() / sizeof(wchar_t) - 16) throw std::bad_alloc();
  BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (copy == nullptr) throw std::bad_alloc();
  return copy;
}

BSTR newText(std::string_view utf8) {
  // Most values are short: they are decoded on the stack and copied once.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): as much as is decoded is read
  std::array<char16_t, 512> units;
  if (utf8.size() > units.size()) return newText(wideOf(utf8));
  const std::size_t count = store::decodeUtf8(utf8, units.data());
  return newText(std::wstring_view(reinterpret_cast<const wchar_t*>(units.data()), count));
}

bool equalIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t a, wchar_t b) { return foldedAscii(a) == foldedAscii(b); });
}

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t\r\n");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t\r\n") - first + 1);
}

}  // namespace automation
