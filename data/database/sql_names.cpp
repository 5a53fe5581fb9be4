#include "data/database/sql_names.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace {

std::wstring between(wchar_t quote, std::wstring_view name) {
  std::wstring text(1, quote);
  for (const wchar_t unit : name) {
    text += unit;
    if (unit == quote) text += unit;
  }
  return text += quote;
}

bool isWordPart(wchar_t unit) {
  return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z') || (unit >= L'0' && unit <= L'9') ||
         unit == L'_' || unit >= 0x80;
}

}  // namespace

std::wstring quotedName(const String& name) {
  return between(L'\'', name.text());
}

std::wstring columnName(const String& name) {
  const std::wstring_view text = name.text();
  return std::all_of(text.begin(), text.end(), isWordPart) ? std::wstring(text) : quotedName(name);
}

std::wstring selectedName(const String& name) {
  if (std::wcschr(name.text(), L']')) return between(L'"', name.text());
  return std::wstring(L"[") + name.text() + L"]";
}
